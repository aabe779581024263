// Bad input: random bytes, binary data under a table's name, ragged rows, a line of 2 GB, a file
// cut short while it is read. Each ends with the readers' messages, nothing half added, and the
// files already open untouched.
#include <algorithm>
#include <random>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "readerTestSupport.h"

using namespace vx3;
using namespace zwreaders;

namespace {

struct cOpenStore : cReading {
    uint64_t id = 0;
    std::vector<double> before;
    explicit cOpenStore(const cTempDir& dir)
    {
        EXPECT_EQ(parse(dir.write("good.csv", "t,v\n0,1\n1,2\n2,3\n")), ok);
        id = section(0)->getSectionId();
        before = values(0, "v");
        messages.clear();
    }
    void expectUntouched()
    {
        ASSERT_EQ(store.getNbOfDataSections(), 1u);
        EXPECT_EQ(store.getNbOfDbFiles(), 1u);
        EXPECT_EQ(section(0)->getSectionId(), id);
        EXPECT_EQ(values(0, "v"), before);
    }
};

std::string randomBytes(size_t count, unsigned seed)
{
    std::mt19937 generator(seed);
    std::string bytes(count, '\0');
    for (char& c : bytes)
        c = static_cast<char>(generator() & 0xFF);
    return bytes;
}

}  // namespace

TEST(BadInput, RandomBytesAndBinaryDataUnderATableName)
{
    cTempDir dir;
    cOpenStore reading(dir);
    for (const char* name : {"noise.bin", "noise.csv", "noise.dat", "noise.html"}) {
        const std::string file = dir.write(name, randomBytes(100000, 11));
        reading.messages.clear();
        EXPECT_EQ(reading.parse(file), failed) << name;
        EXPECT_TRUE(reading.messages.contains(" - E - Failed to parse the file \"" + file + "\".")) << reading.messages.text();
        reading.expectUntouched();
    }
    reading.messages.clear();
    reading.parse(dir.file("noise.csv"));
    EXPECT_TRUE(reading.messages.contains("CSV Parser : the file \"" + dir.file("noise.csv") + "\" holds binary data."))
        << reading.messages.text();
}

TEST(BadInput, RaggedRowsAreReportedAndTheRestIsRead)
{
    cTempDir dir;
    cOpenStore reading(dir);
    const std::string file = dir.write("ragged.csv", "t,a,b\n0,1,2\n1,2,3,4,5\n2,3,4\n3,4\n4,5,6\n5,6,7\n");
    EXPECT_EQ(reading.parse(file), partly_parsed) << reading.messages.text();
    EXPECT_TRUE(reading.messages.contains("CSV Parser : The row 3 exceeds the number of defined columns.")) << reading.messages.text();
    EXPECT_TRUE(reading.messages.contains("was parsed only partially ."));
    ASSERT_EQ(reading.store.getNbOfDataSections(), 2u);
    const std::vector<double> b = reading.values(1, "b");
    ASSERT_EQ(b.size(), 6u);
    EXPECT_EQ(b[1], 3.0);
    EXPECT_TRUE(std::isnan(b[3]));
    // Many bad cells: the first few are told, then a note that the rest are not.
    std::string noisy = "t,v\n";
    for (int i = 0; i < 40; ++i)
        noisy += std::to_string(i) + (i % 2 ? ",x\n" : ",1\n");
    cReading many;
    EXPECT_EQ(many.parse(dir.write("noisy.csv", noisy)), partly_parsed);
    EXPECT_TRUE(many.messages.contains(" Further, similar message will be supressed.")) << many.messages.text();
    EXPECT_LT(std::count(many.messages.text().begin(), many.messages.text().end(), '\n'), 10);
}

TEST(BadInput, ALineOfTwoGigabytes)
{
    cTempDir dir;
    cOpenStore reading(dir);
    // A header, then 2 GB without a line end (a sparse file: no disk is used).
    const std::string file = dir.write("long.csv", "t,v\n0,1\n1,");
    ASSERT_EQ(::truncate(file.c_str(), (2ll << 30) + 17), 0);
    EXPECT_EQ(reading.parse(file), failed);
    EXPECT_TRUE(reading.messages.contains(" - E - Failed to parse the file \"" + file + "\".")) << reading.messages.text();
    reading.expectUntouched();

    // Text all the way: the slow reader refuses the line and says why.
    const std::string text = dir.write("wide.csv", "a,b\n" + std::string(65u << 20, '7') + "\n");
    reading.messages.clear();
    EXPECT_EQ(reading.parse(text), failed);
    EXPECT_TRUE(reading.messages.contains("CSV Parser : the line 2 is longer than 67108864 characters.")) << reading.messages.text();
    reading.expectUntouched();
}

TEST(BadInput, AFileCutShortWhileItIsRead)
{
    cTempDir dir;
    // A bad cell early in the file makes the reader warn while it reads; the warning's call-back
    // cuts the file there and then, so the cut always lands in the middle of the read.
    const int rows = 300000;
    std::string text = "t,a,b\n";
    for (int i = 0; i < rows; ++i)
        text += std::to_string(i) + (i == 20 ? ",x," : ",0.25,") + std::to_string(i % 97) + "\n";
    struct cCuttingLogger : cRecordingLogger {
        std::string file;
        off_t size = 0;
        int cuts = 0;
        void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& message) override
        {
            cRecordingLogger::loggerCallBackVirtualLogMessage(severity, message);
            if (cuts == 0 && ::truncate(file.c_str(), size) == 0)
                ++cuts;
        }
    };
    // The fast reader reads block by block as it converts; the slow reader (which the usual
    // chain hands a file with a text cell) takes the whole text in one read before it converts,
    // so it has no "while" to cut into.
    for (unsigned type : {static_cast<unsigned>(curvePlotParser::tabulated_fast)}) {
        for (const off_t size : {static_cast<off_t>(text.size() / 2), static_cast<off_t>(5000)}) {
            const std::string file = dir.write("cut.csv", text);
            cOpenStore reading(dir);
            cCuttingLogger cutter;
            cutter.file = file;
            cutter.size = size;
            reading.parser.logger().setLoggerCallBack(&cutter);
            const returnCode code = reading.parse(file, type);
            reading.parser.logger().setLoggerCallBack(&reading.messages);
            ASSERT_EQ(cutter.cuts, 1) << "the reader warned while it read: " << cutter.text();
            // Rows wholly before the cut; the one it splits may be read in part or not at all.
            const std::string kept = text.substr(0, static_cast<size_t>(size));
            const size_t wholeRows = static_cast<size_t>(std::count(kept.begin(), kept.end(), '\n')) - 1;
            SCOPED_TRACE("cut at " + std::to_string(size) + ", reader type " + std::to_string(type) + ": " +
                         cutter.text());
            if (code == ok || code == partly_parsed) {
                ASSERT_EQ(reading.store.getNbOfDataSections(), 2u);
                const std::vector<double> x = reading.values(1, "");
                EXPECT_LE(x.size(), wholeRows + 1) << "nothing is read beyond the cut";
                EXPECT_GE(x.size(), 20u) << "the rows before the warning are there";
                EXPECT_EQ(reading.values(1, "a").size(), x.size());
                EXPECT_EQ(reading.values(1, "b").size(), x.size());
                for (size_t i = 0; i < x.size(); ++i)
                    ASSERT_EQ(x[i], static_cast<double>(i));
                EXPECT_EQ(reading.section(0)->getSectionId(), reading.id) << "the open file stays";
                EXPECT_EQ(reading.values(0, "v"), reading.before);
            } else {
                EXPECT_EQ(code, failed);
                reading.expectUntouched();  // nothing half added
            }
        }
    }
}
