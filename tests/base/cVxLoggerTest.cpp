#include <regex>

#include <gtest/gtest.h>

#include "base/cLoggedException.h"
#include "base/cVxLogger.h"
#include "base/returnCode.h"
#include "testSupport.h"

using vx3::cVxLogger;
using vx3::cVxStringLogger;

namespace {

// Records what reaches a call-back, without formatting.
class cRecordingCallBack : public vx3::cVxLoggerCallBack {
public:
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override
    {
        messages.push_back({severity, text});
    }
    void loggerCallBackVirtualLogProgress(const std::string& label, const std::string& text, int percent,
                                          bool flag) override
    {
        percents.push_back(percent);
        lastLabel = label;
    }
    std::vector<vx3::vxLogger::cBufferedMessages> messages;
    std::vector<int> percents;
    std::string lastLabel;
};

}  // namespace

TEST(cVxLogger, LineFormatIsTagTimeDashText)
{
    cVxStringLogger target;
    cVxLogger logger;
    logger.setLoggerCallBack(&target);
    logger.infoMsg("reading \"tran.csv\"");
    logger.errorMsg("  two\nlines\r\nhere \n");
    logger.warnMsg("w");
    logger.highWarnMsg("h");
    logger.fatalErrorMsg("f");
    logger.debugMsg("d");
    const std::string elapsed = "\\d{2,}:\\d{2}:\\d{2}\\.\\d{3}";
    std::regex expected(" - I - " + elapsed + " - reading \"tran\\.csv\"\n"
                        " - E - " + elapsed + " - two lines  here\n"
                        " - W - " + elapsed + " - w\n"
                        " - H - " + elapsed + " - h\n"
                        " - F - " + elapsed + " - f\n"
                        " - D - " + elapsed + " - d\n");
    EXPECT_TRUE(std::regex_match(target.getBufferAsString(), expected)) << target.getBufferAsString();
}

TEST(cVxLogger, SeverityLimitAndUnknownSeverities)
{
    cRecordingCallBack target;
    cVxLogger logger(vx3::vxLogger::warning);
    logger.setLoggerCallBack(&target);
    logger.debugMsg("too detailed");
    logger.noclMsg("too detailed");
    logger.warnMsg("kept");
    logger.infoMsg("always");
    logger.sendMsg(0, "zero passes by its number");
    ASSERT_EQ(target.messages.size(), 3u);
    EXPECT_EQ(target.messages[0].text, "kept");
    EXPECT_EQ(target.messages[2].severity, 0u);

    cVxStringLogger text(8);
    cVxLogger wide(8);
    wide.setLoggerCallBack(&text);
    wide.sendMsg(0, "zero");
    wide.sendMsg(8, "eight");
    wide.sendMsg(9, "nine is above the limit");
    const std::string& out = text.getBufferAsString();
    EXPECT_NE(out.find(" - X - "), std::string::npos);
    EXPECT_EQ(out.find("nine"), std::string::npos);
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 2);
    EXPECT_EQ(out.find(" - X - "), 0u);
    EXPECT_NE(out.find(" - X - ", 1), std::string::npos);
}

TEST(cVxLogger, BufferingUntilACallBackAttaches)
{
    cVxLogger logger;
    logger.enableBuffer();
    logger.infoMsg("first");
    logger.errorMsg("second\nline");
    logger.warnMsg("third");
    EXPECT_EQ(logger.getNumberOfBufferedMessages(), 3u);
    cRecordingCallBack target;
    logger.setLoggerCallBack(&target);
    ASSERT_EQ(target.messages.size(), 3u);
    EXPECT_EQ(target.messages[0].text, "first");
    EXPECT_EQ(target.messages[1].text, "second line");
    EXPECT_EQ(target.messages[1].severity, unsigned(vx3::vxLogger::error));
    EXPECT_EQ(target.messages[2].text, "third");
    EXPECT_EQ(logger.getNumberOfBufferedMessages(), 0u);
    logger.infoMsg("direct");
    EXPECT_EQ(target.messages.size(), 4u);

    // Without call-back and without buffering a message is gone for good.
    cVxLogger silent;
    silent.errorMsg("lost");
    EXPECT_EQ(silent.getNumberOfBufferedMessages(), 0u);
    cRecordingCallBack late;
    silent.setLoggerCallBack(&late);
    EXPECT_TRUE(late.messages.empty());

    // Lines written with << are collected up to the line end.
    cVxLogger streamed;
    streamed.setLoggerCallBack(&late);
    streamed << "n = " << 42 << ", size " << size_t(7) << "\n";
    ASSERT_EQ(late.messages.size(), 1u);
    EXPECT_EQ(late.messages[0].text, "n = 42, size 7");
}

TEST(cVxLogger, ProgressIsForwardedOnlyOnChange)
{
    cRecordingCallBack target;
    cVxLogger logger;
    logger.setLoggerCallBack(&target);
    logger.clearAndInitProgress("Reading", "tran.csv", 1000);
    for (uint64_t i = 1; i <= 1000; ++i)
        logger.updateProgress(i);
    logger.updateProgress(1000);
    ASSERT_EQ(target.percents.size(), 101u);
    for (int i = 0; i <= 100; ++i)
        EXPECT_EQ(target.percents[i], i);
    EXPECT_EQ(target.lastLabel, "Reading");
    logger.initProgress(4);
    logger.incrementProgress(1);
    logger.incrementProgress(1);
    EXPECT_EQ(target.percents.back(), 50);
    logger.completeProgress();
    EXPECT_EQ(target.percents.back(), 100);

    EXPECT_FALSE(logger.checkActionIsInterrupted());
    logger.setActionIsInterrupted(true);
    EXPECT_TRUE(logger.checkActionIsInterrupted());
    EXPECT_FALSE(cVxLogger().checkActionIsInterrupted()) << "no call-back, nothing to interrupt";
}

TEST(cVxLogger, FileLoggerWritesAbsoluteTimesAndSurvivesABadPath)
{
    zwtest::cTempDir temp;
    vx3::cVxFileLogger fileLogger(vx3::vxLogger::warning, false);
    ASSERT_TRUE(fileLogger.enableFileLogger(vx3::vxLogger::warning, temp.file("log.txt")));
    EXPECT_TRUE(fileLogger.checkFileLoggerIsEnabled());
    cVxLogger logger;
    logger.setLoggerCallBack(&fileLogger);
    logger.errorMsg("disk full");
    logger.debugMsg("not for the file");
    std::string written = zwtest::readFile(temp.file("log.txt"));
    std::regex line(" - E - \\d{4}-\\d{2}-\\d{2} \\d{2}:\\d{2}:\\d{2} - disk full\n");
    EXPECT_TRUE(std::regex_match(written, line)) << written;
    fileLogger.disableFileLogger();
    EXPECT_FALSE(fileLogger.checkFileLoggerIsEnabled());

    vx3::cVxFileLogger broken(vx3::vxLogger::warning, false);
    EXPECT_FALSE(broken.enableFileLogger(vx3::vxLogger::warning, temp.file("missing/folder/log.txt")));
    EXPECT_FALSE(broken.checkFileLoggerIsEnabled());
    logger.setLoggerCallBack(&broken);
    logger.errorMsg("goes nowhere");  // must not crash
    EXPECT_FALSE(std::filesystem::exists(temp.file("missing")));
}

TEST(cVxLogger, ConsoleBufferedAndDefaultLogFile)
{
    vx3::cVxConsoleLogger console(vx3::vxLogger::warning, true);
    cVxLogger logger;
    logger.setLoggerCallBack(&console);
    testing::internal::CaptureStdout();
    logger.warnMsg("shown");
    logger.debugMsg("hidden");
    logger.stdOut("raw");
    std::string out = testing::internal::GetCapturedStdout();
    EXPECT_TRUE(std::regex_match(out, std::regex(" - W - \\d{2,}:\\d{2}:\\d{2}\\.\\d{3} - shown\n\\+\\+ raw"))) << out;

    vx3::cVxBufferedLogger buffered(vx3::vxLogger::warning, false);
    logger.setLoggerCallBack(&buffered);
    logger.errorMsg("kept for later");
    logger.infoMsg("and this");
    ASSERT_EQ(buffered.getMessages().size(), 2u);
    zwtest::cTempDir temp;
    ASSERT_TRUE(buffered.enableFileLogger(vx3::vxLogger::warning, temp.file("dump.txt")));
    buffered.dumpBufferedLogMessages();
    EXPECT_TRUE(buffered.getMessages().empty());
    std::string dumped = zwtest::readFile(temp.file("dump.txt"));
    EXPECT_NE(dumped.find(" - kept for later\n"), std::string::npos);
    EXPECT_NE(dumped.find(" - and this\n"), std::string::npos);

    // HOME is a plain file: no folder can be made under it.
    zwtest::cEnvGuard home("HOME");
    ::setenv("HOME", temp.write("not_a_folder", "").c_str(), 1);
    cVxStringLogger reasons;
    cVxLogger reporter;
    reporter.setLoggerCallBack(&reasons);
    EXPECT_EQ(cVxLogger::getDefaultLogFileName("", "", &reporter), "");
    EXPECT_NE(reasons.getBufferAsString().find("Can't create directories for log file \""), std::string::npos);
    EXPECT_NE(reasons.getBufferAsString().find(" - Deactivating logs.\n"), std::string::npos);
}

TEST(returnCode, TextsOfTheCodes)
{
    EXPECT_STREQ(vx3::convert_return_code_to_string(vx3::ok), "ok");
    EXPECT_STREQ(vx3::convert_return_code_to_string(vx3::failed), "failed");
    EXPECT_STREQ(vx3::convert_return_code_to_string(vx3::partly_parsed), "partly parsed");
    EXPECT_STREQ(vx3::convert_return_code_to_string(vx3::file_format_recognized), "file format recognized");
    EXPECT_STREQ(vx3::convert_return_code_to_string(vx3::encoding_failed), "encodeing failed");
    EXPECT_STREQ(vx3::convert_return_code_to_string(vx3::action_interrupted), "action interrupted");
    EXPECT_STREQ(vx3::convert_return_code_to_string(vx3::bad_function_arguments), "bad function arguments");
    EXPECT_STREQ(vx3::convert_return_code_to_string(17), "");
    EXPECT_STREQ(vx3::convert_return_code_to_string(29), "");
    EXPECT_STREQ(vx3::convert_return_code_to_string(-1), "");
}

TEST(cLoggedException, PrefixesAndAddedText)
{
    try {
        throw vx3::cSerializerException("bad block");
    } catch (vx3::cLoggedException& exception) {
        EXPECT_STREQ(exception.what(), "SERIALIZER EXCEPTION : bad block");
        exception.addNoclMessage(" (file x.pwf)");
        EXPECT_EQ(exception.message(), "SERIALIZER EXCEPTION : bad block (file x.pwf)");
    }
    EXPECT_STREQ(vx3::cLoggedException("f").what(), "EXCEPTION : f");
    EXPECT_STREQ(vx3::cWaveExplorerException("f").what(), "EXCEPTION : f");
    EXPECT_STREQ(vx3::cExpressionEvaluationException("f").what(), "EXPRESSION EVALUATION EXCEPTION : f");
    EXPECT_STREQ(vx3::cSqliteDataBaseException("f").what(), "SQLITE EXCEPTION : f");
    const std::exception& base = vx3::cElaborationException("g");
    EXPECT_STREQ(base.what(), "EXCEPTION : g");
}
