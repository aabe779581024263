// The column menu of wxTreeGridImpl with the dialogs it opens: filters, find and export.
#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>
#include <fstream>
#include <map>

#include "treegrid/qt/wxTreeGridFilterDialog.h"
#include "treegrid/qt/wxTreeGridFindDialog.h"
#include "treegrid/qt/wxTreeGridImpl.h"
#include "treegrid/wxTreeGridColMenu.h"

namespace vx3 {

using namespace treeGridColMenu;

void wxTreeGridImpl::handleColHeaderContextMenu(unsigned col, int x, int y)
{
    QMenu menu(this);
    std::map<std::string, QMenu*> subMenus;
    for (const cMenuItem& item : wxTreeGridColMenu::collectColMenuItems(*this, col)) {
        QMenu* target = &menu;
        if (!item.subMenu.empty()) {
            QMenu*& sub = subMenus[item.subMenu];
            if (!sub)
                sub = menu.addMenu(QString::fromStdString(item.subMenu));
            target = sub;
        }
        if (item.action == act_separator) {
            target->addSeparator();
            continue;
        }
        QAction* action = target->addAction(QString::fromStdString(item.label));
        action->setEnabled(item.enabled);
        action->setCheckable(item.checkable);
        action->setChecked(item.checked);
        const int id = item.action;
        connect(action, &QAction::triggered, this, [this, id, col] { executeColMenuAction(id, col); });
    }
    menu.exec(mapToGlobal(QPoint(x, y)));
}

void wxTreeGridImpl::viewChanged()
{
    const unsigned visible = getNumberOfVisibleRows();
    if (mCurrentLine != npos && mCurrentLine >= visible)
        mCurrentLine = visible ? visible - 1 : npos;
    if (mTopLine >= visible)
        mTopLine = visible ? visible - 1 : 0;
    mFoundEffectiveRow = mFoundEffectiveCol = npos;
    updateScrollBars();
    update();
}

void wxTreeGridImpl::executeColMenuAction(int action, unsigned col)
{
    if (col >= getNumberOfColumns())
        return;
    switch (action) {
    case act_define_filters: {
        std::unique_ptr<wxTreeGridFilterDialog> dialog(createFilterDialog(col));
        dialog->exec();
        return;
    }
    case act_find_text: showFindDialog(); return;
    case act_export_text:
    case act_export_html: {
        const bool html = action == act_export_html;
        const QString name = QFileDialog::getSaveFileName(this, "Export", QString(),
                                                          html ? "HTML (*.html *.htm)" : "Text (*.txt *.tsv)");
        if (name.isEmpty())
            return;
        std::string message;
        if (!exportToFile(name.toStdString(), html, message))
            QMessageBox::warning(this, "Export", QString::fromStdString(message));
        return;
    }
    case act_transpose: transposeGrid(); return;
    default: break;
    }
    const bool widths = action == act_remove || action == act_show_all;
    if (wxTreeGridColMenu::executeColMenuAction(*this, action, col)) {
        if (widths)
            updateHeaderAndColWidth();
        viewChanged();
    }
}

wxTreeGridFilterDialog* wxTreeGridImpl::createFilterDialog(unsigned col)
{
    return new wxTreeGridFilterDialog(*this, col, this);
}

wxTreeGridFindDialog* wxTreeGridImpl::showFindDialog()
{
    if (!mFindDialog)
        mFindDialog = new wxTreeGridFindDialog(*this, this);
    mFindDialog->show();
    mFindDialog->raise();
    return mFindDialog;
}

treeGridFinder::cFindResult wxTreeGridImpl::findText(const treeGridFinder::cFindOptions& options,
                                                     std::string& message)
{
    treeGridFinder::cFindResult result;
    if (!mFinder.setOptions(options, message))
        return result;
    // Go on from the last cell found while the current row is still on it; else from the
    // current row, or from the edge.
    unsigned row = npos, col = npos;
    if (mFoundEffectiveRow != npos && mCurrentLine != npos &&
        getEffectiveRowFromVisible(mCurrentLine) == mFoundEffectiveRow) {
        row = mFoundEffectiveRow;
        col = mFoundEffectiveCol;
    } else if (mCurrentLine != npos) {
        row = getEffectiveRowFromVisible(mCurrentLine);  // the current row's own cells first
    }
    result = mFinder.find(*this, row, col);
    if (!result.found) {
        message = "Text \"" + options.text + "\" not found.";
        return result;
    }
    mFoundEffectiveRow = result.effectiveRow;
    mFoundEffectiveCol = result.effectiveCol;
    clearRowSelection();
    clearCellSelection();
    selectRow(result.totalRow, true);
    selectCell(result.totalRow, result.col, true);
    ensureVisible(result.totalRow);
    message = result.wrapped ? "Passed the end of the table, continued from the other end." : "";
    update();
    return result;
}

bool wxTreeGridImpl::exportToFile(const std::string& fileName, bool html, std::string& message)
{
    std::ofstream out(fileName, std::ios::binary);
    if (!out) {
        message = "Failed to open file \"" + fileName + "\".";
        return false;
    }
    out << exportColumns(html);
    out.close();
    if (!out) {
        message = "Failed to export to file \"" + fileName + "\".";
        return false;
    }
    message = "Exported data to file \"" + fileName + "\".";
    return true;
}

}  // namespace vx3
