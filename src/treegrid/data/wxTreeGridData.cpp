#include "treegrid/data/wxTreeGridData.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <stdexcept>

#include "expressions/evaluator/cVxWaveformCalculatorInterface.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cCurvePlotDataSection.h"

namespace vx3 {

namespace {

// Shortest text that reads back to the same double: a table shows the data, not a rounding of it.
std::string numberText(double value)
{
    if (std::isnan(value))
        return {};
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

bool isNameStart(char c) { return std::isalpha(static_cast<unsigned char>(c)) || c == '_'; }
bool isNameChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

}  // namespace

wxTreeGridData::wxTreeGridData(cCurvePlotDataFile& store) : mStore(store), mEvaluator(&store) {}

void wxTreeGridData::setLoggerCallBack(cVxLoggerCallBack* callBack)
{
    mLogger.setLoggerCallBack(callBack);
    mEvaluator.setLoggerCallBack(callBack);
}

wxTreeGridSectionData& wxTreeGridData::sectionFor(uint64_t sectionId, const std::string& name)
{
    for (auto& section : mSections)
        if (section.getSectionId() == sectionId)
            return section;
    return mSections.emplace_back(sectionId, name);
}

bool wxTreeGridData::addCurve(cCurvePlotDataSection& section, uint64_t curveIndex)
{
    if (curveIndex >= section.getNbOfVariables())
        throw std::out_of_range("wxTreeGridData::addCurve: no curve " + std::to_string(curveIndex));
    // One row per x value: a section swept over several variables has no single row per point.
    if (section.getNbOfSweepVariables() > 1) {
        mLogger.errorMsg("Incompatible number of sweep curves.");
        return false;
    }
    wxTreeGridDataColumn column;
    column.name = section.getVariable(curveIndex).name();
    column.reference = cVxWaveformCalculatorInterface::generateExpressionForWaveform(section.getSectionId(), curveIndex);
    cWaveformExpression result;
    cPostProcessCurveDescription description;
    waveformExpressionEvaluator::cEvaluator::cCurveCopy copy;
    if (!mEvaluator.evaluateString(column.reference, result) || !mEvaluator.getCurveDescription(result, description) ||
        !mEvaluator.readCurve(description, copy))
        return false;
    column.xs = std::move(copy.xs);
    column.complex = copy.complex;
    if (copy.complex) {
        for (const auto& value : copy.yc) {
            column.ys.push_back(value.real());
            column.imag.push_back(value.imag());
        }
    } else {
        column.ys = std::move(copy.ys);
    }
    if (mColumnMap.empty() && section.getNbOfSweepVariables() == 1)
        mXName = section.getSweepVariable(0).name();
    auto& owner = sectionFor(section.getSectionId(), section.name());
    owner.columns().push_back(std::move(column));
    mColumnMap.push_back({size_t(&owner - mSections.data()), owner.columns().size() - 1});
    rebuildRows();
    return true;
}

bool wxTreeGridData::addSection(cCurvePlotDataSection& section)
{
    bool any = false;
    for (uint64_t i = 0; i < section.getNbOfVariables(); ++i) {
        if (addCurve(section, i))
            any = true;
        else if (section.getNbOfSweepVariables() > 1)
            return false;  // told once, not once per curve
    }
    return any;
}

bool wxTreeGridData::removeCurveColumn(unsigned curveColumn)
{
    if (curveColumn >= mColumnMap.size())
        return false;
    const cColumnRef ref = mColumnMap[curveColumn];
    auto& columns = mSections[ref.section].columns();
    columns.erase(columns.begin() + std::ptrdiff_t(ref.column));
    mColumnMap.erase(mColumnMap.begin() + curveColumn);
    for (auto& other : mColumnMap)
        if (other.section == ref.section && other.column > ref.column)
            --other.column;
    rebuildRows();
    return true;
}

void wxTreeGridData::clear()
{
    mSections.clear();
    mColumnMap.clear();
    mRowXs.clear();
    mXName = "x";
}

const wxTreeGridDataColumn& wxTreeGridData::getCurveColumn(unsigned curveColumn) const
{
    const cColumnRef& ref = mColumnMap.at(curveColumn);
    return mSections[ref.section].columns()[ref.column];
}

const wxTreeGridDataColumn* wxTreeGridData::columnAt(unsigned col) const
{
    if (col > mColumnMap.size()) {
        mLogger.errorMsg("wxTreeGridData: column " + std::to_string(col) + " out of " +
                         std::to_string(mColumnMap.size() + 1));
        throw std::out_of_range("wxTreeGridData: no column " + std::to_string(col));
    }
    return col == 0 ? nullptr : &getCurveColumn(col - 1);
}

// Rows are the union of the x values of the curves from files; calculator columns are sampled on
// them and add none.
void wxTreeGridData::rebuildRows()
{
    std::vector<double> xs;
    for (const auto& section : mSections)
        for (const auto& column : section.columns())
            if (!column.calculated)
                xs.insert(xs.end(), column.xs.begin(), column.xs.end());
    std::sort(xs.begin(), xs.end());
    mRowXs.clear();
    for (double x : xs)
        if (!std::isnan(x) && (mRowXs.empty() || !checkSameRowX(mRowXs.back(), x)))
            mRowXs.push_back(x);
}

bool wxTreeGridData::cellValue(const wxTreeGridDataColumn& column, unsigned row, double& re, double& im) const
{
    const double x = mRowXs.at(row);
    const size_t sample = column.findSample(x);
    if (sample != wxTreeGridDataColumn::npos) {
        re = column.ys[sample];
        im = column.complex ? column.imag[sample] : 0.0;
        return true;
    }
    // Calculator columns were sampled on the rows already; a gap there is outside their range.
    return mInterpolate && !column.calculated && column.interpolate(x, re, im);
}

double wxTreeGridData::getCurveValue(unsigned row, unsigned curveColumn) const
{
    double re = NAN, im = 0;
    return cellValue(getCurveColumn(curveColumn), row, re, im) ? re : NAN;
}

std::string wxTreeGridData::getExcelColumnName(unsigned curveColumn)
{
    std::string name;
    for (unsigned long long n = curveColumn + 1ull; n > 0; n = (n - 1) / 26)
        name.insert(name.begin(), char('A' + (n - 1) % 26));
    return name;
}

bool wxTreeGridData::decodeExcelColumnName(const std::string& name, unsigned& curveColumn)
{
    if (name.empty() || name.size() > 6)
        return false;
    unsigned long long n = 0;
    for (char c : name) {
        if (c < 'A' || c > 'Z')
            return false;
        n = n * 26 + unsigned(c - 'A' + 1);
    }
    curveColumn = unsigned(n - 1);
    return true;
}

std::string wxTreeGridData::replaceExcelColumnNames(const std::string& text) const
{
    std::string out;
    size_t i = 0;
    while (i < text.size()) {
        const char c = text[i];
        if (c == '"') {  // a quoted string goes as it is, escapes included
            size_t end = i + 1;
            while (end < text.size() && text[end] != '"')
                end += text[end] == '\\' ? 2 : 1;
            end = std::min(end + 1, text.size());
            out.append(text, i, end - i);
            i = end;
        } else if (std::isdigit(static_cast<unsigned char>(c)) || (c == '.' && i + 1 < text.size() &&
                                                                     std::isdigit(static_cast<unsigned char>(text[i + 1])))) {
            // A number with its exponent or unit suffix ("1E3", "2.5MEG"): no column in it.
            size_t end = i;
            while (end < text.size() && (isNameChar(text[end]) || text[end] == '.' ||
                                         ((text[end] == '+' || text[end] == '-') && (text[end - 1] == 'e' || text[end - 1] == 'E'))))
                ++end;
            out.append(text, i, end - i);
            i = end;
        } else if (isNameStart(c)) {
            size_t end = i;
            while (end < text.size() && (isNameChar(text[end]) || text[end] == '.'))
                ++end;
            const std::string name = text.substr(i, end - i);
            size_t next = end;
            while (next < text.size() && std::isspace(static_cast<unsigned char>(text[next])))
                ++next;
            const bool called = next < text.size() && text[next] == '(';
            unsigned column = 0;
            if (!called && decodeExcelColumnName(name, column) && column < mColumnMap.size())
                out += getCurveColumn(column).reference;
            else
                out += name;
            i = end;
        } else {
            out += c;
            ++i;
        }
    }
    return out;
}

namespace {

// The evaluator sees the expression with the columns replaced by their calculator texts; its
// messages go on to the user with those texts turned back into the column names typed.
class cTypedNamesLogger : public cVxLoggerCallBack {
public:
    cTypedNamesLogger(cVxLoggerCallBack* target, std::string rewritten, std::string typed)
        : mTarget(target), mRewritten(std::move(rewritten)), mTyped(std::move(typed))
    {
    }
    void addName(const std::string& reference, const std::string& name) { mNames.emplace_back(reference, name); }
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override
    {
        if (!mTarget)
            return;
        std::string message = text;
        replaceAll(message, mRewritten, mTyped);
        // Longest first: a calculator column's text holds the texts of the columns it was made of.
        std::sort(mNames.begin(), mNames.end(),
                  [](const auto& a, const auto& b) { return a.first.size() > b.first.size(); });
        for (const auto& [reference, name] : mNames)
            replaceAll(message, reference, name);
        mTarget->loggerCallBackVirtualLogMessage(severity, message);
    }

private:
    static void replaceAll(std::string& text, const std::string& from, const std::string& to)
    {
        if (from.empty() || from == to)
            return;
        for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
            text.replace(at, from.size(), to);
    }
    cVxLoggerCallBack* mTarget;
    std::string mRewritten, mTyped;
    std::vector<std::pair<std::string, std::string>> mNames;
};

}  // namespace

bool wxTreeGridData::evaluateParsedExpression(const std::string& expression, wxTreeGridDataColumn& column)
{
    const std::string text = replaceExcelColumnNames(expression);
    cTypedNamesLogger typed(mLogger.getLoggerCallBack(), text, expression);
    for (unsigned c = 0; c < mColumnMap.size(); ++c)
        typed.addName(getCurveColumn(c).reference, getExcelColumnName(c));
    struct cRestore {
        cWaveformExpressionEvaluator& evaluator;
        cVxLoggerCallBack* callBack;
        ~cRestore() { evaluator.setLoggerCallBack(callBack); }
    } restore{mEvaluator, mLogger.getLoggerCallBack()};
    mEvaluator.setLoggerCallBack(&typed);
    cWaveformExpression result;
    if (!mEvaluator.evaluateString(text, result))
        return false;
    cPostProcessCurveDescription description;
    if (!mEvaluator.getCurveDescription(result, description)) {
        mLogger.errorMsg("The result of the expression evaluation isn't a curve.");
        return false;
    }
    waveformExpressionEvaluator::cEvaluator::cCurveCopy copy;
    if (!mEvaluator.readCurve(description, copy))
        return false;
    wxTreeGridDataColumn computed;
    computed.name = expression;
    computed.reference = "(" + text + ")";
    computed.calculated = true;
    computed.complex = copy.complex;
    computed.xs = std::move(copy.xs);
    if (copy.complex) {
        for (const auto& value : copy.yc) {
            computed.ys.push_back(value.real());
            computed.imag.push_back(value.imag());
        }
    } else {
        computed.ys = std::move(copy.ys);
    }
    // Sampled on the rows: between its own points by linear interpolation, blank outside them.
    wxTreeGridDataColumn sampled = computed;
    sampled.xs.clear();
    sampled.ys.clear();
    sampled.imag.clear();
    for (double x : mRowXs) {
        double re = 0, im = 0;
        if (!computed.interpolate(x, re, im))
            continue;
        sampled.xs.push_back(x);
        sampled.ys.push_back(re);
        if (computed.complex)
            sampled.imag.push_back(im);
    }
    if (sampled.xs.empty()) {
        mLogger.errorMsg("Incompatible number of sweep curves.");
        return false;
    }
    column = std::move(sampled);
    return true;
}

bool wxTreeGridData::insertCalculatorColumn(const std::string& expression)
{
    wxTreeGridDataColumn column;
    if (!evaluateParsedExpression(expression, column))
        return false;
    auto& owner = sectionFor(0, "Calculator");
    owner.columns().push_back(std::move(column));
    mColumnMap.push_back({size_t(&owner - mSections.data()), owner.columns().size() - 1});
    return true;
}

std::string wxTreeGridData::treeGridVirtualGetColHeaderLabel(unsigned col)
{
    const wxTreeGridDataColumn* column = columnAt(col);
    return column ? getExcelColumnName(col - 1) + ": " + column->name : mXName;
}

std::string wxTreeGridData::cellText(unsigned row, unsigned col) const
{
    const wxTreeGridDataColumn* column = columnAt(col);
    const double x = mRowXs.at(row);
    if (!column)
        return numberText(x);
    double re = 0, im = 0;
    if (!cellValue(*column, row, re, im))
        return {};
    if (!column->complex)
        return numberText(re);
    return numberText(re) + (std::signbit(im) ? "" : "+") + numberText(im) + "j";
}

std::string wxTreeGridData::treeGridVirtualGetValue(unsigned row, unsigned col) { return cellText(row, col); }

double wxTreeGridData::treeGridVirtualGetDoubleValue(unsigned row, unsigned col)
{
    const wxTreeGridDataColumn* column = columnAt(col);
    return column ? getCurveValue(row, col - 1) : mRowXs.at(row);
}

}  // namespace vx3
