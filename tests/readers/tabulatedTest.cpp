// The table readers against files that numpy and pandas write, and the shapes the slow reader
// recognises: header and unit rows, decimal commas, dates, enumerations, runs, sweep matrices,
// and the cleaning of a rising x axis.
#include <cmath>

#include <gtest/gtest.h>

#include "readerTestSupport.h"
#include "readers/tabulated/cCurvePlotTabulatedParserCommon.h"
#include "readers/tabulated/csvDates.h"

using namespace vx3;
using namespace vx3::curvePlotParser;
using namespace zwreaders;

namespace {

// Columns t, v, w with values that test the rounding of long decimals and the extremes of
// doubles; oracle.txt holds them in column order, one per line.
const char* const kPandasTables = R"PY(
import numpy as np, pandas as pd
rng = np.random.default_rng(7)
n = 500
t = np.cumsum(rng.uniform(1e-9, 1e-6, n))
v = rng.normal(0, 1, n) * 10.0 ** rng.integers(-30, 30, n)
w = rng.uniform(-1, 1, n)
v[3] = 5e-324; v[4] = -1.7976931348623157e308; v[5] = 2.2250738585072014e-308; w[6] = 0.1; w[7] = -0.0
df = pd.DataFrame({'t': t, 'v': v, 'w': w})
df.to_csv('plain.csv', index=False)
df.to_csv('indexed.csv')
df.to_csv('semicolon.csv', sep=';', decimal=',', index=False)
np.savetxt('numpy.txt', df.values, header='t v w')
np.savetxt('numpy_comma.csv', df.values, delimiter=',', fmt='%.17g')
with open('oracle.txt', 'w') as f:
    for column in (t, v, w):
        for value in column:
            f.write(repr(float(value)) + '\n')
)PY";

void expectSameBits(const std::vector<double>& got, const std::vector<double>& want, const std::string& what)
{
    ASSERT_EQ(got.size(), want.size()) << what;
    for (size_t i = 0; i < got.size(); ++i)
        if (!(got[i] == want[i] && std::signbit(got[i]) == std::signbit(want[i])))
            FAIL() << what << " value " << i << ": " << got[i] << " != " << want[i];
}

}  // namespace

TEST(TabulatedReaders, PandasAndNumpyTablesReadBackExactly)
{
    cTempDir dir;
    ASSERT_TRUE(runPython(kPandasTables, dir.path()));
    const std::vector<double> oracle = readNumbers(dir.file("oracle.txt"));
    ASSERT_EQ(oracle.size(), 1500u);
    const std::vector<double> t(oracle.begin(), oracle.begin() + 500), v(oracle.begin() + 500, oracle.begin() + 1000),
        w(oracle.begin() + 1000, oracle.end());
    for (const char* file : {"plain.csv", "indexed.csv", "semicolon.csv", "numpy.txt"}) {
        for (unsigned reader : {unsigned(tabulated_fast), unsigned(tabulated_slow)}) {
            cReading reading;
            reading.parser.setForcedParserType(reader);
            const std::string what = std::string(file) + (reader == tabulated_fast ? " fast" : " slow");
            ASSERT_EQ(reading.parse(dir.file(file)), ok) << what << "\n" << reading.messages.text();
            ASSERT_EQ(reading.store.getNbOfDataSections(), 1u) << what;
            const cCurvePlotDataSection& section = *reading.section(0);
            ASSERT_EQ(section.getNbOfSweepVariables(), 1u) << what;
            EXPECT_EQ(section.getSweepVariable(0).name(), "t") << what << ": the index column goes";
            EXPECT_EQ(section.getNbOfVariables(), 2u) << what;
            expectSameBits(reading.values(0, ""), t, what + " t");
            expectSameBits(reading.values(0, "v"), v, what + " v");
            expectSameBits(reading.values(0, "w"), w, what + " w");
        }
    }
    // Without names the columns are x, y, z.
    cReading unnamed;
    ASSERT_EQ(unnamed.parse(dir.file("numpy_comma.csv")), ok);
    expectSameBits(unnamed.values(0, "z"), w, "numpy_comma z");
}

TEST(TabulatedReaders, NamesUnitsAndComplexPairs)
{
    using tabulatedParser::cTable;
    double factor = 0;
    std::string unit;
    EXPECT_EQ(cCurvePlotTabulatedParserCommon::guessUnitFromCsvVariableName("time [s]", factor, unit),
              curvePlotDataType::second);
    EXPECT_EQ(cCurvePlotTabulatedParserCommon::guessUnitFromCsvVariableName("out (mV)", factor, unit),
              curvePlotDataType::volt);
    EXPECT_EQ(factor, 1e-3);
    EXPECT_EQ(unit, "V");
    EXPECT_EQ(cCurvePlotTabulatedParserCommon::guessUnitFromCsvVariableName("V(out)", factor, unit),
              curvePlotDataType::volt);
    EXPECT_EQ(cCurvePlotTabulatedParserCommon::guessUnitFromCsvVariableName("Frequency", factor, unit),
              curvePlotDataType::hertz);
    std::string name;
    cCurvePlotTabulatedParserCommon::decomposeColName("bus[7:0]", name, unit);
    EXPECT_EQ(name, "bus[7:0]") << "a bus range is no unit";
    cCurvePlotTabulatedParserCommon::decomposeColName("U/V", name, unit);
    EXPECT_EQ(name + "|" + unit, "U|V");
    std::string common;
    EXPECT_TRUE(cCurvePlotTabulatedParserCommon::checkNamesDefineRealAndImagPart("vr(out)", "vi(out)", common));
    EXPECT_EQ(common, "v(out)");
    EXPECT_TRUE(cCurvePlotTabulatedParserCommon::checkNamesDefineRealAndImagPart("S11 X", "S11 Y", common));
    EXPECT_TRUE(cCurvePlotTabulatedParserCommon::checkNameDefinesSweepVariable("x_temp"));
    EXPECT_FALSE(cCurvePlotTabulatedParserCommon::checkNameDefinesSweepVariable("vx_temp"));

    cTempDir dir;
    cReading reading;
    ASSERT_EQ(reading.parse(dir.write("c.csv", "freq,re(vout),im(vout),out [mV]\n1,1,-1,100\n2,2,-2,200\n3,3,-3,300\n")), ok);
    const cCurvePlotDataSection& section = *reading.section(0);
    ASSERT_EQ(section.getNbOfVariables(), 2u);
    const cCurvePlotVariable& vout = section.getVariable(0);
    EXPECT_EQ(vout.name(), "vout");
    ASSERT_TRUE(vout.getType()->checkIsComplex());
    EXPECT_EQ(vout.doubleComplexValues()[2], std::complex<double>(3, -3));
    const cCurvePlotVariable& out = section.getVariable(1);
    EXPECT_EQ(out.name(), "out");
    EXPECT_EQ(out.getUnitIdentifier(), unsigned(curvePlotDataType::volt));
    EXPECT_DOUBLE_EQ(out.getDoubleValue(1), 0.2) << "millivolts become volts";
    EXPECT_EQ(section.getSweepVariable(0).getUnitIdentifier(), unsigned(curvePlotDataType::hertz));
}

TEST(TabulatedReaders, SlowReaderFindsHeaderUnitsAndSeparators)
{
    cTempDir dir;
    // Title lines, names, a row of units, then tab-separated data with decimal commas.
    const std::string file = dir.write("instrument.slowcsv",
                                       "Instrument: scope 7\nDate: today\n\ntime\tch1\tch2\ns\tmV\tV\n"
                                       "0,0\t1,5\t3\n0,1\t2,5\t4\n0,2\t3,5\t5\n0,3\t4,5\t6\n0,4\t5,5\t7\n");
    cReading reading;
    ASSERT_EQ(reading.parse(file), ok) << reading.messages.text();
    EXPECT_EQ(reading.values(0, ""), (std::vector<double>{0.0, 0.1, 0.2, 0.3, 0.4}));
    EXPECT_EQ(reading.values(0, "ch1"), (std::vector<double>{1.5 * 1e-3, 2.5 * 1e-3, 3.5 * 1e-3, 4.5 * 1e-3, 5.5 * 1e-3}));
    EXPECT_EQ(reading.section(0)->getVariable(1).getUnitIdentifier(), unsigned(curvePlotDataType::volt));

    // Multiple blanks, and a date column with a blank inside its cells.
    cReading blanks;
    ASSERT_EQ(blanks.parse(dir.write("b.slowcsv", "  a    b\n  1    2\n  3    4\n  5    6\n  7    8\n")), ok);
    EXPECT_EQ(blanks.values(0, "b"), (std::vector<double>{2, 4, 6, 8}));
    cReading dates;
    ASSERT_EQ(dates.parse(dir.write("d.csv", "when,level\n2024-01-05 10:00:00,1\n2024-01-05 10:00:01.5,2\n"
                                             "2024-01-05 10:00:03,3\n2024-01-05 10:00:04,4\nnot a date,5\n")),
              partly_parsed)
        << dates.messages.text();
    EXPECT_EQ(dates.values(0, ""), (std::vector<double>{1704448800, 1704448801.5, 1704448803, 1704448804}));
    EXPECT_TRUE(dates.messages.contains("(\"not a date\") isn't a valid date.")) << dates.messages.text();
    EXPECT_TRUE(dates.messages.contains("the row 6 was removed due to an invalid date."));

    double seconds = 0;
    EXPECT_TRUE(csvDates::parseTimeStamp("Fri Jan 5 10:00:00 2024", seconds));
    EXPECT_EQ(seconds, 1704448800);
    EXPECT_TRUE(csvDates::parseTimeStamp("5 janvier 2024 10:00", seconds));
    EXPECT_EQ(seconds, 1704448800);
    EXPECT_TRUE(csvDates::parseTimeStamp("01/05/2024 10:00:00 AM", seconds));
    EXPECT_EQ(seconds, 1704448800);
    EXPECT_TRUE(csvDates::parseTimeStamp("05.01.2024 11:00:00+01:00", seconds));
    EXPECT_EQ(seconds, 1704448800);
    EXPECT_FALSE(csvDates::parseTimeStamp("hello world", seconds));
}

TEST(TabulatedReaders, EdgeShapesOfTables)
{
    cTempDir dir;
    // One numeric column: one curve over the row count.
    cReading single;
    ASSERT_EQ(single.parse(dir.write("one.csv", "level\n3\n1\n4\n1\n5\n")), ok);
    ASSERT_EQ(single.section(0)->getNbOfVariables(), 1u);
    EXPECT_EQ(single.values(0, ""), (std::vector<double>{0, 1, 2, 3, 4}));
    EXPECT_EQ(single.values(0, "level"), (std::vector<double>{3, 1, 4, 1, 5}));

    // A spreadsheet's byte order mark, CR LF line ends, signs and the words of infinity and NaN.
    for (unsigned reader : {unsigned(tabulated_fast), unsigned(tabulated_slow)}) {
        cReading sheet;
        sheet.parser.setForcedParserType(reader);
        ASSERT_EQ(sheet.parse(dir.write("sheet.csv", "\xEF\xBB\xBFtime,v\r\n0,+1.5\r\n1,2e-3\r\n2,-inf\r\n3,NaN\r\n")), ok);
        EXPECT_EQ(sheet.section(0)->getSweepVariable(0).name(), "time");
        const std::vector<double> v = sheet.values(0, "v");
        ASSERT_EQ(v.size(), 4u);
        EXPECT_EQ(v[0], 1.5);
        EXPECT_EQ(v[2], -INFINITY);
        EXPECT_TRUE(std::isnan(v[3]));
    }

    // Only strings: no reader takes it.
    cReading words;
    EXPECT_EQ(words.parse(dir.write("words.csv", "a,b\nc,d\ne,f\ng,h\n")), failed);
    EXPECT_EQ(words.store.getNbOfDataSections(), 0u);

    // An incomplete last row: the fast reader ends there, the slow one keeps it with NaN.
    const std::string cut = dir.write("cut.csv", "t,a,b\n0,1,2\n1,3,4\n2,5\n");
    cReading fast, slow;
    fast.parser.setForcedParserType(tabulated_fast);
    slow.parser.setForcedParserType(tabulated_slow);
    ASSERT_EQ(fast.parse(cut), ok);
    ASSERT_EQ(slow.parse(cut), ok);
    EXPECT_EQ(fast.values(0, "a"), (std::vector<double>{1, 3}));
    const std::vector<double> b = slow.values(0, "b");
    ASSERT_EQ(b.size(), 3u);
    EXPECT_TRUE(std::isnan(b[2]));
    EXPECT_TRUE(slow.messages.contains("The empty entry in incomplete row 4")) << slow.messages.text();

    // A text column of few values: an enumeration; a level defined for a name replaces its index.
    cReading states;
    states.parser.defineEnumReductionLevel("on", 5.0);
    ASSERT_EQ(states.parse(dir.write("s.csv", "t,state,v\n0,off,1\n1,on,2\n2,off,3\n3,idle,4\n4,on,5\n")), ok);
    const cCurvePlotVariable& state = states.section(0)->getVariable(0);
    ASSERT_TRUE(state.getType()->checkIsEnum());
    EXPECT_EQ(state.getType()->getStrings(), (std::vector<std::string>{"idle", "off", "on"}));
    EXPECT_EQ(states.values(0, "state"), (std::vector<double>{1, 5, 1, 0, 5}));
}

TEST(TabulatedReaders, RunsAndSweepMatrices)
{
    cTempDir dir;
    // Step lines announce runs with their parameters.
    cReading steps;
    ASSERT_EQ(steps.parse(dir.write("steps.txt", "time\tV(out)\nStep Information: R1=1k C=2p  (Run: 1/2)\n0\t1\n1\t2\n"
                                                 "Step Information: R1=2k C=2p  (Run: 2/2)\n0\t3\n1\t4\n2\t5\n")),
              ok)
        << steps.messages.text();
    ASSERT_EQ(steps.store.getNbOfDataSections(), 2u);
    EXPECT_EQ(steps.section(1)->getStepIndex(), 2u);
    const auto parameters = steps.section(1)->getStepParameters().parameters;
    ASSERT_EQ(parameters.size(), 2u);
    EXPECT_EQ(parameters[0].getName(), "R1");
    EXPECT_EQ(parameters[0].getReal(), 2000.0);
    EXPECT_EQ(steps.values(1, "V(out)"), (std::vector<double>{3, 4, 5}));

    // An x axis that starts again: numbered runs, read by the slow reader.
    cReading restart;
    ASSERT_EQ(restart.parse(dir.write("restart.csv", "t,v\n0,1\n1,2\n2,3\n0,4\n1,5\n2,6\n3,7\n")), ok);
    ASSERT_EQ(restart.store.getNbOfDataSections(), 2u);
    EXPECT_EQ(restart.values(1, "v"), (std::vector<double>{4, 5, 6, 7}));
    EXPECT_EQ(restart.store.dbFile(0)->getDbType(), fileDbSupport::tabulated_23);

    // Nested loops of equal x: a sweep matrix; p2 repeats p and is dropped.
    cReading matrix;
    ASSERT_EQ(matrix.parse(dir.write("m.csv", "p,p2,t,v\n1,10,0,1\n1,10,1,2\n1,10,2,3\n2,20,0,4\n2,20,1,5\n2,20,2,6\n")),
              ok);
    const cCurvePlotDataSection& section = *matrix.section(0);
    ASSERT_EQ(section.getNbOfSweepVariables(), 2u);
    EXPECT_EQ(section.getSweepVariable(0).name(), "p");
    EXPECT_EQ(section.getSweepVariable(1).name(), "t");
    ASSERT_EQ(section.getNbOfVariables(), 1u);
    EXPECT_EQ(section.getVariable(0).getDataType(), unsigned(curvePlotProperties::data_double_sweep_matrix));
    std::vector<uint64_t> permutation, indices{1, 0};
    section.getDefaultSweepPermutationArray(permutation);
    const uint64_t at = section.computeSweepMatrixCurveIndex(2, permutation, indices);
    EXPECT_EQ(section.getVariable(0).getDoubleValue(at), 6.0) << "p = 2, t = 2";

    // Equal run lengths but different x per run: runs named by the parameter column.
    cReading parameter;
    ASSERT_EQ(parameter.parse(dir.write("pr.csv", "temp,t,v\n25,0,1\n25,1,2\n25,2,3\n85,0,4\n85,1.5,5\n85,2,6\n")), ok);
    ASSERT_EQ(parameter.store.getNbOfDataSections(), 2u);
    EXPECT_EQ(parameter.section(1)->getStepParameters().parameters.at(0).getReal(), 85.0);
    EXPECT_EQ(parameter.values(1, ""), (std::vector<double>{0, 1.5, 2}));
}

TEST(TabulatedReaders, RisingAxisIsCleaned)
{
    cTempDir dir;
    std::string text = "t,v\n";
    for (int i = 0; i < 200; ++i) {
        const double t = i == 50 ? 1e6 : i == 120 ? 3.0 : i;  // a spike and a late row
        text += std::to_string(t) + "," + std::to_string(i) + "\n";
    }
    cReading reading;
    reading.parser.setForcedParserType(tabulated_slow);
    ASSERT_EQ(reading.parse(dir.write("noisy.csv", text)), ok) << reading.messages.text();
    const std::vector<double> t = reading.values(0, "");
    EXPECT_EQ(t.size(), 198u);
    for (size_t i = 1; i < t.size(); ++i)
        ASSERT_GT(t[i], t[i - 1]);
    EXPECT_TRUE(reading.messages.contains("outlier lines were removed.")) << reading.messages.text();
}

TEST(TabulatedReaders, MonitoringToolFiles)
{
    cTempDir dir;
    cReading reading;
    ASSERT_EQ(reading.parse(dir.write("loopstats.20240105", "60314 36000.5 0.000006 13.7 0.00035 0.013 6\n"
                                                            "60314 36064.5 0.000007 13.7 0.00035 0.013 6\n"
                                                            "60314 36128.5 0.000005 13.7 0.00035 0.013 6\n"
                                                            "60314 36192.5 0.000004 13.7 0.00035 0.013 6\n"),
                            tabulated_slow),
              ok)
        << reading.messages.text();
    const cCurvePlotDataSection& section = *reading.section(0);
    EXPECT_EQ(section.getSweepVariable(0).name(), "time") << "the day and the seconds make one time axis";
    EXPECT_EQ(reading.values(0, "").front(), 1704448800.5);
    EXPECT_NE(section.findVariableIndex("drift compensation"), cCurvePlotDataSection::npos);
}
