#include "treegrid/wxTreeGridImplSorter.h"

#include <cmath>

#include "base/cVxString.h"

namespace vx3 {

wxTreeGridImplSorter::wxTreeGridImplSorter(wxTreeGridVirtual& model,
                                           const std::vector<std::pair<unsigned, bool>>& cols, bool caseSensitive,
                                           unsigned rowCount)
{
    for (const auto& [col, ascending] : cols) {
        cColumnKeys keys;
        keys.ascending = ascending;
        const int type = model.treeGridVirtualGetColType(col);
        if (type == treeGridVirtual::col_number) {
            keys.kind = kind_number;
            keys.numbers.resize(rowCount);
            for (unsigned row = 0; row < rowCount; ++row)
                keys.numbers[row] = model.treeGridVirtualGetDoubleValue(row, col);
        } else if (treeGridVirtual::checkIsVectorColType(type)) {
            keys.kind = kind_list;
            keys.lists.resize(rowCount);
            for (unsigned row = 0; row < rowCount; ++row)
                keys.lists[row] = model.treeGridVirtualGetDoubleVectorValue(row, col);
        } else {
            keys.kind = kind_text;
            keys.texts.resize(rowCount);
            for (unsigned row = 0; row < rowCount; ++row) {
                keys.texts[row] = model.treeGridVirtualGetValue(row, col);
                if (!caseSensitive)
                    keys.texts[row] = vxString::to_lower(keys.texts[row]);
            }
        }
        mColumns.push_back(std::move(keys));
    }
}

int wxTreeGridImplSorter::compareNumbers(double a, double b, bool ascending)
{
    // NaN is undefined: it ties with another NaN and goes after every number, whichever way the
    // column sorts, so that undefined values never lead a sorted table.
    const bool aNan = std::isnan(a), bNan = std::isnan(b);
    if (aNan || bNan)
        return aNan == bNan ? 0 : (aNan ? 1 : -1);
    if (a == b)
        return 0;
    return (a < b) == ascending ? -1 : 1;
}

int wxTreeGridImplSorter::compareKeys(unsigned a, unsigned b) const
{
    for (const cColumnKeys& keys : mColumns) {
        int c = 0;
        switch (keys.kind) {
        case kind_number: c = compareNumbers(keys.numbers[a], keys.numbers[b], keys.ascending); break;
        case kind_list: {
            const auto& x = keys.lists[a];
            const auto& y = keys.lists[b];
            const size_t common = std::min(x.size(), y.size());
            for (size_t i = 0; i < common && c == 0; ++i)
                c = compareNumbers(x[i], y[i], keys.ascending);
            if (c == 0 && x.size() != y.size())
                c = (x.size() < y.size()) == keys.ascending ? -1 : 1;
            break;
        }
        case kind_text: {
            const int r = keys.texts[a].compare(keys.texts[b]);
            c = r == 0 ? 0 : ((r < 0) == keys.ascending ? -1 : 1);
            break;
        }
        }
        if (c != 0)
            return c;
    }
    return 0;
}

bool wxTreeGridImplSorter::checkFirstKeyIsUndefined(unsigned row) const
{
    return !mColumns.empty() && mColumns.front().kind == kind_number && std::isnan(mColumns.front().numbers[row]);
}

}  // namespace vx3
