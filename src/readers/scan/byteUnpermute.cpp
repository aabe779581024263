#include "readers/scan/byteUnpermute.h"

#include <cstring>

namespace vx3::byteUnpermute {

void unpermuteDoubleDataBuffer(const unsigned char* source, uint64_t count, double* target)
{
    unsigned char* out = reinterpret_cast<unsigned char*>(target);
    // Blocks of values keep the eight source planes and the target in cache together.
    constexpr uint64_t kBlock = 4096;
    for (uint64_t start = 0; start < count; start += kBlock) {
        const uint64_t stop = start + kBlock < count ? start + kBlock : count;
        for (unsigned byte = 0; byte < 8; ++byte) {
            const unsigned char* plane = source + byte * count;
            for (uint64_t i = start; i < stop; ++i)
                out[i * 8 + byte] = plane[i];
        }
    }
}

void floatToDouble(void* buffer, uint64_t count)
{
    float* floats = static_cast<float*>(buffer);
    double* doubles = static_cast<double*>(buffer);
    for (uint64_t i = count; i-- > 0;) {
        float value;
        std::memcpy(&value, floats + i, sizeof(value));
        const double wide = value;
        std::memcpy(doubles + i, &wide, sizeof(wide));
    }
}

}  // namespace vx3::byteUnpermute
