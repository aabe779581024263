#include "model/fileDbType.h"

#include "model/fileDbTypeTable.h"

namespace vx3::fileDbSupport {

const char* getDbTypeAsSting(unsigned type)
{
    return type < kNbOfDbTypes ? detail::kDbTypeTexts[type] : "undefined";
}

bool checkIsBigEndian(unsigned type)
{
    switch (type) {
    case 8: case 10: case 12: case 14: case 16: case 18: case 21: case 52: case 53: case 55:
        return true;
    default:
        return false;
    }
}

bool checkIsToolbox(unsigned type) { return type == tool_box || type == tool_box_referable; }

bool checkSectionNamesAreUniqueByConstruction(unsigned type) { return type == 54 || type == tmf; }

bool checkSupportsParallelCurveDataAccess(unsigned type)
{
    return type == 5 || type == 7 || type == 9 || type == 11;
}

namespace {
bool isPsfxl(unsigned type) { return type == 45 || type == 46 || (type >= 50 && type <= 53); }
}  // namespace

bool checkAllowsUndefinedValues(unsigned type) { return !isPsfxl(type); }
bool checkXAxisIsAlwaysMonotoneRising(unsigned type) { return isPsfxl(type); }

bool checkDbSupportActive(unsigned type)
{
    if (type == undefined_db || type == 4 || type == 5 || (type >= 22 && type <= 34))
        return false;
    switch (type) {
    case 19:
    case psf_ascii:
    case user_defined:
    case html:
    case tool_box:
    case tool_box_referable:
    case 100:
    case drop:
        return false;
    default:
        return true;
    }
}

bool checkLocalDbSupportActive(unsigned type) { return type != 19 && type != 100; }

bool checkHandlesFailSaveReload(unsigned type, bool hasFileName)
{
    if (!hasFileName || type >= 32 || type <= 3 || type == 5)
        return false;
    return !(type >= 13 && type <= 21);
}

}  // namespace vx3::fileDbSupport
