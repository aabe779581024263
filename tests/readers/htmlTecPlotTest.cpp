// Tables of HTML pages and TecPlot zones: both end in the column logic of the table reader.
#include <gtest/gtest.h>

#include "readerTestSupport.h"
#include "readers/html/cCurvePlotParserHtmlData.h"

using namespace vx3;
using namespace zwreaders;

TEST(HtmlReader, PandasPageAndItsFirstTable)
{
    cTempDir dir;
    ASSERT_TRUE(runPython(R"PY(
import numpy as np, pandas as pd
rng = np.random.default_rng(3)
df = pd.DataFrame({'freq': np.logspace(1, 6, 40), 'gain [dB]': rng.normal(0, 20, 40)})
page = '<!DOCTYPE html><html><head><style>td {color: red}</style><script>var x = "<table>";</script></head><body>'
page += df.to_html(float_format=repr) + '<p>second</p>' + pd.DataFrame({'z': [1, 2]}).to_html() + '</body></html>'
open('page.html', 'w').write(page)
with open('oracle.txt', 'w') as f:
    for value in list(df['freq']) + list(df['gain [dB]']):
        f.write(repr(float(value)) + '\n')
)PY",
                          dir.path()));
    const std::vector<double> oracle = readNumbers(dir.file("oracle.txt"));
    cReading reading;
    ASSERT_EQ(reading.parse(dir.file("page.html")), ok) << reading.messages.text();
    ASSERT_EQ(reading.store.getNbOfDataSections(), 1u);
    EXPECT_EQ(reading.store.dbFile(0)->getDbType(), fileDbSupport::html);
    EXPECT_EQ(reading.values(0, ""), std::vector<double>(oracle.begin(), oracle.begin() + 40));
    EXPECT_EQ(reading.values(0, "gain"), std::vector<double>(oracle.begin() + 40, oracle.end()));
    EXPECT_EQ(reading.section(0)->getVariable(0).getUnitIdentifier(), unsigned(curvePlotDataType::decibel));
}

TEST(HtmlReader, CellsEntitiesAndTextInNumbers)
{
    EXPECT_EQ(cHtmlParser::decodeEntities("a &amp; b &lt;&#65;&#x42;&gt;&nbsp;&unknown;"), "a & b <AB> &unknown;");
    EXPECT_FALSE(cHtmlParser::checkTagMustBeClosed("br"));
    EXPECT_TRUE(cHtmlParser::checkTagMustBeClosed("td"));
    cReading reading;
    const std::string page =
        "<TABLE><TR><TH>t</TH><TH colspan=\"1\">v<br>(V)</TH></TR><!-- <tr><td>9</td></tr> -->"
        "<tr><td>0</td><td><b>1.5</b></td></tr><tr><td>1</td><td>n/a</td></tr>"
        "<tr><td>2</td><td>&minus;3</td></tr><tr><td>3</td><td>4</td></tr><tr><td>4</td><td>5</td></tr></TABLE>";
    ASSERT_EQ(reading.parser.parseString(reading.store, page), partly_parsed) << reading.messages.text();
    const std::vector<double> v = reading.values(0, "v");
    ASSERT_EQ(v.size(), 5u);
    EXPECT_EQ(v[0], 1.5);
    EXPECT_TRUE(std::isnan(v[1])) << "text in a column of numbers";
    EXPECT_EQ(v[2], -3.0);
    EXPECT_TRUE(reading.messages.contains("The entry \"n/a\" (column 2) in row 3")) << reading.messages.text();
    EXPECT_EQ(reading.section(0)->getVariable(0).getUnitIdentifier(), unsigned(curvePlotDataType::volt));
}

TEST(TecPlotReader, PointAndBlockZonesOfTheSameDataAgree)
{
    cTempDir dir;
    std::string point = "TITLE = \"same data\"\nVARIABLES = \"x\", \"y [V]\", \"z\"\nZONE T=\"a\", I=20, F=POINT\n";
    std::string block = "# written by hand\nTitle=\"same data\"\nVariables = x \"y [V]\" z\n"
                        "TEXT X=1, Y=2, T=\"a note\"\nDATASETAUXDATA solver=\"xyz\"\nzone t=\"a\" i=20 datapacking=block\n";
    std::string xs, ys, zs;
    for (int i = 0; i < 20; ++i) {
        const double x = i * 0.125, y = std::sin(i * 0.3), z = i * i;
        char line[128];
        std::snprintf(line, sizeof(line), "%.17g %.17g %.17g\n", x, y, z);
        point += line;
        std::snprintf(line, sizeof(line), "%.17g ", x);
        xs += line + std::string(i % 7 == 6 ? "\n" : "");
        std::snprintf(line, sizeof(line), "%.17g ", y);
        ys += line;
        std::snprintf(line, sizeof(line), "%.17gD+00 ", z);  // Fortran exponents
        zs += line;
    }
    block += xs + "\n" + ys + "\n" + zs + "\n";
    cReading a, b;
    ASSERT_EQ(a.parse(dir.write("point.dat", point)), ok) << a.messages.text();
    ASSERT_EQ(b.parse(dir.write("block.dat", block)), ok) << b.messages.text();
    EXPECT_EQ(a.store.dbFile(0)->getDbType(), fileDbSupport::tecplot);
    EXPECT_EQ(b.store.dbFile(0)->getDbType(), fileDbSupport::tecplot);
    for (const char* curve : {"", "y", "z"}) {
        EXPECT_EQ(a.values(0, curve), b.values(0, curve)) << curve;
        EXPECT_EQ(a.values(0, curve).size(), 20u) << curve;
    }
    EXPECT_EQ(b.values(0, "z").back(), 361.0);
    EXPECT_EQ(a.section(0)->getVariable(0).getUnitIdentifier(), unsigned(curvePlotDataType::volt));
    ASSERT_NE(b.store.dbFile(0)->findProperty(curvePlotProperties::user_defined, "solver"),
              b.store.dbFile(0)->getNbOfProperties());
}

TEST(TecPlotReader, ZonesAreSectionsAndABrokenZoneKeepsWhatWasRead)
{
    cTempDir dir;
    const std::string text = "VARIABLES = t v\nZONE T=\"run\" I=3\n0 1\n1 2\n2 3\nZONE T=\"run\" I=3\n0 4\n1 5\n2 6\n"
                             "ZONE T=\"cut\" I=5\n0 7\n1 8\n2 9\n";
    cReading reading;
    ASSERT_EQ(reading.parse(dir.write("zones.dat", text)), partly_parsed) << reading.messages.text();
    ASSERT_EQ(reading.store.getNbOfDataSections(), 3u);
    EXPECT_EQ(reading.section(1)->getStepIndex(), 2u) << "a second zone of the same title is its second run";
    EXPECT_EQ(reading.values(1, "v"), (std::vector<double>{4, 5, 6}));
    const std::vector<double> cut = reading.values(2, "v");
    ASSERT_EQ(cut.size(), 5u);
    EXPECT_EQ(cut[2], 9.0);
    EXPECT_TRUE(std::isnan(cut[4]));
    EXPECT_TRUE(reading.messages.contains("breaks off")) << reading.messages.text();

    cReading none;
    EXPECT_EQ(none.parse(dir.write("words.dat", "this is not\na table\n")), failed);
    EXPECT_EQ(none.store.getNbOfDbFiles(), 0u);
}
