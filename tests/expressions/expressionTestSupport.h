// Helpers of the expression tests: the arrays that the numpy oracles write as raw doubles.
#pragma once

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
