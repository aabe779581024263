// The text part of a Spice raw file: the header lines of one plot, its variable list, and where
// its values begin; and the layouts in which a binary block may store its rows.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace vx3::curvePlotParserNutmeg {

// One variable as the header lists it: its name and its type word ("voltage", "time", ...).
struct cTmpVar {
    std::string name;
    std::string unit;
};

// The row layouts a binary block can have. The sweep is the first value of a row.
enum binary_layout : unsigned {
    layout_double = 0,             // every value in 8 bytes
    layout_single_double_sweep,    // values in 4 bytes, the sweep in 8
    layout_single,                 // every value in 4 bytes
};

struct cPlotHeader {
    std::string title;
    std::string plotName;
    std::string flags;
    int64_t nbOfVariables = -1;  // -1: the header didn't say
    int64_t nbOfPoints = -1;
    bool complex = false;
    bool singlePrecision = false;  // "(float)" in the header
    bool doublePrecisionStated = false;  // "binary:8"
    bool smartSpice = false;
    bool binary = false;
    std::vector<std::pair<std::string, std::string>> properties;  // other keys, comments as "#"
    std::vector<cTmpVar> variables;
    uint64_t dataPosition = 0;  // first byte after the "Values:" or "Binary:" line
};

enum header_result : unsigned {
    header_ok = 0,
    header_none,        // no header at this position (end of text, or not a raw file)
    header_no_values,   // the header was read but neither "values:" nor "binary:" followed
    header_bad_count,   // "No. Variables" and the list disagree
};

// Reads one header from position on; position is not moved. Lines are "Key: value"; the keys
// are matched in lower case.
header_result parseHeader(const char* text, uint64_t size, uint64_t position, cPlotHeader& header);
// Whether a header line begins at position (after blanks), for the end of a block.
bool checkIsHeader(const char* text, uint64_t size, uint64_t position);

// Bytes of one row; 0 without variables.
uint64_t computeStride(uint64_t nbOfVariables, bool complex, unsigned layout, bool hasRowEnd = false);
// Bytes of one value of the sweep and of a curve (one part of a complex value).
unsigned sweepWidth(unsigned layout);
unsigned curveWidth(unsigned layout);
// Byte offset of variable index inside a row.
uint64_t columnOffset(uint64_t index, bool complex, unsigned layout);
// db types 7 to 12: (7, 8), (9, 10), (11, 12) are the little and big endian forms of the three
// layouts.
unsigned dbTypeOf(unsigned layout, bool bigEndian);
unsigned layoutOfDbType(unsigned dbType);
bool checkEndiannessIsOk(unsigned dbType);

// One value of width 4 or 8 at p, in the given byte order.
double readValue(const char* p, unsigned width, bool bigEndian);

}  // namespace vx3::curvePlotParserNutmeg
