// File sniffing of cParserBase (included by cParserBase.h): which reader a file's first lines
// point to.
#pragma once

#include "base/cVxString.h"

namespace vx3 {

namespace parserBaseBom {
constexpr uint64_t kMaxLineSize = 200;

inline bool startsWith(const std::string& text, std::string_view prefix)
{
    return text.compare(0, prefix.size(), prefix) == 0;
}

// At least one number, separated by blanks, tabs, commas, semicolons and the like, up to the end.
bool checkIsNumericRow(const std::string& line);
bool checkIsCitiKeywordLine(const std::string& line);
}  // namespace parserBaseBom

template <class It>
int cParserBase<It>::guessFileTypeFromBom(It& begin, const It& end)
{
    using namespace parserBase;
    using parserBaseBom::startsWith;
    skipNewLineAndWhiteSpace(begin, end);
    std::string line;
    if (!parseLineMaxSize(begin, end, line, parserBaseBom::kMaxLineSize))
        return bom_unknown;
    const std::string lower = vxString::trim(vxString::to_lower(line));

    static const struct {
        const char* prefix;
        int code;
    } lowerPrefixes[] = {
        {"<?xml", bom_xml},
        {"<html", bom_html},
        {"<!doctype", bom_html},
        {"$date", bom_vcd},
        {"% matlab m-file converted by", bom_matlab_text},
        {"matlab 5.0 mat-file", bom_matlab_5},
        {"labview measurement", bom_labview},
        {"file format: mds", bom_mds},
        {"#time ", bom_time_table},
    };
    for (const auto& entry : lowerPrefixes)
        if (startsWith(lower, entry.prefix))
            return entry.code;

    std::string next;
    if (startsWith(lower, "synopsys inc")) {
        skipNewLineAndWhiteSpace(begin, end);
        parseLineMaxSize(begin, end, next, parserBaseBom::kMaxLineSize);
        return startsWith(vxString::to_lower(next), "hsim") ? bom_hsim : bom_unknown;
    }
    if (startsWith(lower, "hsim"))
        return bom_hsim;

    if (startsWith(line, "CITIFILE A.01.00") || startsWith(line, "CITIFILE A.01.01"))
        return bom_citi;
    if (startsWith(line, "EEsof dataset") || startsWith(line, "HP EEsof data"))
        return bom_ads_dataset;
    if (startsWith(line, "#H")) {
        It cursor = begin;
        if (parseLineMaxSize(cursor, end, next, parserBaseBom::kMaxLineSize) && startsWith(next, "SOURCE="))
            return bom_csdf;
    }
    if (startsWith(line, "TDSm"))
        return bom_tdms;
    if (startsWith(line, "SIMetrix Intro datafile") || startsWith(line, "SIMetrix datafile"))
        return bom_sxdat;

    if (line.size() >= 9) {
        bool ff = true;
        for (int i = 0; i < 7 && ff; ++i)
            ff = static_cast<unsigned char>(line[i]) == 0xFF;
        const unsigned char eighth = static_cast<unsigned char>(line[7]);
        if (ff && eighth >= 0xF7 && eighth <= 0xFA)
            return bom_binary_ff;
    }
    static const char* const ngpsf[] = {"!ngpsf-0.1", "!ngpsf-1.1", "!ngpsf-1.2", "!ngpsf-1.3", "!ngpsf-1.4"};
    for (const char* version : ngpsf)
        if (vxString::trim(line) == version)
            return bom_ngpsf;
    if (startsWith(line, "*cdn"))
        return bom_cdn;

    // Comment lines: the first line after them decides, as a CITI file or a numeric table.
    std::string row = line;
    if (startsWith(line, "#")) {
        while (begin != end) {
            skipNewLineAndWhiteSpace(begin, end);
            if (!parseLineMaxSize(begin, end, row, parserBaseBom::kMaxLineSize))
                break;
            if (!startsWith(row, "#"))
                break;
        }
        if (startsWith(row, "#"))
            row.clear();
        if (parserBaseBom::checkIsCitiKeywordLine(row))
            return bom_citi;
    }
    if (parserBaseBom::checkIsNumericRow(row))
        return bom_numeric_table;

    if (line.find("PSFversion") != std::string::npos)
        return startsWith(lower, "header") ? bom_psf_header : bom_psf;
    if (line.find("WSFversion") != std::string::npos)
        return startsWith(lower, "header") ? bom_wsf_header : bom_wsf;
    return bom_unknown;
}

}  // namespace vx3
