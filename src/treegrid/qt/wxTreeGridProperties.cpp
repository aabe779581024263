#include "treegrid/qt/wxTreeGridProperties.h"

namespace vx3 {

wxTreeGridProperties::wxTreeGridProperties(QWidget* parent)
    : wxTreeGridPropertyList(), wxTreeGridImpl(static_cast<wxTreeGridPropertyList&>(*this), parent)
{
}

unsigned wxTreeGridProperties::findGroupExpander(unsigned row)
{
    if (!checkHasGroups() || row >= getNumberOfTotalRows())
        return npos;
    const unsigned effective = getEffectiveRow(row);
    if (effective == npos)
        return npos;
    // The group is the tree's first level.
    for (unsigned e = findDeepestExpanderContainingRow(effective); e != npos; e = getExpander(e).parent)
        if (getExpander(e).level == 0)
            return e;
    return npos;
}

bool wxTreeGridProperties::canBeExpanded(unsigned row)
{
    const unsigned e = findGroupExpander(row);
    return e != npos && !getExpander(e).expanded;
}

bool wxTreeGridProperties::canBeCollapsed(unsigned row)
{
    const unsigned e = findGroupExpander(row);
    return e != npos && getExpander(e).expanded;
}

}  // namespace vx3
