#include <gtest/gtest.h>

#include "base/cCommandLineParser.h"

using vx3::cCommandLineParser;
namespace clp = vx3::commandLineParser;

TEST(cCommandLineParser, FlagsOptionsAndFiles)
{
    cCommandLineParser parser;
    EXPECT_TRUE(parser.parseCommandLine("-vd --nocli a.csv \"my file.vcd\" --log x.log"));
    EXPECT_TRUE(parser.verboseFlagPresent());
    EXPECT_TRUE(parser.debugFlagPresent());
    EXPECT_TRUE(parser.nocliFlagPresent());
    ASSERT_EQ(parser.stringArguments().size(), 2u);
    EXPECT_EQ(parser.stringArguments()[0], "a.csv");
    EXPECT_EQ(parser.stringArguments()[1], "my file.vcd");
    EXPECT_EQ(parser.logFileName(), "x.log");
    EXPECT_EQ(parser.logSeverity(), 3u) << "no number after the log file keeps severity 3";

    EXPECT_TRUE(parser.parseCommandLine("--log x.log 1 b.csv"));
    EXPECT_EQ(parser.logSeverity(), 1u);
    EXPECT_EQ(parser.stringArguments(), std::vector<std::string>{"b.csv"}) << "parse clears what came before";

    EXPECT_TRUE(parser.parseCommandLine("--LOG=y.log"));
    EXPECT_EQ(parser.logFileName(), "y.log") << "option names are lowered, '=' separates";

    EXPECT_TRUE(parser.parseCommandLine("--session_file a --command_file b"));
    EXPECT_EQ(parser.getAllStringOptions(clp::command_file), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(parser.commandFileName(), "a") << "the first one found is used";

    EXPECT_TRUE(parser.parseCommandLine("--socket 127.0.0.1 4000"));
    EXPECT_TRUE(parser.socketPresent());
    EXPECT_EQ(parser.socketAddress(), "127.0.0.1");
    EXPECT_EQ(parser.socketPort(), 4000u);
}

TEST(cCommandLineParser, BadArgumentsFailButTheWalkGoesOn)
{
    cCommandLineParser parser;
    EXPECT_FALSE(parser.parseCommandLine("--socket 127.0.0.1"));
    EXPECT_FALSE(parser.parseCommandLine("--socket 127.0.0.1 port"));
    EXPECT_FALSE(parser.parseCommandLine("-x file.csv"));
    EXPECT_EQ(parser.stringArguments(), std::vector<std::string>{"file.csv"});
    EXPECT_FALSE(parser.parseCommandLine("--log"));
    EXPECT_FALSE(parser.parseCommandLine("--command_file"));

    // Unknown long options are kept, never fatal; "--h" is one of them and asks for no help.
    EXPECT_TRUE(parser.parseCommandLine("--h --color=red --geometry 10x10"));
    EXPECT_FALSE(parser.helpFlagPresent());
    ASSERT_EQ(parser.otherOptions().size(), 3u);
    EXPECT_EQ(parser.otherOptions()[1], (std::pair<std::string, std::string>{"color", "red"}));
    EXPECT_EQ(parser.otherOptions()[2].second, "");
    EXPECT_EQ(parser.stringArguments(), std::vector<std::string>{"10x10"});
    EXPECT_TRUE(parser.parseCommandLine("--help"));
    EXPECT_TRUE(parser.helpFlagPresent());
    EXPECT_TRUE(parser.parseCommandLine("-h"));
    EXPECT_TRUE(parser.helpFlagPresent());
    EXPECT_TRUE(parser.parseCommandLine("--interactive_mode --use_existing --test t --resolve r"));
    EXPECT_TRUE(parser.interactiveFlagPresent());
}

TEST(cCommandLineParser, ArgumentAssemblyQuotesItemsWithBlanks)
{
    const char* argv[] = {"zelwave", "a b.csv", "\"q r\"", "--log", "plain", "tab\there"};
    std::string text = cCommandLineParser::assembleArguments(6, argv);
    EXPECT_EQ(text, "\"a b.csv\" \"q r\" --log plain \"tab\there\"");
    cCommandLineParser parser;
    EXPECT_TRUE(parser.parseCommandLine(text));
    EXPECT_EQ(parser.stringArguments(), (std::vector<std::string>{"a b.csv", "q r", "tab\there"}));
    EXPECT_EQ(parser.logFileName(), "plain");

    std::string usage = cCommandLineParser::usageText("-x", true);
    EXPECT_EQ(usage.rfind(" Bad command line arguments : -x\n\n Available options are :\n", 0), 0u);
    EXPECT_NE(usage.find("  --socket <ip> <port>         interactive mode over socket\n"), std::string::npos);
    EXPECT_NE(usage.find(" Names with white spaces must be included by quotes \"...\".\n"), std::string::npos);
}
