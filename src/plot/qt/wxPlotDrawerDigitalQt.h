// The digital drawers on the plots' draw context, compiled once in this library: x of double
// and float, and the 64-bit positions of sparse dumps.
#pragma once

#include "plot/wxPlotDrawerDigitalEntry.h"
#include "widgets/qtVxBufferedDrawContext.h"

#define ZW_DIGITAL_DRAWERS(EXTERN, X)                                                                                  \
    EXTERN template void drawLogicValue<qtVxBufferedDrawContextInverted, X>(                                          \
        qtVxBufferedDrawContextInverted&, const wxSinglePlotWidgetAxis&, const wxSinglePlotWidgetAxis&, const X*,    \
        double, const char*, uint64_t, uint64_t, unsigned, const plotDrawerDigital::cDigitalPens&);                    \
    EXTERN template void drawLogicVector<qtVxBufferedDrawContextInverted, X>(                                         \
        qtVxBufferedDrawContextInverted&, const wxSinglePlotWidgetAxis&, const wxSinglePlotWidgetAxis&, const X*,    \
        double, const char*, uint64_t, uint64_t, unsigned, unsigned, const plotDrawerDigital::cDigitalPens&);          \
    EXTERN template void drawDenseEnum<qtVxBufferedDrawContextInverted, X, uint32_t>(                                 \
        qtVxBufferedDrawContextInverted&, const wxSinglePlotWidgetAxis&, const wxSinglePlotWidgetAxis&, const X*,    \
        double, const uint32_t*, uint64_t, const std::vector<std::string>&, unsigned,                                 \
        const plotDrawerDigital::cDigitalPens&);                                                                       \
    EXTERN template void drawSparseEnum<qtVxBufferedDrawContextInverted, X, uint32_t, uint32_t>(                      \
        qtVxBufferedDrawContextInverted&, const wxSinglePlotWidgetAxis&, const wxSinglePlotWidgetAxis&, const X*,    \
        uint64_t, double, const char*, uint64_t, uint64_t, const std::vector<std::string>&,                            \
        const plotDrawerDigital::cDigitalPens&);                                                                       \
    EXTERN template void drawLogicValueInterleaved<qtVxBufferedDrawContextInverted, X>(                               \
        qtVxBufferedDrawContextInverted&, const wxSinglePlotWidgetAxis&, const wxSinglePlotWidgetAxis&, const X*,    \
        uint64_t, double, const char*, uint64_t, uint64_t, const plotDrawerDigital::cDigitalPens&);                    \
    EXTERN template void drawLogic4StateValueInterleaved<qtVxBufferedDrawContextInverted, X>(                         \
        qtVxBufferedDrawContextInverted&, const wxSinglePlotWidgetAxis&, const wxSinglePlotWidgetAxis&, const X*,    \
        uint64_t, double, const char*, uint64_t, uint64_t, const plotDrawerDigital::cDigitalPens&);                    \
    EXTERN template void drawLogic4StateValueInterleaved32Bit<qtVxBufferedDrawContextInverted, X>(                    \
        qtVxBufferedDrawContextInverted&, const wxSinglePlotWidgetAxis&, const wxSinglePlotWidgetAxis&, const X*,    \
        uint64_t, double, const char*, uint64_t, uint64_t, const plotDrawerDigital::cDigitalPens&);                    \
    EXTERN template void drawLogicVectorInterleaved<qtVxBufferedDrawContextInverted, X>(                              \
        qtVxBufferedDrawContextInverted&, const wxSinglePlotWidgetAxis&, const wxSinglePlotWidgetAxis&, const X*,    \
        uint64_t, double, const char*, uint64_t, uint64_t, uint64_t, unsigned,                                         \
        const plotDrawerDigital::cDigitalPens&);                                                                       \
    EXTERN template void drawLogic4StateVectorInterleaved<qtVxBufferedDrawContextInverted, X>(                        \
        qtVxBufferedDrawContextInverted&, const wxSinglePlotWidgetAxis&, const wxSinglePlotWidgetAxis&, const X*,    \
        uint64_t, double, const char*, uint64_t, uint64_t, uint64_t, unsigned,                                         \
        const plotDrawerDigital::cDigitalPens&);                                                                       \
    EXTERN template void drawLogic4StateVectorInterleaved32Bit<qtVxBufferedDrawContextInverted, X>(                   \
        qtVxBufferedDrawContextInverted&, const wxSinglePlotWidgetAxis&, const wxSinglePlotWidgetAxis&, const X*,    \
        uint64_t, double, const char*, uint64_t, uint64_t, uint64_t, unsigned,                                         \
        const plotDrawerDigital::cDigitalPens&);

namespace vx3 {
ZW_DIGITAL_DRAWERS(extern, double)
ZW_DIGITAL_DRAWERS(extern, float)
ZW_DIGITAL_DRAWERS(extern, uint64_t)
}  // namespace vx3
