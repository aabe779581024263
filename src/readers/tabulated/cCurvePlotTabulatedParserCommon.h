// What the table readers (fast and slow CSV, HTML, TecPlot) share: the rules for column names
// and units, and the one way a finished table enters the store. A table is read whole into
// cTable blocks first and committed at the end, so that a failure leaves the store untouched
// and a reload finds its sections and curves again by name.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "model/dataUnit.h"
#include "readers/cCurveParserIntermediate.h"

namespace vx3 {

namespace tabulatedParser {

// One column of a table on its way to the store.
struct cColumn {
    std::string name;
    std::string unitText;   // as the file spelled it (brackets or a unit row); "" lets the name decide
    double scale = 1.0;     // a scaled unit ("mV"): values times scale are in unitText
    cCurvePlotData values;  // flat doubles, or complex doubles when complex
    bool complex = false;
    std::vector<std::string> enumStrings;  // not empty: an enumeration; values are its levels
    std::vector<curvePlotProperties::cProperty> properties;
};

// One section: the sweeps (outermost first, the last one is the x axis) and the curves over
// them. Curves of a section with several sweeps hold the values of every cut, x running slowest
// (the store's cut layout).
struct cTable {
    std::string sectionName;
    unsigned stepIndex = 0;
    std::vector<std::pair<std::string, double>> runParameters;
    std::vector<cColumn> sweeps;
    std::vector<cColumn> curves;
    // Rows when there is no sweep column: the x axis then counts them.
    uint64_t rowCount = 0;
};

}  // namespace tabulatedParser

class cCurvePlotTabulatedParserCommon : public cCurveParserIntermediate {
public:
    using cCurveParserIntermediate::cCurveParserIntermediate;

    // ---- Names
    // True for the names that mark a column as a sweep of a matrix ("x_...", "y_...", "sweep(").
    static bool checkNameDefinesSweepVariable(const std::string& name);
    // The unit a column name implies: a unit in brackets ("time [s]", "v (mV)"), behind "/", or
    // from words such as "voltage", "time", "frequency". A scaled unit ("[mV]") gives the factor
    // by which the values are multiplied to reach the base unit, and unitText the base unit.
    static curvePlotDataType::dataUnit guessUnitFromCsvVariableName(const std::string& name, double& factor,
                                                                    std::string& unitText);
    // "time [s]" -> "time", "s"; "U/V" -> "U", "V" (only for a known unit behind the slash).
    static void decomposeColName(const std::string& text, std::string& name, std::string& unit);
    // Real and imaginary part of one curve, with the markers of table files ("vr(", "vi(",
    // "ir(", "ii(", " X" and " Y") beyond the general ones; the same name twice is a complex
    // vector written as two columns.
    static bool checkNamesDefineRealAndImagPart(const std::string& a, const std::string& b, std::string& common);
    // Name and unit of a column from its header text. An empty name stays empty until
    // makeColumnNamesUnique gives it "column_<position>" (an unnamed index column goes first).
    static void defineColumnName(tabulatedParser::cColumn& column, const std::string& header, size_t number);
    // The section name of a file: its name without the folder.
    static std::string sectionNameFromFileName(const std::string& fileName);

    // ---- Shaping a table before it is committed
    // A leading column named "index" (or unnamed) whose values count the rows goes.
    static bool removeIndexColumn(tabulatedParser::cTable& table);
    // Neighbouring real and imaginary columns become one complex curve.
    static void detectComplexCurves(tabulatedParser::cTable& table);
    // Values of columns whose unit is scaled ("[mV]") are brought to the base unit.
    // Names that occur twice get "_1", "_2", ...; empty ones "column_<position>".
    static void applyUnitFactors(tabulatedParser::cTable& table);
    static void makeColumnNamesUnique(tabulatedParser::cTable& table);
    // Rows whose x lies outside the interval of the open dialog go (tables with one sweep).
    static void restrictToXInterval(tabulatedParser::cTable& table, const cCurvePlotParserOpenFileOptions& options);
    // All of the above, in the order that makes sense.
    static void shapeTable(tabulatedParser::cTable& table);

    // ---- Into the store: sections found again or created in the file entry, the curves pushed
    // through the fill order, the values moved in. Returns false (with a message) when the
    // store refuses.
    bool commitTables(std::vector<tabulatedParser::cTable>& tables, cFileDbSupport& file);

protected:
    const cCurvePlotDataType* typeForColumn(const tabulatedParser::cColumn& column, unsigned dataType);
    bool commitTable(tabulatedParser::cTable& table, cFileDbSupport& file);
};

}  // namespace vx3
