// Places in the reader chain for the readers that other parts of the system add (Nutmeg, PWF,
// plug-ins). Each answers "try the next reader" (code 3) until its real class replaces it
// here; the dispatch already calls them where the real ones belong.
#pragma once

#include <string>
#include <vector>

#include "base/returnCode.h"
#include "readers/cCurveParserIntermediate.h"

namespace vx3 {

class cVxWaveformPlugin;

class cCurvePlotParserStandIn : public cCurveParserIntermediate {
public:
    using cCurveParserIntermediate::cCurveParserIntermediate;
    returnCode parseFile(const std::string&) { return failed; }
    returnCode parseString(const std::string&) { return failed; }
    returnCode reloadFile(const std::string&, const std::vector<cCurvePlotDataSection*>&) { return failed; }
    returnCode detectFileType(const std::string&, cCurvePlotParserOpenFileOptions&) { return failed; }
};

class cCurvePlotParserPWF : public cCurvePlotParserStandIn {
public:
    using cCurvePlotParserStandIn::cCurvePlotParserStandIn;
};

// One loaded waveform plug-in asked for a file.
class cCurvePlotParserPlugin : public cCurvePlotParserStandIn {
public:
    cCurvePlotParserPlugin(cCurvePlotDataFile& store, cCurvePlotParserOptions& options, cVxWaveformPlugin* plugin)
        : cCurvePlotParserStandIn(store, options), mPlugin(plugin) {}
    cVxWaveformPlugin* plugin() const { return mPlugin; }

private:
    cVxWaveformPlugin* mPlugin;
};

}  // namespace vx3
