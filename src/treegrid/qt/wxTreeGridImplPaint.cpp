// The drawing of wxTreeGridImpl: the header, the row labels and the rows on screen. Only the
// lines between the top line and the bottom of the widget are asked for, so a paint costs the same
// at row 0 as at row 900,000.
#include <QFontMetrics>
#include <QPainter>
#include <QPolygon>

#include "treegrid/qt/wxTreeGridImpl.h"

namespace vx3 {

namespace {
constexpr int kExpanderBox = 9;
constexpr int kCellPadding = 4;

QColor toColour(unsigned rgb)
{
    return QColor(int((rgb >> 16) & 0xff), int((rgb >> 8) & 0xff), int(rgb & 0xff));
}
}  // namespace

void wxTreeGridImpl::onPaint(QPainter& painter)
{
    drawGrid(painter);
}

void wxTreeGridImpl::drawGrid(QPainter& painter)
{
    painter.save();
    painter.setFont(mFont);
    painter.fillRect(QRect(0, 0, width(), height()), toColour(mColours.background));
    drawRows(painter);
    drawHeader(painter);
    painter.restore();
}

void wxTreeGridImpl::drawTruncatedText(QPainter& painter, const QString& text, int x, int y, int width, int height,
                                       bool right)
{
    if (width <= 0)
        return;
    const QFontMetrics metrics(painter.font());
    const QString shown = metrics.horizontalAdvance(text) > width ? metrics.elidedText(text, Qt::ElideRight, width) : text;
    painter.drawText(QRect(x, y, width, height), Qt::AlignVCenter | (right ? Qt::AlignRight : Qt::AlignLeft), shown);
}

void wxTreeGridImpl::paintSortIndicator(QPainter& painter, int x, int y, int height, bool ascending)
{
    // A small triangle pointing up for ascending, down for descending.
    const int half = 4, mid = y + height / 2;
    QPolygon triangle;
    if (ascending)
        triangle << QPoint(x - half, mid + 2) << QPoint(x + half, mid + 2) << QPoint(x, mid - 3);
    else
        triangle << QPoint(x - half, mid - 2) << QPoint(x + half, mid - 2) << QPoint(x, mid + 3);
    painter.setPen(Qt::NoPen);
    painter.setBrush(toColour(mColours.headerText));
    painter.drawPolygon(triangle);
    painter.setBrush(Qt::NoBrush);
}

void wxTreeGridImpl::drawExpanderBitmap(QPainter& painter, int x, int y, bool expanded)
{
    painter.setPen(toColour(mColours.expanderBox));
    painter.setBrush(toColour(mColours.background));
    painter.drawRect(x, y, kExpanderBox - 1, kExpanderBox - 1);
    const int mid = kExpanderBox / 2;
    painter.drawLine(x + 2, y + mid, x + kExpanderBox - 3, y + mid);
    if (!expanded)
        painter.drawLine(x + mid, y + 2, x + mid, y + kExpanderBox - 3);
    painter.setBrush(Qt::NoBrush);
}

void wxTreeGridImpl::drawHeader(QPainter& painter)
{
    const auto& xs = computeEffectiveColXStartPositions();
    painter.fillRect(QRect(0, 0, width(), mHeaderHeight), toColour(mColours.header));
    painter.setClipRect(QRect(dataLeft(), 0, dataWidth(), mHeaderHeight));
    wxTreeGridVirtual& model = getModel();
    for (unsigned e = 0; e < getNumberOfColumns(); ++e) {
        const int left = dataLeft() + xs[e] - mLeftPixel, w = xs[e + 1] - xs[e];
        if (w == 0 || left > width() || left + w < dataLeft())
            continue;
        const unsigned col = getColFromEffectiveCol(e);
        const int order = getColSortOrder(col);
        const int indicator = order != treeGridGeometry::sort_none ? 14 : 0;
        QString label = QString::fromStdString(model.treeGridVirtualGetColHeaderLabel(col));
        if (checkColumnIsFiltered(col))
            label += " [filtered]";
        painter.setPen(toColour(mColours.headerText));
        drawTruncatedText(painter, label, left + kCellPadding, 0, w - 2 * kCellPadding - indicator, mHeaderHeight, false);
        if (indicator)
            paintSortIndicator(painter, left + w - kCellPadding - 5, 0, mHeaderHeight,
                               order == treeGridGeometry::sort_ascending);
        painter.setPen(toColour(mColours.gridLines));
        painter.drawLine(left + w - 1, 2, left + w - 1, mHeaderHeight - 3);
    }
    painter.setClipping(false);
    painter.setPen(toColour(mColours.gridLines));
    painter.drawLine(0, mHeaderHeight - 1, width(), mHeaderHeight - 1);
    // The corner above the row labels.
    painter.fillRect(QRect(0, 0, dataLeft(), mHeaderHeight - 1), toColour(mColours.header));
}

void wxTreeGridImpl::collectLineExpanders(unsigned effectiveRow, std::vector<unsigned>& starting,
                                          std::vector<bool>& showText)
{
    // A cell of an expander column shows its text where its run starts, that is where this
    // row's texts up to that column differ from the row above; inside a run it stays blank.
    const unsigned levels = getEffectiveColExpandersLevel();
    starting.assign(levels, npos);
    showText.assign(levels, true);
    if (effectiveRow > 0) {
        bool differs = false;
        for (unsigned level = 0; level < levels; ++level) {
            differs = differs || getExpanderText(effectiveRow, level) != getExpanderText(effectiveRow - 1, level);
            showText[level] = differs;
        }
    }
    for (unsigned level = 0; level < levels; ++level)
        starting[level] = findExpanderAt(effectiveRow, level);
}

void wxTreeGridImpl::drawRows(QPainter& painter)
{
    mRowsDrawn = 0;
    const auto& xs = computeEffectiveColXStartPositions();
    wxTreeGridVirtual& model = getModel();
    const unsigned visible = getNumberOfVisibleRows();
    const int rowHeight = getRowHeight();
    const unsigned lines = std::min(visible - std::min(visible, mTopLine), getPageLines() + 1);
    const bool tree = usesExpanders();
    const unsigned levels = tree ? getEffectiveColExpandersLevel() : 0;
    const int offset = model.treeGridVirtualGetRowHeaderLabelOffset();
    // The columns that reach the screen.
    unsigned firstCol = 0, endCol = getNumberOfColumns();
    while (firstCol < endCol && xs[firstCol + 1] <= mLeftPixel)
        ++firstCol;
    while (endCol > firstCol && xs[endCol - 1] >= mLeftPixel + dataWidth())
        --endCol;
    std::vector<unsigned> starting;
    std::vector<bool> showText;

    for (unsigned i = 0; i < lines; ++i) {
        const unsigned line = mTopLine + i;
        const unsigned effective = getEffectiveRowFromVisible(line);
        const unsigned total = getTotalRow(effective);
        ++mRowsDrawn;
        const int y = dataTop() + int(i) * rowHeight;
        const bool selected = checkRowIsSelected(total);
        const unsigned rowBackground = selected ? mColours.selection
                                                : (line % 2 ? mColours.alternateBackground : mColours.background);
        painter.fillRect(QRect(dataLeft(), y, dataWidth(), rowHeight), toColour(rowBackground));
        if (tree)
            collectLineExpanders(effective, starting, showText);
        // A closed expander on this line hides the deeper columns' texts of its run.
        unsigned closedLevel = npos;
        for (unsigned level = 0; level < levels && closedLevel == npos; ++level)
            if (starting[level] != npos && !getExpander(starting[level]).expanded)
                closedLevel = level;

        painter.setClipRect(QRect(dataLeft(), y, dataWidth(), rowHeight));
        for (unsigned e = firstCol; e < endCol; ++e) {
            const int left = dataLeft() + xs[e] - mLeftPixel, w = xs[e + 1] - xs[e];
            if (w == 0)
                continue;
            const unsigned col = getColFromEffectiveCol(e);
            unsigned foreground = selected ? mColours.selectionText : mColours.text;
            unsigned background = 0;
            if (!selected && model.treeGridVirtualGetCellColours(total, col, foreground, background))
                painter.fillRect(QRect(left, y, w, rowHeight), toColour(background));
            int textLeft = left + kCellPadding;
            QString text;
            if (e < levels) {
                if (closedLevel != npos && e > closedLevel) {
                    text.clear();  // collapsed: the run's deeper columns stay blank
                } else if (starting[e] != npos) {
                    const wxTreeGridExpander& ex = getExpander(starting[e]);
                    drawExpanderBitmap(painter, left + kCellPadding, y + (rowHeight - kExpanderBox) / 2, ex.expanded);
                    textLeft += kExpanderBox + kCellPadding;
                    text = QString::fromStdString(model.treeGridVirtualGetValue(total, col));
                    if (!ex.expanded)
                        text += QString(" (%1)").arg(ex.nbOfRows);  // how many rows it holds
                } else if (showText[e]) {
                    text = QString::fromStdString(model.treeGridVirtualGetValue(total, col));
                }
            } else if (closedLevel == npos) {
                text = QString::fromStdString(model.treeGridVirtualGetValue(total, col));
            }
            if (!text.isEmpty()) {
                painter.setPen(toColour(foreground));
                const bool number = model.treeGridVirtualGetColType(col) == treeGridVirtual::col_number;
                drawTruncatedText(painter, text, textLeft, y, left + w - kCellPadding - textLeft, rowHeight,
                                  number && e >= levels);
            }
            painter.setPen(toColour(mColours.gridLines));
            painter.drawLine(left + w - 1, y, left + w - 1, y + rowHeight - 1);
            if (checkCellIsSelected(total, col)) {  // the cell a find landed on
                painter.setPen(QPen(toColour(selected ? mColours.selectionText : mColours.selection), 2));
                painter.drawRect(QRect(left + 1, y + 1, w - 3, rowHeight - 3));
            }
        }
        painter.setPen(toColour(mColours.gridLines));
        painter.drawLine(dataLeft(), y + rowHeight - 1, dataLeft() + dataWidth(), y + rowHeight - 1);
        if (line == mCurrentLine && hasFocus()) {
            painter.setPen(QPen(toColour(mColours.text), 1, Qt::DotLine));
            painter.drawRect(dataLeft(), y, dataWidth() - 1, rowHeight - 2);
        }
        painter.setClipping(false);

        // Row label: the model's, else the row's number.
        painter.fillRect(QRect(0, y, dataLeft(), rowHeight), toColour(mColours.header));
        std::string label = model.treeGridVirtualGetRowHeaderLabel(total);
        if (label.empty())
            label = std::to_string(long(total) + offset);
        painter.setPen(toColour(mColours.headerText));
        drawTruncatedText(painter, QString::fromStdString(label), kCellPadding, y, dataLeft() - 2 * kCellPadding,
                          rowHeight, true);
    }
    painter.setPen(toColour(mColours.gridLines));
    painter.drawLine(dataLeft() - 1, dataTop(), dataLeft() - 1, height());
}

}  // namespace vx3
