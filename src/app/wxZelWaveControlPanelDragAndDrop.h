// The page Drag And Drop of the control panel: what data a host can drop on a plot (a CSV text,
// an HTML table, an XML command text), a source to drag it from and a target that shows what the
// viewer drags out.
#pragma once

#include <QFrame>

#include <functional>
#include <string>

class QLabel;
class QMimeData;
class QPlainTextEdit;

namespace vx3 {

namespace zelWaveControlPanel {
enum drag_form : int { drag_csv = 0, drag_html = 1, drag_xml_command = 2 };
// The sample data: a header line "x,y" and number pairs of one period of a sine.
std::string generateCsvData();
// The same pairs as an HTML table whose first row holds x and y.
std::string generateHtmlData();
// Commands that make a section with the same curve and plot it on the plot it is dropped on.
std::string generateXmlCommandData();
std::string generateDragData(int form);
// The mime formats under which a host offers each form.
QMimeData* createMimeData(int form, const std::string& text);
}  // namespace zelWaveControlPanel

// A frame that starts a drag with the data its provider makes at that moment.
class wxZelWaveDragSource : public QFrame {
    Q_OBJECT
public:
    using cProvider = std::function<QMimeData*()>;
    wxZelWaveDragSource(QWidget* parent, cProvider provider);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    cProvider mProvider;
    QPoint mPressPosition;
    bool mPressed = false;
};

// A frame that takes any drop and shows its formats and its text.
class wxZelWaveDropTarget : public QFrame {
    Q_OBJECT
public:
    explicit wxZelWaveDropTarget(QWidget* parent);
    // The format whose content is shown first; the others are listed by name and size.
    void setPreferredFormat(const QString& format) { mPreferredFormat = format; }
    QString getShownText() const;
    void showMimeData(const QMimeData& data);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    QPlainTextEdit* mText = nullptr;
    QString mPreferredFormat;
};

}  // namespace vx3
