// Generated from the data type reference table; edit the table, not this file.
#include "model/dataTypeTable.h"

namespace vx3::curvePlotProperties::detail {

const cDataTypeRow kDataTypeRows[kNbOfDataTypes] = {
    {"unclear", kVariableSize},  // 0
    {"data_empty", kVariableSize},  // 1
    {"unclear", kDigital},  // 2
    {"unclear", 0},  // 3
    {"data_string", kVariableSize},  // 4
    {"data_uint32_string", kVariableSize},  // 5
    {"unclear", kVariableSize},  // 6
    {"unclear", kVariableSize},  // 7
    {"char", 0},  // 8
    {"int_8", 0},  // 9
    {"uint_8", 0},  // 10
    {"int_16", 0},  // 11
    {"uint_16", 0},  // 12
    {"int_32", 0},  // 13
    {"uint_32", 0},  // 14
    {"int_64", 0},  // 15
    {"uint_64", 0},  // 16
    {"int_128", 0},  // 17
    {"unclear", 0},  // 18
    {"float", kVariableSize},  // 19
    {"double", 0},  // 20
    {"float_complex", kSize2},  // 21
    {"double_complex", kSize2},  // 22
    {"float_vector", 0},  // 23
    {"double_vector", 0},  // 24
    {"double_wire_real", 0},  // 25
    {"parameterized_double_wire_real", kParameterized | kSize2},  // 26
    {"float_wire_real", kVariableSize},  // 27
    {"data_float_sweep_matrix", kSize2},  // 28
    {"data_double_sweep_matrix", kSize2},  // 29
    {"data_float_complex_sweep_matrix", kSize2},  // 30
    {"data_double_complex_sweep_matrix", kSize2},  // 31
    {"data_uint32_string_sweep_matrix", kVariableSize | kSize2},  // 32
    {"data_constant_size_string_sweep_matrix", kSize2},  // 33
    {"parameterized_float", kParameterized | kSize2},  // 34
    {"parameterized_double", kParameterized | kSize2},  // 35
    {"parameterized_float_complex", kParameterized | kSize3},  // 36
    {"parameterized_double_complex", kParameterized | kSize3},  // 37
    {"double_parameterized_int32", kParameterized | kSize2},  // 38
    {"double_parameterized_uint8", kParameterized | kSize2},  // 39
    {"double_parameterized_uint32", kParameterized | kSize2},  // 40
    {"double_parameterized_uint64", kParameterized | kSize2},  // 41
    {"parameterized discrete", kParameterized | kDiscrete | kSize2},  // 42
    {"data_double_parameterized_uint32_string", kParameterized | kVariableSize},  // 43
    {"parameterized 9-level logic", kParameterized | kDigital | kDiscrete | kSize2},  // 44
    {"double parameterized_float", kParameterized | kSize2},  // 45
    {"unclear", 0},  // 46
    {"unclear", kSparse},  // 47
    {"unclear", kSparse},  // 48
    {"unclear", kSparse},  // 49
    {"unclear", 0},  // 50
    {"unclear", 0},  // 51
    {"unclear", 0},  // 52
    {"unclear", 0},  // 53
    {"double_algebraic", kParameterized | kSize2},  // 54
    {"double_complex_algebraic", kParameterized | kSize3},  // 55
    {"double_smith_chart", kParameterized | kSize3},  // 56
    {"struct_scalar", kVariableSize},  // 57
    {"struct_vector", kVariableSize},  // 58
    {"unclear", 0},  // 59
    {"unclear", 0},  // 60
    {"unclear", 0},  // 61
    {"unclear", 0},  // 62
    {"unclear", 0},  // 63
    {"unclear", 0},  // 64
    {"unclear", 0},  // 65
    {"unclear", 0},  // 66
    {"unclear", 0},  // 67
    {"unclear", kScalar | kVariableSize},  // 68
    {"unclear", kScalar},  // 69
    {"unclear", kScalar},  // 70
    {"unclear", kScalar},  // 71
    {"unclear", kScalar},  // 72
    {"unclear", 0},  // 73
    {"unclear", 0},  // 74
    {"unclear", 0},  // 75
    {"unclear", 0},  // 76
    {"unclear", 0},  // 77
    {"unclear", 0},  // 78
    {"unclear", 0},  // 79
    {"unclear", 0},  // 80
    {"unclear", 0},  // 81
    {"unclear", 0},  // 82
    {"string_vector", kVariableSize},  // 83
    {"unclear", 0},  // 84
    {"interleaved_sparse_logic", kDigital | kDiscrete | kSparse},  // 85
    {"interleaved_sparse_logic_vector", kDigital | kDiscrete | kSparse},  // 86
    {"interleaved_sparse_logic_with_strength", kDigital | kDiscrete | kSparse},  // 87
    {"interleaved_sparse_4_state_logic_vector", kDigital | kDiscrete | kSparse},  // 88
    {"interleaved_sparse_double_64b_index", kSparse},  // 89
    {"unclear", 0},  // 90
    {"interleaved_sparse_4_state_logic_vector_32b_index", kDigital | kDiscrete | kSparse},  // 91
    {"interleaved_sparse_double_32b_index", kSparse},  // 92
    {"unclear", 0},  // 93
    {"interleaved sparse discrete", kDiscrete | kSparse},  // 94
    {"discrete", kDiscrete},  // 95
    {"unclear", kDiscrete},  // 96
    {"unclear", 0},  // 97
    {"unclear", 0},  // 98
    {"array", 0},  // 99
    {"struct", 0},  // 100
    {"mixed_array", 0},  // 101
    {"enum", 0},  // 102
    {"pointer", 0},  // 103
    {"pointer", 0},  // 104
    {"reference", 0},  // 105
    {"enum_entry", 0},  // 106
    {"class", 0},  // 107
    {"class_member", 0},  // 108
    {"multi_dimensional_array", 0},  // 109
    {"concatenation", 0},  // 110
    {"unit_declaration", 0},  // 111
    {"ui64_with_ui32_delta_cycle", 0},  // 112
    {"unclear", kParameterized},  // 113
    {"unclear", kParameterized},  // 114
    {"unclear", kParameterized},  // 115
    {"unclear", 0},  // 116
    {"parameterized_double", kParameterized | kSize2},  // 117
    {"unclear", kParameterized | kSize2},  // 118
    {"sparse_logic_vector_256_state", kDigital | kDiscrete | kSparse},  // 119
    {"sparse_logic_vector_2_state", kDigital | kDiscrete | kSparse},  // 120
    {"sparse_logic_vector_4_state", kDigital | kDiscrete | kSparse},  // 121
    {"unclear", 0},  // 122
    {"unclear", kSparse},  // 123
    {"data_double_parameterized_logic_2_state", kParameterized | kDigital | kDiscrete},  // 124
    {"data_double_parameterized_logic_4_state", kParameterized | kDigital | kDiscrete},  // 125
    {"data_double_parameterized_logic_256_state", kParameterized | kDigital | kDiscrete},  // 126
};

}  // namespace vx3::curvePlotProperties::detail
