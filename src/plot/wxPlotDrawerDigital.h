// Drawing of logic bits: a line at the row of each state, a vertical edge at each change, a
// filled box for an unknown state. Only real changes cost: an unchanged state costs one compare,
// and the changes that share a pixel column with the one before are walked over, the column
// drawn once as an edge from low to high.
#pragma once

#include <algorithm>
#include <array>

#include "model/derivedCurveFunction.h"
#include "plot/wxPlotDrawerDigitalBase.h"

namespace vx3 {

namespace plotDrawerDigital {

// The states a bit is drawn as, after simplifyDigitalValue: '0', '1', 'x', 'z', 'u' and the weak
// levels 10 (low), 11 (unknown), 12 (high).
using cStateTable = std::array<unsigned char, 256>;

// fourState: the stored bytes are only 0, 1, x, z (either case); anything else is unknown.
// busPlot: the weak levels are one state, drawn at the middle.
inline cStateTable makeStateTable(bool fourState, bool busPlot)
{
    cStateTable table{};
    for (unsigned byte = 0; byte < 256; ++byte) {
        unsigned char state;
        if (fourState)
            state = byte == '0' ? '0' : byte == '1' ? '1' : (byte == 'z' || byte == 'Z') ? 'z' : 'x';
        else
            state = cDerivedCurveFunction::simplifyDigitalValue(static_cast<unsigned char>(byte));
        if (busPlot && (state == 10 || state == 12))
            state = 11;
        table[byte] = state;
    }
    return table;
}

}  // namespace plotDrawerDigital

// The walk over the records of one bit. Source gives count(), xAt(i) and stateAt(i).
template <class Context, class Source>
class wxPlotDrawerDigitalBits {
public:
    wxPlotDrawerDigitalBits(Context& context, const wxSinglePlotWidgetAxis& xAxis, const wxSinglePlotWidgetAxis& yAxis,
                            const plotDrawerDigital::cDigitalPens& pens, const Source& source, bool fourState)
        : mContext(context), mFrame(xAxis, yAxis), mPens(pens), mSource(source),
          mStates(plotDrawerDigital::makeStateTable(fourState, mFrame.busPlot))
    {
        if (mFrame.rowLow > mFrame.rowHigh)
            std::swap(mFrame.rowLow, mFrame.rowHigh);
    }

    void draw(unsigned monotony)
    {
        const uint64_t n = mSource.count();
        if (n == 0 || !mFrame.checkIsDrawable() || mPens.main.width <= 0)
            return;
        mRising = derivedCurveFunction::check_monotony_increasing(monotony);
        uint64_t i = plotDrawerDigital::findFirstRecord(mSource, mFrame, monotony);
        double x = mSource.xAt(i);
        if (!(x <= mFrame.xmax) || (i + 1 == n && x < mFrame.xmin))
            return;  // the curve lies right or left of the view, or has no valid first record
        double lastX = x;
        unsigned char state = stateAt(i);
        int column = mFrame.column(x);
        ++i;
        // Changes in the first column: one is an ordinary edge, more make the column an edge.
        const unsigned char before = state;
        unsigned changes = 0;
        skipInvisibleSymbols(i, column, state, changes, lastX);
        if (changes > 0)
            drawEdge(column, before, state, changes > 1);
        // A level starts right of the edge it leaves, so that no level is drawn over an edge.
        bool afterEdge = changes > 0;
        bool reachedRight = false;
        while (i < n) {
            x = mSource.xAt(i);
            if (!(x <= mFrame.xmax)) {
                reachedRight = x > mFrame.xmax;
                break;
            }
            lastX = x;
            unsigned char next = stateAt(i);
            if (next == state) {
                ++i;
                continue;
            }
            const int to = mFrame.column(x);
            ++i;
            changes = 0;
            skipInvisibleSymbols(i, to, next, changes, lastX);
            drawLineBuffered(afterEdge ? column + 1 : column, to, state, next, changes > 0);
            state = next;
            column = to;
            afterEdge = true;
        }
        // The last state lasts to the curve's last record, or to the right edge.
        const int end = std::max(reachedRight ? mFrame.columnRight : mFrame.column(lastX), column);
        drawState(afterEdge && end > column ? column + 1 : column, end, state);
    }

    // Walks over the records from i on that fall into column, leaving state at the last of them;
    // changes counts the changes among them: with any, the column shows as an edge.
    void skipInvisibleSymbols(uint64_t& i, int column, unsigned char& state, unsigned& changes, double& lastX)
    {
        const uint64_t n = mSource.count();
        const double limit = mRising ? mFrame.computeColumnLimit(column) : -std::numeric_limits<double>::infinity();
        const uint64_t start = i;
        for (; i < n; ++i) {
            const double x = mSource.xAt(i);
            if (!(x <= limit) && (!(x <= mFrame.xmax) || mFrame.column(x) != column))
                break;
            lastX = x;
            // Two changes make the column an edge whatever follows: from then on only its last
            // state matters, read once when the column is left.
            if (changes < 2) {
                const unsigned char next = stateAt(i);
                if (next != state) {
                    ++changes;
                    state = next;
                }
            }
        }
        if (changes >= 2 && i > start)
            state = stateAt(i - 1);
    }

    // The old state from column x0 to x1, then the edge at x1 into the new state.
    void drawLineBuffered(int x0, int x1, unsigned char oldState, unsigned char newState, bool crowded)
    {
        drawState(x0, x1, oldState);
        drawEdge(x1, oldState, newState, crowded);
    }

    // An unknown state: a filled box between the low and the high row, outlined top and bottom.
    void drawXBox(int x0, int x1)
    {
        mContext.fillRectangle(x0, mFrame.rowLow, x1 + 1, mFrame.rowHigh + 1, mPens.xBoxColour);
        plotDrawerDigital::drawHorizontalRun(mContext, mPens.x, x0, x1, mFrame.rowLow);
        plotDrawerDigital::drawHorizontalRun(mContext, mPens.x, x0, x1, mFrame.rowHigh);
    }

    const plotDrawerDigital::cDigitalFrame& getFrame() const { return mFrame; }

private:
    unsigned char stateAt(uint64_t i) const { return mStates[static_cast<unsigned char>(*mSource.stateAt(i))]; }

    // The row of a drawn level, or -1 for the box of an unknown state.
    int rowOf(unsigned char state) const
    {
        switch (state) {
        case '0': case 10: return mFrame.rowLow;
        case '1': case 12: return mFrame.rowHigh;
        case 'z': case 11: return mFrame.rowMiddle;
        default: return -1;
        }
    }
    static bool checkIsWeak(unsigned char state) { return state == 'z' || (state >= 10 && state <= 12); }

    void drawState(int x0, int x1, unsigned char state)
    {
        const int row = rowOf(state);
        if (row < 0)
            drawXBox(x0, x1);
        else
            plotDrawerDigital::drawHorizontalRun(mContext, checkIsWeak(state) ? mPens.z : mPens.main, x0, x1, row);
    }

    void drawEdge(int column, unsigned char oldState, unsigned char newState, bool crowded)
    {
        int low, high;
        if (crowded) {
            low = mFrame.rowLow;
            high = mFrame.rowHigh;
        } else {
            const int a = rowOf(oldState), b = rowOf(newState);
            low = a < 0 || b < 0 ? mFrame.rowLow : std::min(a, b);
            high = a < 0 || b < 0 ? mFrame.rowHigh : std::max(a, b);
            if (low == high)
                return;  // a weak and a strong level of one row meet: the pens tell them apart
        }
        mContext.setPen(mPens.main);
        mContext.drawVerticalStroke(column, low, high);
    }

    Context& mContext;
    plotDrawerDigital::cDigitalFrame mFrame;
    plotDrawerDigital::cDigitalPens mPens;
    Source mSource;
    plotDrawerDigital::cStateTable mStates;
    bool mRising = false;
};

// One logic bit per x value.
template <class X, class Context>
class wxPlotDrawerDigitalValue : public wxPlotDrawerDigitalBits<Context, plotDrawerDigital::cPositionSource<X>> {
public:
    wxPlotDrawerDigitalValue(Context& context, const wxSinglePlotWidgetAxis& xAxis, const wxSinglePlotWidgetAxis& yAxis,
                             const plotDrawerDigital::cDigitalPens& pens, const X* x, const char* states, uint64_t count)
        : wxPlotDrawerDigitalBits<Context, plotDrawerDigital::cPositionSource<X>>(
              context, xAxis, yAxis, pens, {x, states, 1, count, 1.0}, false)
    {
    }
};

// A logic bit of a parametrised curve: each record has its x, here in ticks of scale.
template <class X, class Context>
class wxPlotDrawerDigitalValueParameterized
    : public wxPlotDrawerDigitalBits<Context, plotDrawerDigital::cPositionSource<X>> {
public:
    wxPlotDrawerDigitalValueParameterized(Context& context, const wxSinglePlotWidgetAxis& xAxis,
                                          const wxSinglePlotWidgetAxis& yAxis,
                                          const plotDrawerDigital::cDigitalPens& pens, const X* x, double scale,
                                          const char* states, uint64_t stride, uint64_t count)
        : wxPlotDrawerDigitalBits<Context, plotDrawerDigital::cPositionSource<X>>(
              context, xAxis, yAxis, pens, {x, states, stride, count, scale}, false)
    {
    }
};

// Records of an index into the x values (or a position, without them) and a state of any kind,
// strength levels included.
template <class X, class B, class Context>
class wxPlotDrawerDigitalValueInterleaved
    : public wxPlotDrawerDigitalBits<Context, plotDrawerDigital::cIndexedSource<X, B>> {
public:
    wxPlotDrawerDigitalValueInterleaved(Context& context, const wxSinglePlotWidgetAxis& xAxis,
                                        const wxSinglePlotWidgetAxis& yAxis,
                                        const plotDrawerDigital::cDigitalPens& pens,
                                        const plotDrawerDigital::cIndexedSource<X, B>& records)
        : wxPlotDrawerDigitalBits<Context, plotDrawerDigital::cIndexedSource<X, B>>(context, xAxis, yAxis, pens,
                                                                                    records, false)
    {
    }
};

// The same records holding only 0, 1, x and z.
template <class X, class B, class Context>
class wxPlotDrawerDigital4StateValueInterleaved
    : public wxPlotDrawerDigitalBits<Context, plotDrawerDigital::cIndexedSource<X, B>> {
public:
    wxPlotDrawerDigital4StateValueInterleaved(Context& context, const wxSinglePlotWidgetAxis& xAxis,
                                              const wxSinglePlotWidgetAxis& yAxis,
                                              const plotDrawerDigital::cDigitalPens& pens,
                                              const plotDrawerDigital::cIndexedSource<X, B>& records)
        : wxPlotDrawerDigitalBits<Context, plotDrawerDigital::cIndexedSource<X, B>>(context, xAxis, yAxis, pens,
                                                                                    records, true)
    {
    }
};

}  // namespace vx3
