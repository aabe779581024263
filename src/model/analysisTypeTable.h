// Texts of the analysis types, generated into analysisTypeTable.cpp.
#pragma once

namespace vx3::curvePlotDataSection::detail {

constexpr unsigned kNbOfAnalysisTypeTexts = 80;
extern const char* const kAnalysisTypeTexts[kNbOfAnalysisTypeTexts];

}  // namespace vx3::curvePlotDataSection::detail
