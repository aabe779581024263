// Helpers of the expression tests: the arrays that the numpy oracles write as raw doubles.
#pragma once

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace zwexpressions {

inline std::vector<double> readDoubles(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    std::vector<double> values(bytes.size() / sizeof(double));
    std::memcpy(values.data(), bytes.data(), values.size() * sizeof(double));
    return values;
}

}  // namespace zwexpressions

namespace zwexpressions {

// Runs an oracle script of tests/expressions/oracles with the system's Python (which has numpy
// and scipy); arguments are quoted one by one. The exit status of the script.
inline int runOracle(const std::string& script, const std::vector<std::string>& arguments)
{
    std::string command = "/usr/bin/python3 '" + std::string(ZW_SOURCE_DIR) + "/tests/expressions/oracles/" + script + "'";
    for (const auto& argument : arguments)
        command += " '" + argument + "'";
    return std::system(command.c_str());
}

}  // namespace zwexpressions
