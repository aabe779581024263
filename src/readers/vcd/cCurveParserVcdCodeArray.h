// From the identifier codes of a value change dump to curve indices. Codes are strings of the
// printable characters "!" to "~"; read as base-95 numbers (first character least significant)
// they index a dense array, so that a value change finds its curve by one array access.
// Writers that use long codes would make that array too large: past a bound the codes go to a
// hash map instead, which only such files pay for.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vx3 {

class cCurveParserVcdCodeArray {
public:
    static constexpr uint32_t kUndefined = 0xffffffffu;
    // Codes of up to this many characters index the dense array.
    static constexpr size_t kMaxDenseCodeLength = 4;
    // The dense array never grows past this many entries (64 MB of indices).
    static constexpr uint64_t kMaxDenseIndex = uint64_t(1) << 24;

    // index = sum of (character - 32) * 95^position; "!" is 1, "!!" is 1 + 95. Only for codes of
    // up to kMaxDenseCodeLength characters (longer ones overflow the meaning, not the type).
    static uint64_t codeToVectorIndex(std::string_view code);
    static std::string vectorIndexToCode(uint64_t index);
    // A code's own characters are printable ASCII from "!" to "~".
    static bool checkIsValidCode(std::string_view code);

    // Files curveIndex under code. When the code is known already, the curve becomes an alias:
    // previousIndex gets the curve that has the code so far (the head of its alias chain), and
    // the answer is false.
    bool insertCode(std::string_view code, uint32_t curveIndex, uint32_t& previousIndex);
    // The curve of a code; false for an undefined one.
    bool getVariableIndex(std::string_view code, uint32_t& curve) const
    {
        if (code.size() <= kMaxDenseCodeLength) {
            const uint64_t index = codeToVectorIndex(code);
            if (index < mDense.size() && mDense[index] != kUndefined) {
                curve = mDense[index];
                return true;
            }
            if (index < kMaxDenseIndex)
                return false;
        }
        return findInMap(code, curve);
    }
    // The same for an index computed while the code was read (codes short enough for the array).
    bool getVariableIndex(uint64_t index, uint32_t& curve) const
    {
        if (index >= mDense.size() || mDense[index] == kUndefined)
            return false;
        curve = mDense[index];
        return true;
    }
    bool checkUsesMap() const { return !mMap.empty(); }
    uint64_t size() const { return mDense.size(); }
    void clear();

private:
    bool findInMap(std::string_view code, uint32_t& curve) const;

    // Looked up by the view of a code in the file: no string is made from the (mapped) text,
    // where a value scanner runs under the bus error guard.
    struct cHash {
        using is_transparent = void;
        size_t operator()(std::string_view code) const { return std::hash<std::string_view>()(code); }
    };

    std::vector<uint32_t> mDense;
    std::unordered_map<std::string, uint32_t, cHash, std::equal_to<>> mMap;
};

}  // namespace vx3
