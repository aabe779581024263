#include "readers/cCurvePlotParserOptions.h"

#include "base/cVxString.h"

namespace vx3 {

using namespace curvePlotParser;

void cCurvePlotParserOptions::setOption(unsigned id, double value)
{
    if (id >= kNbOfParserOptions)
        return;
    mValues[id] = value;
    // The interval and the data flag are what the open dialog sets as well.
    switch (id) {
    case prop_parser_option_first_x_axis_value:
        mOpenFileOptions.setFirstXAxisValue(value);
        break;
    case prop_parser_option_last_x_axis_value:
        mOpenFileOptions.setLastXAxisValue(value);
        break;
    case prop_parser_option_dont_read_data:
        mOpenFileOptions.setFlagReadData(!(value >= 1.0));
        break;
    default:
        break;
    }
}

void cCurvePlotParserOptions::defineEnumReductionLevel(const std::string& name, double level)
{
    const std::string key = vxString::trim(name);
    if (!std::isfinite(level))
        mEnumLevels.erase(key);
    else
        mEnumLevels[key] = level;
}

void cCurvePlotParserOptions::copyOptionsFrom(const cCurvePlotParserOptions& other)
{
    mBaseDirectory = other.mBaseDirectory;
    mOpenFileOptions = other.mOpenFileOptions;
    mForcedParserType = other.mForcedParserType;
    mFastReaderOnly = other.mFastReaderOnly;
    mTryFastReader = other.mTryFastReader;
    mParseSweepMatrices = other.mParseSweepMatrices;
    mMonitorReloadChanges = other.mMonitorReloadChanges;
    for (unsigned i = 0; i < kNbOfParserOptions; ++i)
        mValues[i] = other.mValues[i];
    mImportSeparator = other.mImportSeparator;
    mImportOther = other.mImportOther;
    mImportIndex = other.mImportIndex;
    mSeparatorType = other.mSeparatorType;
    mOtherSeparator = other.mOtherSeparator;
    mEnumLevels = other.mEnumLevels;
}

}  // namespace vx3
