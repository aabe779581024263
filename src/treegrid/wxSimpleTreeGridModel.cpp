#include "treegrid/wxSimpleTreeGridModel.h"

#include <cmath>

#include "base/cVxString.h"

namespace vx3 {

void wxSimpleTreeGridModel::setColumns(const std::vector<std::string>& labels, const std::vector<int>& types)
{
    mLabels = labels;
    mTypes = types;
    mTypes.resize(labels.size(), treeGridVirtual::col_string);
    mRows.clear();
}

wxSimpleTreeGridModel::cCell wxSimpleTreeGridModel::makeCell(unsigned col, const std::string& text) const
{
    double value = std::nan("");
    if (mTypes[col] == treeGridVirtual::col_number) {
        double parsed = 0;
        if (cVxString(vxString::trim(text)).toDouble(parsed))
            value = parsed;
    }
    return {text, value};
}

unsigned wxSimpleTreeGridModel::appendRow(const std::vector<std::string>& texts)
{
    std::vector<cCell> row;
    row.reserve(mLabels.size());
    for (unsigned c = 0; c < mLabels.size(); ++c)
        row.push_back(makeCell(c, c < texts.size() ? texts[c] : std::string()));
    mRows.push_back(std::move(row));
    return unsigned(mRows.size() - 1);
}

bool wxSimpleTreeGridModel::setCellText(unsigned row, unsigned col, const std::string& text)
{
    if (row >= mRows.size() || col >= mLabels.size())
        return false;
    mRows[row][col] = makeCell(col, text);
    return true;
}

const std::string& wxSimpleTreeGridModel::getCellText(unsigned row, unsigned col) const
{
    static const std::string empty;
    return row < mRows.size() && col < mLabels.size() ? mRows[row][col].text : empty;
}

std::string wxSimpleTreeGridModel::treeGridVirtualGetColHeaderLabel(unsigned col)
{
    return col < mLabels.size() ? mLabels[col] : std::string();
}

std::string wxSimpleTreeGridModel::treeGridVirtualGetValue(unsigned row, unsigned col)
{
    return getCellText(row, col);
}

double wxSimpleTreeGridModel::treeGridVirtualGetDoubleValue(unsigned row, unsigned col)
{
    if (row >= mRows.size() || col >= mLabels.size())
        return std::nan("");
    if (mTypes[col] == treeGridVirtual::col_number)
        return mRows[row][col].value;
    return wxTreeGridVirtual::treeGridVirtualGetDoubleValue(row, col);
}

int wxSimpleTreeGridModel::treeGridVirtualGetColType(unsigned col)
{
    return col < mTypes.size() ? mTypes[col] : treeGridVirtual::col_string;
}

}  // namespace vx3
