// Search expressions over the store: which sections, curves and instances match an expression of
// the calculator's language, such as prop_variable_name =~ "v\(.*\)" && prop_section_name == "tran".
// The store knows no expressions: it hands each candidate's predefined values to a matcher that
// the expression library implements.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace vx3 {

class cVxLogger;

namespace curvePlotDataSearch {

// The predefined values of one candidate, by name (prop_file_name, prop_variable_name, ...).
struct cSearchValues {
    std::vector<std::pair<std::string, std::string>> strings;
    std::vector<std::pair<std::string, double>> numbers;
};

}  // namespace curvePlotDataSearch

class cCurvePlotSearchVirtual {
public:
    virtual ~cCurvePlotSearchVirtual() = default;
    // Takes the expression for the candidates that follow; false after reporting why it can't.
    virtual bool searchVirtualPrepare(const std::string& expression, const cVxLogger& logger) = 0;
    // Whether the candidate with these values matches.
    virtual bool searchVirtualMatches(const curvePlotDataSearch::cSearchValues& values) = 0;
};

}  // namespace vx3
