// Drawing of buses and enumerations: a hexagon for each run of equal values, with the value's
// text inside, cut to what fits; a run too narrow for any text shows only its box. Runs that
// share one pixel column are walked over, and the column is drawn once as a bar from low to
// high. A run cut by the edge of the view ends straight there: only real changes slant.
#pragma once

#include <algorithm>
#include <string>
#include <type_traits>

#include "model/derivedCurveFunction.h"
#include "plot/wxPlotDrawerDigitalBase.h"

namespace vx3 {

namespace plotDrawerDigital {

enum run_pen : int { run_pen_main = 0, run_pen_x = 1, run_pen_z = 2 };

// Runs of a logic vector: width state bytes per record, shown in the digital display type.
template <class Source>
struct cVectorRuns {
    Source source;
    uint64_t width = 1;
    unsigned digitalType = derivedCurveFunction::hexadecimal;

    uint64_t count() const { return width ? source.count() : 0; }
    double xAt(uint64_t i) const { return source.xAt(i); }
    bool equal(uint64_t a, uint64_t b) const { return std::memcmp(source.stateAt(a), source.stateAt(b), width) == 0; }
    std::string textOf(uint64_t i) const
    {
        return cDerivedCurveFunction::convertDigitalVectorToString(source.stateAt(i), width, digitalType);
    }
    // A bus with an unknown bit is drawn in the X pen, one floating in all its bits in the Z pen.
    int penOf(uint64_t i) const
    {
        const char* bits = source.stateAt(i);
        bool allFloating = true;
        for (uint64_t b = 0; b < width; ++b) {
            const unsigned char state = cDerivedCurveFunction::simplifyDigitalValue(static_cast<unsigned char>(bits[b]));
            if (state == 'x' || state == 'u')
                return run_pen_x;
            allFloating = allFloating && (state == 'z' || state == 11);
        }
        return allFloating ? run_pen_z : run_pen_main;
    }
};

// Runs of an enumeration: its text per value, the number for a value without one.
template <class Source>
struct cEnumRuns {
    Source source;
    const std::vector<std::string>* texts = nullptr;

    uint64_t count() const { return source.count(); }
    double xAt(uint64_t i) const { return source.xAt(i); }
    bool equal(uint64_t a, uint64_t b) const { return source.valueAt(a) == source.valueAt(b); }
    std::string textOf(uint64_t i) const
    {
        const auto value = source.valueAt(i);
        bool inTable = texts != nullptr;
        if constexpr (std::is_signed_v<decltype(value)>)
            inTable = inTable && value >= 0;
        if (inTable && static_cast<uint64_t>(value) < texts->size())
            return (*texts)[static_cast<uint64_t>(value)];
        return std::to_string(value);
    }
    int penOf(uint64_t) const { return run_pen_main; }
};

// Draws text centred between the columns left and right at the middle row, cut at the end with
// "..." to what fits. False, nothing drawn, when not even one character and the dots fit.
template <class Context>
bool drawTruncatedText(Context& context, const std::string& text, double left, double right, int row)
{
    static const std::string kDots = "...";
    const double room = right - left;
    if (text.empty() || !(room > 0))
        return false;
    const double centreX = (left + right) * 0.5, centreY = row + 0.5;
    if (context.getTextWidth(text) <= room) {
        context.drawText(text, centreX, centreY, Context::anchor_centre);
        return true;
    }
    if (text.size() < 2 || context.getTextWidth(text.substr(0, 1) + kDots) > room)
        return false;
    // The longest start that fits with the dots: widths grow with the length.
    size_t fits = 1, tooLong = text.size();
    while (tooLong - fits > 1) {
        const size_t middle = (fits + tooLong) / 2;
        if (context.getTextWidth(text.substr(0, middle) + kDots) <= room)
            fits = middle;
        else
            tooLong = middle;
    }
    context.drawText(text.substr(0, fits) + kDots, centreX, centreY, Context::anchor_centre);
    return true;
}

}  // namespace plotDrawerDigital

// The walk over the runs of a bus or an enumeration. Runs gives count(), xAt(i), equal(a, b),
// textOf(i) and penOf(i).
template <class Context, class Runs>
class wxPlotDrawerDigitalRuns {
public:
    // Pixels a hexagon's point reaches in from its ends, and kept free either side of the text.
    static constexpr int kSlant = 3;
    static constexpr int kTextPadding = 2;

    wxPlotDrawerDigitalRuns(Context& context, const wxSinglePlotWidgetAxis& xAxis, const wxSinglePlotWidgetAxis& yAxis,
                            const plotDrawerDigital::cDigitalPens& pens, const Runs& runs)
        : mContext(context), mFrame(xAxis, yAxis), mPens(pens), mRuns(runs)
    {
        if (mFrame.rowLow > mFrame.rowHigh)
            std::swap(mFrame.rowLow, mFrame.rowHigh);
        mHexagon.reserve(7);
    }

    void draw(unsigned monotony)
    {
        const uint64_t n = mRuns.count();
        if (n == 0 || !mFrame.checkIsDrawable() || mPens.main.width <= 0)
            return;
        mRising = derivedCurveFunction::check_monotony_increasing(monotony);
        uint64_t first = 0;
        double x = 0.0;
        if (!loadFirstValue(monotony, first, x))
            return;
        mDotsWidth = -1.0;
        uint64_t run = first, i = first + 1;
        int column = mFrame.column(x);
        bool slantLeft = x >= mFrame.xmin;
        double lastX = x;
        if (skipInvisibleSymbols(i, column, run, lastX)) {
            drawCrowdedColumn(column);
            slantLeft = true;
        }
        bool reachedRight = false;
        while (i < n) {
            x = mRuns.xAt(i);
            if (!(x <= mFrame.xmax)) {
                reachedRight = x > mFrame.xmax;
                break;
            }
            lastX = x;
            if (mRuns.equal(i, run)) {
                ++i;
                continue;
            }
            const int to = mFrame.column(x);
            drawRun(run, column, to, slantLeft, true);
            run = i++;
            column = to;
            slantLeft = true;
            if (skipInvisibleSymbols(i, column, run, lastX))
                drawCrowdedColumn(column);
        }
        const int end = reachedRight ? mFrame.columnRight : mFrame.column(lastX);
        drawRun(run, column, std::max(end, column), slantLeft, false);
    }

    // The record in force at the left edge of the view, and its x; false when the curve lies
    // right or left of the view or has no valid first record.
    bool loadFirstValue(unsigned monotony, uint64_t& first, double& x) const
    {
        first = plotDrawerDigital::findFirstRecord(mRuns, mFrame, monotony);
        x = mRuns.xAt(first);
        return x <= mFrame.xmax && !(first + 1 == mRuns.count() && x < mFrame.xmin);
    }

    // Walks over the records from i on in column; run becomes the last value that differs. True
    // when a value changed among them.
    bool skipInvisibleSymbols(uint64_t& i, int column, uint64_t& run, double& lastX)
    {
        bool changed = false;
        const uint64_t n = mRuns.count();
        const double limit = mRising ? mFrame.computeColumnLimit(column) : -std::numeric_limits<double>::infinity();
        for (; i < n; ++i) {
            const double x = mRuns.xAt(i);
            if (!(x <= limit) && (!(x <= mFrame.xmax) || mFrame.column(x) != column))
                break;
            lastX = x;
            // After one change the column is a bar whatever follows; the value in force after
            // it is its last record's, so the rest need no compare.
            if (!changed && !mRuns.equal(i, run))
                changed = true;
        }
        if (changed)
            run = i - 1;
        return changed;
    }

    const plotDrawerDigital::cDigitalFrame& getFrame() const { return mFrame; }

private:
    using cPoint = plotDrawerDigital::cPolylinePoint<Context>;

    const vxDrawContext::cVxPen& penOf(uint64_t run) const
    {
        switch (mRuns.penOf(run)) {
        case plotDrawerDigital::run_pen_x: return mPens.x;
        case plotDrawerDigital::run_pen_z: return mPens.z;
        default: return mPens.main;
        }
    }

    void drawCrowdedColumn(int column)
    {
        mContext.setPen(mPens.main);
        mContext.drawVerticalStroke(column, mFrame.rowLow, mFrame.rowHigh);
    }

    // The hexagon of one run from column a to b, its value inside when there is room.
    void drawRun(uint64_t run, int a, int b, bool slantLeft, bool slantRight)
    {
        const int low = mFrame.rowLow, high = mFrame.rowHigh, middle = mFrame.rowMiddle;
        mContext.setPen(penOf(run));
        if (b <= a) {
            mContext.drawVerticalStroke(a, low, high);
            return;
        }
        const int slant = std::max(0, std::min({kSlant, (high - low) / 2, (b - a) / 2}));
        const int left = slantLeft ? a + slant : a, right = slantRight ? b - slant : b;
        mHexagon.clear();
        if (slantLeft)
            mHexagon.emplace_back(a, middle);
        mHexagon.emplace_back(left, high);
        mHexagon.emplace_back(right, high);
        if (slantRight)
            mHexagon.emplace_back(b, middle);
        mHexagon.emplace_back(right, low);
        mHexagon.emplace_back(left, low);
        mHexagon.push_back(mHexagon.front());
        mContext.drawPolyline(mHexagon);
        // Text only where at least a character and the dots could fit: narrow runs cost no
        // measuring, so a crowded view stays as cheap as its boxes.
        const double textLeft = left + kTextPadding, textRight = right - kTextPadding;
        if (mDotsWidth < 0)
            mDotsWidth = mContext.getTextWidth("...");
        if (textRight - textLeft < mDotsWidth)
            return;
        plotDrawerDigital::drawTruncatedText(mContext, mRuns.textOf(run), textLeft, textRight, middle);
    }

    Context& mContext;
    plotDrawerDigital::cDigitalFrame mFrame;
    plotDrawerDigital::cDigitalPens mPens;
    Runs mRuns;
    std::vector<cPoint> mHexagon;
    double mDotsWidth = -1.0;
    bool mRising = false;
};

// A bus with one vector of width bits per x value (or per record of its own x, in ticks of scale).
template <class X, class Context>
class wxPlotDrawerDigitalVector
    : public wxPlotDrawerDigitalRuns<Context, plotDrawerDigital::cVectorRuns<plotDrawerDigital::cPositionSource<X>>> {
public:
    wxPlotDrawerDigitalVector(Context& context, const wxSinglePlotWidgetAxis& xAxis, const wxSinglePlotWidgetAxis& yAxis,
                              const plotDrawerDigital::cDigitalPens& pens, const X* x, double scale,
                              const char* states, uint64_t width, uint64_t count, unsigned digitalType)
        : wxPlotDrawerDigitalRuns<Context, plotDrawerDigital::cVectorRuns<plotDrawerDigital::cPositionSource<X>>>(
              context, xAxis, yAxis, pens, {{x, states, width, count, scale}, width, digitalType})
    {
    }
};

// The vector of a parametrised curve: the same walk, x from the parameter.
template <class X, class Context>
using wxPlotDrawerDigitalVectorParameterized = wxPlotDrawerDigitalVector<X, Context>;

// Records of an index (or a position) of type B and width state bytes.
template <class X, class B, class Context>
class wxPlotDrawerDigitalVectorInterleaved
    : public wxPlotDrawerDigitalRuns<Context, plotDrawerDigital::cVectorRuns<plotDrawerDigital::cIndexedSource<X, B>>> {
public:
    wxPlotDrawerDigitalVectorInterleaved(Context& context, const wxSinglePlotWidgetAxis& xAxis,
                                         const wxSinglePlotWidgetAxis& yAxis,
                                         const plotDrawerDigital::cDigitalPens& pens,
                                         const plotDrawerDigital::cIndexedSource<X, B>& records, uint64_t width,
                                         unsigned digitalType)
        : wxPlotDrawerDigitalRuns<Context, plotDrawerDigital::cVectorRuns<plotDrawerDigital::cIndexedSource<X, B>>>(
              context, xAxis, yAxis, pens,
              {records, std::min<uint64_t>(width, records.recordSize > sizeof(B) ? records.recordSize - sizeof(B) : 0),
               digitalType})
    {
    }
};

template <class X, class B, class Context>
using wxPlotDrawerDigital4StateVectorInterleaved = wxPlotDrawerDigitalVectorInterleaved<X, B, Context>;

// An enumeration value per x (or per record of its own x).
template <class X, class V, class Context>
class wxPlotDrawerDenseEnumValue
    : public wxPlotDrawerDigitalRuns<Context, plotDrawerDigital::cEnumRuns<plotDrawerDigital::cEnumPositionSource<X, V>>> {
public:
    wxPlotDrawerDenseEnumValue(Context& context, const wxSinglePlotWidgetAxis& xAxis, const wxSinglePlotWidgetAxis& yAxis,
                               const plotDrawerDigital::cDigitalPens& pens, const X* x, double scale, const V* values,
                               uint64_t count, const std::vector<std::string>& texts)
        : wxPlotDrawerDigitalRuns<Context, plotDrawerDigital::cEnumRuns<plotDrawerDigital::cEnumPositionSource<X, V>>>(
              context, xAxis, yAxis, pens, {{x, values, count, scale}, &texts})
    {
    }
};

// Enumeration records of an index (or a position) of type B and a value of type V.
template <class X, class B, class V, class Context>
class wxPlotDrawerSparseEnumValue
    : public wxPlotDrawerDigitalRuns<Context, plotDrawerDigital::cEnumRuns<plotDrawerDigital::cEnumIndexedSource<X, B, V>>> {
public:
    wxPlotDrawerSparseEnumValue(Context& context, const wxSinglePlotWidgetAxis& xAxis,
                                const wxSinglePlotWidgetAxis& yAxis, const plotDrawerDigital::cDigitalPens& pens,
                                const plotDrawerDigital::cEnumIndexedSource<X, B, V>& records,
                                const std::vector<std::string>& texts)
        : wxPlotDrawerDigitalRuns<Context, plotDrawerDigital::cEnumRuns<plotDrawerDigital::cEnumIndexedSource<X, B, V>>>(
              context, xAxis, yAxis, pens, {records, &texts})
    {
    }
};

}  // namespace vx3
