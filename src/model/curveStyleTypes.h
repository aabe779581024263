// Line styles and symbols of curves, by number and by the words that commands use.
#pragma once

#include <string>

namespace vx3 {
namespace curvePlotProperties {

enum line_style_type : int {
    solid_line = 0,
    no_line = 1,
    data_points = 2,
    dotted_line = 3,
    dashed_line = 4,
    short_dashed_line = 5,
    histogram_line = 6,
    automatic_line = 7,
    default_line = 8
};

enum symbol_type : int {
    no_symbol = 0,
    crosses = 1,
    circles = 2,
    rectangles = 3,
    diamonds = 4,
    up_triangles = 5,
    down_triangles = 6,
    left_triangles = 7,
    right_triangles = 8,
    histogram_symbol = 9,
    automatic_symbol = 10,
    default_symbol = 11
};

// Empty text for numbers outside the table.
std::string line_style_type_to_string(int style);
std::string symbol_type_to_string(int symbol);
// The printed words, without regard to case and with "_" for blanks; -1 when unknown.
int get_line_style_from_string(const std::string& text);
int get_symbol_from_string(const std::string& text);

}  // namespace curvePlotProperties
}  // namespace vx3
