#include "model/analysisType.h"

#include <unordered_map>

#include "base/cVxString.h"
#include "model/analysisTypeTable.h"

namespace vx3::curvePlotDataSection {

namespace {
std::unordered_map<std::string, analysisType> buildSpellings()
{
    std::unordered_map<std::string, analysisType> spellings;
    for (unsigned type = 1; type < detail::kNbOfAnalysisTypeTexts; ++type)
        if (*detail::kAnalysisTypeTexts[type])
            spellings.emplace(detail::kAnalysisTypeTexts[type], static_cast<analysisType>(type));
    // How simulators spell some of them.
    spellings.emplace("transient", tran);
    spellings.emplace("small signal ac", ac);
    spellings.emplace("ext", extract);
    spellings.emplace("sp", s_parameters);
    spellings.emplace("tran_sp", transient_s_parameters);
    spellings.emplace("dc operating point", op);
    spellings.emplace("info.subckts", info_subcircuits);
    spellings.emplace("qpnoise", noise);
    spellings.emplace("small signal transfer function", transfer_function);
    return spellings;
}
}  // namespace

const char* typeToString(unsigned type)
{
    return type < detail::kNbOfAnalysisTypeTexts ? detail::kAnalysisTypeTexts[type] : "";
}

analysisType stringToType(std::string_view text)
{
    static const std::unordered_map<std::string, analysisType> spellings = buildSpellings();
    const cVxString lower = vxString::to_lower(vxString::trim(text));
    const auto found = spellings.find(lower);
    if (found != spellings.end())
        return found->second;
    if (lower.startsWith("ac_")) {
        unsigned number = 0;
        if (lower.subString(3).toUint(number)) {
            // Beyond the numbered slots the result is still an ac analysis.
            return number >= 1 && number <= 32 ? static_cast<analysisType>(ac_1 + number - 1) : ac;
        }
    }
    return no_analysis;
}

}  // namespace vx3::curvePlotDataSection
