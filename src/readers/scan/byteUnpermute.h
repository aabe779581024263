// Decoding helpers of compressed value blocks.
#pragma once

#include <cstdint>

namespace vx3::byteUnpermute {

// Undoes the byte-plane split of count doubles: source holds count bytes of byte 0 of every
// value, then count bytes of byte 1, and so on. source and target must not overlap.
void unpermuteDoubleDataBuffer(const unsigned char* source, uint64_t count, double* target);
// Widens count floats at the start of buffer to doubles in place, working from the end so that
// no value is overwritten before it is read. buffer must have room for count doubles.
void floatToDouble(void* buffer, uint64_t count);

}  // namespace vx3::byteUnpermute
