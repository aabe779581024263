// The table page over CSV files that numpy writes at test time: curves as columns on the union
// of their x values, calculator columns against numpy on the same values, failures that leave the
// table as it was, column names, and the export read back by pandas.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <string>
#include <vector>

#include "model/cCurvePlotDataFile.h"
#include "readers/cCurvePlotParser.h"
#include "treegrid/data/wxTreeGridData.h"
#include "../treeGridTestModel.h"

using namespace vx3;

namespace {

class cMessages : public cVxLoggerCallBack {
public:
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override
    {
        (severity == vxLogger::error || severity == vxLogger::fatal_error ? errors : others).push_back(text);
    }
    std::vector<std::string> errors, others;
};

// Writes script to the folder and runs it there.
bool runScript(const std::filesystem::path& folder, const std::string& script)
{
    std::ofstream(folder / "script.py") << script;
    return std::system(("cd '" + folder.string() + "' && /usr/bin/python3 script.py").c_str()) == 0;
}

std::vector<double> readNumbers(const std::filesystem::path& path)
{
    std::vector<double> numbers;
    std::ifstream in(path);
    std::string line;
    while (std::getline(in, line))
        numbers.push_back(line == "nan" ? NAN : std::stod(line));
    return numbers;
}

struct cPage {
    cCurvePlotDataFile store;
    cMessages messages;
    wxTreeGridData table{store};
    cPage() { table.setLoggerCallBack(&messages); }
    ~cPage() { table.setLoggerCallBack(nullptr); }
    bool read(const std::filesystem::path& file)
    {
        cCurvePlotParser parser;
        parser.logger().setLoggerCallBack(&messages);
        const returnCode code = parser.parse(store, file.string());
        parser.logger().setLoggerCallBack(nullptr);
        return code == ok;
    }
    cCurvePlotDataSection& section(uint64_t index) { return *store.getDataSectionFromIndex(index); }
};

// Two curves on one x axis, and numpy's values of the expressions the tests compute.
const char* const kTwoCurves = R"PY(
import numpy as np
rng = np.random.default_rng(11)
t = np.cumsum(rng.uniform(1e-6, 1e-3, 300))
a = rng.normal(0, 2, 300)
b = rng.uniform(0.5, 3, 300)
with open('data.csv', 'w') as f:
    f.write('t,a,b\n')
    for row in zip(t, a, b):
        f.write(','.join(repr(float(v)) for v in row) + '\n')
c = a * b - 3 * a + b / 2
results = [t, a, b, c, np.sin(a) + b ** 2, np.sqrt(b) * c, 2 * c]
with open('oracle.txt', 'w') as f:
    for column in results:
        for v in column:
            f.write(repr(float(v)) + '\n')
)PY";

void expectClose(double got, double want, const std::string& what)
{
    EXPECT_NEAR(got, want, 1e-12 * std::max(1.0, std::fabs(want))) << what;
}

}  // namespace

TEST(TreeGridData, CalculatorColumnsAgreeWithNumpy)
{
    zwtest::cTempFolder dir;
    ASSERT_TRUE(runScript(dir.path(), kTwoCurves));
    const std::vector<double> oracle = readNumbers(dir.path() / "oracle.txt");
    ASSERT_EQ(oracle.size(), 7u * 300u);
    auto column = [&](size_t k, size_t row) { return oracle[k * 300 + row]; };

    cPage page;
    ASSERT_TRUE(page.read(dir.path() / "data.csv"));
    ASSERT_TRUE(page.table.addSection(page.section(0)));
    auto& table = page.table;
    ASSERT_EQ(table.getNbOfCurveColumns(), 2u);
    ASSERT_EQ(table.treeGridVirtualGetNumberOfRows(), 300u);
    ASSERT_EQ(table.treeGridVirtualGetNumberOfColumns(), 3u);
    EXPECT_EQ(table.treeGridVirtualGetColHeaderLabel(0), "t");
    EXPECT_EQ(table.treeGridVirtualGetColHeaderLabel(1), "A: a");
    EXPECT_EQ(table.treeGridVirtualGetColHeaderLabel(2), "B: b");
    // The cells are the file's values to the last bit, and their text reads back to them.
    for (unsigned row = 0; row < 300; ++row)
        for (unsigned col = 0; col < 3; ++col) {
            ASSERT_EQ(table.treeGridVirtualGetDoubleValue(row, col), column(col, row)) << row << "," << col;
            ASSERT_EQ(std::stod(table.treeGridVirtualGetValue(row, col)), column(col, row));
        }

    ASSERT_TRUE(table.insertCalculatorColumn("A*B - 3*A + B/2")) << page.messages.errors.size();
    ASSERT_TRUE(table.insertCalculatorColumn("sin(A) + B^2"));
    // A calculator column can name an earlier one.
    ASSERT_TRUE(table.calculatorDialogSucceeded("sqrt(B) * C"));
    ASSERT_TRUE(table.insertCalculatorColumn("C + C"));
    EXPECT_TRUE(page.messages.errors.empty()) << page.messages.errors.front();
    ASSERT_EQ(table.getNbOfCurveColumns(), 6u);
    EXPECT_EQ(table.treeGridVirtualGetColHeaderLabel(3), "C: A*B - 3*A + B/2");
    EXPECT_EQ(table.treeGridVirtualGetNumberOfRows(), 300u);
    for (unsigned row = 0; row < 300; ++row)
        for (unsigned k = 3; k < 7; ++k)
            expectClose(table.treeGridVirtualGetDoubleValue(row, k), column(k, row),
                        "row " + std::to_string(row) + " column " + std::to_string(k));

    // Removing a curve the calculator used keeps the computed values.
    ASSERT_TRUE(table.removeCurveColumn(0));
    EXPECT_EQ(table.treeGridVirtualGetColHeaderLabel(1), "A: b");
    expectClose(table.treeGridVirtualGetDoubleValue(17, 2), column(3, 17), "after removal");
}

TEST(TreeGridData, BadExpressionsAreToldAndChangeNothing)
{
    zwtest::cTempFolder dir;
    ASSERT_TRUE(runScript(dir.path(), kTwoCurves));
    cPage page;
    ASSERT_TRUE(page.read(dir.path() / "data.csv"));
    ASSERT_TRUE(page.table.addSection(page.section(0)));
    ASSERT_TRUE(page.table.insertCalculatorColumn("A + B"));
    const std::string before = page.table.exportToString(treeGridData::export_csv, {});

    struct cCase {
        std::string expression;
        std::string message;  // empty: any error of the calculator
    };
    const std::vector<cCase> cases = {
        {"2 * 3", "The result of the expression evaluation isn't a curve."},
        {"[1, 2, 3]", "The result of the expression evaluation isn't a curve."},
        {"A +", ""},
        {"(A * B", ""},
        {"Cos(A)", "The function \"Cos\" is unknown."},
        {"A * \"B\"", ""},
        {"ZZ + A", ""},  // no such column, and no such curve either
    };
    for (const auto& [expression, message] : cases) {
        page.messages.errors.clear();
        EXPECT_FALSE(page.table.insertCalculatorColumn(expression)) << expression;
        ASSERT_FALSE(page.messages.errors.empty()) << expression;
        if (!message.empty())
            EXPECT_EQ(page.messages.errors.back(), message) << expression;
        // The user reads what they typed: never the calculator texts that stand for the columns.
        std::string told;
        for (const std::string& error : page.messages.errors)
            told += error + "\n";
        EXPECT_EQ(told.find("waveform("), std::string::npos) << told;
        if (expression == "A +" || expression == "(A * B")
            EXPECT_NE(told.find(expression), std::string::npos) << told;
        EXPECT_EQ(page.table.getNbOfCurveColumns(), 3u) << expression;
    }
    EXPECT_EQ(page.table.exportToString(treeGridData::export_csv, {}), before);
}

TEST(TreeGridData, ColumnNamesAreReplacedOnlyWhereTheyNameColumns)
{
    EXPECT_EQ(wxTreeGridData::getExcelColumnName(0), "A");
    EXPECT_EQ(wxTreeGridData::getExcelColumnName(25), "Z");
    EXPECT_EQ(wxTreeGridData::getExcelColumnName(26), "AA");
    EXPECT_EQ(wxTreeGridData::getExcelColumnName(701), "ZZ");
    EXPECT_EQ(wxTreeGridData::getExcelColumnName(702), "AAA");
    for (unsigned n : {0u, 1u, 25u, 26u, 27u, 51u, 52u, 701u, 702u, 18277u, 100000u}) {
        unsigned back = 0;
        ASSERT_TRUE(wxTreeGridData::decodeExcelColumnName(wxTreeGridData::getExcelColumnName(n), back));
        EXPECT_EQ(back, n);
    }
    unsigned ignored = 0;
    for (const char* bad : {"", "a", "A1", "_A", "Ab"})
        EXPECT_FALSE(wxTreeGridData::decodeExcelColumnName(bad, ignored)) << bad;

    zwtest::cTempFolder dir;
    ASSERT_TRUE(runScript(dir.path(), kTwoCurves));
    cPage page;
    ASSERT_TRUE(page.read(dir.path() / "data.csv"));
    ASSERT_TRUE(page.table.addSection(page.section(0)));
    const std::string a = page.table.getCurveColumn(0).reference, b = page.table.getCurveColumn(1).reference;
    ASSERT_NE(a, b);
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"A+B", a + "+" + b},
        {"A * 2", a + " * 2"},
        // Quoted text, calls, numbers with exponents or suffixes, lower case and longer names stay.
        {"\"A\" + B", "\"A\" + " + b},
        {"\"say \\\"A\\\"\" + A", "\"say \\\"A\\\"\" + " + a},
        {"B (1)", "B (1)"},
        {"1E3 * A", "1E3 * " + a},
        {"2.5MEG + 1e-3*B", "2.5MEG + 1e-3*" + b},
        {"a + AB + C + A_1 + x.A", "a + AB + C + A_1 + x.A"},
    };
    for (const auto& [text, want] : cases)
        EXPECT_EQ(page.table.replaceExcelColumnNames(text), want) << text;
}

TEST(TreeGridData, CurvesOfTwoFilesShareRowsAndExportReadsBack)
{
    zwtest::cTempFolder dir;
    ASSERT_TRUE(runScript(dir.path(), R"PY(
with open('one.csv', 'w') as f:
    f.write('t,a\n0,1\n1,2\n2,4\n3,8\n')
with open('two.csv', 'w') as f:
    f.write('t,b\n0,10\n1.5,20\n3,30\n')
)PY"));
    cPage page;
    ASSERT_TRUE(page.read(dir.path() / "one.csv"));
    ASSERT_TRUE(page.read(dir.path() / "two.csv"));
    ASSERT_TRUE(page.table.addSection(page.section(0)));
    ASSERT_TRUE(page.table.addSection(page.section(1)));
    auto& table = page.table;
    EXPECT_EQ(table.getRowXs(), (std::vector<double>{0, 1, 1.5, 2, 3}));
    EXPECT_EQ(table.treeGridVirtualGetValue(1, 2), "");  // b has no sample at 1
    EXPECT_EQ(table.treeGridVirtualGetValue(2, 1), "");  // nor a at 1.5
    EXPECT_TRUE(std::isnan(table.treeGridVirtualGetDoubleValue(2, 1)));
    EXPECT_EQ(table.treeGridVirtualGetValue(4, 2), "30");
    // Interpolated between the neighbours when asked; still blank outside a curve's range.
    table.setInterpolateMissingValues(true);
    EXPECT_DOUBLE_EQ(table.treeGridVirtualGetDoubleValue(2, 1), 3.0);
    EXPECT_DOUBLE_EQ(table.treeGridVirtualGetDoubleValue(1, 2), 10.0 + 10.0 / 1.5);
    table.setInterpolateMissingValues(false);
    // Computed on the curves themselves, the sum is shown on every row in range.
    ASSERT_TRUE(table.insertCalculatorColumn("A + B"));
    EXPECT_EQ(table.treeGridVirtualGetDoubleValue(0, 3), 11.0);
    EXPECT_EQ(table.treeGridVirtualGetDoubleValue(4, 3), 38.0);
    // A complex result shows both parts; its real part is the cell's number.
    ASSERT_TRUE(table.insertCalculatorColumn("A + j*B"));
    EXPECT_EQ(table.treeGridVirtualGetValue(0, 4), "1+10j");
    EXPECT_EQ(table.treeGridVirtualGetDoubleValue(4, 4), 8.0);
    ASSERT_TRUE(table.removeCurveColumn(3));
    EXPECT_THROW(table.treeGridVirtualGetValue(0, 5), std::out_of_range);

    page.messages.others.clear();
    const std::filesystem::path csv = dir.path() / "table.csv", html = dir.path() / "table.html";
    ASSERT_TRUE(table.exportFromDialog(csv.string(), treeGridData::export_csv, {}));
    EXPECT_EQ(page.messages.others, std::vector<std::string>{"Exported data to file \"" + csv.string() + "\"."});
    ASSERT_TRUE(table.exportFromDialog(html.string(), treeGridData::export_html, {1}));
    ASSERT_TRUE(runScript(dir.path(), R"PY(
import math, pandas as pd
from html.parser import HTMLParser
df = pd.read_csv('table.csv')
assert list(df.columns) == ['t', 'a', 'b', 'A + B'], list(df.columns)
assert list(df['t']) == [0, 1, 1.5, 2, 3]
assert list(df['a'].fillna(-1)) == [1, 2, -1, 4, 8]
assert list(df['b'].fillna(-1)) == [10, -1, 20, -1, 30]
class Cells(HTMLParser):
    def __init__(self):
        super().__init__(); self.rows = []; self.cell = None
    def handle_starttag(self, tag, attrs):
        if tag == 'tr': self.rows.append([])
        if tag in ('td', 'th'): self.cell = ''
    def handle_data(self, data):
        if self.cell is not None: self.cell += data
    def handle_endtag(self, tag):
        if tag in ('td', 'th'): self.rows[-1].append(self.cell); self.cell = None
p = Cells(); p.feed(open('table.html').read())
assert p.rows[0] == ['t', 'B: b'], p.rows[0]
assert [r[1] for r in p.rows[1:]] == ['10', '', '20', '', '30'], p.rows
)PY"));

    page.messages.errors.clear();
    const std::string nowhere = (dir.path() / "missing" / "table.csv").string();
    EXPECT_FALSE(table.exportFromDialog(nowhere, treeGridData::export_csv, {}));
    EXPECT_EQ(page.messages.errors, std::vector<std::string>{"Failed to open file \"" + nowhere + "\"."});
    EXPECT_FALSE(table.checkSelectionForExport({}));
    EXPECT_EQ(page.messages.errors.back(), "No curves selected in table.");
}
