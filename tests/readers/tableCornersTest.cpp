// Corners of the table readers that users meet every day: quoted cells as Python's csv module
// writes and reads them, duplicate and empty names, engineering suffixes and "-" cells, "End"
// lines, the x interval of a read, and the cleaning of an x axis that goes backwards.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <set>

#include <gtest/gtest.h>

#include "readerTestSupport.h"

using namespace vx3;
using namespace vx3::curvePlotParser;
using namespace zwreaders;

namespace {

// The tables, written by Python's csv module, and what the same module reads back from them: per
// file the column count, the row count, the names, then each cell as "n:<number>" or "s:<hex>".
// Text travels in hex so that separators, quotes and line ends survive the trip unchanged.
const char* const kQuotedTables = R"PY(
import csv, random
rng = random.Random(21)
names = ["time", "v(a, b)", 'say "hi"', "multi\nline", "note"]
notes = ["plain", "off, really", 'say "x", twice ""', "two\nlines", "semi;colon", "tab\there"]
rows = [[repr(i * 0.25), repr(rng.uniform(-1, 1)), repr(rng.uniform(-1e-3, 1e-3)), repr(rng.uniform(-5, 5)),
         notes[i % len(notes)]] for i in range(30)]
def write(name, table, **style):
    with open(name, "w", newline="") as f:
        csv.writer(f, **style).writerows(table)
write("text_lf.csv", [names] + rows)
write("text_all_crlf.csv", [names] + rows, quoting=csv.QUOTE_ALL, lineterminator="\r\n")
# Numbers only, names with a separator and a doubled quote but no line end: the fast reader's
# share of quoting.
numeric = [["time", "v(a, b)", 'say "hi"', "x;y"]] + [row[:4] for row in rows]
write("numeric_lf.csv", numeric)
write("numeric_crlf.csv", numeric, lineterminator="\r\n")
write("numeric_line_end.csv", [row[:4] for row in [names] + rows])
with open("oracle.txt", "w") as out:
    for name in ("text_lf.csv", "text_all_crlf.csv", "numeric_lf.csv", "numeric_crlf.csv", "numeric_line_end.csv"):
        with open(name, newline="") as f:
            table = list(csv.reader(f))
        out.write("%s %d %d\n" % (name, len(table[0]), len(table) - 1))
        out.write(" ".join(cell.encode().hex() for cell in table[0]) + "\n")
        for row in table[1:]:
            cells = []
            for cell in row:
                try:
                    cells.append("n:" + repr(float(cell)))
                except ValueError:
                    cells.append("s:" + cell.encode().hex())
            out.write(" ".join(cells) + "\n")
)PY";

std::string fromHex(const std::string& hex)
{
    std::string text;
    for (size_t i = 0; i + 1 < hex.size(); i += 2)
        text.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    return text;
}

struct cOracleTable {
    std::string file;
    std::vector<std::string> names;
    std::vector<std::vector<std::string>> cells;  // "n:..." or "s:<text>"
    bool hasText = false;
};

std::vector<cOracleTable> readOracle(const std::string& path)
{
    std::vector<cOracleTable> tables;
    std::ifstream in(path);
    cOracleTable table;
    size_t columns = 0, rows = 0;
    while (in >> table.file >> columns >> rows) {
        table.names.resize(columns);
        for (std::string& name : table.names) {
            in >> name;
            name = fromHex(name);
        }
        table.cells.assign(rows, std::vector<std::string>(columns));
        for (auto& row : table.cells)
            for (std::string& cell : row) {
                in >> cell;
                if (cell.rfind("s:", 0) == 0) {
                    cell = "s:" + fromHex(cell.substr(2));
                    table.hasText = true;
                }
            }
        tables.push_back(table);
        table = cOracleTable();
    }
    return tables;
}

// The section holds exactly the table: names, numbers to the bit, text as an enumeration whose
// strings are the distinct texts in order and whose values point at each row's text.
void expectSameTable(cReading& reading, const cOracleTable& table, const std::string& what)
{
    ASSERT_EQ(reading.store.getNbOfDataSections(), 1u) << what;
    const cCurvePlotDataSection& section = *reading.section(0);
    ASSERT_EQ(section.getNbOfSweepVariables(), 1u) << what;
    EXPECT_EQ(section.getSweepVariable(0).name(), table.names[0]) << what;
    ASSERT_EQ(section.getNbOfVariables(), table.names.size() - 1) << what;
    for (size_t c = 0; c < table.names.size(); ++c) {
        const std::string& name = table.names[c];
        if (c > 0) {
            EXPECT_EQ(section.getVariable(c - 1).name(), name) << what;
        }
        const std::vector<double> got = reading.values(0, c == 0 ? "" : name);
        ASSERT_EQ(got.size(), table.cells.size()) << what << " " << name;
        if (table.cells[0][c].rfind("s:", 0) == 0) {
            std::set<std::string> distinct;
            for (const auto& row : table.cells)
                distinct.insert(row[c].substr(2));
            const cCurvePlotDataType* type = section.getVariable(c - 1).getType();
            ASSERT_TRUE(type && type->checkIsEnum()) << what << " " << name;
            const std::vector<std::string> strings(distinct.begin(), distinct.end());
            ASSERT_EQ(type->getStrings(), strings) << what << " " << name;
            for (size_t r = 0; r < table.cells.size(); ++r) {
                const auto at = std::find(strings.begin(), strings.end(), table.cells[r][c].substr(2));
                ASSERT_EQ(got[r], static_cast<double>(at - strings.begin())) << what << " " << name << " row " << r;
            }
        } else {
            for (size_t r = 0; r < table.cells.size(); ++r)
                ASSERT_EQ(got[r], std::stod(table.cells[r][c].substr(2))) << what << " " << name << " row " << r;
        }
    }
}

}  // namespace

TEST(TableCorners, QuotedCellsAsPythonsCsvModuleWritesThem)
{
    cTempDir dir;
    ASSERT_TRUE(runPython(kQuotedTables, dir.path()));
    const std::vector<cOracleTable> tables = readOracle(dir.file("oracle.txt"));
    ASSERT_EQ(tables.size(), 5u);
    for (const cOracleTable& table : tables) {
        for (unsigned reader : {0u, unsigned(tabulated_slow), unsigned(tabulated_fast)}) {
            const std::string what = table.file + " reader " + std::to_string(reader);
            cReading reading;
            reading.parser.setForcedParserType(reader);
            const returnCode code = reading.parse(dir.file(table.file));
            const bool lineEndInName = std::any_of(table.names.begin(), table.names.end(),
                                                   [](const std::string& name) { return name.find('\n') != std::string::npos; });
            if (reader == tabulated_fast && (table.hasText || lineEndInName)) {
                // Text cells and cells over several lines are the slow reader's: the fast one
                // gives up and adds nothing, and the usual chain goes on to the slow one.
                EXPECT_NE(code, ok) << what;
                EXPECT_EQ(reading.store.getNbOfDataSections(), 0u) << what;
                continue;
            }
            ASSERT_EQ(code, ok) << what << "\n" << reading.messages.text();
            expectSameTable(reading, table, what);
        }
    }
}

TEST(TableCorners, DuplicateAndEmptyNames)
{
    cTempDir dir;
    // Column 3 has no name, "a" comes twice apart, "c" twice side by side (a complex pair).
    std::string text = "t,a,,b,a,c,c,d\n";
    for (int i = 0; i < 6; ++i)
        text += std::to_string(i) + "," + std::to_string(10 + i) + "," + std::to_string(20 + i) + "," +
                std::to_string(30 + i) + "," + std::to_string(40 + i) + "," + std::to_string(50 + i) + "," +
                std::to_string(60 + i) + "," + std::to_string(70 + i) + "\n";
    const std::string file = dir.write("names.csv", text);
    for (unsigned reader : {unsigned(tabulated_fast), unsigned(tabulated_slow)}) {
        cReading reading;
        reading.parser.setForcedParserType(reader);
        ASSERT_EQ(reading.parse(file), ok) << reading.messages.text();
        const cCurvePlotDataSection& section = *reading.section(0);
        std::vector<std::string> names;
        for (uint64_t k = 0; k < section.getNbOfVariables(); ++k)
            names.push_back(section.getVariable(k).name());
        EXPECT_EQ(names, (std::vector<std::string>{"a", "column_3", "b", "a_1", "c", "d"})) << reader;
        EXPECT_EQ(reading.values(0, "column_3"), (std::vector<double>{20, 21, 22, 23, 24, 25}));
        EXPECT_EQ(reading.values(0, "a"), (std::vector<double>{10, 11, 12, 13, 14, 15})) << "the first keeps the name";
        EXPECT_EQ(reading.values(0, "a_1"), (std::vector<double>{40, 41, 42, 43, 44, 45}));
        const cCurvePlotVariable& c = section.getVariable(section.findVariableIndex("c"));
        ASSERT_TRUE(c.getType()->checkIsComplex());
        EXPECT_EQ(c.doubleComplexValues()[4], std::complex<double>(54, 64));
    }
}

TEST(TableCorners, EngineeringSuffixesDashesAndEndLines)
{
    cTempDir dir;
    // Suffixes are folded into the exponent: each value is the double nearest the written one.
    const std::string suffixes =
        dir.write("suffix.csv", "t,v,w\n0,1k,1\n1n,2m,-\n2u,3u,2\n3p,4n,---\n4f,5p,3\n5,6f,4\n6,7meg,5\n7,8g,6\n"
                                "8,9t,7\n9,1.5MEG,8\n");
    const std::vector<double> t{0, 1e-9, 2e-6, 3e-12, 4e-15, 5, 6, 7, 8, 9};
    const std::vector<double> v{1e3, 2e-3, 3e-6, 4e-9, 5e-12, 6e-15, 7e6, 8e9, 9e12, 1.5e6};
    for (unsigned reader : {0u, unsigned(tabulated_slow)}) {
        cReading reading;
        reading.parser.setForcedParserType(reader);
        ASSERT_EQ(reading.parse(suffixes), ok) << reading.messages.text();
        EXPECT_EQ(reading.values(0, ""), t);
        EXPECT_EQ(reading.values(0, "v"), v);
        const std::vector<double> w = reading.values(0, "w");
        ASSERT_EQ(w.size(), 10u);
        for (size_t i : {1u, 3u})
            EXPECT_TRUE(std::isnan(w[i])) << "a dash is no value, row " << i;
        EXPECT_EQ(w[9], 8.0);
    }
    cReading fast;
    fast.parser.setForcedParserType(tabulated_fast);
    EXPECT_NE(fast.parse(suffixes), ok) << "plain numbers only: the slow reader takes suffixes";
    EXPECT_EQ(fast.store.getNbOfDataSections(), 0u);

    // "End" closes the data; after it a second run follows.
    const std::string ended = dir.write("ended.csv", "t,v\n0,1\n1,2\n2,3\nEnd\n");
    const std::string xyce = dir.write("xyce.prn", "Index t v\n0 0 1\n1 1 2\n2 2 3\nEnd of Xyce(TM) Simulation\n");
    for (unsigned reader : {unsigned(tabulated_fast), unsigned(tabulated_slow)}) {
        for (const std::string& file : {ended, xyce}) {
            cReading reading;
            reading.parser.setForcedParserType(reader);
            ASSERT_EQ(reading.parse(file), ok) << file << " " << reader << "\n" << reading.messages.text();
            ASSERT_EQ(reading.store.getNbOfDataSections(), 1u);
            EXPECT_EQ(reading.values(0, ""), (std::vector<double>{0, 1, 2})) << file << " " << reader;
            EXPECT_EQ(reading.values(0, "v"), (std::vector<double>{1, 2, 3})) << file << " " << reader;
        }
    }
    const std::string runs = dir.write("runs.csv", "t,v\n0,1\n1,2\n2,3\nEnd\n0,4\n1,5\n2,6\n3,7\nEnd\n");
    for (unsigned reader : {0u, unsigned(tabulated_slow)}) {
        cReading reading;
        reading.parser.setForcedParserType(reader);
        ASSERT_EQ(reading.parse(runs), ok) << reading.messages.text();
        ASSERT_EQ(reading.store.getNbOfDataSections(), 2u);
        EXPECT_EQ(reading.values(0, "v"), (std::vector<double>{1, 2, 3}));
        EXPECT_EQ(reading.values(1, ""), (std::vector<double>{0, 1, 2, 3}));
        EXPECT_EQ(reading.values(1, "v"), (std::vector<double>{4, 5, 6, 7}));
    }
}

TEST(TableCorners, TheXIntervalOfARead)
{
    cTempDir dir;
    std::string text = "t,v,w\n";
    for (int i = 0; i < 100; ++i)
        text += std::to_string(i * 0.5) + "," + std::to_string(i * i) + "," + std::to_string(-i) + "\n";
    const std::string file = dir.write("interval.csv", text);
    // The rows whose x lies in [first, last]; NaN leaves that end open.
    auto expected = [](double first, double last, int column) {
        std::vector<double> values;
        for (int i = 0; i < 100; ++i) {
            const double x = i * 0.5;
            if ((std::isnan(first) || x >= first) && (std::isnan(last) || x <= last))
                values.push_back(column == 0 ? x : column == 1 ? i * i : -i);
        }
        return values;
    };
    struct cCase {
        double first, last;
    };
    for (const cCase& interval : {cCase{10.25, 20.0}, cCase{10.0, NAN}, cCase{NAN, 3.0}, cCase{-5.0, 1e9}}) {
        for (unsigned reader : {unsigned(tabulated_fast), unsigned(tabulated_slow)}) {
            cReading reading;
            reading.parser.setForcedParserType(reader);
            reading.parser.openFileOptions().setFirstXAxisValue(interval.first);
            reading.parser.openFileOptions().setLastXAxisValue(interval.last);
            const std::string what = std::to_string(interval.first) + " to " + std::to_string(interval.last) +
                                     ", reader " + std::to_string(reader);
            ASSERT_EQ(reading.parse(file), ok) << what << "\n" << reading.messages.text();
            EXPECT_EQ(reading.values(0, ""), expected(interval.first, interval.last, 0)) << what;
            EXPECT_EQ(reading.values(0, "v"), expected(interval.first, interval.last, 1)) << what;
            EXPECT_EQ(reading.values(0, "w"), expected(interval.first, interval.last, 2)) << what;
        }
    }

    // The interval belongs to the open file: a reload, whoever asks for it, keeps to it.
    for (unsigned reader : {unsigned(tabulated_fast), unsigned(tabulated_slow)}) {
        const std::string grown = dir.write("grown.csv", text);
        cReading reading;
        reading.parser.setForcedParserType(reader);
        reading.parser.openFileOptions().setFirstXAxisValue(10.25);
        reading.parser.openFileOptions().setLastXAxisValue(20.0);
        ASSERT_EQ(reading.parse(grown), ok) << reading.messages.text();
        dir.append("grown.csv", "50,1,2\n60,3,4\n");
        cCurvePlotParser other;
        ASSERT_EQ(other.reloadFile(reading.store, grown, ""), ok) << reader;
        EXPECT_EQ(reading.values(0, ""), expected(10.25, 20.0, 0)) << reader << ": the new rows lie outside";
        EXPECT_EQ(reading.values(0, "v"), expected(10.25, 20.0, 1)) << reader;
    }
}

TEST(TableCorners, AxisCleaningKeepsEachYWithItsX)
{
    cTempDir dir;
    // v is the row number and t too, but for a spike (row 50), a late row (row 120), and two
    // rows that step back together (rows 160 and 161, only the forcing removes those).
    std::string text = "t,v\n";
    std::vector<std::pair<double, double>> rows;
    for (int i = 0; i < 300; ++i) {
        const double t = i == 50 ? 1e6 : i == 120 ? 3.0 : i == 160 ? 80.5 : i == 161 ? 80.75 : i;
        rows.emplace_back(t, i);
        text += std::to_string(t) + "," + std::to_string(i) + "\n";
    }
    const std::string file = dir.write("noisy.csv", text);
    for (unsigned reader : {0u, unsigned(tabulated_slow)}) {
        cReading reading;
        reading.parser.setForcedParserType(reader);
        ASSERT_EQ(reading.parse(file), ok) << reading.messages.text();
        const std::vector<double> t = reading.values(0, ""), v = reading.values(0, "v");
        ASSERT_EQ(t.size(), 296u) << reading.messages.text();
        ASSERT_EQ(v.size(), t.size());
        for (size_t k = 0; k < t.size(); ++k) {
            ASSERT_EQ(t[k], v[k]) << "row " << k << ": y stays with its x";
            if (k) {
                ASSERT_GT(t[k], t[k - 1]);
            }
        }
        for (double gone : {50.0, 120.0, 160.0, 161.0})
            EXPECT_EQ(std::find(v.begin(), v.end(), gone), v.end()) << gone;
        EXPECT_TRUE(reading.messages.contains("CSV File : 2 outlier lines were removed.")) << reading.messages.text();
        EXPECT_TRUE(reading.messages.contains(
            "CSV File : forcing increasing x-axis values, 2 lines were removed (the first removed row was 162)"))
            << reading.messages.text();
    }

    // A clean table, read by the fast reader, grows a late row: the reload cleans it as a first
    // read of the grown file would.
    text = "t,v\n";
    for (int i = 0; i < 100; ++i)
        text += std::to_string(i) + "," + std::to_string(i) + "\n";
    const std::string growing = dir.write("growing.csv", text);
    {
        cReading reading;
        ASSERT_EQ(reading.parse(growing), ok);
        ASSERT_EQ(reading.store.dbFile(0)->getDbType(), fileDbSupport::csv) << "the fast reader read it";
        dir.append("growing.csv", "100,100\n101,101\n42.5,-1\n102,102\n");
        ASSERT_EQ(reading.parser.reloadFile(reading.store, growing, ""), ok) << reading.messages.text();
        const std::vector<double> t = reading.values(0, ""), v = reading.values(0, "v");
        ASSERT_EQ(t.size(), 103u) << reading.messages.text();
        EXPECT_EQ(t, v) << "the late row is gone and each y stays with its x";
        EXPECT_EQ(t.back(), 102.0);
    }

    // More than 1 % of the rows go back (10 in 300): that is data of its own, kept as written.
    text = "t,v\n";
    rows.clear();
    for (int i = 0; i < 300; ++i) {
        const double t = i % 30 == 15 ? i - 1.5 : i;
        rows.emplace_back(t, i);
        text += std::to_string(t) + "," + std::to_string(i) + "\n";
    }
    const std::string jittery = dir.write("jittery.csv", text);
    for (unsigned reader : {0u, unsigned(tabulated_slow)}) {
        cReading reading;
        reading.parser.setForcedParserType(reader);
        ASSERT_EQ(reading.parse(jittery), ok) << reading.messages.text();
        ASSERT_EQ(reading.store.getNbOfDataSections(), 1u) << "no runs either: x never falls to its start";
        const std::vector<double> t = reading.values(0, ""), v = reading.values(0, "v");
        ASSERT_EQ(t.size(), rows.size());
        for (size_t k = 0; k < rows.size(); ++k) {
            ASSERT_EQ(t[k], rows[k].first) << k;
            ASSERT_EQ(v[k], rows[k].second) << k;
        }
        EXPECT_FALSE(reading.messages.contains("removed")) << reading.messages.text();
    }
}
