// Names of curves as readers find them in files.
#include "base/cVxString.h"
#include "base/namedColors.h"
#include "model/curveStyleTypes.h"
#include "readers/cCurveParserIntermediate.h"

namespace vx3 {

namespace {
bool endsWithNoCase(const std::string& text, std::string_view suffix)
{
    return text.size() >= suffix.size() &&
           vxString::to_lower(std::string_view(text).substr(text.size() - suffix.size())) == suffix;
}
}  // namespace

std::string cCurveParserIntermediate::simplifyBranchName(const std::string& name)
{
    static constexpr std::string_view branch = "#branch";
    if (name.size() <= branch.size() || !endsWithNoCase(name, branch))
        return name;
    std::string device = name.substr(0, name.size() - branch.size());
    // A simulator names a source inside a subcircuit by its device letter, a dot, then the path.
    if (device.size() > 2 && device[1] == '.' && std::isalpha(static_cast<unsigned char>(device[0])) &&
        device.find('.', 2) != std::string::npos)
        device.erase(0, 2);
    return "i(" + device + ")";
}

std::string cCurveParserIntermediate::adaptVariableName(const std::string& name) const
{
    return mOptions.getFlagSimplifyInstanceNamesForCurrents() ? simplifyBranchName(name) : name;
}

std::string cCurveParserIntermediate::getUnitFromCitiVariableName(const std::string& name)
{
    std::string text = vxString::to_lower(vxString::trim(name));
    for (const char* wrapper : {"re(", "im(", "mag(", "db("})
        if (text.rfind(wrapper, 0) == 0) {
            text.erase(0, std::string_view(wrapper).size());
            break;
        }
    if (text == "voltage" || text == "u")
        return "V";
    if (text == "height")
        return "m";
    if (text == "voltage_ratio" || text == "user" || text.rfind("user[", 0) == 0)
        return "";
    if (text.size() >= 1 && (text.size() == 1 || text[1] == '[' || std::isdigit(static_cast<unsigned char>(text[1])))) {
        switch (text[0]) {
        case 'z': return "Ohm";
        case 'y': return "S";
        case 's': case 'g': case 'h': case 'e': return "";
        default: break;
        }
    }
    return "";
}

bool cCurveParserIntermediate::checkNamesDefineRealAndImagPartOfSameCurve(const std::string& a, const std::string& b,
                                                                          std::string& common)
{
    // Markers as prefixes and as suffixes, in any case.
    static const std::pair<const char*, const char*> prefixes[] = {{"re(", "im("}, {"real(", "imag("}, {"re ", "im "}};
    static const std::pair<const char*, const char*> suffixes[] = {
        {"_re", "_im"}, {".re", ".im"}, {"_real", "_imag"}, {".real", ".imag"}, {" re", " im"}, {"(re)", "(im)"}};
    const std::string la = vxString::to_lower(a), lb = vxString::to_lower(b);
    for (const auto& [re, im] : prefixes) {
        const size_t n = std::string_view(re).size(), m = std::string_view(im).size();
        if (la.rfind(re, 0) == 0 && lb.rfind(im, 0) == 0 && a.substr(n) == b.substr(m)) {
            common = a.substr(n);
            if (common.size() && common.back() == ')' && std::string_view(re).back() == '(')
                common.pop_back();
            return !common.empty();
        }
    }
    for (const auto& [re, im] : suffixes) {
        const size_t n = std::string_view(re).size(), m = std::string_view(im).size();
        if (endsWithNoCase(la, re) && endsWithNoCase(lb, im) && a.size() > n &&
            a.substr(0, a.size() - n) == b.substr(0, b.size() - m)) {
            common = a.substr(0, a.size() - n);
            return true;
        }
    }
    return false;
}

std::vector<std::string> cCurveParserIntermediate::getFoundHierarchySeparators(const std::vector<std::string>& names)
{
    bool found[6] = {false, false, false, false, false, false};
    static const char* const separators[] = {".", "/", ":", "::", "|", "@"};
    for (std::string name : names) {
        if ((name.rfind("I(", 0) == 0 || name.rfind("i(", 0) == 0) && name.size() > 2) {
            name.erase(0, 2);
            if (!name.empty() && name.back() == ')')
                name.pop_back();
        }
        const size_t branch = vxString::to_lower(name).find("#branch");
        if (branch != std::string::npos)
            name.erase(branch);
        for (size_t i = 0; i < name.size(); ++i) {
            switch (name[i]) {
            case '.': found[0] = true; break;
            case '/': found[1] = true; break;
            case '|': found[4] = true; break;
            case '@': found[5] = true; break;
            case ':':
                if (i + 1 < name.size() && name[i + 1] == ':') {
                    found[3] = true;
                    ++i;
                } else {
                    found[2] = true;
                }
                break;
            default: break;
            }
        }
    }
    std::vector<std::string> result;
    for (int i = 0; i < 6; ++i)
        if (found[i])
            result.emplace_back(separators[i]);
    return result;
}

bool cCurveParserIntermediate::checkStringDefinesColour(const std::string& text)
{
    unsigned code = 0;
    return cVxString(text).toColorCode(code) || findNamedColor(vxString::to_lower(vxString::trim(text))) != nullptr;
}

bool cCurveParserIntermediate::checkStringDefinesLineStyle(const std::string& text)
{
    return curvePlotProperties::get_line_style_from_string(text) >= 0;
}

bool cCurveParserIntermediate::checkStringDefinesLineSymbol(const std::string& text)
{
    return curvePlotProperties::get_symbol_from_string(text) >= 0;
}

}  // namespace vx3
