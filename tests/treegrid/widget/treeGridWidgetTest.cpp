// The grid widget offscreen: clicks on headers and expander boxes, the keyboard, what a paint
// asks of the model, and a picture of a tree with a sorted column.
#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QTest>
#include <gtest/gtest.h>

#include "../treeGridTestModel.h"
#include <QLineEdit>

#include "treegrid/qt/wxTreeGridImpl.h"
#include "treegrid/qt/wxTreeGridProperties.h"

using namespace vx3;
using zwtest::cTableModel;

namespace {

// Counts the values a paint asks for.
class cCountingModel : public cTableModel {
public:
    long valueCalls = 0;
    std::string treeGridVirtualGetValue(unsigned row, unsigned col) override
    {
        ++valueCalls;
        return cTableModel::treeGridVirtualGetValue(row, col);
    }
};

void fillLibrary(cTableModel& model)
{
    model.expanders = true;
    model.defaultExpanded = true;
    model.addTextColumn("File", {"amp.raw", "amp.raw", "amp.raw", "amp.raw", "amp.raw", "bias.csv", "bias.csv",
                                 "clock.vcd", "clock.vcd", "clock.vcd", "clock.vcd", "filter.tr0"});
    model.addTextColumn("Section", {"tran", "tran", "tran", "ac", "ac", "dc", "dc", "sim", "sim", "sim", "sim", "tran"});
    model.addTextColumn("Curve", {"v(out)", "v(in)", "i(vdd)", "v(out)", "v(in)", "v(bias)", "i(r1)", "clk", "rst",
                                  "data[7:0]", "valid", "v(lp)"});
    model.addNumberColumn("Points", {1201, 1201, 1201, 401, 401, 51, 51, 20000, 20000, 20000, 20000, 5000});
}

QImage render(wxTreeGridImpl& grid)
{
    QImage image(grid.size(), QImage::Format_RGB32);
    QPainter painter(&image);
    grid.drawGrid(painter);
    return image;
}

}  // namespace

TEST(TreeGridWidget, HeaderClicksSortExpanderBoxesAndPicture)
{
    cTableModel model;
    fillLibrary(model);
    wxTreeGridImpl grid(model);
    grid.create(true, 0, 0, 560, 330);
    grid.dataChanged(true, false);
    grid.show();
    ASSERT_EQ(grid.getNumberOfExpanders(), 5u);  // amp.raw with tran and ac, bias.csv, clock.vcd

    const auto& xs = grid.computeEffectiveColXStartPositions();
    const int headerY = grid.getHeaderHeight() / 2;
    // Two clicks on "File": ascending, then descending; the runs stay whole.
    const QPoint fileHeader(grid.getRowHeaderWidth() + xs[0] + 20, headerY);
    QTest::mouseClick(&grid, Qt::LeftButton, {}, fileHeader);
    EXPECT_EQ(grid.getColSortOrder(0), treeGridGeometry::sort_ascending);
    QTest::mouseClick(&grid, Qt::LeftButton, {}, fileHeader);
    EXPECT_EQ(grid.getColSortOrder(0), treeGridGeometry::sort_descending);
    EXPECT_EQ(grid.getEffectiveToTotalRows(), (std::vector<unsigned>{11, 7, 8, 9, 10, 5, 6, 0, 1, 2, 3, 4}));
    EXPECT_EQ(grid.getNumberOfExpanders(), 5u);

    // Ctrl adds "Points" as a second key, ascending.
    QTest::mouseClick(&grid, Qt::LeftButton, Qt::ControlModifier,
                      QPoint(grid.getRowHeaderWidth() + xs[3] + 20, headerY));
    EXPECT_EQ(grid.getColSortOrder(0), treeGridGeometry::sort_descending);
    EXPECT_EQ(grid.getColSortOrder(3), treeGridGeometry::sort_ascending);

    // The box of "clock.vcd" (line 1) closes its run of four.
    const int rowHeight = grid.getRowHeight();
    const QPoint clockBox(grid.getRowHeaderWidth() + xs[0] + 8, grid.getHeaderHeight() + rowHeight + rowHeight / 2);
    ASSERT_EQ(grid.getNumberOfVisibleRows(), 12u);
    QTest::mouseClick(&grid, Qt::LeftButton, {}, clockBox);
    EXPECT_EQ(grid.getNumberOfVisibleRows(), 9u);

    // Select the "ac" line of amp.raw so the picture shows a selection.
    grid.ensureVisible(3);
    EXPECT_EQ(grid.getCurrentVisibleRow(), grid.getVisibleRowFromEffective(grid.getEffectiveRow(3)));
    QTest::mouseClick(&grid, Qt::LeftButton, {},
                      QPoint(grid.getRowHeaderWidth() + xs[2] + 10,
                             grid.getHeaderHeight() + int(grid.getCurrentVisibleRow()) * rowHeight + rowHeight / 2));
    EXPECT_EQ(grid.getSelectedRows(), (std::vector<unsigned>{3}));

    const QImage image = render(grid);
    zwtest::cTempFolder folder;
    const auto png = folder.path() / "treegrid.png";
    ASSERT_TRUE(image.save(QString::fromStdString(png.string())));
    const QImage back(QString::fromStdString(png.string()));
    ASSERT_EQ(back.size(), QSize(560, 330));
    // The sort indicator of "File" is drawn in the header text colour at the column's right end.
    const int indicatorX = grid.getRowHeaderWidth() + xs[1] - 9;
    bool indicator = false;
    for (int y = headerY - 3; y <= headerY + 3; ++y)
        indicator = indicator || back.pixelColor(indicatorX, y) == QColor(0x20, 0x20, 0x20);
    EXPECT_TRUE(indicator);
    if (const char* keep = std::getenv("ZW_TREEGRID_PICTURE"))
        image.save(keep);
}

TEST(TreeGridWidget, KeyboardMovesSelectsAndFoldsAsATreeView)
{
    cTableModel model;
    fillLibrary(model);
    wxTreeGridImpl grid(model);
    grid.create(true, 0, 0, 500, 300);
    grid.dataChanged(true, false);
    grid.show();
    grid.setFocus();

    QTest::keyClick(&grid, Qt::Key_Down);
    QTest::keyClick(&grid, Qt::Key_Down);
    EXPECT_EQ(grid.getCurrentVisibleRow(), 1u);
    EXPECT_EQ(grid.getSelectedRows(), (std::vector<unsigned>{1}));
    QTest::keyClick(&grid, Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(&grid, Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(grid.getSelectedRows(), (std::vector<unsigned>{1, 2, 3}));
    // Ctrl moves without selecting; Ctrl+Space adds the current row.
    QTest::keyClick(&grid, Qt::Key_Down, Qt::ControlModifier);
    QTest::keyClick(&grid, Qt::Key_Down, Qt::ControlModifier);
    QTest::keyClick(&grid, Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(grid.getSelectedRows(), (std::vector<unsigned>{1, 2, 3, 5}));

    // Left on "bias.csv" (line 5, an open expander) closes it; Right opens it again.
    EXPECT_EQ(grid.getCurrentVisibleRow(), 5u);
    QTest::keyClick(&grid, Qt::Key_Left);
    EXPECT_EQ(grid.getNumberOfVisibleRows(), 11u);
    QTest::keyClick(&grid, Qt::Key_Right);
    EXPECT_EQ(grid.getNumberOfVisibleRows(), 12u);
    // Left on a plain row goes to the line of its expander.
    QTest::keyClick(&grid, Qt::Key_Down);
    QTest::keyClick(&grid, Qt::Key_Left);
    EXPECT_EQ(grid.getCurrentVisibleRow(), 5u);

    QTest::keyClick(&grid, Qt::Key_End);
    EXPECT_EQ(grid.getCurrentVisibleRow(), 11u);
    QTest::keyClick(&grid, Qt::Key_Home);
    EXPECT_EQ(grid.getCurrentVisibleRow(), 0u);
    QTest::keyClick(&grid, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(grid.getNumberOfSelectedRows(), 12u);
}

TEST(TreeGridWidget, PaintAsksOnlyForTheLinesOnScreenWhereverTheyAre)
{
    cCountingModel model;
    const unsigned rows = 1000000;
    std::vector<std::string> names(rows);
    std::vector<double> values(rows);
    for (unsigned r = 0; r < rows; ++r) {
        names[r] = "n" + std::to_string(r % 1000);
        values[r] = double((r * 7919u) % 100003u);
    }
    model.addTextColumn("name", std::move(names));
    model.addNumberColumn("value", std::move(values));
    wxTreeGridImpl grid(model);
    grid.create(true, 0, 0, 400, 300);
    grid.dataChanged(true, false);

    auto callsForPaintAt = [&](unsigned line) {
        grid.scrollToVisibleRow(line);
        model.valueCalls = 0;
        render(grid);
        return model.valueCalls;
    };
    const long atTop = callsForPaintAt(0);
    const long deep = callsForPaintAt(900000);
    EXPECT_EQ(grid.getTopVisibleRow(), 900000u);
    EXPECT_GT(atTop, 0);
    EXPECT_EQ(deep, atTop);
    EXPECT_EQ(grid.getRowsDrawnByLastPaint(), grid.getPageLines() + 1);
    EXPECT_LE(deep, long(2 * (grid.getPageLines() + 1)));

    // Sorted descending by value, the top line holds the largest value.
    grid.setColSortOrder(1, treeGridGeometry::sort_descending);
    ASSERT_TRUE(grid.sort());
    EXPECT_EQ(model.treeGridVirtualGetDoubleValue(grid.getTotalRow(0), 1), 100002.0);
}

TEST(TreeGridWidget, PropertySheetEditsInPlace)
{
    bool grid = false;
    double gain = 1.0;
    std::string name = "v(out)";
    wxTreeGridProperties sheet;
    sheet.setCurrentGroup("Plot");
    sheet.addRefBoolProperty("Grid", grid);
    sheet.addRefProperty("Gain", gain);
    sheet.setCurrentGroup("Curve");
    sheet.addRefProperty("Name", name);
    sheet.addPropertyWithExpander("Curve", "Points", "1201");
    sheet.propertiesChanged();
    sheet.create(true, 0, 0, 400, 200);
    sheet.show();
    // Each group of two is an expander, open at first.
    EXPECT_TRUE(sheet.canBeCollapsed(0));
    EXPECT_FALSE(sheet.canBeExpanded(1));
    sheet.setExpanded(1, false);
    EXPECT_TRUE(sheet.canBeExpanded(3));

    const auto& xs = sheet.computeEffectiveColXStartPositions();
    auto valueCell = [&](unsigned line) {
        return QPoint(sheet.getRowHeaderWidth() + xs[2] + 10,
                      sheet.getHeaderHeight() + int(line) * sheet.getRowHeight() + sheet.getRowHeight() / 2);
    };
    // A double click on a boolean toggles it; on a number it opens an editor.
    QTest::mouseDClick(&sheet, Qt::LeftButton, {}, valueCell(0));
    EXPECT_TRUE(grid);
    QTest::mouseDClick(&sheet, Qt::LeftButton, {}, valueCell(1));
    ASSERT_TRUE(sheet.checkTextEditorIsShown());
    sheet.getTextEditor()->setText("3.25");
    QTest::keyClick(sheet.getTextEditor(), Qt::Key_Return);
    EXPECT_FALSE(sheet.checkTextEditorIsShown());
    EXPECT_DOUBLE_EQ(gain, 3.25);
    // Bad text is refused and Escape drops an edit: the variable stays.
    QTest::mouseDClick(&sheet, Qt::LeftButton, {}, valueCell(1));
    ASSERT_TRUE(sheet.checkTextEditorIsShown());
    sheet.getTextEditor()->setText("loud");
    QTest::keyClick(sheet.getTextEditor(), Qt::Key_Return);
    EXPECT_DOUBLE_EQ(gain, 3.25);
    QTest::mouseDClick(&sheet, Qt::LeftButton, {}, valueCell(1));
    sheet.getTextEditor()->setText("9");
    QTest::keyClick(sheet.getTextEditor(), Qt::Key_Escape);
    EXPECT_FALSE(sheet.checkTextEditorIsShown());
    EXPECT_DOUBLE_EQ(gain, 3.25);
}
