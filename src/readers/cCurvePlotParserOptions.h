// The settings under which a file is read, with the logger that takes the reader's messages.
#pragma once

#include <string>

#include "base/cVxLogger.h"

namespace vx3 {

class cCurvePlotParserOptions {
public:
    cVxLogger& logger() { return mLogger; }
    const cVxLogger& logger() const { return mLogger; }

    // Relative file names are taken from here; empty: the working directory.
    const std::string& getBaseDirectory() const { return mBaseDirectory; }
    void setBaseDirectory(const std::string& directory) { mBaseDirectory = directory; }

    // "v1#branch" becomes "i(v1)".
    bool getFlagSimplifyInstanceNamesForCurrents() const { return mSimplifyCurrents; }
    void setFlagSimplifyInstanceNamesForCurrents(bool flag) { mSimplifyCurrents = flag; }
    bool getFlagParseSweepMatrices() const { return mParseSweepMatrices; }
    void setFlagParseSweepMatrices(bool flag) { mParseSweepMatrices = flag; }
    bool getFlagMonitorReloadChangesInSections() const { return mMonitorReloadChanges; }
    void setFlagMonitorReloadChangesInSections(bool flag) { mMonitorReloadChanges = flag; }

private:
    cVxLogger mLogger;
    std::string mBaseDirectory;
    bool mSimplifyCurrents = true;
    bool mParseSweepMatrices = true;
    bool mMonitorReloadChanges = false;
};

}  // namespace vx3
