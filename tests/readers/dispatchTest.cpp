// The dispatch: which reader a file goes to by its name and its content, the messages that end a
// parse, the fallback chain, forced readers, text in memory, and interruption.
#include <gtest/gtest.h>

#include "readerTestSupport.h"
#include "readers/scan/cParserBase.h"

using namespace vx3;
using namespace vx3::curvePlotParser;
using namespace zwreaders;

namespace {

unsigned byName(const std::string& fileName)
{
    const size_t dot = fileName.rfind('.');
    const std::string ext = dot == std::string::npos || dot == 0 ? "" : vxString::to_lower(fileName.substr(dot));
    const std::string stem = dot == std::string::npos || dot == 0 ? fileName : fileName.substr(0, dot);
    return cCurvePlotParser::guessPreferredParserFromFileName(ext, "/tmp/" + fileName, fileName, stem);
}

}  // namespace

TEST(ReaderDispatch, NameRulesInTheirOrder)
{
    const struct {
        const char* name;
        unsigned type;
    } cases[] = {
        {"a.raw", nutmeg},          {"a.SPI3", nutmeg},          {"a.spi3asc", nutmeg},
        {"a.csv", tabulated},       {"a.TAB", tabulated},        {"a.prn", tabulated},
        {"a.res", tabulated},       {"a.fastcsv", tabulated_fast}, {"a.slowcsv", tabulated_slow},
        {"a.html", html},           {"a.wdb", wdb},              {"a.vcd", vcd},
        {"a.dump", vcd},            {"a.cou", cou},              {"a.psf", psf},
        {"a.info", psf},            {"a.tran", psf},             {"timeSweep", psf},
        {"frequencySweep", psf},    {"a.psfascii", psf_ascii},   {"a.psfbin", psf_binary},
        {"a.sxdat", sxdat},         {"logFile", cadence_log},    {"logFile.dat", cadence_log},
        {"a.tmf", tmf},             {"a.dmf", tmf},              {"a.csdf", pspice_csdf},
        {"a.trn", pspice_dat},      {"a.fsdbvx", fsdb},          {"a.mat", matlab},
        {"a.lvm", lvm},             {"a.dc", hsim_dc},           {"a.s2p", touchstone_snp},
        {"a.s12p", touchstone_snp}, {"a.sp", spice_stimulus},    {"a.s", none},
        {"a.sxp", none},            {"a.ts", touchstone_ts},     {"a.tsx", touchstone_ts},
        {"a.tr0", tr0},             {"a.sw12", tr0},             {"a.ac3", tr0},
        {"a.tr", none},             {"a.trx", none},             {"index.wsf", wsf_index},
        {"a.wsf", wsf},             {"a.tdms", tdms},            {"a.stl", spice_stimulus},
        {"a.cir", spice_stimulus},  {"a.ic", ic},                {"a.ic2", ic},
        {"a.icx", none},            {"a.sig", sst2},             {"a.psfxl", psfxl},
        {"a.ds", ads_dataset},      {"a.pwf", pwf},              {"a.psfxl.dat", psfxl},
        {"a.b.dat", unknown_try_content}, {"results.dat", unknown_try_content},
        {"a.txt", none},            {"noextension", none},
    };
    for (const auto& entry : cases)
        EXPECT_EQ(byName(entry.name), entry.type) << entry.name;
    unsigned index = 0;
    EXPECT_TRUE(cCurvePlotParser::checkIsTr0Extension(".sw12", index));
    EXPECT_EQ(index, 12u);
    EXPECT_TRUE(cCurvePlotParser::checkIsIc0Extension(".ic7", index));
    EXPECT_EQ(index, 7u);
    EXPECT_EQ(cCurvePlotParser::getFileTypeAsString(psf_binary, ".psf"), "psf binary");
    EXPECT_EQ(cCurvePlotParser::getFileTypeAsString(matlab, ".mat"), "mat");
    EXPECT_EQ(cCurvePlotParser::getFileTypeAsString(tabulated, ".csv"), "csv");
}

TEST(ReaderDispatch, ContentDecidesWhereTheNameCannot)
{
    cTempDir dir;
    // ".dat" goes to the content test; with no opinion there, to TecPlot.
    EXPECT_EQ(cCurvePlotParser::guessPreferredParser(dir.write("results.dat", "TITLE = \"x\"\nVARIABLES = a b\n")),
              tecplot);
    EXPECT_EQ(cCurvePlotParser::guessPreferredParser(dir.write("table.dat", "# a b\n1 2\n3 4\n")), tabulated);
    EXPECT_EQ(cCurvePlotParser::guessPreferredParser(dir.write("page.txt", "<!DOCTYPE html>\n<table>")), html);
    EXPECT_EQ(cCurvePlotParser::guessPreferredParser(dir.write("w.txt", "$date today $end\n")), vcd);
    EXPECT_EQ(cCurvePlotParser::guessPreferredParser(dir.write("l.dat", "nothing to see\n")), tecplot);
    // Names that stand whatever the content says.
    EXPECT_EQ(cCurvePlotParser::guessPreferredParser(dir.write("x.csv", "<html>")), tabulated);
    EXPECT_EQ(cCurvePlotParser::guessPreferredParser(dir.write("logFile.dat", "1 2\n")), cadence_log);
    // The FSDB signature in the file's native layout.
    const uint32_t words[3] = {0, 0x48D93E1Cu, 0x01020304u};
    const std::string fsdbHead(reinterpret_cast<const char*>(words), sizeof(words));
    EXPECT_EQ(cCurvePlotParser::guessPreferredParserFromBom(dir.write("sig.bin", fsdbHead + "rest")), fsdb);
    EXPECT_EQ(cCurvePlotParser::guessPreferredParserFromBom(dir.write("n.bin", "Title: x\nPlotname: y\n")), none);
}

TEST(ReaderDispatch, MissingEmptyAndAlreadyOpenedFiles)
{
    cTempDir dir;
    cReading reading;
    const std::string missing = dir.file("missing.csv");
    EXPECT_EQ(reading.parse(missing), file_not_found);
    EXPECT_TRUE(reading.messages.contains(" - E - The file \"" + missing + "\" does not exist.")) << reading.messages.text();

    reading.messages.clear();
    const std::string empty = dir.write("empty.csv", "");
    EXPECT_EQ(reading.parse(empty), failed);
    EXPECT_EQ(reading.messages.text(), std::string(" - E - The file \"") + empty + "\" is empty.\n")
        << "no reader is tried";
    EXPECT_EQ(reading.store.getNbOfDbFiles(), 0u);

    reading.messages.clear();
    const std::string table = dir.write("t.csv", "t,v\n0,1\n1,2\n2,4\n");
    EXPECT_EQ(reading.parse(table), ok);
    EXPECT_TRUE(reading.messages.contains("The csv file \"" + table + "\" was parsed succesfully.")) << reading.messages.text();
    EXPECT_EQ(reading.parser.getLastParsedSection(), reading.section(0));
    EXPECT_EQ(reading.parse(table), ok);
    EXPECT_TRUE(reading.messages.contains("The file \"" + table + "\" has already been opened."));
    EXPECT_EQ(reading.store.getNbOfDataSections(), 1u) << "no second section";

    // A relative name is taken from the base directory.
    cReading relative;
    relative.parser.setBaseDirectory(dir.path());
    EXPECT_EQ(relative.parse("t.csv"), ok);
    ASSERT_NE(relative.store.findDbSupportPtr(table), nullptr);
}

TEST(ReaderDispatch, FallbackChainAndForcedReader)
{
    cTempDir dir;
    // Text that no reader takes: every reader of the chain runs and leaves nothing behind.
    const std::string prose = dir.write("notes.csv", "Dear reader,\nthis file holds words only.\nNo numbers.\n");
    cReading reading;
    EXPECT_EQ(reading.parse(prose), failed);
    EXPECT_TRUE(reading.messages.contains(" - E - Failed to parse the file \"" + prose + "\".")) << reading.messages.text();
    EXPECT_EQ(reading.store.getNbOfDataSections(), 0u);
    EXPECT_EQ(reading.store.getNbOfDbFiles(), 0u);

    // A table with a misleading name reaches the table readers through the chain.
    const std::string table = dir.write("table.raw", "a;b\n1;2\n3;4\n5;6\n");
    cReading chain;
    EXPECT_EQ(chain.parse(table), ok);
    EXPECT_TRUE(chain.messages.contains("The csv file \"" + table + "\" was parsed succesfully.")) << chain.messages.text();

    // A forced reader that fails stops the parse: no chain.
    cReading forced;
    forced.parser.setForcedParserType(html);
    EXPECT_EQ(forced.parse(table), file_format_recognized);
    EXPECT_TRUE(forced.messages.contains(" - E - Failed to parse the raw file \"" + table + "\"\n")) << forced.messages.text();
    EXPECT_EQ(forced.store.getNbOfDataSections(), 0u);

    // The parse argument chooses a reader without stopping the chain.
    cReading argument;
    EXPECT_EQ(argument.parse(table, tecplot), ok);
    EXPECT_EQ(argument.store.getNbOfDataSections(), 1u);
}

TEST(ReaderDispatch, FastReaderAloneAndTheSlowReaderAfterIt)
{
    cTempDir dir;
    // A text cell stops the fast reader; the slow one reads the row with NaN.
    const std::string mixed = dir.write("mixed.csv", "t,v\n0,1\n1,oops\n2,3\n3,4\n4,5\n");
    cReading fastOnly;
    fastOnly.parser.setFlagFastReaderOnly(true);
    EXPECT_EQ(fastOnly.parse(mixed, tabulated_fast), failed);
    cReading pair;
    EXPECT_EQ(pair.parse(mixed), partly_parsed);
    EXPECT_TRUE(pair.messages.contains("was parsed only partially .")) << pair.messages.text();
    EXPECT_TRUE(pair.messages.contains("CSV Parser : The entry \"oops\" (column 2) in row 3")) << pair.messages.text();
    const std::vector<double> v = pair.values(0, "v");
    ASSERT_EQ(v.size(), 5u);
    EXPECT_TRUE(std::isnan(v[1]));
    EXPECT_EQ(pair.store.dbFile(0)->getDbType(), fileDbSupport::tabulated_23);

    cReading fast;
    EXPECT_EQ(fast.parse(dir.write("clean.csv", "t,v\n0,1\n1,2\n")), ok);
    EXPECT_EQ(fast.store.dbFile(0)->getDbType(), fileDbSupport::csv) << "the fast reader took it";
}

TEST(ReaderDispatch, TextFromTheClipboard)
{
    cReading reading;
    EXPECT_EQ(reading.parser.parseString(reading.store, "x\ty\n1\t10\n2\t20\n3\t30\n"), ok);
    ASSERT_EQ(reading.store.getNbOfDbFiles(), 1u);
    EXPECT_EQ(reading.store.dbFile(0)->getDbType(), fileDbSupport::drop);
    EXPECT_EQ(reading.values(0, "y"), (std::vector<double>{10, 20, 30}));
    EXPECT_EQ(reading.parser.parseString(reading.store, "<table><tr><th>a</th><th>b</th></tr><tr><td>1</td><td>2</td></tr>"
                                                        "<tr><td>2</td><td>3</td></tr></table>"),
              ok);
    EXPECT_EQ(reading.store.getNbOfDbFiles(), 2u) << "a second drop is a file of its own";
    EXPECT_EQ(reading.parser.parseString(reading.store, "no table here"), failed);
    EXPECT_TRUE(reading.messages.contains(" - E - Failed to read imported data.")) << reading.messages.text();
    EXPECT_EQ(reading.store.getNbOfDbFiles(), 2u);
}

TEST(ReaderDispatch, DetectLooksAtTheHeadOnly)
{
    cTempDir dir;
    cReading reading;
    cCurvePlotParserOpenFileOptions open;
    EXPECT_EQ(reading.parser.detectFileType(reading.store, dir.write("a.csv", "t,v\n0,1\n1,2\n"), open), ok);
    EXPECT_EQ(reading.store.getNbOfDbFiles(), 0u) << "detecting opens nothing";
    const std::string words = dir.write("w.csv", "just words\nand more words\n");
    EXPECT_EQ(reading.parser.detectFileType(reading.store, words, open), failed);
    EXPECT_TRUE(reading.messages.contains("Failed to identify the file \"" + words + "\".")) << reading.messages.text();
}

namespace {
class cInterruptingLogger : public cRecordingLogger {
public:
    bool loggerCallBackVirtualCheckActionIsInterrupted() override { return true; }
};
}  // namespace

TEST(ReaderDispatch, InterruptionEndsWithCode26AndNothingAdded)
{
    cTempDir dir;
    const std::string table = dir.write("t.csv", "t,v\n0,1\n1,2\n2,3\n");
    cCurvePlotDataFile store;
    cCurvePlotParser parser;
    cInterruptingLogger messages;
    parser.logger().setLoggerCallBack(&messages);
    EXPECT_EQ(parser.parse(store, table), action_interrupted);
    EXPECT_TRUE(messages.contains("File parsing was interrupted while parsing \"" + table + "\".")) << messages.text();
    EXPECT_EQ(store.getNbOfDataSections(), 0u);
    EXPECT_EQ(store.getNbOfDbFiles(), 0u);
    parser.logger().setLoggerCallBack(nullptr);
}

TEST(ReaderDispatch, OptionsByIdentifier)
{
    cCurvePlotParserOptions options;
    EXPECT_EQ(options.getLogicLevelX(), 0.5);
    EXPECT_EQ(options.getLogicLevelZ(), 0.3);
    EXPECT_EQ(options.getLogicRiseFallTime(), 1e-15);
    EXPECT_TRUE(options.getFlagTryFastReader());
    EXPECT_FALSE(options.getFlagFastReaderOnly());
    options.setOption(prop_parser_option_simplify_instance_names_for_currents, 0.99);
    EXPECT_FALSE(options.getFlagSimplifyInstanceNamesForCurrents()) << "a flag is on from 1.0";
    options.setOption(prop_parser_option_simplify_instance_names_for_currents, 1.0);
    EXPECT_TRUE(options.getFlagSimplifyInstanceNamesForCurrents());
    options.setOption(prop_parser_option_first_x_axis_value, 0.0);
    EXPECT_TRUE(options.openFileOptions().checkFirstXAxisValueIsDefined()) << "zero is a bound";
    EXPECT_FALSE(options.openFileOptions().checkLastXAxisValueIsDefined());
    options.openFileOptions().clearOpenFileOptions();
    EXPECT_FALSE(options.openFileOptions().checkFirstXAxisValueIsDefined());
    options.defineEnumReductionLevel("  low ", 0.25);
    EXPECT_EQ(options.getEnumReductionLevels().at("low"), 0.25);
    options.defineEnumReductionLevel("low", NAN);
    EXPECT_TRUE(options.getEnumReductionLevels().empty());
    cCurvePlotParserOptions copy;
    options.setForcedParserType(tecplot);
    copy.copyOptionsFrom(options);
    EXPECT_EQ(copy.getForcedParserType(), unsigned(tecplot));
}
