#include "treegrid/qt/wxLogWidgetTreeGrid.h"

#include <QTime>

namespace vx3 {

using namespace logWidgetTreeGrid;

const char* logWidgetTreeGrid::severityName(unsigned severity)
{
    switch (severity) {
    case vxLogger::info: return "Info";
    case vxLogger::fatal_error: return "Fatal Error";
    case vxLogger::error: return "Error";
    case vxLogger::high_warning: return "High Warning";
    case vxLogger::warning: return "Warning";
    case vxLogger::debug: return "Debug";
    case vxLogger::nocl: return "Note";
    default: return "Unknown";
    }
}

bool logWidgetTreeGrid::severityColours(unsigned severity, unsigned& foreground, unsigned& background)
{
    switch (severity) {
    case vxLogger::fatal_error: foreground = 0xffffff; background = 0xb00020; return true;
    case vxLogger::error: foreground = 0x8a0010; background = 0xfde2e4; return true;
    case vxLogger::high_warning: foreground = 0x7a3a00; background = 0xffe0c2; return true;
    case vxLogger::warning: foreground = 0x6a5000; background = 0xfff6cc; return true;
    case vxLogger::debug: foreground = 0x808890; background = 0xffffff; return true;
    default: return false;
    }
}

wxLogWidgetTreeGrid::wxLogWidgetTreeGrid(QWidget* parent) : wxIncrementalTreeGrid<cLogEntry>(parent)
{
    // A long session's log would otherwise only grow; the oldest messages are the least wanted.
    setMaximumRows(200000);
    dataChanged(true, false);
}

void wxLogWidgetTreeGrid::loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text)
{
    appendItemFromThread({severity, QTime::currentTime().toString("hh:mm:ss.zzz").toStdString(), text});
}

void wxLogWidgetTreeGrid::addMessage(unsigned severity, const std::string& text, const std::string& time)
{
    appendItems({{severity, time, text}});
}

void wxLogWidgetTreeGrid::showOnlySeverities(const std::vector<unsigned>& severities)
{
    clearFilters(col_severity);
    for (unsigned severity : severities)
        addFilterRule(col_severity, severityName(severity));
    filterRulesChanged();
}

std::string wxLogWidgetTreeGrid::treeGridVirtualGetColHeaderLabel(unsigned col)
{
    switch (col) {
    case col_severity: return "Severity";
    case col_time: return "Time";
    case col_message: return "Message";
    default: return {};
    }
}

std::string wxLogWidgetTreeGrid::getItemText(const cLogEntry& item, unsigned col)
{
    switch (col) {
    case col_severity: return severityName(item.severity);
    case col_time: return item.time;
    case col_message: return item.text;
    default: return {};
    }
}

bool wxLogWidgetTreeGrid::treeGridVirtualGetCellColours(unsigned row, unsigned col, unsigned& foreground,
                                                        unsigned& background)
{
    return row < items.size() && severityColours(items[row].severity, foreground, background);
}

std::string wxLogWidgetTreeGrid::treeGridVirtualGetToolTip(unsigned row, unsigned col)
{
    return row < items.size() ? items[row].text : std::string();
}

bool wxLogWidgetTreeGrid::treeGridVirtualGetValueForColWidthComputation(unsigned col, std::string& text)
{
    if (col == col_severity)
        text = "High Warning";
    else if (col == col_time)
        text = "00:00:00.000";
    else
        return false;
    return true;
}

}  // namespace vx3
