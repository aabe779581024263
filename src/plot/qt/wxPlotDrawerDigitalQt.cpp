#include "plot/qt/wxPlotDrawerDigitalQt.h"

namespace vx3 {
ZW_DIGITAL_DRAWERS(, double)
ZW_DIGITAL_DRAWERS(, float)
ZW_DIGITAL_DRAWERS(, uint64_t)
}  // namespace vx3
