// The entries through which a plot draws its digital curves: logic bits, buses and
// enumerations, dense, parametrised and in interleaved records. Each takes the draw context,
// the X axis and the Y axis of the curve, the values as stored and the pens; x values are
// read plain, or as positions in ticks times xScale (the sparse form of value change dumps).
// The plot sets the font for digital values on the context before it calls them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "plot/wxPlotDrawerDigital.h"
#include "plot/wxPlotDrawerDigitalVector.h"

namespace vx3 {

// A logic bit: one state byte per record, stride bytes apart (1 for a dense curve).
template <class Context, class X>
void drawLogicValue(Context& context, const wxSinglePlotWidgetAxis& xAxis, const wxSinglePlotWidgetAxis& yAxis,
                    const X* x, double xScale, const char* states, uint64_t stride, uint64_t count, unsigned monotony,
                    const plotDrawerDigital::cDigitalPens& pens)
{
    wxPlotDrawerDigitalValueParameterized<X, Context> drawer(context, xAxis, yAxis, pens, x, xScale, states,
                                                             stride ? stride : 1, count);
    drawer.draw(monotony);
}

// A bus: width state bytes per record, most significant bit first, its text in digitalType
// (derivedCurveFunction::digital_data_type). A bus of one bit is drawn as a bit.
template <class Context, class X>
void drawLogicVector(Context& context, const wxSinglePlotWidgetAxis& xAxis, const wxSinglePlotWidgetAxis& yAxis,
                     const X* x, double xScale, const char* states, uint64_t width, uint64_t count,
                     unsigned monotony, unsigned digitalType, const plotDrawerDigital::cDigitalPens& pens)
{
    if (width == 1) {
        drawLogicValue(context, xAxis, yAxis, x, xScale, states, 1, count, monotony, pens);
        return;
    }
    wxPlotDrawerDigitalVector<X, Context> drawer(context, xAxis, yAxis, pens, x, xScale, states, width, count,
                                                 digitalType);
    drawer.draw(monotony);
}

// An enumeration value per record; texts[value] is shown, the number for a value past them.
template <class Context, class X, class V>
void drawDenseEnum(Context& context, const wxSinglePlotWidgetAxis& xAxis, const wxSinglePlotWidgetAxis& yAxis,
                   const X* x, double xScale, const V* values, uint64_t count, const std::vector<std::string>& texts,
                   unsigned monotony, const plotDrawerDigital::cDigitalPens& pens)
{
    wxPlotDrawerDenseEnumValue<X, V, Context> drawer(context, xAxis, yAxis, pens, x, xScale, values, count, texts);
    drawer.draw(monotony);
}

// Enumeration records of recordSize bytes: an index of type B into xValues (a position in ticks
// of xScale without them), then the value of type V.
template <class Context, class X, class B = uint32_t, class V = uint32_t>
void drawSparseEnum(Context& context, const wxSinglePlotWidgetAxis& xAxis, const wxSinglePlotWidgetAxis& yAxis,
                    const X* xValues, uint64_t xCount, double xScale, const char* records, uint64_t recordSize,
                    uint64_t count, const std::vector<std::string>& texts, const plotDrawerDigital::cDigitalPens& pens)
{
    const plotDrawerDigital::cEnumIndexedSource<X, B, V> source{xValues, xCount, records, recordSize, count, xScale};
    wxPlotDrawerSparseEnumValue<X, B, V, Context> drawer(context, xAxis, yAxis, pens, source, texts);
    drawer.draw(derivedCurveFunction::monotony_rising);
}

// Logic bits in interleaved records of recordSize bytes: a 64-bit index into xValues (a position
// in ticks of xScale without them), then the state; any logic value, strength levels included.
template <class Context, class X>
void drawLogicValueInterleaved(Context& context, const wxSinglePlotWidgetAxis& xAxis,
                               const wxSinglePlotWidgetAxis& yAxis, const X* xValues, uint64_t xCount, double xScale,
                               const char* records, uint64_t recordSize, uint64_t count,
                               const plotDrawerDigital::cDigitalPens& pens)
{
    const plotDrawerDigital::cIndexedSource<X, uint64_t> source{xValues, xCount, records, recordSize, count, xScale};
    wxPlotDrawerDigitalValueInterleaved<X, uint64_t, Context> drawer(context, xAxis, yAxis, pens, source);
    drawer.draw(derivedCurveFunction::monotony_rising);
}

// The same with states of 0, 1, x and z only; the 32-bit form has a 32-bit index.
template <class Context, class X>
void drawLogic4StateValueInterleaved(Context& context, const wxSinglePlotWidgetAxis& xAxis,
                                     const wxSinglePlotWidgetAxis& yAxis, const X* xValues, uint64_t xCount,
                                     double xScale, const char* records, uint64_t recordSize, uint64_t count,
                                     const plotDrawerDigital::cDigitalPens& pens)
{
    const plotDrawerDigital::cIndexedSource<X, uint64_t> source{xValues, xCount, records, recordSize, count, xScale};
    wxPlotDrawerDigital4StateValueInterleaved<X, uint64_t, Context> drawer(context, xAxis, yAxis, pens, source);
    drawer.draw(derivedCurveFunction::monotony_rising);
}

template <class Context, class X>
void drawLogic4StateValueInterleaved32Bit(Context& context, const wxSinglePlotWidgetAxis& xAxis,
                                          const wxSinglePlotWidgetAxis& yAxis, const X* xValues, uint64_t xCount,
                                          double xScale, const char* records, uint64_t recordSize, uint64_t count,
                                          const plotDrawerDigital::cDigitalPens& pens)
{
    const plotDrawerDigital::cIndexedSource<X, uint32_t> source{xValues, xCount, records, recordSize, count, xScale};
    wxPlotDrawerDigital4StateValueInterleaved<X, uint32_t, Context> drawer(context, xAxis, yAxis, pens, source);
    drawer.draw(derivedCurveFunction::monotony_rising);
}

namespace plotDrawerDigital {
template <class Context, class X, class B>
void drawVectorRecords(Context& context, const wxSinglePlotWidgetAxis& xAxis, const wxSinglePlotWidgetAxis& yAxis,
                       const X* xValues, uint64_t xCount, double xScale, const char* records, uint64_t recordSize,
                       uint64_t count, uint64_t width, unsigned digitalType, bool fourState, const cDigitalPens& pens)
{
    const cIndexedSource<X, B> source{xValues, xCount, records, recordSize, count, xScale};
    if (width == 1) {
        wxPlotDrawerDigitalBits<Context, cIndexedSource<X, B>> drawer(context, xAxis, yAxis, pens, source, fourState);
        drawer.draw(derivedCurveFunction::monotony_rising);
        return;
    }
    wxPlotDrawerDigitalVectorInterleaved<X, B, Context> drawer(context, xAxis, yAxis, pens, source, width,
                                                               digitalType);
    drawer.draw(derivedCurveFunction::monotony_rising);
}
}  // namespace plotDrawerDigital

// Buses in interleaved records: a 64-bit index (or position), then width state bytes.
template <class Context, class X>
void drawLogicVectorInterleaved(Context& context, const wxSinglePlotWidgetAxis& xAxis,
                                const wxSinglePlotWidgetAxis& yAxis, const X* xValues, uint64_t xCount, double xScale,
                                const char* records, uint64_t recordSize, uint64_t count, uint64_t width,
                                unsigned digitalType, const plotDrawerDigital::cDigitalPens& pens)
{
    plotDrawerDigital::drawVectorRecords<Context, X, uint64_t>(context, xAxis, yAxis, xValues, xCount, xScale, records,
                                                               recordSize, count, width, digitalType, false, pens);
}

template <class Context, class X>
void drawLogic4StateVectorInterleaved(Context& context, const wxSinglePlotWidgetAxis& xAxis,
                                      const wxSinglePlotWidgetAxis& yAxis, const X* xValues, uint64_t xCount,
                                      double xScale, const char* records, uint64_t recordSize, uint64_t count,
                                      uint64_t width, unsigned digitalType, const plotDrawerDigital::cDigitalPens& pens)
{
    plotDrawerDigital::drawVectorRecords<Context, X, uint64_t>(context, xAxis, yAxis, xValues, xCount, xScale, records,
                                                               recordSize, count, width, digitalType, true, pens);
}

template <class Context, class X>
void drawLogic4StateVectorInterleaved32Bit(Context& context, const wxSinglePlotWidgetAxis& xAxis,
                                           const wxSinglePlotWidgetAxis& yAxis, const X* xValues, uint64_t xCount,
                                           double xScale, const char* records, uint64_t recordSize, uint64_t count,
                                           uint64_t width, unsigned digitalType,
                                           const plotDrawerDigital::cDigitalPens& pens)
{
    plotDrawerDigital::drawVectorRecords<Context, X, uint32_t>(context, xAxis, yAxis, xValues, xCount, xScale, records,
                                                               recordSize, count, width, digitalType, true, pens);
}

}  // namespace vx3
