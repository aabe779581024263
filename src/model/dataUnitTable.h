// Row layout of the generated unit tables (dataUnitTable.cpp).
#pragma once

#include <cstddef>

#include "model/dataUnit.h"

namespace vx3::curvePlotDataType::detail {

struct cUnitTexts {
    const char* longText;
    const char* shortText;
};

struct cUnitWord {
    const char* word;  // lower case
    dataUnit unit;
};

extern const cUnitTexts kUnitTexts[kNbOfUnits];
extern const cUnitWord kUnitWords[];
extern const size_t kNbOfUnitWords;

}  // namespace vx3::curvePlotDataType::detail
