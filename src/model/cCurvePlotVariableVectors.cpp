// Handing out a curve's loaded values as typed vectors: the one place that knows which data type
// is stored in which layout, so that lookups, plots and exports never guess from byte sizes.
#include <cmath>

#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"

namespace vx3 {

using namespace curvePlotProperties;

namespace {
enum class cPart { none, f64, f32, c64, c32, u64 };

struct cForm {
    cPart x;  // none: a flat vector, x from the section
    cPart y;
};

cForm formOf(unsigned dataType)
{
    switch (dataType) {
    // An enumeration stores the index (or the level) of each value as a double.
    case data_double: case data_double_sweep_matrix: case double_wire_real: case data_enum:
        return {cPart::none, cPart::f64};
    case data_float: case data_float_sweep_matrix: case float_wire_real: return {cPart::none, cPart::f32};
    case double_complex: case data_double_complex_sweep_matrix: case double_smith_chart:
        return {cPart::none, cPart::c64};
    case float_complex: case data_float_complex_sweep_matrix: return {cPart::none, cPart::c32};
    case parameterized_double: case parameterized_double_wire_real: return {cPart::f64, cPart::f64};
    case parameterized_float: return {cPart::f32, cPart::f32};
    case parameterized_double_complex: return {cPart::f64, cPart::c64};
    case parameterized_float_complex: return {cPart::f32, cPart::c32};
    case double_parameterized_float: return {cPart::f64, cPart::f32};
    case uint64_parameterized_double: return {cPart::u64, cPart::f64};
    default: return {cPart::none, cPart::none};
    }
}

uint64_t bytesOf(cPart part)
{
    switch (part) {
    case cPart::f64: case cPart::u64: case cPart::c32: return 8;
    case cPart::f32: return 4;
    case cPart::c64: return 16;
    default: return 0;
    }
}

void assignY(curvePlotFunctionArgs::cDataVectors& vectors, cPart part, const char* data)
{
    switch (part) {
    case cPart::f64: vectors.yDouble = reinterpret_cast<const double*>(data); break;
    case cPart::f32: vectors.yFloat = reinterpret_cast<const float*>(data); break;
    case cPart::c64: vectors.yDoubleComplex = reinterpret_cast<const std::complex<double>*>(data); break;
    case cPart::c32: vectors.yFloatComplex = reinterpret_cast<const std::complex<float>*>(data); break;
    default: break;
    }
}

// Values set in memory without a type of their own (tests, scratch curves) are doubles.
cForm formOfStorage(const cCurvePlotData& data, unsigned dataType)
{
    const cForm form = formOf(dataType);
    if (form.y != cPart::none || dataType != unclear)
        return form;
    if (data.checkIsParameterizedLayout())
        return data.getParameterizedXSize() == 8 && data.getParameterizedYSize() == 8 ? cForm{cPart::f64, cPart::f64}
                                                                                      : cForm{cPart::none, cPart::none};
    return data.getElementSize() == 8 ? cForm{cPart::none, cPart::f64}
           : data.getElementSize() == 16 ? cForm{cPart::none, cPart::c64}
                                         : cForm{cPart::none, cPart::none};
}
}  // namespace

double cCurvePlotVariable::getDoubleValue(uint64_t index) const
{
    curvePlotFunctionArgs::cDataVectors vectors;
    static const cCurvePlotDataSection noSection(nullptr, std::string(), 0);
    if (!computeDataVectors(noSection, vectors) || index >= vectors.count)
        return NAN;
    if (vectors.yDouble)
        return vectors.yDouble[index];
    if (vectors.yFloat)
        return vectors.yFloat[index];
    if (vectors.yDoubleComplex)
        return vectors.yDoubleComplex[index].real();
    return vectors.yFloatComplex[index].real();
}

bool cCurvePlotVariable::computeDataVectors(const cCurvePlotDataSection& section,
                                            curvePlotFunctionArgs::cDataVectors& vectors) const
{
    vectors = curvePlotFunctionArgs::cDataVectors();
    vectors.yType = getDataType();
    vectors.monotony = mMonotony;
    if (!checkHasStorage())
        return false;
    const cForm form = formOfStorage(*this, getDataType());
    if (form.y == cPart::none)
        return false;
    vectors.count = getVectorSize();
    if (form.x != cPart::none) {
        // The layout must be the one the type promises, or the halves would be misread.
        if (!checkIsParameterizedLayout() || getParameterizedXSize() != bytesOf(form.x) ||
            getParameterizedYSize() != bytesOf(form.y))
            return false;
        vectors.xType = form.x == cPart::f32 ? data_float : form.x == cPart::u64 ? uint_64 : data_double;
        const char* xs = parameterizedXData();
        if (form.x == cPart::f64)
            vectors.xDouble = reinterpret_cast<const double*>(xs);
        else if (form.x == cPart::f32)
            vectors.xFloat = reinterpret_cast<const float*>(xs);
        else
            vectors.xUint64 = reinterpret_cast<const uint64_t*>(xs);
        assignY(vectors, form.y, parameterizedYData());
        return true;
    }
    if (checkIsParameterizedLayout() || getElementSize() != bytesOf(form.y))
        return false;
    assignY(vectors, form.y, data());
    // Flat curves take x from the section's x-axis sweep variable.
    const uint64_t sweeps = section.getNbOfSweepVariables();
    if (sweeps) {
        const cCurvePlotSweepVariable& sweep = section.getSweepVariable(sweeps - 1);
        vectors.xType = sweep.getDataType();
        vectors.monotony = sweep.getMonotony();
        // Only an x vector of the same length pairs up; a sweep matrix is cut first.
        if (sweep.checkHasStorage() && !sweep.checkIsParameterizedLayout() && sweep.getVectorSize() == vectors.count) {
            const cForm sweepForm = formOfStorage(sweep, sweep.getDataType());
            if (sweepForm.x == cPart::none && sweepForm.y == cPart::f64 && sweep.getElementSize() == 8)
                vectors.xDouble = sweep.doubleValues();
            else if (sweepForm.x == cPart::none && sweepForm.y == cPart::f32 && sweep.getElementSize() == 4)
                vectors.xFloat = sweep.floatValues();
        }
    }
    return true;
}

}  // namespace vx3
