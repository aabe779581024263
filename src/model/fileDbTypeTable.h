// Texts of the file formats, generated into fileDbTypeTable.cpp.
#pragma once

#include "model/fileDbType.h"

namespace vx3::fileDbSupport::detail {

extern const char* const kDbTypeTexts[kNbOfDbTypes];

}  // namespace vx3::fileDbSupport::detail
