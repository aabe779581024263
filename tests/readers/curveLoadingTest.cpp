// Loading curve values from mapped files: lazy loading and release, one pass for many columns,
// files that are truncated while they are read, and bad files.
#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <map>
#include <sstream>

#include <gtest/gtest.h>

#include "../base/testSupport.h"
#include "base/cVxLogger.h"
#include "base/vxTime.h"
#include "model/cCurvePlotDataFile.h"
#include "readers/cStridedBinaryDbLoader.h"
#include "readers/scan/cBusErrorGuard.h"

using namespace vx3;
using namespace vx3::curvePlotProperties;

namespace {

constexpr unsigned kDbType = fileDbSupport::nutmeg_binary_7;  // little-endian rows, parallel access

// Registers a loader for the test's db type and removes it again.
struct cLoaderRegistration {
    explicit cLoaderRegistration(std::shared_ptr<cCurveDbLoader> loader, unsigned type = kDbType) : mType(type)
    {
        curveDbLoaders::registerLoader(type, std::move(loader));
    }
    ~cLoaderRegistration() { curveDbLoaders::unregisterLoader(mType); }
    unsigned mType;
};

class cCollectingLogger {
public:
    cCollectingLogger() { logger.setLoggerCallBack(&messages); }
    cVxLogger logger;
    cVxStringLogger messages;
    std::string text() const { return messages.getBufferAsString(); }
};

void writeDoubles(const std::string& name, uint64_t count, double scale)
{
    std::vector<double> values(count);
    for (uint64_t i = 0; i < count; ++i)
        values[i] = scale * static_cast<double>(i);
    FILE* file = std::fopen(name.c_str(), "wb");
    ASSERT_NE(file, nullptr);
    ASSERT_EQ(std::fwrite(values.data(), 8, count, file), count);
    std::fclose(file);
}

// A section of curves whose values lie in fileName: curve k is the entry (position, count)
// with the given stride.
cCurvePlotDataSection* makeSection(cCurvePlotDataFile& store, const std::string& fileName, uint64_t curves,
                                   uint64_t count, uint64_t firstPosition, uint64_t step, uint64_t stride)
{
    cFileDbSupport& file = store.findDbSupport(fileName, kDbType);
    cCurvePlotDataSection* section = store.addDataSection(file);
    const cCurvePlotDataType* type = store.addType("V", data_double, curvePlotDataType::volt);
    section->reserveVariables(curves);
    for (uint64_t k = 0; k < curves; ++k) {
        const uint64_t index = section->addVariable(type, "v" + std::to_string(k));
        cCurvePlotVariable& variable = section->getVariable(index);
        variable.setFile(&file);
        variable.setDbSize(count);
        variable.setDbStride(stride);
        variable.addDbEntry(firstPosition + k * step, count);
    }
    return section;
}

// Runs body in a forked child and returns what it reported as "name value" lines. A child has a
// memory record and limits of its own: what other tests of this process did cannot move it.
std::map<std::string, double> runInChild(const std::function<void(std::ostream&)>& body)
{
    std::map<std::string, double> report;
    int channel[2];
    if (::pipe(channel) != 0)
        return report;
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(channel[0]);
        std::ostringstream out;
        body(out);
        out << "done 1\n";
        const std::string text = out.str();
        (void)!::write(channel[1], text.data(), text.size());
        ::_exit(0);
    }
    ::close(channel[1]);
    std::string text;
    char buffer[4096];
    for (ssize_t n; (n = ::read(channel[0], buffer, sizeof(buffer))) > 0;)
        text.append(buffer, static_cast<size_t>(n));
    ::close(channel[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    std::istringstream in(text);
    std::string name;
    double value;
    while (in >> name >> value)
        report[name] = value;
    return report;
}

}  // namespace

TEST(CurveLoading, LoadReleaseAndParallelColumns)
{
    zwtest::cTempDir dir;
    cLoaderRegistration registration(std::make_shared<cStridedBinaryDbLoader>());
    // Rows of 5 doubles: value (r, c) = r * 10 + c, after a 24-byte header.
    const uint64_t rows = 50000, columns = 5;
    std::string bytes(24 + rows * columns * 8, '\0');
    for (uint64_t r = 0; r < rows; ++r)
        for (uint64_t c = 0; c < columns; ++c) {
            const double v = static_cast<double>(r * 10 + c);
            std::memcpy(&bytes[24 + (r * columns + c) * 8], &v, 8);
        }
    const std::string name = dir.write("rows.raw", bytes);
    cCurvePlotDataFile store;
    cCurvePlotDataSection* section = makeSection(store, name, columns, rows, 24, 8, columns * 8);
    cCollectingLogger log;

    cCurvePlotVariable& v2 = section->getVariable(2);
    EXPECT_TRUE(v2.checkNeedsLoading());
    ASSERT_EQ(v2.loadDataFromDb(log.logger, section, 2), ok) << log.text();
    EXPECT_FALSE(v2.checkNeedsLoading());
    ASSERT_EQ(v2.getVectorSize(), rows);
    EXPECT_EQ(v2.doubleValues()[0], 2.0);
    EXPECT_EQ(v2.doubleValues()[rows - 1], static_cast<double>((rows - 1) * 10 + 2));
    const double* loaded = v2.doubleValues();
    EXPECT_EQ(v2.loadDataFromDb(log.logger, section, 2), ok);
    EXPECT_EQ(v2.doubleValues(), loaded) << "loaded once";

    v2.incrementReferenceCount();
    EXPECT_FALSE(v2.releaseDb()) << "in use";
    EXPECT_EQ(store.collectGarbage(), 0u);
    v2.decrementReferenceCount();
    EXPECT_EQ(store.countNumberOfCurvesThatCanBeReleased(), 1u);
    EXPECT_EQ(store.collectGarbage(), rows * 8);
    EXPECT_TRUE(v2.checkNeedsLoading());
    EXPECT_FALSE(v2.checkHasStorage());

    // All curves in one pass, on two threads: the same values as one by one.
    ASSERT_EQ(cCurvePlotVariable::loadDataFromDbParallel(log.logger, *section, {0, 1, 2, 3, 4}, 2), ok) << log.text();
    for (uint64_t c = 0; c < columns; ++c) {
        const cCurvePlotVariable& v = section->getVariable(c);
        ASSERT_EQ(v.getVectorSize(), rows);
        for (uint64_t r = 0; r < rows; r += 4999)
            ASSERT_EQ(v.doubleValues()[r], static_cast<double>(r * 10 + c));
    }
    EXPECT_EQ(section->collectGarbage(), columns * rows * 8);

    store.findDbSupport(name).closeFile();
    ASSERT_TRUE(store.findDbSupport(name).openFileImpl(name));
    ASSERT_NE(store.findDbSupport(name).memoryFileHandle(), nullptr) << "mapping first";

    // Big-endian files swap every value.
    std::string big(bytes);
    for (uint64_t i = 24; i + 8 <= big.size(); i += 8)
        std::reverse(big.begin() + static_cast<std::ptrdiff_t>(i), big.begin() + static_cast<std::ptrdiff_t>(i + 8));
    const std::string bigName = dir.write("rows_be.raw", big);
    cLoaderRegistration bigEndian(std::make_shared<cStridedBinaryDbLoader>(true), fileDbSupport::nutmeg_binary_8);
    cFileDbSupport& bigFile = store.findDbSupport(bigName, fileDbSupport::nutmeg_binary_8);
    cCurvePlotDataSection* bigSection = store.addDataSection(bigFile);
    const uint64_t bi = bigSection->addVariable(section->getVariable(0).getType(), "b");
    cCurvePlotVariable& b = bigSection->getVariable(bi);
    b.setFile(&bigFile);
    b.setDbSize(rows);
    b.setDbStride(columns * 8);
    b.addDbEntry(24 + 3 * 8, rows);
    ASSERT_EQ(b.loadDataFromDb(log.logger, bigSection, bi), ok) << log.text();
    EXPECT_EQ(b.doubleValues()[7], 73.0);
}

TEST(CurveLoading, AFileThatCannotBeMappedIsReadThroughFile)
{
    zwtest::cTempDir dir;
    // The same rows as above, then a sparse tail to 4 GB. The child's address space is limited
    // to 1 GB more than it uses, so mapping the file fails and the loads must read it.
    const uint64_t rows = 20000, columns = 5;
    std::string bytes(24 + rows * columns * 8, '\0');
    for (uint64_t r = 0; r < rows; ++r)
        for (uint64_t c = 0; c < columns; ++c) {
            const double v = static_cast<double>(r * 10 + c);
            std::memcpy(&bytes[24 + (r * columns + c) * 8], &v, 8);
        }
    const std::string name = dir.write("rows.raw", bytes);
    ASSERT_EQ(::truncate(name.c_str(), 4ll << 30), 0);

    auto report = runInChild([&](std::ostream& out) {
        rlimit limit{};
        const rlim_t room = cMemoryUsage::getMemoryUsage(false) + (1ull << 30);
        limit.rlim_cur = limit.rlim_max = room;
        out << "limited " << (::setrlimit(RLIMIT_AS, &limit) == 0) << "\n";
        cLoaderRegistration registration(std::make_shared<cStridedBinaryDbLoader>());
        cCurvePlotDataFile store;
        cCurvePlotDataSection* section = makeSection(store, name, columns, rows, 24, 8, columns * 8);
        cCollectingLogger log;
        cCurvePlotVariable& v2 = section->getVariable(2);
        out << "single " << (v2.loadDataFromDb(log.logger, section, 2) == ok) << "\n";
        cFileDbSupport& file = store.findDbSupport(name);
        out << "mapped " << (file.memoryFileHandle() != nullptr) << "\n";
        out << "read " << (file.binaryFileHandle() != nullptr) << "\n";
        uint64_t wrong = v2.getVectorSize() == rows ? 0 : rows;
        for (uint64_t r = 0; r < v2.getVectorSize(); ++r)
            wrong += v2.doubleValues()[r] != static_cast<double>(r * 10 + 2);
        out << "single_wrong " << wrong << "\n";
        out << "parallel "
            << (cCurvePlotVariable::loadDataFromDbParallel(log.logger, *section, {0, 1, 3, 4}, 2) == ok) << "\n";
        wrong = 0;
        for (uint64_t c = 0; c < columns; ++c) {
            const cCurvePlotVariable& v = section->getVariable(c);
            wrong += v.getVectorSize() == rows ? 0 : rows;
            for (uint64_t r = 0; r < v.getVectorSize(); ++r)
                wrong += v.doubleValues()[r] != static_cast<double>(r * 10 + c);
        }
        out << "parallel_wrong " << wrong << "\n";
    });
    ASSERT_EQ(report["done"], 1) << "the child ran to its end";
    ASSERT_EQ(report["limited"], 1);
    EXPECT_EQ(report["mapped"], 0) << "the 4 GB file does not fit the child's address space";
    EXPECT_EQ(report["read"], 1) << "it is opened for reading instead";
    EXPECT_EQ(report["single"], 1);
    EXPECT_EQ(report["single_wrong"], 0);
    EXPECT_EQ(report["parallel"], 1);
    EXPECT_EQ(report["parallel_wrong"], 0);
}

TEST(CurveLoading, MissingLoaderTypeOrFileFailsWithCode)
{
    zwtest::cTempDir dir;
    const std::string name = dir.file("values.raw");
    writeDoubles(name, 100, 1.0);
    cCurvePlotDataFile store;
    cCurvePlotDataSection* section = makeSection(store, name, 1, 100, 0, 0, 0);
    cCollectingLogger log;
    cCurvePlotVariable& v = section->getVariable(0);
    EXPECT_EQ(v.loadDataFromDb(log.logger, section, 0), failed) << "no loader registered";
    EXPECT_NE(log.text().find("cCurvePlotVariable::loadDataFromDb failed for curve v0"), std::string::npos);
    EXPECT_TRUE(v.checkNeedsLoading());

    cLoaderRegistration registration(std::make_shared<cStridedBinaryDbLoader>());
    v.setDbSize(0);
    EXPECT_EQ(v.loadDataFromDb(log.logger, section, 0), failed);
    EXPECT_NE(log.text().find("has empty data size."), std::string::npos);
    v.setDbSize(100);
    v.setFlagMustClose(true);
    EXPECT_EQ(v.loadDataFromDb(log.logger, section, 0), failed);
    EXPECT_NE(log.text().find("The variable \"v0\" must close."), std::string::npos);
    v.setFlagMustClose(false);
    ASSERT_EQ(v.loadDataFromDb(log.logger, section, 0), ok) << log.text();
    EXPECT_EQ(v.doubleValues()[99], 99.0);

    // In-memory formats neither load nor release.
    cFileDbSupport& csv = store.findDbSupport(dir.file("t.csv"), fileDbSupport::csv);
    cCurvePlotDataSection* memory = store.addDataSection(csv);
    cCurvePlotVariable& m = memory->getVariable(memory->addVariable(v.getType(), "m"));
    m.setFile(&csv);
    const double values[] = {1, 2, 3};
    m.setDoubleValues(values, 3);
    EXPECT_EQ(m.loadDataFromDb(log.logger, memory, 0), ok);
    EXPECT_FALSE(m.releaseDb());
    EXPECT_EQ(m.getVectorSize(), 3u);

    // The file is gone: a clear message, nothing already loaded is lost.
    v.releaseDb();
    store.findDbSupport(name).closeFile();
    const uint64_t otherIndex = section->addVariable(v.getType(), "w");  // may move the curves
    cCurvePlotVariable& other = section->getVariable(otherIndex);
    other.setDoubleValues(values, 3);
    ASSERT_EQ(::unlink(name.c_str()), 0);
    log.messages.clear();
    EXPECT_EQ(section->getVariable(0).loadDataFromDb(log.logger, section, 0), file_not_found);
    EXPECT_NE(log.text().find("does no longer exist."), std::string::npos);
    EXPECT_EQ(other.getVectorSize(), 3u);
}

TEST(CurveLoading, BadFilesAreRefusedWithMessages)
{
    zwtest::cTempDir dir;
    cLoaderRegistration registration(std::make_shared<cStridedBinaryDbLoader>());
    cCurvePlotDataFile store;
    cCollectingLogger log;
    auto tryLoad = [&](const std::string& name) {
        cCurvePlotDataSection* section = makeSection(store, name, 1, 1000, 0, 0, 0);
        log.messages.clear();
        const returnCode code = section->getVariable(0).loadDataFromDb(log.logger, section, 0);
        EXPECT_TRUE(section->getVariable(0).checkNeedsLoading()) << name;
        return std::make_pair(code, log.text());
    };
    auto empty = tryLoad(dir.write("empty.raw", ""));
    EXPECT_EQ(empty.first, failed);
    EXPECT_NE(empty.second.find("is empty."), std::string::npos) << empty.second;
    auto directory = tryLoad(dir.path());
    EXPECT_EQ(directory.first, failed);
    EXPECT_NE(directory.second.find("is not a regular file."), std::string::npos) << directory.second;
    const std::string fifo = dir.file("fifo");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    auto pipe = tryLoad(fifo);  // must not block waiting for a writer
    EXPECT_EQ(pipe.first, failed);
    EXPECT_NE(pipe.second.find("is not a regular file."), std::string::npos);
    const std::string shortName = dir.file("short.raw");
    writeDoubles(shortName, 10, 1.0);
    auto truncated = tryLoad(shortName);  // 1000 values announced, 10 there
    EXPECT_EQ(truncated.first, failed);
    EXPECT_NE(truncated.second.find("loadDataFromDb failed for curve v0"), std::string::npos);
    if (::geteuid() != 0) {  // permissions don't stop the superuser
        const std::string locked = dir.write("locked.raw", std::string(8000, '\0'));
        ::chmod(locked.c_str(), 0);
        auto unreadable = tryLoad(locked);
        EXPECT_EQ(unreadable.first, failed);
        EXPECT_NE(unreadable.second.find("cannot be read"), std::string::npos) << unreadable.second;
    }

    // The guard of the size: a file still being written holds fewer values than announced.
    cCurveDbSupport entry;
    entry.setDbSize(100);
    EXPECT_TRUE(entry.checkOrAdjustDbSizeFromFileSize(16, 24, 8, 16 + 24 * 9 + 8));
    EXPECT_EQ(entry.getDbSize(), 10u);
    EXPECT_FALSE(entry.checkOrAdjustDbSizeFromFileSize(16, 24, 8, 20));
    EXPECT_EQ(entry.getDbSize(), 0u);
}

namespace {
// Reads in chunks; after the first one it has the helper process truncate the file and waits
// until that is done, so that the next chunk touches pages that no longer exist.
class cTruncatingLoader : public cStridedBinaryDbLoader {
public:
    int toChild = -1, fromChild = -1;
    bool signalled = false;
    uint64_t chunk = 1;  // values per read

    int loadBlocks(cCurveLoadRequest& request, cBitWiseParser<cVxMemoryFile>& file, std::string& error) override
    {
        cCurvePlotVariable& variable = request.variable;
        uint64_t position = 0, count = 0;
        variable.getDbEntry(0, position, count);
        for (uint64_t done = 0; done < count; done += chunk) {
            const uint64_t n = std::min(chunk, count - done);
            if (!file.readBytes(position + done * 8, variable.data() + done * 8, n * 8)) {
                error = file.getErrorMessage();
                return 3;
            }
            if (!signalled) {
                signalled = true;
                char go = 'g';
                if (::write(toChild, &go, 1) != 1 || ::read(fromChild, &go, 1) != 1)
                    return 3;
            }
        }
        variable.setUsedValueCount(count);
        return 0;
    }
};
}  // namespace

namespace {
// Loads an 80 MB curve in chunks of chunkBytes while a child process truncates the file to 4 KB
// after the first chunk. Returns the bus errors caught meanwhile.
unsigned long loadWhileTruncated(const std::string& name, uint64_t chunkBytes)
{
    const uint64_t count = 10u << 20;  // 80 MB of doubles
    writeDoubles(name, count, 0.25);
    int down[2], up[2];
    EXPECT_EQ(::pipe(down), 0);
    EXPECT_EQ(::pipe(up), 0);
    const pid_t child = ::fork();
    if (child == 0) {  // waits for the word, truncates to 4 KB, answers
        char go;
        if (::read(down[0], &go, 1) == 1 && ::truncate(name.c_str(), 4096) == 0)
            (void)::write(up[1], &go, 1);
        ::_exit(0);
    }
    auto loader = std::make_shared<cTruncatingLoader>();
    loader->toChild = down[1];
    loader->fromChild = up[0];
    loader->chunk = chunkBytes / 8;
    cLoaderRegistration registration(loader);
    cCurvePlotDataFile store;
    cCurvePlotDataSection* section = makeSection(store, name, 2, count, 0, 0, 0);
    cCurvePlotVariable& kept = section->getVariable(1);
    const double values[] = {4, 5};
    kept.setDoubleValues(values, 2);
    cCollectingLogger log;
    const unsigned long caughtBefore = busErrorGuard::getCaughtCount();
    cCurvePlotVariable& v = section->getVariable(0);
    EXPECT_EQ(v.loadDataFromDb(log.logger, section, 0), failed);
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    const unsigned long caught = busErrorGuard::getCaughtCount() - caughtBefore;
    EXPECT_NE(log.text().find("cCurvePlotVariable::loadDataFromDb failed for curve v0"), std::string::npos)
        << log.text();
    EXPECT_TRUE(v.checkNeedsLoading());
    EXPECT_FALSE(v.checkHasStorage());
    EXPECT_EQ(kept.getVectorSize(), 2u) << "nothing already loaded is lost";
    // A retry fails the same way (now on the size check of the shorter file).
    log.messages.clear();
    EXPECT_EQ(v.loadDataFromDb(log.logger, section, 0), failed);
    EXPECT_NE(log.text().find("cCurvePlotVariable::loadDataFromDb failed for curve v0"), std::string::npos);
    for (int fd : {down[0], down[1], up[0], up[1]})
        ::close(fd);
    return caught;
}
}  // namespace

TEST(CurveLoading, FileTruncatedDuringLoadFailsAndTheProgramGoesOn)
{
    zwtest::cTempDir dir;
    const std::string name = dir.file("big.raw");
    // Chunks below the pread size are copied from the mapping: the truncation raises SIGBUS.
    EXPECT_EQ(loadWhileTruncated(name, cVxMemoryFile::kUnmappedReadSize / 2), 1u) << "the bus error was caught";
    // Larger chunks are read with pread: the truncation shows as a short read.
    EXPECT_EQ(loadWhileTruncated(name, cVxMemoryFile::kUnmappedReadSize * 2), 0u);

    // The mapped file class on its own: reads of vanished pages fail, the others work.
    writeDoubles(name, 4096, 1.0);
    cVxMemoryFile mapped;
    ASSERT_TRUE(mapped.openFile(name));
    ASSERT_EQ(::truncate(name.c_str(), 4096), 0);
    double d = 0;
    EXPECT_TRUE(mapped.readBytes(8, &d, 8));
    EXPECT_EQ(d, 1.0);
    std::vector<double> many(4000);
    EXPECT_FALSE(mapped.readBytes(0, many.data(), many.size() * 8));
    EXPECT_NE(mapped.getErrorMessage().find("was truncated while it was read"), std::string::npos);
    EXPECT_FALSE(mapped.readStrided(0, 16, 8, 2000, many.data()));
}

TEST(CurveLoadingDeathTest, BusErrorOutsideTheGuardIsRaisedAgain)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    zwtest::cTempDir dir;
    const std::string name = dir.file("gone.raw");
    writeDoubles(name, 4096, 1.0);
    EXPECT_EXIT(
        {
            cVxMemoryFile mapped;
            double d = 0;
            if (!mapped.openFile(name) || !mapped.readBytes(0, &d, 8))  // installs the handler
                std::_Exit(1);
            if (::truncate(name.c_str(), 0) != 0)
                std::_Exit(2);
            // The child dies of the bus error: it removes its own copy of the folder first.
            std::filesystem::remove_all(dir.path());
            volatile double touched = mapped.data()[20000];  // not ours: the process dies of it
            (void)touched;
            std::_Exit(0);
        },
        ::testing::KilledBySignal(SIGBUS), "");
}

TEST(CurveLoading, LazyLoadingKeepsResidentMemorySmall)
{
    zwtest::cTempDir dir;
    const std::string name = dir.file("huge.raw");
    const uint64_t curves = 256, perCurve = 1u << 20;  // 256 curves of 8 MB: a 2 GB file
    const double curveBytes = static_cast<double>(perCurve * 8);
    // Sparse: only the marker values occupy the disk.
    const int fd = ::open(name.c_str(), O_CREAT | O_WRONLY | O_TRUNC, 0600);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::ftruncate(fd, static_cast<off_t>(curves * perCurve * 8)), 0);
    for (uint64_t k = 0; k < curves; k += 17) {
        const double first = static_cast<double>(k), last = -static_cast<double>(k);
        ASSERT_EQ(::pwrite(fd, &first, 8, static_cast<off_t>(k * perCurve * 8)), 8);
        ASSERT_EQ(::pwrite(fd, &last, 8, static_cast<off_t>((k + 1) * perCurve * 8 - 8)), 8);
    }
    ::close(fd);
    // Measured in a child: the resident size is then this scenario's alone. The bounds are
    // fractions of one curve's size, with room for the allocator's own ways.
    auto report = runInChild([&](std::ostream& out) {
        cLoaderRegistration registration(std::make_shared<cStridedBinaryDbLoader>());
        const double before = static_cast<double>(cMemoryUsage::getMemoryUsage());
        cCurvePlotDataFile store;
        cCurvePlotDataSection* section = makeSection(store, name, curves, perCurve, 0, perCurve * 8, 0);
        cCollectingLogger log;
        out << "opened " << store.findDbSupport(name).openFile(&log.logger) << "\n";
        const double registered = static_cast<double>(cMemoryUsage::getMemoryUsage());
        cCurvePlotVariable& v = section->getVariable(51);
        out << "loadedOk " << (v.loadDataFromDb(log.logger, section, 51) == ok) << "\n";
        const double loaded = static_cast<double>(cMemoryUsage::getMemoryUsage());
        out << "first " << v.doubleValues()[0] << "\nlast " << v.doubleValues()[perCurve - 1] << "\nmiddle "
            << v.doubleValues()[perCurve / 2] << "\n";
        out << "releasedOk " << v.releaseDb() << "\n";
        const double released = static_cast<double>(cMemoryUsage::getMemoryUsage());
        out << "before " << before << "\nregistered " << registered << "\nloaded " << loaded << "\nreleased "
            << released << "\n";
    });
    ASSERT_EQ(report["done"], 1) << "the child ran to its end";
    ASSERT_EQ(report["opened"], 1);
    ASSERT_EQ(report["loadedOk"], 1);
    EXPECT_EQ(report["first"], 51.0);
    EXPECT_EQ(report["last"], -51.0);
    EXPECT_EQ(report["middle"], 0.0);
    EXPECT_EQ(report["releasedOk"], 1);
    const double registered = report["registered"] - report["before"];
    const double added = report["loaded"] - report["registered"];
    const double givenBack = report["loaded"] - report["released"];
    // Registering 256 curves of a 2 GB mapped file costs far less than one curve.
    EXPECT_LT(registered, 0.5 * curveBytes) << "registered, nothing loaded";
    // Loading adds the curve's own values; keeping the mapped pages too would double that.
    EXPECT_GT(added, 0.75 * curveBytes) << "the curve's own size";
    EXPECT_LT(added, 1.5 * curveBytes) << "and not the mapped pages besides";
    EXPECT_GT(givenBack, 0.75 * curveBytes) << "releaseDb gives it back";
    EXPECT_LT(report["released"] - report["registered"], 0.25 * curveBytes);
}
