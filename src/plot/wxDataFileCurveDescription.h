// The styles of all open files' curves: one section store per section, colour counters per file
// and X unit. A curve keeps its look until its file is closed.
#pragma once

#include <list>
#include <map>
#include <string>

#include "plot/wxSectionCurveDescription.h"

namespace vx3 {

class cCurvePlotDataFile;
class cFileDbSupport;
class wxWaveExplorerCommand;

class wxDataFileCurveDescription {
public:
    wxDataFileCurveDescription(cCurvePlotDataFile& store, const wxWaveExplorerConfiguration& configuration)
        : mStore(store), mConfiguration(configuration)
    {
    }

    // Full colours instead of the paler default ones, for curves described from now on.
    void setStrongColours(bool flag) { mStrongColours = flag; }
    bool getStrongColours() const { return mStrongColours; }

    // The section's styles, dealt on first use; created tells whether that happened now.
    wxSectionCurveDescription& findOrCreateDataSectionDescription(cCurvePlotDataSection* section, bool& created);
    // Null when the section has none yet.
    const wxSectionCurveDescription* findDataSectionDescription(const cCurvePlotDataSection* section) const;

    // Descriptions by section and index or by names; throw cLoggedException when not there.
    wxCurveDescription getCurveDescription(cCurvePlotDataFile& file, cCurvePlotDataSection* section, uint64_t index);
    wxCurveDescription getCurveDescription(cCurvePlotDataFile& file, const std::string& sectionName,
                                           const std::string& curveName);
    wxCurveDescriptionBase getCurveDescriptionBase(cCurvePlotDataSection* section, uint64_t index);

    bool setCurveStyle(cCurvePlotDataSection* section, uint64_t index, const wxCurveStyle& style);
    // A set_curve_style... command applied to the curve it names in every section of that name
    // (the runs of a multi-run file) or with that id. Returns the curves changed; 0 with the
    // reason in the logger.
    unsigned setCurveStyleAllSections(const wxWaveExplorerCommand& command, const cVxLogger& logger);

    // Reads a pasted or dropped text (curve-list XML, else the calculator's expression) against
    // the store into list; false, list untouched, with the reason in the logger.
    bool initListOfCurvesOnClipboard(const std::string& text, wxListOfCurveDescriptions& list,
                                     const cVxLogger& logger) const;
    // Descriptions, with this store's styles, of every curve a list names, their values loaded.
    // A curve that fails to load is reported ("Failed to load curve from data base.") and left
    // out; the others come.
    std::vector<wxCurveDescription> getCurveDescriptionsForClipboardCurves(const wxListOfCurveDescriptions& list,
                                                                           const cVxLogger& logger);

    // After a reload of the store's files: new curves get styles, old ones keep theirs.
    returnCode updateAfterReload(bool reloadCurves, const cVxLogger& logger);
    // Drops the descriptions of sections about to close.
    void closeAllMarkedSections();
    void clear();
    size_t getNbOfSectionDescriptions() const { return mSections.size(); }

private:
    sectionCurveDescription::cAllRandomIndices& countersOf(const cCurvePlotDataSection* section);

    cCurvePlotDataFile& mStore;
    const wxWaveExplorerConfiguration& mConfiguration;
    bool mStrongColours = false;
    std::list<wxSectionCurveDescription> mSections;
    // Colours are dealt per file, then per X unit.
    std::map<const cFileDbSupport*, sectionCurveDescription::cAllRandomIndices> mRandomIndices;
};

}  // namespace vx3
