// What a drag or a copy of curves puts on the clipboard: the curve list for this and other
// windows of the system, the calculator's expression, and the values as a table for other
// programs.
#pragma once

#include <string>

#include "plot/qt/cVxClipboardDataObject.h"
#include "plot/wxListOfCurveDescriptions.h"

namespace vx3 {

class cCurvePlotDataFile;
class cVxLogger;

namespace curveListDataObject {
constexpr const char* internal_format = "harlanTessel/zelWave";
constexpr const char* calculator_format = "harlanTessel/zelWaveCalc";
constexpr const char* xml_format = "harlanTessel/zelWaveXml";
constexpr const char* xml_spice_format = "harlanTessel/zelWaveXmlSpice";

// Which form a drop was read from.
enum read_format : int { read_nothing = -1, read_internal = 0, read_xml = 1, read_calculator = 2 };
}  // namespace curveListDataObject

class wxCurveListDataObject : public cVxClipboardDataObject {
public:
    // instanceId names this process in the curve list, so that a drop can tell its own drags.
    // spice: the list is offered as the Spice variant of the XML (curves of a netlist's nodes).
    wxCurveListDataObject(const wxListOfCurveDescriptions& list, const std::string& instanceId, bool spice = false,
                          char separator = ',');

    const wxListOfCurveDescriptions& getList() const { return mList; }
    // The texts; empty (reason in the logger) when the list can't be written in that form.
    std::string getCurveListString(const cVxLogger& logger) const;
    std::string getCalculatorString(const cVxLogger& logger) const;

    // The values of the curves as a table: per section a header line of the x axis's and the
    // curves' names, then one row per x value; sections apart by an empty line. The values must
    // be loaded (wxListOfCurveDescriptions::loadCurvesFromDb); others give empty cells.
    static std::string generateTableExportString(const wxListOfCurveDescriptions& list, char separator, bool html);
    std::u16string getExportStringAsWideString() const;

    std::vector<std::string> vxDataObjectVirtualGetFormats() const override;
    bool vxDataObjectVirtualGetData(const std::string& format, std::string& data) const override;
    std::string vxDataObjectVirtualGetDataText() const override;
    std::string vxDataObjectVirtualGetDataHtml() const override;
    std::u16string vxDataObjectVirtualGetDataWideText() const override;

    // Reads the curves of a drop or paste into list: the internal form when it comes from this
    // process (instanceId), else the XML (either variant), else the calculator's expression.
    // read_nothing, with the reason in the logger, when no form gives a curve.
    static int readCurveList(const QMimeData& data, cCurvePlotDataFile& store, const std::string& instanceId,
                             wxListOfCurveDescriptions& list, const cVxLogger& logger);

private:
    wxListOfCurveDescriptions mList;
    std::string mInstanceId;
    bool mSpice = false;
    char mSeparator = ',';
};

}  // namespace vx3
