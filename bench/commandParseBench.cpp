// Parsing speed of the command language: one million mixed command lines, parse only.
// Baseline: `wc -l` over the same file, so that the figure is read against plain line splitting.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "app/core/wxWaveExplorerCommand.h"
#include "base/cVxLogger.h"

namespace {

double seconds(std::chrono::steady_clock::duration d) { return std::chrono::duration<double>(d).count(); }

std::string makeLine(std::mt19937_64& random)
{
    static const char* const lines[] = {
        "add_curve_to_plot_by_name \"plot 1\" \"tran\" \"v(out)\" 1",
        "get_number_of_sections",
        "get_curve_name \"tran - run 3\" 17",
        "set_option fft_parameter_nb_time_samples 4096",
        "zoom p1 0 1e-6 -0.5 1.5 0 1",
        "set_curve_style_by_name s v(out) dashed_line circles 2 #ff8000",
        "add_n_dimensional_curve_to_plot_by_index p s 12 [1,0] [3,4] 1",
        "# a comment line",
        "highlight_oid o12 \"black blue\" 1e-9 2e-9",
        "add_points s v 0 1 1e-9 2 2e-9 3 3e-9 4",
        "set_cursor \"plot 2\" 1.25e-7 M1",
        "open_file \"/data/run 7/result.csv\"",
    };
    return lines[random() % (sizeof(lines) / sizeof(lines[0]))];
}

double medianOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv)
{
    const size_t count = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1000000;
    const std::string file = "/tmp/zelwave-bench-commands.txt";
    std::vector<std::string> lines;
    lines.reserve(count);
    std::mt19937_64 random(42);
    {
        std::ofstream out(file);
        for (size_t i = 0; i < count; ++i) {
            lines.push_back(makeLine(random));
            out << lines.back() << '\n';
        }
    }

    std::vector<double> parseTimes, wcTimes;
    size_t understood = 0;
    for (int round = 0; round < 5; ++round) {
        vx3::cVxLogger logger;
        vx3::wxWaveExplorerCommand command;
        understood = 0;
        auto start = std::chrono::steady_clock::now();
        for (const auto& line : lines)
            understood += command.parseCommandString(line, logger) ? 1 : 0;
        parseTimes.push_back(seconds(std::chrono::steady_clock::now() - start));

        start = std::chrono::steady_clock::now();
        int status = std::system(("wc -l " + file + " > /dev/null").c_str());
        wcTimes.push_back(seconds(std::chrono::steady_clock::now() - start));
        if (status != 0)
            return 1;
    }
    std::remove(file.c_str());
    if (understood != count) {
        std::printf("error: %zu of %zu lines were not understood\n", count - understood, count);
        return 1;
    }
    double parseRate = count / medianOf(parseTimes);
    double wcRate = count / medianOf(wcTimes);
    std::printf("command_parse: %.0f lines/s; baseline: %.0f lines/s (wc -l); ratio: %.4f\n", parseRate, wcRate,
                parseRate / wcRate);
    return 0;
}
