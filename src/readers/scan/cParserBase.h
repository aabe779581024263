// The text scanner, written once over an iterator type (see cParserBaseIterators.h).
// Every scanning function takes the moving iterator and the end by reference, answers a bool,
// and leaves the moving iterator where it was when it answers false.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/cVxLogger.h"
#include "readers/scan/cParserBaseIterators.h"

namespace vx3 {

namespace parserBase {
// Codes of guessFileTypeFromBom.
enum bom_type : int {
    bom_unknown = 0,
    bom_hsim = 1,
    bom_labview = 2,
    bom_matlab_text = 3,
    bom_matlab_5 = 4,
    bom_html = 5,
    bom_vcd = 6,
    bom_xml = 7,
    bom_time_table = 8,
    bom_numeric_table = 9,
    bom_citi = 10,
    bom_ads_dataset = 11,
    bom_binary_ff = 12,
    bom_ngpsf = 13,
    bom_cdn = 14,
    bom_mds = 15,
    bom_psf_header = 17,
    bom_psf = 18,
    bom_csdf = 19,
    bom_tdms = 20,
    bom_wsf_header = 21,
    bom_wsf = 22,
    bom_sxdat = 23,
};
}  // namespace parserBase

template <class Iterator>
class cParserBase : public cVxLogger {
public:
    using It = Iterator;

    // ---- Character tests
    static bool isAlpha(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
    static bool isNum(char c) { return c >= '0' && c <= '9'; }
    static bool isNewLine(char c) { return c == '\n' || c == '\r'; }
    static bool isAsciiCharacter(char c) { return static_cast<unsigned char>(c) < 128; }
    static char toLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
    static bool checkIsWhiteSpace(char c) { return c == ' ' || c == '\t'; }
    static bool checkIsNewLine(const It& begin, const It& end) { return begin != end && isNewLine(*begin); }
    // A case-sensitive prefix test that consumes text on a match.
    static bool checkMatchesCase(It& begin, const It& end, std::string_view text);
    // 1 to 32 characters "0" and "1": their value.
    static bool checkStringHoldsUi32Bin(std::string_view text, unsigned& value);

    // ---- Skipping. Each answers whether characters remain (begin != end) unless said otherwise.
    static bool skipWhiteSpace(It& begin, const It& end);
    // One "\n", "\r\n" or "\r"; true if one was there.
    static bool skipNewLine(It& begin, const It& end);
    static bool skipNewLineAndWhiteSpace(It& begin, const It& end);
    // Blanks, tabs, and a backslash that ends a line.
    static bool skipContinuedWhiteSpace(It& begin, const It& end);
    static bool skipAndCountWhiteSpace(It& begin, const It& end, uint64_t& count);
    // Past the next newline.
    static bool skipCurrentLine(It& begin, const It& end);
    // The line and the lines after it that continue it with a leading "+".
    static bool skipCurrentContinuedLine(It& begin, const It& end);
    // Up to c, which stays; true if c was found.
    static bool skipUntil(It& begin, const It& end, char c);
    // Blanks, one of ",", ";", tab, blanks; true if a separator was found.
    static bool skipPotentialCsvSeparator(It& begin, const It& end);
    static bool skipNewLineWhiteSpaceAndNonAscii(It& begin, const It& end);
    // count bytes, or false when fewer remain (then nothing moves).
    static bool skipBinaryData(It& begin, const It& end, uint64_t count);

    // ---- Text
    // Characters up to the next blank, tab or newline; false when there are none.
    static bool parseAnyString(It& begin, const It& end, std::string& text);
    // "..." (with \" inside) without the quotes, or else a plain token.
    static bool parseStringWithQuotes(It& begin, const It& end, std::string& text);
    // The rest of the line without its newline, which is consumed.
    static bool parseLine(It& begin, const It& end, std::string& line);
    // The same, keeping at most maximum characters; the rest of the line is skipped silently.
    static bool parseLineMaxSize(It& begin, const It& end, std::string& line, uint64_t maximum);
    // One UTF-8 sequence as text; quotes are folded to "'" and """, the degree sign to "deg",
    // broken sequences to "?".
    static bool convertUTF8Character(It& begin, const It& end, std::string& text);
    // One character of the upper half of Latin-1 as UTF-8.
    static bool convertExtendedAsciiCharacter(It& begin, const It& end, std::string& text);

    // ---- Integers
    static bool parseInt(It& begin, const It& end, int& value);
    static bool parseInteger(It& begin, const It& end, int64_t& value);
    static bool parseUnsignedInteger(It& begin, const It& end, uint64_t& value);
    template <typename T>
    static bool parseUInt(It& begin, const It& end, T& value);
    // Exactly digits decimal digits.
    static bool parseFixedSizeUInt(It& begin, const It& end, unsigned digits, uint64_t& value);
    template <typename T>
    static bool parseHexUnsignedInteger(It& begin, const It& end, T& value);
    static bool parseUnsignedHexadecimalInteger(It& begin, const It& end, uint64_t& value);
    // Hex digits read as bytes, the first pair the least significant byte.
    static bool parseUnsignedHexadecimalIntegerBigEndian(It& begin, const It& end, uint64_t& value);

    // ---- Reals. Correctly rounded, whatever the length of the digits.
    // Always inlined: a call would pass the iterator through memory, and reloading it right after
    // the caller's last increment stalls on every number.
    __attribute__((always_inline)) static bool parseDoubleNoUnits(It& begin, const It& end, double& value,
                                                                  bool allowBlanksAfterSign = false,
                                                                  bool allowComma = false, bool* usedComma = nullptr);
    // Forms for bulk tabulated data: no blanks after the sign; the second takes "," as decimal point.
    static bool parseDoubleNoUnitsFast(It& begin, const It& end, double& value)
    {
        return parseDoubleNoUnits(begin, end, value);
    }
    static bool parseDoubleNoUnitsFastComma(It& begin, const It& end, double& value)
    {
        return parseDoubleNoUnits(begin, end, value, false, true);
    }
    // A number with an engineering suffix ("1.5meg", "10u", "3k").
    __attribute__((always_inline)) static bool parseDoubleWithUnits(It& begin, const It& end, double& value,
                                                                    bool allowBlanks = false, bool allowComma = false,
                                                                    bool* usedComma = nullptr, bool allowAtto = false);
    // A number with a suffix, or "inf", "infinity", "nan" in any case, with a sign.
    static bool parseDoubleInfNan(It& begin, const It& end, double& value);
    // A field of "-", "." (and "," with allowComma) holding a "-": NaN, as tools write for "no value".
    static bool parseDoubleOtherInfNan(It& begin, const It& end, double& value, bool allowComma = false);
    // Multiplies value by the factor of a suffix at the start of a unit's text.
    static bool parseUnit(It& begin, const It& end, double& value);

    // ---- File sniffing: a parserBase::bom_type code from the head of a file.
    static int guessFileTypeFromBom(It& begin, const It& end);

private:
    static bool scanDecimalSlow(It& begin, const It& end, double& value, bool allowComma, bool* usedComma);
    // The rare paths kept out of line, so that the common one inlines into the callers' loops.
    __attribute__((noinline)) static bool parseDoubleNoUnitsGeneral(It& begin, const It& end, double& value,
                                                                    bool allowBlanksAfterSign, bool allowComma,
                                                                    bool* usedComma);
    __attribute__((noinline)) static bool applySuffix(const It& start, It& begin, const It& end, double& value,
                                                      bool allowBlanks, bool allowAtto);
    static bool hexDigit(char c, unsigned& digit);
};

}  // namespace vx3

#include "readers/scan/cParserBaseText.h"
#include "readers/scan/cParserBaseNumbers.h"
#include "readers/scan/cParserBaseBom.h"

