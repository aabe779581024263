// The storage kinds of curve values and their classes.
#pragma once

#include <cstddef>

namespace vx3::curvePlotProperties {

// Numbers are part of file formats and sessions: never renumber.
// Numbers without a text of their own print "unclear".
enum data_type : unsigned {
    unclear = 0,
    data_empty = 1,
    data_type_2 = 2,
    data_type_3 = 3,
    data_string = 4,
    data_uint32_string = 5,
    data_type_6 = 6,
    data_type_7 = 7,
    data_char = 8,
    int_8 = 9,
    uint_8 = 10,
    int_16 = 11,
    uint_16 = 12,
    int_32 = 13,
    uint_32 = 14,
    int_64 = 15,
    uint_64 = 16,
    int_128 = 17,
    data_type_18 = 18,
    data_float = 19,
    data_double = 20,
    float_complex = 21,
    double_complex = 22,
    float_vector = 23,
    double_vector = 24,
    double_wire_real = 25,
    parameterized_double_wire_real = 26,
    float_wire_real = 27,
    data_float_sweep_matrix = 28,
    data_double_sweep_matrix = 29,
    data_float_complex_sweep_matrix = 30,
    data_double_complex_sweep_matrix = 31,
    data_uint32_string_sweep_matrix = 32,
    data_constant_size_string_sweep_matrix = 33,
    parameterized_float = 34,
    parameterized_double = 35,
    parameterized_float_complex = 36,
    parameterized_double_complex = 37,
    double_parameterized_int32 = 38,
    double_parameterized_uint8 = 39,
    double_parameterized_uint32 = 40,
    double_parameterized_uint64 = 41,
    parameterized_discrete = 42,
    data_double_parameterized_uint32_string = 43,
    parameterized_9_level_logic = 44,
    double_parameterized_float = 45,
    data_type_46 = 46,
    data_type_47 = 47,
    data_type_48 = 48,
    data_type_49 = 49,
    data_type_50 = 50,
    data_type_51 = 51,
    data_type_52 = 52,
    data_type_53 = 53,
    double_algebraic = 54,
    double_complex_algebraic = 55,
    double_smith_chart = 56,
    struct_scalar = 57,
    struct_vector = 58,
    data_type_59 = 59,
    data_type_60 = 60,
    data_type_61 = 61,
    data_type_62 = 62,
    data_type_63 = 63,
    data_type_64 = 64,
    data_type_65 = 65,
    data_type_66 = 66,
    data_type_67 = 67,
    scalar_68 = 68,
    scalar_69 = 69,
    scalar_70 = 70,
    scalar_71 = 71,
    scalar_72 = 72,
    data_type_73 = 73,
    data_type_74 = 74,
    data_type_75 = 75,
    data_type_76 = 76,
    data_type_77 = 77,
    data_type_78 = 78,
    data_type_79 = 79,
    data_type_80 = 80,
    data_type_81 = 81,
    data_type_82 = 82,
    string_vector = 83,
    data_type_84 = 84,
    interleaved_sparse_logic = 85,
    interleaved_sparse_logic_vector = 86,
    interleaved_sparse_logic_with_strength = 87,
    interleaved_sparse_4_state_logic_vector = 88,
    interleaved_sparse_double_64b_index = 89,
    data_type_90 = 90,
    interleaved_sparse_4_state_logic_vector_32b_index = 91,
    interleaved_sparse_double_32b_index = 92,
    data_type_93 = 93,
    interleaved_sparse_discrete = 94,
    discrete = 95,
    nine_level_logic = 96,  // its parameterized form is parameterized_9_level_logic
    data_type_97 = 97,
    data_type_98 = 98,
    data_array = 99,
    data_struct = 100,
    mixed_array = 101,
    data_enum = 102,
    data_pointer = 103,
    data_pointer_104 = 104,
    data_reference = 105,
    enum_entry = 106,
    data_class = 107,
    class_member = 108,
    multi_dimensional_array = 109,
    concatenation = 110,
    unit_declaration = 111,
    ui64_with_ui32_delta_cycle = 112,
    parameterized_113 = 113,
    parameterized_114 = 114,
    parameterized_115 = 115,
    data_type_116 = 116,
    uint64_parameterized_double = 117,  // prints like parameterized_double; its x vector is uint64
    uint64_parameterized_118 = 118,
    sparse_logic_vector_256_state = 119,
    sparse_logic_vector_2_state = 120,
    sparse_logic_vector_4_state = 121,
    data_type_122 = 122,
    sparse_123 = 123,
    data_double_parameterized_logic_2_state = 124,
    data_double_parameterized_logic_4_state = 125,
    data_double_parameterized_logic_256_state = 126,
};

constexpr unsigned kNbOfDataTypes = 127;

const char* dataTypeToString(unsigned type);

bool checkIsParameterizedDataType(unsigned type);
bool checkCurveIsDigital(unsigned type);
bool checkIsDiscreteCurve(unsigned type);
bool checkIsSparseCurve(unsigned type);
bool checkIsScalarType(unsigned type);
bool checkHasConstantDataSize(unsigned type);
bool checkIsComplexDataType(unsigned type);
bool checkIsIntegerDataType(unsigned type);
bool checkIsSweepMatrixDataType(unsigned type);
// The x part of types 117 to 121 is a uint64 vector instead of doubles.
bool checkHasUint64XVector(unsigned type);

// Stored vectors per sample: x plus real, x plus real plus imaginary, or 1.
unsigned size(unsigned type);
// Bytes of one component of a flat sample (0 for variable-size data).
unsigned componentByteSize(unsigned type);

data_type getCorrespondingRealDataType(unsigned type);
data_type getCorrespondingParameterizedDataType(unsigned type, bool doubleX);
// The type of a curve's own x vector, or data_empty when the section's sweep variable applies.
data_type getXAxisDataType(unsigned type);

}  // namespace vx3::curvePlotProperties
