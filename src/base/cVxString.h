// The system's string: std::string plus parsing, editing and conversion helpers.
// Conversions never depend on the process locale (the GUI toolkit changes it).
#pragma once

#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace vx3 {

namespace vxString {
std::string to_lower(std::string_view text);
std::string to_upper(std::string_view text);
std::string trim(std::string_view text);              // blanks, tabs, CR, LF at both ends
std::string trim_quotes(std::string_view text);       // one pair of enclosing double quotes
std::string trim_comma(std::string_view text);        // commas at both ends
std::string trim_multiple_space(std::string_view text);
std::string replace_string_first(std::string text, std::string_view from, std::string_view to);
std::string replace_string_all(std::string text, std::string_view from, std::string_view to);
std::string remove_string_all(std::string text, std::string_view what);
// Text for HTML or XML: &, < and > always; the double quote and the apostrophe when asked, for
// attribute values.
std::string escape_markup(std::string_view text, bool quote = true, bool apostrophe = false);
// strtod that reads "1.5" and "1,5" alike under any locale; end as in strtod.
double strtod_replacement(const char* text, char** end);
}  // namespace vxString

class cVxString : public std::string {
public:
    cVxString() = default;
    cVxString(const char* text) : std::string(text ? text : "") {}
    cVxString(const char* text, size_t size) : std::string(text, size) {}
    cVxString(const std::string& text) : std::string(text) {}
    cVxString(std::string&& text) : std::string(std::move(text)) {}
    cVxString(std::string_view text) : std::string(text) {}
    cVxString(const std::wstring& text);  // encoded as UTF-8
    explicit cVxString(uint64_t value) : std::string(std::to_string(value)) {}
    explicit cVxString(double value) : std::string(createFromNumber(value)) {}

    template <typename T>
    static cVxString createFromNumber(T value)
    {
        std::ostringstream stream;
        stream.imbue(std::locale::classic());
        stream << value;
        return stream.str();
    }
    template <typename T>
    static cVxString toString(T value) { return createFromNumber(value); }

    // Case
    cVxString lowerCase() const { return vxString::to_lower(*this); }
    cVxString upperCase() const { return vxString::to_upper(*this); }
    cVxString upperCaseLetter(size_t index) const;
    cVxString removeLastLowerCase(char c) const;  // text up to the last c, lowered
    bool startsWith(std::string_view prefix) const;
    bool endsWith(std::string_view suffix) const;
    bool startsWithCaseInsensitive(std::string_view prefix) const;
    bool endsWithCaseInsensitive(std::string_view suffix) const;

    // Trim
    cVxString& trim();
    cVxString& trimQuotes();
    cVxString& trimMultipleSpace();

    // Search and edit
    bool contains(std::string_view part) const { return find(part) != npos; }
    bool contains(char c) const { return find(c) != npos; }
    bool findFirst(char c, size_t start, size_t& position) const;
    bool findFirst(std::string_view part, size_t start, size_t& position) const;
    cVxString subString(size_t start, size_t count = npos) const;
    cVxString& replaceFirst(std::string_view from, std::string_view to);
    cVxString& replaceAll(std::string_view from, std::string_view to);
    cVxString& removeAll(char c);
    cVxString& removeEnd(size_t count);
    cVxString& replaceNewlineBySpace();
    cVxString& replaceNewlineCharacters(std::string_view with);
    cVxString& useNativeNewlineCharacters();      // CR LF and CR become LF
    cVxString& allowNewlineCharacters();          // the two-character "\n" becomes a line feed
    cVxString& padConstantSizeString(size_t size);
    void splitString(std::vector<cVxString>& result, char separator) const;
    void splitStringWithTokenSize(std::vector<cVxString>& result, size_t tokenSize) const;

    // Conversion: the whole text must be used; on failure the output is untouched.
    bool toInt(int& value) const;
    bool toLong(long& value) const;
    bool toLongLong(long long& value) const;
    bool toInt64(int64_t& value) const;
    bool toUint(unsigned& value) const;
    bool toUnsignedInt(unsigned& value) const { return toUint(value); }
    bool toUint64(uint64_t& value) const;
    bool toDouble(double& value) const;
    bool toDoubleCommaSep(double& value) const;
    bool toDoubleComplexCommaSep(double& real, double& imaginary) const;
    bool toUint64FromHexString(uint64_t& value) const;
    bool convertHexAsciiToDouble(double& value) const;  // 16 hex digits of an IEEE double
    bool toColorCode(unsigned& value) const;              // "#rrggbb"
    // A colour name in lower case to "#rrggbb"; an unknown name comes back unchanged.
    cVxString convertNamedColorString() const;

    // Characters
    static bool isPureAsciiCharacter(char c) { return static_cast<unsigned char>(c) < 128; }
    static bool isAsciiCharacter(char c);
    static bool isExpressionWordLimit(char c);
    bool checkHasNonAsciiCharacters() const;
    size_t getNumberOfNonAsciiCharacters() const;
    bool containsAlphaCharacters() const;
    bool containsOnlyAlphaCharacters() const;
    static cVxString convertExtendedAsciiCharacter(unsigned char c);  // Latin-1 to UTF-8
    cVxString replaceUtf8Characters() const;  // common UTF-8 symbols to ASCII look-alikes
    cVxString urlDecode() const;

    static const char* gammaUtf8() { return "\xCE\xB3"; }
    static const char* ohmUtf8() { return "\xCE\xA9"; }
    static const char* squareRootUtf8() { return "\xE2\x88\x9A"; }
    static const char* degreeUtf8() { return "\xC2\xB0"; }
    static const char* deltaUtf8() { return "\xCE\x94"; }

    // "name[3]" -> "name", 3
    bool removeIndex(int& index);
    // "name[7:0]" -> "name", 7, 0 (separator ':' by default)
    bool removeIndices(int& first, int& second, char separator = ':');

    // Replaces a name only where it stands between word limits.
    cVxString& replaceInExpression(std::string_view oldName, std::string_view newName);

    bool loadFromFile(const std::string& fileName);
    bool checkIsRegularExpression() const;
};

// Same idea over wide characters.
class cVxWideString : public std::wstring {
public:
    using std::wstring::wstring;
    cVxWideString(const std::wstring& text) : std::wstring(text) {}
    static cVxWideString createFromUtf8(std::string_view text);
    std::string toUtf8() const;
};

}  // namespace vx3
