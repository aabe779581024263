// The configuration dialog: every option as the text set_option reads, the key bindings, the colours
// and the last opened files. Apply writes the edits and runs the configuration checks; what the checks
// set back shows at once in the grids.
#pragma once

#include <QDialog>

class QLabel;
class QTableWidget;
class QTabWidget;

namespace vx3 {

class cVxLogger;
class wxWaveExplorerConfiguration;

class wxWaveExplorerConfigurationDialog : public QDialog {
    Q_OBJECT
public:
    wxWaveExplorerConfigurationDialog(QWidget* parent, wxWaveExplorerConfiguration& configuration,
                                      const cVxLogger& logger);

    // Fills the grids from the configuration (after a set_option while the dialog is open).
    void updateConfigurationGrid();
    // Writes the edited cells into the configuration; false when a cell was refused or the checks
    // changed a value.
    bool apply();

    QTableWidget* optionGrid() const { return mOptions; }
    QTableWidget* keyBindingGrid() const { return mKeyBindings; }
    QTableWidget* colourGrid() const { return mColours; }
    QString message() const;

private:
    QTableWidget* makeGrid(const QString& first, const QString& second, const char* name);

    wxWaveExplorerConfiguration& mConfiguration;
    const cVxLogger& mLogger;
    QTabWidget* mTabs = nullptr;
    QTableWidget* mOptions = nullptr;
    QTableWidget* mKeyBindings = nullptr;
    QTableWidget* mColours = nullptr;
    QTableWidget* mFiles = nullptr;
    QLabel* mMessage = nullptr;
};

}  // namespace vx3
