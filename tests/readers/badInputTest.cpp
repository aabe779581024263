// Bad input: random bytes, binary data under a table's name, ragged rows, a line of 2 GB, a file
// cut short while it is read. Each ends with the readers' messages, nothing half added, and the
// files already open untouched.
#include <atomic>
#include <random>
#include <thread>

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
    std::string text = "t,a,b\n";
    for (int i = 0; i < 300000; ++i)
        text += std::to_string(i) + ",0.25," + std::to_string(i % 97) + "\n";
    // Whatever moment the cut comes, a parse ends with a consistent store: every curve as long
    // as its x axis and no longer than the file, or nothing added at all.
    for (int attempt = 0; attempt < 3; ++attempt) {
        const std::string file = dir.write("cut.csv", text);
        cOpenStore reading(dir);
        std::atomic<bool> started{false};
        std::thread cutter([&] {
            while (!started)
                std::this_thread::yield();
            std::this_thread::sleep_for(std::chrono::microseconds(500 * attempt));
            (void)::truncate(file.c_str(), static_cast<off_t>(text.size() / (2 + attempt)));
        });
        started = true;
        const returnCode code = reading.parse(file);
        cutter.join();
        if (code == ok || code == partly_parsed) {
            ASSERT_EQ(reading.store.getNbOfDataSections(), 2u);
            const std::vector<double> x = reading.values(1, "");
            EXPECT_LE(x.size(), 300000u);
            EXPECT_EQ(reading.values(1, "a").size(), x.size());
            EXPECT_EQ(reading.values(1, "b").size(), x.size());
            for (size_t i = 0; i < x.size(); ++i)
                ASSERT_EQ(x[i], static_cast<double>(i));
        } else {
            EXPECT_EQ(reading.store.getNbOfDataSections(), 1u);
        }
        reading.section(0);
        reading.messages.clear();
        ASSERT_EQ(reading.section(0)->getSectionId(), reading.id) << "the open file stays";
    }
}
