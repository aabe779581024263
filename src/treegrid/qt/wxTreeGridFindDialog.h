// The find dialog of a grid: a text, case, whole words, regular expression, "Find from top", and
// buttons for the next and the previous match. It stays open beside the grid; each find moves
// the grid's current row to the cell found and frames it.
#pragma once

#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace vx3 {

class wxTreeGridImpl;

class wxTreeGridFindDialog : public QDialog {
    Q_OBJECT
public:
    explicit wxTreeGridFindDialog(wxTreeGridImpl& grid, QWidget* parent = nullptr);

    // Runs a find with the dialog's settings; false when nothing matched or the text is refused.
    bool findNext(bool backward);

    QLineEdit* textEdit() const { return mText; }
    QCheckBox* caseBox() const { return mCase; }
    QCheckBox* wholeWordBox() const { return mWholeWord; }
    QCheckBox* regexBox() const { return mRegex; }
    QCheckBox* fromTopBox() const { return mFromTop; }
    QPushButton* nextButton() const { return mNext; }
    QPushButton* previousButton() const { return mPrevious; }
    QString message() const;

private:
    wxTreeGridImpl& mGrid;
    QLineEdit* mText = nullptr;
    QCheckBox* mCase = nullptr;
    QCheckBox* mWholeWord = nullptr;
    QCheckBox* mRegex = nullptr;
    QCheckBox* mFromTop = nullptr;
    QPushButton* mNext = nullptr;
    QPushButton* mPrevious = nullptr;
    QPushButton* mClose = nullptr;
    QLabel* mMessage = nullptr;
};

}  // namespace vx3
