// One curve of a section, and the sweep (x-axis) variables of a section.
#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/returnCode.h"
#include "model/cCurveDbSupport.h"
#include "model/cCurvePlotData.h"
#include "model/cCurvePlotDataType.h"
#include "model/cDataVectors.h"

namespace vx3 {

class cCurvePlotDataSection;
class cVxLogger;
class cAlgebraicCurve;
class cCurveDbLoader;
struct cCurveLoadRequest;

namespace curvePlotVariable {
enum state : int { normal = 0, must_close = 1, reloaded = 2 };

// Cached extremes and the value index at which each was found.
struct cMinMaxCache {
    double miny = 0, maxy = 0, realMiny = 0, realMaxy = 0, imagMiny = 0, imagMaxy = 0, minx = 0, maxx = 0;
    uint64_t minyIndex = 0, maxyIndex = 0, realMinyIndex = 0, realMaxyIndex = 0;
    uint64_t imagMinyIndex = 0, imagMaxyIndex = 0, minxIndex = 0, maxxIndex = 0;
    bool initialized = false;
};
// Pixels per data unit on each axis, for distances on the screen; logX measures x on log10.
struct cDistanceScale;

// Fields that few curves use, kept out of line: a section may hold millions of curves.
struct cVariableExtras {
    std::vector<std::string> fieldNames;
    std::vector<uint64_t> fieldIndices;
    std::shared_ptr<cAlgebraicCurve> algebraicCurve;
    cMinMaxCache minMax;
};

// An owning pointer that copies its object along, created on first write.
template <typename T>
class cLazyCopy {
public:
    cLazyCopy() = default;
    cLazyCopy(const cLazyCopy& other) : mObject(other.mObject ? std::make_unique<T>(*other.mObject) : nullptr) {}
    cLazyCopy& operator=(const cLazyCopy& other)
    {
        if (this != &other)
            mObject = other.mObject ? std::make_unique<T>(*other.mObject) : nullptr;
        return *this;
    }
    cLazyCopy(cLazyCopy&&) noexcept = default;
    cLazyCopy& operator=(cLazyCopy&&) noexcept = default;

    T& write()
    {
        if (!mObject)
            mObject = std::make_unique<T>();
        return *mObject;
    }
    const T& read() const
    {
        static const T empty{};
        return mObject ? *mObject : empty;
    }
    const T* peek() const { return mObject.get(); }

private:
    std::unique_ptr<T> mObject;
};
}  // namespace curvePlotVariable

class cCurvePlotVariable : public cCurveDbSupport, public cCurvePlotData {
public:
    static constexpr uint64_t npos = std::numeric_limits<uint64_t>::max();

    cCurvePlotVariable() = default;
    cCurvePlotVariable(const cCurvePlotDataType* type, const std::string& name) : mType(type), mName(name) {}

    // Type
    const cCurvePlotDataType* getType() const { return mType; }
    void setType(const cCurvePlotDataType* type) { mType = type; }
    unsigned getDataType() const { return mType ? static_cast<unsigned>(mType->getDataType()) : 0u; }
    unsigned getUnitIdentifier() const { return mType ? static_cast<unsigned>(mType->getUnit()) : 0u; }
    uint64_t getTypeIndex() const { return mType ? mType->getTypeIndex() : 0u; }
    const cCurvePlotDataType* getXAxisType() const { return mXAxisType; }
    void setXAxisType(const cCurvePlotDataType* type) { mXAxisType = type; }
    std::string getVariableKindAsString() const;
    std::string getUnitName() const;
    std::string getUnitStr() const;
    // Unit of the curve's own x vector, or of the section's x-axis sweep variable.
    std::string getXUnitStr(const cCurvePlotDataSection& section) const;

    // Names. Renaming goes through the section, which keeps its lookup index.
    const std::string& name() const { return mName; }
    std::string getStrippedNameCaseSensitive() const { return stripName(mName); }
    std::string getStrippedNameLowerCase() const;
    // Without a trailing "#branch" and the wrapper of an access function: "v(out)" -> "out".
    static std::string stripName(std::string_view name);
    curvePlotDataType::dataUnit guessUnitFromName() const;

    // "name - sweep=value, ... vs x" for a cut; the plain name with fewer than 2 sweeps.
    std::string getCompleteName(const cCurvePlotDataSection& section, const std::vector<uint64_t>& sweepIndices) const;
    std::string getSweepMatrixCutName(const cCurvePlotDataSection& section, const std::vector<uint64_t>& permutation,
                                      const std::vector<uint64_t>& sweepIndices) const;
    // Multi-line tool tip.
    std::string computeFullCurveInfoStr(const cCurvePlotDataSection& section,
                                        const std::vector<uint64_t>& sweepIndices) const;

    // Derivation: a variable computed from another one of the same section.
    void defineDerivation(unsigned conversion, uint64_t sourceIndex, uint64_t secondIndex = npos);
    bool checkIsDerived() const { return mDerivedConversion != 0; }
    unsigned getDerivedConversion() const { return mDerivedConversion; }
    uint64_t getDerivationSourceIndex() const { return mDerivationSource; }
    uint64_t getDerivationSecondIndex() const { return mDerivationSecond; }

    // Structured variables: field names and indices.
    std::vector<std::string>& fieldNames() { return mExtras.write().fieldNames; }
    const std::vector<std::string>& fieldNames() const { return mExtras.read().fieldNames; }
    std::vector<uint64_t>& fieldIndices() { return mExtras.write().fieldIndices; }
    const std::vector<uint64_t>& fieldIndices() const { return mExtras.read().fieldIndices; }

    void defineAlgebraicCurve(std::shared_ptr<cAlgebraicCurve> curve) { mExtras.write().algebraicCurve = std::move(curve); }
    cAlgebraicCurve* getAlgebraicCurve() const { return mExtras.peek() ? mExtras.peek()->algebraicCurve.get() : nullptr; }
    bool checkIsAlgebraicCurve() const { return getAlgebraicCurve() != nullptr; }

    // Values in memory
    bool setDoubleValues(const double* values, uint64_t count);
    bool setDoubleComplexValues(const std::complex<double>* values, uint64_t count);
    bool setParameterizedDoubleValues(const double* xs, const double* ys, uint64_t count);
    bool setParameterizedDoubleComplexValues(const double* xs, const std::complex<double>* ys, uint64_t count);
    // NaN when the index is out of range or the storage isn't a real or complex double vector.
    double getDoubleValue(uint64_t index) const;
    bool computeDataVectors(const cCurvePlotDataSection& section, curvePlotFunctionArgs::cDataVectors& vectors) const;
    // The nearest point of the curve as drawn to (x, y) in data units: the squared distance in
    // pixels (scale gives pixels per unit) and the index of the nearest sample. secondValue takes
    // the imaginary part or angle of a two-valued conversion. False when there is nothing to hit.
    bool computeDistanceToValue(const cCurvePlotDataSection& section, double x, double y,
                                const curvePlotVariable::cDistanceScale& scale, uint64_t& index, double& distance2,
                                bool secondValue = false) const;
    // ---- Reading values (cCurvePlotVariableValues.cpp). The curve's values must be loaded; x
    // comes from the curve itself (parameterized) or the section's x axis. Values pass through
    // the curve's conversion. False when there is nothing to read.
    // The sample whose x is closest to x: its index (also the search's starting point) and x.
    bool findClosestXValue(const cCurvePlotDataSection& section, double x, uint64_t& index, double& closestX) const;
    // The value at x as a cursor reads it: interpolated, the end values outside the range.
    bool findInterpolatedValue(const cCurvePlotDataSection& section, double x, uint64_t& cursor, double& value,
                               bool logX = false, bool secondValue = false) const;
    // The (converted) value of sample index.
    bool findCorresponingValue(const cCurvePlotDataSection& section, uint64_t index, double& value,
                               bool secondValue = false) const;
    // The x nearest to startX at which the curve's line passes through y.
    bool findClosestXValueForGivenY(const cCurvePlotDataSection& section, double y, double startX, double& x) const;
    // The first sample at or past x (atOrAfter), or strictly past it; the count when none.
    uint64_t findApproxXValueIndex(const cCurvePlotDataSection& section, double x, bool atOrAfter) const;
    // x of sample index; NaN when there is none.
    double computeXValue(const cCurvePlotDataSection& section, uint64_t index) const;
    bool getMinXAxisValue(const cCurvePlotDataSection& section, double& x) const;
    bool getMaxXAxisValue(const cCurvePlotDataSection& section, double& x) const;
    // Trapezoids over x; the absolute form cuts a trapezoid at its zero crossing.
    bool computeIntegral(const cCurvePlotDataSection& section, double& integral) const;
    bool computeAbsIntegral(const cCurvePlotDataSection& section, double& integral) const;
    // Samples per unit of x: (count - 1) over the x range.
    double estimateSamplingFrequency(const cCurvePlotDataSection& section) const;
    // Whether the values repeat after period (within tolerance, relative to the value range),
    // checked at every sample that has a sample one period later.
    bool checkIsPeriodic(const cCurvePlotDataSection& section, double period, double tolerance = 1e-9) const;
    // Whether the values in [from, to] all equal the first of them (within tolerance, relative).
    bool checkIsConstantOverPeriod(const cCurvePlotDataSection& section, double from, double to,
                                   double tolerance = 1e-9) const;
    // Whether x is spaced logarithmically (so that a log axis suits it by default).
    bool checkForLogarithmicScale(const cCurvePlotDataSection& section) const;
    // The 64-bit positions of a sparse curve with value vectors; null for other layouts.
    const uint64_t* uint64SparseIndices() const { return getValueVectorWidth() ? valueVectorPositions() : nullptr; }
    // The logic state at x of a digital curve, as text in the given digital display (a vector)
    // or its single character; false where the curve has no value (before its first event).
    bool getDigitalCurveValue(const cCurvePlotDataSection& section, double x, std::string& value,
                              unsigned digitalType = derivedCurveFunction::default_digital) const;

    // ---- Values kept in the file. loadDataFromDb is the only way to load them: nothing
    // happens when they are in memory already, in use, or the curve lives only in memory.
    // A failure is logged once and leaves the curve unloaded; the next call tries again.
    returnCode loadDataFromDb(const cVxLogger& logger, const cCurvePlotDataSection* section, uint64_t curveIndex,
                              bool forSweep = false, unsigned flag = 0);
    // Frees the values if they can be loaded again and nobody uses them; true if freed.
    bool releaseDb();
    // Loads several curves of one section, in one pass over the file where the format allows it.
    static returnCode loadDataFromDbParallel(const cVxLogger& logger, cCurvePlotDataSection& section,
                                             const std::vector<uint64_t>& curveIndices, unsigned threads);
    // Keeps the changes of a parameterized curve only (see cCurvePlotData::removeConstantRuns).
    bool convertParameterizedDataToSparse();
    // The data types that a block loader can fill, and the block prepared for count of them.
    static bool checkDataTypeCanBeLoaded(unsigned dataType);
    bool prepareStorageForLoading(unsigned dataType, uint64_t count);

    const curvePlotVariable::cMinMaxCache& getMinMax() const { return mExtras.read().minMax; }
    // Extremes a reader knows without a pass over the values (a time axis: its ends).
    void setMinMaxValue(double min, double max, uint64_t count)
    {
        curvePlotVariable::cMinMaxCache& cache = mExtras.write().minMax;
        cache.miny = cache.realMiny = cache.minx = min;
        cache.maxy = cache.realMaxy = cache.maxx = max;
        cache.minyIndex = cache.realMinyIndex = cache.minxIndex = 0;
        cache.maxyIndex = cache.realMaxyIndex = cache.maxxIndex = count ? count - 1 : 0;
        cache.imagMiny = cache.imagMaxy = 0.0;
        cache.initialized = true;
    }
    void resetMinMaxInitialized()
    {
        if (mExtras.peek())
            mExtras.write().minMax.initialized = false;
    }
    // From the values in memory; false when there are none of a supported type.
    bool computeMinMaxValues();
    bool getMinMaxYValues(double& min, double& max) const;
    unsigned getMonotony() const { return mMonotony; }
    void setMonotony(unsigned monotony) { mMonotony = monotony; }

    // State
    void setFlagMustClose(bool flag) { mState = flag ? curvePlotVariable::must_close : curvePlotVariable::normal; }
    bool checkMustClose() const { return mState == curvePlotVariable::must_close; }
    void setFlagReloaded() { mState = curvePlotVariable::reloaded; }
    bool checkWasReloaded() const { return mState == curvePlotVariable::reloaded; }
    int getState() const { return mState; }

private:
    friend class cCurvePlotDataSection;
    void setName(const std::string& name) { mName = name; }
    // Steps of loadDataFromDb after the checks: the block, the loader, the result.
    returnCode loadFromOpenFile(const cVxLogger& logger, const cCurvePlotDataSection* section, uint64_t curveIndex,
                                bool forSweep, unsigned flag);
    // Steps after a successful block load; 3 when the plug-in's access or the sparse conversion fails.
    returnCode finishLoad(cCurveDbLoader& loader, cCurveLoadRequest& request, std::string& reason);

    const cCurvePlotDataType* mType = nullptr;
    std::string mName;
    unsigned mDerivedConversion = 0;
    uint64_t mDerivationSource = npos;
    uint64_t mDerivationSecond = npos;
    const cCurvePlotDataType* mXAxisType = nullptr;
    curvePlotVariable::cLazyCopy<curvePlotVariable::cVariableExtras> mExtras;
    unsigned mMonotony = 0;
    int mState = curvePlotVariable::normal;
};

class cCurvePlotSweepVariable : public cCurvePlotVariable {
public:
    cCurvePlotSweepVariable() = default;
    cCurvePlotSweepVariable(const cCurvePlotDataType* type, const std::string& name, int position)
        : cCurvePlotVariable(type, name), mPosition(position) {}

    int getPosition() const { return mPosition; }
    void setPosition(int position) { mPosition = position; }
    bool isIdentical(const cCurvePlotDataType* type, const std::string& name, int position) const
    {
        return getType() == type && this->name() == name && mPosition == position;
    }
    bool isIdentical(const cCurvePlotSweepVariable& other) const
    {
        return isIdentical(other.getType(), other.name(), other.mPosition);
    }

private:
    int mPosition = 0;
};

}  // namespace vx3
