#include "wxListOfCurveDescriptions.h"

#include <algorithm>
#include <tinyxml2.h>

#include "base/cVxLogger.h"
#include "base/cVxString.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cCurvePlotDataSection.h"

namespace vx3 {

using listOfCurveDescriptions::cSectionEntry;

namespace {

// Inside the calculator's double quotes a quote and a backslash are escaped by a backslash.
std::string escapeQuoted(const std::string& text)
{
    std::string out;
    for (char c : text) {
        if (c == '"' || c == '\\')
            out += '\\';
        out += c;
    }
    return out;
}

unsigned busWidthOf(const cCurvePlotDataSection& section, uint64_t index)
{
    if (const cCurvePlotProperties* properties = section.getCurveProperties(index)) {
        const size_t left = properties->findProperty(curvePlotProperties::left_bit_number);
        const size_t right = properties->findProperty(curvePlotProperties::right_bit_number);
        double l = 0, r = 0;
        if (left < properties->getNbOfProperties() && right < properties->getNbOfProperties() &&
            properties->getProperty(left).getAsDouble(l) && properties->getProperty(right).getAsDouble(r))
            return static_cast<unsigned>(std::abs(l - r)) + 1;
    }
    const cCurvePlotDataType* type = section.getVariable(index).getType();
    return type && type->checkIsDigital() && type->getConstantStringSize() ? type->getConstantStringSize() : 1;
}

std::string sweepArraysMessage(const char* what, size_t given, uint64_t sweeps)
{
    return std::string(what) + std::to_string(given) + ") does not correspond to the number of sweep variables (" +
           std::to_string(sweeps) + ").";
}
}  // namespace

cSectionEntry& wxListOfCurveDescriptions::entryFor(cCurvePlotDataSection* section)
{
    for (cSectionEntry& entry : mEntries)
        if (entry.section == section)
            return entry;
    mEntries.push_back(cSectionEntry{section, false, {}});
    return mEntries.back();
}

void wxListOfCurveDescriptions::insertUnitIdentifiers(const cCurvePlotDataSection& section, uint64_t index)
{
    if (index < section.getNbOfVariables())
        mUnitIdentifiers.insert(section.getVariable(index).getUnitIdentifier());
    else if (section.getNbOfSweepVariables())
        mUnitIdentifiers.insert(section.getSweepVariable(section.getNbOfSweepVariables() - 1).getUnitIdentifier());
}

void wxListOfCurveDescriptions::addSection(cCurvePlotDataSection* section)
{
    if (!section)
        return;
    cSectionEntry& entry = entryFor(section);
    entry.allCurves = true;
    entry.curveIndices.clear();
    insertUnitIdentifiers(*section, cCurvePlotDataSection::npos);
}

void wxListOfCurveDescriptions::addSectionInstance(cCurvePlotDataSection* section, const std::string& instanceName)
{
    if (section)
        entryFor(section);
    if (std::find(mInstances.begin(), mInstances.end(), instanceName) == mInstances.end())
        mInstances.push_back(instanceName);
}

bool wxListOfCurveDescriptions::addCurve(cCurvePlotDataSection* section, uint64_t index, const cVxLogger& logger)
{
    if (!section || index >= section->getNbOfVariables() || index > 0xffffffffULL) {
        logger.errorMsg("Can't add curve.");
        return false;
    }
    cSectionEntry& entry = entryFor(section);
    if (!entry.allCurves &&
        std::find(entry.curveIndices.begin(), entry.curveIndices.end(), index) == entry.curveIndices.end())
        entry.curveIndices.push_back(static_cast<unsigned>(index));
    insertUnitIdentifiers(*section, index);
    return true;
}

bool wxListOfCurveDescriptions::addCurve(cCurvePlotDataSection* section, const std::string& curveName,
                                         const cVxLogger& logger)
{
    return addCurve(section, section ? section->findVariableIndex(curveName) : cCurvePlotDataSection::npos, logger);
}

bool wxListOfCurveDescriptions::addCurve(cCurvePlotDataFile& store, uint64_t sectionId, uint64_t index,
                                         const cVxLogger& logger)
{
    return addCurve(store.findSectionFromId(sectionId), index, logger);
}

uint64_t wxListOfCurveDescriptions::getNumberOfCurves(bool& wholeSections, bool& withInstances) const
{
    wholeSections = false;
    withInstances = !mInstances.empty();
    uint64_t count = 0;
    for (const cSectionEntry& entry : mEntries) {
        if (entry.allCurves) {
            wholeSections = true;
            count += entry.section ? entry.section->getNbOfVariables() : 0;
        } else {
            count += entry.curveIndices.size();
        }
    }
    return count;
}

bool wxListOfCurveDescriptions::checkJustOneCurveDefined() const
{
    bool whole = false, instances = false;
    return getNumberOfCurves(whole, instances) == 1 && !whole && !instances;
}

void wxListOfCurveDescriptions::closeAllThatIsMarked()
{
    std::erase_if(mEntries, [](const cSectionEntry& entry) { return !entry.section || entry.section->checkMustClose(); });
    for (cSectionEntry& entry : mEntries)
        std::erase_if(entry.curveIndices, [&](unsigned index) {
            return index >= entry.section->getNbOfVariables() || entry.section->getVariable(index).checkMustClose();
        });
}

void wxListOfCurveDescriptions::clear()
{
    mEntries.clear();
    mInstances.clear();
    mUnitIdentifiers.clear();
    sweepIndices.clear();
    sweepPermutation.clear();
}

bool wxListOfCurveDescriptions::createDndCurveListString(int format, std::string& text, const std::string& instanceId,
                                                         const cVxLogger& logger) const
{
    text.clear();
    if (format == listOfCurveDescriptions::curve_list_xml) {
        text = "<?xml version=\"1.0\" ?>\n";
        text += "<vx_zelwave_curve_list instance_id=\"" + vxString::escape_markup(instanceId, true, true) + "\" >\n";
        for (const cSectionEntry& entry : mEntries) {
            if (!entry.section)
                continue;
            const cCurvePlotDataSection& section = *entry.section;
            const std::string head = "<curve section_id=\"" + std::to_string(section.getSectionId()) +
                                     "\" section=\"" + vxString::escape_markup(section.name(), true, true) + "\" name=\"";
            if (entry.allCurves) {
                text += head + "*\" />\n";
                continue;
            }
            for (unsigned index : entry.curveIndices) {
                if (index >= section.getNbOfVariables())
                    continue;
                const cCurvePlotVariable& curve = section.getVariable(index);
                text += head + vxString::escape_markup(curve.name(), true, true) + "\" index=\"" + std::to_string(index) + "\" unit=\"" +
                        vxString::escape_markup(curve.getUnitStr(), true, true) + "\" bus_width=\"" +
                        std::to_string(busWidthOf(section, index)) + "\" />\n";
            }
        }
        for (const std::string& instance : mInstances)
            text += "<instance name=\"" + vxString::escape_markup(instance, true, true) + "\" />\n";
        text += "</vx_zelwave_curve_list>\n";
        return true;
    }
    if (format != listOfCurveDescriptions::calculator_expression) {
        logger.errorMsg("Unknown curve list format " + std::to_string(format) + ".");
        return false;
    }
    std::vector<std::string> terms;
    for (const cSectionEntry& entry : mEntries) {
        if (!entry.section)
            continue;
        const cCurvePlotDataSection& section = *entry.section;
        const uint64_t sweeps = section.getNbOfSweepVariables();
        if (!sweepIndices.empty() && sweepIndices.size() != sweeps) {
            logger.errorMsg(sweepArraysMessage("Sweep index array size (", sweepIndices.size(), sweeps));
            text.clear();
            return false;
        }
        if (!sweepPermutation.empty() && sweepPermutation.size() != sweeps) {
            logger.errorMsg(sweepArraysMessage("Sweep permutation array size (", sweepPermutation.size(), sweeps));
            text.clear();
            return false;
        }
        std::vector<unsigned> indices = entry.curveIndices;
        if (entry.allCurves)
            for (uint64_t i = 0; i < section.getNbOfVariables() && i <= 0xffffffffULL; ++i)
                indices.push_back(static_cast<unsigned>(i));
        for (unsigned index : indices) {
            if (index >= section.getNbOfVariables())
                continue;
            const cCurvePlotVariable& curve = section.getVariable(index);
            // A cut of a sweep matrix goes by the name that selects it.
            std::string name = curve.name();
            if (!sweepIndices.empty()) {
                std::vector<uint64_t> permutation = sweepPermutation;
                if (permutation.empty())
                    section.getDefaultSweepPermutationArray(permutation);
                name = curve.getSweepMatrixCutName(section, permutation, sweepIndices);
            }
            terms.push_back("waveform(\"" + escapeQuoted(section.name()) + "\", \"" + escapeQuoted(name) + "\")");
        }
    }
    if (terms.empty()) {
        logger.errorMsg("No curves defined.");
        return false;
    }
    for (size_t i = 0; i < terms.size(); ++i)
        text += (i ? ", " : "") + terms[i];
    return true;
}

bool wxListOfCurveDescriptions::readDndCurveListString(const std::string& text, cCurvePlotDataFile& store,
                                                       std::string& instanceId, const cVxLogger& logger)
{
    tinyxml2::XMLDocument document;
    if (document.Parse(text.data(), text.size()) != tinyxml2::XML_SUCCESS) {
        const char* reason = document.ErrorStr();
        logger.errorMsg(std::string("The curve list is not valid XML: ") + (reason ? reason : "unknown error") + ".");
        return false;
    }
    const tinyxml2::XMLElement* root = document.RootElement();
    if (!root || std::string(root->Name()) != "vx_zelwave_curve_list") {
        logger.errorMsg("The text is not a curve list: its root element is not \"vx_zelwave_curve_list\".");
        return false;
    }
    const char* id = root->Attribute("instance_id");
    instanceId = id ? id : "";
    bool allFound = true;
    for (const tinyxml2::XMLElement* element = root->FirstChildElement(); element;
         element = element->NextSiblingElement()) {
        const std::string tag = element->Name();
        if (tag == "instance") {
            const char* name = element->Attribute("name");
            if (name)
                addSectionInstance(nullptr, name);
            continue;
        }
        if (tag != "curve")
            continue;
        // The id names the section in this process; the name finds it in another one.
        cCurvePlotDataSection* section = nullptr;
        uint64_t sectionId = 0;
        if (element->QueryUnsigned64Attribute("section_id", &sectionId) == tinyxml2::XML_SUCCESS)
            section = store.findSectionFromId(sectionId);
        const char* sectionName = element->Attribute("section");
        if (sectionName && (!section || section->name() != sectionName))
            section = store.getDataSectionFromName(sectionName);
        if (!section) {
            logger.errorMsg("The section \"" + std::string(sectionName ? sectionName : "") + "\" was not found.");
            allFound = false;
            continue;
        }
        const char* name = element->Attribute("name");
        if (name && std::string(name) == "*") {
            addSection(section);
            continue;
        }
        uint64_t index = cCurvePlotDataSection::npos;
        const bool byIndex = element->QueryUnsigned64Attribute("index", &index) == tinyxml2::XML_SUCCESS;
        if (!byIndex || index >= section->getNbOfVariables() || (name && section->getVariable(index).name() != name))
            index = name ? section->findVariableIndex(name) : cCurvePlotDataSection::npos;
        if (!addCurve(section, index, logger))
            allFound = false;
    }
    return allFound || !empty();
}

bool wxListOfCurveDescriptions::readCalculatorString(const std::string& text, cCurvePlotDataFile& store,
                                                     const cVxLogger& logger)
{
    size_t at = 0;
    auto skipBlanks = [&]() {
        while (at < text.size() && (text[at] == ' ' || text[at] == '\t' || text[at] == '\n' || text[at] == '\r'))
            ++at;
    };
    auto expect = [&](char c) {
        skipBlanks();
        if (at < text.size() && text[at] == c) {
            ++at;
            return true;
        }
        return false;
    };
    auto quoted = [&](std::string& out) {
        if (!expect('"'))
            return false;
        out.clear();
        while (at < text.size() && text[at] != '"') {
            if (text[at] == '\\' && at + 1 < text.size())
                ++at;
            out += text[at++];
        }
        return at < text.size() && text[at++] == '"';
    };
    std::vector<std::pair<std::string, std::string>> names;
    skipBlanks();
    while (at < text.size()) {
        std::string section, curve;
        if (text.compare(at, 8, "waveform") != 0 || (at += 8, !expect('(')) || !quoted(section) || !expect(',') ||
            !quoted(curve) || !expect(')')) {
            logger.errorMsg("The calculator text is not a list of waveform(\"section\", \"curve\") at position " +
                            std::to_string(at) + ".");
            return false;
        }
        names.emplace_back(section, curve);
        skipBlanks();
        if (at < text.size() && !expect(',')) {
            logger.errorMsg("Expected \",\" at position " + std::to_string(at) + " of the calculator text.");
            return false;
        }
        skipBlanks();
    }
    bool allFound = true;
    for (const auto& [sectionName, curveName] : names) {
        cCurvePlotDataSection* section = store.getDataSectionFromName(sectionName);
        if (!section) {
            logger.errorMsg("The section \"" + sectionName + "\" was not found.");
            allFound = false;
            continue;
        }
        if (!addCurve(section, curveName, logger))
            allFound = false;
    }
    return allFound && !names.empty();
}

bool wxListOfCurveDescriptions::loadCurvesFromDb(const cVxLogger& logger, const std::atomic<bool>* interrupt) const
{
    std::vector<std::pair<cCurvePlotDataSection*, uint64_t>> curves;
    for (const cSectionEntry& entry : mEntries) {
        if (!entry.section)
            continue;
        if (entry.allCurves)
            for (uint64_t i = 0; i < entry.section->getNbOfVariables(); ++i)
                curves.emplace_back(entry.section, i);
        else
            for (unsigned index : entry.curveIndices)
                curves.emplace_back(entry.section, index);
    }
    if (curves.empty()) {
        logger.warnMsg("No curves defined for loading from database.");
        return false;
    }
    logger.infoMsg("Loading curves from database.");
    uint64_t loaded = 0, failedCount = 0;
    for (const auto& [section, index] : curves) {
        if (interrupt && interrupt->load()) {
            if (loaded == 0)
                logger.warnMsg("Loading of curves was interrupted.");
            else
                logger.warnMsg("Loading of curves interrupted, loaded " + std::to_string(loaded) + " of " +
                               std::to_string(curves.size()) + " curves.");
            return false;
        }
        bool good = index < section->getNbOfVariables() && section->loadSweepVariablesFromDb(logger) == ok &&
                    section->getVariable(index).loadDataFromDb(logger, section, index) == ok;
        if (good)
            ++loaded;
        else {
            ++failedCount;
            logger.errorMsg("Failed to load curve from data base.");
        }
    }
    if (failedCount) {
        if (failedCount == curves.size())
            logger.errorMsg("Failed to load curves from data base.");
        return false;
    }
    return true;
}

}  // namespace vx3
