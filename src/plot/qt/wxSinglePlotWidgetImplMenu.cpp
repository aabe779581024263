// The plot's context menu: zoom box forms, views, the edit entries, selected curves and the
// window, in groups, with the rulers, annotations and the radix of bus values.
#include <functional>
#include <QContextMenuEvent>
#include <QInputDialog>
#include <QMenu>

#include "model/derivedCurveFunction.h"
#include "plot/qt/wxSinglePlotWidgetImpl.h"
#include "plot/wxPlotMousePosition.h"

namespace vx3 {

using namespace singlePlotWidgetImpl;

namespace {
std::vector<size_t> highlightedCurves(const std::vector<wxSinglePlotWidgetData>& curves, bool highlighted)
{
    std::vector<size_t> indices;
    for (size_t i = 0; i < curves.size(); ++i)
        if ((curves[i].realHighlighted || curves[i].imagHighlighted) == highlighted)
            indices.push_back(i);
    return indices;
}
}  // namespace

void wxSinglePlotWidgetImpl::contextMenuEvent(QContextMenuEvent* event)
{
    classifyMousePosition(event->pos().x(), event->pos().y());
    QMenu* menu = createMainContextMenu(this);
    if (!menu)
        return;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(event->globalPos());
}

QMenu* wxSinglePlotWidgetImpl::createMainContextMenu(QWidget* parent)
{
    if (wxAnalogPlotVirtual* page = getPage(); page && !page->analogPlotVirtualGetContextMenuActivation())
        return nullptr;
    auto* menu = new QMenu(parent);
    const bool empty = getNbOfCurves() == 0;

    // Zoom functions: each shows a box of its form at the mouse; the next click applies it.
    const std::pair<const char*, int> boxes[] = {
        {"Rectangular Zoom", zoom_in_box},           {"Rectangular Zoom X Direction", zoom_x_box},
        {"Rectangular Zoom Y Direction", zoom_y_box}, {"Rectangular Unzoom", zoom_out_box},
        {"Rectangular Unzoom X Direction", zoom_out_x_box}, {"Rectangular Unzoom Y Direction", zoom_out_y_box},
    };
    for (const auto& [text, style] : boxes) {
        QAction* action = menu->addAction(QString::fromUtf8(text));
        action->setEnabled(!empty && mMousePosition == canvas);
        const int chosen = style;
        connect(action, &QAction::triggered, this, [this, chosen] { setZoomBoxStyle(chosen); });
    }
    QAction* clickBox = menu->addAction("Draw Zoom Box (Shift+Left Mouse Button)");
    clickBox->setEnabled(!empty);
    connect(clickBox, &QAction::triggered, this, [this] { setZoomBoxStyle(click_box); });

    // Views.
    menu->addSeparator();
    QAction* unzoomAction = menu->addAction("Unzoom");
    unzoomAction->setEnabled(!empty && !checkIsUnzoomed());
    connect(unzoomAction, &QAction::triggered, this, [this] {
        if (unzoom())
            recordUserCommand(makeZoomCommandText());
    });
    QAction* previous = menu->addAction("Previous View Port");
    previous->setEnabled(getCurrentViewPortIndex() > 0 && getCurrentViewPortIndex() < getNbOfViewPorts());
    connect(previous, &QAction::triggered, this, [this] {
        if (switchViewPorts(-1))
            recordUserCommand("previous_view_port");
    });
    QAction* next = menu->addAction("Next View Port");
    next->setEnabled(getCurrentViewPortIndex() + 1 < getNbOfViewPorts());
    connect(next, &QAction::triggered, this, [this] {
        if (switchViewPorts(+1))
            recordUserCommand("next_view_port");
    });

    // Edit.
    menu->addSeparator();
    QAction* undoAction = menu->addAction("Undo");
    undoAction->setShortcut(QKeySequence::Undo);
    connect(undoAction, &QAction::triggered, this, [this] {
        if (performUndoAction())
            recordUserCommand("undo");
    });
    QAction* redoAction = menu->addAction("Redo");
    redoAction->setShortcut(QKeySequence::Redo);
    connect(redoAction, &QAction::triggered, this, [this] {
        if (performRedoAction())
            recordUserCommand("redo");
    });
    QAction* copy = menu->addAction("Copy");
    copy->setShortcut(QKeySequence::Copy);
    copy->setEnabled(!empty);
    connect(copy, &QAction::triggered, this, [this] { copySelectedCurvesToClipboard(); });
    QAction* paste = menu->addAction("Paste");
    paste->setShortcut(QKeySequence::Paste);
    paste->setEnabled(mDropStore != nullptr);
    connect(paste, &QAction::triggered, this, [this] { copySelectedCurvesFromClipboard(); });

    // Selected curves.
    menu->addSeparator();
    const std::vector<size_t> selected = highlightedCurves(getCurves(), true);
    QAction* removeSelected = menu->addAction("Remove Selected Curves");
    removeSelected->setEnabled(!selected.empty());
    connect(removeSelected, &QAction::triggered, this,
            [this] { removeCurvesFromPlot(highlightedCurves(getCurves(), true)); });
    QAction* removeOthers = menu->addAction("Remove All Other Curves");
    removeOthers->setEnabled(!selected.empty() && selected.size() < getNbOfCurves());
    connect(removeOthers, &QAction::triggered, this,
            [this] { removeCurvesFromPlot(highlightedCurves(getCurves(), false)); });

    // Rulers and annotations: their owners hook in here.
    menu->addSeparator();
    QAction* rulers = menu->addAction("Set Cursors");
    rulers->setEnabled(!empty);
    connect(rulers, &QAction::triggered, this, [this] { activateRulersAtMouse(); });
    const bool anyRuler = mOverlay.marker().checkIsEnabled() || mOverlay.cursor().checkIsEnabled();
    QAction* removeRulers = menu->addAction("Remove All Cursors");
    removeRulers->setEnabled(anyRuler);
    connect(removeRulers, &QAction::triggered, this, [this] {
        mOverlay.clearRulers();
        recordUserCommand("clear_cursors " + quotedName());
        plotWidgetRedrawFrame();
    });
    for (const char* name : {"M1", "C1"}) {
        QAction* remove = menu->addAction(QString::fromUtf8(name[0] == 'M' ? "Remove M1 Marker" : "Remove C1 Cursor"));
        remove->setEnabled((name[0] == 'M' ? mOverlay.marker() : mOverlay.cursor()).checkIsEnabled());
        const std::string ruler = name;
        connect(remove, &QAction::triggered, this, [this, ruler] {
            if (mOverlay.clearRuler(ruler))
                recordUserCommand("reset_cursor " + quotedName() + " " + ruler);
            plotWidgetRedrawFrame();
        });
    }
    // How bus values read.
    QMenu* radix = menu->addMenu("Radix");
    for (unsigned type = derivedCurveFunction::hexadecimal; type <= derivedCurveFunction::octal; ++type) {
        QAction* action = radix->addAction(QString::fromUtf8(derivedCurveFunction::digital_data_type_to_string(type)));
        action->setCheckable(true);
        action->setChecked(type == mDigitalType);
        connect(action, &QAction::triggered, this, [this, type] { setDigitalRadix(type); });
    }
    QAction* addAnnotation = menu->addAction("Add Annotation");
    addAnnotation->setEnabled(!empty);
    connect(addAnnotation, &QAction::triggered, this, [this] {
        size_t index = 0;
        bool imaginary = false;
        // Over a curve the point needs no text of its own; elsewhere the user says what to write.
        if (mOverlay.getClosestCurveIndex(mMouseX, mMouseY, index, imaginary)) {
            addAnnotationAtMouse(std::string());
            return;
        }
        bool ok = false;
        const QString text = QInputDialog::getText(this, "Add Annotation", "Text:", QLineEdit::Normal, QString(), &ok);
        if (ok && !text.trimmed().isEmpty())
            addAnnotationAtMouse(text.toStdString());
    });
    QAction* removeAnnotations = menu->addAction("Remove Annotations");
    removeAnnotations->setEnabled(mOverlay.getNbAnnotations() > 0);
    connect(removeAnnotations, &QAction::triggered, this, [this] {
        mOverlay.clearAnnotations();
        recordUserCommand("clear_annotations_in_plot " + quotedName());
        plotWidgetRedrawFrame();
    });

    // The plot window.
    menu->addSeparator();
    wxAnalogPlotVirtual* page = getPage();
    // Page actions go through the page, so that recording and naming happen in one place.
    auto pageAction = [this, menu](const char* text, std::function<void(wxAnalogPlotVirtual&)> act) {
        QAction* action = menu->addAction(QString::fromUtf8(text));
        action->setEnabled(getPage() != nullptr);
        connect(action, &QAction::triggered, this, [this, act] {
            if (wxAnalogPlotVirtual* owner = getPage())
                act(*owner);
        });
    };
    pageAction("Split Page Vertically", [this](wxAnalogPlotVirtual& owner) { owner.analogPlotVirtualSplitWindow(this, true); });
    pageAction("Split Page Horizontally",
               [this](wxAnalogPlotVirtual& owner) { owner.analogPlotVirtualSplitWindow(this, false); });
    const bool maximized = page && page->analogPlotVirtualCheckIsMaximized(this);
    pageAction(maximized ? "Minimize" : "Maximize",
               [this](wxAnalogPlotVirtual& owner) { owner.analogPlotVirtualMaximizeOrMinimizeWindow(this); });
    pageAction("Export to Image", [this](wxAnalogPlotVirtual& owner) { owner.analogPlotVirtualExportAsImage(this); });
    QAction* closeOthers = menu->addAction("Close Other Plots");
    closeOthers->setEnabled(page && page->analogPlotVirtualGetNumberOfPlotWindows() > 1);
    connect(closeOthers, &QAction::triggered, this, [this] {
        if (wxAnalogPlotVirtual* owner = getPage())
            owner->analogPlotVirtualCloseAllOtherChildWindows(this);
    });
    return menu;
}

}  // namespace vx3
