// The control panel, offscreen: its buttons send the exact command texts through the viewer's
// command door, Communication shows the outcomes, and the drag sources carry readable data.
#include <QCheckBox>
#include <QComboBox>
#include <QDropEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

#include <sys/wait.h>

#include <cstdio>
#include <memory>
#include <set>
#include <sstream>
#include <vector>

#include "app/core/cZelWaveXmlParser.h"
#include "toolWindowsTestSupport.h"
#include "wxZelWaveCommandLogger.h"
#include "wxZelWaveControlPanel.h"
#include "wxZelWaveControlPanelDragAndDrop.h"

namespace {

using namespace zwtest;
using Lines = std::vector<std::string>;

class ControlPanel : public cViewerTest {
protected:
    void SetUp() override
    {
        cViewerTest::SetUp();
        ASSERT_EQ(execute("show_control_panel 1"), 0);
        mPanel = mViewer->controlPanel();
        ASSERT_NE(mPanel, nullptr);
        ASSERT_TRUE(mPanel->isVisible());
        mPanel->setFileChooser([this](QWidget*, const QString& title) {
            mDialogTitles.push_back(title.toStdString());
            return QString::fromStdString(mChosenFile);
        });
    }

    Lines communication() const
    {
        Lines lines;
        std::istringstream in(mPanel->getCommunicationText().toStdString());
        for (std::string line; std::getline(in, line);)
            lines.push_back(line);
        return lines;
    }
    // The lines that the actions since the last call added.
    Lines newLines()
    {
        Lines all = communication();
        Lines added(all.begin() + static_cast<long>(std::min(mSeen, all.size())), all.end());
        mSeen = all.size();
        return added;
    }
    void showPage(const QString& name)
    {
        auto* notebook = mPanel->findChild<QTabWidget*>();
        for (int i = 0; i < notebook->count(); ++i)
            if (notebook->tabText(i) == name)
                notebook->setCurrentIndex(i);
        ASSERT_EQ(notebook->tabText(notebook->currentIndex()), name);
    }
    // A button of the page shown: two pages may have buttons of the same text.
    void click(const QString& text)
    {
        auto* button = findButton(mPanel->findChild<QTabWidget*>()->currentWidget(), text);
        ASSERT_NE(button, nullptr) << "no single button \"" << text.toStdString() << "\"";
        // A check box takes clicks on its box and its text only, at its left end.
        const bool box = qobject_cast<QCheckBox*>(button) != nullptr;
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier,
                          box ? QPoint(6, button->height() / 2) : button->rect().center());
    }
    template <typename T>
    T* child(const char* name)
    {
        return mPanel->findChild<T*>(name);
    }
    // Offscreen pictures of the windows, for a person to look at; only when asked for.
    void grab(QWidget* widget, const std::string& name)
    {
        const char* dir = std::getenv("ZW_SCREENSHOT_DIR");
        if (dir && *dir)
            widget->grab().save(QString::fromStdString(std::string(dir) + "/" + name + ".png"));
    }

    vx3::wxZelWaveControlPanel* mPanel = nullptr;
    std::vector<std::string> mDialogTitles;
    std::string mChosenFile;
    size_t mSeen = 0;
};

TEST_F(ControlPanel, CommandsPageSendsItsCommandsAndShowsTheOutcomes)
{
    showPage("Commands");
    mChosenFile = writeFile("wave.csv", "time,v(out)\n0,0\n1e-9,1\n2e-9,0.5\n");
    click("Open File");
    Lines lines = newLines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], "open_file \"" + mChosenFile + "\"");
    EXPECT_TRUE(lines[1] == "ok" || lines[1] == "queued") << lines[1];
    ASSERT_TRUE(pumpUntil([this] { return ask("get_number_of_sections") == "1"; }));
    mSeen = communication().size();

    mChosenFile = writeFile("two.cmd", "add_section \"from the file\"\nno_such_command\n");
    click("Execute Command File");
    EXPECT_EQ(newLines(), (Lines{"execute_command_file \"" + mChosenFile + "\"", "queued"}));
    EXPECT_EQ(mDialogTitles, (std::vector<std::string>{"Open Waveform File", "Open Command File"}));
    ASSERT_TRUE(pumpUntil([this] { return !mViewer->checkTaskRunning(); }));
    // The file's result, kept for the first status request: a line failed, so "error".
    click("Get Status");
    EXPECT_EQ(newLines(), (Lines{"get_status", "error"}));

    // A cancelled dialog sends nothing.
    mChosenFile.clear();
    click("Open File");
    EXPECT_TRUE(newLines().empty());

    auto* text = child<QLineEdit>("command_text");
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->placeholderText(), "<enter your command here>");
    QTest::keyClicks(text, "get_section_name 1");
    click("Execute Text Command");
    EXPECT_EQ(newLines(), (Lines{"get_section_name 1", "from the file"}));
    text->setText("get_curve_name \"from the file\" 3");
    QTest::keyClick(text, Qt::Key_Return);
    EXPECT_EQ(newLines(), (Lines{"get_curve_name \"from the file\" 3", "error"}));

    click("Help");
    lines = newLines();
    ASSERT_GT(lines.size(), 100u) << "one line per command of the language";
    EXPECT_EQ(lines[0], "help");
    EXPECT_NE(std::find_if(lines.begin(), lines.end(),
                           [](const std::string& line) { return line.rfind("show_command_logger", 0) == 0; }),
              lines.end());

    click("Get Configuration File Name");
    lines = newLines();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[0], "get_configuration_file_name");
    click("Save Configuration");
    EXPECT_EQ(newLines().at(0), "save_configuration_file");
    click("Read Configuration");
    EXPECT_EQ(newLines().at(0), "read_configuration_file");
    click("Close All Files");
    EXPECT_EQ(newLines(), (Lines{"close_all", "ok"}));
    EXPECT_EQ(ask("get_number_of_sections"), "0");
    grab(mPanel, "control_panel_commands");
    showPage("Communication");
    grab(mPanel, "control_panel_communication");
}

TEST_F(ControlPanel, DataAndPlotPagesBuildTheirCommandsFromTheSelection)
{
    ASSERT_EQ(execute("add_section \"tran\""), 0);
    ASSERT_EQ(execute("add_curve \"tran\" \"v(out)\" 0 V s 0 0 1 1"), 0);
    ASSERT_EQ(execute("add_curve \"tran\" \"i(r 1)\" 0 A s 0 0 1 2"), 0);
    showPage("Data");
    click("Read Sections");
    EXPECT_EQ(newLines(), (Lines{"get_number_of_sections", "1", "get_section_name 0", "tran",
                                 "get_section_number_of_curves \"tran\"", "2",
                                 "get_section_number_of_sweep_variables \"tran\"", "0", "get_curve_name \"tran\" 0",
                                 "v(out)", "get_curve_name \"tran\" 1", "i(r 1)"}));
    auto* curves = mPanel->findChild<QListWidget*>();
    ASSERT_EQ(curves->count(), 2);
    click("Read Plots");
    EXPECT_EQ(newLines().at(0), "get_number_of_plots");

    curves->setCurrentRow(1);
    child<QComboBox>("data_plot")->setCurrentText("plot 1");
    click("Plot Curve");
    Lines lines = newLines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], "add_curve_to_plot_by_name \"plot 1\" \"tran\" \"i(r 1)\" 0");
    click("Highlight Curve");
    EXPECT_EQ(newLines().at(0), "highlight_curve \"tran\" \"i(r 1)\" 1");
    findButton<QCheckBox>(mPanel, "Unhighlight others")->setChecked(false);
    click("Highlight Curve");
    EXPECT_EQ(newLines().at(0), "highlight_curve \"tran\" \"i(r 1)\" 0");
    grab(mPanel, "control_panel_data");

    showPage("New Plot");
    auto* type = child<QComboBox>("new_plot_type");
    EXPECT_EQ(type->count(), 4);
    type->setCurrentText("digital");
    click("Add New Plot");
    lines = newLines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], "add_plot \"analog 1\" digital 1 1");
    findButton<QCheckBox>(mPanel, "Create New Tab")->setChecked(false);
    type->setCurrentText("fft");
    click("Add New Plot");
    lines = newLines();
    // After a plot was made the name counts on; else it stays.
    EXPECT_TRUE(lines.at(0) == "add_plot \"analog 1\" fft 0 1" || lines.at(0) == "add_plot \"analog 2\" fft 0 1")
        << lines.at(0);
    grab(mPanel, "control_panel_new_plot");

    showPage("Existing Plots");
    child<QComboBox>("existing_plot")->setCurrentText("analog 1");
    click("Clear Plot");
    EXPECT_EQ(newLines().at(0), "clear_plot \"analog 1\"");
    click("Make Plot Visible");
    EXPECT_EQ(newLines().at(0), "make_plot_visible \"analog 1\"");

    showPage("Gui Options");
    QTest::keyClick(child<QComboBox>("tool_bar_style"), Qt::Key_Down);
    EXPECT_EQ(newLines(), (Lines{"set_gui_option tool_bar_style none", "ok"}));
    QTest::keyClick(child<QComboBox>("side_bar_style"), Qt::Key_Down);
    EXPECT_EQ(newLines(), (Lines{"set_gui_option side_bar_style none", "ok"}));
    click("Show menu bar.");
    EXPECT_EQ(newLines(), (Lines{"set_gui_option show_menu_bar 0", "ok"}));
    click("Use notebook with tabs.");
    EXPECT_EQ(newLines(), (Lines{"set_gui_option use_notebook_with_tabs 0", "ok"}));
    grab(mPanel, "control_panel_gui_options");
}

TEST_F(ControlPanel, CallbacksPagePrintsNotificationsWhileRegistered)
{
    showPage("Callbacks");
    auto* notifications = findButton<QCheckBox>(mPanel, "Register notifications callback.");
    ASSERT_NE(notifications, nullptr);
    for (const char* box : {"Register curve highlighted callback.", "Register curve un-highlighted callback.",
                            "Register curve activated callback."})
        EXPECT_NE(findButton<QCheckBox>(mPanel, box), nullptr) << box;
    notifications->setChecked(true);
    EXPECT_EQ(execute("first_unknown_command"), 1);
    const std::string first = "Notification : logger_message\n"
                              "Log message with severity 3\n"
                              "           Interactive Mode: parsing of the command \"first_unknown_command\" failed.";
    ASSERT_TRUE(pumpUntil([&] { return mPanel->getCallbackLogText().toStdString().find(first) != std::string::npos; }))
        << mPanel->getCallbackLogText().toStdString();

    // Unregistered, the next message goes by unseen; registered again, the one after it is shown.
    notifications->setChecked(false);
    EXPECT_EQ(execute("second_unknown_command"), 1);
    QCoreApplication::sendPostedEvents();
    notifications->setChecked(true);
    EXPECT_EQ(execute("third_unknown_command"), 1);
    ASSERT_TRUE(pumpUntil([&] { return mPanel->getCallbackLogText().contains("third_unknown_command"); }));
    EXPECT_FALSE(mPanel->getCallbackLogText().contains("second_unknown_command"));
    grab(mPanel, "control_panel_callbacks");
    click("Clear");
    EXPECT_EQ(mPanel->getCallbackLogText(), "");

    // Closing the window with the panel's table registered must leave no call into it behind.
    notifications->setChecked(true);
    EXPECT_EQ(execute("fourth_unknown_command"), 1);
}

TEST_F(ControlPanel, DragSourcesCarryTheirDataAndTheDropTargetShowsIt)
{
    showPage("Drag And Drop");
    click("Initialize CSV data");
    std::unique_ptr<QMimeData> csv(mPanel->createDragData());
    ASSERT_TRUE(csv->hasText());
    const std::string csvText = csv->text().toStdString();
    EXPECT_EQ(csvText.rfind("x,y\n0,0\n", 0), 0u) << csvText;
    EXPECT_EQ(csv->data("text/csv").toStdString(), csvText);

    click("Initialize HTML data");
    std::unique_ptr<QMimeData> html(mPanel->createDragData());
    ASSERT_TRUE(html->hasHtml());
    writeFile("table.html", html->html().toStdString());
    writeFile("table.csv", csvText);
    std::string command = "/usr/bin/python3 " ZW_TEST_DIR "/html_table_check.py " + path("table.html") + " " +
                          path("table.csv") + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string output;
    char buffer[1024];
    for (size_t count; (count = fread(buffer, 1, sizeof(buffer), pipe)) > 0;)
        output.append(buffer, count);
    int status = pclose(pipe);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << output;
    EXPECT_EQ(output, "ok\n");

    // The XML command form, dropped on plot "p": it makes its section and names "p" as the plot.
    click("Initialize XML command");
    std::unique_ptr<QMimeData> xml(mPanel->createDragData());
    ASSERT_TRUE(xml->hasFormat("harlanTessel/zelWaveXml"));
    const std::string xmlText = xml->data("harlanTessel/zelWaveXml").toStdString();
    EXPECT_EQ(xmlText.rfind("<?xml version=\"1.0\" ?>\n<vx_zelwave_command>", 0), 0u) << xmlText;
    vx3::cZelWaveXmlParser parser;
    ASSERT_TRUE(parser.parseXmlString(xmlText));
    EXPECT_EQ(parser.commands().size(), 3u);
    ASSERT_EQ(execute("show_command_logger 1"), 0);
    mViewer->executeXmlCommand(xmlText, "p");
    EXPECT_EQ(ask("get_section_name 0"), "control panel data");
    EXPECT_EQ(ask("get_section_number_of_curves \"control panel data\""), "1");
    EXPECT_EQ(ask("get_curve_name \"control panel data\" 0"), "y");
    ASSERT_TRUE(pumpUntil([this] {
        return mViewer->commandLogger()->getText().contains(
            "> add_curve_to_plot_by_name \"p\" \"control panel data\" \"y\" 0");
    })) << mViewer->commandLogger()->getText().toStdString();

    // What arrives on the drop target is listed by format, the XML shown first.
    auto* target = mPanel->findChild<vx3::wxZelWaveDropTarget*>();
    ASSERT_NE(target, nullptr);
    EXPECT_TRUE(target->acceptDrops());
    target->showMimeData(*xml);
    const std::string shown = target->getShownText().toStdString();
    EXPECT_NE(shown.find("  harlanTessel/zelWaveXml ("), std::string::npos) << shown;
    EXPECT_NE(shown.find("harlanTessel/zelWaveXml:\n" + xmlText), std::string::npos) << shown;
    mPanel->controlPanelVirtualSetDropFormat("text/csv");
    target->showMimeData(*csv);
    EXPECT_NE(target->getShownText().toStdString().find("text/csv:\n" + csvText), std::string::npos);
    grab(mPanel, "control_panel_drag_and_drop");
    grab(mViewer->commandLogger(), "command_logger");
}

}  // namespace
