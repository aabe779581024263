// Sparse real curves: records of an index into the X values and a value, packed one after the
// other (12 bytes with a 32-bit index, 16 with a 64-bit one, so records may be misaligned).
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>

namespace vx3::plotDrawer {

// A point source over the records. A record whose index is not below the number of X values,
// or whose value is NaN, breaks the line.
template <typename X, typename P>
struct cInterleavedSource {
    const char* records = nullptr;
    uint64_t count = 0;        // records
    uint64_t recordSize = sizeof(P) + sizeof(double);
    const X* xs = nullptr;
    uint64_t xCount = 0;

    uint64_t size() const { return count; }
    P index(uint64_t i) const
    {
        P value;
        std::memcpy(&value, records + i * recordSize, sizeof(P));
        return value;
    }
    double x(uint64_t i) const
    {
        const P at = index(i);
        return uint64_t(at) < xCount ? double(xs[at]) : NAN;
    }
    double y(uint64_t i) const
    {
        double value;
        std::memcpy(&value, records + i * recordSize + sizeof(P), sizeof(double));
        return value;
    }
};

}  // namespace vx3::plotDrawer
