// The tree grid widget: a header of column labels with sort indicators, a column of row labels,
// and the rows, of which only those on screen are asked for and painted. Expanders open and close
// by a click on their box or by the keyboard; rows are selected with Ctrl and Shift as in any
// Qt view. A concrete grid derives from this and from wxTreeGridVirtual and calls dataChanged
// once its contents are ready.
#pragma once

#include <QFont>
#include <string>

#include "treegrid/wxTreeGridFinder.h"
#include "treegrid/wxTreeGridGeometry.h"
#include "widgets/qtVxWidget.h"

class QLineEdit;
class QMenu;
class QScrollBar;

namespace vx3 {

class wxTreeGridFindDialog;
class wxTreeGridFilterDialog;

namespace treeGridImpl {
// 0xrrggbb colours of a grid.
struct cGridColours {
    unsigned background = 0xffffff;
    unsigned alternateBackground = 0xf4f6f8;
    unsigned text = 0x202020;
    unsigned gridLines = 0xd8dce0;
    unsigned header = 0xe8eaed;
    unsigned headerText = 0x202020;
    unsigned selection = 0x3874d8;
    unsigned selectionText = 0xffffff;
    unsigned expanderBox = 0x606060;
};
}  // namespace treeGridImpl

class wxTreeGridImpl : public qtVxWidget, public wxTreeGridGeometry {
    Q_OBJECT
public:
    wxTreeGridImpl(wxTreeGridVirtual& model, QWidget* parent = nullptr);
    ~wxTreeGridImpl() override;

    // Places the grid in its parent; scrollBars false hides both scroll bars (a grid inside a
    // dialog that is sized to its contents).
    void create(bool scrollBars, int x, int y, int width, int height);
    // The model changed: see wxTreeGridGeometry::dataChanged; the widths follow and it repaints.
    void dataChanged(bool rebuild, bool keepSelection);
    void redraw(bool headers = true, bool data = true);
    // Sorts by the columns' sort flags and repaints.
    bool sort();
    void setColLabelsAndType() { updateHeaderAndColWidth(); }
    // Measures the columns first to last (model columns, inclusive).
    void updateColWidth(unsigned firstCol, unsigned lastCol);
    void updateHeaderAndColWidth();
    bool addFilterRule(unsigned col, const std::string& text) { return wxTreeGridGeometry::addFilterRule(col, text); }
    void filterRulesChanged();

    void setGridColours(const treeGridImpl::cGridColours& colours);
    const treeGridImpl::cGridColours& getGridColours() const { return mColours; }
    void setGridFont(const QFont& font);

    // ---- View
    // Opens the expanders above the row and scrolls it on screen.
    void ensureVisible(unsigned totalRow);
    unsigned getTopVisibleRow() const { return mTopLine; }
    void scrollToVisibleRow(unsigned line);
    // The keyboard's current row (a visible line), npos when there is none.
    unsigned getCurrentVisibleRow() const { return mCurrentLine; }
    void setCurrentVisibleRow(unsigned line);
    int getHeaderHeight() const { return mHeaderHeight; }
    int getRowHeaderWidth() const { return mRowHeaderWidth; }
    // Lines that fit in the data area.
    unsigned getPageLines() const;

    // Draws the whole grid as it is on screen; used by paint events and to render off screen.
    void drawGrid(QPainter& painter);
    // Model rows whose values the last drawGrid asked for, a check that drawing stays local.
    unsigned getRowsDrawnByLastPaint() const { return mRowsDrawn; }

    // ---- Actions of the menus, also for the keyboard and tests
    void sortColumnFromHeaderClick(unsigned col, bool addToSortColumns);
    void transposeGrid();
    // Edits a cell the model calls editable: booleans toggle, other kinds open a line editor
    // whose text goes to treeGridVirtualSetStringValue on Return (Escape drops it).
    void editCell(unsigned visibleRow, unsigned effectiveCol);
    void hideTextEditor(bool commit);
    bool checkTextEditorIsShown() const { return mEditor != nullptr; }
    QLineEdit* getTextEditor() { return mEditor; }

    // ---- Column menu, filters, find and export
    // Runs an item of the column menu (treeGridColMenu::menu_action); dialogs open modal.
    void executeColMenuAction(int action, unsigned col);
    // The filter dialog of a column, not shown; the caller shows or executes it and deletes it.
    wxTreeGridFilterDialog* createFilterDialog(unsigned col);
    // The grid's find dialog, created on first use, shown and raised.
    wxTreeGridFindDialog* showFindDialog();
    // Finds from the last cell found (or the current row) and moves there: the row becomes the
    // current and only selected one, the cell is framed. message tells what happened.
    treeGridFinder::cFindResult findText(const treeGridFinder::cFindOptions& options, std::string& message);
    // Writes exportColumns to a file; false with the reason in message.
    bool exportToFile(const std::string& fileName, bool html, std::string& message);
    // After the rows or columns changed under the view (filters, moves): keeps the current row in
    // range, resizes the scroll bars, repaints.
    void viewChanged();

protected:
    void onPaint(QPainter& painter) override;
    void onMouseDown(double x, double y, int button, int modifiers) override;
    void onMouseUp(double x, double y, int button, int modifiers) override;
    void onMouseDoubleClick(double x, double y, int button, int modifiers) override;
    void onMouseMove(double x, double y, int buttons, int modifiers) override;
    void onWheel(double x, double y, double steps, int modifiers) override;
    bool onKeyDown(int key, int modifiers, const QString& text) override;
    void resizeEvent(QResizeEvent* event) override;

    // Column menus; a concrete grid adds its own items after these.
    virtual void handleColHeaderContextMenu(unsigned col, int x, int y);
    // Row menus: suppressing the selected rows and showing them again.
    virtual void handleRowContextMenu(unsigned visibleRow, int x, int y);

private:
    struct cHit {
        enum area_type { area_none, area_header, area_header_border, area_row_header, area_cell } area = area_none;
        unsigned visibleRow = npos;
        unsigned effectiveCol = npos;
        bool onExpanderBox = false;
    };
    cHit hitTest(double x, double y);
    void updateScrollBars();
    void drawHeader(QPainter& painter);
    void drawRows(QPainter& painter);
    void paintSortIndicator(QPainter& painter, int x, int y, int height, bool ascending);
    void drawExpanderBitmap(QPainter& painter, int x, int y, bool expanded);
    void drawTruncatedText(QPainter& painter, const QString& text, int x, int y, int width, int height, bool right);
    // Which cells of the expander columns show on a line (first of its run) and the expanders
    // that start there.
    void collectLineExpanders(unsigned effectiveRow, std::vector<unsigned>& startingExpanders,
                              std::vector<bool>& showText);
    void processRowSelection(unsigned visibleRow, int modifiers);
    void moveCurrentLine(long delta, int modifiers);
    int dataTop() const { return mHeaderHeight; }
    int dataLeft() const { return mRowHeaderWidth; }
    int dataWidth() const;
    int dataHeight() const;

    treeGridImpl::cGridColours mColours;
    QFont mFont;
    QScrollBar* mVScroll = nullptr;
    QScrollBar* mHScroll = nullptr;
    bool mScrollBars = true;
    int mHeaderHeight = 24;
    int mRowHeaderWidth = 48;
    unsigned mTopLine = 0;
    int mLeftPixel = 0;
    unsigned mCurrentLine = npos;
    unsigned mAnchorLine = npos;
    unsigned mRowsDrawn = 0;
    // Column resizing by dragging a header border.
    unsigned mResizingEffectiveCol = npos;
    QLineEdit* mEditor = nullptr;
    unsigned mEditedRow = npos;  // model row and column of the open editor
    unsigned mEditedCol = npos;
    wxTreeGridFindDialog* mFindDialog = nullptr;
    wxTreeGridFinder mFinder;
    unsigned mFoundEffectiveRow = npos;  // the last cell found, where the next find goes on
    unsigned mFoundEffectiveCol = npos;
    int mResizeStartX = 0;
    int mResizeStartWidth = 0;
};

}  // namespace vx3
