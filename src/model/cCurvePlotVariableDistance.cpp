// The distance from a screen point to a curve as drawn, for every storage form of its values:
// real and complex vectors through computeDataVectors, event values and logic states read
// straight from their records.
#include <algorithm>
#include <cstring>

#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"
#include "model/curveValueDistance.h"

namespace vx3 {

using namespace curvePlotProperties;
using curvePlotFunctionArgs::cDataVectors;
using curvePlotVariable::cDistanceScale;

namespace {

struct cQuery {
    double x, y;
    const cDistanceScale& scale;
    uint64_t& index;
    double& distance2;
};

template <typename X>
bool analogDistance(const X* xs, const cDataVectors& vectors, const cDerivedCurveFunction& conversion,
                    bool secondValue, const cQuery& q)
{
    auto measure = [&](const auto* ys) {
        return curvePlotVariable::computeDistanceToValue(q.x, q.y, xs, ys, vectors.count, vectors.monotony, q.scale,
                                                         conversion, q.index, q.distance2, secondValue,
                                                         vectors.xStride, vectors.yStride);
    };
    if (vectors.yDouble)
        return measure(vectors.yDouble);
    if (vectors.yFloat)
        return measure(vectors.yFloat);
    if (vectors.yDoubleComplex)
        return measure(vectors.yDoubleComplex);
    return measure(vectors.yFloatComplex);
}

bool analogDistance(const cDataVectors& vectors, const cDerivedCurveFunction& conversion, bool secondValue,
                    const cQuery& q)
{
    if (vectors.xDouble)
        return analogDistance(vectors.xDouble, vectors, conversion, secondValue, q);
    if (vectors.xFloat)
        return analogDistance(vectors.xFloat, vectors, conversion, secondValue, q);
    if (vectors.xUint64)
        return analogDistance(vectors.xUint64, vectors, conversion, secondValue, q);
    if (vectors.xUint32)
        return analogDistance(vectors.xUint32, vectors, conversion, secondValue, q);
    // Without an x vector nothing places the samples on the axis.
    return curvePlotVariable::detail::noHit(q.distance2);
}

// Records may sit at any byte offset: 12-byte records misalign every other one.
template <typename T>
T readAt(const char* bytes)
{
    T value;
    std::memcpy(&value, bytes, sizeof(T));
    return value;
}

double levelOf(const char* bits, uint64_t width)
{
    // One character or a vector alike: the leftmost significant bit, zero padding skipped.
    return cDerivedCurveFunction::convertSparseLogicVectorToDouble(bits, width);
}

// Interleaved records of a position of type P and a double value, drawn as steps.
template <typename P>
bool sparseRecordDistance(const cCurvePlotData& data, long double timeScale, const cQuery& q)
{
    const uint64_t size = data.getElementSize();
    if (size < sizeof(P) + sizeof(double))
        return curvePlotVariable::detail::noHit(q.distance2);
    const char* base = data.data();
    return curvePlotVariable::computeDistanceToValueSparse(
        q.x, q.y, data.getVectorSize(),
        [=](uint64_t i) { return curvePlotVariable::positionToX(readAt<P>(base + i * size), timeScale); },
        [&](uint64_t i) { return data.applyConversion(readAt<double>(base + i * size + sizeof(P))); }, q.scale,
        q.index, q.distance2);
}

// Interleaved records of a position of type P and the logic characters.
template <typename P>
bool logicRecordDistance(const cCurvePlotData& data, long double timeScale, const cQuery& q)
{
    const uint64_t size = data.getElementSize();
    if (size <= sizeof(P))
        return curvePlotVariable::detail::noHit(q.distance2);
    const char* base = data.data();
    return curvePlotVariable::computeDistanceToValueLogic(
        q.x, q.y, data.getVectorSize(),
        [=](uint64_t i) { return curvePlotVariable::positionToX(readAt<P>(base + i * size), timeScale); },
        [=](uint64_t i) { return levelOf(base + i * size + sizeof(P), size - sizeof(P)); }, q.scale, q.index,
        q.distance2);
}

// 64-bit positions first, then the vectors.
bool logicVectorDistance(const cCurvePlotData& data, long double timeScale, const cQuery& q)
{
    const uint64_t width = data.getValueVectorWidth();
    if (!width)
        return curvePlotVariable::detail::noHit(q.distance2);
    const uint64_t* positions = data.valueVectorPositions();
    const char* vectors = data.valueVectorData();
    return curvePlotVariable::computeDistanceToValueLogic(
        q.x, q.y, data.getVectorSize(),
        [=](uint64_t i) { return curvePlotVariable::positionToX(positions[i], timeScale); },
        [=](uint64_t i) { return levelOf(vectors + i * width, width); }, q.scale, q.index, q.distance2);
}

// Double x values, then the states of each, ySize bytes apiece.
bool parameterizedLogicDistance(const cCurvePlotData& data, const cQuery& q)
{
    const uint64_t width = data.getParameterizedYSize();
    if (!data.checkIsParameterizedLayout() || data.getParameterizedXSize() != sizeof(double) || !width)
        return curvePlotVariable::detail::noHit(q.distance2);
    const double* xs = reinterpret_cast<const double*>(data.parameterizedXData());
    const char* states = data.parameterizedYData();
    return curvePlotVariable::computeDistanceToValueLogic(
        q.x, q.y, data.getVectorSize(), [=](uint64_t i) { return xs[i]; },
        [=](uint64_t i) { return levelOf(states + i * width, width); }, q.scale, q.index, q.distance2);
}

// One state byte per point of the section's x vector.
bool flatLogicDistance(const cCurvePlotData& data, const cCurvePlotDataSection& section, const cQuery& q)
{
    uint64_t xCount = 0;
    const double* xs = section.getXAxisDoubleValues(xCount);
    if (!xs || data.checkIsParameterizedLayout() || data.getElementSize() != 1)
        return curvePlotVariable::detail::noHit(q.distance2);
    const char* states = data.data();
    return curvePlotVariable::computeDistanceToValueLogic(
        q.x, q.y, std::min(data.getVectorSize(), xCount), [=](uint64_t i) { return xs[i]; },
        [=](uint64_t i) { return levelOf(states + i, 1); }, q.scale, q.index, q.distance2);
}

}  // namespace

bool cCurvePlotVariable::computeDistanceToValue(const cCurvePlotDataSection& section, double x, double y,
                                                const cDistanceScale& scale, uint64_t& index, double& distance2,
                                                bool secondValue) const
{
    const cQuery query{x, y, scale, index, distance2};
    cDataVectors vectors;
    if (computeDataVectors(section, vectors))
        return analogDistance(vectors, *this, secondValue, query);
    if (!checkHasStorage())
        return curvePlotVariable::detail::noHit(distance2);
    const long double timeScale = vectors.timeScaleFactor;
    switch (getDataType()) {
    case interleaved_sparse_double_64b_index: return sparseRecordDistance<uint64_t>(*this, timeScale, query);
    case interleaved_sparse_double_32b_index: return sparseRecordDistance<uint32_t>(*this, timeScale, query);
    case interleaved_sparse_logic: case interleaved_sparse_logic_vector: case interleaved_sparse_logic_with_strength:
    case interleaved_sparse_4_state_logic_vector:
        return logicRecordDistance<uint64_t>(*this, timeScale, query);
    case interleaved_sparse_4_state_logic_vector_32b_index:
        return logicRecordDistance<uint32_t>(*this, timeScale, query);
    case sparse_logic_vector_2_state: case sparse_logic_vector_4_state: case sparse_logic_vector_256_state:
        return logicVectorDistance(*this, timeScale, query);
    case nine_level_logic: return flatLogicDistance(*this, section, query);
    case parameterized_9_level_logic:
    case double_parameterized_uint8: case data_double_parameterized_logic_2_state:
    case data_double_parameterized_logic_4_state: case data_double_parameterized_logic_256_state:
        return parameterizedLogicDistance(*this, query);
    default: return curvePlotVariable::detail::noHit(distance2);
    }
}

}  // namespace vx3
