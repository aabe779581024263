// Property sheets: every kind written back to the caller's variable, refusals that leave it
// alone, and groups that become expanders.
#include <gtest/gtest.h>

#include <cmath>

#include "treegrid/wxTreeGridGeometry.h"
#include "treegrid/wxTreeGridPropertyList.h"

using namespace vx3;

TEST(TreeGridProperties, EditsReachTheVariablesAndBadTextLeavesThemAlone)
{
    bool flag = false;
    double gain = 1.5;
    long long offset = -3;
    std::string title = "plot";
    unsigned count = 4;
    unsigned long long big = 1;
    unsigned mode = 1;
    unsigned colour = 0x00ff00;
    std::string file = "a.raw", optional, secret = "abc";
    std::vector<bool> flags{true, false};
    std::vector<double> levels{0.5};
    std::vector<unsigned> kinds{0};

    wxTreeGridPropertyList sheet;
    const unsigned rLabel = sheet.addProperty("Version", "0.1");
    const unsigned rFlag = sheet.addRefBoolProperty("Grid", flag);
    const unsigned rGain = sheet.addRefProperty("Gain", gain);
    const unsigned rOffset = sheet.addRefProperty("Offset", offset);
    const unsigned rTitle = sheet.addRefProperty("Title", title);
    const unsigned rCount = sheet.addRefProperty("Count", count);
    const unsigned rBig = sheet.addRefProperty("Samples", big);
    const unsigned rMode = sheet.addEnumProperty("Mode", mode, {"linear", "log", "dB"});
    const unsigned rColour = sheet.addColourProperty("Colour", colour);
    const unsigned rFile = sheet.addFileNameProperty("File", file);
    const unsigned rOptional = sheet.addFileNameOrEmptyProperty("Log file", optional);
    const unsigned rSecret = sheet.addPasswordProperty("Password", secret);
    const unsigned rFlags = sheet.addBoolVectorProperty("Show", flags);
    const unsigned rLevels = sheet.addRefVectorProperty("Levels", levels);
    const unsigned rKinds = sheet.addRefVectorEnumProperty("Kinds", kinds, {"a", "b"});
    const unsigned rCopy = sheet.addDoubleProperty("Copy", 2.0);

    EXPECT_EQ(sheet.treeGridVirtualGetNumberOfColumns(), 2u);
    EXPECT_EQ(sheet.treeGridVirtualGetColHeaderLabel(0), "Property");
    EXPECT_EQ(sheet.treeGridVirtualGetColHeaderLabel(1), "Value");
    EXPECT_EQ(sheet.treeGridVirtualGetValue(rMode, 1), "log");
    EXPECT_EQ(sheet.treeGridVirtualGetValue(rColour, 1), "#00ff00");
    EXPECT_EQ(sheet.treeGridVirtualGetValue(rSecret, 1), "***");
    EXPECT_EQ(sheet.treeGridVirtualGetValue(rFlags, 1), "1,0");
    EXPECT_FALSE(sheet.treeGridVirtualIsEditable(rLabel, 1));
    EXPECT_FALSE(sheet.treeGridVirtualIsEditable(rGain, 0));

    auto set = [&](unsigned row, const std::string& text) { return sheet.treeGridVirtualSetStringValue(row, 1, text); };
    EXPECT_TRUE(sheet.treeGridVirtualToggleBooleanValue(rFlag, 1));
    EXPECT_TRUE(flag);
    EXPECT_TRUE(set(rGain, " 2.5e-3 "));
    EXPECT_DOUBLE_EQ(gain, 2.5e-3);
    EXPECT_TRUE(set(rOffset, "-42"));
    EXPECT_EQ(offset, -42);
    EXPECT_TRUE(set(rTitle, "new title"));
    EXPECT_EQ(title, "new title");
    EXPECT_TRUE(set(rCount, "7"));
    EXPECT_EQ(count, 7u);
    EXPECT_TRUE(set(rBig, "18446744073709551615"));
    EXPECT_EQ(big, 18446744073709551615ull);
    EXPECT_TRUE(set(rMode, "dB"));
    EXPECT_EQ(mode, 2u);
    EXPECT_TRUE(set(rColour, "#1a2B3c"));
    EXPECT_EQ(colour, 0x1a2b3cu);
    EXPECT_TRUE(set(rOptional, ""));
    EXPECT_TRUE(set(rFlags, "0, 1, true"));
    EXPECT_EQ(flags, (std::vector<bool>{false, true, true}));
    EXPECT_TRUE(set(rLevels, "1,2.5,-3"));
    EXPECT_EQ(levels, (std::vector<double>{1, 2.5, -3}));
    EXPECT_TRUE(set(rKinds, "b,a,b"));
    EXPECT_EQ(kinds, (std::vector<unsigned>{1, 0, 1}));
    EXPECT_TRUE(set(rCopy, "4"));
    EXPECT_EQ(sheet.treeGridVirtualGetValue(rCopy, 1), "4");

    // Refusals: the variables keep their values.
    EXPECT_FALSE(set(rGain, "fast"));
    EXPECT_FALSE(set(rGain, "1.5x"));
    EXPECT_DOUBLE_EQ(gain, 2.5e-3);
    EXPECT_FALSE(set(rCount, "-1"));
    EXPECT_FALSE(set(rCount, "4294967296"));
    EXPECT_EQ(count, 7u);
    EXPECT_FALSE(set(rBig, "18446744073709551616"));
    EXPECT_FALSE(set(rMode, "cubic"));
    EXPECT_EQ(mode, 2u);
    EXPECT_FALSE(set(rColour, "green"));
    EXPECT_FALSE(set(rFile, "  "));
    EXPECT_EQ(file, "a.raw");
    EXPECT_FALSE(set(rFlags, "1,maybe"));
    EXPECT_EQ(flags.size(), 3u);
    EXPECT_FALSE(set(rKinds, "c"));
    EXPECT_FALSE(set(rLabel, "0.2"));
    EXPECT_EQ(sheet.treeGridVirtualGetValue(rLabel, 1), "0.1");
}

TEST(TreeGridProperties, GroupsBecomeExpandersOfTheSheet)
{
    double a = 1, b = 2, c = 3;
    wxTreeGridPropertyList sheet;
    sheet.setCurrentGroup("Axis");
    sheet.addRefProperty("Minimum", a);
    sheet.addRefProperty("Maximum", b);
    sheet.setCurrentGroup("Curve");
    sheet.addRefProperty("Width", c);
    sheet.addPropertyWithExpander("Curve", "Style", "solid");
    EXPECT_EQ(sheet.treeGridVirtualGetNumberOfColumns(), 3u);
    EXPECT_EQ(sheet.treeGridVirtualGetColHeaderLabel(0), "Group");
    EXPECT_TRUE(sheet.treeGridVirtualSetStringValue(0, 2, "-1"));
    EXPECT_EQ(a, -1);

    wxTreeGridGeometry grid(sheet);
    grid.dataChanged(true, false);
    ASSERT_EQ(grid.getNumberOfExpanders(), 2u);
    EXPECT_EQ(grid.getExpander(0).nbOfRows, 2u);
    EXPECT_EQ(grid.getExpander(1).firstRow, 2u);
    grid.setExpanded(1, false);
    EXPECT_EQ(grid.getNumberOfVisibleRows(), 3u);
}
