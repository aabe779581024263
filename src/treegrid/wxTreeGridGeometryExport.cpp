// The export of wxTreeGridGeometry: the table as the view orders it, as tab-separated text or as
// an HTML table.
#include <algorithm>

#include "base/cVxString.h"
#include "treegrid/wxTreeGridGeometry.h"

namespace vx3 {

namespace {


// Tabs and line ends inside a cell would shift the columns of the text form.
std::string flattenForText(std::string text)
{
    std::replace_if(text.begin(), text.end(), [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
    return text;
}

}  // namespace

std::vector<unsigned> wxTreeGridGeometry::exportColumnsComputeUsedRowIndices() const
{
    std::vector<unsigned> rows = getSelectedRows();
    return rows.empty() ? mEffectiveToTotal : rows;
}

std::string wxTreeGridGeometry::exportColumns(bool html)
{
    std::vector<unsigned> cols;
    for (unsigned e = 0; e < mNbCols; ++e)
        if (!checkColIsHidden(mEffectiveToCol[e]))
            cols.push_back(mEffectiveToCol[e]);
    const std::vector<unsigned> rows = exportColumnsComputeUsedRowIndices();
    std::string out;
    if (!html) {
        for (size_t i = 0; i < cols.size(); ++i)
            out += (i ? "\t" : "") + flattenForText(mModel->treeGridVirtualGetColHeaderLabel(cols[i]));
        out += '\n';
        for (unsigned row : rows) {
            for (size_t i = 0; i < cols.size(); ++i)
                out += (i ? "\t" : "") + flattenForText(mModel->treeGridVirtualGetValue(row, cols[i]));
            out += '\n';
        }
        return out;
    }
    out += "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 3.2//EN\">\n<HTML>\n<HEAD>\n";
    out += "<META NAME=\"GENERATOR\" CONTENT=\"Harlan Tessel ZelkoraWave\">\n";
    out += "<TITLE>Table</TITLE>\n</HEAD>\n<BODY>\n";
    out += "<TABLE COLS=" + std::to_string(cols.size()) + " BORDER=1>\n<TR>";
    for (unsigned col : cols)
        out += "<TH>" + vxString::escape_markup(mModel->treeGridVirtualGetColHeaderLabel(col)) + "</TH>";
    out += "</TR>\n";
    for (unsigned row : rows) {
        out += "<TR>";
        for (unsigned col : cols)
            out += "<TD>" + vxString::escape_markup(mModel->treeGridVirtualGetValue(row, col)) + "</TD>";
        out += "</TR>\n";
    }
    out += "</TABLE>\n</BODY>\n</HTML>\n";
    return out;
}

}  // namespace vx3
