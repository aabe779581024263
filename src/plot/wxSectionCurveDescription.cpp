#include "wxSectionCurveDescription.h"

#include <cctype>
#include <cmath>

#include "app/core/wxWaveExplorerConfiguration.h"
#include "base/cLoggedException.h"
#include "base/cPatternMatch.h"
#include "base/cVxLogger.h"
#include "base/cVxString.h"
#include "model/cCurvePlotDataSection.h"
#include "model/curveStyleTypes.h"
#include "model/dataType.h"
#include "plot/colourList.h"
#include "plot/wxListOfCurveDescriptions.h"

namespace vx3 {

using namespace curvePlotProperties;
using sectionCurveDescription::cAllRandomIndices;
using sectionCurveDescription::cRandomIndices;

namespace {
int xUnitOf(const cCurvePlotDataSection& section)
{
    const uint64_t sweeps = section.getNbOfSweepVariables();
    return sweeps ? static_cast<int>(section.getSweepVariable(sweeps - 1).getUnitIdentifier()) : 0;
}

// An integer-valued property, given as a number or as one of the words of table.
bool readStyleProperty(const cCurvePlotProperties& properties, unsigned kind, int (*fromWord)(const std::string&),
                       int& value)
{
    const size_t at = properties.findProperty(kind);
    if (at >= properties.getNbOfProperties())
        return false;
    const cProperty& property = properties.getProperty(at);
    double number = 0;
    if (property.getAsDouble(number) && std::isfinite(number)) {
        value = static_cast<int>(std::lround(number));
        return true;
    }
    if (property.isText() && fromWord) {
        const int word = fromWord(property.getText());
        if (word >= 0) {
            value = word;
            return true;
        }
    }
    if (property.isText() && !fromWord) {
        double parsed = 0;
        if (cVxString(property.getText()).toDouble(parsed) && std::isfinite(parsed)) {
            value = static_cast<int>(std::lround(parsed));
            return true;
        }
    }
    return false;
}

bool readColourProperty(const cCurvePlotProperties& properties, unsigned kind, unsigned& colour)
{
    const size_t at = properties.findProperty(kind);
    if (at >= properties.getNbOfProperties())
        return false;
    const cProperty& property = properties.getProperty(at);
    if (property.isText())
        return parseColourString(property.getText(), colour);
    if (property.isInteger() && property.getInteger() >= 0 && property.getInteger() <= 0xffffff) {
        colour = static_cast<unsigned>(property.getInteger());
        return true;
    }
    return false;
}
}  // namespace

bool wxSectionCurveDescription::checkDefinesSweepMatrix() const
{
    return mSection && mSection->getNbOfSweepVariables() > 1;
}

void wxSectionCurveDescription::getDefaultStyle(wxCurveStyle& style, const cCurvePlotDataSection& section) const
{
    style = wxCurveStyle();
    if (section.getNbOfSweepVariables() == 0) {
        // Values without an x axis are samples: marks show them better than a line.
        style.realLineStyle = style.imagLineStyle = data_points;
        style.realSymbol = style.imagSymbol = crosses;
        return;
    }
    if (section.getNbOfSweepVariables() > 1) {
        // One curve per cut: plain lines keep a family of cuts readable.
        style.realLineStyle = style.imagLineStyle = solid_line;
        style.realSymbol = style.imagSymbol = no_symbol;
        return;
    }
    const cCurvePlotSweepVariable& x = section.getSweepVariable(0);
    style = getDefaultStyle(section, x);
}

wxCurveStyle wxSectionCurveDescription::getDefaultStyle(const cCurvePlotDataSection& section,
                                                        const cCurvePlotVariable& variable) const
{
    wxCurveStyle style;
    style.realLineStyle = style.imagLineStyle = automatic_line;
    int symbol = get_symbol_from_string(mConfiguration.getOptionText("default_curve_point_style"));
    style.realSymbol = style.imagSymbol = symbol >= 0 ? symbol : automatic_symbol;
    if (checkCurveIsDigital(variable.getDataType())) {
        style.realLineStyle = style.imagLineStyle = solid_line;
        style.realSymbol = style.imagSymbol = no_symbol;
    }
    return style;
}

wxCurveStyle wxSectionCurveDescription::dealStyle(uint64_t curveIndex, cRandomIndices& counters,
                                                  bool strongColours) const
{
    const cCurvePlotVariable& variable = mSection->getVariable(curveIndex);
    wxCurveStyle style;
    if (checkDefinesSweepMatrix()) {
        getDefaultStyle(style, *mSection);
    } else {
        style = getDefaultStyle(*mSection, variable);
        // A default style only says "automatic" or "default": the plot decides the rest.
        auto line = [](int& value) { value = value == automatic_line ? automatic_line : default_line; };
        auto mark = [](int& value) { value = value == automatic_symbol ? automatic_symbol : default_symbol; };
        line(style.realLineStyle);
        line(style.imagLineStyle);
        mark(style.realSymbol);
        mark(style.imagSymbol);
    }
    const double width = mConfiguration.getOptionNumber("default_curve_line_width", 0, 1.0);
    style.realLineWidth = style.imagLineWidth =
        wxCurveStyle::clampLineWidth(std::isfinite(width) ? static_cast<int>(std::lround(width)) : 1);

    bool ownReal = false, ownImag = false;
    if (const cCurvePlotProperties* properties = mSection->getCurveProperties(curveIndex)) {
        ownReal = readColourProperty(*properties, color, style.realColour);
        ownImag = readColourProperty(*properties, color_imaginary_part, style.imagColour);
        int value = 0;
        if (readStyleProperty(*properties, line_width, nullptr, value))
            style.realLineWidth = wxCurveStyle::clampLineWidth(value);
        if (readStyleProperty(*properties, line_width_imaginary_part, nullptr, value))
            style.imagLineWidth = wxCurveStyle::clampLineWidth(value);
        if (readStyleProperty(*properties, line_style, get_line_style_from_string, value) && value >= 0 &&
            value <= default_line)
            style.realLineStyle = value;
        if (readStyleProperty(*properties, line_style_imaginary_part, get_line_style_from_string, value) &&
            value >= 0 && value <= default_line)
            style.imagLineStyle = value;
        if (readStyleProperty(*properties, symbol, get_symbol_from_string, value) && value >= 0 &&
            value <= default_symbol)
            style.realSymbol = value;
        if (readStyleProperty(*properties, symbol_imaginary_part, get_symbol_from_string, value) && value >= 0 &&
            value <= default_symbol)
            style.imagSymbol = value;
    }
    if (!ownReal) {
        style.realColour = colourList::get_colour_from_list(counters.colourIndex, 255, strongColours ? 0 : 100).rgb();
        ++counters.colourIndex;
    }
    if (!ownImag)
        style.imagColour = style.realColour;
    return style;
}

void wxSectionCurveDescription::init(cAllRandomIndices& randomIndices, bool strongColours, unsigned repeat)
{
    if (!mSection)
        return;
    if (repeat == 0)
        repeat = 1;
    if (mIndex.empty())
        mRepeat = repeat;
    cRandomIndices& counters = randomIndices.get(xUnitOf(*mSection));
    for (uint64_t curve = mIndex.size() / mRepeat; curve < mSection->getNbOfVariables(); ++curve)
        for (unsigned r = 0; r < mRepeat; ++r) {
            mStyles.push_back(dealStyle(curve, counters, strongColours));
            mIndex.push_back(&mStyles.back());
        }
}

returnCode wxSectionCurveDescription::updateAfterReload(cCurvePlotDataFile* file, cAllRandomIndices& randomIndices,
                                                        bool reloadCurves, bool strongColours,
                                                        const cVxLogger& logger)
{
    if (!mSection)
        return failed;
    returnCode result = ok;
    if (reloadCurves) {
        result = mSection->reloadReferencedCurvesFromDb(logger);
        mSection->computeMinMaxValuesOfLoadedCurves();
    }
    if (mSection->getNbOfVariables() * mRepeat > mIndex.size())
        init(randomIndices, strongColours, mRepeat);
    return result;
}

const wxCurveStyle& wxSectionCurveDescription::getCurveStyle(uint64_t index, unsigned repetition) const
{
    const uint64_t at = index * mRepeat + repetition;
    if (repetition >= mRepeat || at >= mIndex.size())
        throw cLoggedException("wxSectionCurveDescription::getCurveDescription");
    return *mIndex[at];
}

wxCurveDescription wxSectionCurveDescription::getCurveDescription(uint64_t index) const
{
    if (!mSection || index >= mSection->getNbOfVariables() || index * mRepeat >= mIndex.size())
        throw cLoggedException("wxSectionCurveDescription::getCurveDescription");
    wxCurveDescription description;
    description.init(mSection, index, *mIndex[index * mRepeat]);
    return description;
}

wxCurveDescriptionBase wxSectionCurveDescription::getCurveDescriptionBase(uint64_t index) const
{
    if (!mSection || index >= mSection->getNbOfVariables() || index * mRepeat >= mIndex.size())
        throw cLoggedException("wxSectionCurveDescription::getCurveDescriptionBase");
    wxCurveDescriptionBase description;
    description.init(mSection, index, *mIndex[index * mRepeat]);
    return description;
}

wxCurveDescription wxSectionCurveDescription::getCurveDescription(const std::string& curveName,
                                                                  cAllRandomIndices& randomIndices,
                                                                  bool strongColours)
{
    const uint64_t index = mSection ? mSection->findVariableIndex(curveName) : cCurvePlotDataSection::npos;
    if (!mSection || index >= mSection->getNbOfVariables())
        throw cLoggedException("wxSectionCurveDescription::getCurveDescription");
    init(randomIndices, strongColours, mRepeat);
    return getCurveDescription(index);
}

bool wxSectionCurveDescription::setCurveStyle(uint64_t index, const wxCurveStyle& style, unsigned repetition)
{
    const uint64_t at = index * mRepeat + repetition;
    if (repetition >= mRepeat || at >= mIndex.size())
        return false;
    *mIndex[at] = style;
    return true;
}

void wxSectionCurveDescription::setCurveStyleAllCurves(const wxCurveStyle& style)
{
    for (wxCurveStyle& held : mStyles)
        held = style;
}

void wxSectionCurveDescription::addAllCurvesToCurveDescriptions(wxListOfCurveDescriptions& list) const
{
    if (mSection)
        list.addSection(mSection);
}

void wxSectionCurveDescription::addAllCurvesToClipBoardCurves(wxListOfCurveDescriptions& list,
                                                              const cVxLogger& logger) const
{
    if (!mSection)
        return;
    for (uint64_t index = 0; index < mSection->getNbOfVariables(); ++index)
        list.addCurve(mSection, index, logger);
}

namespace {

std::string lowered(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

bool checkNameMatches(const std::string& pattern, const std::string& name, bool caseSensitive)
{
    // "*" and "?" read as wildcards; only characters that wildcards lack make a regular expression.
    const bool regular = pattern.find_first_of("[]()|^$+{}\\") != std::string::npos &&
                         cRegularExpressionPatternMatch::checkIsRegularExpression(pattern);
    if (regular)
        return cRegularExpressionPatternMatch::checkMatches(caseSensitive ? pattern : "(?i)" + pattern, name);
    return caseSensitive ? cWildCardPatternMatch::checkMatches(pattern, name)
                         : cWildCardPatternMatch::checkMatches(lowered(pattern), lowered(name));
}

}  // namespace

uint64_t wxSectionCurveDescription::findSectionsAndCurves(const std::string& pattern, const std::string& sectionPattern,
                                                          bool caseSensitive, wxListOfCurveDescriptions& list,
                                                          const cVxLogger& logger) const
{
    if (!mSection || pattern.empty())
        return 0;
    if (!sectionPattern.empty() && !checkNameMatches(sectionPattern, mSection->name(), caseSensitive))
        return 0;
    uint64_t added = 0;
    for (uint64_t index = 0; index < mSection->getNbOfVariables(); ++index)
        if (checkNameMatches(pattern, mSection->getVariable(index).name(), caseSensitive) &&
            list.addCurve(mSection, index, logger))
            ++added;
    return added;
}

}  // namespace vx3
