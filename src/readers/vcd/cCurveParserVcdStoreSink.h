// The sink that writes records straight into blocks sized by a counting pass: the second pass
// of a read, and the loader of a curve whose values stayed in the file.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include "readers/vcd/cCurveParserVcdBase.h"

namespace vx3::curveParserVcd {

// A value of n states at the width of its variable: a narrower one is extended on the left as
// Verilog does (x and z repeat, anything else extends with 0), a wider one keeps its right-most
// states. buffer holds at least width characters.
inline const char* fitToWidth(const char* bits, uint64_t n, uint64_t width, char* buffer)
{
    if (n > width)
        return bits + (n - width);
    if (n == width)
        return bits;
    const char fill = bits[0] == 'x' || bits[0] == 'z' ? bits[0] : '0';
    std::memset(buffer, fill, width - n);
    std::memcpy(buffer + (width - n), bits, n);
    return buffer;
}

// Where the records of one variable go.
struct cTarget {
    uint64_t* positions = nullptr;
    char* states = nullptr;
    double* xs = nullptr;
    double* ys = nullptr;
    uint64_t width = 0;
};

struct cStoreSink {
    const cTarget* targets;
    std::vector<uint64_t> next;  // the next record of each variable in this piece
    std::vector<uint64_t> lastStep;
    std::vector<char> extended;
    double timeScale;

    cStoreSink(const std::vector<cTarget>& all, std::vector<uint64_t> first, uint64_t maxWidth, double scale)
        : targets(all.data()), next(std::move(first)), lastStep(all.size(), kNoStep), extended(maxWidth + 1),
          timeScale(scale)
    {
    }
    void mark(const char*) {}
    void step(uint64_t) {}
    uint64_t slot(uint32_t signal, uint64_t step)
    {
        // A second value in one step replaces the first.
        if (lastStep[signal] == step)
            return next[signal] - 1;
        lastStep[signal] = step;
        return next[signal]++;
    }
    void logic(uint32_t signal, const char* bits, uint64_t n, uint64_t step, uint64_t time)
    {
        const cTarget& target = targets[signal];
        if (!target.positions)
            return;  // a load of other variables
        const uint64_t width = target.width;
        const char* value = fitToWidth(bits, n, width, extended.data());
        const uint64_t index = slot(signal, step);
        target.positions[index] = time;
        if (width == 1)
            target.states[index] = *value;
        else
            std::memcpy(target.states + index * width, value, width);
    }
    void real(uint32_t signal, double value, uint64_t step, uint64_t time)
    {
        const cTarget& target = targets[signal];
        if (!target.xs)
            return;
        const uint64_t index = slot(signal, step);
        target.xs[index] = static_cast<double>(time) * timeScale;
        target.ys[index] = value;
    }
};

}  // namespace vx3::curveParserVcd
