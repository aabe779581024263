// Files cut while they are mapped: a reader that works on its own mapping in place, and curves
// whose values stay in the file. The cut comes at a known moment, with no sleeping: when the
// reader asks whether the user interrupted it while the file is mapped, or between two loads.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "readerTestSupport.h"
#include "readers/scan/cBusErrorGuard.h"
#include "readers/scan/cVxMemoryFile.h"
#include "readers/vcd/cCurveParserVcd.h"
#include "vcdTestSupport.h"

extern char** environ;

using namespace vx3;
using namespace zwreaders;

namespace {

bool checkIsMappedHere(const std::string& path)
{
    std::ifstream maps("/proc/self/maps");
    std::string line;
    while (std::getline(maps, line))
        if (line.size() >= path.size() && line.compare(line.size() - path.size(), path.size(), path) == 0)
            return true;
    return false;
}

// Keeps the messages; the first time the reader asks for an interruption while the file is
// mapped, the file is cut to keptBytes under the mapping.
class cCuttingLogger : public cRecordingLogger {
public:
    cCuttingLogger(std::string path, off_t keptBytes) : mPath(std::move(path)), mKept(keptBytes) {}
    bool loggerCallBackVirtualCheckActionIsInterrupted() override
    {
        if (!mCut && checkIsMappedHere(mPath))
            mCut = ::truncate(mPath.c_str(), mKept) == 0;
        return false;
    }
    bool checkCut() const { return mCut; }

private:
    std::string mPath;
    off_t mKept;
    bool mCut = false;
};

uint64_t fileSize(const std::string& path)
{
    std::ifstream in(path, std::ios::binary | std::ios::ate);
    return in ? static_cast<uint64_t>(in.tellg()) : 0;
}

// ngspice writes a transient of an RC stage (about 20000 rows) as rawName in folder, in ascii
// or binary form; false when ngspice is missing or failed.
bool writeTransient(const cTempDir& dir, const std::string& rawName, bool ascii)
{
    if (::access("/usr/bin/ngspice", X_OK) != 0)
        return false;
    std::ostringstream deck;
    deck << "* rc stage\nV1 1 0 SIN(0 1 1k)\nR1 1 2 1k\nC1 2 0 1u\n.tran 1u 20m\n.control\n"
         << (ascii ? "set filetype=ascii\n" : "set filetype=binary\n") << "run\nwrite " << dir.file(rawName)
         << " v(1) v(2)\n.endc\n.end\n";
    const std::string netlist = dir.write(rawName + ".cir", deck.str());
    const std::string log = dir.file(rawName + ".log");
    const char* argv[] = {"ngspice", "-b", "-o", log.c_str(), netlist.c_str(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    pid_t pid = 0;
    const int spawned = posix_spawn(&pid, "/usr/bin/ngspice", &actions, nullptr, const_cast<char* const*>(argv), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    // Its exit code is 1 here (a batch run without .print lines): the file is what counts.
    return spawned == 0 && ::waitpid(pid, &status, 0) == pid && WIFEXITED(status) && fileSize(dir.file(rawName)) > 0;
}

}  // namespace

TEST(MappedFileCut, InPlaceReadsSeeZeroPagesAndTheCutIsTold)
{
    cTempDir dir;
    const long page = ::sysconf(_SC_PAGESIZE);
    const std::string name = dir.write("text.dat", std::string(16 * page, 'a'));
    const std::string otherName = dir.write("other.dat", std::string(16 * page, 'b'));
    cVxMemoryFile mapped, other;
    ASSERT_TRUE(mapped.openFile(name));
    ASSERT_TRUE(other.openFile(otherName));
    {
        busErrorGuard::cInPlaceReadScope scope(mapped.data(), mapped.size());
        const unsigned long caught = busErrorGuard::getCaughtCount();
        std::vector<std::string> kept;
        kept.emplace_back(mapped.data(), 100);
        ASSERT_EQ(::truncate(name.c_str(), 2 * page), 0);
        EXPECT_FALSE(scope.checkWasCut());
        // A string made across the cut: objects with destructors are alive while the fault is
        // handled, and nothing jumps over them.
        const std::string across(mapped.data() + page, 3 * page);
        EXPECT_TRUE(scope.checkWasCut());
        EXPECT_EQ(across.substr(0, page), std::string(page, 'a')) << "what is still in the file";
        EXPECT_EQ(across.substr(page), std::string(2 * page, '\0')) << "what is gone reads as zeros";
        EXPECT_EQ(busErrorGuard::getCaughtCount(), caught + 1) << "the rest of the mapping became zeros at once";
        EXPECT_EQ(std::string(mapped.data() + 15 * page, 4), std::string(4, '\0'));
        EXPECT_EQ(kept.front(), std::string(100, 'a'));
        // Another mapping, read by a guarded copy inside the scope, still fails its read alone.
        ASSERT_EQ(::truncate(otherName.c_str(), 0), 0);
        char copy[16];
        EXPECT_FALSE(other.readBytes(4 * page, copy, sizeof(copy)));
        EXPECT_NE(other.getErrorMessage().find("was truncated while it was read"), std::string::npos);
        EXPECT_EQ(busErrorGuard::getCaughtCount(), caught + 2);
        {
            busErrorGuard::cInPlaceReadScope inner(other.data(), other.size());
            EXPECT_FALSE(inner.checkWasCut()) << "a scope starts clean";
        }
        EXPECT_TRUE(scope.checkWasCut()) << "and gives the outer one back as it was";
    }
    // The jump works again after a fault handled either way (the signal mask was put back).
    char copy[16];
    EXPECT_FALSE(other.readBytes(8 * page, copy, sizeof(copy)));
}

TEST(MappedFileCut, DumpCutWhileItIsParsedFailsAndTheStoreIsKept)
{
    cTempDir dir;
    const std::string kept = dir.write("kept.csv", "time,v\n0,1\n1,2\n2,3\n");
    std::string text = "$timescale 1ns $end\n$scope module top $end\n$var wire 1 ! a $end\n"
                       "$var wire 8 \" bus [7:0] $end\n$upscope $end\n$enddefinitions $end\n";
    appendVcdChanges(text, (4u << 20));
    const std::string dump = dir.write("cut.vcd", text);

    cReading reading;
    ASSERT_EQ(reading.parse(kept), ok);
    const std::vector<double> before = reading.values(0, "v");
    cCuttingLogger cutter(dump, 4096);
    reading.parser.logger().setLoggerCallBack(&cutter);
    const returnCode code = reading.parse(dump);
    reading.parser.logger().setLoggerCallBack(&reading.messages);
    ASSERT_TRUE(cutter.checkCut()) << "the dump was cut while it was mapped";
    EXPECT_EQ(code, file_format_recognized);
    EXPECT_TRUE(cutter.contains("was cut while it was read.")) << cutter.text();
    ASSERT_EQ(reading.store.getNbOfDataSections(), 1u) << "nothing of the cut dump stays";
    EXPECT_EQ(reading.values(0, "v"), before) << "what was loaded before is untouched";
    // The program goes on: the short file that is left reads as far as it goes, the first file
    // is still there.
    EXPECT_NE(reading.parse(dump), action_interrupted);
    EXPECT_EQ(reading.values(0, "v"), before);
}

TEST(MappedFileCut, RawFileCutWhileItIsParsedFailsAndTheStoreIsKept)
{
    cTempDir dir;
    if (!writeTransient(dir, "ascii.raw", true))
        GTEST_SKIP() << "ngspice is needed to write the raw file";
    ASSERT_GT(fileSize(dir.file("ascii.raw")), 64u << 10);
    const std::string kept = dir.write("kept.csv", "time,v\n0,1\n1,2\n2,3\n");
    cReading reading;
    ASSERT_EQ(reading.parse(kept), ok);
    const std::vector<double> before = reading.values(0, "v");
    // The rows are read on this thread, straight from the mapping: the cut is met there.
    cCuttingLogger cutter(dir.file("ascii.raw"), 4096);
    reading.parser.logger().setLoggerCallBack(&cutter);
    const returnCode code = reading.parse(dir.file("ascii.raw"));
    reading.parser.logger().setLoggerCallBack(&reading.messages);
    ASSERT_TRUE(cutter.checkCut());
    EXPECT_EQ(code, file_format_recognized);
    EXPECT_TRUE(cutter.contains("Nutmeg Parser : the file \"" + dir.file("ascii.raw") + "\" was cut while it was read."))
        << cutter.text();
    ASSERT_EQ(reading.store.getNbOfDataSections(), 1u);
    EXPECT_EQ(reading.values(0, "v"), before);
    // A whole file opens after it.
    ASSERT_TRUE(writeTransient(dir, "whole.raw", true));
    EXPECT_EQ(reading.parse(dir.file("whole.raw")), ok) << reading.messages.text();
    EXPECT_EQ(reading.store.getNbOfDataSections(), 2u);
    EXPECT_EQ(reading.values(0, "v"), before);
}

TEST(MappedFileCut, CurvesLeftInACutFileFailToLoadAndTheLoadedOnesStay)
{
    cTempDir dir;
    // Binary raw file: every curve stays in the file until it is shown.
    if (!writeTransient(dir, "binary.raw", false))
        GTEST_SKIP() << "ngspice is needed to write the raw file";
    cReading reading;
    ASSERT_EQ(reading.parse(dir.file("binary.raw")), ok) << reading.messages.text();
    cCurvePlotDataSection& section = *reading.section();
    const uint64_t first = section.findVariableIndex("v(1)"), second = section.findVariableIndex("v(2)");
    ASSERT_NE(first, cCurvePlotDataSection::npos);
    ASSERT_NE(second, cCurvePlotDataSection::npos);
    cCurvePlotVariable& loaded = section.getVariable(first);
    cCurvePlotVariable& left = section.getVariable(second);
    ASSERT_TRUE(left.checkNeedsLoading()) << "the values are still in the file";
    ASSERT_EQ(loaded.loadDataFromDb(reading.parser.logger(), &section, first), ok);
    const uint64_t rows = loaded.getVectorSize();
    ASSERT_GT(rows, 10000u);
    const double last = loaded.getDoubleValue(rows - 1);

    ASSERT_EQ(::truncate(dir.file("binary.raw").c_str(), 4096), 0);
    const unsigned long caught = busErrorGuard::getCaughtCount();
    EXPECT_EQ(left.loadDataFromDb(reading.parser.logger(), &section, second), failed);
    EXPECT_GT(busErrorGuard::getCaughtCount(), caught) << "the load met the missing pages";
    EXPECT_TRUE(reading.messages.contains("loadDataFromDb failed for curve v(2)")) << reading.messages.text();
    EXPECT_TRUE(reading.messages.contains("was truncated while it was read")) << reading.messages.text();
    EXPECT_FALSE(left.checkHasStorage());
    EXPECT_EQ(loaded.getVectorSize(), rows) << "the curve loaded before keeps its values";
    EXPECT_EQ(loaded.getDoubleValue(rows - 1), last);
    // Asked again, it fails again with a message; the program goes on.
    reading.messages.clear();
    EXPECT_EQ(left.loadDataFromDb(reading.parser.logger(), &section, second), failed);
    EXPECT_TRUE(reading.messages.contains("loadDataFromDb failed for curve v(2)"));
}

TEST(MappedFileCut, DumpCurveLoadFailsWhenEvenTheDeclarationsAreCut)
{
    // Values left in the file are loaded after the declarations are read again: a file cut
    // inside them fails the load (it once took the process down).
    cTempDir dir;
    // Declarations over several pages: a cut inside them leaves whole pages missing.
    std::string text = "$timescale 1ns $end\n$scope module top $end\n$var wire 1 ! a $end\n"
                       "$var wire 8 \" bus [7:0] $end\n";
    for (unsigned k = 0; k < 1000; ++k)
        text += "$var wire 1 w" + std::to_string(k) + " spare" + std::to_string(k) + " $end\n";
    text += "$upscope $end\n$enddefinitions $end\n";
    ASSERT_GT(text.size(), 3u * ::sysconf(_SC_PAGESIZE));
    appendVcdChanges(text, (1u << 20));
    const std::string file = dir.write("cut.vcd", text);
    cCurvePlotDataFile store;
    cCurvePlotParser options;
    cRecordingLogger messages;
    options.logger().setLoggerCallBack(&messages);
    ASSERT_NO_FATAL_FAILURE(parseVcdKeepingValuesInFile(store, options, file));
    cCurvePlotDataSection& section = *store.getDataSectionFromIndex(0);
    const uint64_t a = section.findVariableIndex("top.a"), bus = section.findVariableIndex("top.bus[7:0]");
    ASSERT_EQ(section.getVariable(a).loadDataFromDb(options.logger(), &section, a), ok);
    const uint64_t count = section.getVariable(a).getValueCount();
    ASSERT_EQ(::truncate(file.c_str(), 40), 0);
    EXPECT_EQ(section.getVariable(bus).loadDataFromDb(options.logger(), &section, bus), failed);
    EXPECT_TRUE(messages.contains("loadDataFromDb failed for curve top.bus[7:0]")) << messages.text();
    EXPECT_TRUE(messages.contains("was truncated while it was read")) << messages.text();
    EXPECT_EQ(section.getVariable(a).getValueCount(), count);
    options.logger().setLoggerCallBack(nullptr);
}
