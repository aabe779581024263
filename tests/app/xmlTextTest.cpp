// The XML texts of drops and the clipboard, read back by an independent parser where it matters.
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "app/core/cZelWaveXmlParser.h"

using namespace vx3;

TEST(cZelWaveXmlParser, CommandTextKeepsEveryNonEmptyLine)
{
    cZelWaveXmlParser parser;
    ASSERT_TRUE(parser.parseXmlString("<?xml version=\"1.0\" ?>\n<vx_zelwave_command>\n  add_section a\r"
                                      "get_number_of_sections\r\n\n  \nadd_curve_to_plot \"*\" a v\n</vx_zelwave_command>"));
    EXPECT_EQ(parser.commands(), (std::vector<std::string>{"add_section a", "get_number_of_sections",
                                                           "add_curve_to_plot \"*\" a v"}));
    EXPECT_FALSE(parser.checkContainsData());

    std::string written = cZelWaveXmlParser::generateCommandXmlString({"add_section \"a<b\"", "help"});
    ASSERT_TRUE(parser.parseXmlString(written)) << written;
    EXPECT_EQ(parser.commands(), (std::vector<std::string>{"add_section \"a<b\"", "help"}));

    EXPECT_FALSE(parser.parseXmlString("not xml at all"));
    EXPECT_FALSE(parser.parseXmlString("<?xml version=\"1.0\" ?><other_root/>"));
    EXPECT_FALSE(parser.parseXmlString("<?xml version=\"1.0\" ?><vx_zelwave_command>unclosed"));
}

TEST(cZelWaveXmlParser, CurveListRoundTrip)
{
    cZelWaveXmlParser out;
    out.instanceIdentifier = 140737488355328ULL;
    zelWaveXmlParser::cCurve curve;
    curve.sectionIdentifier = 7;
    curve.index = 3;
    curve.sectionName = "tran & \"run 1\"";
    curve.name = "i(r<1>)";
    curve.unit = "A";
    out.curves().push_back(curve);
    curve.name = "bus";
    curve.unit = "";
    curve.busWidth = 8;
    curve.busIndex = 2;
    out.curves().push_back(curve);
    out.sections().push_back({7, 2, "tran", "/data/a b.raw"});
    out.instances().push_back({7, 1, "x1.x2"});
    std::string xml = out.generateXmlString();
    EXPECT_EQ(xml.rfind("<?xml version=\"1.0\" ?>\n<vx_zelwave_curve_list instance_id=\"140737488355328\" >\n", 0), 0u);
    EXPECT_NE(xml.find("\" unit=\"\" bus_width=\"8\" bus_index=\"2\" />\n"), std::string::npos) << xml;

    cZelWaveXmlParser in;
    ASSERT_TRUE(in.parseXmlString(xml));
    EXPECT_TRUE(in.checkContainsData());
    EXPECT_EQ(in.instanceIdentifier, out.instanceIdentifier);
    ASSERT_EQ(in.curves().size(), 2u);
    EXPECT_EQ(in.curves()[0].sectionName, "tran & \"run 1\"");
    EXPECT_EQ(in.curves()[0].name, "i(r<1>)");
    EXPECT_TRUE(in.curves()[0].checkUnitIsCurrent());
    EXPECT_EQ(in.curves()[0].busWidth, -1);
    EXPECT_EQ(in.curves()[1].busWidth, 8);
    EXPECT_EQ(in.curves()[1].busIndex, 2);
    EXPECT_FALSE(in.curves()[1].checkUnitIsCurrent());
    ASSERT_EQ(in.sections().size(), 1u);
    EXPECT_EQ(in.sections()[0].file, "/data/a b.raw");
    EXPECT_EQ(in.sections()[0].nbSweepVariables, 2u);
    ASSERT_EQ(in.instances().size(), 1u);
    EXPECT_EQ(in.instances()[0].name, "x1.x2");

    // What other senders add: sweep selections, annotations and Spice texts inside a curve.
    ASSERT_TRUE(in.parseXmlString(
        "<?xml version=\"1.0\" ?>\n<vx_zelwave_curve_list instance_id=\"1\" >\n"
        "<curve section_id=\"2\" index=\"0\" section=\"s\" name=\"v\" unit=\"V\" sweep_var_perm=\"[1,0]\" "
        "sweep_var_indices=\"[4,0]\">\n<annotation text=\"peak\" data=\"1e-9, 0.5\" />\n"
        "<spice_pwl_src>  V1 a 0 PWL(0 0 1 1)  </spice_pwl_src>\n</curve>\n</vx_zelwave_curve_list>\n"));
    ASSERT_EQ(in.curves().size(), 1u);
    const auto& swept = in.curves()[0];
    EXPECT_EQ(swept.sweepPermutation, (std::vector<int64_t>{1, 0}));
    EXPECT_EQ(swept.sweepIndices, (std::vector<int64_t>{4, 0}));
    ASSERT_EQ(swept.annotations.size(), 1u);
    std::vector<double> values;
    ASSERT_TRUE(swept.annotations[0].parseData(values));
    EXPECT_EQ(values, (std::vector<double>{1e-9, 0.5}));
    EXPECT_EQ(swept.spicePwlSource, "V1 a 0 PWL(0 0 1 1)");
}

TEST(cZelWaveXmlParser, LineEndsAndTabsInNamesSurviveTheRoundTrip)
{
    // Found by fuzzing: a lone carriage return was written as it stood and read back as a
    // line feed, so a curve list did not read back as it was written.
    std::ifstream in(std::string(ZW_SOURCE_DIR) + "/tests/fuzz_inputs/xml/line_ends_in_attribute.xml", std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    cZelWaveXmlParser first;
    ASSERT_TRUE(first.parseXmlString(text.str()));
    ASSERT_EQ(first.curves().size(), 1u);
    first.curves()[0].name = "a\rb\nc\td";
    const std::string written = first.generateXmlString();
    EXPECT_EQ(written.find('\r'), std::string::npos) << "line ends are written as references";
    cZelWaveXmlParser second;
    ASSERT_TRUE(second.parseXmlString(written));
    ASSERT_EQ(second.curves().size(), 1u);
    EXPECT_EQ(second.curves()[0].name, "a\rb\nc\td");
    EXPECT_EQ(second.curves()[0].unit, first.curves()[0].unit);
    EXPECT_EQ(second.generateXmlString(), written);
}
