// The search row of the curve browser: a text, "Find Next", "Find Previous", "Plot All Search
// Results" and, behind a toggle, the options of the search. It only collects what the user asks;
// the browser widget walks the rows and answers with a message shown here.
#pragma once

#include <QWidget>

#include <functional>
#include <string>

#include "wxWaveExplorerBrowserRows.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace vx3 {

class cBrowserSearch : public QWidget {
    Q_OBJECT
public:
    enum request_type : int { find_next = 0, find_previous = 1, plot_all = 2 };
    explicit cBrowserSearch(QWidget* parent = nullptr);

    // Called with the request; the text and the options are read from the row.
    void setRequestHandler(std::function<void(int request)> handler) { mHandler = std::move(handler); }
    std::string getText() const;
    void setText(const std::string& text);
    cBrowserSearchOptions getOptions() const;
    bool getSelectedInstanceOnly() const;
    void setOptions(bool caseSensitive, bool wildcard, bool wrap, bool selectedOnly);
    void showMessage(const std::string& text);
    std::string getMessage() const;
    void setAdvancedOptionsVisible(bool visible);

private:
    std::function<void(int)> mHandler;
    QLineEdit* mText = nullptr;
    QLabel* mMessage = nullptr;
    QWidget* mAdvanced = nullptr;
    QCheckBox* mCase = nullptr;
    QCheckBox* mWildcard = nullptr;
    QCheckBox* mWrap = nullptr;
    QCheckBox* mSelected = nullptr;
};

}  // namespace vx3
