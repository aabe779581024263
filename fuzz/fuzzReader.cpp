// One reader, or the dispatch by content, over a file holding the input. The reader is chosen at
// build time (ZW_FUZZ_PARSER_TYPE, a curvePlotParser::parser_type; none lets name and content
// decide). Every curve that a parse leaves is loaded and read.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzzSupport.h"
#include "readers/cCurvePlotParser.h"

#ifndef ZW_FUZZ_PARSER_TYPE
#error "ZW_FUZZ_PARSER_TYPE names the reader"
#endif
#ifndef ZW_FUZZ_FILE_NAME
#error "ZW_FUZZ_FILE_NAME names the input file"
#endif

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string path = zwfuzz::scratch().write(ZW_FUZZ_FILE_NAME, data, size);
    zwfuzz::cQuietLogger quiet;
    {
        vx3::cCurvePlotDataFile store;
        vx3::cCurvePlotParser parser;
        parser.logger().setLoggerCallBack(&quiet);
        const unsigned type = ZW_FUZZ_PARSER_TYPE;
        if (type != vx3::curvePlotParser::none)
            parser.setForcedParserType(type);
        parser.parse(store, path);
        zwfuzz::touchEveryCurve(store, parser.logger());
        // Text dropped or pasted takes the string road of the table and HTML readers.
        if (type == vx3::curvePlotParser::none)
            parser.parseString(store, std::string(reinterpret_cast<const char*>(data), size));
        zwfuzz::touchEveryCurve(store, parser.logger());
        parser.logger().setLoggerCallBack(nullptr);
    }
    return 0;
}
