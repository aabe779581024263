// The curve-list XML read by Python's xml.etree, a list read from XML that Python wrote, the
// calculator text, and texts that are no curve list.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "../base/testSupport.h"
#include "base/cVxLogger.h"
#include "model/cCurvePlotDataFile.h"
#include "plot/wxListOfCurveDescriptions.h"

using namespace vx3;
using curvePlotProperties::cProperty;
using curvePlotProperties::data_double;
using curvePlotProperties::left_bit_number;
using curvePlotProperties::right_bit_number;
constexpr int calculator_expression = listOfCurveDescriptions::calculator_expression;
using listOfCurveDescriptions::curve_list_xml;

namespace {
struct cFixture {
    cCurvePlotDataFile store;
    cCurvePlotDataSection* tran = nullptr;
    cCurvePlotDataSection* ac = nullptr;
    cVxStringLogger sink;
    cVxLogger logger;
    cFixture()
    {
        logger.setLoggerCallBack(&sink);
        cFileDbSupport& file = store.findDbSupport("rc <1>.raw");
        tran = store.addDataSection("tran \"1\"", &file);
        const cCurvePlotDataType* time = store.addType("time", data_double, curvePlotDataType::second);
        const cCurvePlotDataType* volt = store.addType("v", data_double, curvePlotDataType::volt);
        const cCurvePlotDataType* amp = store.addType("i", data_double, curvePlotDataType::ampere);
        const double values[] = {0, 1, 2};
        tran->getSweepVariable(tran->addSweepVariable(time, "time", 0)).setDoubleValues(values, 3);
        tran->getVariable(tran->addVariable(volt, "v(a&b)")).setDoubleValues(values, 3);
        tran->getVariable(tran->addVariable(amp, "i(R<1>)")).setDoubleValues(values, 3);
        cCurvePlotProperties bus;
        bus.addProperty(cProperty::makeInteger(left_bit_number, 7));
        bus.addProperty(cProperty::makeInteger(right_bit_number, 0));
        tran->getVariable(tran->addVariable(volt, "data[7:0]")).setDoubleValues(values, 3);
        tran->addCurveProperties(2, bus);
        ac = store.addDataSection("ac", &file);
        const cCurvePlotDataType* freq = store.addType("frequency", data_double, curvePlotDataType::hertz);
        ac->getSweepVariable(ac->addSweepVariable(freq, "frequency", 0)).setDoubleValues(values, 3);
        ac->getVariable(ac->addVariable(volt, "out")).setDoubleValues(values, 3);
    }
    std::string log() const { return sink.getBufferAsString(); }
};

std::string readAll(const std::string& name)
{
    std::ifstream in(name);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

int runOracle(const std::string& arguments)
{
    const std::string command =
        "/usr/bin/python3 '" + std::string(ZW_SOURCE_DIR) + "/tests/plot/oracles/curve_list_xml.py' " + arguments;
    return std::system(command.c_str());
}
}  // namespace

TEST(CurveListText, XmlIsReadByAnIndependentParser)
{
    cFixture f;
    wxListOfCurveDescriptions list;
    ASSERT_TRUE(list.addCurve(f.tran, 1, f.logger));
    ASSERT_TRUE(list.addCurve(f.tran, "v(a&b)", f.logger));
    ASSERT_TRUE(list.addCurve(f.tran, 2, f.logger));
    EXPECT_TRUE(list.addCurve(f.tran, 2, f.logger)) << "a curve named twice is listed once";
    list.addSection(f.ac);
    list.addSectionInstance(f.tran, "top.x<1>");
    EXPECT_FALSE(list.addCurve(f.tran, 3, f.logger));
    EXPECT_FALSE(list.addCurve(nullptr, 0, f.logger));
    EXPECT_NE(f.log().find("Can't add curve."), std::string::npos);
    bool whole = false, instances = false;
    EXPECT_EQ(list.getNumberOfCurves(whole, instances), 4u);
    EXPECT_TRUE(whole);
    EXPECT_TRUE(instances);
    EXPECT_FALSE(list.checkJustOneCurveDefined());
    EXPECT_EQ(list.unitIdentifiers(),
              (std::set<unsigned>{curvePlotDataType::volt, curvePlotDataType::ampere, curvePlotDataType::hertz}));

    std::string text;
    ASSERT_TRUE(list.createDndCurveListString(curve_list_xml, text, "id&7", f.logger));
    EXPECT_EQ(text.rfind("<?xml version=\"1.0\" ?>\n<vx_zelwave_curve_list instance_id=\"id&amp;7\" >\n", 0), 0u);
    zwtest::cTempDir folder("zw_plot_test_");
    ASSERT_FALSE(folder.path().empty());
    const std::string xml = folder.write("list.xml", text);
    ASSERT_EQ(runOracle("read '" + xml + "' '" + folder.file("seen.txt") + "'"), 0);
    const std::string tranId = std::to_string(f.tran->getSectionId()), acId = std::to_string(f.ac->getSectionId());
    EXPECT_EQ(readAll(folder.file("seen.txt")),
              "root vx_zelwave_curve_list instance_id=id&7\n"
              "curve bus_width=1 index=1 name=i(R<1>) section=tran \"1\" section_id=" + tranId + " unit=A\n"
              "curve bus_width=1 index=0 name=v(a&b) section=tran \"1\" section_id=" + tranId + " unit=V\n"
              "curve bus_width=8 index=2 name=data[7:0] section=tran \"1\" section_id=" + tranId + " unit=V\n"
              "curve name=* section=ac section_id=" + acId + "\n"
              "instance name=top.x<1>\n");

    // And back: the same selection.
    wxListOfCurveDescriptions back;
    std::string instanceId;
    ASSERT_TRUE(back.readDndCurveListString(text, f.store, instanceId, f.logger)) << f.log();
    EXPECT_EQ(instanceId, "id&7");
    ASSERT_EQ(back.entries().size(), 2u);
    EXPECT_EQ(back.entries()[0].curveIndices, (std::vector<unsigned>{1, 0, 2}));
    EXPECT_TRUE(back.entries()[1].allCurves);
    EXPECT_EQ(back.instances(), (std::vector<std::string>{"top.x<1>"}));
}

TEST(CurveListText, ListFromXmlWrittenByPython)
{
    cFixture f;
    zwtest::cTempDir folder("zw_plot_test_");
    ASSERT_FALSE(folder.path().empty());
    const std::string xml = folder.file("python.xml");
    ASSERT_EQ(runOracle("write '" + xml + "' '" + f.tran->name() + "' " + std::to_string(f.tran->getSectionId())), 0);
    wxListOfCurveDescriptions list;
    std::string instanceId;
    // One curve is missing: reported, the others are read.
    ASSERT_TRUE(list.readDndCurveListString(readAll(xml), f.store, instanceId, f.logger));
    EXPECT_EQ(instanceId, "host-7");
    ASSERT_EQ(list.entries().size(), 1u);
    EXPECT_TRUE(list.entries()[0].allCurves) << "the whole section, named last, includes the single curves";
    EXPECT_EQ(list.instances(), (std::vector<std::string>{"top.x1"}));
    EXPECT_NE(f.log().find("Can't add curve."), std::string::npos);

    // Without the whole section: the curves by name, the wrong index corrected by the name.
    std::string text = readAll(xml);
    const size_t star = text.find("name=\"*\"");
    ASSERT_NE(star, std::string::npos);
    text.replace(star, 8, "name=\"gone\"");
    wxListOfCurveDescriptions curves;
    ASSERT_TRUE(curves.readDndCurveListString(text, f.store, instanceId, f.logger));
    ASSERT_EQ(curves.entries().size(), 1u);
    EXPECT_EQ(curves.entries()[0].curveIndices, (std::vector<unsigned>{1, 0}));
}

TEST(CurveListText, BadTextsGiveClearMessages)
{
    cFixture f;
    const std::pair<std::string, std::string> cases[] = {
        {"", "not valid XML"},
        {"<vx_zelwave_curve_list><curve", "not valid XML"},
        {"waveform(\"a\", \"b\")", "not valid XML"},
        {"<?xml version=\"1.0\" ?><other/>", "root element is not \"vx_zelwave_curve_list\""},
        {"<vx_zelwave_curve_list><curve section=\"nowhere\" name=\"x\"/></vx_zelwave_curve_list>",
         "The section \"nowhere\" was not found."},
        {"<vx_zelwave_curve_list><curve section_id=\"-5\" index=\"99999999999999999999\"/></vx_zelwave_curve_list>",
         "The section \"\" was not found."},
    };
    for (const auto& [text, message] : cases) {
        f.sink.clear();
        wxListOfCurveDescriptions list;
        std::string id = "kept";
        EXPECT_FALSE(list.readDndCurveListString(text, f.store, id, f.logger)) << text;
        EXPECT_TRUE(list.empty());
        EXPECT_NE(f.log().find(message), std::string::npos) << text << " -> " << f.log();
    }
    wxListOfCurveDescriptions empty;
    std::string text;
    EXPECT_FALSE(empty.createDndCurveListString(calculator_expression, text, "", f.logger));
    EXPECT_FALSE(empty.createDndCurveListString(9, text, "", f.logger));
    EXPECT_FALSE(empty.loadCurvesFromDb(f.logger));
    EXPECT_NE(f.log().find("No curves defined for loading from database."), std::string::npos);
}

TEST(CurveListText, CalculatorTextRoundTripAndSweepSelections)
{
    cFixture f;
    wxListOfCurveDescriptions list;
    ASSERT_TRUE(list.addCurve(f.tran, 0, f.logger));
    ASSERT_TRUE(list.addCurve(f.tran, 1, f.logger));
    ASSERT_TRUE(list.addCurve(f.ac, 0, f.logger));
    std::string text;
    ASSERT_TRUE(list.createDndCurveListString(calculator_expression, text, "", f.logger));
    EXPECT_EQ(text, "waveform(\"tran \\\"1\\\"\", \"v(a&b)\"), waveform(\"tran \\\"1\\\"\", \"i(R<1>)\"), "
                    "waveform(\"ac\", \"out\")");
    wxListOfCurveDescriptions back;
    ASSERT_TRUE(back.readCalculatorString(text, f.store, f.logger)) << f.log();
    ASSERT_EQ(back.entries().size(), 2u);
    EXPECT_EQ(back.entries()[0].curveIndices, (std::vector<unsigned>{0, 1}));
    EXPECT_EQ(back.entries()[1].section, f.ac);

    for (const char* bad : {"waveform(\"ac\" \"out\")", "waveform(\"ac\", \"out\") waveform", "wave(\"a\",\"b\")",
                            "waveform(\"ac\", \"out", ""}) {
        wxListOfCurveDescriptions none;
        EXPECT_FALSE(none.readCalculatorString(bad, f.store, f.logger)) << bad;
    }
    wxListOfCurveDescriptions missing;
    EXPECT_FALSE(missing.readCalculatorString("waveform(\"dc\", \"x\")", f.store, f.logger));
    EXPECT_NE(f.log().find("The section \"dc\" was not found."), std::string::npos);

    // A sweep selection must fit the sections' sweep variables.
    list.sweepIndices = {0, 1};
    EXPECT_FALSE(list.createDndCurveListString(calculator_expression, text, "", f.logger));
    EXPECT_NE(f.log().find("Sweep index array size (2) does not correspond to the number of sweep variables (1)."),
              std::string::npos);
    list.sweepIndices.clear();
    list.sweepPermutation = {0, 1, 2};
    EXPECT_FALSE(list.createDndCurveListString(calculator_expression, text, "", f.logger));
    EXPECT_NE(f.log().find("Sweep permutation array size (3) does not correspond to the number of sweep variables (1)."),
              std::string::npos);

    // Curves in memory load at once; an interrupt before the first is said so.
    list.sweepPermutation.clear();
    f.sink.clear();
    EXPECT_TRUE(list.loadCurvesFromDb(f.logger));
    EXPECT_NE(f.log().find("Loading curves from database."), std::string::npos);
    std::atomic<bool> stop{true};
    EXPECT_FALSE(list.loadCurvesFromDb(f.logger, &stop));
    EXPECT_NE(f.log().find("Loading of curves was interrupted."), std::string::npos);
    // Marked curves and sections leave the list.
    f.tran->getVariable(1).setFlagMustClose(true);
    f.ac->setFlagMustClose(true);
    list.closeAllThatIsMarked();
    ASSERT_EQ(list.entries().size(), 1u);
    EXPECT_EQ(list.entries()[0].curveIndices, (std::vector<unsigned>{0}));
    EXPECT_TRUE(list.checkJustOneCurveDefined());
}
