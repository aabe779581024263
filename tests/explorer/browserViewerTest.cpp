// The browser in the viewer: a CSV with 3,000 curves opened by command shows every curve (the old
// tree stopped at 2,000); the filter and setup pages, the search row and the data of a drag.
#include <QImage>
#include <QKeyEvent>
#include <QListWidget>
#include <QStatusBar>
#include <QMimeData>
#include <QTreeWidget>
#include <memory>
#include <sstream>

#include "explorer/wxWaveExplorerBrowserConfigureGrid.h"
#include "explorer/wxWaveExplorerBrowserFilterGrid.h"
#include "explorer/wxWaveExplorerBrowserSearchBar.h"
#include "explorer/wxWaveExplorerBrowserTreeGrid.h"
#include "explorer/wxWaveExplorerBrowserWidget.h"
#include "toolWindowsTestSupport.h"
#include "zelwave.h"

using namespace zwtest;

TEST_F(cViewerTest, BrowserShowsEveryCurveOfALargeFile)
{
    std::ostringstream csv;
    csv << "time";
    for (int i = 0; i < 3000; ++i)
        csv << ",c" << i;
    csv << "\n";
    for (int r = 0; r < 4; ++r) {
        csv << r;
        for (int i = 0; i < 3000; ++i)
            csv << "," << (r + i);
        csv << "\n";
    }
    // A long name, as simulators write them, widens the file and section levels.
    const std::string file = writeFile("a_rather_long_result_file_name_of_a_wide_simulation.csv", csv.str());
    auto* browser = mWindow->findChild<vx3::wxWaveExplorerBrowserTreeGrid*>("browser_treegrid");
    ASSERT_NE(browser, nullptr);
    EXPECT_EQ(execute("open_file \"" + file + "\""), vx_code_queued) << "the file loads in the background";
    ASSERT_TRUE(pumpUntil([browser] { return browser->rows().getNumberOfCurveRows() >= 3000; }))
        << browser->rows().getNumberOfCurveRows();
    const std::string dump = browser->rows().dumpRows();
    EXPECT_NE(dump.find(" | c2999 | "), std::string::npos);
    EXPECT_NE(dump.find(" | c0 | "), std::string::npos);

    // The status bar counts the selected curves as the keys select them.
    auto* status = mWindow->findChild<QStatusBar*>();
    ASSERT_NE(status, nullptr);
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    QApplication::sendEvent(browser, &down);
    EXPECT_EQ(status->currentMessage().toStdString(), "1 Curves Selected");
    QKeyEvent extend(QEvent::KeyPress, Qt::Key_Down, Qt::ShiftModifier);
    QApplication::sendEvent(browser, &extend);
    QApplication::sendEvent(browser, &extend);
    EXPECT_EQ(status->currentMessage().toStdString(), "3 Curves Selected");

    // A window of 1,100 pixels: the levels give up width and the curve names stay in view.
    mWindow->resize(1100, 700);
    mWindow->show();
    ASSERT_TRUE(pumpUntil([browser] { return browser->width() >= 300; })) << browser->width();
    const auto& columns = browser->rows().columns();
    int right = browser->getRowHeaderWidth();
    bool curveSeen = false;
    for (unsigned col = 0; col < columns.size() && !curveSeen; ++col) {
        right += browser->getColWidth(col);
        curveSeen = columns[col].kind == vx3::waveExplorerBrowser::kind_level &&
                    columns[col].priority == vx3::browserConfiguration::curve_name;
    }
    EXPECT_TRUE(curveSeen);
    EXPECT_LE(right, browser->width()) << "the curve column ends past the browser's edge";

    if (const char* out = std::getenv("ZW_BROWSER_PNG")) {
        mWindow->resize(1000, 600);
        QApplication::processEvents();
        mWindow->grab().toImage().save(out);
    }
}

namespace {
// Three runs of a step response as a simulator's text export writes them.
const char* const kSteps = "time\tV(out)\tx1.I(R1)\n"
                           "Step Information: R=1k C=1n (Run: 1/3)\n0\t0\t1\n1e-6\t0.5\t2\n"
                           "Step Information: R=2k C=1n (Run: 2/3)\n0\t0\t1\n1e-6\t0.4\t2\n"
                           "Step Information: R=4k C=2n (Run: 3/3)\n0\t0\t1\n1e-6\t0.3\t2\n";

QTreeWidgetItem* findItem(QTreeWidget* grid, const QString& text)
{
    const auto found = grid->findItems(text, Qt::MatchExactly | Qt::MatchRecursive);
    return found.isEmpty() ? nullptr : found.front();
}
}  // namespace

TEST_F(cViewerTest, FilterAndSetupPagesSearchRowAndDragData)
{
    auto* widget = mWindow->findChild<vx3::wxWaveExplorerBrowserWidget*>("browser_widget");
    ASSERT_NE(widget, nullptr);
    for (const char* name : {"browser_treegrid", "browser_filter", "browser_filter_grid", "browser_config",
                             "browser_config_grid", "browser_search"})
        EXPECT_NE(mWindow->findChild<QWidget*>(name), nullptr) << name;
    vx3::wxWaveExplorerBrowserRows& rows = widget->treeGrid().rows();
    EXPECT_EQ(execute("open_file \"" + writeFile("steps.txt", kSteps) + "\""), vx_code_queued);
    ASSERT_TRUE(pumpUntil([&rows] { return rows.getNumberOfCurveRows() == 6; })) << rows.dumpRows();

    // The filter page lists each run parameter with its values; unchecking one and applying hides
    // that run, cancel brings back what was not applied.
    widget->switchToPage(1);
    auto* filters = mWindow->findChild<vx3::wxWaveExplorerBrowserFilterGrid*>("browser_filter");
    ASSERT_NE(filters, nullptr);
    QTreeWidget* grid = filters->grid();
    ASSERT_NE(findItem(grid, "Run parameter \"R\""), nullptr);
    ASSERT_NE(findItem(grid, "Run parameter \"C\""), nullptr);
    ASSERT_NE(findItem(grid, "Maximum imaginary part"), nullptr);
    QTreeWidgetItem* run2000 = findItem(grid, "2000");
    ASSERT_NE(run2000, nullptr);
    run2000->setCheckState(0, Qt::Unchecked);
    filters->cancelChanges();
    EXPECT_EQ(findItem(grid, "2000")->checkState(0), Qt::Checked);
    findItem(grid, "2000")->setCheckState(0, Qt::Unchecked);
    ASSERT_TRUE(QMetaObject::invokeMethod(findButton(filters, "Apply Filter Rule Changes"), "click"));
    EXPECT_EQ(rows.getNumberOfCurveRows(), 4u);
    EXPECT_EQ(rows.dumpRows().find("2000,"), std::string::npos);
    EXPECT_EQ(findItem(grid, "2000")->checkState(0), Qt::Unchecked) << "the page shows the rule applied";

    // The setup page: "Curve name" moved to the top and applied.
    widget->switchToPage(2);
    auto* setup = mWindow->findChild<vx3::wxWaveExplorerBrowserConfigureGrid*>("browser_config");
    ASSERT_NE(setup, nullptr);
    QListWidget* order = setup->itemOrder();
    ASSERT_EQ(order->count(), 8);
    order->setCurrentRow(7);
    for (int i = 0; i < 7; ++i)
        setup->moveSelected(true);
    EXPECT_EQ(order->item(0)->text(), "Curve name");
    EXPECT_EQ(widget->configuration().getGroupPriority(0), vx3::browserConfiguration::file_name) << "not yet applied";
    setup->applyChanges();
    EXPECT_EQ(widget->configuration().getGroupPriority(0), vx3::browserConfiguration::curve_name);
    EXPECT_EQ(rows.dumpRow(0).substr(0, 12), " | V(out) | ") << "the instance level comes with the curve";
    ASSERT_TRUE(QMetaObject::invokeMethod(findButton(setup, "Reset Setup To Default"), "click"));
    setup->applyChanges();
    EXPECT_EQ(rows.dumpRow(0).substr(0, 12), "steps.txt | ");

    // The search row: a search shows its message in the row and moves the tree to the curve.
    widget->switchToPage(0);
    vx3::cBrowserSearch& search = widget->searchBar();
    search.setText("x1.i");
    search.setOptions(false, false, false, false);
    ASSERT_TRUE(QMetaObject::invokeMethod(findButton(&search, "Find Next"), "click"));
    EXPECT_EQ(search.getMessage(), "");
    const size_t first = widget->treeGrid().getCurrentRow();
    ASSERT_LT(first, rows.getNumberOfCurveRows());
    EXPECT_EQ(rows.getRow(first).fullName, "x1.I(R1)");
    ASSERT_TRUE(QMetaObject::invokeMethod(findButton(&search, "Find Next"), "click"));
    ASSERT_TRUE(QMetaObject::invokeMethod(findButton(&search, "Find Next"), "click"));
    EXPECT_EQ(search.getMessage(), "End of forward search reached.");

    // A drag of two curves carries the curve list in the system's formats and the calculator's text.
    std::unique_ptr<QMimeData> data(widget->createMimeData({0, first}));
    ASSERT_NE(data, nullptr);
    EXPECT_TRUE(data->hasFormat("harlanTessel/zelWave"));
    EXPECT_TRUE(data->hasFormat("harlanTessel/zelWaveXml"));
    const QString calculator = QString::fromUtf8(data->data("harlanTessel/zelWaveCalc"));
    EXPECT_TRUE(calculator.contains("waveform(\"")) << calculator.toStdString();
    EXPECT_TRUE(calculator.contains("x1.I(R1)")) << calculator.toStdString();

    if (const char* out = std::getenv("ZW_BROWSER_FILTER_PNG")) {
        search.setAdvancedOptionsVisible(true);
        mWindow->resize(1100, 650);
        QApplication::processEvents();
        mWindow->grab().toImage().save(out);
    }
}
