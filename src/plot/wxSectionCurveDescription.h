// The styles of all curves of one section, dealt once and kept while the file stays open.
#pragma once

#include <cstdint>
#include <list>
#include <map>
#include <string>
#include <vector>

#include "base/returnCode.h"
#include "plot/wxCurveDescription.h"

namespace vx3 {

class cCurvePlotDataFile;
class cCurvePlotDataSection;
class cCurvePlotVariable;
class cVxLogger;
class wxWaveExplorerConfiguration;
class wxListOfCurveDescriptions;

namespace sectionCurveDescription {
// Running counters of one X unit in one file: the colour list is walked by all its curves together.
struct cRandomIndices {
    uint64_t colourIndex = 0;
};
// By X unit identifier, so that transient and AC curves of a file each start at the first colour.
class cAllRandomIndices {
public:
    cRandomIndices& get(int unitIdentifier) { return mIndices[unitIdentifier]; }
    const std::map<int, cRandomIndices>& indices() const { return mIndices; }
    void clear() { mIndices.clear(); }

private:
    std::map<int, cRandomIndices> mIndices;
};
}  // namespace sectionCurveDescription

class wxSectionCurveDescription {
public:
    wxSectionCurveDescription(cCurvePlotDataSection* section, const wxWaveExplorerConfiguration& configuration)
        : mSection(section), mConfiguration(configuration)
    {
    }
    // The index points into the list; a copy would point into the other's.
    wxSectionCurveDescription(const wxSectionCurveDescription&) = delete;
    wxSectionCurveDescription& operator=(const wxSectionCurveDescription&) = delete;

    cCurvePlotDataSection* getSection() const { return mSection; }
    unsigned getRepeat() const { return mRepeat; }
    // Styles held: repeat per curve described so far.
    uint64_t getNbOfStyles() const { return mIndex.size(); }

    // Gives every curve not described yet its style; styles already dealt stay. strongColours
    // deals the full colours, otherwise paler ones.
    void init(sectionCurveDescription::cAllRandomIndices& randomIndices, bool strongColours, unsigned repeat = 1);
    // After the section was read again: with reloadCurves the curves in use are loaded anew;
    // curves that came with the reload get styles.
    returnCode updateAfterReload(cCurvePlotDataFile* file, sectionCurveDescription::cAllRandomIndices& randomIndices,
                                 bool reloadCurves, bool strongColours, const cVxLogger& logger);

    // The style the configuration gives a curve of this section before any colour is dealt.
    void getDefaultStyle(wxCurveStyle& style, const cCurvePlotDataSection& section) const;
    wxCurveStyle getDefaultStyle(const cCurvePlotDataSection& section, const cCurvePlotVariable& variable) const;

    // The style of a curve (of one repetition); throws cLoggedException for a missing index.
    const wxCurveStyle& getCurveStyle(uint64_t index, unsigned repetition = 0) const;
    // A description that loads the curve (getCurveDescription) or only names it.
    wxCurveDescription getCurveDescription(uint64_t index) const;
    wxCurveDescriptionBase getCurveDescriptionBase(uint64_t index) const;
    // By name; new curves get their style first. Throws cLoggedException when there is no such curve.
    wxCurveDescription getCurveDescription(const std::string& curveName,
                                           sectionCurveDescription::cAllRandomIndices& randomIndices,
                                           bool strongColours);
    // False for an index without a style.
    bool setCurveStyle(uint64_t index, const wxCurveStyle& style, unsigned repetition = 0);
    void setCurveStyleAllCurves(const wxCurveStyle& style);
    // The whole section, as one entry.
    void addAllCurvesToCurveDescriptions(wxListOfCurveDescriptions& list) const;
    // Every curve of the section one by one, as a copy puts them on the clipboard (each with its
    // unit and bus width in the curve list).
    void addAllCurvesToClipBoardCurves(wxListOfCurveDescriptions& list, const cVxLogger& logger) const;
    // Adds the curves whose names match pattern (wildcards "*" and "?", or a regular expression
    // when it holds brackets, "|", "^", "$", "+" or a backslash), when the section's name matches sectionPattern (empty: any section).
    // Returns the number of curves added.
    uint64_t findSectionsAndCurves(const std::string& pattern, const std::string& sectionPattern,
                                   bool caseSensitive, wxListOfCurveDescriptions& list, const cVxLogger& logger) const;

private:
    wxCurveStyle dealStyle(uint64_t curveIndex, sectionCurveDescription::cRandomIndices& counters,
                           bool strongColours) const;
    bool checkDefinesSweepMatrix() const;

    cCurvePlotDataSection* mSection;
    const wxWaveExplorerConfiguration& mConfiguration;
    unsigned mRepeat = 1;
    std::list<wxCurveStyle> mStyles;
    std::vector<wxCurveStyle*> mIndex;  // curve * repeat + repetition -> its style in mStyles
};

}  // namespace vx3
