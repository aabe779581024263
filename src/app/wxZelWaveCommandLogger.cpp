#include "wxZelWaveCommandLogger.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "wxZelWaveWidgetWrapper.h"

namespace vx3 {

wxZelWaveCommandLogger::wxZelWaveCommandLogger(QWidget* parent,
                                               zelWaveControlPanel::cControlPanelVirtual* executor)
    : qtVxWidget(parent), mExecutor(executor), mMutex("command logger")
{
    setWindowFlag(Qt::Window);
    setWindowTitle("Command Logger");
    setObjectName("zelwave_command_logger");
    // A text window, not a plot: no tracking of the mouse, focus by click or tab.
    setMouseTracking(false);
    setFocusPolicy(Qt::NoFocus);

    mText = new QPlainTextEdit(this);
    mText->setReadOnly(true);
    mText->setLineWrapMode(QPlainTextEdit::NoWrap);
    mText->setMaximumBlockCount(zelWaveCommandLogger::max_lines);
    mText->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    mText->setObjectName("command_logger_text");

    mClearButton = new QPushButton("Clear", this);
    mCloseButton = new QPushButton("Close", this);
    connect(mClearButton, &QPushButton::clicked, this, [this] { clear(); });
    connect(mCloseButton, &QPushButton::clicked, this, [this] { closeButtonPressed(); });

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(mClearButton);
    buttons->addWidget(mCloseButton);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(mText, 1);
    layout->addLayout(buttons);
    resize(sizeHint());
}

wxZelWaveCommandLogger::~wxZelWaveCommandLogger() = default;

void wxZelWaveCommandLogger::addCommand(const std::string& text)
{
    queueLine("> " + text);
}

void wxZelWaveCommandLogger::addCommandResult(const std::string& text)
{
    queueLine(text);
}

void wxZelWaveCommandLogger::queueLine(std::string line)
{
    bool post = false;
    {
        cVxScopedLock lock(mMutex);
        mQueue.push_back(std::move(line));
        // One event carries everything queued until it is served.
        post = !mEventPosted;
        mEventPosted = true;
    }
    if (post)
        QCoreApplication::postEvent(this, new QEvent(static_cast<QEvent::Type>(zelWaveCommandLogger::thread_event)));
}

void wxZelWaveCommandLogger::emptyMessageQueue()
{
    std::list<std::string> lines;
    {
        cVxScopedLock lock(mMutex);
        lines.swap(mQueue);
        mEventPosted = false;
    }
    if (lines.empty())
        return;
    QString block;
    for (const auto& line : lines) {
        if (!block.isEmpty())
            block += '\n';
        block += QString::fromStdString(line);
    }
    mText->appendPlainText(block);
}

void wxZelWaveCommandLogger::clear()
{
    {
        cVxScopedLock lock(mMutex);
        mQueue.clear();
    }
    mText->clear();
}

QString wxZelWaveCommandLogger::getText() const
{
    return mText->toPlainText();
}

void wxZelWaveCommandLogger::closeButtonPressed()
{
    // Through the command, so that a recording or a host sees the logger go.
    if (mExecutor)
        mExecutor->controlPanelVirtualExecuteCommand("show_command_logger 0");
    else
        hide();
}

void wxZelWaveCommandLogger::customEvent(QEvent* event)
{
    if (event->type() == static_cast<QEvent::Type>(zelWaveCommandLogger::thread_event))
        emptyMessageQueue();
    else
        qtVxWidget::customEvent(event);
}

void wxZelWaveCommandLogger::showEvent(QShowEvent* event)
{
    qtVxWidget::showEvent(event);
    mShown = true;
}

void wxZelWaveCommandLogger::hideEvent(QHideEvent* event)
{
    qtVxWidget::hideEvent(event);
    // A minimised logger, or one hidden with its parent, still counts as shown.
    mShown = !isHidden();
}

void wxZelWaveCommandLogger::closeEvent(QCloseEvent* event)
{
    // The title bar's close button acts as the Close button.
    if (event->spontaneous() && mExecutor) {
        event->ignore();
        closeButtonPressed();
        return;
    }
    event->accept();
}

}  // namespace vx3
