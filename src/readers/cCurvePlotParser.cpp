#include "readers/cCurvePlotParser.h"

#include <cstring>
#include <filesystem>

#include "base/cLoggedException.h"
#include "base/cVxString.h"
#include "readers/cCurvePlotParserReaders.h"
#include "readers/scan/cParserBase.h"
#include "readers/tabulated/cTabulatedTextSource.h"

namespace vx3 {

using namespace curvePlotParser;

namespace {

bool isDecimalNumber(const std::string& text)
{
    if (text.empty())
        return false;
    for (char c : text)
        if (c < '0' || c > '9')
            return false;
    return true;
}

bool oneOf(const std::string& text, std::initializer_list<const char*> values)
{
    for (const char* value : values)
        if (text == value)
            return true;
    return false;
}

std::string lowerExtension(const std::string& fileName)
{
    const size_t dot = fileName.rfind('.');
    return dot == std::string::npos || dot == 0 ? std::string() : vxString::to_lower(fileName.substr(dot));
}

std::string stemOf(const std::string& fileName)
{
    const size_t dot = fileName.rfind('.');
    return dot == std::string::npos || dot == 0 ? fileName : fileName.substr(0, dot);
}

}  // namespace

cCurvePlotParser::cCurvePlotParser(cCurvePlotDataFile& store, const std::string& fileName)
{
    const returnCode code = parse(store, fileName);
    if (code != ok && code != partly_parsed)
        throw cLoggedException("cCurvePlotParser::cCurvePlotParser");
}

// ---------------------------------------------------------------- choosing a reader

bool cCurvePlotParser::checkIsTr0Extension(const std::string& extension, unsigned& index)
{
    if (extension.size() < 4)
        return false;
    const std::string head = extension.substr(0, 3), rest = extension.substr(3);
    if (!oneOf(head, {".tr", ".sw", ".ac"}) || !isDecimalNumber(rest) || rest.size() > 9)
        return false;
    index = static_cast<unsigned>(std::stoul(rest));
    return true;
}

bool cCurvePlotParser::checkIsIc0Extension(const std::string& extension, unsigned& index)
{
    if (extension == ".ic") {
        index = 0;
        return true;
    }
    if (extension.size() < 4 || extension.compare(0, 3, ".ic") != 0)
        return false;
    const std::string rest = extension.substr(3);
    if (!isDecimalNumber(rest) || rest.size() > 9)
        return false;
    index = static_cast<unsigned>(std::stoul(rest));
    return true;
}

unsigned cCurvePlotParser::guessPreferredParserFromFileName(const std::string& ext, const std::string&,
                                                             const std::string& fileName, const std::string& stem)
{
    unsigned index = 0;
    if (oneOf(ext, {".spi3", ".raw", ".spi3asc"}))
        return nutmeg;
    if (oneOf(ext, {".tab", ".prn", ".res", ".csv"}))
        return tabulated;
    if (ext == ".fastcsv")
        return tabulated_fast;
    if (ext == ".slowcsv")
        return tabulated_slow;
    if (ext == ".html")
        return html;
    if (ext == ".wdb")
        return wdb;
    if (oneOf(ext, {".vcd", ".dump"}))
        return vcd;
    if (ext == ".cou")
        return cou;
    if (oneOf(ext, {".psf", ".info", ".tran"}) ||
        oneOf(fileName, {"timeSweep", "frequencySweep", "fsstSweep", "tsstSweep"}))
        return psf;
    if (ext == ".psfascii")
        return psf_ascii;
    if (ext == ".psfbin")
        return psf_binary;
    if (ext == ".sxdat")
        return sxdat;
    if (stem == "logFile" && (ext.empty() || ext == ".dat"))
        return cadence_log;
    if (oneOf(ext, {".tmf", ".nmf", ".mmf", ".amf", ".dmf"}))
        return tmf;
    if (oneOf(ext, {".csd", ".csdf"}))
        return pspice_csdf;
    if (oneOf(ext, {".dsn", ".trn"}))
        return pspice_dat;
    if (oneOf(ext, {".fsdb", ".fsdbvx"}))
        return fsdb;
    if (ext == ".mat")
        return matlab;
    if (ext == ".lvm")
        return lvm;
    if (ext == ".dc")
        return hsim_dc;
    if (ext.size() > 3 && ext.compare(0, 2, ".s") == 0 && ext.back() == 'p' &&
        isDecimalNumber(ext.substr(2, ext.size() - 3)))
        return touchstone_snp;
    if (ext.compare(0, 3, ".ts") == 0)
        return touchstone_ts;
    if (checkIsTr0Extension(ext, index))
        return tr0;
    if (fileName == "index.wsf")
        return wsf_index;
    if (ext == ".wsf")
        return wsf;
    if (ext == ".tdms")
        return tdms;
    if (oneOf(ext, {".stl", ".cir", ".sp"}))
        return spice_stimulus;
    if (checkIsIc0Extension(ext, index))
        return ic;
    if (ext == ".sig")
        return sst2;
    if (ext == ".psfxl")
        return psfxl;
    if (ext == ".ds")
        return ads_dataset;
    if (ext == ".pwf")
        return pwf;
    if (ext == ".dat")
        return lowerExtension(stem) == ".psfxl" ? psfxl : unknown_try_content;
    return none;
}

unsigned cCurvePlotParser::guessPreferredParserFromBom(const std::string& path)
{
    cTabulatedTextSource source;
    if (!source.openFile(path))
        return none;
    std::string head(std::min<uint64_t>(source.size(), 64u << 10), '\0');
    head.resize(source.read(0, head.data(), head.size()));
    cParserBaseStringIteratorHandler handler;
    handler.useStringData(head);
    cParserBaseStringIterator begin = handler.begin(), end = handler.end();
    const int bom = cParserBase<cParserBaseStringIterator>::guessFileTypeFromBom(begin, end);
    static const unsigned mapping[] = {none,      hsim_dc, lvm,       matlab,     matlab,      html,
                                       vcd,       html,    tabulated, tabulated,  ads_citi,    ads_dataset,
                                       unknown_try_content, psfxl, sst2, nutmeg, fsdb,       psf_ascii,
                                       psf_binary, pspice_csdf, tdms, wsf_ascii, wsf_binary,  sxdat};
    if (bom > 0 && static_cast<size_t>(bom) < sizeof(mapping) / sizeof(mapping[0]))
        return mapping[bom];
    // The FSDB signature: three 32-bit words in the file's native layout.
    uint32_t words[3] = {1, 0, 0};
    if (head.size() >= sizeof(words)) {
        std::memcpy(words, head.data(), sizeof(words));
        if (words[0] == 0 && words[1] == 0x48D93E1Cu && words[2] == 0x01020304u)
            return fsdb;
    }
    return none;
}

unsigned cCurvePlotParser::guessPreferredParser(const std::string& path)
{
    const std::string fileName = std::filesystem::path(path).filename().string();
    const std::string ext = lowerExtension(fileName);
    const unsigned byName = guessPreferredParserFromFileName(ext, path, fileName, stemOf(fileName));
    switch (byName) {
    case unknown_try_content: {
        const unsigned byContent = guessPreferredParserFromBom(path);
        return byContent == none ? tecplot : byContent;
    }
    case hsim_dc:
    case psfxl: {
        const unsigned byContent = guessPreferredParserFromBom(path);
        return byContent == none ? byName : byContent;
    }
    case psf: {
        const unsigned byContent = guessPreferredParserFromBom(path);
        return byContent == none ? psf : byContent;
    }
    case none:
        return guessPreferredParserFromBom(path);
    default:
        return byName;
    }
}

std::string cCurvePlotParser::getFileTypeAsString(unsigned type, const std::string& extension)
{
    switch (type) {
    case psf: return "psf";
    case psf_ascii: return "psf ascii";
    case psf_binary: return "psf binary";
    case cadence_log: return "log";
    case nutmeg: return "nutmeg";
    case touchstone_snp:
    case touchstone_ts: return "touchstone";
    case tr0: return "tr0";
    case wsf: return "wsf";
    case wsf_ascii: return "wsf ascii";
    case wsf_binary: return "wsf binary";
    case wsf_index: return "wsf index";
    case matlab: return "mat";
    default: return !extension.empty() && extension[0] == '.' ? extension.substr(1) : extension;
    }
}

// ---------------------------------------------------------------- parse

std::string cCurvePlotParser::resolveFileName(const std::string& fileName) const
{
    std::filesystem::path path(fileName);
    if (path.is_relative()) {
        std::error_code error;
        path = getBaseDirectory().empty() ? std::filesystem::absolute(path, error)
                                          : std::filesystem::path(getBaseDirectory()) / path;
    }
    return path.lexically_normal().string();
}

bool cCurvePlotParser::printErrorMessageAndQuit(const std::string& typeText, const std::string& name,
                                                returnCode code) const
{
    const std::string type = typeText.empty() ? std::string() : typeText + " ";
    switch (code) {
    case ok:
        logger().infoMsg("The " + type + "file \"" + name + "\" was parsed succesfully.");
        return true;
    case partly_parsed:
        logger().infoMsg("The " + type + "file \"" + name + "\" was parsed only partially .");
        return true;
    case file_format_recognized:
        logger().errorMsg("Failed to parse the " + type + "file \"" + name + "\"");
        return true;
    case action_interrupted:
        logger().infoMsg("File parsing was interrupted while parsing \"" + name + "\".");
        return true;
    default:
        return false;
    }
}

returnCode cCurvePlotParser::runReader(unsigned type, cCurvePlotDataFile& store, const std::string& name)
{
    auto parse = [&](auto& reader) { return parseFromFile(reader, store, name); };
    if (type != tabulated)
        return withReader(type, store, parse);
    // The tabulated pair: the fast reader first, the thorough one when the fast one gave up.
    returnCode code = failed;
    if (getFlagTryFastReader())
        code = withReader(tabulated_fast, store, parse);
    if (getFlagFastReaderOnly() || code == ok || code == partly_parsed || code == action_interrupted)
        return code;
    return withReader(tabulated_slow, store, parse);
}

returnCode cCurvePlotParser::parse(cCurvePlotDataFile& store, const std::string& fileName, unsigned parserType)
{
    mLastParsedSection = nullptr;
    const std::string name = resolveFileName(fileName);
    for (cVxWaveformPlugin* plugin : mPlugins) {
        cCurvePlotParserOptions pluginOptions;
        pluginOptions.copyOptionsFrom(*this);
        pluginOptions.logger().setLoggerCallBack(logger().getLoggerCallBack());
        cCurvePlotParserPlugin reader(store, pluginOptions, plugin);
        const returnCode code = parseFromFile(reader, store, name);
        if (code == ok || code == partly_parsed)
            return code;
    }
    uint64_t size = 0;
    time_t time = 0;
    if (!fileAccess::getFileSizeAndTime(name, size, time)) {
        logger().errorMsg("The file \"" + name + "\" does not exist.");
        return file_not_found;
    }
    if (size == 0) {
        logger().errorMsg("The file \"" + name + "\" is empty.");
        return failed;
    }
    const std::string shortName = std::filesystem::path(name).filename().string();
    const std::string extension = lowerExtension(shortName);
    if (store.checkIfFileHasAlreadyBeenOpened(name, getBaseDirectory())) {
        logger().infoMsg("The file \"" + name + "\" has already been opened.");
        return ok;
    }
    const bool forced = getForcedParserType() != none;
    const unsigned type = forced ? getForcedParserType() : parserType != none ? parserType : guessPreferredParser(name);
    returnCode code = runReader(type, store, name);
    if (forced && code == failed)
        code = file_format_recognized;
    if (printErrorMessageAndQuit(getFileTypeAsString(type, extension), name, code))
        return code;
    const bool csvChosen = type == tabulated || type == tabulated_fast || type == tabulated_slow;
    static const struct {
        unsigned type;
        const char* text;
    } chain[] = {{nutmeg, "nutmeg"}, {pwf, "pwf"}, {html, "html"}, {tabulated, "csv"}};
    for (const auto& step : chain) {
        if (step.type == type || (step.type == tabulated && csvChosen))
            continue;
        code = runReader(step.type, store, name);
        if (printErrorMessageAndQuit(step.text, name, code))
            return code;
    }
    logger().errorMsg("Failed to parse the file \"" + name + "\".");
    return failed;
}

// ---------------------------------------------------------------- detect and text

returnCode cCurvePlotParser::detectWithReader(unsigned type, cCurvePlotDataFile& store, const std::string& name,
                                              cCurvePlotParserOpenFileOptions& openFileOptions)
{
    auto detect = [&](auto& reader) { return detectFileTypeImpl(reader, store, name, openFileOptions); };
    if (type != tabulated && type != tabulated_fast)
        return withReader(type, store, detect);
    const returnCode code = withReader(tabulated_fast, store, detect);
    if (code == ok || type == tabulated_fast || getFlagFastReaderOnly())
        return code;
    return withReader(tabulated_slow, store, detect);
}

returnCode cCurvePlotParser::detectFileType(cCurvePlotDataFile& store, const std::string& fileName,
                                            cCurvePlotParserOpenFileOptions& openFileOptions)
{
    const std::string name = resolveFileName(fileName);
    uint64_t size = 0;
    time_t time = 0;
    if (!fileAccess::getFileSizeAndTime(name, size, time)) {
        logger().errorMsg("The file \"" + name + "\" does not exist.");
        return file_not_found;
    }
    if (size == 0) {
        logger().errorMsg("The file \"" + name + "\" is empty.");
        return failed;
    }
    const unsigned type = getForcedParserType() != none ? getForcedParserType() : guessPreferredParser(name);
    returnCode code = detectWithReader(type, store, name, openFileOptions);
    if (code != failed)
        return code;
    const bool csvChosen = type == tabulated || type == tabulated_fast || type == tabulated_slow;
    for (unsigned step : {unsigned(nutmeg), unsigned(pwf), unsigned(html), unsigned(tabulated)}) {
        if (step == type || (step == tabulated && csvChosen))
            continue;
        code = detectWithReader(step, store, name, openFileOptions);
        if (code != failed)
            return code;
    }
    logger().errorMsg("Failed to identify the file \"" + name + "\".");
    return failed;
}

returnCode cCurvePlotParser::parseString(cCurvePlotDataFile& store, const std::string& text)
{
    mLastParsedSection = nullptr;
    // Text has no file: it is filed under a name of its own.
    std::string name = "imported data";
    for (unsigned n = 2; store.findDbSupportPtr(name); ++n)
        name = "imported data " + std::to_string(n);
    returnCode code = failed;
    {
        cCurvePlotTabulatedParserFast reader(store, *this);
        code = parseFromString(reader, store, text, name);
    }
    if (code != ok && code != partly_parsed && code != action_interrupted) {
        cCurvePlotParserTabulatedData reader(store, *this);
        code = parseFromString(reader, store, text, name);
    }
    if (code != ok && code != partly_parsed && code != action_interrupted) {
        cCurvePlotParserHtmlData reader(store, *this);
        code = parseFromString(reader, store, text, name);
    }
    if (code == action_interrupted)
        logger().infoMsg("File parsing was interrupted while parsing \"" + name + "\".");
    else if (code != ok && code != partly_parsed)
        logger().errorMsg("Failed to read imported data.");
    return code;
}

}  // namespace vx3
