// Column checks of digital pictures shared by the drawer tests: a strip 60 pixels high, logic
// levels at rows 10, 30 and 50 counted from the bottom, and the changes a dump oracle read, each
// checked at its pixel column: a bit's level and edges, a bus's hexagon and its value text.
#pragma once

#include <QImage>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "plot/wxPlotDrawerDigitalPens.h"

namespace digitalColumnCheck {

constexpr unsigned kWhite = 0xffffff;
constexpr int kHeight = 60;
constexpr int kLow = 10, kMiddle = 30, kHigh = 50;  // rows of 0, 0.5 and 1, counted from the bottom

using cChanges = std::vector<std::pair<uint64_t, std::string>>;

// Pixel of a row counted from the bottom, as the drawers count.
inline unsigned pixelAt(const QImage& image, int column, int row)
{
    return image.pixel(column, kHeight - 1 - row) & 0xffffffu;
}

// The rows a state covers: its level, or low to high for an unknown state.
inline std::pair<int, int> rowsOf(char state)
{
    switch (state) {
    case '0': return {kLow, kLow};
    case '1': return {kHigh, kHigh};
    case 'z': return {kMiddle, kMiddle};
    default: return {kLow, kHigh};
    }
}

// The leftmost and rightmost inked column in the text band between two columns; -1 without ink.
inline std::pair<int, int> inkInBand(const QImage& image, int from, int to, unsigned ignored)
{
    int left = -1, right = -1;
    for (int x = from; x <= to; ++x)
        for (int row = kMiddle - 7; row <= kMiddle + 7; ++row) {
            const unsigned colour = pixelAt(image, x, row);
            if (colour != kWhite && colour != ignored) {
                if (left < 0)
                    left = x;
                right = x;
                break;
            }
        }
    return {left, right};
}

// Checks a bit's columns against its changes (columns of each change and of the end given):
// no gap at an edge, and inside each state its level and nothing else at the levels.
inline void checkBitColumns(const QImage& image, const cChanges& expected, const std::vector<int>& columns, int last,
                            const vx3::plotDrawerDigital::cDigitalPens& pens)
{
    for (size_t k = 0; k < expected.size(); ++k) {
        const char state = expected[k].second[0];
        const int from = columns[k], to = k + 1 < expected.size() ? columns[k + 1] : last;
        if (k > 0) {
            const auto a = rowsOf(expected[k - 1].second[0]), b = rowsOf(state);
            for (int row = std::min(a.first, b.first); row <= std::max(a.second, b.second); ++row)
                ASSERT_NE(pixelAt(image, from, row), kWhite) << "edge at column " << from << " row " << row;
        }
        for (int column = from + 1; column < to; ++column) {
            const unsigned low = pixelAt(image, column, kLow), middle = pixelAt(image, column, kMiddle),
                           high = pixelAt(image, column, kHigh);
            switch (state) {
            case '0':
                ASSERT_EQ(low, pens.main.colour) << column;
                ASSERT_EQ(middle, kWhite) << column;
                ASSERT_EQ(high, kWhite) << column;
                break;
            case '1':
                ASSERT_EQ(low, kWhite) << column;
                ASSERT_EQ(middle, kWhite) << column;
                ASSERT_EQ(high, pens.main.colour) << column;
                break;
            case 'z':
                ASSERT_EQ(middle, pens.z.colour) << column;
                ASSERT_EQ(low, kWhite) << column;
                ASSERT_EQ(high, kWhite) << column;
                break;
            default:
                ASSERT_EQ(middle, pens.xBoxColour) << column;
                ASSERT_EQ(low, pens.x.colour) << column;
                ASSERT_EQ(high, pens.x.colour) << column;
            }
        }
    }
}

// Checks a bus: the hexagon's point at each change, top and bottom lines in the pen of the value,
// nothing just inside them, and (withText) a text in each run wide enough for one.
inline void checkBusColumns(const QImage& image, const cChanges& expected, const std::vector<int>& columns, int last,
                            const vx3::plotDrawerDigital::cDigitalPens& pens, bool withText)
{
    for (size_t k = 0; k < expected.size(); ++k) {
        const std::string& state = expected[k].second;
        const int from = columns[k], to = k + 1 < expected.size() ? columns[k + 1] : last;
        const unsigned pen = state.find('x') != std::string::npos                 ? pens.x.colour
                             : state.find_first_not_of('z') == std::string::npos ? pens.z.colour
                                                                                  : pens.main.colour;
        if (k > 0) {
            ASSERT_EQ(pixelAt(image, from, kMiddle), pen) << "change at column " << from;
        }
        for (int column = from + 4; column < to - 3; ++column) {
            ASSERT_EQ(pixelAt(image, column, kLow), pen) << column;
            ASSERT_EQ(pixelAt(image, column, kHigh), pen) << column;
            ASSERT_EQ(pixelAt(image, column, kLow + 2), kWhite) << column;
            ASSERT_EQ(pixelAt(image, column, kHigh - 2), kWhite) << column;
        }
        if (withText && to - from > 40) {
            const auto ink = inkInBand(image, from + 5, to - 5, kWhite);
            ASSERT_GE(ink.first, 0) << "no value text in the run from column " << from << " to " << to;
        }
    }
}

}  // namespace digitalColumnCheck
