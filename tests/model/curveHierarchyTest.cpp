// The instance tree built from hierarchical curve names.
#include <gtest/gtest.h>

#include "model/cCurvePlotDataCurveHierarchy.h"
#include "model/cCurvePlotDataFile.h"

using namespace vx3;
using namespace curvePlotProperties;
using hierarchy = cCurvePlotDataCurveHierarchy;

namespace {
std::vector<cCurvePlotVariable> curves(const std::vector<std::string>& names)
{
    std::vector<cCurvePlotVariable> result;
    for (const std::string& name : names)
        result.emplace_back(nullptr, name);
    return result;
}

hierarchy build(const std::vector<cCurvePlotVariable>& variables)
{
    hierarchy root;
    root.computeCurveHierarchy(variables, true);
    root.defineInstanceIndices();
    return root;
}

std::vector<unsigned> ids(std::initializer_list<unsigned> list) { return list; }
}  // namespace

TEST(CurveHierarchySeparators, TableSearchAndNames)
{
    for (unsigned type = dot_separator; type < kNbOfSeparatorTypes; ++type)
        EXPECT_EQ(string_to_separator_type(getSeparatorAsString(type)), type);
    EXPECT_STREQ(getSeparatorAsString(double_colon_separator), "::");
    EXPECT_EQ(string_to_separator_type("~"), no_separator);

    size_t length = 0;
    EXPECT_EQ(hierarchy::findSeparatorPosition("a::b:c", 0, colon_separator, length), 4u) << "a single colon only";
    EXPECT_EQ(length, 1u);
    EXPECT_EQ(hierarchy::findSeparatorPosition("a::b:c", 0, double_colon_separator, length), 1u);
    EXPECT_EQ(length, 2u);
    EXPECT_EQ(hierarchy::findSeparatorPosition("a::b:c", 0, any_separator, length), 1u);
    EXPECT_EQ(length, 2u);
    EXPECT_EQ(hierarchy::findSeparatorPosition("a::b", 2, colon_separator, length), std::string::npos)
        << "starting inside \"::\" finds no half of it";
    EXPECT_EQ(hierarchy::findSeparatorPosition("bus[7:0]", 0, colon_separator, length), std::string::npos)
        << "brackets hide separators";
    EXPECT_EQ(hierarchy::findSeparatorPosition("x[a.b].c", 1, dot_separator, length), 6u);
    EXPECT_EQ(hierarchy::findSeparatorPosition("a.b", 0, no_separator, length), std::string::npos);

    EXPECT_EQ(hierarchy::computeSimpleName("/top/core/", slash_separator), "core");
    EXPECT_EQ(hierarchy::computeSimpleName("top.bus[1.5]", dot_separator), "bus[1.5]");
    EXPECT_EQ(hierarchy::computeSimpleName("a.b", no_separator), "a.b");
    EXPECT_EQ(hierarchy::removeHierarchySeparatorFromString("::a::b::", double_colon_separator), "a::b");
    EXPECT_EQ(hierarchy::removeHierarchySeparatorFromString("a::", colon_separator), "a::");

    EXPECT_EQ(hierarchy::removeParenthesesFromName("v(a.b)"), "a.b");
    EXPECT_EQ(hierarchy::removeParenthesesFromName("I(x1.r1)"), "x1.r1");
    EXPECT_EQ(hierarchy::removeParenthesesFromName("vdb(x.y)"), "x.y");
    EXPECT_EQ(hierarchy::removeParenthesesFromName("net(3)"), "net(3)");
    EXPECT_EQ(hierarchy::removeParenthesesFromName("v(a)+v(b)"), "v(a)+v(b)");
    EXPECT_EQ(hierarchy::removeParenthesesFromName("v(x1.a,x1.b)"), "v(x1.a,x1.b)");

    EXPECT_FALSE(hierarchy::checkIsPossibleInstanceName("12"));
    EXPECT_FALSE(hierarchy::checkIsPossibleInstanceName("a b"));
    EXPECT_TRUE(hierarchy::checkIsPossibleInstanceName("x1"));
    EXPECT_FALSE(hierarchy::checkIsPossibleCurveName("  "));
    EXPECT_EQ(hierarchy::getSeparatorType("a/b.c/d"), unsigned(slash_separator));
    EXPECT_EQ(hierarchy::getSeparatorType("/abc"), unsigned(no_separator)) << "a leading separator opens no level";
}

TEST(CurveHierarchySeparators, VotesAndAcceptance)
{
    EXPECT_EQ(hierarchy::chooseSeparator({"a.b", "c/d"}), unsigned(dot_separator)) << "a tie stays with the table order";
    EXPECT_EQ(hierarchy::chooseSeparator({"a.b.c", "d.e", "f/g", "h/i"}), unsigned(slash_separator))
        << "same number of names: the steadier count wins";
    EXPECT_EQ(hierarchy::chooseSeparator({"a/b", "c.d", "e.f"}), unsigned(dot_separator));
    EXPECT_EQ(hierarchy::chooseSeparator({"bus[7:0]", "x[1:2]"}), unsigned(no_separator));

    std::vector<std::string> names(23, "flat");
    names.push_back("x.y");
    names.push_back("z:w");
    EXPECT_EQ(hierarchy::chooseSeparator(names), unsigned(no_separator)) << "1 name in 25 is too few";
    names.push_back("x.q");
    EXPECT_EQ(hierarchy::chooseSeparator(names), unsigned(dot_separator)) << "2 names in 26 are enough";

    hierarchy::cVote vote(dot_separator);
    vote.addName(0);
    vote.addName(1);
    vote.addName(3);
    EXPECT_EQ(vote.getNbOfNames(), 2u);
    EXPECT_EQ(vote.getNbOfOccurrences(), 4u);
    EXPECT_DOUBLE_EQ(vote.getVariance(), 1.0);
    vote.evaluateVote(41);
    EXPECT_FALSE(vote.isAcceptable());
    vote.evaluateVote(40);
    EXPECT_TRUE(vote.isAcceptable());
}

TEST(CurveHierarchyBuild, LeadingSeparatorMixedAndFlat)
{
    const auto slashes = curves({"/top/core/out", "/top/core/in", "/top/clk", "/top/en"});
    const hierarchy tree = build(slashes);
    EXPECT_EQ(tree.getSeparatorType(), unsigned(slash_separator));
    ASSERT_EQ(tree.getChildren().size(), 1u) << "no empty first level";
    const hierarchy& top = tree.getChildren()[0];
    EXPECT_EQ(top.getSimpleName(), "top");
    EXPECT_EQ(top.getFullName(), "/top");
    EXPECT_EQ(top.getCurveIndices(), ids({2, 3}));
    ASSERT_EQ(top.getChildren().size(), 1u);
    EXPECT_EQ(top.getChildren()[0].getFullName(), "/top/core");
    EXPECT_EQ(top.getChildren()[0].getCurveIndices(), ids({1, 0})) << "in name order";
    EXPECT_EQ(tree.countInstances(), 2u);
    EXPECT_EQ(tree.getNumberOfCurves(), 4u);
    EXPECT_EQ(tree.getNumberOfCurves(false), 0u);

    const auto mixed = curves({"top/core/a.b", "top/core/c", "top/x/d", "top/e.f", "top/x/g"});
    const hierarchy other = build(mixed);
    EXPECT_EQ(other.getSeparatorType(), unsigned(slash_separator));
    const hierarchy* core = other.findInstance("top/core", false);
    ASSERT_NE(core, nullptr);
    EXPECT_EQ(core->getCurveIndices(), ids({0, 1})) << "the dot stays in the curve's name";
    EXPECT_EQ(other.findInstance("top/e.f", false), &other.getChildren()[0]);
    EXPECT_EQ(other.countInstances(), 3u);

    const hierarchy flat = build(curves({"c", "a", "b"}));
    EXPECT_EQ(flat.getSeparatorType(), unsigned(no_separator));
    EXPECT_TRUE(flat.getChildren().empty());
    EXPECT_EQ(flat.getCurveIndices(), ids({1, 2, 0}));

    hierarchy none;
    none.computeCurveHierarchy(mixed, true, no_separator);
    EXPECT_EQ(none.countInstances(), 0u) << "a forced single level";
    EXPECT_EQ(none.getNumberOfCurves(), 5u);
}

TEST(CurveHierarchyBuild, SingleCurveChildrenAreFolded)
{
    const auto variables = curves({"x1.out", "x2.a", "x2.b", "top", "x3.x4.y", "x5.x6.p", "x5.x6.q"});
    const hierarchy tree = build(variables);
    EXPECT_EQ(tree.getCurveIndices(), ids({3, 0, 4})) << "x1 and x3.x4 hold one curve each";
    ASSERT_EQ(tree.getChildren().size(), 2u);
    EXPECT_EQ(tree.getChildren()[0].getFullName(), "x2");
    const hierarchy& x5 = tree.getChildren()[1];
    EXPECT_EQ(x5.getNumberOfCurves(false), 0u);
    ASSERT_EQ(x5.getChildren().size(), 1u) << "x5 keeps its child with two curves";
    EXPECT_EQ(x5.getChildren()[0].getSimpleName(), "x6");
}

TEST(CurveHierarchyBuild, AccessFunctionsAndSubtrees)
{
    const auto variables = curves({"v(xtop.xcore.out)", "i(xtop.xcore.r1)", "v(xtop.in)", "xtop.bus[7:0]",
                                   "v(a,b)", "xtop.xcore.v(n1)"});
    const hierarchy tree = build(variables);
    EXPECT_EQ(tree.getSeparatorType(), unsigned(dot_separator));
    EXPECT_EQ(tree.getCurveIndices(), ids({4}));
    const hierarchy* core = tree.findInstance("xtop.xcore", false);
    ASSERT_NE(core, nullptr);
    EXPECT_EQ(core->getCurveIndices(), ids({0, 1, 5}));
    const hierarchy* xtop = tree.findInstance("xtop", false);
    ASSERT_NE(xtop, nullptr);
    EXPECT_EQ(xtop->getCurveIndices(), ids({3, 2}));

    // Rebuilding one instance looks only at the names under it.
    hierarchy sub("xtop", "xtop", dot_separator);
    sub.computeCurveHierarchy(variables, false);
    EXPECT_EQ(sub.getNumberOfCurves(), 5u);
    EXPECT_EQ(sub.getCurveIndices(), ids({3, 2}));
    ASSERT_EQ(sub.getChildren().size(), 1u);
    EXPECT_EQ(sub.getChildren()[0].getFullName(), "xtop.xcore");
}

TEST(CurveHierarchyFind, CaseAndInstanceParts)
{
    const hierarchy tree = build(curves({"XTop.Core.out", "XTop.Core.in", "XTop.a", "XTop.b"}));
    const hierarchy* core = tree.findInstance("XTop.Core", false);
    ASSERT_NE(core, nullptr);
    EXPECT_EQ(core->getFullName(), "XTop.Core");
    EXPECT_EQ(tree.findInstance("XTop.Core.out", false), core) << "the last part is a curve";
    EXPECT_EQ(tree.findInstance("v(XTop.Core.out)", false), core);
    EXPECT_EQ(tree.findInstance("xtop.core", false), nullptr);
    EXPECT_EQ(tree.findInstance("xtop.core", true), core);
    EXPECT_EQ(tree.findInstance("XTop.Nope.out", false), nullptr);
    EXPECT_EQ(tree.findInstance("out", false), &tree) << "no instance part: the section";
    EXPECT_EQ(tree.findChildInstanceFull("xtop", true), &tree.getChildren()[0]);
    EXPECT_EQ(tree.findChildInstanceSimple("Core"), nullptr) << "only direct children";
}

TEST(CurveHierarchyFind, InstanceIndicesAndHierarchyOrder)
{
    const hierarchy tree = build(curves({"d.y", "a.c.x", "a.b.y", "d.x", "a.b.x", "a.c.y"}));
    EXPECT_EQ(tree.getInstanceIndex(), 0u);
    std::vector<std::string> depthFirst;
    for (unsigned index = 0; index < 5; ++index) {
        const hierarchy* node = tree.findChildInstance(index);
        ASSERT_NE(node, nullptr) << index;
        EXPECT_EQ(node->getInstanceIndex(), index);
        depthFirst.push_back(node->getFullName());
    }
    EXPECT_EQ(depthFirst, (std::vector<std::string>{"", "a", "a.b", "a.c", "d"}));
    EXPECT_EQ(tree.findChildInstance(5), nullptr);
    std::string value;
    EXPECT_TRUE(tree.getInstanceProperty(3, curvePlotDataCurveHierarchy::prop_instance_simple_name, value));
    EXPECT_EQ(value, "c");
    EXPECT_TRUE(tree.getInstanceProperty(1, curvePlotDataCurveHierarchy::prop_instance_number_of_curves, value));
    EXPECT_EQ(value, "4");
    EXPECT_FALSE(tree.getInstanceProperty(9, curvePlotDataCurveHierarchy::prop_instance_full_name, value));

    std::vector<uint64_t> order;
    for (uint64_t row = 0; row < 7; ++row)
        order.push_back(tree.getCurveIndexFromHierarchyIndexRecursive(row));
    EXPECT_EQ(order, (std::vector<uint64_t>{4, 2, 1, 5, 3, 0, hierarchy::npos}));
    EXPECT_EQ(tree.getHierachySize(), 10u) << "4 instances and 6 curves";
}

TEST(CurveHierarchyEdit, RangesPseudoNamesAndMerging)
{
    hierarchy root("", "", slash_separator);
    hierarchy& top = root.pushBackChild("top", "");
    top.addRangeOfCurveIndices(19, 10);
    EXPECT_EQ(top.getNumberOfCurves(), 10u);
    EXPECT_EQ(top.getPseudoName(), "curves 10 .. 19");
    top.addCurveIndex(20);
    EXPECT_EQ(top.getPseudoName(), "curves 10 .. 20");
    top.addCurveIndex(30);
    EXPECT_EQ(top.getPseudoName(), "12 curves");
    top.pushBackChild("core", "").addCurveIndex(7);
    EXPECT_EQ(top.getChildren()[0].getPseudoName(), "curve 7");
    EXPECT_EQ(hierarchy::getPseudoName({6, 4, 5}), "curves 4 .. 6");
    EXPECT_EQ(hierarchy::getPseudoName({3, 5, 9}), "3 curves");

    root.fixHierarchicalNames();
    EXPECT_EQ(root.getChildren()[0].getFullName(), "top");
    EXPECT_EQ(root.getChildren()[0].getChildren()[0].getFullName(), "top/core");

    unsigned min = 0, max = 0;
    ASSERT_TRUE(root.computeMinMaxCurveIndices(min, max));
    EXPECT_EQ(min, 7u);
    EXPECT_EQ(max, 30u);
    EXPECT_EQ(root.getNumberOfCurves(), 13u);
    EXPECT_EQ(root.getCurveIndexFromHierarchyIndexRecursive(0), 20u) << "own indices before ranges";
    EXPECT_EQ(root.getCurveIndexFromHierarchyIndexRecursive(2), 10u);
    EXPECT_EQ(root.getCurveIndexFromHierarchyIndexRecursive(11), 19u);
    EXPECT_EQ(root.getCurveIndexFromHierarchyIndexRecursive(12), 7u) << "then the children";

    // A scope seen again adds to the instance that is there.
    hierarchy again("top", "top", slash_separator);
    again.addCurveIndex(40);
    again.pushBackChild("core", "top/core").addRangeOfCurveIndices(41, 42);
    again.pushBackChild("io", "top/io").addCurveIndex(43);
    root.mergeChild(again);
    ASSERT_EQ(root.getChildren().size(), 1u);
    EXPECT_EQ(root.getNumberOfCurves(), 17u);
    EXPECT_EQ(root.getChildren()[0].getChildren().size(), 2u);
    EXPECT_EQ(root.getChildren()[0].getChildren()[0].getPseudoName(), "3 curves");

    hierarchy& holder = root.getChildren()[0];
    EXPECT_TRUE(holder.mergeLastChild()) << "io holds one curve";
    EXPECT_FALSE(holder.mergeLastChild()) << "core holds three";
    EXPECT_EQ(holder.getCurveIndices().back(), 43u);
    hierarchy single;
    single.pushBackChild("one", "one").addRangeOfCurveIndices(5, 5);
    EXPECT_TRUE(single.mergeLastChild());
    EXPECT_EQ(single.getPseudoName(), "curve 5");

    root.clear();
    EXPECT_EQ(root.getHierachySize(), 0u);
    EXPECT_FALSE(root.computeMinMaxCurveIndices(min, max));
}

TEST(CurveHierarchyEdit, AppendExpandedVariables)
{
    auto variables = curves({"x2.b", "x2.d", "x3.p", "x3.q", "top"});
    hierarchy tree = build(variables);
    EXPECT_EQ(tree.appendExpandedVariables(variables), 0u);
    variables.emplace_back(nullptr, "x2.c");
    variables.emplace_back(nullptr, "x9.k");
    variables.emplace_back(nullptr, "v(x3.a)");
    EXPECT_EQ(tree.appendExpandedVariables(variables, {1, 2}), 3u) << "curves in the tree aren't filed twice";
    const hierarchy* x2 = tree.findInstance("x2", false);
    ASSERT_NE(x2, nullptr);
    EXPECT_EQ(x2->getCurveIndices(), ids({0, 5, 1}));
    EXPECT_EQ(tree.findInstance("x3", false)->getCurveIndices(), ids({7, 2, 3}));
    const hierarchy* x9 = tree.findInstance("x9", false);
    ASSERT_NE(x9, nullptr);
    EXPECT_EQ(x9->getInstanceIndex(), 3u) << "numbered again";
    EXPECT_EQ(tree.getNumberOfCurves(), 8u);

    tree.sortCurveIndices(curves({"x2.bb", "x2.c", "x3.p", "x3.q", "top", "x2.a", "x9.k", "v(x3.a)"}), true);
    EXPECT_EQ(x2->getCurveIndices(), ids({5, 1, 0})) << "shorter names first";
}

TEST(CurveHierarchySection, BuildFlagAndReload)
{
    cCurvePlotDataFile store;
    const cCurvePlotDataType* type = store.addType();
    cCurvePlotDataSection* first = store.addDataSection("tran");
    cCurvePlotDataSection* second = store.addDataSection("ac");
    for (cCurvePlotDataSection* section : {first, second}) {
        section->addVariable(type, "x1.a");
        section->addVariable(type, "x1.b");
        section->addVariable(type, "out");
    }
    store.createCurveHierarchy(1);
    EXPECT_EQ(first->getCurveHierarchy().getNumberOfCurves(), 0u) << "sections before the index stay as they are";
    EXPECT_EQ(second->getCurveHierarchy().countInstances(), 1u);
    store.createCurveHierarchy(std::vector<cCurvePlotDataSection*>{first}, false);
    EXPECT_EQ(first->getCurveHierarchy().countInstances(), 0u) << "flag off: one level";
    EXPECT_EQ(first->getCurveHierarchy().getNumberOfCurves(), 3u);

    second->addVariable(type, "x2.c");
    second->addVariable(type, "x2.d");
    store.createCurveHierarchyOfLastSection();
    EXPECT_EQ(second->getCurveHierarchy().countInstances(), 2u);
    EXPECT_EQ(second->getCurveHierarchy().findChildInstance(2)->getFullName(), "x2");

    second->initForReload(false);
    EXPECT_EQ(second->getCurveHierarchy().getHierachySize(), 0u);
    EXPECT_EQ(second->getCurveHierarchy().findInstance("x1", false), &second->getCurveHierarchy())
        << "the cleared tree knows no instance";
}

TEST(CurveHierarchySection, RemovalAndRenameRebuildTheTree)
{
    cCurvePlotDataFile store;
    const cCurvePlotDataType* type = store.addType();
    cCurvePlotDataSection& section = *store.addDataSection("tran");
    for (const char* name : {"x1.a", "x1.b", "x2.c", "x2.d"})
        section.addVariable(type, name);
    section.createCurveHierarchy();
    ASSERT_EQ(section.getCurveHierarchy().countInstances(), 2u);
    // Indices above a removed curve move down: the tree must follow, not point past the end.
    ASSERT_TRUE(section.removeVariable(0));
    EXPECT_EQ(section.getCurveHierarchy().getNumberOfCurves(), 3u);
    EXPECT_EQ(section.getCurveHierarchy().countInstances(), 1u) << "x1 keeps one curve and is folded";
    const auto* x2 = section.getCurveHierarchy().findInstance("x2", false);
    ASSERT_NE(x2, nullptr);
    for (uint64_t index : x2->getCurveIndices())
        EXPECT_EQ(section.getVariable(index).name().substr(0, 3), "x2.");
    ASSERT_TRUE(section.renameVariable(0, "x2.b"));
    const auto* renamed = section.getCurveHierarchy().findInstance("x2", false);
    ASSERT_NE(renamed, nullptr);
    EXPECT_EQ(renamed->getNumberOfCurves(), 3u) << "the renamed curve moved into x2";
    EXPECT_EQ(section.getCurveHierarchy().countInstances(), 1u);
}
