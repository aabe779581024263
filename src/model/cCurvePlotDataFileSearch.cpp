// The store's search: the candidates and their predefined values.
#include "model/cCurvePlotDataFile.h"

namespace vx3 {

namespace {

void addSectionValues(const cCurvePlotDataSection& section, curvePlotDataSearch::cSearchValues& values)
{
    const cFileDbSupport* file = section.getFile();
    values.numbers.emplace_back("prop_file_id", file ? static_cast<double>(file->getId()) : 0.0);
    values.strings.emplace_back("prop_file_name", file ? file->fileName() : std::string());
    values.strings.emplace_back("prop_section_name", section.name());
    values.numbers.emplace_back("prop_section_identifier", static_cast<double>(section.getSectionId()));
}

}  // namespace

std::vector<cCurvePlotDataSection*> cCurvePlotDataFile::findMatchingSections(const std::string& expression,
                                                                             cCurvePlotSearchVirtual& search,
                                                                             const cVxLogger& logger)
{
    std::vector<cCurvePlotDataSection*> found;
    if (!search.searchVirtualPrepare(expression, logger))
        return found;
    cVxScopedLock lock(mMutex);
    for (const auto& section : mSections) {
        curvePlotDataSearch::cSearchValues values;
        addSectionValues(*section, values);
        if (search.searchVirtualMatches(values))
            found.push_back(section.get());
    }
    return found;
}

std::vector<std::pair<cCurvePlotDataSection*, uint64_t>> cCurvePlotDataFile::findMatchingCurves(
    const std::string& expression, cCurvePlotSearchVirtual& search, const cVxLogger& logger)
{
    std::vector<std::pair<cCurvePlotDataSection*, uint64_t>> found;
    if (!search.searchVirtualPrepare(expression, logger))
        return found;
    cVxScopedLock lock(mMutex);
    for (const auto& section : mSections) {
        for (uint64_t i = 0; i < section->getNbOfVariables(); ++i) {
            const cCurvePlotVariable& curve = section->getVariable(i);
            curvePlotDataSearch::cSearchValues values;
            addSectionValues(*section, values);
            values.strings.emplace_back("prop_variable_name", curve.name());
            values.strings.emplace_back("prop_variable_y_axis_unit", curve.getUnitName());
            values.numbers.emplace_back("prop_variable_y_axis_type_index", static_cast<double>(curve.getTypeIndex()));
            if (search.searchVirtualMatches(values))
                found.emplace_back(section.get(), i);
        }
    }
    return found;
}

std::vector<std::pair<cCurvePlotDataSection*, const cCurvePlotDataCurveHierarchy*>>
cCurvePlotDataFile::findMatchingInstances(const std::string& expression, cCurvePlotSearchVirtual& search,
                                          const cVxLogger& logger)
{
    std::vector<std::pair<cCurvePlotDataSection*, const cCurvePlotDataCurveHierarchy*>> found;
    if (!search.searchVirtualPrepare(expression, logger))
        return found;
    cVxScopedLock lock(mMutex);
    for (const auto& section : mSections) {
        // Every instance below the root, with its depth (1 for the root's children).
        std::vector<std::pair<const cCurvePlotDataCurveHierarchy*, unsigned>> pending;
        const auto& roots = section->getCurveHierarchy().getChildren();
        for (auto child = roots.rbegin(); child != roots.rend(); ++child)
            pending.emplace_back(&*child, 1u);
        while (!pending.empty()) {
            const auto [node, level] = pending.back();
            pending.pop_back();
            curvePlotDataSearch::cSearchValues values;
            addSectionValues(*section, values);
            values.strings.emplace_back("prop_instance_name", node->getSimpleName());
            values.strings.emplace_back("prop_instance_full_hierarchical_name", node->getFullName());
            values.numbers.emplace_back("prop_instance_hierarchical_level", static_cast<double>(level));
            values.strings.emplace_back("prop_instance_subcircuit_name", node->getSubcircuitName());
            if (search.searchVirtualMatches(values))
                found.emplace_back(section.get(), node);
            for (auto child = node->getChildren().rbegin(); child != node->getChildren().rend(); ++child)
                pending.emplace_back(&*child, level + 1);
        }
    }
    return found;
}

}  // namespace vx3
