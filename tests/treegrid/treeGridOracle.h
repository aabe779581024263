// Random tables for the grid's tests and the Python oracle that orders and filters them.
#pragma once

#include <gtest/gtest.h>

#include <random>

#include "treeGridTestModel.h"

namespace zwtest {

inline std::string randomText(std::mt19937& rng, int maxLength)
{
    // Few letters of both cases and two non-ASCII ones: many ties, case folding and byte order.
    static const std::vector<std::string> letters = {"a", "B", "b", "A", "c", "Z", "_", "\xc3\xa9", "\xc3\x84"};
    std::uniform_int_distribution<int> length(0, maxLength), pick(0, int(letters.size()) - 1);
    std::string text;
    for (int n = length(rng); n > 0; --n)
        text += letters[pick(rng)];
    return text;
}

inline void fillRandomTable(cTableModel& model, unsigned rows, unsigned seed)
{
    std::mt19937 rng(seed);
    std::vector<std::string> a(rows), c(rows);
    std::vector<double> b(rows);
    std::uniform_int_distribution<int> small(-50, 50);
    std::uniform_real_distribution<double> real(-1e3, 1e3);
    std::uniform_int_distribution<int> kind(0, 9);
    for (unsigned r = 0; r < rows; ++r) {
        a[r] = randomText(rng, 2);
        c[r] = randomText(rng, 4);
        const int k = kind(rng);
        // Duplicates, signed zeros, NaN and a spread of reals.
        b[r] = k == 0 ? std::nan("") : k < 5 ? small(rng) * 0.5 : k == 5 ? -0.0 : real(rng);
    }
    model.addTextColumn("A", std::move(a));
    model.addNumberColumn("B", std::move(b));
    model.addTextColumn("C", std::move(c));
}

inline void writeTable(cTableModel& model, const std::filesystem::path& path)
{
    std::ofstream out(path, std::ios::binary);
    for (size_t c = 0; c < model.columns.size(); ++c)
        out << (c ? "\t" : "") << model.columns[c].label << ":"
            << (model.columns[c].type == vx3::treeGridVirtual::col_number ? "number" : "text");
    out << '\n';
    char buffer[64];
    for (unsigned r = 0; r < model.treeGridVirtualGetNumberOfRows(); ++r) {
        for (size_t c = 0; c < model.columns.size(); ++c) {
            const auto& col = model.columns[c];
            if (col.type == vx3::treeGridVirtual::col_number) {
                std::snprintf(buffer, sizeof buffer, "%.17g", col.numbers[r]);
                out << (c ? "\t" : "") << (std::isnan(col.numbers[r]) ? "nan" : buffer);
            } else {
                out << (c ? "\t" : "") << col.texts[r];
            }
        }
        out << '\n';
    }
}

struct cJob {
    std::vector<std::pair<unsigned, bool>> sort;
    std::string filterJson;  // the filter part of the job, "" for none
};

// Runs the oracle over all jobs and answers, per job, the rows in their order.
inline std::vector<std::vector<unsigned>> runOracle(cTableModel& model, const std::vector<cJob>& jobs,
                                             const zwtest::cTempFolder& folder)
{
    writeTable(model, folder.path() / "table.tsv");
    {
        std::ofstream out(folder.path() / "jobs.json");
        out << "[";
        for (size_t j = 0; j < jobs.size(); ++j) {
            out << (j ? "," : "") << "{\"sort\":[";
            for (size_t s = 0; s < jobs[j].sort.size(); ++s)
                out << (s ? "," : "") << "[" << jobs[j].sort[s].first << ","
                    << (jobs[j].sort[s].second ? "true" : "false") << "]";
            out << "]" << (jobs[j].filterJson.empty() ? "" : "," + jobs[j].filterJson) << "}";
        }
        out << "]";
    }
    const auto script = std::filesystem::path(ZW_SOURCE_DIR) / "tests/treegrid/oracles/table_oracle.py";
    const auto dir = folder.path().string();
    EXPECT_EQ(zwtest::runPython(script, "'" + dir + "/table.tsv' '" + dir + "/jobs.json' '" + dir + "/result.txt'"), 0);
    std::vector<std::vector<unsigned>> results;
    std::ifstream in(folder.path() / "result.txt");
    std::string line;
    while (std::getline(in, line)) {
        std::istringstream words(line);
        results.emplace_back();
        unsigned row;
        while (words >> row)
            results.back().push_back(row);
    }
    return results;
}


struct cFindJob {
    std::string text;
    bool regex = false;
    bool caseSensitive = false;
    bool word = false;
};

inline std::string jsonString(const std::string& text)
{
    std::string out = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\')
            out += '\\';
        out += c;
    }
    return out + "\"";
}

// Python's re over the cells as the model gives them, in the model's order: per job the matching
// cells as (row, column).
inline std::vector<std::vector<std::pair<unsigned, unsigned>>> runFindOracle(vx3::wxTreeGridVirtual& model,
                                                                             const std::vector<cFindJob>& jobs,
                                                                             const cTempFolder& folder)
{
    {
        std::ofstream out(folder.path() / "cells.tsv", std::ios::binary);
        const unsigned cols = model.treeGridVirtualGetNumberOfColumns();
        for (unsigned c = 0; c < cols; ++c)
            out << (c ? "\t" : "") << model.treeGridVirtualGetColHeaderLabel(c);
        out << '\n';
        for (unsigned r = 0; r < model.treeGridVirtualGetNumberOfRows(); ++r) {
            for (unsigned c = 0; c < cols; ++c)
                out << (c ? "\t" : "") << model.treeGridVirtualGetValue(r, c);
            out << '\n';
        }
        std::ofstream js(folder.path() / "find.json");
        js << "[";
        for (size_t j = 0; j < jobs.size(); ++j)
            js << (j ? "," : "") << "{\"text\":" << jsonString(jobs[j].text) << ",\"regex\":" << jobs[j].regex
               << ",\"case\":" << jobs[j].caseSensitive << ",\"word\":" << jobs[j].word << "}";
        js << "]";
    }
    const auto script = std::filesystem::path(ZW_SOURCE_DIR) / "tests/treegrid/oracles/find_oracle.py";
    const auto dir = folder.path().string();
    EXPECT_EQ(runPython(script, "'" + dir + "/cells.tsv' '" + dir + "/find.json' '" + dir + "/found.txt'"), 0);
    std::vector<std::vector<std::pair<unsigned, unsigned>>> results;
    std::ifstream in(folder.path() / "found.txt");
    std::string line;
    while (std::getline(in, line)) {
        std::istringstream words(line);
        results.emplace_back();
        std::string cell;
        while (words >> cell) {
            const size_t colon = cell.find(':');
            results.back().emplace_back(unsigned(std::stoul(cell.substr(0, colon))),
                                        unsigned(std::stoul(cell.substr(colon + 1))));
        }
    }
    return results;
}

}  // namespace zwtest
