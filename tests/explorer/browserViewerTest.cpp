// The browser in the viewer: a CSV with 3,000 curves opened by command shows every curve (the old
// tree stopped at 2,000).
#include <QImage>
#include <sstream>

#include "explorer/wxWaveExplorerBrowserTreeGrid.h"
#include "toolWindowsTestSupport.h"
#include "zelwave.h"

using namespace zwtest;

TEST_F(cViewerTest, BrowserShowsEveryCurveOfALargeFile)
{
    std::ostringstream csv;
    csv << "time";
    for (int i = 0; i < 3000; ++i)
        csv << ",c" << i;
    csv << "\n";
    for (int r = 0; r < 4; ++r) {
        csv << r;
        for (int i = 0; i < 3000; ++i)
            csv << "," << (r + i);
        csv << "\n";
    }
    const std::string file = writeFile("wide.csv", csv.str());
    auto* browser = mWindow->findChild<vx3::wxWaveExplorerBrowserTreeGrid*>("browser_treegrid");
    ASSERT_NE(browser, nullptr);
    EXPECT_EQ(execute("open_file \"" + file + "\""), vx_code_queued) << "the file loads in the background";
    ASSERT_TRUE(pumpUntil([browser] { return browser->rows().getNumberOfCurveRows() >= 3000; }))
        << browser->rows().getNumberOfCurveRows();
    const std::string dump = browser->rows().dumpRows();
    EXPECT_NE(dump.find(" | c2999 | "), std::string::npos);
    EXPECT_NE(dump.find(" | c0 | "), std::string::npos);

    if (const char* out = std::getenv("ZW_BROWSER_PNG")) {
        mWindow->resize(1000, 600);
        QApplication::processEvents();
        mWindow->grab().toImage().save(out);
    }
}
