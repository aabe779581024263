// The table page widget offscreen over a CSV file numpy writes: the calculator bar adds a column
// the grid shows with numpy's values, a bad expression is told in the message line and changes
// nothing, the column menu removes and hides columns, and the export writes the columns that show,
// read back by numpy. A picture goes to $ZW_TEST_PICTURES when it is set.
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include "../treeGridTestModel.h"
#include "model/cCurvePlotDataFile.h"
#include "readers/cCurvePlotParser.h"
#include "treegrid/page/wxTreeGridTableWidgetImpl.h"
#include "treegrid/qt/wxTreeGridImpl.h"
#include "treegrid/wxTreeGridColMenu.h"

using namespace vx3;

namespace {

bool runScript(const std::filesystem::path& folder, const std::string& script)
{
    std::ofstream(folder / "script.py") << script;
    return std::system(("cd '" + folder.string() + "' && /usr/bin/python3 script.py").c_str()) == 0;
}

const char* const kCurves = R"PY(
import numpy as np
rng = np.random.default_rng(3)
t = np.cumsum(rng.uniform(1e-9, 1e-8, 200))
vin = np.sin(2e7 * t)
vout = 0.8 * vin + rng.normal(0, 0.01, 200)
with open('amp.csv', 'w') as f:
    f.write('time,v(in),v(out)\n')
    for row in zip(t, vin, vout):
        f.write(','.join(repr(float(v)) for v in row) + '\n')
np.savetxt('gain.txt', vout / vin - 0.8)
)PY";

// Reads the exported CSV with numpy and checks it holds time, v(out) and the gain column, in that
// order, equal to the file's values and numpy's gain.
const char* const kCheckExport = R"PY(
import csv, numpy as np, sys
with open('table.csv') as f:
    rows = list(csv.reader(f))
header, data = rows[0], np.array([[float(v) for v in r] for r in rows[1:]])
src = np.loadtxt('amp.csv', delimiter=',', skiprows=1)
gain = np.loadtxt('gain.txt')
ok = len(header) == 3 and 'time' in header[0] and 'v(out)' in header[1] and header[2].replace(' ', '') == 'B/A-0.8'
ok = ok and data.shape == (200, 3)
ok = ok and np.array_equal(data[:, 0], src[:, 0]) and np.allclose(data[:, 1], src[:, 2], rtol=1e-12, atol=0)
ok = ok and np.allclose(data[:, 2], gain, rtol=1e-9, atol=1e-12)
print(header)
sys.exit(0 if ok else 1)
)PY";

}  // namespace

TEST(TreeGridTablePage, CalculatorBarColumnMenuAndExport)
{
    zwtest::cTempFolder dir;
    ASSERT_TRUE(runScript(dir.path(), kCurves));
    cCurvePlotDataFile store;
    {
        cCurvePlotParser parser;
        ASSERT_EQ(parser.parse(store, (dir.path() / "amp.csv").string()), ok);
    }
    wxTreeGridTableWidgetImpl page(store);
    page.resize(720, 360);
    page.show();
    ASSERT_TRUE(page.addSection(*store.getDataSectionFromIndex(0)));
    wxTreeGridImpl& grid = page.getGrid();
    ASSERT_EQ(grid.getNumberOfColumns(), 3u);
    ASSERT_EQ(grid.getNumberOfTotalRows(), 200u);

    QTest::keyClicks(page.expressionEdit(), "B/A - 0.8");
    QTest::mouseClick(page.insertButton(), Qt::LeftButton);
    ASSERT_EQ(grid.getNumberOfColumns(), 4u) << page.message().toStdString();
    EXPECT_TRUE(page.expressionEdit()->text().isEmpty());
    EXPECT_EQ(page.message(), "Column C = B/A - 0.8");
    std::vector<double> gain;
    {
        std::ifstream in(dir.path() / "gain.txt");
        for (double v; in >> v;)
            gain.push_back(v);
    }
    ASSERT_EQ(gain.size(), 200u);
    for (unsigned row = 0; row < 200; row += 7)
        EXPECT_NEAR(grid.getModel().treeGridVirtualGetDoubleValue(row, 3), gain[row], 1e-9 * std::fabs(gain[row]) + 1e-12);

    // A bad expression: told, and the table as it was.
    page.expressionEdit()->setText("B/");
    QTest::keyClick(page.expressionEdit(), Qt::Key_Return);
    EXPECT_EQ(grid.getNumberOfColumns(), 4u);
    EXPECT_FALSE(page.message().isEmpty());
    EXPECT_EQ(page.expressionEdit()->text(), "B/");  // kept for mending

    const QImage picture = page.grab().toImage();
    if (!qgetenv("ZW_TEST_PICTURES").isEmpty())
        picture.save(QString::fromUtf8(qgetenv("ZW_TEST_PICTURES")) + "/table_page.png");

    // The menu hides v(in) from the view and the export; then the export holds what shows.
    grid.executeColMenuAction(treeGridColMenu::act_hide, 1);
    const QString csv = QString::fromStdString((dir.path() / "table.csv").string());
    ASSERT_TRUE(page.exportToFile(csv, treeGridData::export_csv)) << page.message().toStdString();
    EXPECT_EQ(page.message().toStdString(), "Exported data to file \"" + csv.toStdString() + "\".");
    std::ofstream(dir.path() / "check.py") << kCheckExport;
    EXPECT_EQ(std::system(("cd '" + dir.path().string() + "' && /usr/bin/python3 check.py").c_str()), 0);

    // Removing a curve column from its menu; x cannot go.
    grid.executeColMenuAction(treeGridColMenu::act_show_all, 0);
    grid.executeColMenuAction(treeGridColMenu::act_remove, 0);
    EXPECT_EQ(grid.getNumberOfColumns(), 4u);
    grid.executeColMenuAction(treeGridColMenu::act_remove, 1);
    EXPECT_EQ(grid.getNumberOfColumns(), 3u);
    EXPECT_EQ(page.getData().getNbOfCurveColumns(), 2u);

    // Nothing to export: the page says so and writes nothing.
    grid.executeColMenuAction(treeGridColMenu::act_hide, 1);
    grid.executeColMenuAction(treeGridColMenu::act_hide, 2);
    const QString none = QString::fromStdString((dir.path() / "none.csv").string());
    EXPECT_FALSE(page.exportToFile(none, treeGridData::export_csv));
    EXPECT_EQ(page.message(), "No curves selected in table.");
    EXPECT_FALSE(std::filesystem::exists(dir.path() / "none.csv"));
}
