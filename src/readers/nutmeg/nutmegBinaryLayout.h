// Guessing how a binary block stores its rows (byte order, precision) from a sample of rows,
// counting the rows from the file's size, and cutting a block to an x interval by bisection on
// the sweep values in the file, without reading them all.
#pragma once

#include <cstdint>

#include "readers/nutmeg/nutmegPlot.h"

namespace vx3::curvePlotParserNutmeg {

// The bytes of a binary block: [position, end) of data.
struct cBinaryBlock {
    const char* data = nullptr;
    uint64_t size = 0;       // the whole mapped text
    uint64_t position = 0;   // first row
    uint64_t nbOfVariables = 0;
    bool complex = false;
    int64_t headerPoints = -1;
};

// Score of a layout over up to 20 rows: finite values, a monotone x of reasonable magnitude, and
// a row count that fits the file (10 for an exact fit). Very negative when the layout can't be.
int analyseBinaryData(const cBinaryBlock& block, unsigned layout, bool bigEndian);
// The best of the six layouts as db type 7 to 12; 0 when none scores above zero. allowed is a mask
// of layouts (bit per binary_layout).
unsigned estimateEndianness(const cBinaryBlock& block, unsigned allowedLayouts);
// Whole rows from position to the end of the file.
uint64_t esimateNbOfPoints(uint64_t size, uint64_t position, uint64_t stride);
// Rows of the block: the header's count when a following plot starts right after it, otherwise
// every whole row up to the end of the file. more is set when the file holds fewer rows than
// the header promises.
uint64_t countRows(const cBinaryBlock& block, uint64_t stride, bool& fewerThanPromised);

// The rows [first, first + count) whose x lies in [xFirst, xLast] (NaN: no bound). False when
// the sweep doesn't rise, and then the rows are left as they are.
bool restrictBinaryToInterval(const cBinaryBlock& block, unsigned layout, bool bigEndian, uint64_t stride,
                              uint64_t points, double xFirst, double xLast, uint64_t& first, uint64_t& count);

// The sweep value of row.
double readSweep(const cBinaryBlock& block, unsigned layout, bool bigEndian, uint64_t stride, uint64_t row);

}  // namespace vx3::curvePlotParserNutmeg
