// zelwave-cli: the engine without windows, for scripts, pipelines and tests. Each capability is a
// subcommand with its own help.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace vx3 {

struct cCliSubcommand {
    std::string name;
    std::string summary;  // one line for the overview
    std::string usage;    // the full help of the subcommand
    // Arguments after the subcommand's name; returns the exit code.
    std::function<int(const std::vector<std::string>&, std::ostream& out, std::ostream& err)> run;
};

class cCliTool {
public:
    void add(cCliSubcommand subcommand) { mSubcommands.push_back(std::move(subcommand)); }
    // 0 success, 1 the work failed, 2 bad usage.
    int run(int argc, const char* const* argv, std::ostream& out, std::ostream& err) const;
    void printOverview(std::ostream& out) const;

private:
    const cCliSubcommand* find(const std::string& name) const;
    std::vector<cCliSubcommand> mSubcommands;
};

// The subcommands of the command language: help, check, doc.
void addCommandLanguageSubcommands(cCliTool& tool);
// The subcommands that read waveform files: info, dump.
void addFileSubcommands(cCliTool& tool);
// The subcommands that read a curve's values: at, integral.
void addValueSubcommands(cCliTool& tool);
// The subcommand of the expression language: eval.
void addEvalSubcommands(cCliTool& tool);
// The subcommand that measures a curve: measure.
void addMeasureSubcommands(cCliTool& tool);
// The subcommands of the analyses: fft, convolve.
void addFftSubcommands(cCliTool& tool);
// The subcommand that draws a page of curves into a picture: plot (cliPlot.cpp, the one with Qt).
void addPlotSubcommands(cCliTool& tool);

}  // namespace vx3
