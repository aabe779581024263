#include "readers/scan/stridedColumns.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <thread>

#include "readers/scan/cBusErrorGuard.h"
#include "readers/scan/cVxBinFile.h"
#include "readers/scan/cVxMemoryFile.h"
#include "readers/scan/stridedCopy.h"

namespace vx3::stridedColumns {

namespace {

bool checkLayout(uint64_t position, uint64_t stride, uint64_t count, uint64_t fileSize,
                 const std::vector<cColumn>& columns, const std::string& name, std::string& error)
{
    for (const cColumn& column : columns)
        if (column.width == 0 || column.offset + column.width > stride || !column.target) {
            error = "A column of \"" + name + "\" doesn't fit in its record.";
            return false;
        }
    if (!stridedCopy::spanFits(position, stride, static_cast<unsigned>(stride), count, fileSize)) {
        error = "The table of \"" + name + "\" runs past the end of the file.";
        return false;
    }
    return true;
}

// Rows [first, last) of all columns; plain data only, it runs under the bus-error guard.
void copyRows(const char* records, uint64_t stride, uint64_t first, uint64_t last, const cColumn* columns,
              size_t nbColumns)
{
    // Blocks of rows keep each column's targets and the records hot in cache at the same time.
    constexpr uint64_t kRows = 2048;
    for (uint64_t start = first; start < last; start += kRows) {
        const uint64_t rows = std::min(kRows, last - start);
        const char* block = records + start * stride;
        for (size_t c = 0; c < nbColumns; ++c) {
            const cColumn& column = columns[c];
            stridedCopy::copy(block + column.offset, stride, column.width, rows,
                              column.target + start * column.width);
        }
    }
}

template <typename Work>
bool runThreads(unsigned threads, uint64_t count, Work&& work)
{
    threads = std::max(1u, std::min<unsigned>(threads, static_cast<unsigned>(std::min<uint64_t>(count, 64))));
    if (threads <= 1)
        return work(0, count);
    std::atomic<bool> ok{true};
    std::vector<std::thread> pool;
    const uint64_t share = (count + threads - 1) / threads;
    for (unsigned t = 0; t < threads; ++t) {
        const uint64_t first = t * share, last = std::min(count, first + share);
        if (first >= last)
            break;
        pool.emplace_back([&, first, last] {
            if (!work(first, last))
                ok = false;
        });
    }
    for (std::thread& thread : pool)
        thread.join();
    return ok;
}

}  // namespace

bool extract(cVxMemoryFile& file, uint64_t position, uint64_t stride, uint64_t count,
             const std::vector<cColumn>& columns, unsigned threads, std::string& error)
{
    if (!file.checkIsOpen()) {
        error = "The file \"" + file.fileName() + "\" is not open.";
        return false;
    }
    if (!checkLayout(position, stride, count, file.size(), columns, file.fileName(), error))
        return false;
    const char* records = file.data() + position;
    const cColumn* list = columns.data();
    const size_t nbColumns = columns.size();
    const bool mapped = file.checkIsMapped();
    const bool ok = runThreads(threads, count, [&](uint64_t first, uint64_t last) {
        if (!mapped) {
            copyRows(records, stride, first, last, list, nbColumns);
            return true;
        }
        // Blocks of rows come with pread into a cache-sized buffer: no page faults on the mapping.
        constexpr uint64_t kBlock = 256u << 10;
        const uint64_t rowsPerBlock = std::max<uint64_t>(1, kBlock / stride);
        std::vector<char> block(rowsPerBlock * stride);
        for (uint64_t start = first; start < last; start += rowsPerBlock) {
            const uint64_t rows = std::min(rowsPerBlock, last - start);
            if (!file.readBytesUnmapped(position + start * stride, block.data(), rows * stride)) {
                // No descriptor: the mapped rows, under the guard.
                const uint64_t stop = start + rows;
                if (!busErrorGuard::runGuarded([records, stride, start, stop, list, nbColumns] {
                        copyRows(records, stride, start, stop, list, nbColumns);
                    }))
                    return false;
                continue;
            }
            for (size_t c = 0; c < nbColumns; ++c)
                stridedCopy::copy(block.data() + list[c].offset, stride, list[c].width, rows,
                                  list[c].target + start * list[c].width);
        }
        return true;
    });
    if (!ok)
        error = "The file \"" + file.fileName() + "\" was truncated while it was read.";
    return ok;
}

bool extract(cVxBinFile& file, uint64_t position, uint64_t stride, uint64_t count,
             const std::vector<cColumn>& columns, unsigned threads, std::string& error)
{
    if (!file.checkIsOpen()) {
        error = "The file \"" + file.fileName() + "\" is not open.";
        return false;
    }
    if (!checkLayout(position, stride, count, file.size(), columns, file.fileName(), error))
        return false;
    std::atomic<bool> failed{false};
    const bool ok = runThreads(threads, count, [&](uint64_t first, uint64_t last) {
        constexpr uint64_t kBlock = 1u << 20;
        const uint64_t rowsPerBlock = std::max<uint64_t>(1, kBlock / stride);
        std::vector<char> block(rowsPerBlock * stride);
        for (uint64_t start = first; start < last && !failed; start += rowsPerBlock) {
            const uint64_t rows = std::min(rowsPerBlock, last - start);
            if (!file.readBytes(position + start * stride, block.data(), rows * stride)) {
                failed = true;
                return false;
            }
            for (const cColumn& column : columns)
                stridedCopy::copy(block.data() + column.offset, stride, column.width, rows,
                                  column.target + start * column.width);
        }
        return true;
    });
    if (!ok)
        error = file.getErrorMessage();
    return ok;
}

}  // namespace vx3::stridedColumns
