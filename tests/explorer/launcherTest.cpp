// Files load on the launcher thread while the window stays responsive: busy state, the queue of
// commands that wait for the store, the stop button, bad input, reload of changed files, and
// closing during a load.
#include <QDropEvent>
#include <QMimeData>
#include <QStatusBar>
#include <QUrl>
#include <QTimer>
#include <QToolButton>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "app/core/wxWaveExplorerConfiguration.h"
#include "explorer/wxWaveExplorerBrowserTreeGrid.h"
#include "explorer/wxWaveExplorerWidgetImpl.h"
#include "model/cCurvePlotDataFile.h"
#include "plot/qt/wxSinglePlotWidgetImpl.h"
#include "toolWindowsTestSupport.h"
#include "zelwave.h"

using namespace zwtest;

namespace {

class cLauncherTest : public cViewerTest {
protected:
    vx3::wxWaveExplorerWidgetImpl& explorer() { return *mViewer->explorer(); }
    QString statusText() { return explorer().findChild<QStatusBar*>()->currentMessage(); }
    bool waitForStatus(const std::string& text)
    {
        return pumpUntil([&] { return statusText().toStdString() == text; });
    }
    bool waitIdle()
    {
        return pumpUntil([&] { return !explorer().checkApplicationIsBusy() && explorer().getQueueLength() == 0; });
    }
    std::string sections() { return ask("get_number_of_sections"); }
    uint64_t valueCount(uint64_t section)
    {
        vx3::cCurvePlotDataFile& store = explorer().store();
        vx3::cVxScopedLock lock(store.getMutex());
        vx3::cCurvePlotDataSection* found = store.getDataSectionFromIndex(section);
        return found ? found->getVariableValueCount(0) : 0;
    }
};

std::string csvRows(int first, int count)
{
    std::ostringstream text;
    for (int i = first; i < first + count; ++i)
        text << i << "," << (i % 7) << "\n";
    return text.str();
}

}  // namespace

// While the reader holds the store, the window goes on: commands that need the store or a file
// wait in the queue, others run at once, and the stop button ends the read.
TEST_F(cLauncherTest, BusyWhileLoadingQueueAndStop)
{
    const std::string file = writeFile("wave.csv", "time,v\n" + csvRows(0, 100));
    auto* stop = explorer().findChild<QToolButton*>("stop_button");
    ASSERT_NE(stop, nullptr);
    {
        // Holding the store keeps the launcher's task running for as long as this test needs.
        vx3::cVxScopedLock hold(explorer().store().getMutex());
        EXPECT_EQ(execute("open_file \"" + file + "\""), vx_code_queued);
        EXPECT_TRUE(explorer().checkLauncherIsWorking());
        EXPECT_TRUE(explorer().checkApplicationIsBusy());
        EXPECT_FALSE(explorer().findChild<vx3::wxWaveExplorerBrowserTreeGrid*>("browser_treegrid")->isEnabled());
        EXPECT_FALSE(stop->isHidden());
        EXPECT_EQ(explorer().cursor().shape(), Qt::WaitCursor);
        // Not about the store, with an empty queue: answered at once.
        EXPECT_NE(ask("get_configuration_file_name"), "<failed>");
        // Reads the store: waits; then everything after it waits too, to keep the order.
        EXPECT_EQ(execute("get_number_of_sections"), vx_code_queued);
        EXPECT_EQ(execute("get_configuration_file_name"), vx_code_queued);
        EXPECT_EQ(execute("add_plot p1 analog 1 1"), vx_code_queued);
        EXPECT_EQ(execute("get_status"), vx_code_queued);
        EXPECT_EQ(explorer().getQueueLength(), 3u);
        // The event loop is free while the task runs.
        bool ran = false;
        QTimer::singleShot(0, [&ran] { ran = true; });
        EXPECT_TRUE(pumpUntil([&ran] { return ran; }));
        stop->click();
    }
    EXPECT_TRUE(waitForStatus("Parsing was interrupted."));
    ASSERT_TRUE(waitIdle());
    EXPECT_TRUE(stop->isHidden());
    EXPECT_TRUE(explorer().findChild<vx3::wxWaveExplorerBrowserTreeGrid*>("browser_treegrid")->isEnabled());
    EXPECT_EQ(execute("clear_plot p1"), vx_code_ok) << "the queued add_plot ran after the task";

    // Read again without interruption; then a second open of the same file adds nothing.
    EXPECT_EQ(execute("open_file \"" + file + "\""), vx_code_queued);
    EXPECT_TRUE(waitForStatus("Successfully parsed file \"" + file + "\"."));
    ASSERT_TRUE(waitIdle());
    EXPECT_EQ(sections(), "1");
    EXPECT_EQ(valueCount(0), 100u);
    EXPECT_EQ(execute("open_file \"" + file + "\""), vx_code_queued);
    EXPECT_TRUE(waitForStatus("The file \"" + file + "\" has already been opened."));
    ASSERT_TRUE(waitIdle());
    EXPECT_EQ(sections(), "1");
}

// A reader that holds the store for a long time: commands that would look into the store wait
// in the queue instead of hanging the window, and run once the read has ended.
TEST_F(cLauncherTest, StoreCommandsWaitForALongRead)
{
    const std::string first = writeFile("first.csv", "time,v\n" + csvRows(0, 10));
    ASSERT_EQ(execute("open_file \"" + first + "\""), vx_code_queued);
    ASSERT_TRUE(waitIdle());
    ASSERT_EQ(execute("add_plot p1 analog 1 1"), vx_code_ok);
    ASSERT_EQ(execute("add_curve_to_plot_by_name p1 first.csv v 0"), vx_code_ok);

    // Another thread holds the store, as a reader of a large file would: the launcher's task
    // stays blocked until it lets go (a deadline, so that a hang fails instead of blocking).
    std::atomic<bool> held{false}, letGo{false}, released{false};
    std::thread holder([&] {
        vx3::cVxScopedLock lock(explorer().store().getMutex());
        held = true;
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (!letGo && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        released = true;
    });
    while (!held)
        std::this_thread::yield();
    const std::string second = writeFile("second.csv", "time,w\n" + csvRows(0, 5));
    EXPECT_EQ(execute("open_file \"" + second + "\""), vx_code_queued);
    // Plots as widgets need no store: answered at once.
    EXPECT_EQ(ask("get_number_of_plots"), "1");
    // A plot command that looks up its section: queued, and what follows it keeps the order.
    EXPECT_EQ(execute("highlight_curve_in_plot_by_index p1 first.csv 0"), vx_code_queued);
    EXPECT_EQ(execute("get_number_of_plots"), vx_code_queued);
    EXPECT_FALSE(released) << "the commands returned only after the store was free";
    EXPECT_EQ(explorer().getQueueLength(), 2u);
    bool ran = false;
    QTimer::singleShot(0, [&ran] { ran = true; });
    EXPECT_TRUE(pumpUntil([&ran] { return ran; }));

    letGo = true;
    holder.join();
    EXPECT_TRUE(waitForStatus("Successfully parsed file \"" + second + "\"."));
    ASSERT_TRUE(waitIdle());
    EXPECT_EQ(sections(), "2");
    // The highlight ran after the read.
    auto* plot = explorer().findChild<vx3::wxSinglePlotWidgetImpl*>("plot_p1");
    ASSERT_NE(plot, nullptr);
    ASSERT_EQ(plot->getNbOfCurves(), 1u);
    EXPECT_TRUE(plot->getCurves()[0].realHighlighted);
}

// Bad files: clear messages, nothing lost of what is open, the window back to idle.
TEST_F(cLauncherTest, BadInputKeepsOpenData)
{
    const std::string good = writeFile("good.csv", "time,v\n" + csvRows(0, 10));
    ASSERT_EQ(execute("open_file \"" + good + "\""), vx_code_queued);
    ASSERT_TRUE(waitIdle());
    ASSERT_EQ(sections(), "1");

    std::filesystem::create_directory(path("folder"));
    EXPECT_EQ(execute("open_file \"" + path("folder") + "\""), vx_code_error);
    EXPECT_EQ(statusText().toStdString(), "Could not open file \"" + path("folder") + "\".");

    EXPECT_EQ(execute("open_file \"" + path("missing.csv") + "\""), vx_code_file_not_found);
    EXPECT_EQ(statusText().toStdString(), "The file \"" + path("missing.csv") + "\" was not found.");

    const std::string empty = writeFile("empty.csv", "");
    EXPECT_EQ(execute("open_file \"" + empty + "\""), vx_code_queued);
    EXPECT_TRUE(waitForStatus("Failed to parse file \"" + empty + "\"."));
    ASSERT_TRUE(waitIdle());
    EXPECT_EQ(execute("get_status"), vx_code_error) << "the end of the load is the last result";

    std::string bytes;
    for (int i = 0; i < 4096; ++i)
        bytes.push_back(static_cast<char>((i * 131 + 7) % 256));
    {
        std::ofstream(path("noise.bin"), std::ios::binary) << bytes;
    }
    EXPECT_EQ(execute("open_file \"" + path("noise.bin") + "\""), vx_code_queued);
    EXPECT_TRUE(waitForStatus("Failed to parse file \"" + path("noise.bin") + "\"."));
    ASSERT_TRUE(waitIdle());

    // Dropped on the window: the folder is refused, the file beside it loads.
    const std::string other = writeFile("other.csv", "time,w\n" + csvRows(0, 5));
    QMimeData mime;
    mime.setUrls({QUrl::fromLocalFile(QString::fromStdString(path("folder"))),
                  QUrl::fromLocalFile(QString::fromStdString(other))});
    // The drop goes to the widget that accepted the drag's entry.
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&explorer(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&explorer(), &drop);
    EXPECT_TRUE(waitForStatus("Successfully parsed file \"" + other + "\"."));
    ASSERT_TRUE(waitIdle());

    EXPECT_EQ(sections(), "2");
    EXPECT_EQ(valueCount(0), 10u);
}

// A file that grew is reloaded on the timer and the plot keeps its curve; a file that vanished is
// told once and its data stays.
TEST_F(cLauncherTest, ReloadOfChangedAndVanishedFiles)
{
    const std::string file = writeFile("grow.csv", "time,v\n" + csvRows(0, 20));
    ASSERT_EQ(execute("open_file \"" + file + "\""), vx_code_queued);
    ASSERT_TRUE(waitIdle());
    ASSERT_EQ(execute("add_plot p1 analog 1 1"), vx_code_ok);
    ASSERT_EQ(execute("add_curve_to_plot_by_name p1 grow.csv v 0"), vx_code_ok);
    mViewer->configuration().setAutoReloadInterval(0.05);

    {
        std::ofstream(file, std::ios::app) << csvRows(20, 30);
    }
    EXPECT_TRUE(waitForStatus("Reloaded file \"" + file + "\"."));
    ASSERT_TRUE(waitIdle());
    EXPECT_EQ(valueCount(0), 50u);
    EXPECT_EQ(sections(), "1");

    std::filesystem::remove(file);
    EXPECT_TRUE(waitForStatus("Some files can't be reloaded."));
    EXPECT_EQ(sections(), "1");
    EXPECT_EQ(valueCount(0), 50u);
    EXPECT_EQ(execute("clear_plot p1"), vx_code_ok);
}

// Closing the window in the middle of a large read neither hangs nor crashes.
TEST_F(cLauncherTest, CloseWhileLoading)
{
    {
        std::ofstream out(path("large.csv"));
        out << "time,a,b,c\n";
        for (int i = 0; i < 400000; ++i)
            out << i << "," << i % 13 << "," << i % 17 << "," << i % 19 << "\n";
    }
    ASSERT_EQ(execute("open_file \"" + path("large.csv") + "\""), vx_code_queued);
    mWindow->close();
    EXPECT_TRUE(pumpUntil([this] { return mWindow.isNull(); }));
}
