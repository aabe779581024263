// A host application: it owns the QApplication and drives the viewer through the C interface only.
#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QImage>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include "../pumpUntil.h"
#include "../../base/testSupport.h"
#include "zelwave.h"

namespace {

using zwtest::kDeadlineMs;
using zwtest::pumpUntil;

// Waits without processing events (the main thread must stay away from the viewer).
template <typename F>
bool sleepUntil(F condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > kDeadlineMs)
            return condition();
        usleep(2000);
    }
    return true;
}

// Closes a top-level window and lets Qt delete it.
void closeAndDelete(void* handle)
{
    QPointer<QWidget> window(static_cast<QWidget*>(handle));
    EXPECT_TRUE(window->close()) << "nothing holds the window";
    EXPECT_TRUE(pumpUntil([&] { return window.isNull(); })) << "the window is deleted";
}

std::vector<std::string> results(void* handle)
{
    std::vector<std::string> list;
    const char** strings = qt_zelwave_get_command_result(handle);
    for (; strings && *strings; ++strings)
        list.emplace_back(*strings);
    return list;
}

struct cNotifications {
    std::vector<long> types;
};

int onNotification(void* user, const _vx_zelwave_callback_notification_type* notification)
{
    static_cast<cNotifications*>(user)->types.push_back(notification->type);
    return 1;
}

// A listening tool on a port of the loopback: the viewer's socket session connects to it. Every
// call waits at most the deadline, so that a viewer that never comes fails instead of hanging.
class cListeningPeer {
public:
    cListeningPeer()
    {
        mListener = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof(address);
        if (mListener < 0 || ::bind(mListener, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0 ||
            ::listen(mListener, 1) != 0 || ::getsockname(mListener, reinterpret_cast<sockaddr*>(&address), &length) != 0)
            return;
        mPort = ntohs(address.sin_port);
    }
    ~cListeningPeer()
    {
        hangUp();
        if (mListener >= 0)
            ::close(mListener);
    }
    unsigned port() const { return mPort; }
    bool accept()
    {
        pollfd waiting{mListener, POLLIN, 0};
        if (mPort == 0 || ::poll(&waiting, 1, static_cast<int>(kDeadlineMs)) != 1)
            return false;
        mConnection = ::accept(mListener, nullptr, nullptr);
        timeval timeout{kDeadlineMs / 1000, 0};
        ::setsockopt(mConnection, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof(timeout));
        return mConnection >= 0;
    }
    bool send(const std::string& text) { return ::send(mConnection, text.data(), text.size(), MSG_NOSIGNAL) == ssize_t(text.size()); }
    // One line without its end; "<closed>" when the viewer closed the socket first.
    std::string line()
    {
        while (mPending.find('\n') == std::string::npos) {
            char chunk[4096];
            const ssize_t got = ::recv(mConnection, chunk, sizeof(chunk), 0);
            if (got <= 0)
                return "<closed>";
            mPending.append(chunk, static_cast<size_t>(got));
        }
        const size_t end = mPending.find('\n');
        std::string first = mPending.substr(0, end);
        mPending.erase(0, end + 1);
        return first;
    }
    void hangUp()
    {
        if (mConnection >= 0)
            ::close(mConnection);
        mConnection = -1;
    }

private:
    int mListener = -1;
    int mConnection = -1;
    unsigned mPort = 0;
    std::string mPending;
};

}  // namespace

TEST(zelwaveHost, CodesAndTheirTexts)
{
    EXPECT_STREQ(convert_vx_return_code_to_string(0), "OK");
    EXPECT_STREQ(convert_vx_return_code_to_string(6), "BAD NAME");
    EXPECT_STREQ(convert_vx_return_code_to_string(11), "QUEUED");
    EXPECT_STREQ(convert_vx_return_code_to_string(12), "BAD POINTER");
    EXPECT_STREQ(convert_vx_return_code_to_string(13), "THREAD ERROR");
    EXPECT_STREQ(convert_vx_return_code_to_string(14), "INTERRUPTED");
    EXPECT_STREQ(convert_vx_return_code_to_string(4), "-");
    EXPECT_STREQ(convert_vx_return_code_to_string(15), "-");
    EXPECT_STREQ(convert_vx_return_code_to_string(-1), "-");

    int unknown = 0;
    EXPECT_EQ(qt_zelwave_execute_command(&unknown, "get_status"), vx_code_bad_pointer);
    EXPECT_EQ(qt_zelwave_get_command_result(&unknown), nullptr);
    EXPECT_EQ(qt_zelwave_register_callback(&unknown, nullptr), vx_code_bad_pointer);
}

TEST(zelwaveHost, CommandsThroughTheHandle)
{
    void* handle = qt_zelwave_create_main_window(nullptr, 10, 10, -1, 50, 0);
    ASSERT_NE(handle, nullptr);
    QWidget* window = static_cast<QWidget*>(handle);
    EXPECT_EQ(window->width(), 100);
    EXPECT_EQ(window->height(), 100);

    EXPECT_EQ(qt_zelwave_execute_command(handle, nullptr), vx_code_bad_name);
    EXPECT_EQ(qt_zelwave_execute_command(handle, ""), vx_code_bad_name);
    EXPECT_EQ(qt_zelwave_execute_command(handle, "   "), vx_code_ok);
    EXPECT_EQ(qt_zelwave_execute_command(handle, "no_such_command"), vx_code_error);

    // Two lines: both run, the results are those of the second.
    EXPECT_EQ(qt_zelwave_execute_command(handle, "add_section host_a\nget_number_of_sections"), vx_code_ok);
    EXPECT_EQ(results(handle), std::vector<std::string>{"1"});
    EXPECT_EQ(qt_zelwave_execute_command(handle, "help get_status"), vx_code_ok);
    std::vector<std::string> help = results(handle);
    ASSERT_EQ(help.size(), 2u);
    EXPECT_EQ(help[0], "get_status ");
    EXPECT_NE(help[1].find("vx_code_queued"), std::string::npos);

    // Another thread's command waits in the bridge for this (main) thread; meanwhile the
    // interface is busy for everybody else.
    std::atomic<int> threadResult{-1};
    std::thread other([&] { threadResult = qt_zelwave_execute_command(handle, "get_number_of_sections"); });
    // Not pumping events here: the other thread's command stays in the bridge until we do.
    EXPECT_TRUE(sleepUntil([&] { return qt_zelwave_execute_command(handle, "get_status") == vx_code_thread_error; }))
        << "the interface is busy while the other thread's command waits";
    EXPECT_EQ(threadResult, -1) << "its command waits for the main thread";
    EXPECT_TRUE(pumpUntil([&] { return threadResult != -1; })) << "the other thread's command ran";
    other.join();
    EXPECT_EQ(threadResult, vx_code_ok);
    EXPECT_EQ(results(handle), std::vector<std::string>{"1"});

    closeAndDelete(handle);
}

TEST(zelwaveHost, GetStatusWhileACommandFileRunsInTheBackground)
{
    void* handle = qt_zelwave_create_main_window(nullptr, 10, 10, 400, 300, 0);
    ASSERT_NE(handle, nullptr);
    zwtest::cTempDir scratch("zelwave-host-");
    const std::string& dir = scratch.path();
    std::ofstream(dir + "/work.cmd") << "add_section bg\nnot_a_command\nget_number_of_sections\n";

    EXPECT_EQ(qt_zelwave_execute_command(handle, ("execute_command_file \"" + dir + "/work.cmd\"").c_str()),
              vx_code_queued);
    // The file needs this thread for each of its commands: until then the door says "queued".
    EXPECT_EQ(qt_zelwave_execute_command(handle, "get_status"), vx_code_queued);
    // Refused: 11 before the thread took the lock, 1 after; either way nothing is added.
    int refused = qt_zelwave_execute_command(handle, "add_section x");
    EXPECT_TRUE(refused == vx_code_queued || refused == vx_code_error) << refused;
    int status = vx_code_queued;
    pumpUntil([&] { return (status = qt_zelwave_execute_command(handle, "get_status")) != vx_code_queued; });
    EXPECT_EQ(status, vx_code_error) << "the first get_status after the end gives the file's result";
    EXPECT_EQ(qt_zelwave_execute_command(handle, "get_status"), vx_code_ok)
        << "a second one is a plain command: the last command the explorer performed succeeded";
    EXPECT_EQ(qt_zelwave_execute_command(handle, "get_number_of_sections"), vx_code_ok);
    EXPECT_EQ(results(handle), std::vector<std::string>{"1"});
    closeAndDelete(handle);
}

TEST(zelwaveHost, EmbeddedWidgetReportsCloseRequestsToTheHost)
{
    QWidget host;
    void* handle = qt_zelwave_create_widget(&host, 0, 0, 300, 200, 0);
    ASSERT_NE(handle, nullptr);
    host.show();
    QPointer<QWidget> widget(static_cast<QWidget*>(handle));
    ASSERT_TRUE(widget->isVisible());
    cNotifications notifications;
    _vx_zelwave_callback_type callbacks{};
    callbacks.user_data = &notifications;
    callbacks.notification = &onNotification;
    EXPECT_EQ(qt_zelwave_register_callback(handle, &callbacks), vx_code_ok);
    EXPECT_EQ(qt_zelwave_execute_command(handle, "close"), vx_code_ok);
    auto told = [&] {
        return std::find(notifications.types.begin(), notifications.types.end(),
                         static_cast<long>(vx_notification_close_button_activated)) != notifications.types.end();
    };
    EXPECT_TRUE(pumpUntil(told)) << "the host hears of the close request";
    // The host decides: the embedded viewer neither hides nor deletes itself.
    QApplication::processEvents();
    ASSERT_FALSE(widget.isNull());
    EXPECT_TRUE(widget->isVisible());
    EXPECT_EQ(qt_zelwave_execute_command(handle, "get_number_of_sections"), vx_code_ok) << "its handle still works";
    EXPECT_EQ(qt_zelwave_register_callback(handle, nullptr), vx_code_ok);
}

TEST(zelwaveHost, StoreCommandsBuildAndAnswer)
{
    void* handle = qt_zelwave_create_main_window(nullptr, 10, 10, 400, 300, 0);
    ASSERT_NE(handle, nullptr);
    auto run = [handle](const std::string& command) { return qt_zelwave_execute_command(handle, command.c_str()); };
    auto answer = [&](const std::string& command) {
        EXPECT_EQ(run(command), vx_code_ok) << command;
        std::vector<std::string> list = results(handle);
        return list.empty() ? std::string("<none>") : list.front();
    };

    EXPECT_EQ(run("add_section \"user data\""), vx_code_ok);
    EXPECT_EQ(run("add_section \"user data\""), vx_code_error) << "already exists";
    EXPECT_EQ(run("add_curve \"user data\" v(out) 0 V s 0 1 1e-9 2 2e-9 3"), vx_code_ok);
    EXPECT_EQ(run("add_curve \"user data\" v(out) 0 V s 0 1"), vx_code_error) << "the curve exists";
    EXPECT_EQ(run("add_curve \"user data\" w 0 V s 0 1 1"), vx_code_error) << "an odd count adds nothing";
    EXPECT_EQ(run("add_curve missing w 0 V s 0 1"), vx_code_error);
    EXPECT_EQ(run("add_curve \"user data\" z 1 A s 0 1 2 1e-9 3 4"), vx_code_ok) << "complex: x re im";
    EXPECT_EQ(run("add_curve \"user data\" z2 1 A s 0 1"), vx_code_error) << "complex needs triples";
    EXPECT_EQ(run("add_points \"user data\" v(out) 3e-9 4 4e-9 5"), vx_code_ok);
    EXPECT_EQ(run("add_points \"user data\" v(out) 5e-9"), vx_code_error);
    EXPECT_EQ(run("add_points \"user data\" nothing 1 2"), vx_code_error);

    EXPECT_EQ(answer("get_number_of_sections"), "1");
    EXPECT_EQ(answer("get_section_name 0"), "user data");
    EXPECT_EQ(answer("get_section_number_of_curves \"user data\""), "2");
    EXPECT_EQ(answer("get_section_number_of_cuts \"user data\""), "1");
    EXPECT_EQ(answer("get_section_number_of_sweep_variables \"user data\""), "0");
    EXPECT_EQ(answer("get_curve_name \"user data\" 1"), "z");
    EXPECT_EQ(answer("get_curve_y_unit \"user data\" v(out)"), "V");
    EXPECT_EQ(answer("get_curve_x_unit \"user data\" v(out)"), "s");
    EXPECT_EQ(answer("get_section_x_unit \"user data\""), "s");
    EXPECT_EQ(answer("get_number_of_post_process_sections"), "0");
    EXPECT_EQ(run("get_curve_name \"user data\" 7"), vx_code_error);
    EXPECT_EQ(run("get_section_name 3"), vx_code_error);
    EXPECT_EQ(run("get_curve_y_unit \"user data\" nothing"), vx_code_error);
    EXPECT_EQ(run("close_file /no/such/file.csv"), vx_code_error);
    EXPECT_EQ(run("set_first_section_identifier /no/such/file.csv 100"), vx_code_error);

    // Commands whose performer does not exist yet say so and fail; the store is untouched.
    EXPECT_EQ(run("make_plot_visible p"), vx_code_error);
    EXPECT_EQ(answer("get_number_of_sections"), "1");
    // A plot is made once; its name is taken afterwards.
    EXPECT_EQ(answer("add_plot p analog"), "p");
    EXPECT_EQ(run("add_plot p analog"), vx_code_error);

    // Options land in the configuration; the window-size hints are answered at once.
    EXPECT_EQ(run("set_option fft_parameter_nb_time_samples 2048"), vx_code_ok);
    EXPECT_EQ(run("set_option no_such_option 1"), vx_code_error);
    EXPECT_GE(std::stol(answer("get_window_size_hint_width")), 100);

    // A wait holds the queue: later commands answer "queued" and run when it ends.
    EXPECT_EQ(run("wait 0.3"), vx_code_ok);
    EXPECT_EQ(run("add_section later"), vx_code_queued);
    EXPECT_EQ(run("get_status"), vx_code_queued);
    EXPECT_TRUE(pumpUntil([&] { return run("get_status") != vx_code_queued; })) << "the wait ends";
    EXPECT_EQ(run("get_status"), vx_code_ok);
    EXPECT_EQ(answer("get_number_of_sections"), "2");

    EXPECT_EQ(run("close_section later"), vx_code_ok);
    EXPECT_EQ(run("close_all"), vx_code_ok);
    EXPECT_EQ(answer("get_number_of_sections"), "0");
    closeAndDelete(handle);
}

TEST(zelwaveHost, XmlCommandTextRunsAsOneText)
{
    QWidget host;
    void* handle = qt_zelwave_create_widget(&host, 0, 0, 300, 200, 0);
    ASSERT_NE(handle, nullptr);
    // The host hands a dropped text to the same door; here through the wrapper of the widget.
    std::string xml = "<?xml version=\"1.0\" ?>\n<vx_zelwave_command>\nadd_section dropped\n"
                      "get_number_of_sections\n</vx_zelwave_command>\n";
    EXPECT_EQ(qt_zelwave_execute_xml_command(handle, xml.c_str(), "plot 1"), vx_code_ok);
    EXPECT_EQ(results(handle), std::vector<std::string>{"1"});
    EXPECT_EQ(qt_zelwave_execute_xml_command(handle, "no xml", ""), vx_code_parse_failed);
}

TEST(zelwaveHost, ClosingWaitsForTheBackgroundTask)
{
    void* handle = qt_zelwave_create_main_window(nullptr, 10, 10, 400, 300, 0);
    ASSERT_NE(handle, nullptr);
    QPointer<QWidget> window(static_cast<QWidget*>(handle));
    zwtest::cTempDir scratch("zelwave-close-");
    const std::string& dir = scratch.path();
    {
        std::ofstream file(dir + "/long.cmd");
        for (int i = 0; i < 200000; ++i)
            file << "get_number_of_sections\n";
    }
    EXPECT_EQ(qt_zelwave_execute_command(handle, ("execute_command_file \"" + dir + "/long.cmd\"").c_str()),
              vx_code_queued);
    // Once the file's thread holds the command lock, other commands are refused (1) instead of
    // queued (11). Events are not processed meanwhile, so the file cannot get past its first
    // command, however fast the machine.
    ASSERT_TRUE(sleepUntil([&] { return qt_zelwave_execute_command(handle, "add_section x") == vx_code_error; }))
        << "the file's thread takes the command lock";
    // The file holds the command lock: the close is refused for now and retried.
    EXPECT_FALSE(window->close());
    EXPECT_FALSE(window.isNull());
    EXPECT_TRUE(pumpUntil([&] { return window.isNull(); })) << "the window closes once the task has stopped";
    EXPECT_EQ(qt_zelwave_execute_command(handle, "get_status"), vx_code_bad_pointer) << "its handle is gone";
}

TEST(zelwaveHost, APeerVanishingMidReplyLeavesTheStoreAndANewSessionWorks)
{
    void* handle = qt_zelwave_create_main_window(nullptr, 10, 10, 400, 300, 0);
    ASSERT_NE(handle, nullptr);
    auto run = [handle](const std::string& command) { return qt_zelwave_execute_command(handle, command.c_str()); };
    // Its name makes the reply of get_section_name 0 far larger than the socket buffers.
    const std::string longName(8u << 20, 'n');
    ASSERT_EQ(run("add_section " + longName), vx_code_ok);
    ASSERT_EQ(run("add_section kept"), vx_code_ok);
    ASSERT_EQ(run("add_curve kept v 0 V s 0 1 1 2"), vx_code_ok);

    // The first peer asks for the long name and hangs up before reading a byte of it.
    std::string firstLine;
    {
        cListeningPeer peer;
        ASSERT_NE(peer.port(), 0u);
        std::thread tool([&] {
            if (!peer.accept())
                return;
            firstLine = peer.line();
            peer.send("get_section_name 0\n");
            peer.hangUp();
        });
        EXPECT_EQ(run("start_interactive_socket 127.0.0.1 " + std::to_string(peer.port())), vx_code_queued);
        int status = vx_code_queued;
        EXPECT_TRUE(pumpUntil([&] { return (status = run("get_status")) != vx_code_queued; }))
            << "the session ends";
        tool.join();
        EXPECT_EQ(firstLine, "0") << "the viewer said it was ready";
        EXPECT_EQ(status, vx_code_error) << "the session ended on its failed write";
    }
    // Nothing loaded was touched.
    EXPECT_EQ(run("get_number_of_sections"), vx_code_ok);
    EXPECT_EQ(results(handle), std::vector<std::string>{"2"});
    EXPECT_EQ(run("get_section_name 1"), vx_code_ok);
    EXPECT_EQ(results(handle), std::vector<std::string>{"kept"});
    EXPECT_EQ(run("get_curve_name kept 0"), vx_code_ok);
    EXPECT_EQ(results(handle), std::vector<std::string>{"v"});

    // A new session: a command, its reply, and a shut down that ends the session well.
    std::vector<std::string> replies;
    {
        cListeningPeer peer;
        std::thread tool([&] {
            if (!peer.accept())
                return;
            replies.push_back(peer.line());
            peer.send("get_section_name 1\n");
            replies.push_back(peer.line());
            peer.send("shut_down_interactive_socket\n");
            replies.push_back(peer.line());
            replies.push_back(peer.line());
        });
        EXPECT_EQ(run("start_interactive_socket 127.0.0.1 " + std::to_string(peer.port())), vx_code_queued);
        int status = vx_code_queued;
        EXPECT_TRUE(pumpUntil([&] { return (status = run("get_status")) != vx_code_queued; }));
        tool.join();
        EXPECT_EQ(status, vx_code_ok);
    }
    EXPECT_EQ(replies, (std::vector<std::string>{"0", "0 \"kept\"", "0", "<closed>"}));
    closeAndDelete(handle);
}

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}

namespace {
// The plot widget named name inside the window of handle, once it has a usable size.
QWidget* findPlotWidget(void* handle, const std::string& name)
{
    QWidget* found = nullptr;
    pumpUntil([&] {
        for (QWidget* widget : QApplication::allWidgets())
            if (widget->objectName() == QString::fromStdString("plot_" + name) &&
                widget->window() == static_cast<QWidget*>(handle) && widget->width() > 200 && widget->height() > 150)
                found = widget;
        return found != nullptr;
    });
    return found;
}

std::string readText(const std::string& path)
{
    std::ifstream stream(path);
    std::stringstream text;
    text << stream.rdbuf();
    return text.str();
}

size_t countLinesStarting(const std::string& text, const std::string& start)
{
    size_t count = 0;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        count += line.rfind(start, 0) == 0 ? 1 : 0;
    return count;
}

void setUpPlot(void* handle)
{
    for (const char* command :
         {"show", "add_section d", "add_curve d v 0 V s 0 0 1 1 2 0.5 3 -1 4 0 5 0.8 6 -0.3 7 0.1 8 1 9 -1 10 0",
          "add_curve d w 0 V s 0 1 2 -1 4 0.5 6 0.2 8 -0.7 10 0.4", "add_plot p analog",
          "add_curve_to_plot_by_name p d v 0"})
        EXPECT_EQ(qt_zelwave_execute_command(handle, command), vx_code_ok) << command;
}
}  // namespace

TEST(zelwaveHost, UserActionsOnAPlotAreRecordedAndTheirCommandFileReplaysTheSamePicture)
{
    zwtest::cTempDir scratch("zelwave-host-");
    const std::string recording = scratch.path() + "/actions.cmd";
    void* handle = qt_zelwave_create_main_window(nullptr, 10, 10, 700, 500, 0);
    ASSERT_NE(handle, nullptr);
    setUpPlot(handle);
    ASSERT_EQ(qt_zelwave_execute_command(handle, ("register_command_file \"" + recording + "\"").c_str()), vx_code_ok);
    QWidget* plot = findPlotWidget(handle, "p");
    ASSERT_NE(plot, nullptr);
    const QImage unzoomed = plot->grab().toImage();

    // Three wheel notches at once, then a box dragged on the canvas.
    const QPoint centre(plot->width() / 2, plot->height() / 2);
    for (int i = 0; i < 3; ++i) {
        QWheelEvent wheel(QPointF(centre), QPointF(plot->mapToGlobal(centre)), QPoint(), QPoint(0, 120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(plot, &wheel);
    }
    ASSERT_TRUE(pumpUntil([&] { return countLinesStarting(readText(recording), "zoom \"p\" ") == 1; }));
    const QPoint from(plot->width() / 3, plot->height() / 4), to(plot->width() * 2 / 3, plot->height() / 2);
    // With Shift a press on a curve draws the box all the same instead of highlighting the curve.
    auto mouse = [&](QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons buttons) {
        QMouseEvent event(type, QPointF(at), QPointF(plot->mapToGlobal(at)), button, buttons, Qt::ShiftModifier);
        QApplication::sendEvent(plot, &event);
    };
    mouse(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
    mouse(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
    mouse(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
    ASSERT_EQ(qt_zelwave_execute_command(handle, ("unregister_command_file \"" + recording + "\"").c_str()), vx_code_ok);
    const QImage zoomed = plot->grab().toImage();
    EXPECT_NE(zoomed, unzoomed);
    const std::string text = readText(recording);
    EXPECT_EQ(countLinesStarting(text, "zoom \"p\" "), 2u) << text;
    closeAndDelete(handle);

    // A fresh window with the same curves runs the recording and shows the same picture.
    handle = qt_zelwave_create_main_window(nullptr, 10, 10, 700, 500, 0);
    ASSERT_NE(handle, nullptr);
    setUpPlot(handle);
    plot = findPlotWidget(handle, "p");
    ASSERT_NE(plot, nullptr);
    EXPECT_EQ(plot->grab().toImage(), unzoomed) << "the same start";
    EXPECT_EQ(qt_zelwave_execute_command(handle, ("execute_command_file \"" + recording + "\"").c_str()),
              vx_code_queued);
    EXPECT_TRUE(pumpUntil([&] { return qt_zelwave_execute_command(handle, "get_status") != vx_code_queued; }));
    const QImage replayed = plot->grab().toImage();
    ASSERT_EQ(replayed.size(), zoomed.size());
    size_t differences = 0;
    for (int y = 0; y < zoomed.height(); ++y)
        for (int x = 0; x < zoomed.width(); ++x)
            differences += zoomed.pixel(x, y) != replayed.pixel(x, y) ? 1 : 0;
    EXPECT_EQ(differences, 0u);
    closeAndDelete(handle);
}
