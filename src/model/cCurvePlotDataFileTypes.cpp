// The shared curve types of the store.
#include "base/cVxString.h"
#include "model/cCurvePlotDataFile.h"

namespace vx3 {

using namespace curvePlotProperties;
using curvePlotDataType::dataUnit;

const cCurvePlotDataType* cCurvePlotDataFile::internType(std::unique_ptr<cCurvePlotDataType> type)
{
    cVxScopedLock lock(mMutex);
    const auto range = mTypesByName.equal_range(type->mName);
    for (auto it = range.first; it != range.second; ++it)
        if (cCurvePlotDataType::checkTypesAreIdentical(*it->second, *type))
            return it->second;
    type->mTypeIndex = mTypes.size();
    const cCurvePlotDataType* result = type.get();
    mTypes.push_back(std::move(type));
    mTypeIndex.push_back(result);
    mTypesByName.emplace(result->mName, result);
    return result;
}

const cCurvePlotDataType* cCurvePlotDataFile::addType()
{
    return addType(std::string(), data_double, curvePlotDataType::second);
}

const cCurvePlotDataType* cCurvePlotDataFile::addType(const std::string& name, bool complex, bool singlePrecision,
                                                      dataUnit unit)
{
    const data_type type = complex ? (singlePrecision ? float_complex : double_complex)
                                   : (singlePrecision ? data_float : data_double);
    return addType(name, type, unit);
}

const cCurvePlotDataType* cCurvePlotDataFile::addType(const std::string& name, data_type dataType, dataUnit unit)
{
    std::unique_ptr<cCurvePlotDataType> type(new cCurvePlotDataType);
    type->mName = name;
    type->mDataType = dataType;
    type->mUnit = unit;
    return internType(std::move(type));
}

const cCurvePlotDataType* cCurvePlotDataFile::addType(const std::string& name, data_type dataType, dataUnit unit,
                                                      uint64_t constantStringSize)
{
    std::unique_ptr<cCurvePlotDataType> type(new cCurvePlotDataType);
    type->mName = name;
    type->mDataType = dataType;
    type->mUnit = unit;
    type->mConstantStringSize = constantStringSize;
    return internType(std::move(type));
}

const cCurvePlotDataType* cCurvePlotDataFile::addType(const std::string& name, data_type dataType, dataUnit unit,
                                                      const std::vector<std::string>& enumStrings)
{
    std::unique_ptr<cCurvePlotDataType> type(new cCurvePlotDataType);
    type->mName = name;
    type->mDataType = dataType;
    type->mUnit = unit;
    type->mStrings = enumStrings;
    return internType(std::move(type));
}

const cCurvePlotDataType* cCurvePlotDataFile::addTypeWithUnitString(const std::string& name, data_type dataType,
                                                                    const std::string& unitText)
{
    std::unique_ptr<cCurvePlotDataType> type(new cCurvePlotDataType);
    type->mName = name;
    type->mDataType = dataType;
    type->mUnit = curvePlotDataType::stringToUnit(unitText);
    if (type->mUnit == curvePlotDataType::undefined_unit && !unitText.empty()) {
        type->mUnitString = unitText;
        std::vector<cVxString> parts;
        cVxString(unitText).splitString(parts, '/');
        type->mUnitStringParts.assign(parts.begin(), parts.end());
    }
    return internType(std::move(type));
}

const cCurvePlotDataType* cCurvePlotDataFile::addConstantStringType(const std::string& name, uint64_t size)
{
    return addType(name, data_string, curvePlotDataType::no_unit, size);
}

const cCurvePlotDataType* cCurvePlotDataFile::addStructMemberType(
    const std::string& name, const std::vector<const cCurvePlotDataType*>& members,
    const std::vector<std::string>& fieldNames)
{
    std::unique_ptr<cCurvePlotDataType> type(new cCurvePlotDataType);
    type->mName = name;
    type->mDataType = data_struct;
    type->mUnit = curvePlotDataType::no_unit;
    type->mSubTypes = members;
    type->mStrings = fieldNames;
    return internType(std::move(type));
}

namespace {
data_type singlePrecisionOf(data_type type)
{
    switch (type) {
    case data_double: return data_float;
    case double_complex: return float_complex;
    case double_wire_real: return float_wire_real;
    case data_double_sweep_matrix: return data_float_sweep_matrix;
    case data_double_complex_sweep_matrix: return data_float_complex_sweep_matrix;
    case parameterized_double: return parameterized_float;
    case parameterized_double_complex: return parameterized_float_complex;
    case double_vector: return float_vector;
    default: return type;
    }
}

data_type complexOf(data_type type)
{
    switch (type) {
    case data_float: return float_complex;
    case data_double: return double_complex;
    case data_float_sweep_matrix: return data_float_complex_sweep_matrix;
    case data_double_sweep_matrix: return data_double_complex_sweep_matrix;
    case parameterized_float: return parameterized_float_complex;
    case parameterized_double: return parameterized_double_complex;
    case double_algebraic: return double_complex_algebraic;
    default: return type;
    }
}
}  // namespace

const cCurvePlotDataType* cCurvePlotDataFile::addSinglePrecisionType(const cCurvePlotDataType* type)
{
    if (!type)
        return nullptr;
    std::unique_ptr<cCurvePlotDataType> copy(new cCurvePlotDataType(*type));
    copy->mDataType = singlePrecisionOf(type->mDataType);
    return internType(std::move(copy));
}

const cCurvePlotDataType* cCurvePlotDataFile::addComplexType(const cCurvePlotDataType* type)
{
    if (!type)
        return nullptr;
    std::unique_ptr<cCurvePlotDataType> copy(new cCurvePlotDataType(*type));
    copy->mDataType = complexOf(type->mDataType);
    return internType(std::move(copy));
}

const cCurvePlotDataType* cCurvePlotDataFile::addRealType(const cCurvePlotDataType* type)
{
    if (!type)
        return nullptr;
    std::unique_ptr<cCurvePlotDataType> copy(new cCurvePlotDataType(*type));
    copy->mDataType = getCorrespondingRealDataType(type->mDataType);
    return internType(std::move(copy));
}

const cCurvePlotDataType* cCurvePlotDataFile::getTypeFromTypeIndex(uint64_t index) const
{
    cVxScopedLock lock(mMutex);
    return index < mTypeIndex.size() ? mTypeIndex[index] : nullptr;
}

}  // namespace vx3
