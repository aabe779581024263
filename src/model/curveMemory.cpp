#include "model/curveMemory.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <sys/mman.h>

namespace vx3::curveMemory {

namespace {
// Ahead of every block; 64 bytes keep the data aligned for any value type.
struct cHeader {
    uint64_t size;    // bytes of the whole allocation, header included
    uint64_t mapped;  // 1 when the allocation is a mapping
    char padding[48];
};
static_assert(sizeof(cHeader) == 64);

constexpr uint64_t kPage = 4096;
constexpr uint64_t kHugePage = 2u << 20;
#ifndef MADV_POPULATE_WRITE
#define MADV_POPULATE_WRITE 23
#endif

// A fresh block is written in full by its loader right away: its pages are mapped in one call
// instead of a fault each, and blocks of several huge pages get them (fewer page-table entries).
void* mapBlock(uint64_t total)
{
    if (total < 2 * kHugePage) {
        void* map = ::mmap(nullptr, total, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (map == MAP_FAILED)
            return nullptr;
        ::madvise(map, total, MADV_POPULATE_WRITE);
        return map;
    }
    // Over-allocate to start on a huge-page boundary, then give the slack back.
    const uint64_t padded = total + kHugePage;
    char* raw = static_cast<char*>(::mmap(nullptr, padded, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    if (raw == MAP_FAILED)
        return nullptr;
    char* start = reinterpret_cast<char*>((reinterpret_cast<uintptr_t>(raw) + kHugePage - 1) & ~(kHugePage - 1));
    if (start > raw)
        ::munmap(raw, static_cast<size_t>(start - raw));
    const uint64_t tail = static_cast<uint64_t>((raw + padded) - (start + total));
    if (tail)
        ::munmap(start + total, tail);
    ::madvise(start, total, MADV_HUGEPAGE);
    ::madvise(start, total, MADV_POPULATE_WRITE);
    return start;
}

cHeader* headerOf(char* block) { return reinterpret_cast<cHeader*>(block - sizeof(cHeader)); }

char* create(uint64_t bytes)
{
    uint64_t total = 0;
    if (__builtin_add_overflow(bytes, sizeof(cHeader), &total) || total > std::numeric_limits<size_t>::max() / 2)
        return nullptr;
    cHeader* header = nullptr;
    if (bytes >= kMappedBlockSize) {
        total = (total + kPage - 1) & ~(kPage - 1);
        void* map = mapBlock(total);
        if (!map)
            return nullptr;
        header = static_cast<cHeader*>(map);
        header->mapped = 1;
    } else {
        header = static_cast<cHeader*>(std::malloc(total));
        if (!header)
            return nullptr;
        header->mapped = 0;
    }
    header->size = total;
    return reinterpret_cast<char*>(header) + sizeof(cHeader);
}
}  // namespace

char* allocate(uint64_t bytes) { return create(bytes); }

char* reallocate(char* block, uint64_t bytes)
{
    if (!block)
        return create(bytes);
    cHeader* header = headerOf(block);
    const uint64_t oldBytes = header->size - sizeof(cHeader);
    if (header->mapped && bytes >= kMappedBlockSize) {
        const uint64_t total = (bytes + sizeof(cHeader) + kPage - 1) & ~(kPage - 1);
        void* map = ::mremap(header, header->size, total, MREMAP_MAYMOVE);
        if (map == MAP_FAILED)
            return nullptr;
        header = static_cast<cHeader*>(map);
        header->size = total;
        return reinterpret_cast<char*>(header) + sizeof(cHeader);
    }
    char* moved = create(bytes);
    if (!moved)
        return nullptr;
    std::memcpy(moved, block, oldBytes < bytes ? oldBytes : bytes);
    release(block);
    return moved;
}

void release(char* block)
{
    if (!block)
        return;
    cHeader* header = headerOf(block);
    if (header->mapped)
        ::munmap(header, header->size);
    else
        std::free(header);
}

}  // namespace vx3::curveMemory
