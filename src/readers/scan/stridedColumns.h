// Extraction of several columns of a table of fixed-size binary records in one pass over the
// file, optionally on several threads (each thread takes a range of rows).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vx3 {

class cVxMemoryFile;
class cVxBinFile;

namespace stridedColumns {

struct cColumn {
    uint64_t offset = 0;  // bytes from the start of a record
    unsigned width = 8;   // bytes of one value
    char* target = nullptr;  // room for count values, packed
};

// Records of stride bytes start at position; rows [0, count) are read. False with a message when
// a column doesn't fit in a record, the table runs past the end, or the file shrank.
bool extract(cVxMemoryFile& file, uint64_t position, uint64_t stride, uint64_t count,
             const std::vector<cColumn>& columns, unsigned threads, std::string& error);
bool extract(cVxBinFile& file, uint64_t position, uint64_t stride, uint64_t count,
             const std::vector<cColumn>& columns, unsigned threads, std::string& error);

}  // namespace stridedColumns
}  // namespace vx3
