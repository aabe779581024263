// The configuration's blob encoding, its checks, and the file "conf.db" written and read through the
// library, with a second SQLite connection standing in for another instance.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <random>
#include <fstream>
#include <sstream>

#include "app/core/cConfigurationCommands.h"
#include "app/core/cConfigurationOptionText.h"
#include "app/core/cDataBaseInterface.h"
#include "app/core/cDataBaseSerializer.h"
#include "app/core/wxWaveExplorerCommand.h"
#include "app/core/wxWaveExplorerConfiguration.h"
#include "base/cVxLogger.h"
#include "base/cVxString.h"

namespace {

using namespace vx3;
using namespace vx3::waveExplorerConfiguration;

class cScratch {
public:
    cScratch()
    {
        char pattern[] = "/tmp/zelwave-conf-XXXXXX";
        const char* made = mkdtemp(pattern);
        path = made ? made : "";
    }
    ~cScratch()
    {
        std::error_code error;
        std::filesystem::remove_all(path, error);
    }
    std::string file(const std::string& name) const { return path + "/" + name; }
    std::string path;
};

// A logger that keeps its lines in a string.
struct cTestLog : cVxLogger {
    cVxStringLogger sink;
    cTestLog() : cVxLogger(vxLogger::nocl) { setLoggerCallBack(&sink); }
    ~cTestLog() { setLoggerCallBack(nullptr); }
    std::string getString() const { return sink.getBufferAsString(); }
};

std::vector<uint8_t> bytes(std::initializer_list<int> values)
{
    std::vector<uint8_t> result;
    for (int value : values)
        result.push_back(static_cast<uint8_t>(value));
    return result;
}

std::string throwMessage(const std::vector<uint8_t>& data, void (*read)(cDataBaseSerializer&))
{
    cDataBaseSerializer reader(data);
    try {
        read(reader);
    } catch (const cSerializerException& exception) {
        return exception.what();
    }
    return "no exception";
}

void setOption(cConfigData& configuration, const std::string& text)
{
    cTestLog logger;
    wxWaveExplorerCommand command;
    ASSERT_TRUE(command.parseCommandString(text, logger)) << text;
    configuration.setOption(command);
}

std::string readBytes(const std::string& name)
{
    std::ifstream in(name, std::ios::binary);
    std::stringstream buffer;
    buffer << in.rdbuf();
    return buffer.str();
}

}  // namespace

TEST(configurationSerializer, BytesOnTheWireAndEveryTypeBothWays)
{
    cDataBaseSerializer writer;
    int32_t i32 = -2;
    bool yes = true;
    std::string text = "ab";
    writer.serializedeserialize(i32);
    writer.serializedeserialize(yes);
    writer.serializedeserialize(text);
    // tag 16 and -2; tag 34 alone; tag 11, then tag 19 with length 2, then the bytes.
    EXPECT_EQ(writer.buffer(), bytes({16, 0, 0, 0, 0xfe, 0xff, 0xff, 0xff, 34, 0, 0, 0, 11, 0, 0, 0, 19, 0, 0, 0, 2,
                                      0, 0, 0, 0, 0, 0, 0, 'a', 'b'}));

    cDataBaseSerializer vectors;
    std::vector<std::string> names = {"x", ""};
    vectors.serializedeserialize(names);
    // tag 12, tag 19 with count 2, the element tag 11 once, then each string as tag 19, length, bytes.
    EXPECT_EQ(vectors.buffer(), bytes({12, 0, 0, 0, 19, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 11, 0, 0, 0, 19, 0, 0, 0, 1,
                                       0, 0, 0, 0, 0, 0, 0, 'x', 19, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));

    cDataBaseSerializer all;
    int64_t i64 = -1234567890123LL;
    uint32_t u32 = 4000000000u;
    uint64_t u64 = 1ULL << 60;
    double d = -0.125;
    float f = 3.5f;
    bool no = false;
    std::vector<double> doubles = {1.0, std::nan(""), -1e300};
    std::vector<bool> flags = {true, false, true};
    std::vector<int64_t> longs = {};
    for (auto* step : {&all}) {
        step->serializedeserialize(i64);
        step->serializedeserialize(u32);
        step->serializedeserialize(u64);
        step->serializedeserialize(d);
        step->serializedeserialize(f);
        step->serializedeserialize(no);
        step->serializedeserialize(doubles);
        step->serializedeserialize(flags);
        step->serializedeserialize(longs);
    }
    cDataBaseSerializer reader(all.buffer());
    int64_t ri64 = 0;
    uint32_t ru32 = 0;
    uint64_t ru64 = 0;
    double rd = 0;
    float rf = 0;
    bool rno = true;
    std::vector<double> rdoubles;
    std::vector<bool> rflags;
    std::vector<int64_t> rlongs = {7};
    reader.serializedeserialize(ri64);
    reader.serializedeserialize(ru32);
    reader.serializedeserialize(ru64);
    reader.serializedeserialize(rd);
    reader.serializedeserialize(rf);
    reader.serializedeserialize(rno);
    reader.serializedeserialize(rdoubles);
    reader.serializedeserialize(rflags);
    reader.serializedeserialize(rlongs);
    EXPECT_TRUE(reader.checkAtEnd());
    EXPECT_EQ(ri64, i64);
    EXPECT_EQ(ru32, u32);
    EXPECT_EQ(ru64, u64);
    EXPECT_EQ(rd, d);
    EXPECT_EQ(rf, f);
    EXPECT_FALSE(rno);
    ASSERT_EQ(rdoubles.size(), 3u);
    EXPECT_EQ(rdoubles[0], 1.0);
    EXPECT_TRUE(std::isnan(rdoubles[1]));
    EXPECT_EQ(rdoubles[2], -1e300);
    EXPECT_EQ(rflags, (std::vector<bool>{true, false, true}));
    EXPECT_TRUE(rlongs.empty());
}

TEST(configurationSerializer, WrongTagsAndDamagedLengthsThrowWithTheirMessages)
{
    auto readInt = [](cDataBaseSerializer& s) {
        int32_t v;
        s.serializedeserialize(v);
    };
    auto readBool = [](cDataBaseSerializer& s) {
        bool v;
        s.serializedeserialize(v);
    };
    auto readFlags = [](cDataBaseSerializer& s) {
        std::vector<bool> v;
        s.serializedeserialize(v);
    };
    auto readDouble = [](cDataBaseSerializer& s) {
        double v;
        s.serializedeserialize(v);
    };
    auto readText = [](cDataBaseSerializer& s) {
        std::string v;
        s.serializedeserialize(v);
    };
    auto readNames = [](cDataBaseSerializer& s) {
        std::vector<std::string> v;
        s.serializedeserialize(v);
    };
    const auto anInt = bytes({16, 0, 0, 0, 1, 0, 0, 0});
    const auto aDouble = bytes({21, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xf0, 0x3f});
    EXPECT_EQ(throwMessage(aDouble, readInt), "not an int type !");
    EXPECT_EQ(throwMessage(anInt, readBool), "not an bool type !");
    EXPECT_EQ(throwMessage(anInt, readDouble), "type does not correspond !");
    EXPECT_EQ(throwMessage(bytes({12, 0, 0, 0, 19, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 16, 0, 0, 0, 1}), readFlags),
              "no std::vector<bool> type !");
    EXPECT_EQ(throwMessage(anInt, readText), "type does not correspond !");
    // Cut short, and lengths or counts beyond the end: refused before anything is allocated.
    EXPECT_EQ(throwMessage(bytes({16, 0, 0, 0, 1, 0}), readInt), "unexpected end of data !");
    EXPECT_EQ(throwMessage(bytes({11, 0, 0, 0, 19, 0, 0, 0, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0x7f, 'a'}),
                           readText),
              "unexpected end of data !");
    EXPECT_EQ(throwMessage(bytes({12, 0, 0, 0, 19, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x10, 11, 0, 0, 0}), readNames),
              "unexpected end of data !");
    EXPECT_EQ(throwMessage({}, readInt), "unexpected end of data !");

    // A failed read leaves the value alone and the reader where it was: the caller can still tell what was read.
    cDataBaseSerializer reader(anInt);
    double untouched = 5.0;
    EXPECT_THROW(reader.serializedeserialize(untouched), cSerializerException);
    EXPECT_EQ(untouched, 5.0);
    int32_t value = 0;
    reader.serializedeserialize(value);
    EXPECT_EQ(value, 1);
}

TEST(configurationValues, KeyBindingsLastOpenedFilesAndColours)
{
    cConfigData configuration;
    EXPECT_EQ(cConfigData::getString(0), "Reload All Files");
    EXPECT_EQ(cConfigData::getString(32), "Measure Delta X (Identical Y Axes)");
    EXPECT_EQ(cConfigData::getString(33), "");
    EXPECT_EQ(configuration.getKeyBinding(14), "+");
    EXPECT_EQ(configuration.getKeyBindings().size(), 33u);
    EXPECT_FALSE(configuration.verifyKeyBindings(nullptr)) << "the defaults do not collide";

    // "p" is the key of "New Analog Plot Page" already: refused, case aside.
    cTestLog logger;
    EXPECT_FALSE(configuration.setKeyBindingChecked(0, "p", logger));
    EXPECT_NE(logger.getString().find("The key binding for \"Reload All Files\" is already in use."),
              std::string::npos)
        << logger.getString();
    EXPECT_EQ(configuration.getKeyBinding(0), "");
    EXPECT_TRUE(configuration.setKeyBindingChecked(0, "R", logger));

    // Two bindings with one key: the later one gives way to its default, or to no key when that is taken.
    configuration.setKeyBinding(20, "R");  // "Previous View Port" has no default
    configuration.setKeyBinding(16, "H");  // "Zoom X": its default "X" is free
    cTestLog check;
    EXPECT_TRUE(configuration.verifyConfiguration(&check));
    EXPECT_NE(check.getString().find("configuration : the key binding for \"Previous View Port\" is already in use."),
              std::string::npos)
        << check.getString();
    EXPECT_NE(check.getString().find("configuration : the key binding for \"Zoom X\" is already in use."),
              std::string::npos);
    EXPECT_NE(check.getString().find("One or several configuration parameters was changed due to a configuration error."),
              std::string::npos);
    EXPECT_EQ(configuration.getKeyBinding(0), "R");
    EXPECT_EQ(configuration.getKeyBinding(20), "");
    EXPECT_EQ(configuration.getKeyBinding(6), "H");
    EXPECT_EQ(configuration.getKeyBinding(16), "X");

    for (int i = 0; i < 12; ++i)
        configuration.addLastOpenedFiles("/f" + std::to_string(i));
    configuration.addLastOpenedFiles("/f5");
    EXPECT_EQ(configuration.getNbLastOpenedFiles(), 10u);
    EXPECT_EQ(configuration.getLastOpenedFiles(0), "/f5");
    EXPECT_EQ(configuration.getLastOpenedFiles(1), "/f11");
    EXPECT_EQ(configuration.getLastOpenedFiles(9), "/f2");
    EXPECT_EQ(configuration.getLastOpenedFiles(7), "/f4") << "the moved name left its old place";
    configuration.removeNonExistingLastOpened();
    EXPECT_EQ(configuration.getNbLastOpenedFiles(), 0u) << "none of them exists";

    // The white background shows every colour inverted; set_option zoom_box_color sets the one it names.
    uint32_t grid = configuration.getGridColor();
    configuration.setFlagUseWhiteBackground(true);
    EXPECT_EQ(configuration.getGridColor(), ~grid & 0xffffffu);
    configuration.setFlagUseWhiteBackground(false);
    EXPECT_EQ(configuration.getGridColor(), grid);
    setOption(configuration, "set_option zoom_box_color 0x123456");
    EXPECT_EQ(configuration.getZoomBoxColor(), 0x123456u);
}

TEST(configurationValues, VerifyRefusesWhatTheAnalysesCannotUse)
{
    cConfigData configuration;
    EXPECT_FALSE(configuration.verifyConfiguration(nullptr)) << "the defaults pass";
    setOption(configuration, "set_option fft_parameter_nb_time_samples 1023");
    setOption(configuration, "set_option fft_parameter_oversampling_factor 0");
    setOption(configuration, "set_option convolution_parameter_sampling_frequency -1");
    setOption(configuration, "set_option eye_diagram_low_level -5");
    setOption(configuration, "set_option eye_diagram_rise_time_low_level 90");
    setOption(configuration, "set_option eye_diagram_rise_time_high_level 85");
    setOption(configuration, "set_option eye_diagram_number_of_intervals -1");
    setOption(configuration, "set_option eye_diagram_interval_start 2e-9");
    setOption(configuration, "set_option eye_diagram_interval_end 1e-9");
    configuration.setAutoReloadInterval(-1);
    configuration.setMessageWindowVisibilityTime(-3);
    cTestLog logger;
    EXPECT_TRUE(configuration.verifyConfiguration(&logger));
    const std::string log = logger.getString();
    for (const char* message :
         {"fft configuration : nb of time samples must be multiple of 2 ", "fft configuration : oversampling factor <= 0 ",
          "convolution configuration : sampling frequency <= 0.0 ", "eye diagram configuration : lower level < 0.0",
          "eye diagram configuration : rise-fall time lower level < upper level",
          "eye diagram configuration : nb of intervals < 0", "eye diagram configuration : time interval < 0",
          "configuration : auto reload time interval < 0",
          "configuration : message window visibility time interval < 0"})
        // A log line is trimmed: the messages' trailing blanks do not reach it.
        EXPECT_NE(log.find(vxString::trim(std::string(message))), std::string::npos) << message << "\n" << log;
    EXPECT_EQ(log.find("upper level > 100.0"), std::string::npos) << "only what is wrong is reported";
    EXPECT_EQ(configuration.getOptionNumber("fft_parameter_nb_time_samples"), 1024);
    EXPECT_EQ(configuration.getOptionNumber("fft_parameter_oversampling_factor"), 1);
    EXPECT_EQ(configuration.getOptionNumber("eye_diagram_low_level"), 40);
    EXPECT_EQ(configuration.getOptionNumber("eye_diagram_rise_time_high_level"), 80);
    EXPECT_EQ(configuration.getOptionNumber("eye_diagram_rise_time_low_level"), 20);
    EXPECT_EQ(configuration.getAutoReloadInterval(), 0.0);
    EXPECT_FALSE(configuration.verifyConfiguration(nullptr)) << "what was set back passes";

    // An upper level above 100 and one below the lower level.
    setOption(configuration, "set_option eye_diagram_high_level 120");
    cTestLog second;
    EXPECT_TRUE(configuration.verifyConfiguration(&second));
    EXPECT_NE(second.getString().find("eye diagram configuration : upper level > 100.0"), std::string::npos);
    setOption(configuration, "set_option eye_diagram_low_level 70");
    cTestLog third;
    EXPECT_TRUE(configuration.verifyConfiguration(&third));
    EXPECT_NE(third.getString().find("eye diagram configuration : upper level < lower level"), std::string::npos);
    EXPECT_EQ(configuration.getOptionNumber("eye_diagram_low_level"), 40);
    EXPECT_EQ(configuration.getOptionNumber("eye_diagram_high_level"), 60);
}

TEST(configurationValues, PartialReadKeepsWhatCameBeforeTheDamage)
{
    cConfigData written;
    written.setWindowSize(1500, 900);
    written.addLastOpenedFiles("/data/run.raw");
    setOption(written, "set_option schematic_mapping_top_spice top.x1");
    std::vector<uint8_t> blob = written.serializeTopic(topic_main);

    cConfigData whole;
    EXPECT_EQ(whole.deserializeTopic(blob, topic_main), load_ok);
    EXPECT_EQ(whole.windowWidth, 1500);
    EXPECT_EQ(whole.getOptionText("schematic_mapping_top_spice"), "top.x1");

    // The tag of the list of last opened files changed to one that no field has.
    std::vector<uint8_t> damaged = blob;
    cDataBaseSerializer probe;
    std::vector<std::string> files = {"/data/run.raw"};
    probe.serializedeserialize(files);
    auto at = std::search(damaged.begin(), damaged.end(), probe.buffer().begin(), probe.buffer().end());
    ASSERT_NE(at, damaged.end());
    *at = 99;
    cConfigData partial;
    EXPECT_EQ(partial.deserializeTopic(damaged, topic_main), load_partial);
    partial.setIncompatibleValuesToDefault();
    EXPECT_EQ(partial.windowWidth, 1500) << "read before the damage";
    EXPECT_EQ(partial.getNbLastOpenedFiles(), 0u);
    EXPECT_EQ(partial.getOptionText("schematic_mapping_top_spice"), "") << "after the damage: the default";
    EXPECT_EQ(partial.getKeyBindings().size(), 33u);

    // Nothing readable at all, and a blob cut in the middle of an option.
    cConfigData none;
    none.setWindowSize(300, 300);
    EXPECT_EQ(none.deserializeTopic(bytes({1, 2, 3}), topic_main), load_failed);
    std::vector<uint8_t> cut(blob.begin(), blob.end() - 5);
    cConfigData shortened;
    EXPECT_EQ(shortened.deserializeTopic(cut, topic_main), load_partial);
    EXPECT_EQ(shortened.getNbLastOpenedFiles(), 1u);

    // A stored option of another shape than this version's (two numbers where one is read) goes back.
    cConfigData odd;
    cOptionValue twoNumbers;
    twoNumbers.numbers = {1, 2};
    odd.setOptionValue("fft_parameter_nb_time_samples", twoNumbers);
    cConfigData oddRead;
    ASSERT_EQ(oddRead.deserializeTopic(odd.serializeTopic(topic_post_process), topic_post_process), load_ok);
    oddRead.setIncompatibleValuesToDefault();
    EXPECT_EQ(oddRead.getOption("fft_parameter_nb_time_samples")->numbers, std::vector<double>{1024});
}

TEST(configurationFile, SavedLoadedWithTopicsAndTheDirectory)
{
    cScratch scratch;
    const std::string name = scratch.file("conf.db");
    cTestLog logger;
    {
        wxWaveExplorerConfiguration first;
        first.setConfigFileName(name);
        EXPECT_FALSE(first.loadFromConfig(logger)) << "no file yet";
        EXPECT_NE(logger.getString().find("Could not load configuration at " + name + "."), std::string::npos);
        EXPECT_TRUE(first.checkConfigLoadedOrDefinitelyFailed());
        EXPECT_TRUE(first.checkAutomaticSaveAllowed()) << "a missing file holds nothing to lose";
        setOption(first, "set_option fft_parameter_nb_time_samples 4096");
        setOption(first, "set_option browser_use_full_hierarchical_names 1");
        setOption(first, "set_option use_white_background 1");
        first.setKeyBinding(0, "R");
        first.addLastOpenedFiles("/data/a.tr0");
        // The curve style settings that only the dialog edits: its text form, kept in range.
        EXPECT_TRUE(cConfigurationOptionText::setValueFromText(first, "default_curve_line_width", "3", logger));
        EXPECT_TRUE(cConfigurationOptionText::setValueFromText(first, "strong_colours", "yes", logger));
        for (const char* bad : {"7", "0", "2.5", "wide"})
            EXPECT_FALSE(cConfigurationOptionText::setValueFromText(first, "default_curve_line_width", bad, logger));
        EXPECT_FALSE(cConfigurationOptionText::setValueFromText(first, "strong_colours", "maybe", logger));
        EXPECT_EQ(cConfigurationOptionText::getValueText(first, "default_curve_line_width"), "3");
        const auto keys = cConfigurationOptionText::getOptionKeys(first);
        EXPECT_NE(std::find(keys.begin(), keys.end(), "strong_colours"), keys.end());
        EXPECT_TRUE(first.saveToConfig(logger));
        EXPECT_FALSE(first.getFlagConfigChanged());
    }
    EXPECT_NE(logger.getString().find("Saved post process configuration to " + name + "."), std::string::npos);

    wxWaveExplorerConfiguration second;
    second.setConfigFileName(name);
    cTestLog loadLog;
    ASSERT_TRUE(second.loadFromConfig(loadLog));
    for (const char* text : {"Loaded configuration from ", "Loaded post process configuration from ",
                             "Loaded browser from "})
        EXPECT_NE(loadLog.getString().find(text + name + "."), std::string::npos) << loadLog.getString();
    EXPECT_EQ(second.getOptionNumber("fft_parameter_nb_time_samples"), 4096);
    EXPECT_TRUE(second.getOptionFlag("browser_use_full_hierarchical_names"));
    EXPECT_EQ(second.getOptionNumber("default_curve_line_width"), 3.0);
    EXPECT_TRUE(second.getOptionFlag("strong_colours"));
    EXPECT_EQ(second.getKeyBinding(0), "R");
    EXPECT_EQ(second.getLastOpenedFiles(0), "/data/a.tr0");
    EXPECT_TRUE(second.getFlagUseWhiteBackground());
    EXPECT_EQ(second.getGridColor(), ~cConfigData::getDefaultColour(colour_grid) & 0xffffffu);

    // The directory lists one row per topic, above the directory's own rows, and a version per save.
    cDataBaseInterface db;
    db.open(name, sqliteDataBaseInterface::mode_read_only, 100);
    ASSERT_TRUE(db.readDbContents());
    EXPECT_FALSE(db.checkContentsFromOlderForm());
    for (uint32_t type : {3u, 36u, 37u}) {
        const cDataBaseContentsEntry* entry = db.contents().findEntryOfType(type);
        ASSERT_NE(entry, nullptr) << type;
        EXPECT_GT(entry->primaryKey, 4u);
    }
    EXPECT_EQ(db.contents().currentVersion, 1u);
    std::vector<uint8_t> older;
    EXPECT_TRUE(db.getFromDb(2, older)) << "the older form stands beside it";

    // The colours in the file do not depend on the background: a dark session writes the same bytes.
    cScratch other;
    wxWaveExplorerConfiguration dark;
    dark.setConfigFileName(other.file("conf.db"));
    dark.takeKeptValues(second);
    dark.setFlagUseWhiteBackground(false);
    EXPECT_EQ(dark.getGridColor(), cConfigData::getDefaultColour(colour_grid));
    auto darkBlob = dark.serializeTopic(topic_main);
    cDataBaseSerializer probe;
    std::vector<uint32_t> colours;
    for (uint32_t i = 0; i < nb_colours; ++i)
        colours.push_back(cConfigData::getDefaultColour(i));
    probe.serializedeserialize(colours);
    EXPECT_NE(std::search(darkBlob.begin(), darkBlob.end(), probe.buffer().begin(), probe.buffer().end()),
              darkBlob.end());
    auto whiteBlob = second.serializeTopic(topic_main);
    EXPECT_NE(std::search(whiteBlob.begin(), whiteBlob.end(), probe.buffer().begin(), probe.buffer().end()),
              whiteBlob.end());
}

TEST(configurationFile, OlderDirectoryFormIsReadAndKept)
{
    cScratch scratch;
    const std::string name = scratch.file("conf.db");
    // A file with the directory in row 2 only, as an older program writes it.
    {
        cConfigData values;
        values.setWindowSize(640, 480);
        cDataBaseInterface db;
        db.open(name, sqliteDataBaseInterface::mode_read_write_create, 100);
        db.putToDb(3, values.serializeTopic(topic_main));
        cDataBaseContents contents;
        contents.versioned = false;
        contents.addEntry(3, 3, {"configuration"});
        cDataBaseSerializer writer;
        contents.serializedeserialize(writer);
        db.putToDb(2, writer.buffer());
    }
    wxWaveExplorerConfiguration configuration;
    configuration.setConfigFileName(name);
    cTestLog logger;
    ASSERT_TRUE(configuration.loadFromConfig(logger)) << logger.getString();
    EXPECT_EQ(configuration.windowWidth, 640);
    configuration.setWindowSize(800, 600);
    ASSERT_TRUE(configuration.saveToConfig(logger)) << logger.getString();

    cDataBaseInterface db;
    db.open(name, sqliteDataBaseInterface::mode_read_only, 100);
    std::vector<uint8_t> data;
    EXPECT_FALSE(db.getFromDb(4, data)) << "no versioned directory appears";
    ASSERT_TRUE(db.readDbContents());
    EXPECT_TRUE(db.checkContentsFromOlderForm());
    EXPECT_EQ(db.contents().findEntryOfType(3)->primaryKey, 3u) << "the old row is overwritten in place";
    ASSERT_NE(db.contents().findEntryOfType(36), nullptr);
    EXPECT_GT(db.contents().findEntryOfType(36)->primaryKey, 4u) << "new keys never take a directory row";
    wxWaveExplorerConfiguration again;
    again.setConfigFileName(name);
    ASSERT_TRUE(again.loadFromConfig(logger));
    EXPECT_EQ(again.windowWidth, 800);
}

TEST(configurationFile, TwoInstancesKeepEachOthersChanges)
{
    cScratch scratch;
    const std::string name = scratch.file("conf.db");
    cTestLog logger;
    {
        wxWaveExplorerConfiguration seed;
        seed.setConfigFileName(name);
        setOption(seed, "set_option time_zone CET");
        ASSERT_TRUE(seed.saveToConfig(logger));
    }
    wxWaveExplorerConfiguration a, b;
    a.setConfigFileName(name);
    b.setConfigFileName(name);
    ASSERT_TRUE(a.loadFromConfig(logger));
    ASSERT_TRUE(b.loadFromConfig(logger));
    setOption(a, "set_option fft_parameter_nb_time_samples 8192");
    a.addLastOpenedFiles("/a.vcd");
    setOption(b, "set_option schematic_mapping_top_spice top.b");
    setOption(b, "set_option time_zone EST");
    ASSERT_TRUE(a.saveToConfig(logger));
    ASSERT_TRUE(b.saveToConfig(logger));
    EXPECT_NE(logger.getString().find("was changed by another instance"), std::string::npos);
    // b now holds a's change as well, and so does the file.
    EXPECT_EQ(b.getOptionNumber("fft_parameter_nb_time_samples"), 8192);
    wxWaveExplorerConfiguration fresh;
    fresh.setConfigFileName(name);
    ASSERT_TRUE(fresh.loadFromConfig(logger));
    EXPECT_EQ(fresh.getOptionNumber("fft_parameter_nb_time_samples"), 8192);
    EXPECT_EQ(fresh.getLastOpenedFiles(0), "/a.vcd");
    EXPECT_EQ(fresh.getOptionText("schematic_mapping_top_spice"), "top.b");
    EXPECT_EQ(fresh.getOptionText("time_zone"), "EST");
    // A save without news from elsewhere does not merge.
    cTestLog quiet;
    setOption(b, "set_option time_zone UTC");
    ASSERT_TRUE(b.saveToConfig(quiet));
    EXPECT_EQ(quiet.getString().find("another instance"), std::string::npos);
}

TEST(configurationFile, DamagedLockedAndUnwritableFilesLeaveDefaultsAndTheFileAlone)
{
    cScratch scratch;
    cTestLog logger;

    // Not a data base: defaults, no automatic save, and an explicit save fails without touching it.
    const std::string text = scratch.file("text.db");
    std::ofstream(text) << "these are not the bytes of a data base, but they are long enough to look like a header";
    wxWaveExplorerConfiguration notDb;
    notDb.setConfigFileName(text);
    EXPECT_FALSE(notDb.loadFromConfig(logger));
    EXPECT_NE(logger.getString().find("Could not load configuration at " + text + "."), std::string::npos);
    EXPECT_TRUE(notDb.checkConfigLoadedOrDefinitelyFailed());
    EXPECT_FALSE(notDb.checkAutomaticSaveAllowed());
    EXPECT_FALSE(notDb.saveToConfig(logger));
    EXPECT_NE(logger.getString().find("Could not save configuration to " + text + "."), std::string::npos);
    EXPECT_EQ(readBytes(text).substr(0, 20), "these are not the by");

    // Locked by another connection: not read yet, worth another try, which keeps the session's changes.
    const std::string name = scratch.file("conf.db");
    {
        wxWaveExplorerConfiguration seed;
        seed.setConfigFileName(name);
        setOption(seed, "set_option time_zone CET");
        ASSERT_TRUE(seed.saveToConfig(logger));
    }
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(name.c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE;", nullptr, nullptr, nullptr), SQLITE_OK);
    wxWaveExplorerConfiguration locked;
    locked.setConfigFileName(name);
    locked.setBusyTimeout(10);
    cTestLog lockLog;
    EXPECT_FALSE(locked.loadFromConfig(lockLog));
    EXPECT_NE(lockLog.getString().find("Could not load configuration at " + name + "."), std::string::npos);
    EXPECT_TRUE(locked.checkLoadIsWorthRetrying());
    EXPECT_FALSE(locked.checkAutomaticSaveAllowed());
    setOption(locked, "set_option schematic_mapping_top_spice top.session");
    EXPECT_FALSE(locked.saveToConfig(lockLog)) << "the writer waits for the lock, then gives up";
    sqlite3_exec(other, "COMMIT;", nullptr, nullptr, nullptr);
    sqlite3_close(other);
    ASSERT_TRUE(locked.loadFromConfig(lockLog));
    EXPECT_EQ(locked.getOptionText("time_zone"), "CET");
    EXPECT_EQ(locked.getOptionText("schematic_mapping_top_spice"), "top.session");

    // A folder whose parent does not exist is not made.
    wxWaveExplorerConfiguration nowhere;
    const std::string deep = scratch.file("missing/home/.HarlanTessel/conf.db");
    nowhere.setConfigFileName(deep);
    cTestLog deepLog;
    EXPECT_FALSE(nowhere.saveToConfig(deepLog));
    EXPECT_NE(deepLog.getString().find("Could not save configuration to " + deep + "."), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(scratch.file("missing")));
}

TEST(configurationOptionText, EveryOptionReadsBackItsOwnTextAndBadTextIsRefused)
{
    cConfigData configuration;
    setOption(configuration, "set_option time_zone \"Europe/Some \\\"quoted\\\" zone\"");
    setOption(configuration, "set_option zoom_box_color 0xa0b0c0");
    const auto keys = cConfigurationOptionText::getOptionKeys(configuration);
    ASSERT_GT(keys.size(), 100u);
    EXPECT_TRUE(std::is_sorted(keys.begin(), keys.end()));
    for (const std::string& key : keys) {
        cConfigData copy;
        copy.takeKeptValues(configuration);
        const std::string text = cConfigurationOptionText::getValueText(configuration, key);
        cTestLog logger;
        // Through the text and back, as the dialog applies an unchanged cell: nothing moves (NaN aside).
        copy.resetOptionToDefault(key);
        ASSERT_TRUE(cConfigurationOptionText::setValueFromText(copy, key, text, logger)) << key << " " << text;
        const cOptionValue* before = configuration.getOption(key);
        const cOptionValue* after = copy.getOption(key);
        ASSERT_NE(after, nullptr) << key;
        EXPECT_EQ(after->strings, before->strings) << key << " " << text;
        EXPECT_EQ(after->integers, before->integers) << key << " " << text;
        ASSERT_EQ(after->numbers.size(), before->numbers.size()) << key << " " << text;
        for (size_t i = 0; i < before->numbers.size(); ++i)
            EXPECT_TRUE(after->numbers[i] == before->numbers[i] ||
                        (std::isnan(after->numbers[i]) && std::isnan(before->numbers[i])))
                << key << " " << text;
    }
    EXPECT_EQ(cConfigurationOptionText::getValueText(configuration, "zoom_box_color"), "0xa0b0c0");

    cTestLog logger;
    EXPECT_FALSE(cConfigurationOptionText::setValueFromText(configuration, "fft_parameter_nb_time_samples", "many",
                                                            logger));
    EXPECT_NE(logger.getString().find("The value \"many\" does not fit the option \"fft_parameter_nb_time_samples\"."),
              std::string::npos);
    EXPECT_EQ(configuration.getOptionNumber("fft_parameter_nb_time_samples"), 1024);
}

TEST(configurationCommands, NameMappingAndTheFileCommandsAnswer)
{
    cScratch scratch;
    wxWaveExplorerConfiguration configuration;
    configuration.setConfigFileName(scratch.file("conf.db"));
    cTestLog logger;
    auto run = [&](const std::string& text) {
        wxWaveExplorerCommand command;
        EXPECT_TRUE(command.parseCommandString(text, logger)) << text;
        int result = cConfigurationCommands::perform(command, configuration, logger);
        return std::make_pair(result, command.returnValues());
    };
    EXPECT_EQ(run("get_configuration_file_name").second, std::vector<std::string>{scratch.file("conf.db")});
    setOption(configuration, "set_option schematic_mapping_top_spice x1.x2");
    EXPECT_EQ(run("get_mapping_spice_top").second, std::vector<std::string>{"x1.x2"});
    EXPECT_EQ(run("get_mapping_curve_top").second, std::vector<std::string>{""});
    EXPECT_EQ(run("save_configuration_file").first, 0);
    EXPECT_EQ(run("save_configuration_file " + scratch.file("copy.db")).first, 0);
    EXPECT_EQ(configuration.getConfigFileName(), scratch.file("conf.db")) << "a copy does not move the file";
    EXPECT_EQ(run("read_configuration_file " + scratch.file("none.db")).first, 3);
    EXPECT_NE(logger.getString().find("The configuration file \"" + scratch.file("none.db") + "\" could not be loaded."),
              std::string::npos);
    EXPECT_EQ(configuration.getOptionText("schematic_mapping_top_spice"), "x1.x2") << "a failed read changes nothing";
    EXPECT_EQ(run("add_section s").first, cConfigurationCommands::not_a_configuration_command);
}

TEST(configurationValues, EveryDamageOfABlobEndsInAUsableConfiguration)
{
    cConfigData written;
    written.addLastOpenedFiles("/data/a.raw");
    written.setKeyBinding(0, "R");
    setOption(written, "set_option time_zone \"CET\"");
    for (auto topic : {topic_main, topic_post_process, topic_browser}) {
        const std::vector<uint8_t> blob = written.serializeTopic(topic);
        std::mt19937 random(static_cast<unsigned>(topic));
        int partial = 0;
        for (int round = 0; round < 3000; ++round) {
            std::vector<uint8_t> damaged = blob;
            // One to three bytes changed, or the blob cut short.
            if (round % 4 == 3) {
                damaged.resize(random() % blob.size());
            } else {
                for (unsigned n = 1 + random() % 3; n > 0; --n)
                    damaged[random() % damaged.size()] = static_cast<uint8_t>(random());
            }
            cConfigData read;
            load_result result = read.deserializeTopic(damaged, topic);
            partial += result == load_partial;
            if (result == load_partial)
                read.setIncompatibleValuesToDefault();
            else if (result == load_failed)
                read.setDefaults(topic);
            // Whatever came out is a configuration this version writes and reads back whole.
            ASSERT_EQ(read.getKeyBindings().size(), 33u);
            ASSERT_EQ(read.getColour(nb_colours - 1) & ~0xffffffu, 0u);
            cConfigData again;
            ASSERT_EQ(again.deserializeTopic(read.serializeTopic(topic), topic), load_ok) << round;
        }
        EXPECT_GT(partial, 100) << "the damage reaches past the version word";
    }
}
