// One pixel column of symbols, seen as a set of rows. Drawers put every symbol's row in here and
// paint the column when the next symbol falls into another one, so that a symbol is painted once
// per pixel however many points land on it: a million points in ten rows cost ten painter calls.
// The buffer lives in the plot and is reused between curves: drawing never allocates.
#pragma once

#include <vector>

namespace vx3 {

class wxPlotDrawerColBuffer {
public:
    // Room the buffer keeps beyond the rows it was sized for, for symbols widened by their pen.
    static constexpr int kMargin = 100;
    static constexpr int kNoColumn = -0x40000000;

    // Makes room for rows lowest - kMargin to highest + kMargin (the two in any order) and clears.
    void resize(int lowest, int highest);
    // Sets a row; rows outside the room are dropped (they lie far outside the plot).
    void insert(int row)
    {
        const int index = row + mOffset;
        if (index < 0 || index >= int(mRows.size()))
            return;
        mRows[index] = true;
        if (mEmpty) {
            mLowest = mHighest = row;
            mEmpty = false;
        } else if (row < mLowest) {
            mLowest = row;
        } else if (row > mHighest) {
            mHighest = row;
        }
    }
    void clear();
    bool checkIsEmpty() const { return mEmpty; }
    int getColumn() const { return mColumn; }
    void setColumn(int column) { mColumn = column; }
    int getLowest() const { return mLowest; }
    int getHighest() const { return mHighest; }

    // Calls paint(column, row) for every set row in rising order, clearing each; the buffer is
    // empty afterwards. All the symbol kinds below are this with a shape.
    template <class Paint>
    void drawEach(Paint&& paint)
    {
        if (mEmpty)
            return;
        for (int row = mLowest; row <= mHighest; ++row) {
            const int index = row + mOffset;
            if (mRows[index]) {
                mRows[index] = false;
                paint(mColumn, row);
            }
        }
        mEmpty = true;
    }

    template <class Context>
    void drawPoints(Context& context)
    {
        drawEach([&](int x, int y) { context.drawPoint(x, y); });
    }
    // Filled with the context's brush when one is set.
    template <class Context>
    void drawCircles(Context& context, int radius)
    {
        drawEach([&](int x, int y) { context.drawEllipse(x, y, radius); });
    }
    template <class Context>
    void drawBoxes(Context& context, int radius)
    {
        drawEach([&](int x, int y) {
            const double xs[4] = {double(x - radius), double(x + radius), double(x + radius), double(x - radius)};
            const double ys[4] = {double(y - radius), double(y - radius), double(y + radius), double(y + radius)};
            context.drawPolygon(xs, ys, 4);
        });
    }
    template <class Context>
    void drawCrosses(Context& context, int radius)
    {
        drawEach([&](int x, int y) {
            context.drawLine(x - radius, y - radius, x + radius, y + radius);
            context.drawLine(x - radius, y + radius, x + radius, y - radius);
        });
    }
    template <class Context>
    void drawDiamonds(Context& context, int radius)
    {
        drawEach([&](int x, int y) {
            const double xs[4] = {double(x), double(x + radius), double(x), double(x - radius)};
            const double ys[4] = {double(y + radius), double(y), double(y - radius), double(y)};
            context.drawPolygon(xs, ys, 4);
        });
    }
    // Triangles point the way their name says (y runs upwards), centred on the pixel.
    template <class Context>
    void drawUpTriangles(Context& context, int radius)
    {
        drawTriangles(context, radius, 0, 1);
    }
    template <class Context>
    void drawDownTriangles(Context& context, int radius)
    {
        drawTriangles(context, radius, 0, -1);
    }
    template <class Context>
    void drawLeftTriangles(Context& context, int radius)
    {
        drawTriangles(context, radius, -1, 0);
    }
    template <class Context>
    void drawRightTriangles(Context& context, int radius)
    {
        drawTriangles(context, radius, 1, 0);
    }
    // One bar per column: from the base row to the farthest set row on either side of it.
    template <class Context>
    void drawHistograms(Context& context, int baseRow)
    {
        if (mEmpty)
            return;
        const int low = mLowest < baseRow ? mLowest : baseRow;
        const int high = mHighest > baseRow ? mHighest : baseRow;
        const int column = mColumn;
        drawEach([](int, int) {});
        context.drawVerticalStroke(column, low, high);
    }

private:
    template <class Context>
    void drawTriangles(Context& context, int radius, int dx, int dy)
    {
        drawEach([&](int x, int y) {
            // Tip at radius from the centre in the direction (dx, dy), the base opposite.
            const double tipX = x + dx * radius, tipY = y + dy * radius;
            const double baseX = x - dx * radius, baseY = y - dy * radius;
            const double xs[3] = {tipX, baseX + dy * radius, baseX - dy * radius};
            const double ys[3] = {tipY, baseY + dx * radius, baseY - dx * radius};
            context.drawPolygon(xs, ys, 3);
        });
    }

    std::vector<bool> mRows;
    int mOffset = 0;
    int mLowest = 0;
    int mHighest = 0;
    bool mEmpty = true;
    int mColumn = kNoColumn;
};

}  // namespace vx3
