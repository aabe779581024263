#include "plot/qt/wxCurveListDataObject.h"

#include <QStringDecoder>
#include <cmath>
#include <cstdio>

#include "base/cVxLogger.h"
#include "base/cVxString.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cCurvePlotDataSection.h"

namespace vx3 {

using namespace curveListDataObject;

namespace {

std::string number(double value)
{
    if (std::isnan(value))
        return std::string();  // undefined values leave the cell empty
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.15g", value);
    return buffer;
}


// A cell of a text table: quoted when it holds the separator, a quote or a line end.
std::string textCell(const std::string& text, char separator)
{
    if (text.find_first_of(std::string(1, separator) + "\"\r\n") == std::string::npos)
        return text;
    std::string out = "\"";
    for (char c : text) {
        if (c == '"')
            out += '"';
        out += c;
    }
    return out + "\"";
}

void appendRow(std::string& out, const std::vector<std::string>& cells, char separator, bool html)
{
    if (html) {
        out += "<TR>";
        for (const std::string& cell : cells)
            out += "<TD>" + vxString::escape_markup(cell, false) + "</TD>";
        out += "</TR>\n";
        return;
    }
    for (size_t i = 0; i < cells.size(); ++i)
        out += (i ? std::string(1, separator) : std::string()) + textCell(cells[i], separator);
    out += "\n";
}

}  // namespace

wxCurveListDataObject::wxCurveListDataObject(const wxListOfCurveDescriptions& list, const std::string& instanceId,
                                             bool spice, char separator)
    : mList(list), mInstanceId(instanceId), mSpice(spice), mSeparator(separator)
{
}

std::string wxCurveListDataObject::getCurveListString(const cVxLogger& logger) const
{
    std::string text;
    if (!mList.createDndCurveListString(listOfCurveDescriptions::curve_list_xml, text, mInstanceId, logger))
        text.clear();
    return text;
}

std::string wxCurveListDataObject::getCalculatorString(const cVxLogger& logger) const
{
    std::string text;
    if (!mList.createDndCurveListString(listOfCurveDescriptions::calculator_expression, text, mInstanceId, logger))
        text.clear();
    return text;
}

std::string wxCurveListDataObject::generateTableExportString(const wxListOfCurveDescriptions& list, char separator,
                                                             bool html)
{
    std::string out;
    if (html)
        out += "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 3.2//EN\">\n<HTML>\n<BODY>\n";
    bool first = true;
    for (const auto& entry : list.entries()) {
        if (!entry.section || entry.section->getNbOfSweepVariables() == 0)
            continue;
        const cCurvePlotDataSection& section = *entry.section;
        std::vector<uint64_t> indices;
        if (entry.allCurves)
            for (uint64_t i = 0; i < section.getNbOfVariables(); ++i)
                indices.push_back(i);
        else
            for (unsigned index : entry.curveIndices)
                if (index < section.getNbOfVariables())
                    indices.push_back(index);
        if (indices.empty())
            continue;
        const cCurvePlotSweepVariable& sweep = section.getSweepVariable(section.getNbOfSweepVariables() - 1);
        std::vector<std::string> header{sweep.name()};
        for (uint64_t index : indices)
            header.push_back(section.getVariable(index).name());
        if (html) {
            out += "<TABLE COLS=" + std::to_string(header.size()) + " BORDER=1>\n<TBODY>\n";
        } else if (!first) {
            out += "\n";
        }
        first = false;
        appendRow(out, header, separator, html);
        const uint64_t count = sweep.getVectorSize();
        for (uint64_t row = 0; row < count; ++row) {
            std::vector<std::string> cells{number(sweep.getDoubleValue(row))};
            for (uint64_t index : indices) {
                double value = NAN;
                if (!section.getVariable(index).findCorresponingValue(section, row, value))
                    value = NAN;
                cells.push_back(number(value));
            }
            appendRow(out, cells, separator, html);
        }
        if (html)
            out += "</TBODY>\n</TABLE>\n";
    }
    if (html)
        out += "</BODY>\n</HTML>\n";
    return out;
}

std::u16string wxCurveListDataObject::getExportStringAsWideString() const
{
    return QString::fromStdString(generateTableExportString(mList, mSeparator, false)).toStdU16String();
}

std::vector<std::string> wxCurveListDataObject::vxDataObjectVirtualGetFormats() const
{
    // An empty list is no curve list: a drop of it would do nothing.
    if (mList.empty())
        return {};
    return {internal_format, mSpice ? xml_spice_format : xml_format, calculator_format};
}

bool wxCurveListDataObject::vxDataObjectVirtualGetData(const std::string& format, std::string& data) const
{
    cVxLogger quiet;
    if (format == internal_format || format == xml_format || format == xml_spice_format)
        data = getCurveListString(quiet);
    else if (format == calculator_format)
        data = getCalculatorString(quiet);
    else
        return false;
    return !data.empty();
}

std::string wxCurveListDataObject::vxDataObjectVirtualGetDataText() const
{
    return generateTableExportString(mList, mSeparator, false);
}

std::string wxCurveListDataObject::vxDataObjectVirtualGetDataHtml() const
{
    return generateTableExportString(mList, mSeparator, true);
}

std::u16string wxCurveListDataObject::vxDataObjectVirtualGetDataWideText() const
{
    return getExportStringAsWideString();
}

int wxCurveListDataObject::readCurveList(const QMimeData& data, cCurvePlotDataFile& store,
                                         const std::string& instanceId, wxListOfCurveDescriptions& list,
                                         const cVxLogger& logger)
{
    // The reasons of the forms tried are kept quiet until none of them worked.
    cVxLogger quiet;
    auto readXml = [&](const char* format, bool ownOnly) {
        if (!data.hasFormat(format))
            return false;
        const std::string text = data.data(format).toStdString();
        wxListOfCurveDescriptions read;
        std::string sender;
        if (!read.readDndCurveListString(text, store, sender, quiet) || read.empty())
            return false;
        if (ownOnly && sender != instanceId)
            return false;
        list = std::move(read);
        return true;
    };
    if (readXml(internal_format, true))
        return read_internal;
    if (readXml(xml_format, false) || readXml(xml_spice_format, false))
        return read_xml;
    if (data.hasFormat(calculator_format)) {
        wxListOfCurveDescriptions read;
        if (read.readCalculatorString(data.data(calculator_format).toStdString(), store, quiet) && !read.empty()) {
            list = std::move(read);
            return read_calculator;
        }
    }
    logger.errorMsg("The dropped data hold no curves of the open files.");
    return read_nothing;
}

}  // namespace vx3
