#include "readers/nutmeg/nutmegPlot.h"

#include <cstring>

#include "base/cVxString.h"
#include "model/fileDbType.h"

namespace vx3::curvePlotParserNutmeg {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v'; }

std::string trim(const char* begin, const char* end)
{
    while (begin < end && isBlank(*begin))
        ++begin;
    while (end > begin && isBlank(end[-1]))
        --end;
    return std::string(begin, end);
}

// One line: [begin, end) without its line end; next is the start of the following line.
struct cLine {
    const char* begin;
    const char* end;
    uint64_t next;
};

bool nextLine(const char* text, uint64_t size, uint64_t position, cLine& line)
{
    if (position >= size)
        return false;
    const void* found = std::memchr(text + position, '\n', size - position);
    const char* eol = found ? static_cast<const char*>(found) : text + size;
    line.begin = text + position;
    line.end = eol;
    line.next = found ? static_cast<uint64_t>(eol - text) + 1 : size;
    return true;
}

std::vector<std::string> splitBlanks(const std::string& text)
{
    std::vector<std::string> words;
    size_t i = 0;
    while (i < text.size()) {
        while (i < text.size() && isBlank(text[i]))
            ++i;
        const size_t start = i;
        while (i < text.size() && !isBlank(text[i]))
            ++i;
        if (i > start)
            words.push_back(text.substr(start, i - start));
    }
    return words;
}

bool isInteger(const std::string& text)
{
    if (text.empty())
        return false;
    for (char c : text)
        if (c < '0' || c > '9')
            return false;
    return true;
}

// The keys that may open a plot; text starting otherwise is no raw file.
bool isKnownKey(const std::string& key)
{
    static const char* const keys[] = {"title",   "date",        "plotname",  "flags",     "no. variables",
                                       "no. points", "command", "option",    "options",   "temperature",
                                       "source",  "variables",   "dimensions", "offset",  "version"};
    for (const char* known : keys)
        if (key == known)
            return true;
    return false;
}

bool startsWithNoCase(const std::string& text, const char* word)
{
    const size_t n = std::strlen(word);
    return text.size() >= n && vxString::to_lower(text.substr(0, n)) == word;
}

}  // namespace

bool checkIsHeader(const char* text, uint64_t size, uint64_t position)
{
    while (position < size && isBlank(text[position]))
        ++position;
    cLine line{};
    if (!nextLine(text, size, position, line))
        return false;
    const char* colon = static_cast<const char*>(std::memchr(line.begin, ':', static_cast<size_t>(line.end - line.begin)));
    if (!colon || colon - line.begin > 40)
        return false;
    return isKnownKey(vxString::to_lower(trim(line.begin, colon)));
}

header_result parseHeader(const char* text, uint64_t size, uint64_t position, cPlotHeader& header)
{
    header = cPlotHeader();
    while (position < size && isBlank(text[position]))
        ++position;
    if (!checkIsHeader(text, size, position))
        return header_none;
    cLine line{};
    bool inVariables = false;
    while (nextLine(text, size, position, line)) {
        position = line.next;
        const std::string whole = trim(line.begin, line.end);
        if (whole.empty())
            continue;
        if (inVariables) {
            const std::vector<std::string> words = splitBlanks(whole);
            const bool full = header.nbOfVariables >= 0 &&
                              static_cast<int64_t>(header.variables.size()) >= header.nbOfVariables;
            if (!full && words.size() >= 2 && isInteger(words[0])) {
                header.variables.push_back({words[1], words.size() > 2 ? words[2] : std::string()});
                continue;
            }
            inVariables = false;
            // The line after the list names the values' form.
            if (startsWithNoCase(whole, "values:")) {
                // Ascii rows may begin on the same line.
                const void* colon = std::memchr(line.begin, ':', static_cast<size_t>(line.end - line.begin));
                header.dataPosition = static_cast<uint64_t>(static_cast<const char*>(colon) - text) + 1;
                header.binary = false;
            } else if (startsWithNoCase(whole, "binary:")) {
                header.binary = true;
                header.dataPosition = line.next;
                const std::string lower = vxString::to_lower(whole);
                if (lower.compare(0, 9, "binary:8:") == 0 || lower == "binary:8")
                    header.doublePrecisionStated = true;
                if (lower.find("(float)") != std::string::npos)
                    header.singlePrecision = true;
                // The block starts right after the line end, whatever bytes follow.
                if (line.end == text + size)
                    header.dataPosition = size;
            } else {
                return header_no_values;
            }
            if (header.variables.empty() ||
                (header.nbOfVariables >= 0 && static_cast<int64_t>(header.variables.size()) != header.nbOfVariables))
                return header_bad_count;
            return header_ok;
        }
        if (whole[0] == '#') {
            header.properties.push_back({"#", trim(whole.data() + 1, whole.data() + whole.size())});
            continue;
        }
        const size_t colon = whole.find(':');
        if (colon == std::string::npos) {
            header.properties.push_back({"", whole});
            continue;
        }
        const std::string key = vxString::to_lower(trim(whole.data(), whole.data() + colon));
        const std::string value = trim(whole.data() + colon + 1, whole.data() + whole.size());
        if (key == "values" || key == "binary")
            return header_no_values;  // values before any variable list
        if (key == "title") {
            header.title = value;
        } else if (key == "plotname") {
            header.plotName = value;
        } else if (key == "flags") {
            header.flags = value;
            const std::string lower = vxString::to_lower(value);
            header.complex = lower.find("complex") != std::string::npos;
            if (lower.find("(float)") != std::string::npos)
                header.singlePrecision = true;
        } else if (key == "no. variables") {
            header.nbOfVariables = isInteger(value) ? static_cast<int64_t>(std::stoll(value)) : -1;
        } else if (key == "no. points") {
            header.nbOfPoints = isInteger(value) ? static_cast<int64_t>(std::stoll(value)) : -1;
        } else if (key == "variables") {
            inVariables = true;
            // Some writers put the first variable on the same line.
            const std::vector<std::string> words = splitBlanks(value);
            if (words.size() >= 2 && isInteger(words[0]))
                header.variables.push_back({words[1], words.size() > 2 ? words[2] : std::string()});
        } else {
            if (key == "source" && vxString::to_lower(value).find("smartspice") != std::string::npos)
                header.smartSpice = true;
            header.properties.push_back({trim(whole.data(), whole.data() + colon), value});
        }
        if (whole.find("(float)") != std::string::npos)
            header.singlePrecision = true;
    }
    return inVariables || !header.variables.empty() ? header_no_values : header_none;
}

uint64_t computeStride(uint64_t nbOfVariables, bool complex, unsigned layout, bool hasRowEnd)
{
    if (nbOfVariables == 0)
        return 0;
    uint64_t stride = 0;
    switch (layout) {
    case layout_double: stride = nbOfVariables * 8; break;
    case layout_single_double_sweep: stride = nbOfVariables * 4 + 4; break;
    default: stride = nbOfVariables * 4; break;
    }
    return (complex ? 2 * stride : stride) + (hasRowEnd ? 1 : 0);
}

unsigned sweepWidth(unsigned layout) { return layout == layout_single ? 4 : 8; }

unsigned curveWidth(unsigned layout) { return layout == layout_double ? 8 : 4; }

uint64_t columnOffset(uint64_t index, bool complex, unsigned layout)
{
    const unsigned parts = complex ? 2 : 1;
    if (index == 0)
        return 0;
    return parts * (sweepWidth(layout) + (index - 1) * curveWidth(layout));
}

unsigned dbTypeOf(unsigned layout, bool bigEndian)
{
    return fileDbSupport::nutmeg_binary_7 + 2 * layout + (bigEndian ? 1 : 0);
}

unsigned layoutOfDbType(unsigned dbType)
{
    return dbType >= fileDbSupport::nutmeg_binary_7 && dbType <= fileDbSupport::nutmeg_binary_12
               ? (dbType - fileDbSupport::nutmeg_binary_7) / 2
               : layout_double;
}

bool checkEndiannessIsOk(unsigned dbType)
{
    return dbType >= fileDbSupport::nutmeg_binary_7 && dbType <= fileDbSupport::nutmeg_binary_12;
}

double readValue(const char* p, unsigned width, bool bigEndian)
{
    char bytes[8];
    std::memcpy(bytes, p, width);
    if (bigEndian)
        for (unsigned i = 0; i < width / 2; ++i)
            std::swap(bytes[i], bytes[width - 1 - i]);
    if (width == 8) {
        double value;
        std::memcpy(&value, bytes, 8);
        return value;
    }
    float value;
    std::memcpy(&value, bytes, 4);
    return value;
}

}  // namespace vx3::curvePlotParserNutmeg
