#include "model/dataType.h"

#include "model/dataTypeTable.h"

namespace vx3::curvePlotProperties {

namespace {
unsigned flagsOf(unsigned type)
{
    return type < kNbOfDataTypes ? detail::kDataTypeRows[type].flags : 0u;
}
}  // namespace

const char* dataTypeToString(unsigned type)
{
    return type < kNbOfDataTypes ? detail::kDataTypeRows[type].text : "unclear";
}

bool checkIsParameterizedDataType(unsigned type) { return flagsOf(type) & detail::kParameterized; }
bool checkCurveIsDigital(unsigned type) { return flagsOf(type) & detail::kDigital; }
bool checkIsDiscreteCurve(unsigned type) { return flagsOf(type) & detail::kDiscrete; }
bool checkIsSparseCurve(unsigned type) { return flagsOf(type) & detail::kSparse; }
bool checkIsScalarType(unsigned type) { return flagsOf(type) & detail::kScalar; }

bool checkHasConstantDataSize(unsigned type)
{
    // Types past the table have no known layout, so nobody may assume a fixed size.
    return type < kNbOfDataTypes && !(flagsOf(type) & detail::kVariableSize);
}

bool checkIsComplexDataType(unsigned type)
{
    switch (type) {
    case float_complex:
    case double_complex:
    case data_float_complex_sweep_matrix:
    case data_double_complex_sweep_matrix:
    case parameterized_float_complex:
    case parameterized_double_complex:
    case double_complex_algebraic:
        return true;
    default:
        return false;
    }
}

bool checkIsIntegerDataType(unsigned type) { return type >= data_char && type <= int_128; }

bool checkIsSweepMatrixDataType(unsigned type)
{
    return type >= data_float_sweep_matrix && type <= data_constant_size_string_sweep_matrix;
}

bool checkHasUint64XVector(unsigned type) { return type >= 117 && type <= 121; }

unsigned size(unsigned type)
{
    const unsigned flags = flagsOf(type);
    if (flags & detail::kSize3)
        return 3;
    if (flags & detail::kSize2)
        return 2;
    return 1;
}

unsigned componentByteSize(unsigned type)
{
    switch (type) {
    case data_char:
    case int_8:
    case uint_8:
        return 1;
    case int_16:
    case uint_16:
        return 2;
    case int_32:
    case uint_32:
    case data_float:
    case float_complex:
    case float_wire_real:
    case data_float_sweep_matrix:
    case data_float_complex_sweep_matrix:
        return 4;
    case int_64:
    case uint_64:
    case data_double:
    case double_complex:
    case double_wire_real:
    case data_double_sweep_matrix:
    case data_double_complex_sweep_matrix:
        return 8;
    case int_128:
        return 16;
    default:
        return 0;
    }
}

data_type getCorrespondingRealDataType(unsigned type)
{
    switch (type) {
    case float_complex:
        return data_float;
    case double_complex:
        return data_double;
    case data_float_complex_sweep_matrix:
        return data_float_sweep_matrix;
    case data_double_complex_sweep_matrix:
        return data_double_sweep_matrix;
    case parameterized_float_complex:
        return parameterized_float;
    case parameterized_double_complex:
        return parameterized_double;
    case double_complex_algebraic:
        return parameterized_double_complex;
    default:
        return static_cast<data_type>(type);
    }
}

data_type getCorrespondingParameterizedDataType(unsigned type, bool doubleX)
{
    switch (type) {
    case data_uint32_string:
        return data_double_parameterized_uint32_string;
    case uint_8:
        return double_parameterized_uint8;
    case int_32:
        return double_parameterized_int32;
    case uint_32:
        return double_parameterized_uint32;
    case uint_64:
        return double_parameterized_uint64;
    case data_float:
    case float_wire_real:
        return doubleX ? double_parameterized_float : parameterized_float;
    case data_double:
        return parameterized_double;
    case float_complex:
        return parameterized_float_complex;
    case double_complex:
        return parameterized_double_complex;
    case double_wire_real:
        return parameterized_double_wire_real;
    case discrete:
        return parameterized_discrete;
    case nine_level_logic:
        return parameterized_9_level_logic;
    default:
        return unclear;
    }
}

data_type getXAxisDataType(unsigned type)
{
    if (type == 26 || (type >= 34 && type <= 42) || type == 44 || type == 45 || type == 54 || type == 55 ||
        (type >= 124 && type <= 126))
        return data_double;
    if (type >= 117 && type <= 121)
        return uint_64;
    return data_empty;
}

}  // namespace vx3::curvePlotProperties
