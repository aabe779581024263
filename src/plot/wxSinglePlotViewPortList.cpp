#include "plot/wxSinglePlotViewPortList.h"

#include <cmath>
#include <limits>

#include "base/cLoggedException.h"

namespace vx3 {

void wxSinglePlotViewPortList::addViewPort(const wxSinglePlotViewPort& view)
{
    if (mCurrent + 1 < mViewPorts.size())
        mViewPorts.resize(mCurrent + 1);
    if (mViewPorts.empty() || mViewPorts.back() != view) {
        mViewPorts.push_back(view);
        while (mViewPorts.size() > kCapacity)
            mViewPorts.erase(mViewPorts.begin());
    }
    mCurrent = mViewPorts.size() - 1;
}

bool wxSinglePlotViewPortList::moveToPreviousViewPort()
{
    if (mCurrent == 0 || mCurrent >= mViewPorts.size())
        return false;
    --mCurrent;
    return true;
}

bool wxSinglePlotViewPortList::moveToNextViewPort()
{
    if (mCurrent + 1 >= mViewPorts.size())
        return false;
    ++mCurrent;
    return true;
}

const wxSinglePlotViewPort& wxSinglePlotViewPortList::currentViewPort() const
{
    if (mCurrent >= mViewPorts.size())
        throw cLoggedException("wxSinglePlotViewPortList::currentViewPort : no view port at index " +
                               std::to_string(mCurrent) + " of " + std::to_string(mViewPorts.size()));
    return mViewPorts[mCurrent];
}

void wxSinglePlotViewPortList::addZoomBoxesXCoordinates(const wxSinglePlotViewPortList& other)
{
    if (other.mViewPorts.empty())
        return;
    const wxSinglePlotViewPort& theirs = other.mViewPorts.back();
    if (theirs.size() < 2)
        return;
    wxSinglePlotViewPort view;
    if (mViewPorts.empty()) {
        view.assign(4, std::numeric_limits<double>::quiet_NaN());
    } else {
        view = mViewPorts.back();
        if (view[0] == theirs[0] && view[1] == theirs[1])
            return;
    }
    view[0] = theirs[0];
    view[1] = theirs[1];
    addViewPort(view);
}

void wxSinglePlotViewPortList::clearViewPorts()
{
    mViewPorts.clear();
    mCurrent = 0;
}

}  // namespace vx3
