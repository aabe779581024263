// Value change dumps of logic simulators (".vcd"), four-state and extended port forms: one
// section with an integer time axis and one sparse logic or real curve per declared variable.
// The file is read in one pass over its mapping; reload reads it again keeping the curves.
#pragma once

#include <string>
#include <vector>

#include "readers/vcd/cCurveParserVcdImpl.h"

namespace vx3 {

class cCurvePlotParserOpenFileOptions;

class cCurveParserVcd : public cCurveParserVcdImpl {
public:
    using cCurveParserVcdImpl::cCurveParserVcdImpl;

    returnCode parseFile(const std::string& name);
    returnCode parseString(const std::string& text);
    returnCode reloadFile(const std::string& name, const std::vector<cCurvePlotDataSection*>& sections);
    // The declarations only: a file whose header reads is a dump.
    returnCode detectFileType(const std::string& name, cCurvePlotParserOpenFileOptions& openFileOptions);

private:
    // After a read from a mapping that shrank meanwhile: the file's format, but nothing of it.
    returnCode reportCut(const std::string& name);
};

}  // namespace vx3
