// Styles dealt to the curves of sections and files, kept through reloads, and descriptions that
// hold their curves' values.
#include <gtest/gtest.h>

#include "../base/testSupport.h"
#include "app/core/wxWaveExplorerCommand.h"
#include "app/core/wxWaveExplorerConfiguration.h"
#include "base/cLoggedException.h"
#include "base/cVxLogger.h"
#include "model/cCurvePlotDataFile.h"
#include "model/curveStyleTypes.h"
#include "plot/colourList.h"
#include "plot/wxDataFileCurveDescription.h"
#include "plot/wxListOfCurveDescriptions.h"
#include "readers/cCurvePlotParser.h"

using namespace vx3;
using namespace vx3::curvePlotProperties;

namespace {
unsigned pale(uint64_t index) { return colourList::get_colour_from_list(index, 255, 100).rgb(); }
unsigned strong(uint64_t index) { return colourList::get_colour_from_list(index, 255, 0).rgb(); }

// A section of one file over an x axis of the given unit, with count curves of points values.
cCurvePlotDataSection& addSection(cCurvePlotDataFile& store, cFileDbSupport& file, const std::string& name,
                                  curvePlotDataType::dataUnit xUnit, int count, uint64_t points = 4)
{
    cCurvePlotDataSection& section = *store.addDataSection(name, &file);
    const cCurvePlotDataType* x = store.addType("x", data_double, xUnit);
    const cCurvePlotDataType* y = store.addType("v", data_double, curvePlotDataType::volt);
    std::vector<double> values(points);
    for (uint64_t i = 0; i < points; ++i)
        values[i] = static_cast<double>(i);
    section.getSweepVariable(section.addSweepVariable(x, "x", 0)).setDoubleValues(values.data(), points);
    for (int i = 0; i < count; ++i)
        section.getVariable(section.addVariable(y, name + "_" + std::to_string(i))).setDoubleValues(values.data(), points);
    return section;
}
}  // namespace

TEST(SectionCurveDescription, ColoursAreDealtPerXUnitAndPerFile)
{
    cCurvePlotDataFile store;
    cFileDbSupport& first = store.findDbSupport("first.raw");
    cFileDbSupport& second = store.findDbSupport("second.raw");
    cCurvePlotDataSection& tran = addSection(store, first, "tran", curvePlotDataType::second, 3);
    cCurvePlotDataSection& ac = addSection(store, first, "ac", curvePlotDataType::hertz, 2);
    cCurvePlotDataSection& tran2 = addSection(store, first, "tran2", curvePlotDataType::second, 2);
    cCurvePlotDataSection& other = addSection(store, second, "tran", curvePlotDataType::second, 1);
    // A curve whose file says how it looks: its colour is its own and takes no turn of the list.
    cCurvePlotProperties own;
    own.addProperty(cProperty::makeText(color, "#123456"));
    own.addProperty(cProperty::makeInteger(line_width, 9));
    own.addProperty(cProperty::makeText(line_style, "dashed line"));
    own.addProperty(cProperty::makeText(symbol_imaginary_part, "circles"));
    tran2.addCurveProperties(0, own);

    wxWaveExplorerConfiguration configuration;
    wxDataFileCurveDescription styles(store, configuration);
    bool created = false;
    const wxSectionCurveDescription& tranStyles = styles.findOrCreateDataSectionDescription(&tran, created);
    EXPECT_TRUE(created);
    const wxSectionCurveDescription& acStyles = styles.findOrCreateDataSectionDescription(&ac, created);
    const wxSectionCurveDescription& tran2Styles = styles.findOrCreateDataSectionDescription(&tran2, created);
    styles.setStrongColours(true);
    const wxSectionCurveDescription& otherStyles = styles.findOrCreateDataSectionDescription(&other, created);
    EXPECT_EQ(&styles.findOrCreateDataSectionDescription(&tran, created), &tranStyles);
    EXPECT_FALSE(created);
    EXPECT_EQ(styles.getNbOfSectionDescriptions(), 4u);

    // Transient curves of the first file walk the list together; AC curves start anew.
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(tranStyles.getCurveStyle(i).realColour, pale(i)) << i;
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(acStyles.getCurveStyle(i).realColour, pale(i)) << i;
    const wxCurveStyle& fromFile = tran2Styles.getCurveStyle(0);
    EXPECT_EQ(fromFile.realColour, 0x123456u);
    EXPECT_EQ(fromFile.imagColour, 0x123456u) << "no imaginary colour of its own: the real one";
    EXPECT_EQ(fromFile.realLineWidth, 5) << "held to 1 .. 5";
    EXPECT_EQ(fromFile.realLineStyle, dashed_line);
    EXPECT_EQ(fromFile.imagSymbol, circles);
    EXPECT_EQ(tran2Styles.getCurveStyle(1).realColour, pale(3)) << "the fourth transient colour of the file";
    // The second file counts for itself, here with strong colours.
    EXPECT_EQ(otherStyles.getCurveStyle(0).realColour, strong(0));

    // A dealt style says only "automatic" or "default", is one pixel wide and is still automatic.
    const wxCurveStyle& dealt = tranStyles.getCurveStyle(1);
    EXPECT_TRUE(dealt.realLineStyle == automatic_line || dealt.realLineStyle == default_line);
    EXPECT_TRUE(dealt.realSymbol == automatic_symbol || dealt.realSymbol == default_symbol);
    EXPECT_EQ(dealt.realLineWidth, 1);
    EXPECT_EQ(dealt.imagColour, dealt.realColour);
    EXPECT_TRUE(dealt.checkIsAutomatic());
    EXPECT_THROW(tranStyles.getCurveStyle(3), cLoggedException);

    // A style set by command reaches the curve in every section of that name, and only there.
    cVxStringLogger sink;
    cVxLogger logger;
    logger.setLoggerCallBack(&sink);
    wxWaveExplorerCommand command;
    ASSERT_TRUE(command.parseCommandString("set_curve_style_by_name tran tran_0 dashed_line crosses 2 #00ff00", logger));
    EXPECT_EQ(styles.setCurveStyleAllSections(command, logger), 2u) << sink.getBufferAsString();
    EXPECT_EQ(tranStyles.getCurveStyle(0).realColour, 0x00ff00u);
    EXPECT_EQ(otherStyles.getCurveStyle(0).realColour, 0x00ff00u) << "the second file's section is also \"tran\"";
    EXPECT_EQ(tran2Styles.getCurveStyle(0).realColour, 0x123456u);
    EXPECT_EQ(tranStyles.getCurveStyle(1).realColour, pale(1));
    ASSERT_TRUE(command.parseCommandString("set_curve_style_by_name nowhere x solid_line crosses 2 #00ff00", logger));
    EXPECT_EQ(styles.setCurveStyleAllSections(command, logger), 0u);
    EXPECT_NE(sink.getBufferAsString().find("The section \"nowhere\" was not found."), std::string::npos);
    const std::string byId = "set_curve_style_by_id_and_index " + std::to_string(ac.getSectionId()) +
                             " 1 automatic automatic 1 #0000ff";
    ASSERT_TRUE(command.parseCommandString(byId, logger));
    EXPECT_EQ(styles.setCurveStyleAllSections(command, logger), 1u);
    EXPECT_EQ(acStyles.getCurveStyle(1).realColour, 0x0000ffu);
    EXPECT_EQ(acStyles.getCurveStyle(1).realLineStyle, default_line);

    // Closing a section drops its styles.
    ac.setFlagMustClose(true);
    styles.closeAllMarkedSections();
    EXPECT_EQ(styles.getNbOfSectionDescriptions(), 3u);
    EXPECT_EQ(styles.findDataSectionDescription(&ac), nullptr);
}

TEST(SectionCurveDescription, RepeatedStylesAndSectionsWithoutXAxis)
{
    cCurvePlotDataFile store;
    cFileDbSupport& file = store.findDbSupport("runs.raw");
    cCurvePlotDataSection& section = addSection(store, file, "dc", curvePlotDataType::volt, 2);
    wxWaveExplorerConfiguration configuration;
    sectionCurveDescription::cAllRandomIndices counters;
    wxSectionCurveDescription styles(&section, configuration);
    styles.init(counters, true, 3);
    ASSERT_EQ(styles.getNbOfStyles(), 6u);
    for (unsigned curve = 0; curve < 2; ++curve)
        for (unsigned r = 0; r < 3; ++r)
            EXPECT_EQ(styles.getCurveStyle(curve, r).realColour, strong(curve * 3 + r));
    EXPECT_THROW(styles.getCurveStyle(0, 3), cLoggedException);
    EXPECT_EQ(counters.indices().at(curvePlotDataType::volt).colourIndex, 6u);
    styles.init(counters, true, 3);
    EXPECT_EQ(styles.getNbOfStyles(), 6u) << "described curves keep their styles";

    cCurvePlotDataSection& bare = *store.addDataSection("samples", &file);
    bare.addVariable(store.addType("v", data_double, curvePlotDataType::volt), "s");
    wxCurveStyle style;
    styles.getDefaultStyle(style, bare);
    EXPECT_EQ(style.realLineStyle, data_points);
    wxCurveDescription description;
    try {
        description.init(&bare, 0, style);
        ADD_FAILURE() << "a curve without x axis can't be plotted";
    } catch (const cLoggedException& error) {
        EXPECT_NE(std::string(error.what()).find("wxCurveDescription::init section without sweep variable"),
                  std::string::npos);
    }
    EXPECT_FALSE(description.checkIsVariable());
    EXPECT_EQ(bare.getVariable(0).getReferenceCount(), 0);
}

TEST(CurveDescription, HoldsTheValuesWhileItLives)
{
    cCurvePlotDataFile store;
    cFileDbSupport& file = store.findDbSupport("one.raw");
    cCurvePlotDataSection& section = addSection(store, file, "op", curvePlotDataType::second, 2, 1);
    wxWaveExplorerConfiguration configuration;
    wxDataFileCurveDescription styles(store, configuration);
    {
        wxCurveDescription description = styles.getCurveDescription(store, &section, 1);
        EXPECT_EQ(description.getName(), "op_1");
        EXPECT_EQ(description.getCompleteName(), section.completeName() + " : op_1");
        EXPECT_EQ(description.getSweepVariableUnitIdentifier(), unsigned(curvePlotDataType::second));
        EXPECT_EQ(description.getVariableUnitIdentifier(), unsigned(curvePlotDataType::volt));
        EXPECT_EQ(description.size(), 1u);
        EXPECT_EQ(section.getVariable(1).getReferenceCount(), 1);
        EXPECT_EQ(section.getSweepVariable(0).getReferenceCount(), 1);
        // One point draws no line: it shows a cross instead of nothing.
        wxCurveStyle none = styles.getCurveDescriptionBase(&section, 1).style();
        none.realSymbol = no_symbol;
        description.init(&section, 1, none);
        EXPECT_EQ(description.style().realSymbol, crosses);
        EXPECT_EQ(section.getVariable(1).getReferenceCount(), 1) << "init let go of what it held";
        {
            wxCurveDescription copy = description;
            EXPECT_EQ(section.getVariable(1).getReferenceCount(), 2);
            copy.init(&section, 0, none);
            EXPECT_EQ(section.getVariable(1).getReferenceCount(), 1);
            EXPECT_EQ(section.getVariable(0).getReferenceCount(), 1);
        }
        EXPECT_EQ(section.getVariable(0).getReferenceCount(), 0);
        EXPECT_EQ(section.getSweepVariable(0).getReferenceCount(), 1);
        EXPECT_THROW(styles.getCurveDescription(store, &section, 2), cLoggedException);
        EXPECT_THROW(styles.getCurveDescription(store, "op", "nothing"), cLoggedException);
        EXPECT_EQ(styles.getCurveDescription(store, "op", "op_0").getCurveIndex(), 0u);
        wxCurveDescriptionBase unbound;
        EXPECT_THROW(unbound.curvePlotVariable(), cLoggedException);
        EXPECT_THROW(unbound.curvePlotSweepVariable(), cLoggedException);
        unbound.init(&section, 7);
        EXPECT_EQ(unbound.getSection(), nullptr) << "an index past the end binds to nothing";
    }
    EXPECT_EQ(section.getVariable(1).getReferenceCount(), 0);
    EXPECT_EQ(section.getSweepVariable(0).getReferenceCount(), 0);
}

TEST(SectionCurveDescription, ReloadKeepsStylesAndDescribesNewCurves)
{
    zwtest::cTempDir folder("zw_plot_test_");
    ASSERT_FALSE(folder.path().empty());
    const std::string name = folder.write("grow.csv", "t,a,b\n0,1,2\n1,3,4\n2,5,6\n");
    cCurvePlotDataFile store;
    cCurvePlotParser parser;
    ASSERT_EQ(parser.parse(store, name), ok);
    ASSERT_EQ(store.getNbOfDataSections(), 1u);
    cCurvePlotDataSection* section = store.getDataSectionFromIndex(0);
    ASSERT_EQ(section->getNbOfVariables(), 2u);

    wxWaveExplorerConfiguration configuration;
    wxDataFileCurveDescription styles(store, configuration);
    const wxCurveDescription held = styles.getCurveDescription(store, section, 1);
    wxCurveStyle chosen;
    chosen.realColour = 0xabcdef;
    chosen.setAutomatic(false);
    ASSERT_TRUE(styles.setCurveStyle(section, 0, chosen));
    const unsigned dealtB = styles.findDataSectionDescription(section)->getCurveStyle(1).realColour;

    folder.write("grow.csv", "t,a,b,c\n0,1,2,0\n1,3,4,0\n2,5,60,0\n3,7,80,0\n");
    ASSERT_EQ(parser.reloadFile(store, name, ""), ok);
    ASSERT_EQ(store.getDataSectionFromIndex(0), section) << "a reload keeps the section object";
    ASSERT_EQ(section->getNbOfVariables(), 3u);
    cVxLogger logger;
    EXPECT_EQ(styles.updateAfterReload(true, logger), ok);
    const wxSectionCurveDescription& after = *styles.findDataSectionDescription(section);
    ASSERT_EQ(after.getNbOfStyles(), 3u);
    EXPECT_EQ(after.getCurveStyle(0), chosen);
    EXPECT_EQ(after.getCurveStyle(1).realColour, dealtB);
    EXPECT_EQ(after.getCurveStyle(2).realColour, pale(2)) << "the new curve takes the next colour";
    // The held description still names b and sees its new values.
    ASSERT_TRUE(held.checkIsVariable());
    EXPECT_EQ(held.getName(), "b");
    EXPECT_EQ(held.size(), 4u);
    EXPECT_EQ(held.curvePlotVariable().getDoubleValue(3), 80.0);
}

TEST(SectionCurveDescription, ClipboardListsFindAndDescribeCurves)
{
    cCurvePlotDataFile store;
    cFileDbSupport& file = store.findDbSupport("rc.raw");
    cCurvePlotDataSection& tran = addSection(store, file, "tran", curvePlotDataType::second, 3);
    cCurvePlotDataSection& bare = *store.addDataSection("samples", &file);
    bare.addVariable(store.addType("v", data_double, curvePlotDataType::volt), "s");
    wxWaveExplorerConfiguration configuration;
    wxDataFileCurveDescription styles(store, configuration);
    bool created = false;
    wxSectionCurveDescription& tranStyles = styles.findOrCreateDataSectionDescription(&tran, created);
    cVxStringLogger sink;
    cVxLogger logger;
    logger.setLoggerCallBack(&sink);

    // Names by wildcard, either case unless asked, by regular expression, within matching sections.
    struct cCase {
        const char* pattern;
        const char* section;
        bool caseSensitive;
        uint64_t found;
    } cases[] = {
        {"*_1", "", false, 1},      {"TRAN_?", "", false, 3},   {"TRAN_?", "", true, 0},
        {"tran_[02]", "", true, 2}, {"*", "t*", false, 3},      {"*", "ac", false, 0},
        {"", "", false, 0},
    };
    for (const cCase& c : cases) {
        wxListOfCurveDescriptions found;
        EXPECT_EQ(tranStyles.findSectionsAndCurves(c.pattern, c.section, c.caseSensitive, found, logger), c.found)
            << c.pattern << " in " << c.section;
        bool wholeSections = true, instances = true;
        EXPECT_EQ(found.getNumberOfCurves(wholeSections, instances), c.found);
        EXPECT_FALSE(wholeSections);
    }

    // A copy names every curve on its own, and the text of it reads back into the same list.
    wxListOfCurveDescriptions copied;
    tranStyles.addAllCurvesToClipBoardCurves(copied, logger);
    ASSERT_EQ(copied.entries().size(), 1u);
    EXPECT_FALSE(copied.entries()[0].allCurves);
    EXPECT_EQ(copied.entries()[0].curveIndices, (std::vector<unsigned>{0, 1, 2}));
    for (int format : {listOfCurveDescriptions::curve_list_xml, listOfCurveDescriptions::calculator_expression}) {
        std::string text;
        ASSERT_TRUE(copied.createDndCurveListString(format, text, "7", logger));
        wxListOfCurveDescriptions pasted;
        ASSERT_TRUE(styles.initListOfCurvesOnClipboard(text, pasted, logger)) << text;
        ASSERT_EQ(pasted.entries().size(), 1u);
        EXPECT_EQ(pasted.entries()[0].section, &tran);
        EXPECT_EQ(pasted.entries()[0].curveIndices, (std::vector<unsigned>{0, 1, 2}));
    }
    wxListOfCurveDescriptions untouched;
    untouched.addSection(&bare);
    EXPECT_FALSE(styles.initListOfCurvesOnClipboard("no curves here", untouched, logger));
    EXPECT_EQ(untouched.entries().size(), 1u);

    // Descriptions of the clipboard's curves carry the file's styles and hold the values; a curve
    // that can't be described is reported and the others come.
    wxListOfCurveDescriptions mixed = copied;
    ASSERT_TRUE(mixed.addCurve(&bare, 0, logger));
    sink.clear();
    const std::vector<wxCurveDescription> descriptions = styles.getCurveDescriptionsForClipboardCurves(mixed, logger);
    ASSERT_EQ(descriptions.size(), 3u);
    for (uint64_t i = 0; i < 3; ++i) {
        EXPECT_EQ(descriptions[i].getSection(), &tran);
        EXPECT_EQ(descriptions[i].getCurveIndex(), i);
        EXPECT_EQ(descriptions[i].style(), tranStyles.getCurveStyle(i));
        EXPECT_TRUE(descriptions[i].checkHoldsReferences());
        EXPECT_GE(tran.getVariable(i).getReferenceCount(), 1);
    }
    EXPECT_NE(sink.getBufferAsString().find("Failed to load curve from data base."), std::string::npos);
    EXPECT_EQ(bare.getVariable(0).getReferenceCount(), 0);
}
