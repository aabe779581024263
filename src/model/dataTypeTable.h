// Row layout of the generated data type table (dataTypeTable.cpp).
#pragma once

namespace vx3::curvePlotProperties::detail {

enum : unsigned {
    kParameterized = 1u << 0,
    kDigital = 1u << 1,
    kDiscrete = 1u << 2,
    kSparse = 1u << 3,
    kScalar = 1u << 4,
    kVariableSize = 1u << 5,
    kSize2 = 1u << 6,
    kSize3 = 1u << 7,
};

constexpr unsigned kNbOfDataTypes = 127;

struct cDataTypeRow {
    const char* text;
    unsigned flags;
};

extern const cDataTypeRow kDataTypeRows[kNbOfDataTypes];

}  // namespace vx3::curvePlotProperties::detail
