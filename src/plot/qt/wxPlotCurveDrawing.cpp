// The entry of curve drawing on a plot's bitmap: the description's loaded values and style are
// gathered here and handed to the drawers, instantiated for the inverted bitmap context. Digital
// curves are read in the layouts the store keeps them in, as the model's own lookups read them.
#include "plot/wxPlotCurveDrawing.h"

#include <algorithm>
#include <optional>

#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"
#include "plot/wxCurveDescription.h"
#include "plot/wxPlotCurveDrawingImpl.h"
#include "plot/qt/wxPlotDrawerDigitalQt.h"
#include "plot/wxSinglePlotWidgetAxis.h"
#include "widgets/qtVxBufferedDrawContext.h"

namespace vx3 {

namespace {

// The drawers' window of an axis: the strip being updated, 5 pixels beyond the view.
void windowOf(const wxSinglePlotWidgetAxis& axis, double& min, double& max)
{
    min = axis.getUpdateMin();
    max = axis.getUpdateMax();
    if (min > max)
        std::swap(min, max);
}

// What is known of a curve's values without walking them.
plotDrawer::cCurveLimits limitsOf(const cCurvePlotVariable& variable, const curvePlotFunctionArgs::cDataVectors& v)
{
    using namespace derivedCurveFunction;
    plotDrawer::cCurveLimits limits;
    limits.monotony = v.monotony;
    const curvePlotVariable::cMinMaxCache& cache = variable.getMinMax();
    if (cache.initialized) {
        limits.minY = cache.realMiny;
        limits.maxY = cache.realMaxy;
    }
    // The ends of a rising X are its limits; anything else is scanned anyway.
    if (v.count && (check_monotony_increasing(limits.monotony) || limits.monotony == monotony_constant)) {
        const uint64_t last = (v.count - 1) * v.xStride;
        if (v.xDouble) {
            limits.minX = v.xDouble[0];
            limits.maxX = v.xDouble[last];
        } else if (v.xFloat) {
            limits.minX = v.xFloat[0];
            limits.maxX = v.xFloat[last];
        }
    }
    return limits;
}

// The storage types drawn by the digital drawers.
bool checkIsDigitalFamilyType(unsigned type)
{
    using namespace curvePlotProperties;
    switch (type) {
    case sparse_logic_vector_2_state: case sparse_logic_vector_4_state: case sparse_logic_vector_256_state:
    case interleaved_sparse_logic: case interleaved_sparse_logic_with_strength: case interleaved_sparse_logic_vector:
    case interleaved_sparse_4_state_logic_vector: case interleaved_sparse_4_state_logic_vector_32b_index:
    case nine_level_logic: case parameterized_9_level_logic: case data_double_parameterized_logic_2_state:
    case data_double_parameterized_logic_4_state: case data_double_parameterized_logic_256_state:
    case discrete: case interleaved_sparse_discrete: case data_uint32_string:
        return true;
    default:
        return false;
    }
}

// What a digital drawer needs besides the values: the axes, the pens from the curve's style,
// the radix of bus values, and where the records of the curve end.
struct cDigitalCall {
    qtVxBufferedDrawContextInverted& context;
    const wxSinglePlotWidgetAxis& xAxis;
    const wxSinglePlotWidgetAxis& yAxis;
    plotDrawerDigital::cDigitalPens pens;
    unsigned digitalType;
    uint64_t last;  // records at or past it are not drawn

    uint64_t countOf(uint64_t stored) const { return std::min(stored, last); }
};

// The state bytes of one interleaved record: what follows the position, without the zero bytes
// that pad a narrower value (the width the model's own lookup reads), at least one.
uint64_t interleavedWidth(const cCurvePlotVariable& variable, uint64_t positionSize)
{
    const uint64_t size = variable.getElementSize();
    if (size <= positionSize || variable.getVectorSize() == 0)
        return 0;
    const char* bits = variable.data() + positionSize;
    uint64_t width = size - positionSize;
    while (width > 1 && bits[width - 1] == 0)
        --width;
    return width;
}

// Logic bits and buses, in every layout the store keeps them in: the same arrays, positions and
// scales that cCurvePlotData::findLogicValueAt reads, so that a ruler's value and the drawn
// level always agree. False for a layout without values.
bool drawLogicCurve(const cDigitalCall& call, const cCurvePlotDataSection& section, const cCurvePlotVariable& variable,
                    unsigned type)
{
    using namespace curvePlotProperties;
    using derivedCurveFunction::monotony_rising;
    // Sparse records count time in ticks of the section's time scale, as the readers write them.
    const double ticks = section.getTimeScaleFactor();
    auto& context = call.context;
    const auto& xAxis = call.xAxis;
    const auto& yAxis = call.yAxis;
    const uint64_t stored = variable.getVectorSize();
    switch (type) {
    case sparse_logic_vector_2_state:
    case sparse_logic_vector_4_state:
    case sparse_logic_vector_256_state: {
        const uint64_t width = variable.getValueVectorWidth();
        if (!width || !variable.valueVectorData())
            return false;
        drawLogicVector(context, xAxis, yAxis, variable.valueVectorPositions(), ticks, variable.valueVectorData(), width,
                        call.countOf(stored), monotony_rising, call.digitalType, call.pens);
        return true;
    }
    case interleaved_sparse_logic:
    case interleaved_sparse_logic_with_strength: {
        if (variable.getElementSize() <= 8)
            return false;
        // A bit of any strength is drawn from its first state byte; the 4-state drawer would
        // make the weak levels unknown.
        drawLogicValueInterleaved<qtVxBufferedDrawContextInverted, double>(
            context, xAxis, yAxis, nullptr, 0, ticks, variable.data(), variable.getElementSize(), call.countOf(stored),
            call.pens);
        return true;
    }
    case interleaved_sparse_logic_vector:
    case interleaved_sparse_4_state_logic_vector: {
        const uint64_t width = interleavedWidth(variable, 8);
        if (!width)
            return false;
        if (type == interleaved_sparse_logic_vector)
            drawLogicVectorInterleaved<qtVxBufferedDrawContextInverted, double>(
                context, xAxis, yAxis, nullptr, 0, ticks, variable.data(), variable.getElementSize(),
                call.countOf(stored), width, call.digitalType, call.pens);
        else
            drawLogic4StateVectorInterleaved<qtVxBufferedDrawContextInverted, double>(
                context, xAxis, yAxis, nullptr, 0, ticks, variable.data(), variable.getElementSize(),
                call.countOf(stored), width, call.digitalType, call.pens);
        return true;
    }
    case interleaved_sparse_4_state_logic_vector_32b_index: {
        const uint64_t width = interleavedWidth(variable, 4);
        if (!width)
            return false;
        drawLogic4StateVectorInterleaved32Bit<qtVxBufferedDrawContextInverted, double>(
            context, xAxis, yAxis, nullptr, 0, ticks, variable.data(), variable.getElementSize(), call.countOf(stored),
            width, call.digitalType, call.pens);
        return true;
    }
    case nine_level_logic: {
        // One state per x value of the section.
        uint64_t xCount = 0;
        const double* xs = section.getXAxisDoubleValues(xCount);
        if (!xs || !variable.data())
            return false;
        const unsigned monotony = section.getSweepVariable(section.getNbOfSweepVariables() - 1).getMonotony();
        drawLogicValue(context, xAxis, yAxis, xs, 1.0, variable.data(), 1, call.countOf(std::min(stored, xCount)),
                       monotony, call.pens);
        return true;
    }
    case parameterized_9_level_logic:
    case data_double_parameterized_logic_2_state:
    case data_double_parameterized_logic_4_state:
    case data_double_parameterized_logic_256_state: {
        // x doubles of the curve itself, then the states: one byte of a 9-level state, or the
        // bits of a vector, per x.
        if (!variable.checkIsParameterizedLayout() || variable.getParameterizedXSize() != sizeof(double) ||
            !variable.getParameterizedYSize())
            return false;
        const auto* xs = reinterpret_cast<const double*>(variable.parameterizedXData());
        const uint64_t ySize = variable.getParameterizedYSize();
        if (type == parameterized_9_level_logic)
            drawLogicValue(context, xAxis, yAxis, xs, 1.0, variable.parameterizedYData(), ySize, call.countOf(stored),
                           variable.getMonotony(), call.pens);
        else
            drawLogicVector(context, xAxis, yAxis, xs, 1.0, variable.parameterizedYData(), ySize,
                            call.countOf(stored), variable.getMonotony(), call.digitalType, call.pens);
        return true;
    }
    default:
        return false;
    }
}

// Runs of a string curve for the bus drawer: the pool keeps each text once, so equal offsets
// are equal texts.
struct cStringRuns {
    const double* x = nullptr;
    const uint32_t* offsets = nullptr;
    uint64_t n = 0;
    const cStringPool* pool = nullptr;

    uint64_t count() const { return x && offsets && pool ? n : 0; }
    double xAt(uint64_t i) const { return x[i]; }
    bool equal(uint64_t a, uint64_t b) const { return offsets[a] == offsets[b]; }
    std::string textOf(uint64_t i) const { return pool->at(offsets[i]); }
    int penOf(uint64_t) const { return plotDrawerDigital::run_pen_main; }
};

// Discrete values and texts: boxes with the name of each value (one of the type's strings, or
// the number of a value without one), or with the text of a string curve.
bool drawEnumCurve(const cDigitalCall& call, const cCurvePlotDataSection& section, const cCurvePlotVariable& variable,
                   unsigned type)
{
    using namespace curvePlotProperties;
    static const std::vector<std::string> kNoTexts;
    const std::vector<std::string>& texts = variable.getType() ? variable.getType()->getStrings() : kNoTexts;
    const uint64_t stored = variable.getVectorSize();
    switch (type) {
    case data_uint32_string: {
        // A text per x value of the section, kept once in the curve's string pool.
        uint64_t xCount = 0;
        const double* xs = section.getXAxisDoubleValues(xCount);
        const cStringPool* pool = variable.getStringPool().get();
        if (!xs || !pool || variable.getElementSize() != sizeof(uint32_t) || variable.checkIsParameterizedLayout())
            return false;
        const cStringRuns runs{xs, variable.uint32Values(), call.countOf(std::min(stored, xCount)), pool};
        wxPlotDrawerDigitalRuns<qtVxBufferedDrawContextInverted, cStringRuns> drawer(call.context, call.xAxis,
                                                                                    call.yAxis, call.pens, runs);
        drawer.draw(section.getSweepVariable(section.getNbOfSweepVariables() - 1).getMonotony());
        return true;
    }
    case discrete: {
        // A uint32 value per x value of the section.
        uint64_t xCount = 0;
        const double* xs = section.getXAxisDoubleValues(xCount);
        if (!xs || variable.getElementSize() != sizeof(uint32_t) || !variable.data())
            return false;
        const unsigned monotony = section.getSweepVariable(section.getNbOfSweepVariables() - 1).getMonotony();
        drawDenseEnum(call.context, call.xAxis, call.yAxis, xs, 1.0, variable.uint32Values(),
                      call.countOf(std::min(stored, xCount)), texts, monotony, call.pens);
        return true;
    }
    case interleaved_sparse_discrete: {
        // Records of a uint32 index and a uint32 value. The index points into the section's x
        // values where it has them (as the sparse real records do), else it is a position in
        // ticks of the time scale (as the sparse logic records are).
        if (variable.getElementSize() < 2 * sizeof(uint32_t) || !variable.data())
            return false;
        uint64_t xCount = 0;
        const double* xs = section.getXAxisDoubleValues(xCount);
        drawSparseEnum(call.context, call.xAxis, call.yAxis, xs, xCount, section.getTimeScaleFactor(),
                       variable.data(), variable.getElementSize(), call.countOf(stored), texts, call.pens);
        return true;
    }
    default:
        return false;
    }
}

// Logic values, buses and enumerations: the digital drawers, in the font the plot gives for
// the values in boxes (the context's font is given back afterwards).
plotCurveDrawing::cDrawResult drawDigitalFamily(qtVxBufferedDrawContextInverted& context, const wxCurveDescription& curve,
                                                const cCurvePlotDataSection& section,
                                                const cCurvePlotVariable& variable, unsigned type,
                                                const wxSinglePlotWidgetAxis& xAxis,
                                                const wxSinglePlotWidgetAxis& yAxis, uint64_t last,
                                                const plotCurveDrawing::cDrawOptions& options)
{
    using namespace curvePlotProperties;
    plotCurveDrawing::cDrawResult result;
    if (!checkIsDigitalFamilyType(type))
        return result;
    const cDigitalCall call{context,
                            xAxis,
                            yAxis,
                            plotDrawerDigital::cDigitalPens::fromMainPen(curve.style().getRealPen()),
                            options.digitalType,
                            last};
    std::optional<QFont> previous;
    if (options.digitalFont) {
        previous = context.getFont();
        context.setFont(*options.digitalFont);
    }
    result.drawn = drawLogicCurve(call, section, variable, type) || drawEnumCurve(call, section, variable, type);
    if (previous)
        context.setFont(*previous);
    if (result.drawn)
        result.pointsWalked = call.countOf(variable.getVectorSize());
    return result;
}

}  // namespace

plotCurveDrawing::cDrawResult drawCurveDescription(qtVxBufferedDrawContextInverted& context,
                                                   const wxCurveDescription& curve,
                                                   const wxSinglePlotWidgetAxis& xAxis,
                                                   const wxSinglePlotWidgetAxis& yAxis,
                                                   wxPlotDrawerColBuffer& colBuffer, uint64_t first, uint64_t last,
                                                   const plotCurveDrawing::cDrawOptions& options)
{
    using namespace plotCurveDrawing;
    if (!curve.checkIsVariable())
        return {};
    cCurvePlotDataSection* section = curve.getSection();
    const cCurvePlotVariable* variable = curve.curvePlotVariableOrIdentical();
    if (!section || !variable || !variable->checkHasStorage())
        return {};

    cCurveInput in;
    in.style = curve.style();
    in.conversion = curve.postProcessState().realConversion;
    const unsigned type = variable->getDataType();
    if (checkIsSparseRealType(type)) {
        in.vectors.yType = type;
        in.records = variable->data();
        in.recordCount = variable->getVectorSize();
        in.recordSize = variable->getElementSize();
        in.recordXs = section->getXAxisDoubleValues(in.recordXCount);
        // Records follow the X axis, which rises.
        in.limits.monotony = derivedCurveFunction::monotony_rising;
        const curvePlotVariable::cMinMaxCache& cache = variable->getMinMax();
        if (cache.initialized) {
            in.limits.minY = cache.realMiny;
            in.limits.maxY = cache.realMaxy;
        }
    } else if (checkIsRealType(type) || checkIsComplexType(type) || type == curvePlotProperties::data_enum) {
        bool haveVectors = false;
        if (section->getNbOfSweepVariables() > 1) {
            cPostProcessCurveDescription description = curve.postProcessDescription();
            haveVectors = section->computeSweepDataVectors(curve.getCurveIndex(), curve.postProcessState().cutIndex,
                                                           description.sweepPermutation(), in.vectors);
        } else {
            haveVectors = variable->computeDataVectors(*section, in.vectors);
        }
        if (!haveVectors)
            return {};
        // An enumerated column is a line over the indices of its states, which its Y axis names.
        in.vectors.yType = type == curvePlotProperties::data_enum ? curvePlotProperties::data_double : type;
        in.limits = limitsOf(*variable, in.vectors);
    } else {
        return drawDigitalFamily(context, curve, *section, *variable, type, xAxis, yAxis, last, options);
    }

    cAxesInput axes;
    axes.x = plotDrawer::cAxisMap::fromAxis(xAxis);
    axes.y = plotDrawer::cAxisMap::fromAxis(yAxis);
    const wxSinglePlotWidgetAxis& imagAxis = options.imagYAxis ? *options.imagYAxis : yAxis;
    axes.imagY = plotDrawer::cAxisMap::fromAxis(imagAxis);
    windowOf(xAxis, axes.window.xmin, axes.window.xmax);
    windowOf(yAxis, axes.window.ymin, axes.window.ymax);
    axes.imagWindow = axes.window;
    windowOf(imagAxis, axes.imagWindow.ymin, axes.imagWindow.ymax);
    return drawCurveInput(context, in, axes, colBuffer, first, last, options);
}

}  // namespace vx3
