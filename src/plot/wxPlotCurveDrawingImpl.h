// The dispatch behind drawCurveDescription, free of the store and of the toolkit: the curve's
// loaded vectors and style in, painter calls on any draw context out. The analog storage types
// are drawn here; the digital ones report "not drawn" and are left to the digital drawers.
#pragma once

#include <cmath>
#include <complex>
#include <cstdint>
#include <type_traits>

#include "model/cDataVectors.h"
#include "model/dataType.h"
#include "plot/plotWindowType.h"
#include "plot/wxCurveStyle.h"
#include "plot/wxPlotCurveDrawing.h"
#include "plot/wxPlotDrawer.h"
#include "plot/wxPlotDrawerDerived.h"
#include "plot/wxPlotDrawerDerivedPolar.h"
#include "plot/wxPlotDrawerRealInterleaved.h"

namespace vx3::plotCurveDrawing {

// One curve as the drawers need it.
struct cCurveInput {
    curvePlotFunctionArgs::cDataVectors vectors;  // real and complex values, plain or strided
    // Sparse real records (interleaved_sparse_double_*), with the X values they index.
    const char* records = nullptr;
    uint64_t recordCount = 0;
    uint64_t recordSize = 0;
    const double* recordXs = nullptr;
    uint64_t recordXCount = 0;
    plotDrawer::cCurveLimits limits;  // of the real (first) values; NaN where unknown
    wxCurveStyle style;
    unsigned conversion = derivedCurveFunction::magnitude;  // of a complex curve
};

// The X and Y axes of the plot and the windows the drawers clip to.
struct cAxesInput {
    plotDrawer::cAxisMap x, y, imagY;
    plotDrawer::cDrawWindow window, imagWindow;
};

inline plotDrawer::cCurvePart realPartOf(const wxCurveStyle& style)
{
    return plotDrawer::cCurvePart{style.getRealPen(), style.realLineStyle, style.realSymbol};
}
inline plotDrawer::cCurvePart imagPartOf(const wxCurveStyle& style)
{
    return plotDrawer::cCurvePart{style.getImagPen(), style.imagLineStyle, style.imagSymbol};
}

// Storage types whose Y values are plain reals (one value per X, by stride for sweep matrices).
inline bool checkIsRealType(unsigned type)
{
    using namespace curvePlotProperties;
    switch (type) {
    case data_float: case data_double: case double_wire_real: case float_wire_real:
    case data_float_sweep_matrix: case data_double_sweep_matrix: case parameterized_float:
    case parameterized_double: case double_parameterized_float: case uint64_parameterized_double:
    case double_algebraic:
        return true;
    default: return false;
    }
}
inline bool checkIsComplexType(unsigned type)
{
    using namespace curvePlotProperties;
    switch (type) {
    case float_complex: case double_complex: case data_float_complex_sweep_matrix:
    case data_double_complex_sweep_matrix: case parameterized_float_complex: case parameterized_double_complex:
    case double_complex_algebraic: case double_smith_chart:
        return true;
    default: return false;
    }
}
inline bool checkIsSparseRealType(unsigned type)
{
    return type == curvePlotProperties::interleaved_sparse_double_64b_index ||
           type == curvePlotProperties::interleaved_sparse_double_32b_index;
}

namespace detail {

// fn(xs) with the typed X pointer of the vectors; false without X.
template <class Fn>
bool withX(const curvePlotFunctionArgs::cDataVectors& v, Fn&& fn)
{
    if (v.xDouble)
        fn(v.xDouble);
    else if (v.xFloat)
        fn(v.xFloat);
    else if (v.xUint64)
        fn(v.xUint64);
    else if (v.xUint32)
        fn(v.xUint32);
    else
        return false;
    return true;
}

template <class Context>
void drawRealCurve(Context& context, const cCurveInput& in, const cAxesInput& axes, wxPlotDrawerColBuffer& buffer,
                   uint64_t first, uint64_t last, const cDrawOptions& options, cDrawResult& result)
{
    const auto& v = in.vectors;
    withX(v, [&](auto xs) {
        auto draw = [&](auto ys) {
            using X = std::remove_cv_t<std::remove_pointer_t<decltype(xs)>>;
            using Y = std::remove_cv_t<std::remove_pointer_t<decltype(ys)>>;
            plotDrawer::cRealSource<X, Y> source{xs, ys, v.count, v.xStride, v.yStride};
            result.pointsWalked += plotDrawer::drawReal(context, source, first, last, in.limits, axes.x, axes.y,
                                                        axes.window, realPartOf(in.style), buffer,
                                                        options.colorizationMin, options.colorizationMax);
            result.drawn = true;
        };
        if (v.yDouble)
            draw(v.yDouble);
        else if (v.yFloat)
            draw(v.yFloat);
    });
}

template <class Context>
void drawComplexCurve(Context& context, const cCurveInput& in, const cAxesInput& axes, wxPlotDrawerColBuffer& buffer,
                      uint64_t first, uint64_t last, const cDrawOptions& options, cDrawResult& result)
{
    using namespace derivedCurveFunction;
    const auto& v = in.vectors;
    const bool polar = waveExplorerWidgetVirtual::checkIsPolarOrSmithGrid(options.gridType) ||
                       options.gridType == waveExplorerWidgetVirtual::polar_coordinates_plot;
    auto drawValues = [&](auto ys) {
        if (polar) {
            // The value itself is the point; arcs only on a polar grid, Smith charts join straight.
            using C = typename std::remove_cv_t<std::remove_pointer_t<decltype(ys)>>::value_type;
            plotDrawer::cComplexPlaneSource<C> source{ys, v.count, v.yStride};
            const plotDrawer::cCurvePart part = realPartOf(in.style);
            if (part.pen.width <= 0 || last <= first)
                return;
            context.setPen(part.pen);
            wxPlotDrawerDerivedPolar<Context> drawer(context, axes.x, axes.y, axes.window, &buffer,
                                                     !waveExplorerWidgetVirtual::checkIsSmithGrid(options.gridType));
            const uint64_t end = last < v.count ? last : v.count;
            if (plotDrawer::checkLineIsShown(part.lineStyle))
                result.pointsWalked += drawer.drawPolar(source, first, end);
            if (part.symbol != curvePlotProperties::no_symbol || part.lineStyle == curvePlotProperties::data_points)
                drawer.safeDrawAllSymbols(source, first, end, part, INFINITY);
            result.drawn = true;
            return;
        }
        withX(v, [&](auto xs) {
            using X = std::remove_cv_t<std::remove_pointer_t<decltype(xs)>>;
            using C = typename std::remove_cv_t<std::remove_pointer_t<decltype(ys)>>::value_type;
            // The first value (real part, magnitude, ...) on the Y axis with the real pen; the
            // second of a two-valued conversion (imaginary part, angle) on the imaginary axis.
            plotDrawer::cDerivedSource<X, C> first_{xs, ys, v.count, v.xStride, v.yStride, in.conversion, false};
            plotDrawer::cCurveLimits limits = in.limits;
            if (in.conversion != real_part && in.conversion != real_and_imaginary_part)
                limits.minY = limits.maxY = NAN;  // limits of the stored parts say nothing here
            result.pointsWalked += plotDrawer::drawReal(context, first_, first, last, limits, axes.x, axes.y,
                                                        axes.window, realPartOf(in.style), buffer,
                                                        options.colorizationMin, options.colorizationMax);
            if (checkConversionHasTwoValues(in.conversion)) {
                plotDrawer::cDerivedSource<X, C> second{xs, ys, v.count, v.xStride, v.yStride, in.conversion, true};
                limits.minY = limits.maxY = NAN;
                result.pointsWalked += plotDrawer::drawReal(context, second, first, last, limits, axes.x, axes.imagY,
                                                            axes.imagWindow, imagPartOf(in.style), buffer,
                                                            options.colorizationMin, options.colorizationMax);
            }
            result.drawn = true;
        });
    };
    if (v.yDoubleComplex)
        drawValues(v.yDoubleComplex);
    else if (v.yFloatComplex)
        drawValues(v.yFloatComplex);
}

template <class Context>
void drawRealSparseInterleaved(Context& context, const cCurveInput& in, const cAxesInput& axes,
                               wxPlotDrawerColBuffer& buffer, uint64_t first, uint64_t last,
                               const cDrawOptions& options, cDrawResult& result)
{
    if (!in.records || !in.recordXs)
        return;
    auto draw = [&](auto source) {
        result.pointsWalked += plotDrawer::drawReal(context, source, first, last, in.limits, axes.x, axes.y,
                                                    axes.window, realPartOf(in.style), buffer,
                                                    options.colorizationMin, options.colorizationMax);
        result.drawn = true;
    };
    if (in.vectors.yType == curvePlotProperties::interleaved_sparse_double_32b_index) {
        if (in.recordSize >= sizeof(uint32_t) + sizeof(double))
            draw(plotDrawer::cInterleavedSource<double, uint32_t>{in.records, in.recordCount, in.recordSize,
                                                                  in.recordXs, in.recordXCount});
    } else if (in.recordSize >= sizeof(uint64_t) + sizeof(double)) {
        draw(plotDrawer::cInterleavedSource<double, uint64_t>{in.records, in.recordCount, in.recordSize, in.recordXs,
                                                              in.recordXCount});
    }
}

}  // namespace detail

// Draws points [first, last) of one curve. Only curves with float or double X are drawn by
// these drawers (the X of a sparse record curve is the section's X axis).
template <class Context>
cDrawResult drawCurveInput(Context& context, const cCurveInput& in, const cAxesInput& axes,
                           wxPlotDrawerColBuffer& buffer, uint64_t first, uint64_t last, const cDrawOptions& options)
{
    cDrawResult result;
    const unsigned type = in.vectors.yType;
    if (checkIsSparseRealType(type)) {
        detail::drawRealSparseInterleaved(context, in, axes, buffer, first, last, options, result);
        return result;
    }
    const auto& v = in.vectors;
    const bool polar = waveExplorerWidgetVirtual::checkIsPolarOrSmithGrid(options.gridType) ||
                       options.gridType == waveExplorerWidgetVirtual::polar_coordinates_plot;
    if (!polar && !v.xDouble && !v.xFloat)
        return result;  // X of another type: not a curve these drawers place
    if (checkIsRealType(type))
        detail::drawRealCurve(context, in, axes, buffer, first, last, options, result);
    else if (checkIsComplexType(type))
        detail::drawComplexCurve(context, in, axes, buffer, first, last, options, result);
    return result;
}

}  // namespace vx3::plotCurveDrawing
