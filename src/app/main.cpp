// The stand-alone program: parse the command line, make the application and its style, open the
// main window through the same C interface that hosts use, and run the event loop.
#include <QApplication>
#include <QFileOpenEvent>
#include <QIcon>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>
#include <QWidget>

#include <cmath>
#include <iostream>

#include "base/cCommandLineParser.h"
#include "widgets/qtVxStyle.h"
#include "zelwave.h"

namespace {

class MyApplication : public QApplication {
public:
    MyApplication(int& argc, char** argv) : QApplication(argc, argv) {}
    void* handle = nullptr;

protected:
    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::FileOpen) {
            QString name = static_cast<QFileOpenEvent*>(event)->file();
            std::cout << "Open file " << name.toStdString() << std::endl;
            if (handle)
                qt_zelwave_execute_command(handle, ("open_file \"" + name.toStdString() + "\"").c_str());
            return true;
        }
        return QApplication::event(event);
    }
};

// A sine on a dark square: the program's icon, drawn rather than shipped.
QPixmap makeIcon(int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(QColor(30, 40, 60));
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(QRectF(0, 0, size, size), size / 8.0, size / 8.0);
    QPainterPath path;
    for (int i = 0; i <= size; ++i) {
        double x = i;
        double y = size / 2.0 - std::sin(i * 2.0 * M_PI / size * 1.5) * size * 0.3;
        if (i == 0)
            path.moveTo(x, y);
        else
            path.lineTo(x, y);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(80, 220, 120), size / 14.0));
    painter.drawPath(path);
    return pixmap;
}

}  // namespace

int main(int argc, char** argv)
{
    std::string arguments = vx3::cCommandLineParser::assembleArguments(argc, argv);
    vx3::cCommandLineParser parser;
    bool parsed = parser.parseCommandLine(arguments);
    if (!parsed || parser.helpFlagPresent())
        parser.printUsage(arguments, !parsed);  // and start all the same

    int qtArgc = 1;
    MyApplication application(qtArgc, argv);
    QIcon icon;
    icon.addPixmap(makeIcon(32));
    icon.addPixmap(makeIcon(64));
    QApplication::setWindowIcon(icon);

    QColor window = application.palette().color(QPalette::Window);
    QColor first = vx3::qtVxStyle::deriveToolbarColor(window);
    QColor second = vx3::qtVxStyle::deriveToolbarColor(first);
    auto* style = new vx3::qtVxStyle();
    style->setToolbarButtonBgCol(first, second);
    QApplication::setStyle(style);

    void* handle = qt_zelwave_create_main_window(nullptr, 100, 100, -1, -1, 86);
    if (!handle) {
        std::cerr << "The main window could not be created." << std::endl;
        return 1;
    }
    application.handle = handle;
    qt_zelwave_execute_command(handle, "set_option toolbar_button_style plain");
    qt_zelwave_execute_command(handle, "load_available_plugins");
    static_cast<QWidget*>(handle)->show();
    qt_zelwave_process_command_line(handle, arguments.c_str());
    return application.exec();
}
