// Reloads keep section ids and curve indices, show new rows, close what vanished, put everything
// back when the new content can't be read, and cut columns as the first parse did. The store
// commands open, reload and close files the same way.
#include <gtest/gtest.h>

#include "app/core/cStoreCommands.h"
#include "app/core/wxWaveExplorerCommand.h"
#include "readerTestSupport.h"
#include "readers/tabulated/csvSeparator.h"

using namespace vx3;
using namespace zwreaders;

namespace {

std::string rows(int first, int last)
{
    std::string text;
    for (int i = first; i < last; ++i)
        text += std::to_string(i) + "," + std::to_string(i * 2) + "," + std::to_string(i * 3) + "\n";
    return text;
}

}  // namespace

TEST(Reload, AppendedRowsKeepTheSectionAndShowTheNewRows)
{
    cTempDir dir;
    const std::string file = dir.write("grow.csv", "t,a,b\n" + rows(0, 100));
    cReading reading;
    ASSERT_EQ(reading.parse(file), ok);
    const uint64_t id = reading.section(0)->getSectionId();
    const uint64_t indexOfB = reading.section(0)->findVariableIndex("b");
    dir.append("grow.csv", rows(100, 150));
    reading.parser.setFlagMonitorReloadChangesInSections(true);
    ASSERT_EQ(reading.parser.reloadFile(reading.store, file, ""), ok) << reading.messages.text();
    ASSERT_EQ(reading.store.getNbOfDataSections(), 1u);
    const cCurvePlotDataSection& section = *reading.section(0);
    EXPECT_EQ(section.getSectionId(), id);
    EXPECT_EQ(section.findVariableIndex("b"), indexOfB);
    const std::vector<double> b = reading.values(0, "b");
    ASSERT_EQ(b.size(), 150u);
    EXPECT_EQ(b.back(), 149.0 * 3);
    EXPECT_EQ(reading.values(0, "").size(), 150u);
    EXPECT_EQ(section.getReloadFlags(),
              unsigned(curvePlotDataSection::reload_values_changed | curvePlotDataSection::reload_sweep_values_changed))
        << "the monitor tells exactly what changed";
    EXPECT_FALSE(section.checkMustClose());
}

TEST(Reload, VanishedCurvesCloseAndTheOthersKeepTheirIndices)
{
    cTempDir dir;
    const std::string file = dir.write("shrink.csv", "t,a,b\n" + rows(0, 20));
    cReading reading;
    ASSERT_EQ(reading.parse(file), ok);
    const uint64_t id = reading.section(0)->getSectionId();
    dir.write("shrink.csv", "t,b,c\n0,1,2\n1,3,4\n2,5,6\n");
    ASSERT_EQ(reading.parser.reloadFile(reading.store, file, ""), ok) << reading.messages.text();
    const cCurvePlotDataSection& section = *reading.section(0);
    EXPECT_EQ(section.getSectionId(), id);
    ASSERT_EQ(section.getNbOfVariables(), 3u);
    EXPECT_TRUE(section.getVariable(0).checkMustClose()) << "a is gone";
    EXPECT_EQ(section.findVariableIndex("a"), cCurvePlotDataSection::npos) << "users don't find it";
    EXPECT_EQ(section.getVariable(1).name(), "b");
    EXPECT_EQ(reading.values(0, "b"), (std::vector<double>{1, 3, 5}));
    EXPECT_EQ(section.getVariable(2).name(), "c") << "new curves come behind";
}

TEST(Reload, FailedReloadPutsEverythingBack)
{
    cTempDir dir;
    const std::string file = dir.write("keep.csv", "t,a,b\n" + rows(0, 10));
    cReading reading;
    ASSERT_EQ(reading.parse(file), ok);
    reading.section(0)->pushBackStepParameter("corner", 3.0);
    const uint64_t id = reading.section(0)->getSectionId();
    dir.write("keep.csv", std::string("\x01\x02\x00\x7f garbage", 12));
    ASSERT_EQ(reading.parser.reloadFile(reading.store, file, ""), failed);
    EXPECT_TRUE(reading.messages.contains(" - E - The csv file \"" + file + "\" could not be updated.")) << reading.messages.text();
    ASSERT_EQ(reading.store.getNbOfDataSections(), 1u);
    const cCurvePlotDataSection& section = *reading.section(0);
    EXPECT_EQ(section.getSectionId(), id);
    EXPECT_FALSE(section.checkMustClose());
    EXPECT_FALSE(section.getVariable(0).checkMustClose());
    EXPECT_EQ(reading.values(0, "a").size(), 10u) << "the old values stay";
    ASSERT_EQ(section.getStepParameters().parameters.size(), 1u) << "and the section's properties";

    std::remove(file.c_str());
    reading.messages.clear();
    EXPECT_EQ(reading.parser.reloadFile(reading.store, file, ""), file_not_found);
    EXPECT_TRUE(reading.messages.contains("The file \"" + file + "\" does no longer exist.")) << reading.messages.text();
    EXPECT_EQ(reading.store.getNbOfDataSections(), 1u);
}

TEST(Reload, UnderANewNameTheFileIsReadFromThere)
{
    cTempDir dir;
    const std::string first = dir.write("run1.csv", "t,a,b\n" + rows(0, 10));
    cReading reading;
    ASSERT_EQ(reading.parse(first), ok);
    const uint64_t id = reading.section(0)->getSectionId();
    // The simulator wrote its next result elsewhere: the open file follows it there.
    const std::string second = dir.write("run2.csv", "t,a,b\n" + rows(0, 25));
    ASSERT_EQ(reading.parser.reloadFile(reading.store, first, second), ok) << reading.messages.text();
    ASSERT_EQ(reading.store.getNbOfDataSections(), 1u);
    EXPECT_EQ(reading.section(0)->getSectionId(), id) << "the same section, so plots keep their curves";
    EXPECT_EQ(reading.section(0)->name(), "run2.csv") << "named after the file, it follows the new name";
    const std::vector<double> b = reading.values(0, "b");
    ASSERT_EQ(b.size(), 25u);
    EXPECT_EQ(b.back(), 24.0 * 3);
    ASSERT_NE(reading.store.findDbSupportPtr(second), nullptr);
    EXPECT_EQ(reading.store.findDbSupportPtr(first), nullptr) << "the old name is gone";
    EXPECT_NE(reading.store.findDbSupportPtrShortName("run2.csv"), nullptr);
    EXPECT_EQ(reading.store.findDbSupportPtrShortName("run1.csv"), nullptr);

    // From now on the new name is the file: reloading it shows what was appended there, and the
    // old one is no longer known.
    dir.append("run2.csv", rows(25, 30));
    ASSERT_EQ(reading.parser.reloadFile(reading.store, second, ""), ok) << reading.messages.text();
    EXPECT_EQ(reading.values(0, "a").size(), 30u);
    reading.messages.clear();
    EXPECT_EQ(reading.parser.reloadFile(reading.store, first, ""), failed);
    EXPECT_TRUE(reading.messages.contains("The file \"" + first + "\" was not found in the list of open files."))
        << reading.messages.text();
    // A relative new name is taken from the base directory; the short name finds the file too.
    const std::string third = dir.write("run3.csv", "t,a,b\n" + rows(0, 7));
    reading.parser.setBaseDirectory(dir.path());
    ASSERT_EQ(reading.parser.reloadFile(reading.store, "run2.csv", "run3.csv"), ok) << reading.messages.text();
    EXPECT_EQ(reading.values(0, "a").size(), 7u);
    EXPECT_NE(reading.store.findDbSupportPtr(third), nullptr);
    EXPECT_EQ(reading.section(0)->getSectionId(), id);
}

TEST(Reload, CutsColumnsAsTheFirstParseDid)
{
    cTempDir dir;
    const std::string file = dir.write("semi.slowcsv", "a;b\n1,5;2\n2,5;3\n3,5;4\n4,5;5\n");
    cReading reading;
    ASSERT_EQ(reading.parse(file), ok) << reading.messages.text();
    EXPECT_EQ(reading.values(0, ""), (std::vector<double>{1.5, 2.5, 3.5, 4.5}));
    dir.write("semi.slowcsv", "a;b\n1,5;2\n2,5;3\n3,5;4\n4,5;5\n5,5;6\n");
    // A reload with the tab type still cuts at the semicolons of the first parse.
    reading.parser.setSeparatorType(csvSeparator::tab);
    ASSERT_EQ(reading.parser.reloadFile(reading.store, file, ""), ok) << reading.messages.text();
    EXPECT_EQ(reading.values(0, "b"), (std::vector<double>{2, 3, 4, 5, 6}));
}

TEST(Reload, StoreCommandsOpenReloadAndCloseFiles)
{
    cTempDir dir;
    const std::string file = dir.write("cmd.csv", "t,v\n0,1\n1,2\n");
    cCurvePlotDataFile store;
    cRecordingLogger messages;
    cVxLogger logger;
    logger.setLoggerCallBack(&messages);
    auto run = [&](const std::string& line) {
        wxWaveExplorerCommand command;
        EXPECT_TRUE(command.parseCommandString(line, logger)) << line;
        return cStoreCommands::perform(command, store, logger);
    };
    EXPECT_TRUE(cStoreCommands::checkChangesStore(waveExplorerAction::cmd_open_file));
    EXPECT_TRUE(cStoreCommands::checkChangesStore(waveExplorerAction::cmd_reload_file));
    EXPECT_EQ(run("open_file \"" + file + "\""), 0) << messages.text();
    ASSERT_EQ(store.getNbOfDataSections(), 1u);
    const uint64_t id = store.getDataSectionFromIndex(0)->getSectionId();
    EXPECT_TRUE(messages.contains("The csv file \"" + file + "\" was parsed succesfully."));
    dir.append("cmd.csv", "2,3\n");
    EXPECT_EQ(run("reload_file \"" + file + "\""), 0) << messages.text();
    EXPECT_EQ(store.getDataSectionFromIndex(0)->getSectionId(), id);
    EXPECT_EQ(store.getDataSectionFromIndex(0)->getVariable(0).getVectorSize(), 3u);
    EXPECT_EQ(run("reload_file \"cmd.csv\""), 0) << "the short name of the file works as well";
    EXPECT_EQ(run("open_file \"" + dir.file("nothing.csv") + "\""), 4);
    EXPECT_EQ(run("close_file \"" + file + "\""), 0);
    EXPECT_EQ(store.getNbOfDataSections(), 0u);
    EXPECT_EQ(run("reload_file \"" + file + "\""), 3);
    EXPECT_TRUE(messages.contains("was not found in the list of open files."));
    logger.setLoggerCallBack(nullptr);
}
