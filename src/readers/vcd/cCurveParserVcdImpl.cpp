// A value change dump from the declarations to the finished curves.
#include "readers/vcd/cCurveParserVcdImpl.h"

#include <exception>

namespace vx3 {

using namespace curveParserVcd;

bool cCurveParserVcdImpl::readValuesNow()
{
    // Text in memory has no file to read values from later.
    if (!mMapped)
        return true;
    // A curve that stays in a text dump loads by a scan of its pieces: files below 256 MB are
    // read whole, and the option can only raise that size (negative: always read whole).
    uint64_t threshold = uint64_t(256) << 20;
    if (mSizeChosen) {
        threshold = mMinimumSizeForDbAccess;
    } else {
        const double option = options().getOption(curvePlotParser::prop_parser_option_minimum_size_for_db_access);
        if (option < 0)
            return true;
        if (option > static_cast<double>(threshold))
            threshold = option >= 1.8e19 ? ~uint64_t(0) : static_cast<uint64_t>(option);
    }
    return threshold == 0 || static_cast<uint64_t>(mEnd - mBegin) < threshold;
}

returnCode cCurveParserVcdImpl::parseFileImpl(const char* begin, const char* end, const std::string& fileName,
                                              bool detectOnly, bool mapped)
{
    try {
        clear();
        mBegin = mPosition = begin;
        mEnd = end;
        mFileName = fileName;
        cFileDbSupport& file = initDbSupport(fileName, fileDbSupport::vcd_63);
        // A mapping made for loads before the file grew would show its old size.
        if (checkIsReload())
            file.closeFile();
        std::string sectionName = fileName;
        const size_t slash = sectionName.find_last_of('/');
        if (slash != std::string::npos)
            sectionName = sectionName.substr(slash + 1);
        if (!findExistingDataSectionOrCreateNewOne(file, sectionName))
            return file_format_recognized;
        if (!parseDeclarationSection())
            return file_format_recognized;
        if (detectOnly)
            return ok;
        defineInstanceTree();
        if (!createSweepVariable())
            return file_format_recognized;
        prepareCurves();
        mMapped = mapped;
        returnCode code = ok;
        if (!parseSimulationSection(code)) {
            if (code == action_interrupted || code == file_format_recognized)
                return code;
        }
        setMinMaxOfTimeAxis();
        completeDigitalVariables();
        if (mOverwritten)
            highWarnMsg("Vcd Parser : for some variables multiple value definitions for a single time step were "
                        "overwritten.");
        return code;
    } catch (const std::exception&) {
        errorMsg("Vcd Parser : exception caught.");
        errorMsg("Vcd failed.");
        return file_format_recognized;
    }
}

}  // namespace vx3
