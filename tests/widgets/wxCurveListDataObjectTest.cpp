// Curves copied or dragged: the mime forms of a curve list, read back through the clipboard.
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "base/cVxLogger.h"
#include "model/cCurvePlotDataFile.h"
#include "plot/qt/wxCurveListDataObject.h"

namespace {

using namespace vx3;
using namespace vx3::curveListDataObject;

struct cStore {
    cCurvePlotDataFile store;
    cCurvePlotDataSection* tran = nullptr;
    cCurvePlotDataSection* ac = nullptr;

    cStore()
    {
        cFileDbSupport& file = store.findDbSupport("rc.raw");
        const auto* time = store.addType("time", curvePlotProperties::data_double, curvePlotDataType::second);
        const auto* volt = store.addType("v", curvePlotProperties::data_double, curvePlotDataType::volt);
        const auto* hertz = store.addType("frequency", curvePlotProperties::data_double, curvePlotDataType::hertz);
        tran = store.addDataSection("tran", &file);
        const double xs[] = {0.0, 1e-9, 2e-9, 3e-9};
        const double out[] = {0.0, 0.5, 1.0, 1.5};
        const double odd[] = {1.0, NAN, -2.5e-12, 7.0};
        tran->getSweepVariable(tran->addSweepVariable(time, "time", 0)).setDoubleValues(xs, 4);
        tran->getVariable(tran->addVariable(volt, "v(out)")).setDoubleValues(out, 4);
        tran->getVariable(tran->addVariable(volt, "v(a<b, \"µ\")")).setDoubleValues(odd, 4);
        tran->getVariable(tran->addVariable(volt, "v(unused)")).setDoubleValues(out, 4);
        ac = store.addDataSection("ac", &file);
        const double fs[] = {1.0, 10.0};
        const double gain[] = {1.0, 0.25};
        ac->getSweepVariable(ac->addSweepVariable(hertz, "frequency", 0)).setDoubleValues(fs, 2);
        ac->getVariable(ac->addVariable(volt, "gain")).setDoubleValues(gain, 2);
    }

    wxListOfCurveDescriptions list(const cVxLogger& logger)
    {
        wxListOfCurveDescriptions result;
        EXPECT_TRUE(result.addCurve(tran, 0, logger));
        EXPECT_TRUE(result.addCurve(tran, 1, logger));
        result.addSection(ac);
        return result;
    }
};

// The curves a list names, section by section, whole sections spelled out.
std::vector<std::pair<cCurvePlotDataSection*, uint64_t>> curvesOf(const wxListOfCurveDescriptions& list)
{
    std::vector<std::pair<cCurvePlotDataSection*, uint64_t>> curves;
    for (const auto& entry : list.entries()) {
        if (entry.allCurves)
            for (uint64_t i = 0; i < entry.section->getNbOfVariables(); ++i)
                curves.emplace_back(entry.section, i);
        for (unsigned index : entry.curveIndices)
            curves.emplace_back(entry.section, index);
    }
    return curves;
}

}  // namespace

TEST(wxCurveListDataObject, RoundTripThroughTheClipboardInEveryForm)
{
    cStore data;
    cVxStringLogger sink;
    cVxLogger logger;
    logger.setLoggerCallBack(&sink);
    const wxListOfCurveDescriptions list = data.list(logger);
    const auto expected = curvesOf(list);
    ASSERT_EQ(expected.size(), 3u);

    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->setMimeData(new wxCurveListDataObject(list, "4711"));  // the clipboard owns it
    const QMimeData* pasted = clipboard->mimeData();
    ASSERT_NE(pasted, nullptr);
    for (const char* format : {internal_format, xml_format, calculator_format, "text/plain", "text/html"})
        EXPECT_TRUE(pasted->hasFormat(format)) << format;
    EXPECT_FALSE(pasted->hasFormat(xml_spice_format));

    // Our own drag comes back by the internal form, another process's by the XML.
    wxListOfCurveDescriptions read;
    EXPECT_EQ(wxCurveListDataObject::readCurveList(*pasted, data.store, "4711", read, logger), read_internal);
    EXPECT_EQ(curvesOf(read), expected);
    read.clear();
    EXPECT_EQ(wxCurveListDataObject::readCurveList(*pasted, data.store, "99", read, logger), read_xml);
    EXPECT_EQ(curvesOf(read), expected);

    // The calculator's text alone, as the calculator window pastes it.
    const std::string calculator = pasted->data(calculator_format).toStdString();
    EXPECT_EQ(calculator.rfind("waveform(\"tran\", \"v(out)\"), waveform(\"tran\", ", 0), 0u) << calculator;
    QMimeData calculatorOnly;
    calculatorOnly.setData(calculator_format, QByteArray::fromStdString(calculator));
    read.clear();
    EXPECT_EQ(wxCurveListDataObject::readCurveList(calculatorOnly, data.store, "4711", read, logger), read_calculator);
    EXPECT_EQ(curvesOf(read), expected);

    // The Spice variant replaces the outward XML and reads the same.
    wxCurveListDataObject spice(list, "4711", true);
    EXPECT_TRUE(spice.hasFormat(xml_spice_format));
    EXPECT_FALSE(spice.hasFormat(xml_format));
    QMimeData spiceOnly;
    spiceOnly.setData(xml_spice_format, spice.data(xml_spice_format));
    read.clear();
    EXPECT_EQ(wxCurveListDataObject::readCurveList(spiceOnly, data.store, "1", read, logger), read_xml);
    EXPECT_EQ(curvesOf(read), expected);

    // Nothing of ours: a reason, and the list as it was.
    QMimeData foreign;
    foreign.setText("just text");
    foreign.setData(xml_format, "<vx_zelwave_curve_list instance_id=\"1\" >\n<curve section_id=\"999\" "
                                "section=\"gone\" name=\"x\" index=\"0\" unit=\"V\" bus_width=\"1\" />\n"
                                "</vx_zelwave_curve_list>\n");
    sink.clear();
    EXPECT_EQ(wxCurveListDataObject::readCurveList(foreign, data.store, "4711", read, logger), read_nothing);
    EXPECT_EQ(curvesOf(read), expected);
    EXPECT_NE(sink.getBufferAsString().find("The dropped data hold no curves of the open files."), std::string::npos);
}

TEST(wxCurveListDataObject, ValuesAsTextHtmlAndWideText)
{
    cStore data;
    cVxLogger logger;
    wxCurveListDataObject object(data.list(logger), "1");
    const std::string text = object.text().toStdString();
    // One table per section: the x axis and the curves named, the values exact, NaN empty.
    const std::string expected = "time,v(out),\"v(a<b, \"\"µ\"\")\"\n"
                                 "0,0,1\n"
                                 "1e-09,0.5,\n"
                                 "2e-09,1,-2.5e-12\n"
                                 "3e-09,1.5,7\n"
                                 "\n"
                                 "frequency,gain\n"
                                 "1,1\n"
                                 "10,0.25\n";
    EXPECT_EQ(text, expected);

    const std::string html = object.html().toStdString();
    EXPECT_EQ(html.rfind("<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 3.2//EN\">", 0), 0u);
    EXPECT_NE(html.find("<TABLE COLS=3 BORDER=1>"), std::string::npos);
    EXPECT_NE(html.find("<TABLE COLS=2 BORDER=1>"), std::string::npos);
    EXPECT_NE(html.find("<TR><TD>time</TD><TD>v(out)</TD><TD>v(a&lt;b, \"µ\")</TD></TR>"), std::string::npos);
    EXPECT_NE(html.find("<TR><TD>1e-09</TD><TD>0.5</TD><TD></TD></TR>"), std::string::npos);
    EXPECT_NE(html.find("</TABLE>\n</BODY>\n</HTML>"), std::string::npos);

    // Wide text: the same table in UTF-16, the "µ" one code unit.
    const QByteArray wide = object.data(cVxClipboardDataObject::wide_text_format);
    ASSERT_EQ(wide.size() % 2, 0);
    const QString decoded = QString::fromUtf16(reinterpret_cast<const char16_t*>(wide.constData()), wide.size() / 2);
    EXPECT_EQ(decoded.toStdString(), expected);
    EXPECT_EQ(object.getExportStringAsWideString().size(), QString::fromStdString(expected).size());

    // An empty list has no curve list to give, and an empty table.
    wxCurveListDataObject empty(wxListOfCurveDescriptions(), "1");
    EXPECT_FALSE(empty.hasFormat(xml_format));
    EXPECT_TRUE(empty.data(xml_format).isEmpty());
    EXPECT_EQ(empty.text().toStdString(), "");
}
