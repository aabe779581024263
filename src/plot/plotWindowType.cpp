#include "plot/plotWindowType.h"

namespace vx3 {
namespace waveExplorerWidgetVirtual {

bool checkIsPolarOrSmithGrid(int type) { return type >= polar_grid && type <= smith_admittance_and_impedance_grid; }

bool checkIsSmithGrid(int type)
{
    return type >= smith_impedance_grid && type <= smith_admittance_and_impedance_grid;
}

}  // namespace waveExplorerWidgetVirtual

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
