#include "readers/tabulated/cCurvePlotTabulatedParserCommon.h"

#include <algorithm>
#include <cmath>

#include "base/cVxString.h"
#include "model/curveValueLookup.h"

namespace vx3 {

using namespace tabulatedParser;
using namespace curvePlotProperties;
using curvePlotDataType::dataUnit;

namespace {

bool startsWithNoCase(const std::string& text, std::string_view prefix)
{
    if (text.size() < prefix.size())
        return false;
    for (size_t i = 0; i < prefix.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(text[i])) != std::tolower(static_cast<unsigned char>(prefix[i])))
            return false;
    return true;
}

// A unit word, possibly with a scale prefix: "mV" -> volt and 1e-3. Words that are units of their
// own ("min", "mol", "m") keep factor 1.
dataUnit parseScaledUnit(const std::string& text, double& factor, std::string& base)
{
    factor = 1.0;
    base = text;
    dataUnit unit = curvePlotDataType::stringToUnit(text);
    if (unit != curvePlotDataType::undefined_unit || text.size() < 2)
        return unit;
    static const std::pair<char, double> prefixes[] = {{'a', 1e-18}, {'f', 1e-15}, {'p', 1e-12}, {'n', 1e-9},
                                                       {'u', 1e-6},  {'m', 1e-3},  {'k', 1e3},   {'K', 1e3},
                                                       {'M', 1e6},   {'G', 1e9},   {'T', 1e12}};
    for (const auto& [prefix, scale] : prefixes) {
        if (text[0] != prefix)
            continue;
        const std::string rest = text.substr(1);
        const dataUnit scaled = curvePlotDataType::stringToUnit(rest);
        if (scaled != curvePlotDataType::undefined_unit && curvePlotDataType::checkUnitCanBeScaled(scaled)) {
            factor = scale;
            base = rest;
            return scaled;
        }
    }
    return curvePlotDataType::undefined_unit;
}

// The text inside a trailing "[...]" or "(...)" that is a unit; the name before it.
bool splitTrailingBracket(const std::string& text, std::string& name, std::string& unit)
{
    const std::string trimmed = vxString::trim(text);
    if (trimmed.empty())
        return false;
    const char close = trimmed.back();
    const char open = close == ']' ? '[' : close == ')' ? '(' : 0;
    if (!open)
        return false;
    const size_t start = trimmed.rfind(open);
    if (start == std::string::npos || start == 0)
        return false;
    const std::string inside = vxString::trim(trimmed.substr(start + 1, trimmed.size() - start - 2));
    // "v(out)" is an access function, not a unit: round brackets need a blank before them or
    // a known unit inside.
    double factor = 1.0;
    std::string base;
    const bool known = parseScaledUnit(inside, factor, base) != curvePlotDataType::undefined_unit;
    if (open == '(' && !(known && trimmed[start - 1] == ' '))
        return false;
    if (inside.empty() || (open == '[' && !known && inside.find_first_of(":,") != std::string::npos))
        return false;  // a bus range "[7:0]" or an index list
    name = vxString::trim(trimmed.substr(0, start));
    unit = inside;
    return !name.empty();
}

}  // namespace

bool cCurvePlotTabulatedParserCommon::checkNameDefinesSweepVariable(const std::string& name)
{
    const std::string lower = vxString::to_lower(vxString::trim(name));
    return lower.rfind("x_", 0) == 0 || lower.rfind("y_", 0) == 0 || lower.rfind("sweep(", 0) == 0;
}

void cCurvePlotTabulatedParserCommon::decomposeColName(const std::string& text, std::string& name, std::string& unit)
{
    name = vxString::trim(text);
    unit.clear();
    std::string bracketName, bracketUnit;
    if (splitTrailingBracket(name, bracketName, bracketUnit)) {
        name = bracketName;
        unit = bracketUnit;
        return;
    }
    const size_t slash = name.rfind('/');
    if (slash != std::string::npos && slash > 0 && slash + 1 < name.size()) {
        const std::string after = vxString::trim(name.substr(slash + 1));
        double factor = 1.0;
        std::string base;
        if (parseScaledUnit(after, factor, base) != curvePlotDataType::undefined_unit) {
            unit = after;
            name = vxString::trim(name.substr(0, slash));
        }
    }
}

dataUnit cCurvePlotTabulatedParserCommon::guessUnitFromCsvVariableName(const std::string& name, double& factor,
                                                                       std::string& unitText)
{
    factor = 1.0;
    unitText.clear();
    std::string plain, unit;
    decomposeColName(name, plain, unit);
    if (!unit.empty()) {
        std::string base;
        const dataUnit found = parseScaledUnit(unit, factor, base);
        unitText = factor != 1.0 ? base : unit;
        return found;
    }
    const dataUnit fromName = curvePlotDataType::guessUnitFromExpressionInBrackets(plain);
    if (fromName != curvePlotDataType::undefined_unit)
        return fromName;
    const std::string lower = vxString::to_lower(plain);
    static const std::pair<const char*, dataUnit> words[] = {
        {"voltage", curvePlotDataType::volt},      {"current", curvePlotDataType::ampere},
        {"frequency", curvePlotDataType::hertz},   {"freq", curvePlotDataType::hertz},
        {"time", curvePlotDataType::second},       {"temp", curvePlotDataType::degree_centigrade},
        {"second", curvePlotDataType::second},     {"pole", curvePlotDataType::pole},
        {"correlation", curvePlotDataType::correlation}, {"notype", curvePlotDataType::no_unit},
        {"index", curvePlotDataType::index},       {"date", curvePlotDataType::date}};
    for (const auto& [word, unitOfWord] : words)
        if (lower.find(word) != std::string::npos)
            return unitOfWord;
    if (lower == "t")
        return curvePlotDataType::second;
    if (lower == "f")
        return curvePlotDataType::hertz;
    return curvePlotDataType::undefined_unit;
}

bool cCurvePlotTabulatedParserCommon::checkNamesDefineRealAndImagPart(const std::string& a, const std::string& b,
                                                                      std::string& common)
{
    if (checkNamesDefineRealAndImagPartOfSameCurve(a, b, common))
        return true;
    // Simulators that write a complex vector as two columns give both the vector's name.
    if (a == b && !a.empty()) {
        common = a;
        return true;
    }
    static const std::pair<const char*, const char*> prefixes[] = {{"vr(", "vi("}, {"ir(", "ii("}};
    for (const auto& [re, im] : prefixes) {
        if (startsWithNoCase(a, re) && startsWithNoCase(b, im) && a.substr(3) == b.substr(3)) {
            common = std::string(1, a[0]) + "(" + a.substr(3);
            return true;
        }
    }
    if (a.size() > 2 && b.size() == a.size() && a.compare(a.size() - 2, 2, " X") == 0 &&
        b.compare(b.size() - 2, 2, " Y") == 0 && a.compare(0, a.size() - 2, b, 0, b.size() - 2) == 0) {
        common = a.substr(0, a.size() - 2);
        return true;
    }
    return false;
}

std::string cCurvePlotTabulatedParserCommon::sectionNameFromFileName(const std::string& fileName)
{
    const size_t slash = fileName.rfind('/');
    return slash == std::string::npos ? fileName : fileName.substr(slash + 1);
}

// ---------------------------------------------------------------- shaping

bool cCurvePlotTabulatedParserCommon::removeIndexColumn(cTable& table)
{
    if (table.sweeps.size() != 1 || table.curves.empty())
        return false;
    cColumn& first = table.sweeps.front();
    const std::string lower = vxString::to_lower(vxString::trim(first.name));
    if (!(lower.empty() || lower == "index") || first.complex || !first.enumStrings.empty())
        return false;
    const uint64_t count = first.values.getVectorSize();
    const double* values = first.values.doubleValues();
    if (count == 0 || !values)
        return false;
    const double offset = values[0];
    if (offset != 0.0 && offset != 1.0)
        return false;
    for (uint64_t i = 0; i < count; ++i)
        if (values[i] != static_cast<double>(i) + offset)
            return false;
    // The next column becomes the x axis when it is real; else the rows are counted.
    table.sweeps.clear();
    if (!table.curves.front().complex && table.curves.front().enumStrings.empty() && table.curves.size() > 1) {
        table.sweeps.push_back(std::move(table.curves.front()));
        table.curves.erase(table.curves.begin());
    } else {
        table.rowCount = count;
    }
    return true;
}

void cCurvePlotTabulatedParserCommon::detectComplexCurves(cTable& table)
{
    std::vector<cColumn> merged;
    for (size_t i = 0; i < table.curves.size(); ++i) {
        std::string common;
        cColumn& real = table.curves[i];
        if (i + 1 < table.curves.size() && !real.complex && real.enumStrings.empty() &&
            table.curves[i + 1].enumStrings.empty() && !table.curves[i + 1].complex &&
            checkNamesDefineRealAndImagPart(real.name, table.curves[i + 1].name, common)) {
            const cColumn& imag = table.curves[i + 1];
            const uint64_t count = std::min(real.values.getVectorSize(), imag.values.getVectorSize());
            cColumn column;
            column.name = common;
            column.unitText = real.unitText;
            column.complex = true;
            if (column.values.setSize(count, sizeof(std::complex<double>))) {
                auto* target = reinterpret_cast<std::complex<double>*>(column.values.data());
                for (uint64_t k = 0; k < count; ++k)
                    target[k] = {real.values.doubleValues()[k], imag.values.doubleValues()[k]};
                column.values.setUsedValueCount(count);
                merged.push_back(std::move(column));
                ++i;
                continue;
            }
        }
        merged.push_back(std::move(real));
    }
    table.curves = std::move(merged);
}

void cCurvePlotTabulatedParserCommon::defineColumnName(cColumn& column, const std::string& header, size_t)
{
    std::string name, unit;
    decomposeColName(header, name, unit);
    column.name = name;
    column.unitText.clear();
    column.scale = 1.0;
    if (!unit.empty()) {
        std::string base;
        parseScaledUnit(unit, column.scale, base);
        column.unitText = column.scale != 1.0 ? base : unit;
    }
}

void cCurvePlotTabulatedParserCommon::makeColumnNamesUnique(cTable& table)
{
    std::vector<std::string> seen;
    size_t position = 0;
    auto unique = [&seen, &position](cColumn& column) {
        ++position;
        if (vxString::trim(column.name).empty())
            column.name = "column_" + std::to_string(position);
        std::string name = column.name;
        for (unsigned n = 1; std::find(seen.begin(), seen.end(), name) != seen.end(); ++n)
            name = column.name + "_" + std::to_string(n);
        column.name = name;
        seen.push_back(name);
    };
    for (cColumn& column : table.sweeps)
        unique(column);
    for (cColumn& column : table.curves)
        unique(column);
}

void cCurvePlotTabulatedParserCommon::shapeTable(cTable& table)
{
    applyUnitFactors(table);
    removeIndexColumn(table);
    detectComplexCurves(table);
    makeColumnNamesUnique(table);
}

void cCurvePlotTabulatedParserCommon::applyUnitFactors(cTable& table)
{
    auto apply = [](cColumn& column) {
        const double factor = column.scale;
        column.scale = 1.0;
        if (factor == 1.0 || !column.enumStrings.empty())
            return;
        const uint64_t count = column.values.getVectorSize() * (column.complex ? 2 : 1);
        double* values = column.values.doubleValues();
        for (uint64_t i = 0; values && i < count; ++i)
            values[i] *= factor;
    };
    for (cColumn& column : table.sweeps)
        apply(column);
    for (cColumn& column : table.curves)
        apply(column);
}

void cCurvePlotTabulatedParserCommon::restrictToXInterval(cTable& table, const cCurvePlotParserOpenFileOptions& options)
{
    if (table.sweeps.size() != 1 || !(options.checkFirstXAxisValueIsDefined() || options.checkLastXAxisValueIsDefined()))
        return;
    const double* x = table.sweeps.front().values.doubleValues();
    const uint64_t count = table.sweeps.front().values.getVectorSize();
    std::vector<uint64_t> kept;
    for (uint64_t i = 0; x && i < count; ++i)
        if (options.checkXIsInRange(x[i]))
            kept.push_back(i);
    if (kept.size() == count)
        return;
    auto compact = [&kept](cColumn& column) {
        const size_t width = column.complex ? 2 : 1;
        double* values = column.values.doubleValues();
        for (uint64_t k = 0; values && k < kept.size(); ++k)
            for (size_t w = 0; w < width; ++w)
                values[k * width + w] = values[kept[k] * width + w];
        column.values.setUsedValueCount(kept.size());
    };
    for (cColumn& column : table.sweeps)
        compact(column);
    for (cColumn& column : table.curves)
        compact(column);
}

// ---------------------------------------------------------------- commit

const cCurvePlotDataType* cCurvePlotTabulatedParserCommon::typeForColumn(const cColumn& column, unsigned dataType)
{
    const auto type = static_cast<data_type>(dataType);
    if (!column.enumStrings.empty())
        return store().addType(column.name, data_enum, curvePlotDataType::no_unit, column.enumStrings);
    double factor = 1.0;
    std::string unitText = column.unitText;
    dataUnit unit = curvePlotDataType::undefined_unit;
    if (unitText.empty())
        unit = guessUnitFromCsvVariableName(column.name, factor, unitText);
    if (!unitText.empty())
        return store().addTypeWithUnitString(unitText, type, unitText);
    return store().addType(std::string(), type, unit);
}

bool cCurvePlotTabulatedParserCommon::commitTable(cTable& table, cFileDbSupport& file)
{
    cCurvePlotDataSection* section = findExistingDataSectionOrCreateNewOne(file, table.sectionName, table.stepIndex);
    if (!section)
        return false;
    const bool matrix = table.sweeps.size() > 1;
    clearReloadFillOrder();
    for (size_t i = 0; i < table.sweeps.size(); ++i) {
        const cColumn& sweep = table.sweeps[i];
        pushSweepVariableToFillOrder(typeForColumn(sweep, sweep.enumStrings.empty() ? data_double : data_enum),
                                     adaptVariableName(sweep.name), static_cast<int>(i));
    }
    for (const cColumn& curve : table.curves) {
        unsigned dataType = curve.complex ? double_complex : data_double;
        if (matrix)
            dataType = curve.complex ? data_double_complex_sweep_matrix : data_double_sweep_matrix;
        pushVariableToFillOrder(typeForColumn(curve, curve.enumStrings.empty() ? dataType : data_enum),
                                adaptVariableName(curve.name));
    }
    std::vector<cCurvePlotVariable*> variables;
    if (!createFillOrderFromReloadFillOrder(false, 0, getFillOrderSize(), variables) ||
        variables.size() != table.sweeps.size() + table.curves.size())
        return false;
    size_t next = 0;
    for (cColumn& sweep : table.sweeps) {
        cCurvePlotVariable& variable = *variables[next++];
        adoptValues(variable, std::move(sweep.values));
        variable.setMonotony(
            curvePlotVariable::computeMonotonyType(variable.doubleValues(), variable.getVectorSize()));
    }
    for (cColumn& curve : table.curves) {
        cCurvePlotVariable& variable = *variables[next];
        adoptValues(variable, std::move(curve.values));
        if (!curve.properties.empty()) {
            cCurvePlotProperties properties;
            for (const auto& property : curve.properties)
                properties.addProperty(property);
            section->setCurveProperties(section->findVariableCheckType(variable.getType(), variable.name()),
                                        properties);
        }
        ++next;
    }
    if (table.sweeps.empty()) {
        const uint64_t count = table.rowCount;
        section->updateOrCreateTrivialArtSweepVariable(store().addType("x", data_double, curvePlotDataType::index),
                                                       count);
        section->getSweepVariable(0).setFlagMustClose(false);
    }
    section->clearStepParameters();
    for (const auto& [name, value] : table.runParameters)
        section->pushBackStepParameter(name, value);
    section->setAnalysisTypeFromSweepVariable();
    return true;
}

bool cCurvePlotTabulatedParserCommon::commitTables(std::vector<cTable>& tables, cFileDbSupport& file)
{
    for (cTable& table : tables)
        if (!commitTable(table, file)) {
            errorMsg("The table \"" + table.sectionName + "\" could not be added.");
            return false;
        }
    return true;
}

}  // namespace vx3
