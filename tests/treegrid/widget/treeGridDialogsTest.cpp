// The filter and find dialogs driving a real grid offscreen, with the rows checked against Python's
// sorted/filter and re on the same table; the log grid fed from a thread, and the paint of a grid
// that grows by appends. Pictures go to $ZW_TEST_PICTURES when it is set.
#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QImage>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>
#include <thread>

#include "../treeGridOracle.h"
#include "treegrid/qt/wxLogWidgetTreeGrid.h"
#include "treegrid/qt/wxTreeGridFilterDialog.h"
#include "treegrid/qt/wxTreeGridFindDialog.h"
#include "treegrid/qt/wxTreeGridImpl.h"
#include "treegrid/wxTreeGridColMenu.h"

using namespace vx3;
using zwtest::cTableModel;

namespace {

QImage render(QWidget& widget, wxTreeGridImpl* grid = nullptr)
{
    QImage image(widget.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    if (grid) {
        QPainter painter(&image);
        grid->drawGrid(painter);
    } else {
        widget.render(&image);
    }
    return image;
}

void savePicture(const QImage& image, const char* name)
{
    const QByteArray folder = qgetenv("ZW_TEST_PICTURES");
    if (!folder.isEmpty())
        image.save(QString::fromUtf8(folder) + "/" + name);
}

// Runs the event loop until the condition holds; a generous deadline only guards a hang.
template <typename F>
bool waitFor(F condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition() && timer.elapsed() < 60000)
        QApplication::processEvents(QEventLoop::AllEvents, 50);
    return condition();
}

class cCountingLog : public wxLogWidgetTreeGrid {
public:
    long textCalls = 0;

protected:
    std::string getItemText(const logWidgetTreeGrid::cLogEntry& item, unsigned col) override
    {
        ++textCalls;
        return wxLogWidgetTreeGrid::getItemText(item, col);
    }
};

}  // namespace

TEST(TreeGridDialogs, FilterDialogOnTheWidgetMatchesPythonFilter)
{
    cTableModel model;
    zwtest::fillRandomTable(model, 4000, 99);
    wxTreeGridImpl grid(model);
    grid.create(true, 0, 0, 600, 400);
    grid.dataChanged(true, false);
    grid.show();
    grid.executeColMenuAction(treeGridColMenu::act_sort_ascending, 1);

    // Column A: "All" off by a click, then a handful of texts ticked, among them the empty one.
    std::unique_ptr<wxTreeGridFilterDialog> texts(grid.createFilterDialog(0));
    texts->show();
    EXPECT_EQ(texts->windowTitle(), "Filters for Column A");
    EXPECT_TRUE(texts->allBox()->isChecked());
    QTest::mouseClick(texts->allBox(), Qt::LeftButton, {}, QPoint(6, texts->allBox()->height() / 2));
    ASSERT_FALSE(texts->allBox()->isChecked());
    const std::vector<std::string> kept = {"", "a", "A", "Bb", "_", "c\xc3\xa9", "ZZ"};
    for (const auto& text : kept)
        EXPECT_TRUE(texts->setTextChecked(QString::fromStdString(text), true)) << text;
    QTest::mouseClick(texts->okButton(), Qt::LeftButton);
    EXPECT_EQ(texts->result(), QDialog::Accepted) << texts->message().toStdString();

    // Column B: the interval typed into the number page.
    std::unique_ptr<wxTreeGridFilterDialog> numbers(grid.createFilterDialog(1));
    numbers->show();
    numbers->tabs()->setCurrentIndex(1);
    QTest::keyClicks(numbers->boundEdit(0), "-10");
    QTest::keyClicks(numbers->boundEdit(1), "2.5e2");
    QTest::mouseClick(numbers->okButton(), Qt::LeftButton);
    EXPECT_EQ(numbers->result(), QDialog::Accepted) << numbers->message().toStdString();

    std::string discrete;
    for (const auto& text : kept)
        discrete += (discrete.empty() ? "" : ",") + zwtest::jsonString(text);
    const std::vector<zwtest::cJob> jobs = {
        {{{1, true}}, "\"discrete\":{\"0\":[" + discrete + "]},\"numeric\":{\"1\":[-10,250]}"},
        {{{1, true}}, ""},
    };
    zwtest::cTempFolder folder;
    const auto expected = zwtest::runOracle(model, jobs, folder);
    ASSERT_EQ(expected.size(), 2u);
    ASSERT_GT(expected[0].size(), 20u);  // the filter leaves enough rows to say something
    EXPECT_EQ(grid.getEffectiveToTotalRows(), expected[0]);

    // A bound that is no number: the dialog stays with the reason and the rows stay as they are.
    std::unique_ptr<wxTreeGridFilterDialog> bad(grid.createFilterDialog(1));
    bad->show();
    EXPECT_EQ(bad->boundEdit(0)->text(), "-10");  // the dialog shows what is set
    bad->boundEdit(1)->setText("lots");
    QTest::mouseClick(bad->okButton(), Qt::LeftButton);
    EXPECT_NE(bad->result(), QDialog::Accepted);
    EXPECT_TRUE(bad->isVisible());
    EXPECT_EQ(bad->message(), "Maximum real part : \"lots\" is not a number.");
    EXPECT_EQ(grid.getEffectiveToTotalRows(), expected[0]);

    grid.executeColMenuAction(treeGridColMenu::act_all_filters, 0);
    EXPECT_EQ(grid.getEffectiveToTotalRows(), expected[1]);
}

TEST(TreeGridDialogs, FindDialogWalksTheMatchesOfPythonRe)
{
    cTableModel model;
    std::mt19937 rng(5);
    const std::vector<std::string> words = {"vout", "VOUT", "v(out)", "out", "outer", "net_out", "clk", "Out.2", ""};
    std::uniform_int_distribution<size_t> pick(0, words.size() - 1);
    std::vector<std::string> a, b;
    for (int r = 0; r < 500; ++r) {
        a.push_back(words[pick(rng)]);
        b.push_back(words[pick(rng)] + " " + words[pick(rng)]);
    }
    model.addTextColumn("Net", a);
    model.addTextColumn("Probe", b);
    wxTreeGridImpl grid(model);
    grid.create(true, 0, 0, 500, 300);
    grid.dataChanged(true, false);
    grid.show();

    zwtest::cTempFolder folder;
    const auto expected = zwtest::runFindOracle(model, {{"out", false, false, true}, {"^v.*t\\)?$", true, true, false}},
                                                folder);
    ASSERT_EQ(expected.size(), 2u);
    ASSERT_GT(expected[0].size(), 12u);

    wxTreeGridFindDialog* dialog = grid.showFindDialog();
    ASSERT_TRUE(dialog->isVisible());
    QTest::keyClicks(dialog->textEdit(), "out");
    dialog->wholeWordBox()->setChecked(true);
    auto foundCell = [&grid]() {
        const auto rows = grid.getSelectedRows();
        if (rows.size() != 1)
            return std::make_pair(~0u, ~0u);
        for (unsigned c = 0; c < grid.getNumberOfColumns(); ++c)
            if (grid.checkCellIsSelected(rows[0], c))
                return std::make_pair(rows[0], c);
        return std::make_pair(rows[0], ~0u);
    };
    for (size_t i = 0; i < 10; ++i) {
        QTest::mouseClick(dialog->nextButton(), Qt::LeftButton);
        EXPECT_EQ(foundCell(), expected[0][i]) << "match " << i;
        EXPECT_EQ(grid.getCurrentVisibleRow(), expected[0][i].first);
    }
    for (size_t i = 9; i-- > 0;) {
        QTest::mouseClick(dialog->previousButton(), Qt::LeftButton);
        EXPECT_EQ(foundCell(), expected[0][i]) << "back to match " << i;
    }
    // Backward from the first match comes round to the last one.
    QTest::mouseClick(dialog->previousButton(), Qt::LeftButton);
    EXPECT_EQ(foundCell(), expected[0].back());
    EXPECT_FALSE(dialog->message().isEmpty());

    dialog->textEdit()->setText("^v.*t\\)?$");
    dialog->regexBox()->setChecked(true);
    dialog->caseBox()->setChecked(true);
    dialog->wholeWordBox()->setChecked(false);
    dialog->fromTopBox()->setChecked(true);
    QTest::mouseClick(dialog->nextButton(), Qt::LeftButton);
    EXPECT_EQ(foundCell(), expected[1].front());
    EXPECT_FALSE(dialog->fromTopBox()->isChecked());
    QTest::mouseClick(dialog->nextButton(), Qt::LeftButton);
    EXPECT_EQ(foundCell(), expected[1][1]);

    dialog->textEdit()->setText("v(");
    QTest::mouseClick(dialog->nextButton(), Qt::LeftButton);
    EXPECT_TRUE(dialog->message().startsWith("Invalid regular expression")) << dialog->message().toStdString();
    dialog->textEdit()->setText("nowhere");
    QTest::mouseClick(dialog->nextButton(), Qt::LeftButton);
    EXPECT_EQ(dialog->message(), "Text \"nowhere\" not found.");
}

TEST(TreeGridIncremental, AppendsKeepThePaintFlatAndFollowTheEnd)
{
    cCountingLog log;
    log.create(true, 0, 0, 700, 320);
    log.show();
    log.addMessage(vxLogger::info, "Loaded configuration from /home/user/.config/conf.db.", "09:14:02.118");
    log.addMessage(vxLogger::warning, "Could not load configuration at /tmp/x/conf.db.", "09:14:02.120");
    log.addMessage(vxLogger::error, "Failed to open file \"missing.raw\".", "09:14:05.531");
    log.addMessage(vxLogger::high_warning, "Only a part of the curves were plotted.", "09:14:06.002");
    log.addMessage(vxLogger::fatal_error, "EXCEPTION : cCurvePlotParser::parse", "09:14:07.444");
    log.addMessage(vxLogger::debug, "tree grid sort high : failed.", "09:14:08.010");
    for (int i = 0; i < 40; ++i)
        log.addMessage(vxLogger::nocl, "Read section tran " + std::to_string(i) + " of amp.raw", "09:15:00.000");
    log.scrollToVisibleRow(0);
    savePicture(render(log, &log), "log_grid.png");

    render(log, &log);
    const long smallCalls = log.textCalls;
    const unsigned smallRows = log.getRowsDrawnByLastPaint();
    ASSERT_GT(smallRows, 5u);

    // A reader looking at the top stays there; at the end the view follows the new rows.
    log.appendItems({{vxLogger::info, "09:16:00.000", "one more"}});
    EXPECT_EQ(log.getTopVisibleRow(), 0u);
    log.scrollToVisibleRow(log.getNumberOfVisibleRows());
    std::vector<logWidgetTreeGrid::cLogEntry> many;
    for (int i = 0; i < 150000; ++i)
        many.push_back({vxLogger::info, "10:00:00.000", "line " + std::to_string(i)});
    log.appendItems(std::move(many));
    EXPECT_GE(log.getTopVisibleRow() + log.getPageLines(), log.getNumberOfVisibleRows());
    EXPECT_GT(log.getTopVisibleRow(), 100000u);
    log.textCalls = 0;
    QElapsedTimer timer;
    timer.start();
    render(log, &log);
    const double paintMs = timer.nsecsElapsed() / 1e6;
    EXPECT_LE(log.getRowsDrawnByLastPaint(), smallRows);  // the last page may end on a whole line
    EXPECT_GE(log.getRowsDrawnByLastPaint() + 1, smallRows);
    EXPECT_LE(log.textCalls, smallCalls);
    std::printf("paint of %u rows at row %u of %u: %.2f ms, %ld texts asked\n", log.getRowsDrawnByLastPaint(),
                log.getTopVisibleRow(), log.getNumberOfVisibleRows(), paintMs, log.textCalls);

    // From other threads: the messages arrive in one or a few batches, all of them, in order.
    const size_t before = log.items.size();
    std::thread writers([&log] {
        cVxLogger logger;
        logger.setLoggerCallBack(&log);
        for (int i = 0; i < 2000; ++i)
            logger.errorMsg("thread message " + std::to_string(i));
        logger.setLoggerCallBack(nullptr);
    });
    writers.join();
    ASSERT_TRUE(waitFor([&] { return !log.items.empty() && log.items.back().text == "thread message 1999"; }));
    EXPECT_EQ(log.items.size(), before + 2000);
    EXPECT_EQ(log.items.back().text, "thread message 1999");
    EXPECT_EQ(log.items[before].severity, unsigned(vxLogger::error));

    // Errors only, through the severity filter.
    log.showOnlySeverities({vxLogger::error, vxLogger::fatal_error});
    EXPECT_EQ(log.getNumberOfEffectiveRows(), 2002u);

    // Over the limit the oldest rows go.
    log.setMaximumRows(1000);
    log.addMessage(vxLogger::error, "the newest", "11:00:00.000");
    EXPECT_EQ(log.items.size(), 1000u);
    EXPECT_EQ(log.items.front().text, "thread message 1001");
    EXPECT_EQ(log.getNumberOfEffectiveRows(), 1000u);
}
