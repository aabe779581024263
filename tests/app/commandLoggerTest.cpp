// The command logger, offscreen: commands reach it from a command file and from the socket on the
// background thread, and its buttons act through commands.
#include <QPushButton>
#include <QTest>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <thread>
#include <vector>

#include "toolWindowsTestSupport.h"
#include "wxZelWaveCommandLogger.h"

namespace {

using namespace zwtest;

class CommandLogger : public cViewerTest {
protected:
    vx3::wxZelWaveCommandLogger* logger() { return mViewer->commandLogger(); }
    std::string text() { return logger() ? logger()->getText().toStdString() : std::string(); }
    // Lines reach the logger by an event: wait until the text ends as expected.
    bool waitForTextEnding(const std::string& end)
    {
        return pumpUntil([&] {
            std::string now = text();
            return now.size() >= end.size() && now.compare(now.size() - end.size(), end.size(), end) == 0;
        });
    }
};

// A listening tool on the loopback that the viewer connects to; its dialogue runs on a thread.
class cPeer {
public:
    cPeer()
    {
        mListener = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        bind(mListener, reinterpret_cast<sockaddr*>(&address), sizeof(address));
        listen(mListener, 1);
        socklen_t length = sizeof(address);
        getsockname(mListener, reinterpret_cast<sockaddr*>(&address), &length);
        mPort = ntohs(address.sin_port);
        timeval timeout{60, 0};
        setsockopt(mListener, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof(timeout));
    }
    ~cPeer()
    {
        if (mConnection >= 0)
            close(mConnection);
        close(mListener);
    }
    unsigned port() const { return mPort; }
    bool accept()
    {
        mConnection = ::accept(mListener, nullptr, nullptr);
        if (mConnection < 0)
            return false;
        timeval timeout{60, 0};
        setsockopt(mConnection, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof(timeout));
        return true;
    }
    std::string line()
    {
        while (mPending.find('\n') == std::string::npos) {
            char buffer[4096];
            ssize_t count = recv(mConnection, buffer, sizeof(buffer), 0);
            if (count <= 0)
                return "<closed>";
            mPending.append(buffer, static_cast<size_t>(count));
        }
        size_t end = mPending.find('\n');
        std::string result = mPending.substr(0, end);
        mPending.erase(0, end + 1);
        return result;
    }
    std::string ask(const std::string& command)
    {
        std::string text = command + "\n";
        if (send(mConnection, text.data(), text.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(text.size()))
            return "<send failed>";
        return line();
    }

private:
    int mListener = -1;
    int mConnection = -1;
    unsigned mPort = 0;
    std::string mPending;
};

TEST_F(CommandLogger, CommandFileLinesAndTheirResultsInOrder)
{
    std::string file = writeFile("session.cmd",
                                 "show_command_logger 1\n"
                                 "# a comment is not a command\n"
                                 "add_section \"tran\"\n"
                                 "add_curve \"tran\" \"v(out)\" 0 V s 0 0 1e-9 1\n"
                                 "not_a_command 1 2\n"
                                 "get_number_of_sections\n"
                                 "   get_curve_name \"tran\" 0   \n"
                                 "get_curve_name \"tran\" 7\n"
                                 "comment_start\n"
                                 "add_section \"inside a comment block\"\n"
                                 "comment_end\n"
                                 "get_section_name 0\n");
    // The file runs on the background thread; the logger is made by its first line.
    EXPECT_EQ(execute("execute_command_file \"" + file + "\""), 11);
    const std::string expected = "> add_section \"tran\"\n"
                                 "ok\n"
                                 "> add_curve \"tran\" \"v(out)\" 0 V s 0 0 1e-9 1\n"
                                 "ok\n"
                                 "> get_number_of_sections\n"
                                 "1\n"
                                 "> get_curve_name \"tran\" 0\n"
                                 "v(out)\n"
                                 "> get_curve_name \"tran\" 7\n"
                                 "error\n"
                                 "> comment_start\n"
                                 "ok\n"
                                 "> comment_end\n"
                                 "ok\n"
                                 "> get_section_name 0\n"
                                 "tran";
    ASSERT_TRUE(waitForTextEnding("> get_section_name 0\ntran")) << text();
    EXPECT_EQ(text(), expected);
    EXPECT_TRUE(logger()->isVisible());
    EXPECT_TRUE(pumpUntil([this] { return !mViewer->checkTaskRunning(); }));

    // A text of several lines from the main thread: each command with its own result.
    EXPECT_EQ(execute("get_number_of_sections\nget_section_number_of_curves \"tran\""), 0);
    ASSERT_TRUE(waitForTextEnding("> get_number_of_sections\n1\n> get_section_number_of_curves \"tran\"\n1"))
        << text();
}

TEST_F(CommandLogger, SocketSessionOnTheBackgroundThread)
{
    EXPECT_EQ(execute("show_command_logger 1"), 0);
    ASSERT_NE(logger(), nullptr);
    EXPECT_EQ(text(), "") << "the command that makes the logger is not in it, nor its result";

    cPeer peer;
    std::atomic<int> stage{0};
    std::vector<std::string> replies;
    std::thread tool([&] {
        if (!peer.accept())
            return;
        replies.push_back(peer.line());
        replies.push_back(peer.ask("add_section \"socket data\""));
        replies.push_back(peer.ask("get_number_of_sections"));
        replies.push_back(peer.ask("bogus_command"));
        replies.push_back(peer.ask("get_section_name 0"));
        stage = 1;
        // The main thread uses the logger while this session holds the command lock.
        while (stage != 2)
            usleep(1000);
        replies.push_back(peer.ask("enable_command_logger 0"));
        replies.push_back(peer.ask("get_number_of_sections"));
        replies.push_back(peer.ask("enable_command_logger 1"));
        replies.push_back(peer.ask("shut_down_interactive_socket"));
        stage = 3;
    });
    EXPECT_EQ(execute("start_interactive_socket 127.0.0.1 " + std::to_string(peer.port())), 11);
    ASSERT_TRUE(pumpUntil([&] { return stage == 1; })) << "the peer's first commands were answered";
    ASSERT_TRUE(waitForTextEnding("> get_section_name 0\nsocket data")) << text();

    // The Close button while the background task holds the lock: the command is still performed.
    auto* close = findButton<QPushButton>(logger(), "Close");
    ASSERT_NE(close, nullptr);
    QTest::mouseClick(close, Qt::LeftButton);
    EXPECT_FALSE(logger()->isVisible());
    EXPECT_FALSE(logger()->checkIsShown());
    EXPECT_EQ(execute("show_command_logger 1"), 0) << "allowed on the main thread while the lock is held";
    EXPECT_TRUE(logger()->isVisible());
    EXPECT_EQ(execute("get_number_of_sections"), 1) << "other commands are refused while the session runs";
    stage = 2;
    ASSERT_TRUE(pumpUntil([&] { return stage == 3; }));
    tool.join();
    ASSERT_TRUE(pumpUntil([this] { return !mViewer->checkTaskRunning(); }));

    EXPECT_EQ(replies, (std::vector<std::string>{"0", "0", "0 \"1\"", "1", "0 \"socket data\"", "0", "0 \"1\"", "0",
                                                 "0"}));
    const std::string expected = "> start_interactive_socket 127.0.0.1 " + std::to_string(peer.port()) +
                                 "\n"
                                 "queued\n"
                                 "> add_section \"socket data\"\n"
                                 "ok\n"
                                 "> get_number_of_sections\n"
                                 "1\n"
                                 "> get_section_name 0\n"
                                 "socket data\n"
                                 "> enable_command_logger 0\n"
                                 "ok\n"
                                 "> shut_down_interactive_socket\n"
                                 "ok";
    ASSERT_TRUE(waitForTextEnding("> shut_down_interactive_socket\nok")) << text();
    EXPECT_EQ(text(), expected);
}

TEST_F(CommandLogger, ButtonsAndTheCommandsThatControlIt)
{
    EXPECT_EQ(execute("clear_command_logger 1"), 0) << "no logger yet: nothing to clear, no failure";
    EXPECT_EQ(execute("show_command_logger 0"), 0) << "hiding a logger never made makes none";
    EXPECT_EQ(logger(), nullptr);
    EXPECT_EQ(execute("show_command_logger 1"), 0);
    ASSERT_NE(logger(), nullptr);
    EXPECT_EQ(execute("add_section \"a\""), 0);
    ASSERT_TRUE(waitForTextEnding("> add_section \"a\"\nok"));

    // Close goes through the command, which is logged with its result before the window goes.
    QTest::mouseClick(findButton<QPushButton>(logger(), "Close"), Qt::LeftButton);
    EXPECT_FALSE(logger()->isVisible());
    ASSERT_TRUE(waitForTextEnding("> add_section \"a\"\nok\n> show_command_logger 0\nok")) << text();
    EXPECT_EQ(execute("add_section \"hidden\""), 0);
    EXPECT_EQ(execute("show_command_logger 1"), 0);
    EXPECT_EQ(execute("get_number_of_sections"), 0);
    ASSERT_TRUE(waitForTextEnding("> get_number_of_sections\n2")) << text();
    EXPECT_EQ(text().find("hidden"), std::string::npos) << "a hidden logger records nothing";

    // Clear empties the window; the command does the same and leaves no line of its own.
    QTest::mouseClick(findButton<QPushButton>(logger(), "Clear"), Qt::LeftButton);
    EXPECT_EQ(text(), "");
    EXPECT_EQ(execute("get_section_name 1"), 0);
    ASSERT_TRUE(waitForTextEnding("> get_section_name 1\nhidden"));
    EXPECT_EQ(execute("clear_command_logger 0"), 0);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(text(), "> get_section_name 1\nhidden") << "a false flag clears nothing";
    EXPECT_EQ(execute("clear_command_logger 1"), 0);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(text(), "");

    // Disabled, it records nothing until enabled again; the setting holds for a logger made later.
    EXPECT_EQ(execute("enable_command_logger 0"), 0);
    EXPECT_EQ(execute("get_number_of_sections"), 0);
    EXPECT_EQ(execute("enable_command_logger 1"), 0);
    EXPECT_EQ(execute("get_curve_name \"a\" 0"), 1);
    ASSERT_TRUE(waitForTextEnding("> get_curve_name \"a\" 0\nerror")) << text();
    EXPECT_EQ(text(), "> enable_command_logger 0\nok\n> get_curve_name \"a\" 0\nerror");
}

}  // namespace
