// The curve browser over a value change dump of 200,000 signals: building the rows and the tree,
// and a search over every curve. Baselines from the same run: reading the curve names alone out of
// the store, and a plain case-insensitive substring loop over those names.
// usage: bench_browser FILE.vcd   (bench_vcd_generate FILE.vcd 20 200000 writes one)
#include <QApplication>
#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "base/cVxThread.h"
#include "explorer/wxWaveExplorerBrowserTreeGrid.h"
#include "model/cCurvePlotDataFile.h"
#include "readers/cCurvePlotParser.h"

using namespace vx3;

namespace {
double millisecondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

template <typename F>
double bestOf(int runs, F&& work)
{
    double best = 1e300;
    for (int i = 0; i < runs; ++i) {
        const auto start = std::chrono::steady_clock::now();
        work();
        best = std::min(best, millisecondsSince(start));
    }
    return best;
}

void print(const char* name, double value, double baseline)
{
    std::printf("%s: %.2f ms; baseline: %.2f ms; ratio: %.2f\n", name, value, baseline, value / baseline);
}
}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FILE.vcd\n", argv[0]);
        return 2;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");  // no window is shown: runs without a display
    QApplication application(argc, argv);
    cCurvePlotDataFile store;
    const auto parseStart = std::chrono::steady_clock::now();
    cCurvePlotParser parser;
    if (parser.parse(store, argv[1]) != ok) {
        std::fprintf(stderr, "could not read %s\n", argv[1]);
        return 1;
    }
    std::printf("file read in %.0f ms\n", millisecondsSince(parseStart));

    std::vector<std::string> names;
    const double namesAlone = bestOf(3, [&] {
        names.clear();
        cVxScopedLock lock(store.getMutex());
        for (uint64_t s = 0; s < store.getNbOfDataSections(); ++s) {
            const cCurvePlotDataSection* section = store.getDataSectionFromIndex(s);
            for (uint64_t k = 0; section && k < section->getNbOfVariables(); ++k)
                names.push_back(section->getVariable(k).name());
        }
    });

    wxBrowserConfiguration configuration;
    wxWaveExplorerBrowserTreeGrid grid(nullptr, &configuration);
    grid.resize(600, 800);
    const double rowsOnly = bestOf(3, [&] { grid.rows().rebuild(store); });
    const double build = bestOf(3, [&] { grid.refresh(store); });
    std::printf("curves: %zu, rows: %zu, expanders: %u\n", names.size(), grid.rows().getNumberOfCurveRows(),
                grid.getNumberOfExpanders());
    print("browser_rows_build", rowsOnly, namesAlone);
    print("browser_build", build, namesAlone);

    // A search that finds a few hundred curves among all, through the full hierarchical names.
    const std::string text = "s1999";
    size_t plain = 0;
    const double baseline = bestOf(3, [&] {
        plain = 0;
        for (const std::string& name : names) {
            std::string low = name;
            std::transform(low.begin(), low.end(), low.begin(), [](unsigned char c) { return char(std::tolower(c)); });
            plain += low.find(text) != std::string::npos;
        }
    });
    std::string message;
    const double search = bestOf(3, [&] { message = grid.rows().reinitSearch(text, {}); });
    std::printf("matches: %zu (plain loop %zu)%s\n", grid.rows().getNumberOfSearchResults(), plain,
                message.empty() ? "" : (" " + message).c_str());
    print("browser_search", search, baseline);
    const double wildcard = bestOf(3, [&] { grid.rows().reinitSearch("top.*.s1999?", {false, true, false}); });
    print("browser_search_wildcard", wildcard, baseline);
    return 0;
}
