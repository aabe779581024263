#include "wxDataFileCurveDescription.h"

#include "app/core/wxWaveExplorerCommand.h"
#include "base/cLoggedException.h"
#include "base/cVxLogger.h"
#include "model/cCurvePlotDataFile.h"
#include "plot/wxListOfCurveDescriptions.h"

namespace vx3 {

sectionCurveDescription::cAllRandomIndices& wxDataFileCurveDescription::countersOf(const cCurvePlotDataSection* section)
{
    return mRandomIndices[section ? section->getFile() : nullptr];
}

wxSectionCurveDescription& wxDataFileCurveDescription::findOrCreateDataSectionDescription(
    cCurvePlotDataSection* section, bool& created)
{
    created = false;
    for (wxSectionCurveDescription& description : mSections)
        if (description.getSection() == section) {
            // Curves added since (a reader that appends) get their styles now.
            description.init(countersOf(section), mStrongColours, description.getRepeat());
            return description;
        }
    mSections.emplace_back(section, mConfiguration);
    mSections.back().init(countersOf(section), mStrongColours);
    created = true;
    return mSections.back();
}

const wxSectionCurveDescription* wxDataFileCurveDescription::findDataSectionDescription(
    const cCurvePlotDataSection* section) const
{
    for (const wxSectionCurveDescription& description : mSections)
        if (description.getSection() == section)
            return &description;
    return nullptr;
}

wxCurveDescription wxDataFileCurveDescription::getCurveDescription(cCurvePlotDataFile& file,
                                                                   cCurvePlotDataSection* section, uint64_t index)
{
    if (!section)
        throw cLoggedException("wxSectionCurveDescription::getCurveDescription");
    bool created = false;
    return findOrCreateDataSectionDescription(section, created).getCurveDescription(index);
}

wxCurveDescription wxDataFileCurveDescription::getCurveDescription(cCurvePlotDataFile& file,
                                                                   const std::string& sectionName,
                                                                   const std::string& curveName)
{
    cCurvePlotDataSection* section = file.getDataSectionFromName(sectionName);
    if (!section)
        throw cLoggedException("The section \"" + sectionName + "\" was not found.");
    bool created = false;
    return findOrCreateDataSectionDescription(section, created)
        .getCurveDescription(curveName, countersOf(section), mStrongColours);
}

wxCurveDescriptionBase wxDataFileCurveDescription::getCurveDescriptionBase(cCurvePlotDataSection* section,
                                                                           uint64_t index)
{
    if (!section)
        throw cLoggedException("wxSectionCurveDescription::getCurveDescriptionBase");
    bool created = false;
    return findOrCreateDataSectionDescription(section, created).getCurveDescriptionBase(index);
}

bool wxDataFileCurveDescription::setCurveStyle(cCurvePlotDataSection* section, uint64_t index,
                                               const wxCurveStyle& style)
{
    if (!section)
        return false;
    bool created = false;
    return findOrCreateDataSectionDescription(section, created).setCurveStyle(index, style);
}

unsigned wxDataFileCurveDescription::setCurveStyleAllSections(const wxWaveExplorerCommand& command,
                                                              const cVxLogger& logger)
{
    using namespace waveExplorerAction;
    std::vector<cCurvePlotDataSection*> sections;
    std::string curveName;
    uint64_t curveIndex = cCurvePlotDataSection::npos;
    std::string sectionText;
    switch (command.actionType) {
    case cmd_set_curve_style_by_id_and_index:
    case cmd_set_curve_style_in_plot_by_id_and_index:
        curveIndex = static_cast<uint64_t>(command.getDoubleArg(1, -1.0));
        [[fallthrough]];
    case cmd_set_curve_style_by_id_and_name: {
        const double id = command.getDoubleArg(0, 0.0);
        sectionText = std::to_string(static_cast<long long>(id));
        if (cCurvePlotDataSection* section = mStore.findSectionFromId(static_cast<uint64_t>(id)))
            sections.push_back(section);
        if (command.actionType == cmd_set_curve_style_by_id_and_name)
            curveName = command.getStringArgument(0);
        break;
    }
    case cmd_set_curve_style:
    case cmd_set_curve_style_by_name:
        sectionText = command.getStringArgument(0);
        curveName = command.getStringArgument(1);
        sections = mStore.getAllDataSectionFromName(sectionText);
        break;
    default:
        logger.errorMsg("The command does not set a curve style.");
        return 0;
    }
    if (sections.empty()) {
        logger.errorMsg("The section \"" + sectionText + "\" was not found.");
        return 0;
    }
    unsigned changed = 0;
    for (cCurvePlotDataSection* section : sections) {
        const uint64_t index = curveName.empty() ? curveIndex : section->findVariableIndex(curveName);
        bool created = false;
        wxSectionCurveDescription& description = findOrCreateDataSectionDescription(section, created);
        if (index >= section->getNbOfVariables())
            continue;
        wxCurveStyle style = description.getCurveStyle(index);
        if (!style.setStyle(command)) {
            logger.errorMsg("Bad curve style arguments.");
            return changed;
        }
        description.setCurveStyle(index, style);
        ++changed;
    }
    if (!changed)
        logger.errorMsg("Can't find curve \"" + (curveName.empty() ? std::to_string(curveIndex) : curveName) + "\".");
    return changed;
}

returnCode wxDataFileCurveDescription::updateAfterReload(bool reloadCurves, const cVxLogger& logger)
{
    returnCode result = ok;
    for (wxSectionCurveDescription& description : mSections) {
        const returnCode one = description.updateAfterReload(&mStore, countersOf(description.getSection()),
                                                             reloadCurves, mStrongColours, logger);
        if (one != ok)
            result = one;
    }
    return result;
}

void wxDataFileCurveDescription::closeAllMarkedSections()
{
    mSections.remove_if([](const wxSectionCurveDescription& description) {
        const cCurvePlotDataSection* section = description.getSection();
        return !section || section->checkMustClose() || section->checkFileMustClose();
    });
}

void wxDataFileCurveDescription::clear()
{
    mSections.clear();
    mRandomIndices.clear();
}

bool wxDataFileCurveDescription::initListOfCurvesOnClipboard(const std::string& text, wxListOfCurveDescriptions& list,
                                                             const cVxLogger& logger) const
{
    wxListOfCurveDescriptions read;
    std::string sender;
    const bool xml = text.find("<vx_zelwave_curve_list") != std::string::npos;
    const bool good = xml ? read.readDndCurveListString(text, mStore, sender, logger)
                          : read.readCalculatorString(text, mStore, logger);
    if (!good || read.empty())
        return false;
    list = std::move(read);
    return true;
}

std::vector<wxCurveDescription> wxDataFileCurveDescription::getCurveDescriptionsForClipboardCurves(
    const wxListOfCurveDescriptions& list, const cVxLogger& logger)
{
    std::vector<wxCurveDescription> descriptions;
    for (const auto& entry : list.entries()) {
        if (!entry.section)
            continue;
        std::vector<uint64_t> indices(entry.curveIndices.begin(), entry.curveIndices.end());
        if (entry.allCurves)
            for (uint64_t i = 0; i < entry.section->getNbOfVariables(); ++i)
                indices.push_back(i);
        for (uint64_t index : indices) {
            try {
                descriptions.push_back(getCurveDescription(mStore, entry.section, index));
            } catch (const cLoggedException& failure) {
                logger.errorMsg("Failed to load curve from data base.");
                logger.infoMsg(failure.what());
            }
        }
    }
    return descriptions;
}

}  // namespace vx3
