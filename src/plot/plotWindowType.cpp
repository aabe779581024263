#include "plot/plotWindowType.h"

#include <utility>

namespace vx3 {
namespace waveExplorerWidgetVirtual {

bool checkIsPolarOrSmithGrid(int type) { return type >= polar_grid && type <= smith_admittance_and_impedance_grid; }

bool checkIsSmithGrid(int type)
{
    return type >= smith_impedance_grid && type <= smith_admittance_and_impedance_grid;
}

}  // namespace waveExplorerWidgetVirtual

int string_to_window_type(const std::string& word)
{
    using namespace waveExplorerWidgetVirtual;
    static const std::pair<const char*, int> words[] = {
        {"analog", analog_plot},         {"analog_synchronized", analog_synchronized_plot},
        {"digital", digital_plot},       {"mixed", mixed_signal_plot},
        {"mixed_signal", mixed_signal_plot}, {"stacked", stacked_plot},
        {"polar", polar_coordinates_plot}};
    for (const auto& [text, type] : words)
        if (word == text)
            return type;
    return -1;
}

std::string gridTypeToFullName(int type)
{
    using namespace waveExplorerWidgetVirtual;
    switch (type) {
    case polar_grid: return "Polar Grid";
    case smith_impedance_grid: return "Smith Impedance Grid";
    case smith_admittance_grid: return "Smith Admittance Grid";
    case smith_impedance_and_admittance_grid: return "Smith Impedance and Admittance Grid";
    case smith_admittance_and_impedance_grid: return "Smith Admittance and Impedance Grid";
    default: return std::string();
    }
}

std::string plotTypeToFullName(int type)
{
    using namespace waveExplorerWidgetVirtual;
    switch (type) {
    case analog_plot: return "Analog Plot";
    case analog_synchronized_plot: return "Synchronized Analog Plot";
    case mixed_signal_plot: return "Mixed Signal Plot";
    case digital_plot: return "Digital Plot";
    case stacked_plot: return "Stacked Plot";
    case polar_coordinates_plot: return "Polar Coordiantes Plot";
    default: return std::string();
    }
}

}  // namespace vx3
