// A page's post-processing on its own thread: the work runs off the main thread, a second start
// is refused while it runs, and the results reach the plots on the main thread afterwards; a
// stopped run brings nothing.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QThread>
#include <atomic>
#include <future>

#include "../plot/singlePlotTestSupport.h"
#include "base/cVxThread.h"
#include "plot/qt/wxMultiPlotWidget.h"
#include "waitFor.h"

using namespace vx3;
using namespace zwplot;

namespace {

// Multiplies a curve by 2 (task 0) or 10 (task 1) once the gate opens.
class cScalingPage : public wxMultiPlotWidget {
public:
    cScalingPage(cVxMutex& mutex, const cVxLogger& logger, cTestSection& section, uint64_t curve,
                 std::vector<double> values)
        : wxMultiPlotWidget(nullptr, mutex, logger), mMutex(mutex), mSection(section), mCurve(curve),
          mValues(std::move(values)), mGate(mOpen.get_future().share())
    {
    }
    ~cScalingPage() override { stopPostProcessThread(); }
    void open() { mOpen.set_value(); }

    std::atomic<bool> workedOffMain{false};
    int reloads = 0;
    int reloadTask = -1;
    bool reloadedOnMain = false;

protected:
    void executeTaskInThread(int task) override
    {
        workedOffMain = QThread::currentThread() != QCoreApplication::instance()->thread();
        mGate.wait();
        std::vector<double> scaled = mValues;
        for (double& value : scaled)
            value *= task == 1 ? 10.0 : 2.0;
        cVxScopedLock lock(mMutex);
        mSection.section->getVariable(mCurve).setDoubleValues(scaled.data(), scaled.size());
    }
    void reloadAfterPostProcessIsComplete(int task) override
    {
        ++reloads;
        reloadTask = task;
        reloadedOnMain = QThread::currentThread() == QCoreApplication::instance()->thread();
        wxMultiPlotWidget::reloadAfterPostProcessIsComplete(task);
    }

private:
    cVxMutex& mMutex;
    cTestSection& mSection;
    uint64_t mCurve;
    std::vector<double> mValues;
    std::promise<void> mOpen;
    std::shared_future<void> mGate;
};

}  // namespace

TEST(PagePostProcess, ResultsOfTheThreadReachThePlotsOnTheMainThreadAndAStoppedRunBringsNothing)
{
    cCapturingLogger capture;
    cVxMutex mutex;
    cCurvePlotDataFile store;
    std::vector<double> x(101);
    for (size_t i = 0; i < x.size(); ++i)
        x[i] = 0.1 * double(i);
    cTestSection tran(store, "tran", x);
    const uint64_t ramp = tran.addReal("ramp", x);
    {
        cScalingPage page(mutex, capture.logger, tran, ramp, x);
        ASSERT_TRUE(page.addCurves(0, {tran.describe(ramp)}));
        EXPECT_NEAR(page.plot(0).yAxis(0).getMax(), 10.0, 0.3);

        ASSERT_TRUE(page.startPostProcessThread(true));
        EXPECT_TRUE(page.checkPostProcessThreadRunning());
        EXPECT_FALSE(page.startPostProcessThread(false));  // one run at a time
        QCoreApplication::processEvents();
        EXPECT_EQ(page.reloads, 0);  // nothing before the work ends
        page.open();
        ASSERT_TRUE(zwwidgets::waitFor([&] { return page.reloads > 0; }));
        EXPECT_TRUE(page.workedOffMain);
        EXPECT_TRUE(page.reloadedOnMain);
        EXPECT_EQ(page.reloadTask, 1);
        EXPECT_FALSE(page.checkPostProcessThreadRunning());
        // The unzoomed plot took the new values: ten times the ramp.
        EXPECT_NEAR(page.plot(0).yAxis(0).getMax(), 100.0, 3.0);
    }
    {
        // Stopped before its end was taken: the values changed in the store, the plots keep theirs.
        cScalingPage page(mutex, capture.logger, tran, ramp, x);
        ASSERT_TRUE(page.addCurves(0, {tran.describe(ramp)}));
        const double before = page.plot(0).yAxis(0).getMax();
        ASSERT_TRUE(page.startPostProcessThread(false));
        page.open();
        page.stopPostProcessThread();
        EXPECT_FALSE(page.checkPostProcessThreadRunning());
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
        EXPECT_EQ(page.reloads, 0);
        EXPECT_DOUBLE_EQ(page.plot(0).yAxis(0).getMax(), before);
        // And the page can run again.
        ASSERT_TRUE(page.startPostProcessThread(false));
        ASSERT_TRUE(zwwidgets::waitFor([&] { return page.reloads > 0; }));
        EXPECT_EQ(page.reloadTask, 0);
    }
    EXPECT_TRUE(capture.log.messages.empty());
}
