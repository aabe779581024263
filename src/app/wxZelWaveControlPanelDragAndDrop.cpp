#include "wxZelWaveControlPanelDragAndDrop.h"

#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFontDatabase>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include <cmath>
#include <cstdio>
#include <utility>
#include <vector>

#include "app/core/cZelWaveXmlParser.h"

namespace vx3 {

namespace zelWaveControlPanel {

namespace {
constexpr int kSamples = 21;
constexpr const char* kXmlFormat = "harlanTessel/zelWaveXml";
constexpr const char* kSectionName = "control panel data";

std::string formatNumber(double value)
{
    char text[32];
    std::snprintf(text, sizeof(text), "%.6g", value);
    return text;
}

// One period of a sine over 0..1, the same in every form.
std::vector<std::pair<std::string, std::string>> samplePairs()
{
    std::vector<std::pair<std::string, std::string>> pairs;
    for (int i = 0; i < kSamples; ++i) {
        double x = static_cast<double>(i) / (kSamples - 1);
        double y = std::sin(2.0 * M_PI * x);
        if (std::fabs(y) < 1e-12)
            y = 0.0;  // no "-2.4e-16" where the sine crosses zero
        pairs.emplace_back(formatNumber(x), formatNumber(y));
    }
    return pairs;
}
}  // namespace

std::string generateCsvData()
{
    std::string text = "x,y\n";
    for (const auto& [x, y] : samplePairs())
        text += x + "," + y + "\n";
    return text;
}

std::string generateHtmlData()
{
    std::string text = "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 3.2//EN\">\n"
                       "<HTML>\n<BODY>\n<TABLE COLS=2 BORDER=1>\n<TBODY>\n"
                       "<TR><TD>x</TD><TD>y</TD></TR>\n";
    for (const auto& [x, y] : samplePairs())
        text += "<TR><TD>" + x + "</TD><TD>" + y + "</TD></TR>\n";
    text += "</TBODY>\n</TABLE>\n</BODY>\n</HTML>\n";
    return text;
}

std::string generateXmlCommandData()
{
    const std::string section = std::string("\"") + kSectionName + "\"";
    std::string points;
    for (const auto& [x, y] : samplePairs())
        points += " " + x + " " + y;
    // "*" is the plot that the text is dropped on.
    return cZelWaveXmlParser::generateCommandXmlString({
        "add_section " + section,
        "add_curve " + section + " \"y\" 0 V s" + points,
        "add_curve_to_plot_by_name \"*\" " + section + " \"y\" 0",
    });
}

std::string generateDragData(int form)
{
    switch (form) {
    case drag_html: return generateHtmlData();
    case drag_xml_command: return generateXmlCommandData();
    default: return generateCsvData();
    }
}

QMimeData* createMimeData(int form, const std::string& text)
{
    auto* data = new QMimeData;
    const QString qtext = QString::fromStdString(text);
    switch (form) {
    case drag_html:
        // A host's HTML table, as a browser or a spreadsheet offers it.
        data->setHtml(qtext);
        break;
    case drag_xml_command:
        data->setData(kXmlFormat, qtext.toUtf8());
        data->setText(qtext);
        break;
    default:
        data->setData("text/csv", qtext.toUtf8());
        data->setText(qtext);
        break;
    }
    return data;
}

}  // namespace zelWaveControlPanel

// ---------------------------------------------------------------------------------------------
wxZelWaveDragSource::wxZelWaveDragSource(QWidget* parent, cProvider provider)
    : QFrame(parent), mProvider(std::move(provider))
{
    setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    setCursor(Qt::OpenHandCursor);
    auto* label = new QLabel("Press here and drag onto a plot", this);
    label->setAlignment(Qt::AlignCenter);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    setMinimumHeight(48);
}

void wxZelWaveDragSource::mousePressEvent(QMouseEvent* event)
{
    mPressed = event->button() == Qt::LeftButton;
    mPressPosition = event->position().toPoint();
}

void wxZelWaveDragSource::mouseMoveEvent(QMouseEvent* event)
{
    if (!mPressed || !(event->buttons() & Qt::LeftButton))
        return;
    if ((event->position().toPoint() - mPressPosition).manhattanLength() < QApplication::startDragDistance())
        return;
    mPressed = false;
    auto* drag = new QDrag(this);
    drag->setMimeData(mProvider());
    drag->exec(Qt::CopyAction);
}

// ---------------------------------------------------------------------------------------------
wxZelWaveDropTarget::wxZelWaveDropTarget(QWidget* parent) : QFrame(parent), mPreferredFormat(zelWaveControlPanel::kXmlFormat)
{
    setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    setAcceptDrops(true);
    mText = new QPlainTextEdit(this);
    mText->setReadOnly(true);
    mText->setPlaceholderText("Drop curves from a plot or the browser here.");
    mText->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    // The text shows the drop; the frame takes it.
    mText->setAcceptDrops(false);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(mText);
}

QString wxZelWaveDropTarget::getShownText() const
{
    return mText->toPlainText();
}

void wxZelWaveDropTarget::showMimeData(const QMimeData& data)
{
    QString text = "Formats:\n";
    for (const QString& format : data.formats())
        text += "  " + format + " (" + QString::number(data.data(format).size()) + " bytes)\n";
    QString shown = mPreferredFormat;
    if (!data.hasFormat(shown))
        shown = data.hasText() ? QString("text/plain") : (data.formats().isEmpty() ? QString() : data.formats().front());
    if (!shown.isEmpty())
        text += "\n" + shown + ":\n" + QString::fromUtf8(data.data(shown));
    mText->setPlainText(text);
}

void wxZelWaveDropTarget::dragEnterEvent(QDragEnterEvent* event)
{
    event->acceptProposedAction();
}

void wxZelWaveDropTarget::dragMoveEvent(QDragMoveEvent* event)
{
    event->acceptProposedAction();
}

void wxZelWaveDropTarget::dropEvent(QDropEvent* event)
{
    if (event->mimeData())
        showMimeData(*event->mimeData());
    event->acceptProposedAction();
}

}  // namespace vx3
