// A table page in the viewer: it opens as a tab of the notebook, answers its sweep column count,
// keeps its columns away from plot commands, closes like a plot and goes before the store does.
#include <QApplication>
#include <QImage>
#include <QTabWidget>
#include <cstdlib>

#include "toolWindowsTestSupport.h"
#include "treegrid/page/wxTreeGridTableWidgetImpl.h"
#include "treegrid/qt/wxTreeGridImpl.h"
#include "zelwave.h"

using namespace zwtest;

TEST_F(cViewerTest, TablePageIsATabOfTheNotebookAndClosesLikeAPlot)
{
    const std::string file = writeFile("ramp.csv", "t,u,w\n0,1,5\n1,2,4\n2,4,3\n3,8,2\n");
    EXPECT_EQ(execute("open_file \"" + file + "\""), vx_code_queued);
    ASSERT_TRUE(pumpUntil([this] { return ask("get_number_of_sections") == "1"; }));
    EXPECT_EQ(execute("add_plot tb table 1 1"), vx_code_ok);
    auto* table = mWindow->findChild<vx3::wxTreeGridTableWidgetImpl*>("page_tb");
    auto* tabs = mWindow->findChild<QTabWidget*>("plot_tabs");
    ASSERT_NE(tabs, nullptr);
    EXPECT_EQ(tabs->currentWidget(), table);
    EXPECT_EQ(tabs->tabText(tabs->currentIndex()), "tb");

    ASSERT_EQ(execute("add_curve_to_plot_by_name tb ramp.csv u 0"), vx_code_ok);
    ASSERT_EQ(execute("add_curve_to_plot_by_index tb ramp.csv 1 0"), vx_code_ok);
    ASSERT_EQ(execute("add_algebraic_curve_to_plot tb \"A+B\""), vx_code_ok);
    EXPECT_EQ(table->getGrid().getNumberOfColumns(), 4u);
    EXPECT_EQ(table->getData().treeGridVirtualGetValue(3, 3), "10");
    EXPECT_EQ(ask("spreadsheet_get_nb_sweep_variable_columns tb"), "1");
    // A table holds no plot: commands for the shown plot find none, and the name stays taken.
    EXPECT_EQ(execute("zoom_in"), vx_code_error);
    EXPECT_EQ(execute("add_plot tb analog"), vx_code_error);

    if (const char* out = std::getenv("ZW_TABLE_PNG")) {
        EXPECT_EQ(execute("spreadsheet_sort_column tb 2 down"), vx_code_ok);
        mWindow->resize(1000, 600);
        QApplication::processEvents();
        mWindow->grab().toImage().save(out);
    }

    EXPECT_EQ(execute("clear_plot tb"), vx_code_ok);
    EXPECT_EQ(table->getGrid().getNumberOfColumns(), 1u) << "x stays";
    EXPECT_EQ(execute("close_plot tb"), vx_code_ok);
    EXPECT_TRUE(pumpUntil([this] { return !mWindow->findChild<vx3::wxTreeGridTableWidgetImpl*>("page_tb"); }));
    EXPECT_EQ(execute("spreadsheet_get_nb_sweep_variable_columns tb"), vx_code_error);
    // A table left open when the window closes goes before the store (TearDown closes it).
    EXPECT_EQ(execute("add_plot t2 spreadsheet"), vx_code_ok);
    EXPECT_EQ(execute("add_curve_to_plot_by_name t2 ramp.csv w 0"), vx_code_ok);
}
