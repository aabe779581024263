// The log as a grid: one row per message with its severity, time of day and text, coloured by
// severity. It is a logger call-back, so a cVxLogger of any thread writes into it; messages reach
// the grid in batches on the main thread. Sorting, filters (say, errors only) and find are those
// of every grid.
#pragma once

#include <string>

#include "base/cVxLogger.h"
#include "treegrid/qt/wxIncrementalTreeGrid.h"

namespace vx3 {

namespace logWidgetTreeGrid {
struct cLogEntry {
    unsigned severity = vxLogger::info;
    std::string time;  // "hh:mm:ss.zzz"
    std::string text;
};
enum log_column : unsigned { col_severity = 0, col_time = 1, col_message = 2, nb_columns = 3 };
// "Info", "Error", ...: the name of a severity in the grid.
const char* severityName(unsigned severity);
// 0xrrggbb text and background of a severity's rows; false: the grid's own colours.
bool severityColours(unsigned severity, unsigned& foreground, unsigned& background);
}  // namespace logWidgetTreeGrid

class wxLogWidgetTreeGrid : public wxIncrementalTreeGrid<logWidgetTreeGrid::cLogEntry>, public cVxLoggerCallBack {
public:
    explicit wxLogWidgetTreeGrid(QWidget* parent = nullptr);

    // Any thread; the message shows after the main thread's next turn.
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override;
    // On the main thread, shown at once (tests, messages the window makes itself).
    void addMessage(unsigned severity, const std::string& text, const std::string& time);
    // Keeps only messages of these severities (the filter of the severity column); empty: all.
    void showOnlySeverities(const std::vector<unsigned>& severities);

    unsigned treeGridVirtualGetNumberOfColumns() override { return logWidgetTreeGrid::nb_columns; }
    std::string treeGridVirtualGetColHeaderLabel(unsigned col) override;
    bool treeGridVirtualGetDefaultExpanded(unsigned, unsigned) override { return true; }
    bool treeGridVirtualGetGridUsesExpanders() override { return false; }
    int treeGridVirtualGetColType(unsigned) override { return treeGridVirtual::col_string; }
    bool treeGridVirtualGetCellColours(unsigned row, unsigned col, unsigned& foreground, unsigned& background) override;
    std::string treeGridVirtualGetToolTip(unsigned row, unsigned col) override;
    // The widest severity and a time: those columns need no measuring of rows.
    bool treeGridVirtualGetValueForColWidthComputation(unsigned col, std::string& text) override;

protected:
    std::string getItemText(const logWidgetTreeGrid::cLogEntry& item, unsigned col) override;
};

}  // namespace vx3
