// The program run as a user runs it: offscreen, with a command file that ends the session.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {

struct cRun {
    int status = -1;
    std::string output;
};

// One scratch folder for the runs of this program, removed with its files when it exits.
std::string tempDir()
{
    struct cScratch {
        std::string path;
        cScratch()
        {
            char pattern[] = "/tmp/zelwave-program-XXXXXX";
            const char* made = mkdtemp(pattern);
            path = made ? made : "";
        }
        ~cScratch()
        {
            std::error_code error;
            if (!path.empty())
                std::filesystem::remove_all(path, error);
        }
    };
    static const cScratch scratch;
    return scratch.path;
}

std::string writeFile(const std::string& name, const std::string& content)
{
    std::string path = tempDir() + "/" + name;
    std::ofstream(path) << content;
    return path;
}

std::string readFile(const std::string& path)
{
    std::ifstream in(path);
    std::stringstream buffer;
    buffer << in.rdbuf();
    return buffer.str();
}

// Runs the program with HOME in the temporary folder, so that no user's files are touched.
cRun run(const std::string& arguments)
{
    std::string command = "cd " + tempDir() + " && HOME=" + tempDir() +
                          " QT_QPA_PLATFORM=offscreen timeout 60 " ZW_PROGRAM " " + arguments + " 2>&1";
    cRun result;
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe)
        return result;
    char buffer[4096];
    size_t count;
    while ((count = fread(buffer, 1, sizeof(buffer), pipe)) > 0)
        result.output.append(buffer, count);
    int status = pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

const std::string kUsageStart = " Available options are :\n";

}  // namespace

TEST(program, HelpAndBadOptionsPrintTheUsageAndTheWindowOpensAllTheSame)
{
    std::string quit = writeFile("quit.cmd", "close\n");

    cRun help = run("--help --command_file quit.cmd");
    EXPECT_EQ(help.status, 0) << help.output;
    EXPECT_NE(help.output.find(kUsageStart), std::string::npos) << help.output;
    EXPECT_EQ(help.output.find("Bad command line arguments"), std::string::npos);

    cRun bad = run("-x --command_file quit.cmd");
    EXPECT_EQ(bad.status, 0) << bad.output;
    EXPECT_NE(bad.output.find(" Bad command line arguments : -x --command_file quit.cmd\n\n" + kUsageStart),
              std::string::npos)
        << bad.output;

    cRun socketWithoutPort = run("--command_file quit.cmd --socket 127.0.0.1");
    EXPECT_EQ(socketWithoutPort.status, 0);
    EXPECT_NE(socketWithoutPort.output.find("Bad command line arguments"), std::string::npos);

    cRun shortHelp = run("--h --command_file quit.cmd");
    EXPECT_EQ(shortHelp.status, 0);
    EXPECT_EQ(shortHelp.output.find("Available options"), std::string::npos) << "--h is an unknown option";
}

TEST(program, LogFileAtTheGivenSeverity)
{
    std::string commands = writeFile("log.cmd",
                                     "debug_mode_on\n"
                                     "add_section first\n"
                                     "bogus_command 1 2\n"
                                     "get_number_of_sections\n"
                                     "close\n");
    std::string log = tempDir() + "/run.log";
    cRun result = run("--log run.log 6 --command_file log.cmd");
    EXPECT_EQ(result.status, 0) << result.output;
    std::string text = readFile(log);
    EXPECT_NE(text.find(" - I - "), std::string::npos) << text;
    EXPECT_NE(text.find("ZelWave Widget starts ("), std::string::npos) << text;
    EXPECT_NE(text.find(" - E - "), std::string::npos);
    EXPECT_NE(text.find(" - Interactive Mode: parsing of the command \"bogus_command 1 2\" failed."),
              std::string::npos)
        << text;
    EXPECT_NE(text.find(" - D - "), std::string::npos) << "severity 6 lets debug lines through";
    EXPECT_NE(text.find("Line 3 : the interactive command \"bogus_command 1 2\" failed."), std::string::npos);
    EXPECT_NE(text.find("Interactive Mode: processing the command \"add_section first\"."), std::string::npos);
    // The start-up command that names the command file's folder is unknown: logged, and the start goes on.
    EXPECT_NE(text.find("set_last_command_file_directory"), std::string::npos);

    cRun quiet = run("--log quiet.log 1 --command_file log.cmd");
    std::string quietText = readFile(tempDir() + "/quiet.log");
    EXPECT_NE(quietText.find(" - I - "), std::string::npos);
    EXPECT_EQ(quietText.find(" - E - "), std::string::npos) << "severity 1 keeps info lines only";
}

TEST(program, UnwritableLogFileAndMissingCommandFileDoNotStopTheProgram)
{
    writeFile("quit.cmd", "close\n");
    cRun result = run("--log /nonexistent/folder/x.log --command_file quit.cmd");
    EXPECT_EQ(result.status, 0) << result.output;
    EXPECT_NE(result.output.find("Could not open the log file \"/nonexistent/folder/x.log\"."), std::string::npos)
        << result.output;

    // A missing command file: logged, and the window stays until closed from elsewhere.
    std::string nested = writeFile("nested.cmd", "execute_command_file missing.cmd\nclose\n");
    cRun missing = run("--command_file nested.cmd");
    EXPECT_EQ(missing.status, 0) << missing.output;
    EXPECT_NE(missing.output.find("missing.cmd\" was not found."), std::string::npos) << missing.output;
}

TEST(program, CommandFileWarningsAndComments)
{
    writeFile("warn.cmd",
              "comment_start\n"
              "this line is not read\n"
              "comment_end\n"
              "add_section data\n"
              "get_curve_name data x\n"
              "set_filter p c\n"
              "wait -1\n"
              "add_curve data v 0 V s 0 1 1\n"
              "add_curve data v 0 V s 0 1 1 2\n"
              "add_curve data v 0 V s 0 1 1 2\n"
              "close\n");
    cRun result = run("--log warn.log 5 --command_file warn.cmd");
    EXPECT_EQ(result.status, 0) << result.output;
    std::string text = readFile(tempDir() + "/warn.log");
    EXPECT_EQ(text.find("this line is not read"), std::string::npos) << "lines between comment_start and _end";
    EXPECT_NE(text.find(" - W - "), std::string::npos);
    EXPECT_NE(text.find("Interactive Mode: bad 2nd argument."), std::string::npos) << text;
    EXPECT_NE(text.find("Interactive Mode: bad 3nd argument."), std::string::npos);
    EXPECT_NE(text.find("Interactive Command \"wait -1\" : bad 1st argument."), std::string::npos);
    EXPECT_NE(text.find("Bad arguments for interactive command."), std::string::npos);
    EXPECT_NE(text.find("The curve \"v\" already exists in  section \"data\"."), std::string::npos);
}

TEST(program, PlotCommandsZoomUndoAndRefuseBadBounds)
{
    writeFile("plot.cmd",
              "add_section data\n"
              "add_curve data v 0 V s 0 1 1 2 2 0 3 1\n"
              "add_curve data i 0 A s 0 0.001 1 0.002 2 0 3 0.001\n"
              "add_curve data r 0 Ohm s 0 50 1 51 2 50 3 49\n"
              "add_plot p1 analog 1 1\n"
              "add_plot p1 analog 1 1\n"
              "add_curve_to_plot_by_name p1 data v 0\n"
              "add_curve_to_plot_by_name p1 data i 0\n"
              "add_curve_to_plot_by_name p1 data r 0\n"
              "add_curve_to_plot_by_name p1 data nosuch 0\n"
              "add_curve_to_plot_by_name p2 data v 0\n"
              "zoom p1 2 1 0 1 0 0.001\n"
              "zoom p1 0 1e100 0 1 0 0.001\n"
              "zoom p1 0.5 1.5 0.2 1.8 0 0.002\n"
              "zoom_in\n"
              "previous_view_port\n"
              "previous_view_port\n"
              "next_view_port\n"
              "undo\n"
              "redo\n"
              "clear_plot p1\n"
              "undo\n"
              "close\n");
    cRun result = run("--log plot.log 5 --command_file plot.cmd");
    EXPECT_EQ(result.status, 0) << result.output;
    const std::string text = readFile(tempDir() + "/plot.log");
    EXPECT_NE(text.find("The plot window \"p1\" already exists."), std::string::npos) << text;
    EXPECT_NE(text.find("Incompatible Y axis units (incompatible y axis units \""), std::string::npos) << text;
    EXPECT_NE(text.find("The curve \"nosuch\" was not found in section \"data\"."), std::string::npos);
    EXPECT_NE(text.find("The plot window \"p2\" was not found."), std::string::npos);
    // Reversed and huge bounds: two refusals; the good zoom, the views and undo pass silently.
    size_t refusals = 0;
    for (size_t at = text.find("Maximum zoom range reached."); at != std::string::npos;
         at = text.find("Maximum zoom range reached.", at + 1))
        ++refusals;
    EXPECT_EQ(refusals, 2u) << text;
    for (const char* word : {"add_plot", "add_curve_to_plot_by_name", "zoom", "zoom_in", "previous_view_port",
                             "next_view_port", "undo", "redo", "clear_plot"})
        EXPECT_EQ(text.find(std::string("The command \"") + word + "\" was not performed"), std::string::npos) << word;
}

TEST(program, PlottedCurvesSurviveReloadAndLeaveWithTheirFile)
{
    writeFile("wave.csv", "time,v,i\n0,1,0.001\n1,2,0.002\n2,0,0\n3,1,0.001\n");
    writeFile("reload.cmd",
              "open_file wave.csv\n"
              "add_plot p1 analog 1 1\n"
              "add_curve_to_plot_by_name p1 wave.csv v 0\n"
              "add_curve_to_plot_by_name p1 wave.csv i 0\n"
              "zoom p1 0.5 2.5 0 2 0 0.002\n"
              "reload_file wave.csv\n"
              "undo\n"
              "redo\n"
              "close_file wave.csv\n"
              "undo\n"
              "zoom_in\n"
              "close\n");
    cRun result = run("--log reload.log 5 --command_file reload.cmd");
    EXPECT_EQ(result.status, 0) << result.output;
    const std::string text = readFile(tempDir() + "/reload.log");
    EXPECT_NE(text.find("was parsed succesfully"), std::string::npos) << text;
    // No error of the plot's own: the curves found their values again after the reload and went
    // with the file (the one error of every run is the start-up's directory command).
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (line.find(" - E - ") != std::string::npos)
            EXPECT_NE(line.find("set_last_command_file_directory"), std::string::npos) << line;
}
