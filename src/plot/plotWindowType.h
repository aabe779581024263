// Kinds of plot pages and grids, and their names as the user reads them.
#pragma once

#include <string>

namespace vx3 {
namespace waveExplorerWidgetVirtual {

enum window_type : int {
    analog_plot = 2,
    analog_synchronized_plot = 3,
    mixed_signal_plot = 4,
    digital_plot = 5,
    stacked_plot = 6,
    polar_coordinates_plot = 7,
    polar_grid = 15,
    smith_impedance_grid = 16,
    smith_admittance_grid = 17,
    smith_impedance_and_admittance_grid = 18,
    smith_admittance_and_impedance_grid = 19,
};

// True for the polar grid and the four Smith grids, whose axes show magnitudes without sign.
bool checkIsPolarOrSmithGrid(int type);
bool checkIsSmithGrid(int type);

}  // namespace waveExplorerWidgetVirtual

// The page kind for a word of add_plot ("analog", "analog_synchronized", "digital", "mixed",
// "stacked", "polar"), -1 for a word that names no plot page.
int string_to_window_type(const std::string& word);

// Empty text for a type that is not a grid (plot) type.
std::string gridTypeToFullName(int type);
std::string plotTypeToFullName(int type);

}  // namespace vx3
