#include "treegrid/wxTreeGridTransposer.h"

namespace vx3 {

// Model rows rarely have labels of their own; their numbers then head the transposed columns.
std::string wxTreeGridTransposer::treeGridVirtualGetColHeaderLabel(unsigned col)
{
    std::string label = mInner.treeGridVirtualGetRowHeaderLabel(col);
    if (label.empty())
        label = std::to_string(long(col) + mInner.treeGridVirtualGetRowHeaderLabelOffset());
    return label;
}

}  // namespace vx3
