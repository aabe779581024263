// Memory blocks of curve values. Large blocks are anonymous mappings of their own, so that
// releasing a curve gives its memory back to the system at once, whatever the thresholds of
// the general allocator; small blocks come from malloc. Failures answer null, never throw.
#pragma once

#include <cstdint>

namespace vx3::curveMemory {

// Blocks from this size on are mapped.
constexpr uint64_t kMappedBlockSize = 256u << 10;

char* allocate(uint64_t bytes);
// Keeps the first min(old, new) bytes; null (the old block untouched) when out of memory.
char* reallocate(char* block, uint64_t bytes);
void release(char* block);

}  // namespace vx3::curveMemory
