#include "readers/nutmeg/nutmegBinaryLayout.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace vx3::curvePlotParserNutmeg {

namespace {

constexpr uint64_t kSampleRows = 20;
constexpr int kImpossible = INT_MIN / 4;

// Magnitudes outside this range are what reading bytes in the wrong order or width produces.
bool plausibleMagnitude(double value)
{
    const double a = std::fabs(value);
    return a == 0.0 || (a > 1e-40 && a < 1e40);
}

}  // namespace

double readSweep(const cBinaryBlock& block, unsigned layout, bool bigEndian, uint64_t stride, uint64_t row)
{
    return readValue(block.data + block.position + row * stride, sweepWidth(layout), bigEndian);
}

uint64_t esimateNbOfPoints(uint64_t size, uint64_t position, uint64_t stride)
{
    return stride == 0 || position >= size ? 0 : (size - position) / stride;
}

uint64_t countRows(const cBinaryBlock& block, uint64_t stride, bool& fewerThanPromised)
{
    fewerThanPromised = false;
    const uint64_t available = esimateNbOfPoints(block.size, block.position, stride);
    if (block.headerPoints > 0) {
        const uint64_t promised = static_cast<uint64_t>(block.headerPoints);
        if (promised > available) {
            fewerThanPromised = true;
            return available;
        }
        // A following plot right after the promised rows: the header was right.
        if (promised < available && checkIsHeader(block.data, block.size, block.position + promised * stride))
            return promised;
    }
    // The header may also count fewer rows than a simulator that is still writing has written.
    return available;
}

int analyseBinaryData(const cBinaryBlock& block, unsigned layout, bool bigEndian)
{
    const uint64_t stride = computeStride(block.nbOfVariables, block.complex, layout);
    const uint64_t available = esimateNbOfPoints(block.size, block.position, stride);
    if (available == 0)
        return kImpossible;
    const uint64_t rows = std::min(available, kSampleRows);
    const unsigned parts = block.complex ? 2 : 1;
    int score = 0;
    double previous = 0;
    int direction = 0;
    bool moved = false;
    for (uint64_t r = 0; r < rows; ++r) {
        const char* row = block.data + block.position + r * stride;
        const double x = readValue(row, sweepWidth(layout), bigEndian);
        if (!std::isfinite(x))
            return kImpossible;
        score += plausibleMagnitude(x) ? 1 : -4;
        if (r > 0 && x != previous) {
            moved = true;
            const int step = x > previous ? 1 : -1;
            if (direction == 0)
                direction = step;
            else if (step != direction)
                score -= 3;
        }
        previous = x;
        for (uint64_t v = 1; v < block.nbOfVariables; ++v)
            for (unsigned p = 0; p < parts; ++p) {
                const double value = readValue(row + columnOffset(v, block.complex, layout) + p * curveWidth(layout),
                                               curveWidth(layout), bigEndian);
                if (!std::isfinite(value))
                    score -= 3;
                else if (!plausibleMagnitude(value))
                    score -= 1;
            }
    }
    const uint64_t end = block.position + available * stride;
    const bool exactEnd = end == block.size;
    const bool exactHeader = block.headerPoints > 0 && static_cast<uint64_t>(block.headerPoints) <= available &&
                             checkIsHeader(block.data, block.size,
                                           block.position + static_cast<uint64_t>(block.headerPoints) * stride);
    // The header's row count fitting the bytes exactly is the strongest sign; rows that merely
    // divide the rest of the file are a weak one (every narrower layout divides it too).
    const bool headerFits = block.headerPoints > 0 &&
                            (exactHeader || (exactEnd && static_cast<uint64_t>(block.headerPoints) == available));
    if (headerFits)
        score += 10;
    else if (exactEnd)
        score += 3;
    // An x that never moves is what half of a double read as a float looks like.
    if (rows > 2 && !moved)
        score -= 10;
    return score;
}

unsigned estimateEndianness(const cBinaryBlock& block, unsigned allowedLayouts)
{
    int best = kImpossible;
    unsigned bestType = 0;
    for (unsigned layout : {layout_double, layout_single_double_sweep, layout_single})
        for (bool bigEndian : {false, true}) {
            if (!(allowedLayouts & (1u << layout)))
                continue;
            const int score = analyseBinaryData(block, layout, bigEndian);
            if (score > best) {
                best = score;
                bestType = dbTypeOf(layout, bigEndian);
            }
        }
    // A best score at or below zero means no layout makes sense of the bytes (noise, or text).
    return best > 0 ? bestType : 0;
}

bool restrictBinaryToInterval(const cBinaryBlock& block, unsigned layout, bool bigEndian, uint64_t stride,
                              uint64_t points, double xFirst, double xLast, uint64_t& first, uint64_t& count)
{
    first = 0;
    count = points;
    if (points == 0)
        return true;
    const double x0 = readSweep(block, layout, bigEndian, stride, 0);
    const double x1 = readSweep(block, layout, bigEndian, stride, points - 1);
    if (!(x1 >= x0))
        return false;
    // The first row at or after a value, by bisection over the rows in the file.
    auto lowerBound = [&](double value, bool strictlyAfter) {
        uint64_t low = 0, high = points;
        while (low < high) {
            const uint64_t middle = low + (high - low) / 2;
            const double x = readSweep(block, layout, bigEndian, stride, middle);
            if (strictlyAfter ? x <= value : x < value)
                low = middle + 1;
            else
                high = middle;
        }
        return low;
    };
    const uint64_t begin = std::isfinite(xFirst) ? lowerBound(xFirst, false) : 0;
    const uint64_t end = std::isfinite(xLast) ? lowerBound(xLast, true) : points;
    first = begin;
    count = end > begin ? end - begin : 0;
    return true;
}

}  // namespace vx3::curvePlotParserNutmeg
