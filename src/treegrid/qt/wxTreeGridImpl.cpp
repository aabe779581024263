#include "treegrid/qt/wxTreeGridImpl.h"

#include <QApplication>
#include <QFontMetrics>
#include <QLineEdit>
#include <QMenu>
#include <QResizeEvent>
#include <QScrollBar>
#include <algorithm>

namespace vx3 {

using namespace treeGridGeometry;

namespace {
constexpr int kExpanderBox = 9;       // side of the +/- box
constexpr int kCellPadding = 4;
constexpr int kBorderGrip = 4;        // pixels either side of a header border that resize
constexpr int kWheelLines = 3;
}  // namespace

wxTreeGridImpl::wxTreeGridImpl(wxTreeGridVirtual& model, QWidget* parent) : qtVxWidget(parent), wxTreeGridGeometry(model)
{
    mFont = font();
    mVScroll = new QScrollBar(Qt::Vertical, this);
    mHScroll = new QScrollBar(Qt::Horizontal, this);
    mVScroll->setFocusPolicy(Qt::NoFocus);
    mHScroll->setFocusPolicy(Qt::NoFocus);
    connect(mVScroll, &QScrollBar::valueChanged, this, [this](int value) {
        mTopLine = unsigned(std::max(value, 0));
        update();
    });
    connect(mHScroll, &QScrollBar::valueChanged, this, [this](int value) {
        mLeftPixel = std::max(value, 0);
        update();
    });
    setGridFont(mFont);
}

wxTreeGridImpl::~wxTreeGridImpl() = default;

void wxTreeGridImpl::create(bool scrollBars, int x, int y, int width, int height)
{
    mScrollBars = scrollBars;
    setGeometry(x, y, width, height);
    updateScrollBars();
}

void wxTreeGridImpl::setGridFont(const QFont& font)
{
    mFont = font;
    const QFontMetrics metrics(mFont);
    setRowHeight(metrics.height() + 6);
    mHeaderHeight = metrics.height() + 8;
    update();
}

void wxTreeGridImpl::setGridColours(const treeGridImpl::cGridColours& colours)
{
    mColours = colours;
    update();
}

void wxTreeGridImpl::dataChanged(bool rebuild, bool keepSelection)
{
    wxTreeGridGeometry::dataChanged(rebuild, keepSelection);
    const unsigned visible = getNumberOfVisibleRows();
    if (mCurrentLine != npos && mCurrentLine >= visible)
        mCurrentLine = visible ? visible - 1 : npos;
    if (rebuild)
        updateHeaderAndColWidth();
    updateScrollBars();
    update();
}

void wxTreeGridImpl::redraw(bool headers, bool data)
{
    updateScrollBars();
    update();
}

bool wxTreeGridImpl::sort()
{
    const bool ok = wxTreeGridGeometry::sort();
    updateScrollBars();
    update();
    return ok;
}

void wxTreeGridImpl::filterRulesChanged()
{
    wxTreeGridGeometry::filterRulesChanged();
    mCurrentLine = npos;
    updateScrollBars();
    update();
}

void wxTreeGridImpl::updateHeaderAndColWidth()
{
    if (getNumberOfColumns() > 0)
        updateColWidth(0, getNumberOfColumns() - 1);
    // The row header fits the largest row number.
    const QFontMetrics metrics(mFont);
    const std::string widest = std::to_string(getNumberOfTotalRows() + 1);
    mRowHeaderWidth = metrics.horizontalAdvance(QString::fromStdString(widest)) + 2 * kCellPadding + 4;
    updateScrollBars();
}

void wxTreeGridImpl::updateColWidth(unsigned firstCol, unsigned lastCol)
{
    wxTreeGridVirtual& model = getModel();
    const QFontMetrics metrics(mFont);
    const unsigned levels = usesExpanders() ? getEffectiveColExpandersLevel() : 0;
    const unsigned lines = std::min(getNumberOfVisibleRows(), mTopLine + getPageLines() + 1);
    for (unsigned col = firstCol; col <= lastCol && col < getNumberOfColumns(); ++col) {
        const int fixed = model.treeGridVirtualGetFixedColWidth(col);
        if (fixed > 0) {
            setColWidth(col, fixed);
            continue;
        }
        int width = metrics.horizontalAdvance(QString::fromStdString(model.treeGridVirtualGetColHeaderLabel(col))) + 20;
        std::string sample;
        if (model.treeGridVirtualGetValueForColWidthComputation(col, sample)) {
            width = std::max(width, metrics.horizontalAdvance(QString::fromStdString(sample)));
        } else {
            // Only the rows on screen: a million rows are not measured.
            for (unsigned line = mTopLine; line < lines; ++line) {
                const unsigned row = getTotalRow(getEffectiveRowFromVisible(line));
                width = std::max(width,
                                 metrics.horizontalAdvance(QString::fromStdString(model.treeGridVirtualGetValue(row, col))));
            }
        }
        if (getEffectiveColFromCol(col) < levels)
            width += kExpanderBox + 2 * kCellPadding + metrics.horizontalAdvance(" (0000)");
        setColWidth(col, width + 2 * kCellPadding);
    }
    model.treeGridVirtualColumnsWereResized();
    updateScrollBars();
}

int wxTreeGridImpl::dataWidth() const
{
    return std::max(0, width() - dataLeft() - (mScrollBars ? mVScroll->sizeHint().width() : 0));
}

int wxTreeGridImpl::dataHeight() const
{
    return std::max(0, height() - dataTop() - (mScrollBars ? mHScroll->sizeHint().height() : 0));
}

unsigned wxTreeGridImpl::getPageLines() const
{
    return unsigned(std::max(1, dataHeight() / std::max(1, getRowHeight())));
}

void wxTreeGridImpl::resizeEvent(QResizeEvent* event)
{
    qtVxWidget::resizeEvent(event);
    updateScrollBars();
}

void wxTreeGridImpl::updateScrollBars()
{
    const unsigned visible = getNumberOfVisibleRows();
    const unsigned page = getPageLines();
    const int maxTop = visible > page ? int(std::min<unsigned>(visible - page, unsigned(INT32_MAX))) : 0;
    mTopLine = std::min<unsigned>(mTopLine, unsigned(maxTop));
    const int maxLeft = std::max(0, getTotalColumnsWidth() - dataWidth());
    mLeftPixel = std::min(mLeftPixel, maxLeft);
    const QSignalBlocker blockV(mVScroll), blockH(mHScroll);
    mVScroll->setRange(0, maxTop);
    mVScroll->setPageStep(int(page));
    mVScroll->setValue(int(mTopLine));
    mHScroll->setRange(0, maxLeft);
    mHScroll->setPageStep(std::max(1, dataWidth()));
    mHScroll->setSingleStep(20);
    mHScroll->setValue(mLeftPixel);
    const int vw = mVScroll->sizeHint().width(), hh = mHScroll->sizeHint().height();
    mVScroll->setGeometry(width() - vw, 0, vw, std::max(0, height() - hh));
    mHScroll->setGeometry(0, height() - hh, std::max(0, width() - vw), hh);
    mVScroll->setVisible(mScrollBars);
    mHScroll->setVisible(mScrollBars);
}

void wxTreeGridImpl::scrollToVisibleRow(unsigned line)
{
    mTopLine = line;
    updateScrollBars();
    update();
}

void wxTreeGridImpl::setCurrentVisibleRow(unsigned line)
{
    const unsigned visible = getNumberOfVisibleRows();
    if (visible == 0) {
        mCurrentLine = npos;
        return;
    }
    mCurrentLine = std::min(line, visible - 1);
    const unsigned page = getPageLines();
    if (mCurrentLine < mTopLine)
        mTopLine = mCurrentLine;
    else if (mCurrentLine >= mTopLine + page)
        mTopLine = mCurrentLine - page + 1;
    updateScrollBars();
    update();
}

void wxTreeGridImpl::ensureVisible(unsigned totalRow)
{
    const unsigned effective = getEffectiveRow(totalRow);
    if (effective == npos)
        return;  // filtered or suppressed: nothing to show
    if (usesExpanders()) {
        // expandNoRefresh: open every closed expander above the row, then paint once.
        for (unsigned e = findDeepestExpanderContainingRow(effective); e != npos; e = getExpander(e).parent)
            if (!getExpander(e).expanded && getExpander(e).firstRow != effective)
                setExpanded(e, true);
    }
    setCurrentVisibleRow(getVisibleRowFromEffective(effective));
}

void wxTreeGridImpl::sortColumnFromHeaderClick(unsigned col, bool addToSortColumns)
{
    if (!getModel().treeGridVirtualCheckColCanBeSorted(col))
        return;
    // none -> ascending -> descending -> none; without Ctrl the column sorts alone.
    const int order = getColSortOrder(col);
    const int next = order == sort_none ? sort_ascending : order == sort_ascending ? sort_descending : sort_none;
    if (!addToSortColumns)
        clearSortOrders();
    setColSortOrder(col, next);
    sort();
}

void wxTreeGridImpl::transposeGrid()
{
    mCurrentLine = mAnchorLine = npos;
    mTopLine = 0;
    mLeftPixel = 0;
    transpose();
    updateHeaderAndColWidth();
    update();
}

// ---- Input

wxTreeGridImpl::cHit wxTreeGridImpl::hitTest(double x, double y)
{
    cHit hit;
    const auto& xs = computeEffectiveColXStartPositions();
    if (x >= dataLeft()) {
        const int gridX = int(x) - dataLeft() + mLeftPixel;
        for (unsigned e = 0; e < getNumberOfColumns(); ++e) {
            if (y < dataTop() && std::abs(gridX - xs[e + 1]) <= kBorderGrip && xs[e + 1] > xs[e]) {
                hit.area = cHit::area_header_border;
                hit.effectiveCol = e;
                return hit;
            }
            if (gridX >= xs[e] && gridX < xs[e + 1])
                hit.effectiveCol = e;
        }
    }
    if (y < dataTop()) {
        hit.area = hit.effectiveCol != npos ? cHit::area_header : cHit::area_none;
        return hit;
    }
    const unsigned line = mTopLine + unsigned((int(y) - dataTop()) / std::max(1, getRowHeight()));
    if (line >= getNumberOfVisibleRows())
        return hit;
    hit.visibleRow = line;
    if (x < dataLeft()) {
        hit.area = cHit::area_row_header;
        return hit;
    }
    if (hit.effectiveCol == npos)
        return hit;
    hit.area = cHit::area_cell;
    if (usesExpanders() && hit.effectiveCol < getEffectiveColExpandersLevel()) {
        const unsigned effective = getEffectiveRowFromVisible(line);
        if (findExpanderAt(effective, hit.effectiveCol) != npos) {
            const int boxLeft = xs[hit.effectiveCol] + kCellPadding;
            const int gridX = int(x) - dataLeft() + mLeftPixel;
            hit.onExpanderBox = gridX >= boxLeft - 2 && gridX <= boxLeft + kExpanderBox + 2;
        }
    }
    return hit;
}

void wxTreeGridImpl::processRowSelection(unsigned line, int modifiers)
{
    const unsigned total = getTotalRow(getEffectiveRowFromVisible(line));
    if (modifiers & Qt::ShiftModifier) {
        if (!(modifiers & Qt::ControlModifier))
            clearRowSelection();
        selectVisibleRowRange(mAnchorLine == npos ? line : mAnchorLine, line, true);
    } else if (modifiers & Qt::ControlModifier) {
        selectRow(total, !checkRowIsSelected(total));
        mAnchorLine = line;
    } else {
        clearRowSelection();
        selectRow(total, true);
        mAnchorLine = line;
    }
    mCurrentLine = line;
}

void wxTreeGridImpl::onMouseDown(double x, double y, int button, int modifiers)
{
    hideTextEditor(false);
    setFocus();
    const cHit hit = hitTest(x, y);
    if (button == button_right) {
        if (hit.area == cHit::area_header)
            handleColHeaderContextMenu(getColFromEffectiveCol(hit.effectiveCol), int(x), int(y));
        else if (hit.area == cHit::area_cell || hit.area == cHit::area_row_header)
            handleRowContextMenu(hit.visibleRow, int(x), int(y));
        return;
    }
    if (button != button_left)
        return;
    switch (hit.area) {
    case cHit::area_header_border:
        mResizingEffectiveCol = hit.effectiveCol;
        mResizeStartX = int(x);
        mResizeStartWidth = getColWidth(getColFromEffectiveCol(hit.effectiveCol));
        break;
    case cHit::area_header:
        sortColumnFromHeaderClick(getColFromEffectiveCol(hit.effectiveCol), modifiers & Qt::ControlModifier);
        break;
    case cHit::area_cell:
    case cHit::area_row_header: {
        const unsigned effective = getEffectiveRowFromVisible(hit.visibleRow);
        if (hit.onExpanderBox) {
            toggleExpanded(findExpanderAt(effective, hit.effectiveCol));
            updateScrollBars();
        } else {
            processRowSelection(hit.visibleRow, modifiers);
            if (hit.area == cHit::area_cell)
                getModel().treeGridVirtualElementClicked(getTotalRow(effective), getColFromEffectiveCol(hit.effectiveCol));
        }
        update();
        break;
    }
    default: break;
    }
}

void wxTreeGridImpl::onMouseUp(double, double, int button, int)
{
    if (button == button_left && mResizingEffectiveCol != npos) {
        mResizingEffectiveCol = npos;
        getModel().treeGridVirtualColumnsWereResizedByUser();
    }
}

void wxTreeGridImpl::onMouseMove(double x, double y, int buttons, int)
{
    if (mResizingEffectiveCol != npos && (buttons & button_left)) {
        setColWidth(getColFromEffectiveCol(mResizingEffectiveCol), mResizeStartWidth + int(x) - mResizeStartX);
        updateScrollBars();
        update();
        return;
    }
    setCursor(hitTest(x, y).area == cHit::area_header_border ? Qt::SplitHCursor : Qt::ArrowCursor);
}

void wxTreeGridImpl::onMouseDoubleClick(double x, double y, int button, int modifiers)
{
    const cHit hit = hitTest(x, y);
    if (button != button_left || hit.area != cHit::area_cell || hit.onExpanderBox)
        return;
    const unsigned effective = getEffectiveRowFromVisible(hit.visibleRow);
    const unsigned expander = usesExpanders() ? findExpanderAt(effective, hit.effectiveCol) : npos;
    if (expander != npos) {
        toggleExpanded(expander);
        updateScrollBars();
        update();
    } else if (getModel().treeGridVirtualIsEditable(getTotalRow(effective), getColFromEffectiveCol(hit.effectiveCol))) {
        editCell(hit.visibleRow, hit.effectiveCol);
    } else {
        getModel().treeGridVirtualElementActivated(getTotalRow(effective), getColFromEffectiveCol(hit.effectiveCol));
    }
}

void wxTreeGridImpl::onWheel(double, double, double steps, int modifiers)
{
    hideTextEditor(false);
    if (modifiers & Qt::ShiftModifier) {
        mLeftPixel = std::max(0, mLeftPixel - int(steps * 60));
    } else {
        const long top = long(mTopLine) - long(steps * kWheelLines);
        mTopLine = unsigned(std::max(0L, top));
    }
    updateScrollBars();
    update();
}

void wxTreeGridImpl::moveCurrentLine(long delta, int modifiers)
{
    const unsigned visible = getNumberOfVisibleRows();
    if (visible == 0)
        return;
    const long from = mCurrentLine == npos ? (delta > 0 ? -1 : long(visible)) : long(mCurrentLine);
    const unsigned line = unsigned(std::clamp(from + delta, 0L, long(visible) - 1));
    // Ctrl moves the current row only; Shift extends from the anchor; plain keys select.
    if (!(modifiers & Qt::ControlModifier) || (modifiers & Qt::ShiftModifier))
        processRowSelection(line, modifiers & ~int(Qt::ControlModifier));
    setCurrentVisibleRow(line);
}

bool wxTreeGridImpl::onKeyDown(int key, int modifiers, const QString& text)
{
    if (mEditor) {
        if (key == Qt::Key_Escape) {
            hideTextEditor(false);
            return true;
        }
        return false;
    }
    const long page = long(getPageLines());
    switch (key) {
    case Qt::Key_Down: moveCurrentLine(1, modifiers); return true;
    case Qt::Key_Up: moveCurrentLine(-1, modifiers); return true;
    case Qt::Key_PageDown: moveCurrentLine(page, modifiers); return true;
    case Qt::Key_PageUp: moveCurrentLine(-page, modifiers); return true;
    case Qt::Key_Home: moveCurrentLine(-long(getNumberOfVisibleRows()), modifiers); return true;
    case Qt::Key_End: moveCurrentLine(long(getNumberOfVisibleRows()), modifiers); return true;
    case Qt::Key_Space:
        if (mCurrentLine != npos && (modifiers & Qt::ControlModifier)) {
            processRowSelection(mCurrentLine, Qt::ControlModifier);
            update();
            return true;
        }
        return false;
    case Qt::Key_F:
        if (modifiers & Qt::ControlModifier) {
            showFindDialog();
            return true;
        }
        return false;
    case Qt::Key_A:
        if (modifiers & Qt::ControlModifier) {
            selectVisibleRowRange(0, getNumberOfVisibleRows() ? getNumberOfVisibleRows() - 1 : 0, true);
            update();
            return true;
        }
        return false;
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Plus:
    case Qt::Key_Minus: {
        if (mCurrentLine == npos || !usesExpanders())
            return false;
        const bool open = key == Qt::Key_Right || key == Qt::Key_Plus;
        const unsigned effective = getEffectiveRowFromVisible(mCurrentLine);
        // The deepest expander that starts on this line; Left on a closed or plain line goes to
        // the line of the enclosing expander, as a tree view does.
        unsigned target = npos;
        for (unsigned level = getEffectiveColExpandersLevel(); level-- > 0;)
            if ((target = findExpanderAt(effective, level)) != npos)
                break;
        if (open) {
            if (target != npos)
                setExpanded(target, true);
        } else if (target != npos && getExpander(target).expanded) {
            setExpanded(target, false);
        } else {
            unsigned parent = findDeepestExpanderContainingRow(effective);
            if (parent != npos && getExpander(parent).firstRow == effective)
                parent = getExpander(parent).parent;
            if (parent != npos)
                setCurrentVisibleRow(getVisibleRowFromEffective(getExpander(parent).firstRow));
        }
        updateScrollBars();
        update();
        return true;
    }
    case Qt::Key_F2:
        // Edits the first editable cell of the current row.
        for (unsigned e = 0; mCurrentLine != npos && e < getNumberOfColumns(); ++e)
            if (getModel().treeGridVirtualIsEditable(getTotalRow(getEffectiveRowFromVisible(mCurrentLine)),
                                                     getColFromEffectiveCol(e))) {
                editCell(mCurrentLine, e);
                return true;
            }
        return false;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (mCurrentLine != npos && getNumberOfColumns() > 0) {
            getModel().treeGridVirtualElementActivated(getTotalRow(getEffectiveRowFromVisible(mCurrentLine)),
                                                      getColFromEffectiveCol(0));
            return true;
        }
        return false;
    default: return false;
    }
}

void wxTreeGridImpl::editCell(unsigned visibleRow, unsigned effectiveCol)
{
    hideTextEditor(false);
    const unsigned row = getTotalRow(getEffectiveRowFromVisible(visibleRow));
    const unsigned col = getColFromEffectiveCol(effectiveCol);
    wxTreeGridVirtual& model = getModel();
    if (!model.treeGridVirtualIsEditable(row, col))
        return;
    if (model.treeGridVirtualGetCellDataType(row, col) == treeGridVirtual::col_boolean) {
        model.treeGridVirtualToggleBooleanValue(row, col);
        update();
        return;
    }
    setCurrentVisibleRow(visibleRow);
    const auto& xs = computeEffectiveColXStartPositions();
    mEditedRow = row;
    mEditedCol = col;
    mEditor = new QLineEdit(QString::fromStdString(model.treeGridVirtualGetValue(row, col)), this);
    mEditor->setGeometry(dataLeft() + xs[effectiveCol] - mLeftPixel,
                         dataTop() + int(visibleRow - mTopLine) * getRowHeight(), xs[effectiveCol + 1] - xs[effectiveCol],
                         getRowHeight());
    connect(mEditor, &QLineEdit::returnPressed, this, [this] { hideTextEditor(true); });
    mEditor->show();
    mEditor->setFocus();
    mEditor->selectAll();
}

void wxTreeGridImpl::hideTextEditor(bool commit)
{
    if (!mEditor)
        return;
    QLineEdit* editor = mEditor;
    mEditor = nullptr;
    if (commit)
        getModel().treeGridVirtualSetStringValue(mEditedRow, mEditedCol, editor->text().toStdString());
    editor->hide();
    editor->deleteLater();
    setFocus();
    update();
}

void wxTreeGridImpl::handleRowContextMenu(unsigned visibleRow, int x, int y)
{
    // A right click on a row outside the selection selects that row alone, as item views do.
    if (!checkRowIsSelected(getTotalRow(getEffectiveRowFromVisible(visibleRow))))
        processRowSelection(visibleRow, 0);
    update();
    QMenu menu(this);
    menu.addAction("Suppress Selected Rows", [this] {
        suppressSelectedRows();
        mCurrentLine = mAnchorLine = npos;
        redraw();
    });
    QAction* showAll = menu.addAction("Show All Suppressed Rows", [this] {
        showAllSuppressedRows();
        redraw();
    });
    showAll->setEnabled(getNumberOfRowsSuppressedByHand() > 0);
    menu.exec(mapToGlobal(QPoint(x, y)));
}

}  // namespace vx3
