// A selection of curves as it travels by drag and drop or the clipboard, and its two texts:
// the curve-list XML for other programs and the calculator's expression.
#pragma once

#include <atomic>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace vx3 {

class cCurvePlotDataFile;
class cCurvePlotDataSection;
class cVxLogger;

namespace listOfCurveDescriptions {
enum text_format : int { curve_list_xml = 0, calculator_expression = 1 };

struct cSectionEntry {
    cCurvePlotDataSection* section = nullptr;
    bool allCurves = false;
    std::vector<unsigned> curveIndices;
};
}  // namespace listOfCurveDescriptions

class wxListOfCurveDescriptions {
public:
    using cSectionEntry = listOfCurveDescriptions::cSectionEntry;

    const std::vector<cSectionEntry>& entries() const { return mEntries; }
    const std::vector<std::string>& instances() const { return mInstances; }
    const std::set<unsigned>& unitIdentifiers() const { return mUnitIdentifiers; }

    // All curves of the section.
    void addSection(cCurvePlotDataSection* section);
    // An instance of the curve hierarchy, carried by its name.
    void addSectionInstance(cCurvePlotDataSection* section, const std::string& instanceName);
    // False with "Can't add curve." in the logger when the curve isn't there.
    bool addCurve(cCurvePlotDataSection* section, uint64_t index, const cVxLogger& logger);
    bool addCurve(cCurvePlotDataSection* section, const std::string& curveName, const cVxLogger& logger);
    bool addCurve(cCurvePlotDataFile& store, uint64_t sectionId, uint64_t index, const cVxLogger& logger);
    // Units of the curves named so far (the x unit of whole sections).
    void insertUnitIdentifiers(const cCurvePlotDataSection& section, uint64_t index);

    // Curves named, whole sections counted by their curves; the flags tell whether whole
    // sections or instances are among them.
    uint64_t getNumberOfCurves(bool& wholeSections, bool& withInstances) const;
    bool checkJustOneCurveDefined() const;
    // Drops sections and curves that are marked for closing.
    void closeAllThatIsMarked();
    void clear();
    bool empty() const { return mEntries.empty() && mInstances.empty(); }

    // The text of one format; false with the reason in the logger (nothing to write, or a sweep
    // selection that doesn't fit its section).
    bool createDndCurveListString(int format, std::string& text, const std::string& instanceId,
                                  const cVxLogger& logger) const;
    // Reads a curve-list XML text against the store; curves that aren't there are reported and
    // left out. False (list untouched) for text that isn't a curve list.
    bool readDndCurveListString(const std::string& text, cCurvePlotDataFile& store, std::string& instanceId,
                                const cVxLogger& logger);
    // Reads "waveform("section", "curve"), ..." as the calculator format writes it.
    bool readCalculatorString(const std::string& text, cCurvePlotDataFile& store, const cVxLogger& logger);

    // Sweep selection of calculator texts: one index per sweep variable and a permutation of
    // them; empty means the whole curve.
    std::vector<uint64_t> sweepIndices;
    std::vector<uint64_t> sweepPermutation;

    // Loads the values of every curve named; interrupt stops between curves. Messages as the
    // progress bar shows them.
    bool loadCurvesFromDb(const cVxLogger& logger, const std::atomic<bool>* interrupt = nullptr) const;

private:
    cSectionEntry& entryFor(cCurvePlotDataSection* section);

    std::vector<cSectionEntry> mEntries;
    std::vector<std::string> mInstances;
    std::set<unsigned> mUnitIdentifiers;
};

}  // namespace vx3
