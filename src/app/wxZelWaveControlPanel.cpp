#include "wxZelWaveControlPanel.h"

#include <QFileDialog>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include <cctype>

#include "wxZelWaveControlPanelDragAndDrop.h"

namespace vx3 {

namespace zelWaveControlPanel {

const char* getReturnCodeWord(int code)
{
    static constexpr const char* kWords[] = {"ok",         "error",   "file_not_found", "parse_failed",
                                             "reserved",   "bad_parser_index", "bad_name", "bad_selection",
                                             "bad_index",  "bad_function_arguments", "timeout", "queued",
                                             "bad_pointer", "thread_error", "interrupted"};
    if (code < 0 || code >= static_cast<int>(std::size(kWords)))
        return "-";
    return kWords[code];
}

std::string quoteArgument(const std::string& name)
{
    return "\"" + name + "\"";
}

std::vector<std::string> describeOutcome(int code, const std::vector<std::string>& results)
{
    if (code != vx_code_ok)
        return {getReturnCodeWord(code)};
    if (results.empty())
        return {"ok"};
    return results;
}

std::string proposeNextPlotName(const std::string& name)
{
    size_t digits = name.size();
    while (digits > 0 && std::isdigit(static_cast<unsigned char>(name[digits - 1])))
        --digits;
    if (digits == name.size() || name.size() - digits > 9)
        return name + " 2";
    return name.substr(0, digits) + std::to_string(std::stol(name.substr(digits)) + 1);
}

}  // namespace zelWaveControlPanel

using namespace zelWaveControlPanel;

wxZelWaveControlPanel::wxZelWaveControlPanel(QWidget* parent, cControlPanelVirtual* target)
    : qtVxWidget(parent), mTarget(target)
{
    setWindowFlag(Qt::Window);
    setWindowTitle("Control Panel");
    setObjectName("zelwave_control_panel");
    setMouseTracking(false);
    setFocusPolicy(Qt::NoFocus);
    mFileChooser = [](QWidget* owner, const QString& title) { return QFileDialog::getOpenFileName(owner, title); };

    mNotebook = new QTabWidget(this);
    mNotebook->addTab(buildCommandsPage(), "Commands");
    mNotebook->addTab(buildDataPage(), "Data");
    mNotebook->addTab(buildNewPlotPage(), "New Plot");
    mNotebook->addTab(buildExistingPlotsPage(), "Existing Plots");
    mNotebook->addTab(buildGuiOptionsPage(), "Gui Options");
    mNotebook->addTab(buildCommunicationPage(), "Communication");
    mNotebook->addTab(buildCallbacksPage(), "Callbacks");
    mNotebook->addTab(buildDragAndDropPage(), "Drag And Drop");
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(mNotebook);
    resize(sizeHint());
}

wxZelWaveControlPanel::~wxZelWaveControlPanel()
{
    // The owner must not call into a panel that has gone.
    if (mCallbacksRegistered && mTarget)
        mTarget->controlPanelVirtualRegisterCallback(nullptr);
}

void wxZelWaveControlPanel::detachTarget()
{
    mTarget = nullptr;
}

int wxZelWaveControlPanel::controlPanelVirtualExecuteCommand(const std::string& command)
{
    appendCommunication(command);
    mResults.clear();
    int code = vx_code_bad_pointer;
    if (mTarget) {
        code = mTarget->controlPanelVirtualExecuteCommand(command);
        if (code == vx_code_ok)
            mResults = mTarget->controlPanelVirtualGetCommandResults();
    }
    for (const auto& line : describeOutcome(code, mResults))
        appendCommunication(line);
    return code;
}

void wxZelWaveControlPanel::controlPanelVirtualRegisterCallback(const _vx_zelwave_callback_type* callbacks)
{
    if (mTarget)
        mTarget->controlPanelVirtualRegisterCallback(callbacks);
}

void wxZelWaveControlPanel::controlPanelVirtualSetDropFormat(const std::string& format)
{
    if (mDropTarget)
        mDropTarget->setPreferredFormat(QString::fromStdString(format));
}

void wxZelWaveControlPanel::appendCommunication(const std::string& line)
{
    mCommunication->appendPlainText(QString::fromStdString(line));
}

QString wxZelWaveControlPanel::getCommunicationText() const
{
    return mCommunication->toPlainText();
}

QPushButton* wxZelWaveControlPanel::addButton(const QString& text, std::function<void()> action)
{
    auto* button = new QPushButton(text);
    connect(button, &QPushButton::clicked, this, [action = std::move(action)] { action(); });
    return button;
}

// ---------------------------------------------------------------------------------------------
QWidget* wxZelWaveControlPanel::buildCommandsPage()
{
    auto* page = new QWidget;
    auto* grid = new QGridLayout;
    const std::pair<const char*, std::function<void()>> buttons[] = {
        {"Open File", [this] { openFile("Open Waveform File", "open_file"); }},
        {"Close All Files", [this] { controlPanelVirtualExecuteCommand("close_all"); }},
        {"Execute Command File", [this] { openFile("Open Command File", "execute_command_file"); }},
        {"Get Status", [this] { controlPanelVirtualExecuteCommand("get_status"); }},
        {"Read Configuration", [this] { controlPanelVirtualExecuteCommand("read_configuration_file"); }},
        {"Save Configuration", [this] { controlPanelVirtualExecuteCommand("save_configuration_file"); }},
        {"Get Configuration File Name", [this] { controlPanelVirtualExecuteCommand("get_configuration_file_name"); }},
        {"Help", [this] { controlPanelVirtualExecuteCommand("help"); }},
    };
    int index = 0;
    for (const auto& [text, action] : buttons) {
        grid->addWidget(addButton(text, action), index / 2, index % 2);
        ++index;
    }

    mCommandText = new QLineEdit;
    mCommandText->setPlaceholderText("<enter your command here>");
    mCommandText->setClearButtonEnabled(true);
    mCommandText->setObjectName("command_text");
    connect(mCommandText, &QLineEdit::returnPressed, this, [this] { executeTextCommand(); });
    auto* commandRow = new QHBoxLayout;
    commandRow->addWidget(mCommandText, 1);
    commandRow->addWidget(addButton("Execute Text Command", [this] { executeTextCommand(); }));

    auto* layout = new QVBoxLayout(page);
    layout->addLayout(grid);
    layout->addSpacing(12);
    layout->addLayout(commandRow);
    layout->addStretch(1);
    return page;
}

void wxZelWaveControlPanel::openFile(const QString& title, const std::string& command)
{
    QString name = mFileChooser ? mFileChooser(this, title) : QString();
    if (name.isEmpty())
        return;  // the dialog was cancelled
    controlPanelVirtualExecuteCommand(command + " " + quoteArgument(name.toStdString()));
}

void wxZelWaveControlPanel::executeTextCommand()
{
    std::string text = mCommandText->text().trimmed().toStdString();
    if (text.empty())
        return;
    controlPanelVirtualExecuteCommand(text);
}

QWidget* wxZelWaveControlPanel::buildCommunicationPage()
{
    auto* page = new QWidget;
    mCommunication = new QPlainTextEdit;
    mCommunication->setReadOnly(true);
    mCommunication->setLineWrapMode(QPlainTextEdit::NoWrap);
    mCommunication->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    mCommunication->setObjectName("control_panel_communication");
    mCommunication->setMaximumBlockCount(100000);
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(mCommunication);
    return page;
}

QMimeData* wxZelWaveControlPanel::createDragData() const
{
    return createMimeData(mDragForm, mDragText->toPlainText().toStdString());
}

}  // namespace vx3
