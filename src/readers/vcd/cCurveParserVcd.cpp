#include "readers/vcd/cCurveParserVcd.h"

#include "readers/scan/cBusErrorGuard.h"
#include "readers/scan/cVxMemoryFile.h"
#include "readers/vcd/cCurveParserVcdDbLoader.h"

namespace vx3 {

returnCode cCurveParserVcd::parseFile(const std::string& name)
{
    // Curves whose values stay in the file (or were released) load through it.
    cCurveParserVcdDbLoader::registerLoader();
    cVxMemoryFile file;
    if (!file.openFile(name)) {
        errorMsg("Vcd parser : could not open \"" + name + "\"" +
                 (file.getErrorMessage().empty() ? std::string(".") : " (" + file.getErrorMessage() + ")."));
        return failed;
    }
    // Declarations and the store are built on this thread straight from the mapping: a fault in
    // it reads zeros instead of jumping over their destructors, and the result is thrown away.
    busErrorGuard::cInPlaceReadScope scope(file.checkIsMapped() ? file.data() : nullptr, file.size());
    const returnCode code = parseFileImpl(file.data(), file.data() + file.size(), name, false, file.checkIsMapped());
    return scope.checkWasCut() ? reportCut(name) : code;
}

returnCode cCurveParserVcd::reportCut(const std::string& name)
{
    errorMsg("Vcd Parser : the file \"" + name + "\" was cut while it was read.");
    return file_format_recognized;
}

returnCode cCurveParserVcd::parseString(const std::string& text)
{
    return parseFileImpl(text.data(), text.data() + text.size(), getSourceName(), false, false);
}

returnCode cCurveParserVcd::reloadFile(const std::string& name, const std::vector<cCurvePlotDataSection*>& sections)
{
    setReloadSections(sections);
    return parseFile(name);
}

returnCode cCurveParserVcd::detectFileType(const std::string& name, cCurvePlotParserOpenFileOptions&)
{
    cVxMemoryFile file;
    if (!file.openFile(name))
        return failed;
    busErrorGuard::cInPlaceReadScope scope(file.checkIsMapped() ? file.data() : nullptr, file.size());
    const returnCode code = parseFileImpl(file.data(), file.data() + file.size(), name, true, file.checkIsMapped());
    if (scope.checkWasCut())
        return reportCut(name);
    // The dispatch tries the next reader after a plain failure.
    return code == ok ? ok : failed;
}

}  // namespace vx3
