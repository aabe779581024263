// The export of wxTreeGridData: x and chosen columns as CSV, tab-separated text or an HTML table.
#include <fstream>

#include "base/cVxString.h"
#include "treegrid/data/wxTreeGridData.h"

namespace vx3 {

namespace {

std::string csvField(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (char c : text)
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + '"';
}


std::string replaceName(std::string message, const std::string& name)
{
    const size_t at = message.find("%%");
    return at == std::string::npos ? message : message.replace(at, 2, name);
}

}  // namespace

bool wxTreeGridData::checkSelectionForExport(const std::vector<unsigned>& curveColumns)
{
    if (!curveColumns.empty() && getNbOfCurveColumns())
        return true;
    mLogger.errorMsg("No curves selected in table.");
    return false;
}

std::string wxTreeGridData::exportToString(int format, const std::vector<unsigned>& curveColumns) const
{
    // Grid columns: x first, then the chosen curves.
    std::vector<unsigned> cols{0};
    if (curveColumns.empty()) {
        for (unsigned c = 0; c < getNbOfCurveColumns(); ++c)
            cols.push_back(c + 1);
    } else {
        for (unsigned c : curveColumns)
            if (c < getNbOfCurveColumns())
                cols.push_back(c + 1);
    }
    return exportGridColumnsToString(format, cols, {});
}

std::string wxTreeGridData::exportGridColumnsToString(int format, const std::vector<unsigned>& gridColumns,
                                                      const std::vector<unsigned>& rows) const
{
    std::vector<unsigned> cols;
    for (unsigned col : gridColumns)
        if (col <= getNbOfCurveColumns())
            cols.push_back(col);
    std::vector<unsigned> order;
    for (unsigned row : rows)
        if (row < mRowXs.size())
            order.push_back(row);
    if (rows.empty())
        for (unsigned row = 0; row < mRowXs.size(); ++row)
            order.push_back(row);
    auto& self = const_cast<wxTreeGridData&>(*this);  // the grid callbacks are not const
    std::string out;
    if (format == treeGridData::export_html) {
        out += "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 3.2//EN\">\n<HTML>\n<HEAD>\n";
        out += "<META NAME=\"GENERATOR\" CONTENT=\"Harlan Tessel ZelkoraWave\">\n";
        out += "<TITLE>Table</TITLE>\n</HEAD>\n<BODY>\n";
        out += "<TABLE COLS=" + std::to_string(cols.size()) + " BORDER=1>\n<TR>";
        for (unsigned col : cols)
            out += "<TH>" + vxString::escape_markup(self.treeGridVirtualGetColHeaderLabel(col)) + "</TH>";
        out += "</TR>\n";
        for (unsigned row : order) {
            out += "<TR>";
            for (unsigned col : cols)
                out += "<TD>" + vxString::escape_markup(cellText(row, col)) + "</TD>";
            out += "</TR>\n";
        }
        out += "</TABLE>\n</BODY>\n</HTML>\n";
        return out;
    }
    const bool csv = format == treeGridData::export_csv;
    const char separator = csv ? ',' : '\t';
    // Headers carry the curves' names without the column letters, so that the file reads back
    // with the names it came with.
    for (size_t i = 0; i < cols.size(); ++i) {
        const std::string name = cols[i] ? getCurveColumn(cols[i] - 1).name : mXName;
        out += (i ? std::string(1, separator) : std::string()) + (csv ? csvField(name) : name);
    }
    out += '\n';
    for (unsigned row : order) {
        for (size_t i = 0; i < cols.size(); ++i) {
            const std::string text = cellText(row, cols[i]);
            out += (i ? std::string(1, separator) : std::string()) + (csv ? csvField(text) : text);
        }
        out += '\n';
    }
    return out;
}

bool wxTreeGridData::exportFromDialog(const std::string& fileName, int format,
                                      const std::vector<unsigned>& curveColumns)
{
    // x first, then the curves in the order asked for (all when none is named).
    std::vector<unsigned> cols{0};
    for (unsigned c = 0; c < getNbOfCurveColumns(); ++c)
        cols.push_back(c + 1);
    if (!curveColumns.empty()) {
        cols.assign(1, 0);
        for (unsigned c : curveColumns)
            cols.push_back(c + 1);
    }
    return exportGridColumns(fileName, format, cols, {});
}

bool wxTreeGridData::exportGridColumns(const std::string& fileName, int format,
                                       const std::vector<unsigned>& gridColumns, const std::vector<unsigned>& rows)
{
    if (!getNbOfCurveColumns()) {
        mLogger.errorMsg("No curves selected in table.");
        return false;
    }
    std::ofstream file(fileName, std::ios::binary | std::ios::trunc);
    if (!file) {
        mLogger.errorMsg(replaceName("Failed to open file \"%%\".", fileName));
        return false;
    }
    file << exportGridColumnsToString(format, gridColumns, rows);
    file.close();
    if (!file) {
        mLogger.errorMsg(replaceName("Failed to export to file \"%%\".", fileName));
        return false;
    }
    mLogger.infoMsg(replaceName("Exported data to file \"%%\".", fileName));
    return true;
}

}  // namespace vx3
