#include "wxWaveExplorerConfigurationDialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>

#include "app/core/cConfigurationOptionText.h"
#include "app/core/wxWaveExplorerConfiguration.h"
#include "base/cVxLogger.h"

namespace vx3 {

using namespace waveExplorerConfiguration;

namespace {
const char* const kColourNames[nb_colours] = {
    "Zoom box", "Grid", "Coarse grid", "Fine grid", "Zero line", "Axis", "Axis background", "Disabled axis",
    "Delta axis", "Disabled delta axis", "Highlight", "Digital main", "Digital X", "Digital Z", "Digital X box",
    "Copy and paste indicator", "Delta cycle background", "Delta cycle background, bottom axis", "Widget scroll bar",
};

QTableWidgetItem* fixedItem(const QString& text)
{
    auto* item = new QTableWidgetItem(text);
    item->setFlags(item->flags() & ~Qt::ItemIsEditable);
    return item;
}

QString colourText(uint32_t colour) { return QString("#%1").arg(colour & 0xffffff, 6, 16, QChar('0')); }
}  // namespace

wxWaveExplorerConfigurationDialog::wxWaveExplorerConfigurationDialog(QWidget* parent,
                                                                     wxWaveExplorerConfiguration& configuration,
                                                                     const cVxLogger& logger)
    : QDialog(parent), mConfiguration(configuration), mLogger(logger)
{
    setObjectName("configuration_dialog");
    setWindowTitle("Configuration");
    auto* layout = new QVBoxLayout(this);
    mTabs = new QTabWidget(this);
    mOptions = makeGrid("Option", "Value", "configuration_options");
    mKeyBindings = makeGrid("Command", "Key", "configuration_key_bindings");
    mColours = makeGrid("Colour", "Value", "configuration_colours");
    mFiles = makeGrid("Last opened files", "", "configuration_files");
    mFiles->setColumnCount(1);
    mTabs->addTab(mOptions, "Options");
    mTabs->addTab(mKeyBindings, "Key Bindings");
    mTabs->addTab(mColours, "Colours");
    mTabs->addTab(mFiles, "Files");
    layout->addWidget(mTabs, 1);
    mMessage = new QLabel(this);
    mMessage->setObjectName("configuration_message");
    mMessage->setWordWrap(true);
    layout->addWidget(mMessage);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Apply | QDialogButtonBox::Cancel, this);
    layout->addWidget(buttons);
    connect(buttons->button(QDialogButtonBox::Apply), &QPushButton::clicked, this, [this] { apply(); });
    connect(buttons, &QDialogButtonBox::accepted, this, [this] {
        // A refused or corrected value keeps the dialog open, so that the user sees what happened.
        if (apply())
            accept();
    });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    resize(640, 520);
    updateConfigurationGrid();
}

QTableWidget* wxWaveExplorerConfigurationDialog::makeGrid(const QString& first, const QString& second,
                                                          const char* name)
{
    auto* grid = new QTableWidget(0, 2, this);
    grid->setObjectName(name);
    grid->setHorizontalHeaderLabels({first, second});
    grid->horizontalHeader()->setStretchLastSection(true);
    grid->verticalHeader()->setVisible(false);
    grid->setSelectionMode(QAbstractItemView::SingleSelection);
    return grid;
}

QString wxWaveExplorerConfigurationDialog::message() const { return mMessage->text(); }

void wxWaveExplorerConfigurationDialog::updateConfigurationGrid()
{
    const auto keys = cConfigurationOptionText::getOptionKeys(mConfiguration);
    mOptions->setRowCount(static_cast<int>(keys.size()));
    for (size_t row = 0; row < keys.size(); ++row) {
        mOptions->setItem(row, 0, fixedItem(QString::fromStdString(keys[row])));
        mOptions->setItem(row, 1, new QTableWidgetItem(QString::fromStdString(
                                      cConfigurationOptionText::getValueText(mConfiguration, keys[row]))));
    }
    mKeyBindings->setRowCount(nb_key_bindings);
    for (size_t row = 0; row < nb_key_bindings; ++row) {
        mKeyBindings->setItem(row, 0, fixedItem(QString::fromStdString(cConfigData::getString(row))));
        mKeyBindings->setItem(row, 1, new QTableWidgetItem(QString::fromStdString(mConfiguration.getKeyBinding(row))));
    }
    mColours->setRowCount(nb_colours);
    for (size_t row = 0; row < nb_colours; ++row) {
        mColours->setItem(row, 0, fixedItem(kColourNames[row]));
        auto* value = new QTableWidgetItem(colourText(mConfiguration.getColour(row)));
        uint32_t colour = mConfiguration.getColour(row);
        value->setBackground(QColor((colour >> 16) & 0xff, (colour >> 8) & 0xff, colour & 0xff));
        value->setForeground(qGray(colour) < 128 ? Qt::white : Qt::black);
        mColours->setItem(row, 1, value);
    }
    mFiles->setRowCount(static_cast<int>(mConfiguration.getNbLastOpenedFiles()));
    for (size_t row = 0; row < mConfiguration.getNbLastOpenedFiles(); ++row)
        mFiles->setItem(row, 0, fixedItem(QString::fromStdString(mConfiguration.getLastOpenedFiles(row))));
}

bool wxWaveExplorerConfigurationDialog::apply()
{
    bool accepted = true;
    QStringList refused;
    for (int row = 0; row < mOptions->rowCount(); ++row) {
        const std::string key = mOptions->item(row, 0)->text().toStdString();
        const std::string text = mOptions->item(row, 1)->text().trimmed().toStdString();
        if (text == cConfigurationOptionText::getValueText(mConfiguration, key))
            continue;
        if (!cConfigurationOptionText::setValueFromText(mConfiguration, key, text, mLogger)) {
            refused << QString::fromStdString(key);
            accepted = false;
        }
    }
    // All bindings first, then the check: two bindings may swap their keys in one apply.
    for (int row = 0; row < mKeyBindings->rowCount(); ++row)
        mConfiguration.setKeyBinding(row, mKeyBindings->item(row, 1)->text().trimmed().toStdString());
    for (int row = 0; row < mColours->rowCount(); ++row) {
        QString text = mColours->item(row, 1)->text().trimmed();
        QColor colour(text.startsWith("0x") ? "#" + text.mid(2) : text);
        if (!colour.isValid()) {
            mLogger.errorMsg("The colour \"" + text.toStdString() + "\" is not a colour.");
            refused << mColours->item(row, 0)->text();
            accepted = false;
            continue;
        }
        mConfiguration.setColour(row, colour.rgb() & 0xffffff);
    }
    QString message;
    if (!refused.isEmpty())
        message = "Refused: " + refused.join(", ") + ".";
    if (mConfiguration.verifyConfiguration(&mLogger)) {
        if (!message.isEmpty())
            message += '\n';
        message += "One or several configuration parameters was changed due to a configuration error.";
        accepted = false;
    }
    mMessage->setText(message);
    updateConfigurationGrid();
    return accepted;
}

}  // namespace vx3
