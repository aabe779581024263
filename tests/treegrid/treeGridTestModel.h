// A table held in memory for the grid's tests: columns of texts or numbers, with the callbacks
// the tests look at counted.
#pragma once

#include <cmath>
#include <cstdlib>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "treegrid/wxTreeGridVirtual.h"

namespace zwtest {

class cTableModel : public vx3::wxTreeGridVirtual {
public:
    struct cColumn {
        std::string label;
        int type = vx3::treeGridVirtual::col_string;
        std::vector<std::string> texts;  // col_string
        std::vector<double> numbers;     // col_number
    };
    std::vector<cColumn> columns;
    bool expanders = false;
    bool defaultExpanded = true;
    bool acceptsFilters = true;
    int selectedEvents = 0;
    int deselectedEvents = 0;
    int transposeEvents = 0;
    bool lastTransposed = false;
    // When set, the model offers this order for a sort of the first column.
    bool offersOrder = false;
    std::vector<unsigned> offeredOrder;

    void addTextColumn(const std::string& label, std::vector<std::string> texts)
    {
        columns.push_back({label, vx3::treeGridVirtual::col_string, std::move(texts), {}});
    }
    void addNumberColumn(const std::string& label, std::vector<double> numbers)
    {
        columns.push_back({label, vx3::treeGridVirtual::col_number, {}, std::move(numbers)});
    }

    unsigned treeGridVirtualGetNumberOfColumns() override { return unsigned(columns.size()); }
    unsigned treeGridVirtualGetNumberOfRows() override
    {
        if (columns.empty())
            return 0;
        const auto& c = columns.front();
        return unsigned(c.type == vx3::treeGridVirtual::col_number ? c.numbers.size() : c.texts.size());
    }
    std::string treeGridVirtualGetColHeaderLabel(unsigned col) override { return columns.at(col).label; }
    std::string treeGridVirtualGetValue(unsigned row, unsigned col) override
    {
        const auto& c = columns.at(col);
        if (c.type != vx3::treeGridVirtual::col_number)
            return c.texts.at(row);
        const double v = c.numbers.at(row);
        if (std::isnan(v))
            return "undef";
        std::ostringstream out;
        out.precision(17);
        out << v;
        return out.str();
    }
    double treeGridVirtualGetDoubleValue(unsigned row, unsigned col) override
    {
        const auto& c = columns.at(col);
        if (c.type == vx3::treeGridVirtual::col_number)
            return c.numbers.at(row);
        return wxTreeGridVirtual::treeGridVirtualGetDoubleValue(row, col);
    }
    bool treeGridVirtualGetDefaultExpanded(unsigned, unsigned) override { return defaultExpanded; }
    bool treeGridVirtualGetGridUsesExpanders() override { return expanders; }
    void treeGridVirtualElementSelected(unsigned, unsigned) override { ++selectedEvents; }
    void treeGridVirtualElementDeselected(unsigned, unsigned) override { ++deselectedEvents; }
    void treeGridVirtualRowSelected(unsigned) override { ++selectedEvents; }
    void treeGridVirtualRowDeselected(unsigned) override { ++deselectedEvents; }
    void treeGridVirtualColSelected(unsigned) override { ++selectedEvents; }
    void treeGridVirtualColDeselected(unsigned) override { ++deselectedEvents; }
    int treeGridVirtualGetColType(unsigned col) override { return columns.at(col).type; }
    bool treeGridVirtualCheckIfColumnAcceptsFilters(unsigned) override { return acceptsFilters; }
    void treeGridVirtualRowAndColWereInverted(bool transposed) override
    {
        ++transposeEvents;
        lastTransposed = transposed;
    }
    bool treeGridVirtualCheckIfSimplifiedSortingIsPossible(unsigned col, bool, std::vector<unsigned>& order) override
    {
        if (!offersOrder)
            return false;
        order = offeredOrder;
        return true;
    }
};

// A folder of its own under the system's temporary folder, removed with the object.
class cTempFolder {
public:
    cTempFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "zw_treegrid_XXXXXX").string();
        mPath = mkdtemp(pattern.data()) ? pattern : std::string();
    }
    ~cTempFolder()
    {
        std::error_code ec;
        std::filesystem::remove_all(mPath, ec);
    }
    const std::filesystem::path& path() const { return mPath; }

private:
    std::filesystem::path mPath;
};

// Runs the system's python with a script file and arguments; answers its exit status.
inline int runPython(const std::filesystem::path& script, const std::string& arguments)
{
    const std::string command = "/usr/bin/python3 '" + script.string() + "' " + arguments;
    return std::system(command.c_str());
}

inline std::string readFile(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

}  // namespace zwtest
