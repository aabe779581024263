#include "plot/cDigitalPlotPageRows.h"

#include <algorithm>
#include <cstdlib>

namespace vx3 {

using digitalPlotPageRows::cRow;

namespace digitalPlotPageRows {

void computeRowAxisRange(double min, double max, double& low, double& high)
{
    if (!(min <= max))
        std::swap(min, max);
    double range = max - min;
    if (!(range > 0.0)) {
        // A constant: a unit band around it, so that it stands in the middle of its row.
        range = 1.0;
        min -= 0.5, max += 0.5;
    }
    low = min - 0.05 * range;
    high = max + 0.05 * range;
}

std::string makeBitName(const std::string& busName, unsigned width, unsigned field)
{
    const size_t open = busName.rfind('[');
    const size_t colon = busName.find(':', open == std::string::npos ? 0 : open);
    if (open != std::string::npos && colon != std::string::npos && busName.back() == ']') {
        char* end = nullptr;
        const long msb = std::strtol(busName.c_str() + open + 1, &end, 10);
        const bool msbOk = end == busName.c_str() + colon;
        const long lsb = std::strtol(busName.c_str() + colon + 1, &end, 10);
        if (msbOk && end == busName.c_str() + busName.size() - 1) {
            const long bit = msb >= lsb ? msb - long(field) : msb + long(field);
            return busName.substr(0, open) + "[" + std::to_string(bit) + "]";
        }
    }
    return busName + "[" + std::to_string(long(width) - 1 - long(field)) + "]";
}

}  // namespace digitalPlotPageRows

void cDigitalPlotPageRows::setHeights(const digitalPlotPageRows::cRowHeights& heights)
{
    mHeights = heights;
    updateYPositions();
}

size_t cDigitalPlotPageRows::addCurve(const std::string& name, size_t curve, unsigned width)
{
    cRow row;
    row.kind = digitalPlotPageRows::row_curve;
    row.name = name;
    row.curve = curve;
    row.width = width;
    mRows.push_back(row);
    applyGroupVisibility();
    updateYPositions(mRows.size() - 1);
    return mRows.size() - 1;
}

size_t cDigitalPlotPageRows::addGroup(const std::string& name)
{
    cRow row;
    row.kind = digitalPlotPageRows::row_group;
    row.name = name;
    row.expanded = true;
    mRows.push_back(row);
    updateYPositions(mRows.size() - 1);
    return mRows.size() - 1;
}

size_t cDigitalPlotPageRows::addSeparator(const std::string& name)
{
    cRow row;
    row.kind = digitalPlotPageRows::row_separator;
    row.name = name;
    mRows.push_back(row);
    updateYPositions(mRows.size() - 1);
    return mRows.size() - 1;
}

size_t cDigitalPlotPageRows::endOfBits(size_t bus) const
{
    size_t end = bus + 1;
    while (end < mRows.size() && mRows[end].kind == digitalPlotPageRows::row_bit && mRows[end].curve == mRows[bus].curve)
        ++end;
    return end;
}

bool cDigitalPlotPageRows::removeRow(size_t index)
{
    if (index >= mRows.size())
        return false;
    const size_t end = mRows[index].kind == digitalPlotPageRows::row_curve ? endOfBits(index) : index + 1;
    mRows.erase(mRows.begin() + std::ptrdiff_t(index), mRows.begin() + std::ptrdiff_t(end));
    applyGroupVisibility();
    updateYPositions();
    return true;
}

void cDigitalPlotPageRows::remapCurves(const std::vector<long>& newIndex)
{
    std::vector<cRow> kept;
    for (cRow& row : mRows) {
        if (row.kind == digitalPlotPageRows::row_curve || row.kind == digitalPlotPageRows::row_bit) {
            if (row.curve >= newIndex.size() || newIndex[row.curve] < 0)
                continue;
            row.curve = static_cast<size_t>(newIndex[row.curve]);
        }
        kept.push_back(row);
    }
    mRows = std::move(kept);
    applyGroupVisibility();
    updateYPositions();
}

bool cDigitalPlotPageRows::checkShowsCurve(size_t curve) const
{
    return std::any_of(mRows.begin(), mRows.end(), [curve](const cRow& row) {
        return (row.kind == digitalPlotPageRows::row_curve || row.kind == digitalPlotPageRows::row_bit) &&
               row.curve == curve;
    });
}

bool cDigitalPlotPageRows::expandBus(size_t index)
{
    if (index >= mRows.size() || mRows[index].kind != digitalPlotPageRows::row_curve || mRows[index].width < 2 ||
        mRows[index].expanded)
        return false;
    cRow& bus = mRows[index];
    bus.expanded = true;
    std::vector<cRow> bits;
    for (unsigned field = 0; field < bus.width; ++field) {
        cRow bit;
        bit.kind = digitalPlotPageRows::row_bit;
        bit.name = digitalPlotPageRows::makeBitName(bus.name, bus.width, field);
        bit.curve = bus.curve;
        bit.width = 1;
        bit.field = field;
        bit.hidden = bus.hidden;
        bits.push_back(bit);
    }
    mRows.insert(mRows.begin() + std::ptrdiff_t(index) + 1, bits.begin(), bits.end());
    updateYPositions(index);
    return true;
}

bool cDigitalPlotPageRows::collapseBus(size_t index)
{
    if (index >= mRows.size() || mRows[index].kind != digitalPlotPageRows::row_curve || !mRows[index].expanded)
        return false;
    mRows[index].expanded = false;
    mRows.erase(mRows.begin() + std::ptrdiff_t(index) + 1, mRows.begin() + std::ptrdiff_t(endOfBits(index)));
    updateYPositions(index);
    return true;
}

bool cDigitalPlotPageRows::expandGroup(size_t index, bool expand)
{
    if (index >= mRows.size() || mRows[index].kind != digitalPlotPageRows::row_group)
        return false;
    mRows[index].expanded = expand;
    applyGroupVisibility();
    updateYPositions(index);
    return true;
}

bool cDigitalPlotPageRows::toggle(size_t index)
{
    if (index >= mRows.size())
        return false;
    const cRow& row = mRows[index];
    if (row.kind == digitalPlotPageRows::row_group)
        return expandGroup(index, !row.expanded);
    if (row.kind == digitalPlotPageRows::row_curve && row.width > 1)
        return row.expanded ? collapseBus(index) : expandBus(index);
    return false;
}

void cDigitalPlotPageRows::applyGroupVisibility()
{
    bool open = true;
    for (cRow& row : mRows) {
        if (row.kind == digitalPlotPageRows::row_group) {
            open = row.expanded;
            row.hidden = false;
        } else if (row.kind == digitalPlotPageRows::row_separator) {
            open = true;
            row.hidden = false;
        } else {
            row.hidden = !open;
        }
    }
}

void cDigitalPlotPageRows::updateYPositions(size_t first, bool assignHeights)
{
    if (first >= mRows.size()) {
        clampScrollOffset();
        return;
    }
    double running = first > 0 ? mRows[first - 1].position + mRows[first - 1].height : 0.0;
    // The bus the bit rows that follow belong to: whether it is open, and which curve it is.
    bool parentExpanded = false;
    size_t parentCurve = static_cast<size_t>(-1);
    if (first > 0)
        for (size_t i = first; i-- > 0;)
            if (mRows[i].kind == digitalPlotPageRows::row_curve) {
                parentExpanded = mRows[i].expanded;
                parentCurve = mRows[i].curve;
                break;
            }
    for (size_t i = first; i < mRows.size(); ++i) {
        cRow& row = mRows[i];
        switch (row.kind) {
        case digitalPlotPageRows::row_curve:
            if (row.width == 0) {
                row.expanded = false;
                parentExpanded = false;
                parentCurve = static_cast<size_t>(-1);
            } else {
                parentExpanded = row.expanded;
                parentCurve = row.curve;
            }
            break;
        case digitalPlotPageRows::row_bit:
            if (row.curve != parentCurve)
                parentExpanded = false;
            row.parentExpanded = parentExpanded;
            break;
        default:
            parentExpanded = false;
            parentCurve = static_cast<size_t>(-1);
            break;
        }
        const bool shown = !row.hidden && (row.kind != digitalPlotPageRows::row_bit || row.parentExpanded);
        if (assignHeights || !shown) {
            if (!shown)
                row.height = 0.0;
            else if (row.kind == digitalPlotPageRows::row_group || row.kind == digitalPlotPageRows::row_separator)
                row.height = mHeights.group;
            else
                row.height = row.width == 0 ? mHeights.analog : mHeights.digital;
        }
        if (shown)
            running += mHeights.gap;
        row.position = running;
        running += row.height;
    }
    clampScrollOffset();
}

double cDigitalPlotPageRows::getTotalHeight() const
{
    return mRows.empty() ? 0.0 : mRows.back().position + mRows.back().height;
}

int cDigitalPlotPageRows::findRowAt(double y) const
{
    y += mScrollOffset;
    for (size_t i = 0; i < mRows.size(); ++i)
        if (mRows[i].height > 0.0 && y >= mRows[i].position && y < mRows[i].position + mRows[i].height)
            return static_cast<int>(i);
    return -1;
}

void cDigitalPlotPageRows::setViewHeight(double height)
{
    mViewHeight = std::max(height, 0.0);
    clampScrollOffset();
}

bool cDigitalPlotPageRows::scrollBy(double pixels)
{
    const double before = mScrollOffset;
    mScrollOffset += pixels;
    clampScrollOffset();
    return mScrollOffset != before;
}

void cDigitalPlotPageRows::clampScrollOffset()
{
    const double most = std::max(0.0, getTotalHeight() + mHeights.gap - mViewHeight);
    mScrollOffset = std::clamp(mScrollOffset, 0.0, most);
}

}  // namespace vx3
