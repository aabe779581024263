#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "base/cVxFilePath.h"
#include "base/cVxLogger.h"
#include "testSupport.h"

using vx3::cVxFilePath;

TEST(cVxFilePath, ComponentsAndNameParts)
{
    cVxFilePath path("/data//runs/tran.csv");
    EXPECT_TRUE(path.isAbsolutePath());
    EXPECT_EQ(path.components(), (std::vector<std::string>{"data", "runs", "tran.csv"}));
    EXPECT_EQ(path.name(), "/data/runs/tran.csv");
    EXPECT_EQ(path.fileName(), "tran.csv");
    EXPECT_EQ(path.extension(), "csv");
    EXPECT_EQ(path.fileNameWithoutExtension(), "tran");
    EXPECT_EQ(path.getParentPath().name(), "/data/runs");
    EXPECT_EQ(cVxFilePath(path).changeExtension("raw").name(), "/data/runs/tran.raw");
    EXPECT_EQ(cVxFilePath(path).changeExtension(".RAW").extensionLowerCase(), "raw");
    EXPECT_EQ(cVxFilePath(path).removeExtension().name(), "/data/runs/tran");
    EXPECT_EQ(cVxFilePath(path).directoryUp().directoryUp().name(), "/data");
    EXPECT_EQ(cVxFilePath("/").name(), "/");
    EXPECT_EQ(cVxFilePath("/x").getParentPath().name(), "/");

    cVxFilePath relative("runs/a.b.c");
    EXPECT_FALSE(relative.isAbsolutePath());
    EXPECT_EQ(relative.extension(), "c");
    relative /= "x/y.txt";
    EXPECT_EQ(relative.name(), "runs/a.b.c/x/y.txt");
    EXPECT_EQ(cVxFilePath("dir/.hidden").extension(), "") << "a leading dot is no extension";
    EXPECT_EQ(cVxFilePath("/base", "sub/f.sp").name(), "/base/sub/f.sp");
    EXPECT_EQ(cVxFilePath("/base", "/abs/f.sp").name(), "/abs/f.sp");
    EXPECT_TRUE(cVxFilePath("").empty());
}

TEST(cVxFilePath, SimplifyFoldsDotsAndParents)
{
    EXPECT_EQ(cVxFilePath("/a/b/../c/./d").simplifyPath().name(), "/a/c/d");
    EXPECT_EQ(cVxFilePath("/a/../..").simplifyPath().name(), "/");
    EXPECT_EQ(cVxFilePath("../x/../../y").simplifyPath().name(), "../../y");
    EXPECT_EQ(cVxFilePath("./a/.").simplifyPath().name(), "a");

    cVxFilePath relative("sub/../f.txt");
    ASSERT_TRUE(relative.convertToAbsolutePath());
    EXPECT_EQ(relative.name(), cVxFilePath::getCurrentPath().name() + "/f.txt");
}

TEST(cVxFilePath, HomeAndEnvironmentVariables)
{
    zwtest::cEnvGuard home("HOME");
    zwtest::cEnvGuard dir("ZW_TEST_DIR");
    zwtest::cEnvGuard missing("ZW_TEST_MISSING");
    ::unsetenv("ZW_TEST_MISSING");

    ::setenv("HOME", "/home/tester", 1);
    EXPECT_EQ(cVxFilePath::evaluateSystemVariables("~/x"), "/home/tester/x");
    EXPECT_EQ(cVxFilePath::evaluateSystemVariables("~"), "/home/tester/");
    EXPECT_EQ(cVxFilePath("~/sim/out.tr0").name(), "/home/tester/sim/out.tr0");
    EXPECT_EQ(cVxFilePath::evaluateSystemVariables("a/~"), "a/~") << "only a leading tilde";

    ::unsetenv("HOME");
    EXPECT_EQ(cVxFilePath::evaluateSystemVariables("~/x"), "~/x");
    EXPECT_EQ(cVxFilePath("~/x").components().front(), "~");
    ::setenv("HOME", "", 1);
    EXPECT_EQ(cVxFilePath::evaluateSystemVariables("~/x"), "~/x");

    ::setenv("ZW_TEST_DIR", "/data", 1);
    EXPECT_EQ(cVxFilePath::evaluateSystemVariables("$ZW_TEST_DIR/f"), "/data/f");
    EXPECT_EQ(cVxFilePath::evaluateSystemVariables("${ZW_TEST_DIR}x/$ZW_TEST_DIR"), "/datax//data");
    EXPECT_EQ(cVxFilePath("$ZW_TEST_DIR/f").name(), "/data/f");
    EXPECT_EQ(cVxFilePath::evaluateSystemVariables("cost$"), "cost$");
    EXPECT_EQ(cVxFilePath::evaluateSystemVariables("${open"), "${open");

    vx3::cVxStringLogger messages;
    vx3::cVxLogger logger;
    logger.setLoggerCallBack(&messages);
    EXPECT_EQ(cVxFilePath::evaluateSystemVariables("$ZW_TEST_MISSING/f", &logger), "$ZW_TEST_MISSING/f");
    EXPECT_EQ(cVxFilePath::evaluateSystemVariables("${ZW_TEST_MISSING}/f", &logger), "${ZW_TEST_MISSING}/f");
    const std::string& log = messages.getBufferAsString();
    EXPECT_NE(log.find(" - E - "), std::string::npos);
    EXPECT_NE(log.find(" - Could not resolve system variable \"ZW_TEST_MISSING\" in file path.\n"), std::string::npos)
        << log;

    messages.clear();
    EXPECT_EQ(vx3::evaluateEnvironmentVariable("ZW_TEST_DIR", &logger), "/data");
    EXPECT_EQ(vx3::evaluateEnvironmentVariable("ZW_TEST_MISSING", &logger), "");
    EXPECT_NE(messages.getBufferAsString().find("Could not resolve system variable \"ZW_TEST_MISSING\" ."),
              std::string::npos);
    EXPECT_EQ(vx3::evaluateEnvironmentVariable("ZW_TEST_MISSING"), "") << "no logger, no crash";

    cVxFilePath literal;
    literal.setPathWithoutEvaluation("/price$ZW_TEST_DIR");
    EXPECT_EQ(literal.name(), "/price$ZW_TEST_DIR");
    EXPECT_EQ(vx3::evaluateSpecialPath("$ZW_TEST_DIR/a/../b"), "/data/b");
}

TEST(cVxFilePath, FileSystemQueriesAndEdits)
{
    zwtest::cTempDir temp;
    ASSERT_FALSE(temp.path().empty());
    cVxFilePath file(temp.write("wave.csv", "t,v\n0,1\n"));
    cVxFilePath dir(temp.path());
    EXPECT_TRUE(file.exists());
    EXPECT_TRUE(file.isFile());
    EXPECT_FALSE(file.isDirectory());
    EXPECT_TRUE(dir.isDirectory());
    EXPECT_EQ(file.getFileSize(), 8u);
    EXPECT_GT(file.lastWriteTime(), 0);
    EXPECT_FALSE(file.getFileOwner().empty());
    EXPECT_FALSE(file.getFileGroup().empty());
    std::string content;
    ASSERT_TRUE(file.loadFromFile(content));
    EXPECT_EQ(content, "t,v\n0,1\n");
    EXPECT_FALSE(cVxFilePath(temp.file("none")).loadFromFile(content));
    EXPECT_FALSE(cVxFilePath(temp.file("none")).exists());

    cVxFilePath nested(temp.file("a/b/c"));
    ASSERT_TRUE(nested.createDirectories());
    EXPECT_TRUE(nested.isDirectory());
    EXPECT_TRUE(nested.createDirectories()) << "existing folders are fine";

    ASSERT_TRUE(file.copyToDirectory(nested));
    cVxFilePath copy(nested.name() + "/wave.csv");
    EXPECT_EQ(zwtest::readFile(copy.name()), "t,v\n0,1\n");
    ASSERT_TRUE(file.copyToFile(cVxFilePath(temp.file("second.csv"))));
    EXPECT_TRUE(cVxFilePath(temp.file("second.csv")).isFile());

    ASSERT_EQ(::symlink(file.name().c_str(), temp.file("link.csv").c_str()), 0);
    cVxFilePath link(temp.file("link.csv"));
    EXPECT_TRUE(link.isSymLink());
    EXPECT_FALSE(file.isSymLink());
    cVxFilePath target;
    ASSERT_TRUE(link.getEquivalentSymLink(target));
    EXPECT_EQ(target.name(), file.name());
    cVxFilePath resolved(link);
    ASSERT_TRUE(resolved.resolveSymbolicLinks());
    cVxFilePath realFile(file);
    ASSERT_TRUE(realFile.resolveSymbolicLinks());
    EXPECT_EQ(resolved.name(), realFile.name());

    EXPECT_FALSE(dir.deleteFile()) << "deleteFile leaves folders alone";
    EXPECT_TRUE(cVxFilePath(temp.file("a")).deleteDirectory());
    EXPECT_FALSE(cVxFilePath(temp.file("a")).exists());
    EXPECT_TRUE(link.deleteFile());
    EXPECT_TRUE(file.exists()) << "removing a link keeps its target";
    EXPECT_TRUE(file.deleteFile());
    EXPECT_FALSE(file.exists());
}

TEST(cVxFilePath, WildcardsPatternsAndUniqueNames)
{
    zwtest::cTempDir temp;
    temp.write("run2.csv", "");
    temp.write("run1.csv", "");
    temp.write("notes.txt", "");
    ::mkdir(temp.file("deep").c_str(), 0755);
    temp.write("deep/inner.csv", "");

    cVxFilePath pattern(temp.file("run*.csv"));
    ASSERT_TRUE(pattern.resolveWildcardCharacters());
    EXPECT_EQ(pattern.name(), temp.file("run1.csv"));
    cVxFilePath none(temp.file("*.bin"));
    EXPECT_FALSE(none.resolveWildcardCharacters());
    EXPECT_EQ(none.name(), temp.file("*.bin")) << "unchanged when nothing matches";
    cVxFilePath single(temp.file("note?.txt"));
    ASSERT_TRUE(single.resolveWildcardCharacters());
    EXPECT_EQ(single.fileName(), "notes.txt");

    cVxFilePath dir(temp.path());
    auto flat = dir.findFilePattern("*.csv", false);
    ASSERT_EQ(flat.size(), 2u);
    EXPECT_EQ(flat[0].fileName(), "run1.csv");
    auto all = dir.findFilePattern("*.csv", true);
    ASSERT_EQ(all.size(), 3u);
    EXPECT_EQ(all[2].name(), temp.file("deep/inner.csv"));

    std::vector<std::string> seen;
    vx3::cVxFilePathIterator entries(dir);
    while (entries.next()) {
        seen.push_back(entries.entryName());
        EXPECT_EQ(entries.path().name(), temp.file(entries.entryName()));
    }
    std::sort(seen.begin(), seen.end());
    EXPECT_EQ(seen, (std::vector<std::string>{"deep", "notes.txt", "run1.csv", "run2.csv"}));

    unsigned number = 99;
    cVxFilePath fresh(temp.file("fresh.txt"));
    EXPECT_TRUE(fresh.makeSureFileNameIsUnique(number));
    EXPECT_EQ(number, 0u);
    EXPECT_EQ(fresh.fileName(), "fresh.txt");
    cVxFilePath taken(temp.file("notes.txt"));
    ASSERT_TRUE(taken.makeSureFileNameIsUnique(number));
    EXPECT_EQ(taken.fileName(), "notes_1.txt");
    EXPECT_EQ(number, 1u);
    temp.write("notes_1.txt", "");
    cVxFilePath again(temp.file("notes.txt"));
    ASSERT_TRUE(again.makeSureFileNameIsUnique(number));
    EXPECT_EQ(again.fileName(), "notes_2.txt");
    EXPECT_EQ(number, 2u);
}

TEST(cVxFilePath, SpiceFilesWithTheSameStem)
{
    const auto& extensions = cVxFilePath::getSpiceFileExtensions();
    ASSERT_GE(extensions.size(), 6u);
    EXPECT_EQ(std::vector<std::string>(extensions.begin(), extensions.begin() + 6),
              (std::vector<std::string>{".sp", ".spi", ".cir", ".cdl", ".hsp", ".spice"}));
    EXPECT_TRUE(cVxFilePath("amp.SP").checkHasSpiceFileExtension());
    EXPECT_TRUE(cVxFilePath("amp.spice").checkHasSpiceFileExtension());
    EXPECT_FALSE(cVxFilePath("amp.tr0").checkHasSpiceFileExtension());
    EXPECT_FALSE(cVxFilePath("sp").checkHasSpiceFileExtension());

    zwtest::cTempDir temp;
    temp.write("amp.hsp", "");
    temp.write("amp.cir", "");
    cVxFilePath found;
    ASSERT_TRUE(cVxFilePath(temp.file("amp.tr0")).getSpiceFileWithSimilarFileName(found));
    EXPECT_EQ(found.name(), temp.file("amp.cir")) << ".cir is tried before .hsp";
    EXPECT_FALSE(cVxFilePath(temp.file("other.tr0")).getSpiceFileWithSimilarFileName(found));
}

TEST(cVxFilePath, ConfigurationFolderFollowsTheHomeFolder)
{
    zwtest::cEnvGuard home("HOME");
    zwtest::cTempDir temp;
    ::setenv("HOME", temp.path().c_str(), 1);
    EXPECT_EQ(vx3::getConfigFileName(), temp.path() + "/.HarlanTessel/conf.db");
    ::mkdir(temp.file(".config").c_str(), 0755);
    EXPECT_EQ(vx3::getConfigFileName(), temp.path() + "/.config/HarlanTessel/conf.db");
    EXPECT_EQ(vx3::getConfigFileName("Tool", "Maker"), temp.path() + "/.config/Maker/conf.db");
    ::mkdir(temp.file(".HarlanTessel").c_str(), 0755);
    EXPECT_EQ(vx3::getConfigFileName(), temp.path() + "/.HarlanTessel/conf.db") << "an own folder wins";
    EXPECT_EQ(vx3::getConfigFileDirImpl("/etc/zw", "", ""), "/etc/zw/");

    // The log file lies beside the configuration, and its folder is made on the way.
    ::rmdir(temp.file(".HarlanTessel").c_str());
    std::string log = vx3::cVxLogger::getDefaultLogFileName("", "");
    EXPECT_EQ(log, temp.path() + "/.config/HarlanTessel/ZelkoraWave.txt");
    EXPECT_TRUE(cVxFilePath(temp.file(".config/HarlanTessel")).isDirectory());
}
