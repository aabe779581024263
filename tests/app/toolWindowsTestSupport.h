// What the tests of the command logger and the control panel share: a main window of the viewer
// in a scratch folder of its own, waits for events, and finding widgets by their texts.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QWidget>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "pumpUntil.h"
#include "qtZelWaveMainWindow.h"
#include "widgets/qtVxMainWindow.h"

namespace zwtest {

// The button of a window with exactly this text; null when there is none or more than one.
template <typename Button = QAbstractButton>
Button* findButton(QWidget* root, const QString& text)
{
    Button* found = nullptr;
    for (Button* button : root->findChildren<Button*>()) {
        if (button->text() != text)
            continue;
        if (found)
            return nullptr;
        found = button;
    }
    return found;
}

// A viewer window with HOME in a scratch folder, so that no configuration of a user is touched.
class cViewerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        char pattern[] = "/tmp/zelwave-tools-XXXXXX";
        const char* made = mkdtemp(pattern);
        ASSERT_NE(made, nullptr);
        mDir = made;
        const char* home = std::getenv("HOME");
        mOldHome = home ? home : "";
        setenv("HOME", mDir.c_str(), 1);
        // Menu bar and tool bar, no configuration file: style bits 16 and 2.
        mViewer = new vx3::qtZelWaveMainWindow(nullptr, 0, 0, 900, 600, 16 | 2);
        mWindow = mViewer->window();
        ASSERT_NE(mViewer->explorer(), nullptr);
    }

    void TearDown() override
    {
        if (mWindow) {
            mWindow->close();
            pumpUntil([this] { return mWindow.isNull(); });
        }
        setenv("HOME", mOldHome.c_str(), 1);
        std::error_code error;
        std::filesystem::remove_all(mDir, error);
    }

    std::string path(const std::string& name) const { return mDir + "/" + name; }

    std::string writeFile(const std::string& name, const std::string& content) const
    {
        std::ofstream(path(name)) << content;
        return path(name);
    }

    int execute(const std::string& command) { return mViewer->lockAndExecuteCommand(command); }

    // A command that answers one value, run on the main thread.
    std::string ask(const std::string& command)
    {
        if (execute(command) != 0 || mViewer->getCommandResults().empty())
            return "<failed>";
        return mViewer->getCommandResults().front();
    }

    std::string mDir;
    std::string mOldHome;
    vx3::qtZelWaveMainWindow* mViewer = nullptr;  // deletes itself with its window
    QPointer<QWidget> mWindow;
};

}  // namespace zwtest
