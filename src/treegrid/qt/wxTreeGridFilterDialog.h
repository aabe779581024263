// The filter dialog of a column: "Discrete filters" lists the column's distinct texts with a
// check box each and "All"; "Number filters" holds the bounds of the real and imaginary part.
// "Ok" applies both to the grid (and stays open with the reason when a bound is no number).
#pragma once

#include <QDialog>
#include <memory>

#include "treegrid/wxTreeGridFilterChoices.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTabWidget;

namespace vx3 {

class wxTreeGridImpl;

class wxTreeGridFilterDialog : public QDialog {
    Q_OBJECT
public:
    wxTreeGridFilterDialog(wxTreeGridImpl& grid, unsigned col, QWidget* parent = nullptr);
    ~wxTreeGridFilterDialog() override;

    // Ticks or clears the text; false when the list has no such text.
    bool setTextChecked(const QString& text, bool checked);
    void setAllChecked(bool checked);
    QListWidget* textList() const { return mList; }
    QCheckBox* allBox() const { return mAll; }
    QCheckBox* invertBox() const { return mInvert; }
    QLineEdit* boundEdit(int index) const { return mBounds[index]; }  // min real, max real, min imag, max imag
    QPushButton* okButton() const { return mOk; }
    QPushButton* cancelButton() const { return mCancel; }
    QTabWidget* tabs() const { return mTabs; }
    QString message() const;

private:
    void onOk();
    void onItemChanged();

    wxTreeGridImpl& mGrid;
    std::unique_ptr<wxTreeGridFilterChoices> mChoices;
    QTabWidget* mTabs = nullptr;
    QListWidget* mList = nullptr;
    QCheckBox* mAll = nullptr;
    QCheckBox* mInvert = nullptr;
    QLineEdit* mBounds[4] = {};
    QLabel* mMessage = nullptr;
    QPushButton* mOk = nullptr;
    QPushButton* mCancel = nullptr;
    bool mUpdating = false;
};

}  // namespace vx3
