#include "readers/vcd/cCurveParserVcdCodeArray.h"

namespace vx3 {

uint64_t cCurveParserVcdCodeArray::codeToVectorIndex(std::string_view code)
{
    uint64_t index = 0, weight = 1;
    for (char c : code) {
        index += static_cast<uint64_t>(static_cast<unsigned char>(c) - 32) * weight;
        weight *= 95;
    }
    return index;
}

std::string cCurveParserVcdCodeArray::vectorIndexToCode(uint64_t index)
{
    // Digits of a real code are 1 ("!") to 94 ("~"), so plain base 95 reads them back.
    std::string code;
    while (index > 0) {
        code.push_back(static_cast<char>(32 + index % 95));
        index /= 95;
    }
    return code;
}

bool cCurveParserVcdCodeArray::checkIsValidCode(std::string_view code)
{
    if (code.empty())
        return false;
    for (char c : code)
        if (c < '!' || c > '~')
            return false;
    return true;
}

bool cCurveParserVcdCodeArray::insertCode(std::string_view code, uint32_t curveIndex, uint32_t& previousIndex)
{
    if (code.size() <= kMaxDenseCodeLength) {
        const uint64_t index = codeToVectorIndex(code);
        if (index < kMaxDenseIndex) {
            if (index >= mDense.size()) {
                // Writers count codes up from "!": grow ahead so that the array is resized rarely.
                uint64_t size = mDense.size() < 1024 ? 1024 : mDense.size();
                while (size <= index)
                    size *= 2;
                mDense.resize(size < kMaxDenseIndex ? size : kMaxDenseIndex, kUndefined);
            }
            if (mDense[index] != kUndefined) {
                previousIndex = mDense[index];
                return false;
            }
            mDense[index] = curveIndex;
            return true;
        }
    }
    const auto [where, inserted] = mMap.emplace(std::string(code), curveIndex);
    if (!inserted) {
        previousIndex = where->second;
        return false;
    }
    return true;
}

bool cCurveParserVcdCodeArray::findInMap(std::string_view code, uint32_t& curve) const
{
    if (mMap.empty())
        return false;
    const auto where = mMap.find(code);
    if (where == mMap.end())
        return false;
    curve = where->second;
    return true;
}

void cCurveParserVcdCodeArray::clear()
{
    mDense.clear();
    mMap.clear();
}

}  // namespace vx3
