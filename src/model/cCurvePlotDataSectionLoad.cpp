// Loading the x axes of a section whose values stay in the file.
#include "model/cCurvePlotDataSection.h"

namespace vx3 {

returnCode cCurvePlotDataSection::loadSweepVariablesFromDb(const cVxLogger& logger)
{
    returnCode result = ok;
    for (uint64_t i = 0; i < mSweepVariables.size(); ++i) {
        cCurvePlotSweepVariable& sweep = mSweepVariables[i];
        // Values a reader put in memory stay as they are.
        if (!sweep.checkDbSupportActive() || !sweep.checkNeedsLoading() || sweep.checkHasStorage())
            continue;
        if (sweep.loadDataFromDb(logger, this, i, true) != ok)
            result = failed;
    }
    return result;
}

uint64_t cCurvePlotDataSection::getVariableValueCount(uint64_t index) const
{
    if (index >= mVariables.size())
        return 0;
    const cCurvePlotVariable& variable = mVariables[index];
    // Values a reader put in memory count as they are, whatever the file's type says.
    if (variable.checkDbSupportActive() && variable.checkNeedsLoading() && !variable.checkHasStorage())
        return variable.getDbSize();
    return variable.getVectorSize();
}

}  // namespace vx3
