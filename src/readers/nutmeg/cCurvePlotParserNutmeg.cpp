#include "readers/nutmeg/cCurvePlotParserNutmeg.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>

#include "base/cVxString.h"
#include "model/cCurveDbLoader.h"
#include "model/curveValueLookup.h"
#include "readers/cStridedBinaryDbLoader.h"
#include "readers/nutmeg/nutmegBinaryLayout.h"
#include "readers/scan/cBusErrorGuard.h"
#include "readers/scan/cVxMemoryFile.h"

namespace vx3 {

using namespace curvePlotParserNutmeg;
using namespace curvePlotProperties;
using curvePlotDataType::dataUnit;

namespace {

// Runs are looked for in binary plots up to this size: it takes a pass over the sweep column,
// which for larger files would cost the opening its independence of the file's size.
constexpr uint64_t kMaxRunScanBytes = 256u << 20;

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v'; }

// The binary rows of a plot as the layout functions see them.
curvePlotParserNutmeg::cBinaryBlock binaryBlockOf(const char* text, uint64_t size,
                                                  const curvePlotParserNutmeg::cPlot& plot)
{
    curvePlotParserNutmeg::cBinaryBlock block;
    block.data = text;
    block.size = size;
    block.position = plot.header.dataPosition;
    block.nbOfVariables = plot.header.variables.size();
    block.complex = plot.header.complex;
    block.headerPoints = plot.header.nbOfPoints;
    return block;
}

void skipBlanks(const char* text, uint64_t size, uint64_t& position)
{
    while (position < size && isBlank(text[position]))
        ++position;
}

}  // namespace

// ---------------------------------------------------------------- loaders and units

void cCurvePlotParserNutmeg::registerLoaders()
{
    for (unsigned type = fileDbSupport::nutmeg_binary_7; type <= fileDbSupport::nutmeg_binary_12; ++type)
        if (!curveDbLoaders::findLoader(type))
            curveDbLoaders::registerLoader(type,
                                           std::make_shared<cStridedBinaryDbLoader>(fileDbSupport::checkIsBigEndian(type)));
}

dataUnit cCurvePlotParserNutmeg::unitFromTypeWord(const std::string& word, std::string& unitText)
{
    using namespace curvePlotDataType;
    unitText.clear();
    const std::string lower = vxString::to_lower(word);
    if (lower.empty() || lower == "notype" || lower == "unknown")
        return undefined_unit;
    if (lower == "voltage" || lower == "v")
        return volt;
    if (lower == "current" || lower == "a")
        return ampere;
    if (lower == "logic")
        return logic_state;
    if (lower == "hz" || lower == "frequency")
        return hertz;
    if (lower == "s" || lower == "time")
        return second;
    if (lower == "volt/rthz" || lower == "noise")
        return noise;
    if (lower == "temp" || lower == "temperature")
        return degree_centigrade;
    unitText = word;  // "correlation", "pole" and the like keep their word
    return undefined_unit;
}

const cCurvePlotDataType* cCurvePlotParserNutmeg::typeFor(const cTmpVar& variable, unsigned dataType)
{
    std::string unitText;
    dataUnit unit = unitFromTypeWord(variable.unit, unitText);
    if (!unitText.empty())
        return store().addTypeWithUnitString(unitText, static_cast<data_type>(dataType), unitText);
    if (unit == curvePlotDataType::undefined_unit) {
        cCurvePlotVariable probe(nullptr, variable.name);
        unit = probe.guessUnitFromName();
    }
    return store().addType(std::string(), static_cast<data_type>(dataType), unit);
}

void cCurvePlotParserNutmeg::reportInconsistentEntries()
{
    ++mInconsistentMessages;
    if (mInconsistentMessages == 1)
        warnMsg("Nutmeg Parser : skipping inconsistent entries.");
    else if (mInconsistentMessages == 2)
        warnMsg("Nutmeg Parser : skipping inconsistent entries (this message will be supressed).");
}

// ---------------------------------------------------------------- binary

unsigned cCurvePlotParserNutmeg::chooseBinaryDbType(bool isReload, const cPlot& plot, const char* text, uint64_t size)
{
    // A file whose start was understood stays understood: the layout of the old sections holds.
    if (isReload && dbSupport() && checkEndiannessIsOk(dbSupport()->getDbType())) {
        const bool big = checkReloadSectionsAreBigEndian();
        unsigned layout = layoutOfDbType(dbSupport()->getDbType());
        if (!getReloadSections().empty() && getReloadSections().front()->getNbOfVariables() > 0) {
            const bool dbl = checkReloadSectionsHaveDoublePrecision();
            const bool dblSweep = checkReloadSectionsHaveDoubleSweepPrecision();
            layout = dbl ? layout_double : dblSweep ? layout_single_double_sweep : layout_single;
        }
        return dbTypeOf(layout, big);
    }
    cBinaryBlock block = binaryBlockOf(text, size, plot);
    unsigned allowed = 7;
    if (plot.header.singlePrecision)
        allowed = (1u << layout_single) | (1u << layout_single_double_sweep);
    else if (plot.header.doublePrecisionStated)
        allowed = 1u << layout_double;
    return estimateEndianness(block, allowed);
}

void cCurvePlotParserNutmeg::readBinaryPlot(const char* text, uint64_t size, unsigned dbType, cPlot& plot)
{
    const unsigned layout = layoutOfDbType(dbType);
    const bool big = fileDbSupport::checkIsBigEndian(dbType);
    cBinaryBlock block = binaryBlockOf(text, size, plot);
    plot.rowPosition = block.position;
    plot.stride = computeStride(block.nbOfVariables, block.complex, layout);
    bool fewer = false;
    const uint64_t rows = countRows(block, plot.stride, fewer);
    plot.end = block.position + rows * plot.stride;
    // Bytes after the last whole row that start no plot: a row cut off, or a simulator writing.
    if (fewer || (plot.end < size && !checkIsHeader(text, size, plot.end)))
        plot.complete = false;
    plot.firstRow = 0;
    plot.rows = rows;
    const cCurvePlotParserOpenFileOptions& open = options().openFileOptions();
    if (open.checkFirstXAxisValueIsDefined() || open.checkLastXAxisValueIsDefined()) {
        uint64_t first = 0, count = rows;
        if (restrictBinaryToInterval(block, layout, big, plot.stride, rows, open.getFirstXAxisValue(),
                                     open.getLastXAxisValue(), first, count)) {
            plot.firstRow = first;
            plot.rows = count;
        } else {
            warnMsg("Nutmeg Parser : failed to restict data to interval.");
        }
    }
}

void cCurvePlotParserNutmeg::findRuns(const char* text, unsigned dbType, cPlot& plot)
{
    plot.runs.clear();
    const cTmpVar& sweep = plot.header.variables.front();
    std::string unitText;
    const dataUnit unit = unitFromTypeWord(sweep.unit, unitText);
    const cCurvePlotParserOpenFileOptions& open = options().openFileOptions();
    const bool restricted = open.checkFirstXAxisValueIsDefined() || open.checkLastXAxisValueIsDefined();
    const bool binary = plot.header.binary;
    const uint64_t rows = binary ? plot.rows : (plot.values.empty() ? 0 : plot.values.front().size());
    const bool candidate = (unit == curvePlotDataType::second || unit == curvePlotDataType::hertz) && !restricted &&
                           rows > 1 && (!binary || rows * plot.stride <= kMaxRunScanBytes);
    if (candidate) {
        const unsigned layout = layoutOfDbType(dbType);
        const bool big = fileDbSupport::checkIsBigEndian(dbType);
        auto x = [&](uint64_t row) {
            if (!binary)
                return plot.values.front()[row];
            return readValue(text + plot.rowPosition + (plot.firstRow + row) * plot.stride, sweepWidth(layout), big);
        };
        // A run ends where x falls back below its previous value.
        uint64_t start = 0;
        double previous = x(0);
        for (uint64_t r = 1; r < rows; ++r) {
            const double value = x(r);
            if (value < previous) {
                plot.runs.push_back({start, r - start});
                start = r;
            }
            previous = value;
        }
        plot.runs.push_back({start, rows - start});
    }
    if (plot.runs.size() < 2)
        plot.runs.assign(1, {0, rows});
}

// ---------------------------------------------------------------- the store

void cCurvePlotParserNutmeg::setSectionProperties(cCurvePlotDataSection& section, const cPlotHeader& header)
{
    if (!header.title.empty())
        section.addProperty(cProperty::makeText(user_defined, header.title, "Title"));
    if (!header.flags.empty())
        section.addProperty(cProperty::makeText(user_defined, header.flags, "Flags"));
    for (const auto& [key, value] : header.properties) {
        if (vxString::to_lower(key) == "temperature") {
            double temperature = 0;
            if (cVxString(value).toDouble(temperature))
                section.addProperty(cProperty::makeDouble(temperature, temperature));
            else
                section.addProperty(cProperty::makeText(temperature, value));
            continue;
        }
        section.addProperty(cProperty::makeText(user_defined, value, key));
    }
}

cCurvePlotDataSection* cCurvePlotParserNutmeg::openSection(cFileDbSupport& file, const cPlotHeader& header,
                                                           unsigned stepIndex)
{
    const std::string name = header.plotName.empty() ? std::string("Plot") : header.plotName;
    cCurvePlotDataSection* section = findExistingDataSectionOrCreateNewOne(file, name, stepIndex);
    if (!section)
        return nullptr;
    section->setAnalysisType(name);
    setSectionProperties(*section, header);
    return section;
}

bool cCurvePlotParserNutmeg::commitPlot(cFileDbSupport& file, unsigned dbType, const cPlot& plot, const cRun& run,
                                        unsigned stepIndex)
{
    const cPlotHeader& header = plot.header;
    cCurvePlotDataSection* section = openSection(file, header, stepIndex);
    if (!section)
        return false;
    const bool binary = header.binary;
    const unsigned layout = layoutOfDbType(dbType);
    const bool complex = header.complex;
    clearReloadFillOrder();
    const cTmpVar& sweep = header.variables.front();
    const unsigned sweepType = binary && layout == layout_single ? data_float : data_double;
    pushSweepVariableToFillOrder(typeFor(sweep, sweepType), adaptVariableName(sweep.name), 0);
    unsigned curveType = complex ? double_complex : data_double;
    if (binary && layout != layout_double)
        curveType = complex ? float_complex : data_float;
    for (uint64_t v = 1; v < header.variables.size(); ++v)
        pushVariableToFillOrder(typeFor(header.variables[v], curveType), adaptVariableName(header.variables[v].name));
    std::vector<cCurvePlotVariable*> variables;
    if (!createFillOrderFromReloadFillOrder(false, 0, getFillOrderSize(), variables) ||
        variables.size() != header.variables.size()) {
        errorMsg("spi3 parser : incoherent nb of variables");
        return false;
    }
    for (uint64_t v = 0; v < variables.size(); ++v) {
        cCurvePlotVariable& variable = *variables[v];
        variable.setFlagMustClose(false);
        if (binary) {
            const uint64_t first = plot.firstRow + run.firstRow;
            const uint64_t oldSize = variable.getDbSize();
            variable.setFile(&file);
            variable.setDbStride(plot.stride);
            variable.clearDbEntries();
            variable.addDbEntry(plot.rowPosition + first * plot.stride + columnOffset(v, complex, layout), run.rows);
            variable.setDbSize(run.rows);
            // Values loaded before the file grew are read again: now if in use, else on demand.
            if (oldSize != run.rows && variable.getReferenceCount() == 0 && !variable.checkNeedsLoading())
                variable.releaseDb();
            if (!variable.checkHasStorage())
                variable.setNeedsLoading(true);
            continue;
        }
        const std::vector<double>& values = plot.values[v];
        if (v > 0 && complex) {
            variable.setDoubleComplexValues(reinterpret_cast<const std::complex<double>*>(values.data()) + run.firstRow,
                                            run.rows);
        } else {
            variable.setDoubleValues(values.data() + run.firstRow, run.rows);
        }
        variable.setNeedsLoading(false);
        if (v == 0)
            variable.setMonotony(curvePlotVariable::computeMonotonyType(values.data() + run.firstRow, run.rows));
    }
    section->setAnalysisTypeFromSweepVariable();
    if (binary && checkIsReload())
        section->reloadReferencedCurvesFromDb(options().logger());
    return true;
}

// ---------------------------------------------------------------- the file

returnCode cCurvePlotParserNutmeg::parseFileImpl(bool isReload, const std::string& name)
{
    registerLoaders();
    mInconsistentMessages = 0;
    cVxMemoryFile mapped;
    if (!mapped.openFile(name))
        return failed;
    // Headers, runs and the store are built on this thread straight from the mapping: a fault in
    // it reads zeros instead of jumping over their destructors, and the result is thrown away.
    busErrorGuard::cInPlaceReadScope scope(mapped.checkIsMapped() ? mapped.data() : nullptr, mapped.size());
    const returnCode code = parseMapped(isReload, name, mapped.data(), mapped.size());
    if (!scope.checkWasCut())
        return code;
    errorMsg("Nutmeg Parser : the file \"" + name + "\" was cut while it was read.");
    return file_format_recognized;
}

returnCode cCurvePlotParserNutmeg::parseMapped(bool isReload, const std::string& name, const char* text, uint64_t size)
{
    if (!checkIsHeader(text, size, 0))
        return failed;  // not a raw file: the next reader may know it
    std::vector<cPlot> plots;
    unsigned dbType = 0;
    bool partial = false;
    uint64_t position = 0;
    while (true) {
        cPlot plot;
        const header_result result = parseHeader(text, size, position, plot.header);
        if (result == header_none) {
            skipBlanks(text, size, position);
            if (position < size && !plots.empty()) {
                reportInconsistentEntries();
                partial = true;
            }
            break;
        }
        if (result != header_ok) {
            if (result == header_bad_count)
                errorMsg("spi3 parser : incoherent nb of variables");
            partial = true;
            break;
        }
        if (plot.header.binary) {
            if (dbType == fileDbSupport::nutmeg_ascii_5) {
                errorMsg("spi3 parser : text and binary formats mixed up");
                partial = true;
                break;
            }
            if (dbType == 0)
                dbType = chooseBinaryDbType(isReload, plot, text, size);
            if (dbType == 0) {
                errorMsg("Nutmeg Parser : the binary values fit none of the known layouts.");
                partial = true;
                break;
            }
            readBinaryPlot(text, size, dbType, plot);
        } else {
            if (dbType != 0 && dbType != fileDbSupport::nutmeg_ascii_5) {
                errorMsg("spi3 parser : text and binary formats mixed up");
                partial = true;
                break;
            }
            dbType = fileDbSupport::nutmeg_ascii_5;
            parseAsciiValues(text, size, plot);
            if (checkIsInterrupted())
                return action_interrupted;
        }
        findRuns(text, dbType, plot);
        if (plot.runs.size() == 1)
            checkDefinesSweepMatix(text, dbType, plot);
        const bool complete = plot.complete;
        position = plot.end;
        plots.push_back(std::move(plot));
        if (!complete) {
            partial = true;
            break;
        }
    }
    // A plot that broke off before its first row has nothing to show.
    if (!plots.empty() && !plots.back().complete && plots.back().runs.front().rows == 0)
        plots.pop_back();
    if (plots.empty()) {
        errorMsg("Nutmeg Parser failed.");
        return file_format_recognized;
    }
    // Plots whose name and variables repeat are runs of one analysis.
    std::map<std::string, unsigned> occurrences, seen;
    auto keyOf = [](const cPlot& plot) {
        std::string key = plot.header.plotName;
        for (const cTmpVar& variable : plot.header.variables)
            key += '\n' + variable.name;
        return key;
    };
    for (const cPlot& plot : plots)
        occurrences[keyOf(plot)] += static_cast<unsigned>(plot.runs.size());
    cFileDbSupport& file = initDbSupport(name, dbType);
    file.initDbSupport(dbType);
    for (const cPlot& plot : plots) {
        const std::string key = keyOf(plot);
        for (const cRun& run : plot.runs) {
            const unsigned step = occurrences[key] > 1 ? ++seen[key] : 0;
            const bool committed = plot.period ? defineSweepMatrix(file, text, dbType, plot, step)
                                               : commitPlot(file, dbType, plot, run, step);
            if (!committed)
                return plots.size() > 1 ? partly_parsed : file_format_recognized;
        }
    }
    return partial ? partly_parsed : ok;
}

returnCode cCurvePlotParserNutmeg::parseFile(const std::string& name)
{
    try {
        return parseFileImpl(false, name);
    } catch (const std::exception&) {
        errorMsg("Nutmeg Parser : exception caught.");
        return file_format_recognized;
    }
}

returnCode cCurvePlotParserNutmeg::reloadFile(const std::string& name, const std::vector<cCurvePlotDataSection*>& sections)
{
    setReloadSections(sections);
    try {
        return parseFileImpl(true, name);
    } catch (const std::exception&) {
        errorMsg("Nutmeg Parser : exception caught.");
        return file_format_recognized;
    }
}

returnCode cCurvePlotParserNutmeg::detectFileType(const std::string& name, cCurvePlotParserOpenFileOptions&)
{
    cVxMemoryFile mapped;
    if (!mapped.openFile(name))
        return failed;
    busErrorGuard::cInPlaceReadScope scope(mapped.checkIsMapped() ? mapped.data() : nullptr, mapped.size());
    cPlotHeader header;
    const bool found = parseHeader(mapped.data(), mapped.size(), 0, header) == header_ok;
    return found && !scope.checkWasCut() ? ok : failed;
}

}  // namespace vx3
