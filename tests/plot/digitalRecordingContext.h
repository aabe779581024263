// A draw context that records the painter calls of the digital drawers instead of painting, so
// that their walks test headless: how many calls, and where.
#pragma once

#include <string>
#include <vector>

#include "plot/wxCurveStyle.h"

namespace zwplot {

struct cRecordedPoint {
    double x = 0, y = 0;
    cRecordedPoint(double px, double py) : x(px), y(py) {}
};

struct cRecordedCall {
    enum kind_type { line, polyline, stroke, fill, label } kind;
    double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    unsigned colour = 0;  // the fill's colour, else the pen's
    std::string text = {};
    std::vector<cRecordedPoint> points = {};
};

class cRecordingContext {
public:
    enum text_anchor : int { anchor_centre = 2 };
    static constexpr double kCharWidth = 6.0;  // every character, the dots included

    void setPen(const vx3::vxDrawContext::cVxPen& pen) { mPen = pen; }
    void drawLine(double x1, double y1, double x2, double y2) { add({cRecordedCall::line, x1, y1, x2, y2, mPen.colour}); }
    void drawPolyline(const std::vector<cRecordedPoint>& points)
    {
        cRecordedCall call{cRecordedCall::polyline, 0, 0, 0, 0, mPen.colour};
        call.points = points;
        add(call);
    }
    void drawVerticalStroke(double x, double y1, double y2) { add({cRecordedCall::stroke, x, y1, x, y2, mPen.colour}); }
    void fillRectangle(double x1, double y1, double x2, double y2, unsigned colour)
    {
        add({cRecordedCall::fill, x1, y1, x2, y2, colour});
    }
    void drawText(const std::string& text, double x, double y, int anchor)
    {
        cRecordedCall call{cRecordedCall::label, x, y, x, y, mPen.colour};
        call.text = text;
        add(call);
    }
    double getTextWidth(const std::string& text) const { return kCharWidth * double(text.size()); }
    double getTextHeight(const std::string&) const { return 12.0; }

    const std::vector<cRecordedCall>& calls() const { return mCalls; }
    size_t count(cRecordedCall::kind_type kind) const
    {
        size_t n = 0;
        for (const auto& call : mCalls)
            n += call.kind == kind;
        return n;
    }
    std::vector<const cRecordedCall*> texts() const
    {
        std::vector<const cRecordedCall*> result;
        for (const auto& call : mCalls)
            if (call.kind == cRecordedCall::label)
                result.push_back(&call);
        return result;
    }
    void clear() { mCalls.clear(); }

private:
    void add(const cRecordedCall& call) { mCalls.push_back(call); }
    vx3::vxDrawContext::cVxPen mPen;
    std::vector<cRecordedCall> mCalls;
};

}  // namespace zwplot
