// The configuration dialog offscreen: edits in its grids reach the configuration, and what the checks
// refuse comes back to the grid with the message.
#include <gtest/gtest.h>

#include <QTableWidget>

#include "app/core/wxWaveExplorerCommand.h"
#include "app/core/wxWaveExplorerConfiguration.h"
#include "base/cVxLogger.h"
#include "explorer/wxWaveExplorerConfigurationDialog.h"

namespace {

using namespace vx3;

struct cTestLog : cVxLogger {
    cVxStringLogger sink;
    cTestLog() { setLoggerCallBack(&sink); }
    ~cTestLog() { setLoggerCallBack(nullptr); }
    std::string getString() const { return sink.getBufferAsString(); }
};

QTableWidgetItem* valueOf(QTableWidget* grid, const QString& name)
{
    for (int row = 0; row < grid->rowCount(); ++row)
        if (grid->item(row, 0)->text() == name)
            return grid->item(row, 1);
    return nullptr;
}

}  // namespace

TEST(configurationDialog, AppliedEditsAreCheckedAndShown)
{
    wxWaveExplorerConfiguration configuration;
    cTestLog logger;
    wxWaveExplorerConfigurationDialog dialog(nullptr, configuration, logger);

    QTableWidgetItem* samples = valueOf(dialog.optionGrid(), "fft_parameter_nb_time_samples");
    ASSERT_NE(samples, nullptr);
    EXPECT_EQ(samples->text(), "1024");
    EXPECT_EQ(valueOf(dialog.keyBindingGrid(), "Zoom In")->text(), "+");
    EXPECT_EQ(valueOf(dialog.colourGrid(), "Zoom box")->text(), "#808080");

    // Nothing edited: applying changes nothing.
    EXPECT_TRUE(dialog.apply());
    EXPECT_FALSE(configuration.getFlagConfigChanged());

    valueOf(dialog.optionGrid(), "time_zone")->setText("\"CET\"");
    valueOf(dialog.optionGrid(), "fft_parameter_oversampling_factor")->setText("4");
    valueOf(dialog.keyBindingGrid(), "Toolbox")->setText("Q");
    valueOf(dialog.colourGrid(), "Grid")->setText("#102030");
    EXPECT_TRUE(dialog.apply()) << dialog.message().toStdString();
    EXPECT_EQ(configuration.getOptionText("time_zone"), "CET");
    EXPECT_EQ(configuration.getOptionNumber("fft_parameter_oversampling_factor"), 4);
    EXPECT_EQ(configuration.getKeyBinding(26), "Q");
    EXPECT_EQ(configuration.getGridColor(), 0x102030u);
    EXPECT_TRUE(dialog.message().isEmpty());

    // An odd sample count and a key taken twice: set back, and said so in the dialog and the log.
    valueOf(dialog.optionGrid(), "fft_parameter_nb_time_samples")->setText("1023");
    valueOf(dialog.keyBindingGrid(), "Show Browser")->setText("Q");
    valueOf(dialog.optionGrid(), "utc_offset")->setText("soon");
    EXPECT_FALSE(dialog.apply());
    EXPECT_TRUE(dialog.message().contains(
        "One or several configuration parameters was changed due to a configuration error."));
    EXPECT_TRUE(dialog.message().contains("utc_offset"));
    EXPECT_EQ(configuration.getOptionNumber("fft_parameter_nb_time_samples"), 1024);
    EXPECT_EQ(valueOf(dialog.optionGrid(), "fft_parameter_nb_time_samples")->text(), "1024");
    // Of the two, the binding further down the list gives way (it has no default key).
    EXPECT_EQ(valueOf(dialog.keyBindingGrid(), "Show Browser")->text(), "Q");
    EXPECT_EQ(valueOf(dialog.keyBindingGrid(), "Toolbox")->text(), "");
    EXPECT_NE(logger.getString().find("configuration : the key binding for \"Toolbox\" is already in use."),
              std::string::npos);
    EXPECT_EQ(configuration.getOptionNumber("utc_offset"), 0);

    // A set_option while the dialog is open shows in its grid.
    cVxLogger quiet;
    wxWaveExplorerCommand command;
    ASSERT_TRUE(command.parseCommandString("set_option time_zone UTC", quiet));
    configuration.setOption(command);
    dialog.updateConfigurationGrid();
    EXPECT_EQ(valueOf(dialog.optionGrid(), "time_zone")->text(), "\"UTC\"");
}
