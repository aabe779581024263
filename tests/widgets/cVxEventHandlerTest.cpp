#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QThread>
#include <gtest/gtest.h>

#include <map>
#include <thread>
#include <vector>

#include "widgets/cVxEventHandler.h"
#include "widgets/qtVxWidget.h"
#include "waitFor.h"

namespace {

using zwwidgets::waitFor;

class cRecordingHandler : public vx3::cVxEventHandler {
public:
    std::map<int, int> counts;
    std::vector<QThread*> threads;
    std::vector<int> order;

protected:
    void onEventTimer(int id) override
    {
        ++counts[id];
        order.push_back(id);
        threads.push_back(QThread::currentThread());
    }
};

TEST(cVxEventHandler, SingleShotFiresOnceOnTheMainThread)
{
    cRecordingHandler handler;
    handler.startEventTimer(1, 10, true);
    ASSERT_TRUE(waitFor([&] { return handler.counts[1] == 1; }));
    // A later timer firing shows that time went on; the single shot must not have come again.
    handler.startEventTimer(2, 100, true);
    ASSERT_TRUE(waitFor([&] { return handler.counts[2] == 1; }));
    EXPECT_EQ(handler.counts[1], 1);
    EXPECT_FALSE(handler.checkEventTimerIsActive(1));
    for (QThread* thread : handler.threads)
        EXPECT_EQ(thread, QCoreApplication::instance()->thread());
}

TEST(cVxEventHandler, RestartReplacesTheIntervalAndStopEndsRepeats)
{
    cRecordingHandler handler;
    // A timer far in the future, restarted with a short interval, fires soon and once.
    handler.startEventTimer(7, 3600 * 1000, true);
    handler.startEventTimer(7, 5, true);
    ASSERT_TRUE(waitFor([&] { return handler.counts[7] == 1; }));
    EXPECT_FALSE(handler.checkEventTimerIsActive(7));

    // Restarting a short one with a long interval keeps it from firing while others do.
    handler.startEventTimer(8, 5, true);
    handler.startEventTimer(8, 3600 * 1000, true);
    handler.startEventTimer(9, 50, true);
    ASSERT_TRUE(waitFor([&] { return handler.counts[9] == 1; }));
    EXPECT_EQ(handler.counts[8], 0);
    EXPECT_TRUE(handler.checkEventTimerIsActive(8));
    handler.stopEventTimer(8);
    EXPECT_FALSE(handler.checkEventTimerIsActive(8));

    // A repeating timer repeats until stopped.
    handler.startEventTimer(3, 5, false);
    ASSERT_TRUE(waitFor([&] { return handler.counts[3] >= 3; }));
    handler.stopEventTimer(3);
    const int stoppedAt = handler.counts[3];
    handler.startEventTimer(4, 60, true);
    ASSERT_TRUE(waitFor([&] { return handler.counts[4] == 1; }));
    EXPECT_EQ(handler.counts[3], stoppedAt);
}

TEST(cVxEventHandler, TimerStartedOnAWorkerThreadDeliversOnTheMainThread)
{
    cRecordingHandler handler;
    std::thread worker([&] { handler.startEventTimer(5, 5, true); });
    worker.join();
    ASSERT_TRUE(waitFor([&] { return handler.counts[5] == 1; }));
    ASSERT_EQ(handler.threads.size(), 1u);
    EXPECT_EQ(handler.threads[0], QCoreApplication::instance()->thread());
}

class cRecordingWidget : public vx3::qtVxWidget {
public:
    std::vector<std::string> calls;
    int paints = 0;

protected:
    void onPaint(QPainter&) override { ++paints; }
    void onMouseDown(double x, double y, int button, int) override
    {
        calls.push_back("down " + std::to_string(int(x)) + " " + std::to_string(int(y)) + " " + std::to_string(button));
    }
    void onMouseUp(double x, double y, int button, int) override
    {
        calls.push_back("up " + std::to_string(int(x)) + " " + std::to_string(int(y)) + " " + std::to_string(button));
    }
    bool onKeyDown(int key, int, const QString& text) override
    {
        calls.push_back("key " + text.toStdString());
        return key == Qt::Key_A;
    }
};

TEST(qtVxWidget, ForwardsInputAndPaintsOnRequest)
{
    cRecordingWidget widget;
    widget.setGeometry(10, 20, 200, 100);
    widget.show();
    EXPECT_EQ(widget.width(), 200);
    EXPECT_EQ(widget.height(), 100);
    ASSERT_TRUE(waitFor([&] { return widget.paints > 0; }));
    const int paintsBefore = widget.paints;
    widget.refresh();
    ASSERT_TRUE(waitFor([&] { return widget.paints > paintsBefore; }));

    QMouseEvent press(QEvent::MouseButtonPress, QPointF(12, 34), widget.mapToGlobal(QPointF(12, 34)),
                      Qt::RightButton, Qt::RightButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &press);
    QMouseEvent release(QEvent::MouseButtonRelease, QPointF(15, 36), widget.mapToGlobal(QPointF(15, 36)),
                        Qt::RightButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &release);
    QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a");
    QCoreApplication::sendEvent(&widget, &key);
    EXPECT_TRUE(key.isAccepted());
    QKeyEvent other(QEvent::KeyPress, Qt::Key_B, Qt::NoModifier, "b");
    QCoreApplication::sendEvent(&widget, &other);
    EXPECT_FALSE(other.isAccepted());  // unused keys go on to the parent
    const std::vector<std::string> expected{"down 12 34 2", "up 15 36 2", "key a", "key b"};
    EXPECT_EQ(widget.calls, expected);
    widget.hide();
    EXPECT_FALSE(widget.isVisible());
}

}  // namespace
