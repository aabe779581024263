// How the store reaches each file format's block loader without knowing the readers: a table
// keyed by fileDbSupport::db_type that a reader fills when it registers. A db type without a
// loader can't be loaded (code 3).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "readers/scan/cBitWiseParser.h"
#include "readers/scan/cVxBinFile.h"
#include "readers/scan/cVxMemoryFile.h"

namespace vx3 {

class cCurvePlotVariable;
class cCurvePlotDataSection;
class cFileDbSupport;
class cVxLogger;

// One load: the curve whose block was prepared for its data type and db size.
struct cCurveLoadRequest {
    cCurvePlotVariable& variable;
    const cCurvePlotDataSection* section;
    uint64_t curveIndex;
    bool forSweep;
    unsigned flag;
    unsigned dataType;
    unsigned dbType;
    const cVxLogger& logger;
    // Set by a loader that took the cached extremes from the file.
    bool minMaxLoaded = false;
};

class cCurveDbLoader {
public:
    virtual ~cCurveDbLoader() = default;
    // Fill request.variable from the file. 0 on success; otherwise 3 and the reason in error.
    // Readers of mapped files run their copies under the bus-error guard (the file access
    // classes do that), so that a file truncated meanwhile fails here instead of crashing.
    virtual int loadBlocks(cCurveLoadRequest& request, cBitWiseParser<cVxMemoryFile>& file, std::string& error) = 0;
    virtual int loadBlocks(cCurveLoadRequest& request, cBitWiseParser<cVxBinFile>& file, std::string& error) = 0;
    // Several curves of the same open file. Formats that store a row of all curves per point
    // override it to extract every curve in one pass; by default the curves load one by one.
    virtual int loadSeveral(std::vector<cCurveLoadRequest*>& requests, cFileDbSupport& file, unsigned threads,
                            std::string& error);
};

namespace curveDbLoaders {
// Replaces the loader of dbType; a null loader removes it.
void registerLoader(unsigned dbType, std::shared_ptr<cCurveDbLoader> loader);
void unregisterLoader(unsigned dbType);
std::shared_ptr<cCurveDbLoader> findLoader(unsigned dbType);
// One request through the handle that the file has open.
int loadThroughOpenHandle(cCurveDbLoader& loader, cCurveLoadRequest& request, cFileDbSupport& file,
                          std::string& error);
}  // namespace curveDbLoaders

}  // namespace vx3
