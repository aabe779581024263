#include "model/cCurvePlotVariable.h"

#include <cmath>

#include "base/cVxString.h"
#include "model/cCurvePlotDataSection.h"

namespace vx3 {

using namespace curvePlotProperties;

std::string cCurvePlotVariable::getVariableKindAsString() const { return dataTypeToString(getDataType()); }

std::string cCurvePlotVariable::getUnitName() const { return mType ? mType->getUnitName() : std::string(); }

std::string cCurvePlotVariable::getUnitStr() const { return mType ? mType->getUnitStr() : std::string(); }

std::string cCurvePlotVariable::getXUnitStr(const cCurvePlotDataSection& section) const
{
    if (mXAxisType)
        return mXAxisType->getUnitStr();
    const uint64_t sweeps = section.getNbOfSweepVariables();
    return sweeps ? section.getSweepVariable(sweeps - 1).getUnitStr() : std::string();
}

namespace {
bool isAccessFunction(std::string_view function)
{
    return function.size() == 1 && (function[0] == 'v' || function[0] == 'V' || function[0] == 'i' ||
                                     function[0] == 'I');
}

// "v(out)" -> "out" when the bracket that opens after the function closes at the end.
bool removeAccessFunction(std::string& name)
{
    const size_t open = name.find('(');
    if (open == std::string::npos || name.size() < open + 3 || name.back() != ')' ||
        !isAccessFunction(std::string_view(name).substr(0, open)))
        return false;
    int depth = 0;
    for (size_t i = open; i + 1 < name.size(); ++i) {
        if (name[i] == '(')
            ++depth;
        else if (name[i] == ')' && --depth == 0)
            return false;
    }
    name = name.substr(open + 1, name.size() - open - 2);
    return true;
}

bool removeBranch(std::string& name)
{
    static const std::string branch = "#branch";
    if (name.size() > branch.size() && name.compare(name.size() - branch.size(), branch.size(), branch) == 0) {
        name.erase(name.size() - branch.size());
        return true;
    }
    return false;
}
}  // namespace

std::string cCurvePlotVariable::stripName(std::string_view name)
{
    std::string result(name);
    // "i(v1#branch)" carries both.
    const bool function = removeAccessFunction(result);
    const bool branch = removeBranch(result);
    if (branch && !function)
        removeAccessFunction(result);
    return result;
}

std::string cCurvePlotVariable::getStrippedNameLowerCase() const { return vxString::to_lower(stripName(mName)); }

curvePlotDataType::dataUnit cCurvePlotVariable::guessUnitFromName() const
{
    return curvePlotDataType::guessUnitFromVariableName(mName);
}

std::string cCurvePlotVariable::getSweepMatrixCutName(const cCurvePlotDataSection& section,
                                                      const std::vector<uint64_t>& permutation,
                                                      const std::vector<uint64_t>& sweepIndices) const
{
    const uint64_t n = section.getNbOfSweepVariables();
    if (n < 2 || permutation.size() != n || sweepIndices.size() != n)
        return mName;
    std::string text = mName + " - ";
    for (uint64_t k = 0; k + 1 < n; ++k) {
        const uint64_t sweep = permutation[k];
        if (sweep >= n)
            return mName;
        if (k)
            text += ", ";
        text += section.getSweepVariable(sweep).name() + "=" +
                cVxString::createFromNumber(section.getSweepValue(sweep, sweepIndices[sweep]));
    }
    if (permutation[n - 1] >= n)
        return mName;
    return text + " vs " + section.getSweepVariable(permutation[n - 1]).name();
}

std::string cCurvePlotVariable::getCompleteName(const cCurvePlotDataSection& section,
                                                const std::vector<uint64_t>& sweepIndices) const
{
    std::vector<uint64_t> permutation;
    section.getDefaultSweepPermutationArray(permutation);
    return getSweepMatrixCutName(section, permutation, sweepIndices);
}

std::string cCurvePlotVariable::computeFullCurveInfoStr(const cCurvePlotDataSection& section,
                                                        const std::vector<uint64_t>& sweepIndices) const
{
    std::string text = "Variable : " + mName;
    const std::string unit = getUnitStr();
    if (!unit.empty())
        text += " [" + unit + "]";
    const uint64_t n = section.getNbOfSweepVariables();
    if (mXAxisType || n) {
        text += "\nPlotted vs : ";
        text += mXAxisType ? mXAxisType->name() : section.getSweepVariable(n - 1).name();
        const std::string xUnit = getXUnitStr(section);
        if (!xUnit.empty())
            text += " [" + xUnit + "]";
    }
    text += "\nSection : " + section.completeName();
    for (const curvePlotProperties::cProperty& parameter : section.getStepParameters().parameters) {
        text += "\nRun Parameter : " + parameter.getName() + " = " + parameter.getValueAsString();
        if (parameter.hasUnit())
            text += " [" + parameter.getUnit() + "]";
    }
    if (n >= 2 && sweepIndices.size() == n)
        for (uint64_t k = 0; k + 1 < n; ++k)
            text += "\nSweep Parameter : " + section.getSweepVariable(k).name() + " = " +
                    cVxString::createFromNumber(section.getSweepValue(k, sweepIndices[k]));
    return text;
}

void cCurvePlotVariable::defineDerivation(unsigned conversion, uint64_t sourceIndex, uint64_t secondIndex)
{
    mDerivedConversion = conversion;
    mDerivationSource = sourceIndex;
    mDerivationSecond = secondIndex;
}

// ---------------------------------------------------------------- values

bool cCurvePlotVariable::setDoubleValues(const double* values, uint64_t count)
{
    resetMinMaxInitialized();
    setNeedsLoading(false);
    return assignValues(values, count, sizeof(double));
}

bool cCurvePlotVariable::setDoubleComplexValues(const std::complex<double>* values, uint64_t count)
{
    resetMinMaxInitialized();
    setNeedsLoading(false);
    return assignValues(values, count, sizeof(std::complex<double>));
}

bool cCurvePlotVariable::setParameterizedDoubleValues(const double* xs, const double* ys, uint64_t count)
{
    resetMinMaxInitialized();
    setNeedsLoading(false);
    return assignParameterizedValues(xs, ys, count);
}

bool cCurvePlotVariable::setParameterizedDoubleComplexValues(const double* xs, const std::complex<double>* ys,
                                                              uint64_t count)
{
    resetMinMaxInitialized();
    setNeedsLoading(false);
    return assignParameterizedValues(xs, ys, count);
}

bool cCurvePlotVariable::computeMinMaxValues()
{
    curvePlotFunctionArgs::cDataVectors vectors;
    // The section only matters for x; an empty one suffices for y.
    static const cCurvePlotDataSection noSection(nullptr, std::string(), 0);
    if (!computeDataVectors(noSection, vectors) || !vectors.count)
        return false;
    curvePlotVariable::cMinMaxCache cache;
    auto scan = [](auto&& valueAt, uint64_t count, double& min, double& max, uint64_t& minIndex, uint64_t& maxIndex) {
        min = INFINITY;
        max = -INFINITY;
        for (uint64_t i = 0; i < count; ++i) {
            const double value = valueAt(i);
            if (value < min) {
                min = value;
                minIndex = i;
            }
            if (value > max) {
                max = value;
                maxIndex = i;
            }
        }
    };
    const uint64_t count = vectors.count;
    if (vectors.yDouble || vectors.yFloat) {
        if (vectors.yDouble) {
            const double* ys = vectors.yDouble;
            scan([ys](uint64_t i) { return ys[i]; }, count, cache.realMiny, cache.realMaxy, cache.realMinyIndex,
                 cache.realMaxyIndex);
        } else {
            const float* ys = vectors.yFloat;
            scan([ys](uint64_t i) { return static_cast<double>(ys[i]); }, count, cache.realMiny, cache.realMaxy,
                 cache.realMinyIndex, cache.realMaxyIndex);
        }
        cache.imagMiny = cache.imagMaxy = 0.0;
    } else {
        const std::complex<double>* yd = vectors.yDoubleComplex;
        const std::complex<float>* yf = vectors.yFloatComplex;
        auto part = [yd, yf](uint64_t i, bool imaginary) {
            const std::complex<double> v = yd ? yd[i] : std::complex<double>(yf[i].real(), yf[i].imag());
            return imaginary ? v.imag() : v.real();
        };
        scan([&part](uint64_t i) { return part(i, false); }, count, cache.realMiny, cache.realMaxy,
             cache.realMinyIndex, cache.realMaxyIndex);
        scan([&part](uint64_t i) { return part(i, true); }, count, cache.imagMiny, cache.imagMaxy,
             cache.imagMinyIndex, cache.imagMaxyIndex);
    }
    cache.miny = cache.realMiny;
    cache.maxy = cache.realMaxy;
    cache.minyIndex = cache.realMinyIndex;
    cache.maxyIndex = cache.realMaxyIndex;
    if (vectors.xDouble) {
        const double* xs = vectors.xDouble;
        scan([xs](uint64_t i) { return xs[i]; }, count, cache.minx, cache.maxx, cache.minxIndex, cache.maxxIndex);
    } else if (vectors.xFloat) {
        const float* xs = vectors.xFloat;
        scan([xs](uint64_t i) { return static_cast<double>(xs[i]); }, count, cache.minx, cache.maxx, cache.minxIndex,
             cache.maxxIndex);
    } else if (vectors.xUint64) {
        const uint64_t* xs = vectors.xUint64;
        scan([xs](uint64_t i) { return static_cast<double>(xs[i]); }, count, cache.minx, cache.maxx, cache.minxIndex,
             cache.maxxIndex);
    }
    cache.initialized = true;
    mExtras.write().minMax = cache;
    return true;
}

bool cCurvePlotVariable::getMinMaxYValues(double& min, double& max) const
{
    const curvePlotVariable::cMinMaxCache& cache = getMinMax();
    if (!cache.initialized)
        return false;
    min = cache.miny;
    max = cache.maxy;
    return true;
}

}  // namespace vx3
