// A curve type: name, storage kind, unit and sub-structure. Shared by all curves of that kind
// and interned by the store, so that curves compare types by pointer.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/dataType.h"
#include "model/dataUnit.h"

namespace vx3 {

class cCurvePlotDataFile;

class cCurvePlotDataType {
public:
    uint64_t getTypeIndex() const { return mTypeIndex; }
    const std::string& name() const { return mName; }
    curvePlotProperties::data_type getDataType() const { return mDataType; }
    curvePlotDataType::dataUnit getUnit() const { return mUnit; }
    // The unit as the file spelled it, for units outside the known vocabulary; else "".
    const std::string& getUnitString() const { return mUnitString; }
    const std::vector<std::string>& getUnitStringParts() const { return mUnitStringParts; }
    const std::vector<std::string>& getStrings() const { return mStrings; }
    const std::vector<const cCurvePlotDataType*>& getSubTypes() const { return mSubTypes; }
    uint64_t getConstantStringSize() const { return mConstantStringSize; }

    // Axis label text: the unit's short text, the unit string, or the type's name.
    std::string getUnitStr() const;
    std::string getUnitName() const;
    unsigned size() const { return curvePlotProperties::size(mDataType); }
    bool checkIsComplex() const { return curvePlotProperties::checkIsComplexDataType(mDataType); }
    bool checkIsParameterized() const { return curvePlotProperties::checkIsParameterizedDataType(mDataType); }
    bool checkIsDigital() const { return curvePlotProperties::checkCurveIsDigital(mDataType); }
    bool checkIsEnum() const { return mDataType == curvePlotProperties::data_enum; }

    void getLabelAndScaleFactor(double min, double max, std::string& label, double& factor) const;
    void getLabelAndScaleFactor(double min, double max, std::string& label, double& factor,
                                unsigned conversion) const;

    // Same name, storage kind, unit, strings, sub types and string size.
    static bool checkTypesAreIdentical(const cCurvePlotDataType& a, const cCurvePlotDataType& b);

private:
    friend class cCurvePlotDataFile;  // the only maker: types are immutable once published
    cCurvePlotDataType() = default;

    uint64_t mTypeIndex = 0;
    std::string mName;
    curvePlotProperties::data_type mDataType = curvePlotProperties::data_double;
    curvePlotDataType::dataUnit mUnit = curvePlotDataType::undefined_unit;
    std::string mUnitString;
    std::vector<std::string> mUnitStringParts;
    std::vector<std::string> mStrings;
    std::vector<const cCurvePlotDataType*> mSubTypes;
    uint64_t mConstantStringSize = 0;
};

}  // namespace vx3
