// The commands that read and build the store of files, sections and curves. They run on the
// thread that owns the store (the main thread) and answer with explorer result codes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vx3 {

class cCurvePlotDataFile;
class cVxLogger;
class wxWaveExplorerCommand;

class cStoreCommands {
public:
    enum : int { not_a_store_command = -1 };
    // 0 success, 3 failure, 4 file not found, 26 interrupted; not_a_store_command for other words.
    // open_file and reload_file read on the calling thread, under the store's mutex.
    static int perform(wxWaveExplorerCommand& command, cCurvePlotDataFile& store, const cVxLogger& logger);
    // Whether a command of this number can change the store (the views then refresh).
    static bool checkChangesStore(int actionType);

    // What a simple browser shows: sections with at most `limit` curves each.
    struct cCurveRow {
        std::string name;
        std::string unit;
        uint64_t count = 0;
    };
    struct cSectionRow {
        std::string name;
        uint64_t count = 0;  // curves
        std::vector<cCurveRow> curves;
        uint64_t hiddenCurves = 0;
    };
    using cBrowserRows = std::vector<cSectionRow>;
    static cBrowserRows listForBrowser(const cCurvePlotDataFile& store, size_t limit);
};

}  // namespace vx3
