// Digital curves and instance trees in zelwave-cli: logic changes as text, the tree of scopes.
#include <iostream>
#include <string>

#include "cliFileSupport.h"

namespace vx3::cliFiles {

bool checkIsLogicChangeCurve(const cCurvePlotVariable& curve)
{
    return curve.uint64SparseIndices() != nullptr && curve.getValueVectorWidth() > 0;
}

void dumpLogicChanges(const cCurvePlotDataSection& section, const cCurvePlotVariable& curve, bool ticks,
                      std::ostream& out)
{
    const uint64_t* positions = curve.uint64SparseIndices();
    const char* states = curve.valueVectorData();
    const uint64_t width = curve.getValueVectorWidth();
    const uint64_t count = curve.getValueCount();
    const double scale = section.getTimeScaleFactor();
    std::string value;
    for (uint64_t i = 0; i < count; ++i) {
        value.assign(states + i * width, width);
        if (ticks)
            out << positions[i];
        else
            out << number(static_cast<double>(positions[i]) * scale);
        out << ',' << value << '\n';
    }
}

namespace {
void printNode(const cCurvePlotDataSection& section, const cCurvePlotDataCurveHierarchy& node, unsigned depth,
               std::ostream& out)
{
    const std::string indent(2 * depth, ' ');
    auto printCurve = [&](unsigned index) {
        if (index >= section.getNbOfVariables() || section.getVariable(index).checkMustClose())
            return;
        out << indent << "  " << section.getVariable(index).name() << '\n';
    };
    for (unsigned index : node.getCurveIndices())
        printCurve(index);
    for (const auto& [first, last] : node.getCurveIndexRanges())
        for (unsigned index = first; index <= last; ++index)
            printCurve(index);
    for (const cCurvePlotDataCurveHierarchy& child : node.getChildren()) {
        out << indent << "  " << child.getFullName() << "/";
        if (!child.getSubcircuitName().empty())
            out << " (" << child.getSubcircuitName() << ")";
        out << '\n';
        printNode(section, child, depth + 1, out);
    }
}
}  // namespace

void printInstanceTree(cCurvePlotDataSection& section, std::ostream& out)
{
    // Readers that know their scopes built the tree; the others get it from the curve names.
    if (section.getCurveHierarchy().getHierachySize() == 0)
        section.createCurveHierarchy();
    printNode(section, section.getCurveHierarchy(), 0, out);
}

}  // namespace vx3::cliFiles
