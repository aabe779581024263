// The views a plot has shown, to step back and forth through them like pages in a browser.
#pragma once

#include <cstddef>
#include <vector>

namespace vx3 {

// x minimum, x maximum, y0 minimum, y0 maximum, and with a second Y axis y1 minimum, y1 maximum.
using wxSinglePlotViewPort = std::vector<double>;

class wxSinglePlotViewPortList {
public:
    static constexpr size_t kCapacity = 50;

    // Drops the forward views, appends view unless it equals the last one, and forgets the
    // oldest beyond the capacity; the current view is the last afterwards.
    void addViewPort(const wxSinglePlotViewPort& view);
    // False at the ends; the current index moves otherwise.
    bool moveToPreviousViewPort();
    bool moveToNextViewPort();
    // Throws cLoggedException when there is no current view.
    const wxSinglePlotViewPort& currentViewPort() const;
    // Takes the last X range of a connected plot, with NaN for Y when this list is empty; nothing
    // when the last X range is already the same.
    void addZoomBoxesXCoordinates(const wxSinglePlotViewPortList& other);

    size_t getNbOfViewPorts() const { return mViewPorts.size(); }
    // Index of the current view; equals the count when there is none.
    size_t getCurrentViewPortIndex() const { return mCurrent; }
    const std::vector<wxSinglePlotViewPort>& getViewPorts() const { return mViewPorts; }
    void clearViewPorts();

private:
    std::vector<wxSinglePlotViewPort> mViewPorts;
    size_t mCurrent = 0;
};

}  // namespace vx3
