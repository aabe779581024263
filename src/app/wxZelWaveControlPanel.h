// The control panel: a window for trying the interface. Every button builds the text of a command
// and sends it through the narrow command interface, as a host would; the page Communication shows
// each command with its outcome.
#pragma once

#include <QString>

#include <functional>
#include <string>
#include <vector>

#include "widgets/qtVxWidget.h"
#include "wxZelWaveWidgetWrapper.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QMimeData;
class QPlainTextEdit;
class QPushButton;
class QTabWidget;

namespace vx3 {

class wxZelWaveDragSource;
class wxZelWaveDropTarget;

namespace zelWaveControlPanel {
// The word of an outer return code ("ok", "error", ..., "interrupted"); "-" outside the list.
const char* getReturnCodeWord(int code);
// The word of a notification type ("window_closed", ...); "-" for a number without one.
const char* getNotificationWord(long type);
// A name as one argument of a command: in double quotes, so that blanks stay inside.
std::string quoteArgument(const std::string& name);
// The lines that the outcome of a command adds to the page Communication.
std::vector<std::string> describeOutcome(int code, const std::vector<std::string>& results);
// What the call-backs print: one line for a curve, several for a notification.
std::string describeCurveCallback(const std::string& section, const std::string& curve, const std::string& what);
std::vector<std::string> describeNotification(const _vx_zelwave_callback_notification_type& notification);
// Plot names made by the page New Plot count up: "analog 1" is followed by "analog 2".
std::string proposeNextPlotName(const std::string& name);
}  // namespace zelWaveControlPanel

class wxZelWaveControlPanel : public qtVxWidget, public zelWaveControlPanel::cControlPanelVirtual {
    Q_OBJECT
public:
    // target performs the commands; the panel does not own it.
    wxZelWaveControlPanel(QWidget* parent, zelWaveControlPanel::cControlPanelVirtual* target);
    ~wxZelWaveControlPanel() override;

    // cControlPanelVirtual: the panel's own door adds the command and its outcome to Communication.
    int controlPanelVirtualExecuteCommand(const std::string& command) override;
    void controlPanelVirtualRegisterCallback(const _vx_zelwave_callback_type* callbacks) override;
    const std::vector<std::string>& controlPanelVirtualGetCommandResults() override { return mResults; }
    void controlPanelVirtualNewPlotCreated(const std::string& plotName) override;
    void controlPanelVirtualSetDropFormat(const std::string& format) override;

    // The owner goes before its Qt children: it cuts the way back first.
    void detachTarget();
    // The file dialogs of the page Commands; a test or a host may answer them itself.
    using cFileChooser = std::function<QString(QWidget* parent, const QString& title)>;
    void setFileChooser(cFileChooser chooser) { mFileChooser = std::move(chooser); }

    QString getCommunicationText() const;
    QString getCallbackLogText() const;
    // Safe from any thread: the line reaches the log on the main thread.
    void appendCallbackLog(const std::string& line);
    // The data that the drag source carries now.
    QMimeData* createDragData() const;
    QSize sizeHint() const override { return QSize(780, 540); }
    QSize minimumSizeHint() const override { return QSize(360, 300); }

private:
    QWidget* buildCommandsPage();
    QWidget* buildDataPage();
    QWidget* buildNewPlotPage();
    QWidget* buildExistingPlotsPage();
    QWidget* buildGuiOptionsPage();
    QWidget* buildCommunicationPage();
    QWidget* buildCallbacksPage();
    QWidget* buildDragAndDropPage();
    QPushButton* addButton(const QString& text, std::function<void()> action);

    void openFile(const QString& title, const std::string& command);
    void executeTextCommand();
    void readSections();
    void readCurvesOfSection(int index);
    void readPlots();
    std::string selectedPlotName(const QComboBox* combo) const;
    void plotCurve();
    void highlightCurve();
    void addNewPlot();
    void setGuiOption(const std::string& key, const std::string& value);
    void updateCallbackRegistration();
    void initializeDragData(int form);
    void appendCommunication(const std::string& line);

    zelWaveControlPanel::cControlPanelVirtual* mTarget;
    std::vector<std::string> mResults;
    cFileChooser mFileChooser;
    QTabWidget* mNotebook = nullptr;

    QLineEdit* mCommandText = nullptr;
    QComboBox* mSections = nullptr;
    QLabel* mSectionInfo = nullptr;
    QListWidget* mCurves = nullptr;
    QComboBox* mDataPlot = nullptr;
    QCheckBox* mUnhighlightOthers = nullptr;
    QLineEdit* mNewPlotName = nullptr;
    QComboBox* mNewPlotType = nullptr;
    QCheckBox* mNewTab = nullptr;
    QComboBox* mExistingPlot = nullptr;
    QPlainTextEdit* mCommunication = nullptr;
    QCheckBox* mRegisterNotifications = nullptr;
    QCheckBox* mRegisterHighlighted = nullptr;
    QCheckBox* mRegisterUnhighlighted = nullptr;
    QCheckBox* mRegisterActivated = nullptr;
    QPlainTextEdit* mCallbackLog = nullptr;
    bool mCallbacksRegistered = false;
    QPlainTextEdit* mDragText = nullptr;
    wxZelWaveDragSource* mDragSource = nullptr;
    wxZelWaveDropTarget* mDropTarget = nullptr;
    int mDragForm = 0;
    // Read with the sections, so that a selection asks for the curves of the right one.
    std::vector<long> mSectionCurveCounts;
};

}  // namespace vx3
