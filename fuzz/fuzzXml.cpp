// The XML text of drops and the clipboard: a command list or a curve list. What parses is
// written out again, and that text must parse to the same content.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "app/core/cZelWaveXmlParser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    vx3::cZelWaveXmlParser parser;
    if (!parser.parseXmlString(text))
        return 0;
    for (const auto& curve : parser.curves())
        for (const auto& annotation : curve.annotations) {
            std::vector<double> values;
            annotation.parseData(values);
        }
    vx3::cZelWaveXmlParser::generateCommandXmlString(parser.commands());
    if (!parser.checkContainsData())
        return 0;
    const std::string written = parser.generateXmlString();
    vx3::cZelWaveXmlParser again;
    if (!again.parseXmlString(written) || again.generateXmlString() != written) {
        std::fprintf(stderr, "a curve list written out does not read back:\n%s\n", written.c_str());
        std::abort();
    }
    return 0;
}
