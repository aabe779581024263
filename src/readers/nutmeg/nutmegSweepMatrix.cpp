// Nested sweeps written as one plot: the inner sweep repeats for every value of the outer one.
// The plot becomes a two-dimensional section (outer sweep, then x), whose curves hold every
// cut. Such plots are small (DC and parameter sweeps), so their values are read into memory.
#include <cmath>
#include <complex>

#include "model/curveValueLookup.h"
#include "readers/nutmeg/cCurvePlotParserNutmeg.h"

namespace vx3 {

using namespace curvePlotParserNutmeg;
using namespace curvePlotProperties;

namespace {
// Sweep matrices are looked for in plots up to this many rows: a pass over every column.
constexpr uint64_t kMaxMatrixRows = 1u << 22;
}  // namespace

std::vector<double> cCurvePlotParserNutmeg::readColumn(const char* text, unsigned dbType, const cPlot& plot,
                                                       uint64_t index) const
{
    if (!plot.header.binary)
        return plot.values[index];
    const unsigned layout = layoutOfDbType(dbType);
    const bool big = fileDbSupport::checkIsBigEndian(dbType);
    const bool complex = plot.header.complex;
    const unsigned width = index == 0 ? sweepWidth(layout) : curveWidth(layout);
    const bool pairs = complex && index > 0;
    std::vector<double> values;
    values.reserve(plot.rows * (pairs ? 2 : 1));
    for (uint64_t r = 0; r < plot.rows; ++r) {
        const char* p = text + plot.rowPosition + (plot.firstRow + r) * plot.stride + columnOffset(index, complex, layout);
        values.push_back(readValue(p, width, big));
        if (pairs)
            values.push_back(readValue(p + width, width, big));
    }
    return values;
}

void cCurvePlotParserNutmeg::checkDefinesSweepMatix(const char* text, unsigned dbType, cPlot& plot)
{
    plot.period = 0;
    plot.outerCurve = 0;
    std::string unitText;
    const auto unit = unitFromTypeWord(plot.header.variables.front().unit, unitText);
    const uint64_t rows = plot.header.binary ? plot.rows : plot.values.front().size();
    // Restarts of time and frequency are runs; a single variable has nothing to name the cut.
    if (unit == curvePlotDataType::second || unit == curvePlotDataType::hertz || rows < 4 || rows > kMaxMatrixRows)
        return;
    const std::vector<double> x = readColumn(text, dbType, plot, 0);
    uint64_t period = 0;
    for (uint64_t r = 2; r < rows && !period; ++r)
        if (x[r] == x[0] && x[r - 1] != x[0])
            period = r;
    if (period < 2 || rows % period != 0 || rows / period < 2)
        return;
    for (uint64_t r = period; r < rows; ++r)
        if (x[r] != x[r % period])
            return;
    // The first curve that is constant over each period, and not over all of them.
    for (uint64_t v = 1; v < plot.header.variables.size() && !plot.outerCurve; ++v) {
        if (plot.header.complex)
            break;
        const std::vector<double> values = readColumn(text, dbType, plot, v);
        bool constant = true, varies = false;
        for (uint64_t r = 0; r < rows && constant; ++r) {
            constant = values[r] == values[r - r % period];
            varies = varies || values[r] != values[0];
        }
        if (constant && varies)
            plot.outerCurve = v;
    }
    plot.period = period;
}

bool cCurvePlotParserNutmeg::defineSweepMatrix(cFileDbSupport& file, const char* text, unsigned dbType,
                                               const cPlot& plot, unsigned stepIndex)
{
    const cPlotHeader& header = plot.header;
    cCurvePlotDataSection* section = openSection(file, header, stepIndex);
    if (!section)
        return false;
    const bool complex = header.complex;
    const uint64_t inner = plot.period;
    const uint64_t rows = header.binary ? plot.rows : plot.values.front().size();
    const uint64_t outer = rows / inner;
    clearReloadFillOrder();
    const cTmpVar outerVariable = plot.outerCurve ? header.variables[plot.outerCurve] : cTmpVar{"index", ""};
    pushSweepVariableToFillOrder(typeFor(outerVariable, data_double), adaptVariableName(outerVariable.name), 0);
    pushSweepVariableToFillOrder(typeFor(header.variables.front(), data_double),
                                 adaptVariableName(header.variables.front().name), 1);
    const unsigned matrixType = complex ? data_double_complex_sweep_matrix : data_double_sweep_matrix;
    for (uint64_t v = 1; v < header.variables.size(); ++v)
        pushVariableToFillOrder(typeFor(header.variables[v], matrixType), adaptVariableName(header.variables[v].name));
    std::vector<cCurvePlotVariable*> variables;
    if (!createFillOrderFromReloadFillOrder(false, 0, getFillOrderSize(), variables) ||
        variables.size() != header.variables.size() + 1) {
        errorMsg("spi3 parser : incoherent nb of sweep variables");
        return false;
    }
    // The values live in memory only: they are not where a loader of this file would look.
    auto keep = [&](cCurvePlotVariable& variable) {
        variable.setFlagMustClose(false);
        variable.setFile(&file);
        variable.setLocalDbType(fileDbSupport::cou_19);
        variable.clearDbEntries();
        variable.setDbSize(0);
    };
    const std::vector<double> x = readColumn(text, dbType, plot, 0);
    std::vector<double> outerValues(outer);
    const std::vector<double> named = plot.outerCurve ? readColumn(text, dbType, plot, plot.outerCurve) : std::vector<double>();
    for (uint64_t o = 0; o < outer; ++o)
        outerValues[o] = plot.outerCurve ? named[o * inner] : static_cast<double>(o);
    keep(*variables[0]);
    variables[0]->setDoubleValues(outerValues.data(), outer);
    keep(*variables[1]);
    variables[1]->setDoubleValues(x.data(), inner);
    variables[1]->setMonotony(curvePlotVariable::computeMonotonyType(x.data(), inner));
    // File rows run through x fastest; a cut's values lie outer-count apart in the curve.
    const unsigned parts = complex ? 2 : 1;
    std::vector<double> matrix(rows * parts);
    for (uint64_t v = 1; v < header.variables.size(); ++v) {
        const std::vector<double> values = readColumn(text, dbType, plot, v);
        for (uint64_t o = 0; o < outer; ++o)
            for (uint64_t i = 0; i < inner; ++i)
                for (unsigned p = 0; p < parts; ++p)
                    matrix[(o + i * outer) * parts + p] = values[(o * inner + i) * parts + p];
        cCurvePlotVariable& variable = *variables[v + 1];
        keep(variable);
        if (complex)
            variable.setDoubleComplexValues(reinterpret_cast<const std::complex<double>*>(matrix.data()), rows);
        else
            variable.setDoubleValues(matrix.data(), rows);
    }
    section->setAnalysisTypeFromSweepVariable();
    return true;
}

}  // namespace vx3
