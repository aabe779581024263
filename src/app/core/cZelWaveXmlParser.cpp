#include "cZelWaveXmlParser.h"

#include <tinyxml2.h>

#include <cstring>

#include "base/cVxString.h"

namespace vx3 {

using namespace zelWaveXmlParser;

namespace {

uint64_t attributeUnsigned(const tinyxml2::XMLElement& element, const char* name)
{
    uint64_t value = 0;
    const char* text = element.Attribute(name);
    if (text)
        cVxString(vxString::trim(text)).toUint64(value);
    return value;
}

int64_t attributeSigned(const tinyxml2::XMLElement& element, const char* name, int64_t defaultValue)
{
    int64_t value = defaultValue;
    const char* text = element.Attribute(name);
    if (text && !cVxString(vxString::trim(text)).toInt64(value))
        value = defaultValue;
    return value;
}

std::string attributeText(const tinyxml2::XMLElement& element, const char* name)
{
    const char* text = element.Attribute(name);
    return text ? text : "";
}

// "[1,0]" or "1,0" or "1 0".
std::vector<int64_t> attributeList(const tinyxml2::XMLElement& element, const char* name)
{
    std::vector<int64_t> values;
    std::string text = attributeText(element, name);
    for (char& c : text)
        if (c == '[' || c == ']' || c == ',' || c == ';')
            c = ' ';
    std::vector<cVxString> parts;
    cVxString(vxString::trim_multiple_space(vxString::trim(text))).splitString(parts, ' ');
    for (const auto& part : parts) {
        int64_t value = 0;
        if (!part.empty() && part.toInt64(value))
            values.push_back(value);
    }
    return values;
}

std::string elementText(const tinyxml2::XMLElement& element)
{
    const char* text = element.GetText();
    return text ? vxString::trim(text) : std::string();
}

// Text written by us: the five XML entities. In attribute values line ends and tabs become
// character references too, since a reader normalises them (a lone "\r" came back as "\n").
std::string escape(const std::string& text, bool attribute = true)
{
    std::string result;
    for (char c : text) {
        switch (c) {
        case '&': result += "&amp;"; break;
        case '<': result += "&lt;"; break;
        case '>': result += "&gt;"; break;
        case '"': result += "&quot;"; break;
        case '\'': result += "&apos;"; break;
        case '\r': result += attribute ? "&#13;" : "\r"; break;
        case '\n': result += attribute ? "&#10;" : "\n"; break;
        case '\t': result += attribute ? "&#9;" : "\t"; break;
        default: result += c;
        }
    }
    return result;
}

class cVisitor : public tinyxml2::XMLVisitor {
public:
    explicit cVisitor(cZelWaveXmlParser& parser) : mParser(parser) {}
    bool VisitEnter(const tinyxml2::XMLElement& element, const tinyxml2::XMLAttribute*) override
    {
        const char* name = element.Name();
        if (std::strcmp(name, "vx_zelwave_curve_list") == 0) {
            mParser.instanceIdentifier = attributeUnsigned(element, "instance_id");
        } else if (std::strcmp(name, "curve") == 0) {
            cCurve curve;
            curve.sectionIdentifier = attributeUnsigned(element, "section_id");
            curve.index = attributeUnsigned(element, "index");
            curve.sectionName = attributeText(element, "section");
            curve.name = attributeText(element, "name");
            curve.unit = attributeText(element, "unit");
            curve.busWidth = attributeSigned(element, "bus_width", -1);
            curve.busIndex = attributeSigned(element, "bus_index", -1);
            curve.sweepPermutation = attributeList(element, "sweep_var_perm");
            curve.sweepIndices = attributeList(element, "sweep_var_indices");
            mParser.curves().push_back(std::move(curve));
            mInCurve = true;
        } else if (std::strcmp(name, "annotation") == 0 && mInCurve) {
            mParser.curves().back().annotations.push_back(
                {attributeText(element, "text"), attributeText(element, "data")});
        } else if (std::strcmp(name, "spice_pwl_src") == 0 && mInCurve) {
            mParser.curves().back().spicePwlSource = elementText(element);
        } else if (std::strcmp(name, "spice_nodeset") == 0 && mInCurve) {
            mParser.curves().back().spiceNodeset = elementText(element);
        } else if (std::strcmp(name, "property") == 0 && mInCurve) {
            mParser.curves().back().properties.push_back({attributeText(element, "name"), elementText(element)});
        } else if (std::strcmp(name, "section") == 0) {
            mParser.sections().push_back({attributeUnsigned(element, "id"),
                                          attributeUnsigned(element, "nb_sweep_variables"),
                                          attributeText(element, "name"), attributeText(element, "file")});
        } else if (std::strcmp(name, "instance") == 0) {
            mParser.instances().push_back({attributeUnsigned(element, "section_id"),
                                           attributeUnsigned(element, "index"), attributeText(element, "name")});
        }
        return true;
    }
    bool VisitExit(const tinyxml2::XMLElement& element) override
    {
        if (std::strcmp(element.Name(), "curve") == 0)
            mInCurve = false;
        return true;
    }

private:
    cZelWaveXmlParser& mParser;
    bool mInCurve = false;
};

}  // namespace

bool cAnnotation::parseData(std::vector<double>& values) const
{
    std::string text = data;
    for (char& c : text)
        if (c == ',' || c == ';' || c == '\t' || c == '\n')
            c = ' ';
    std::vector<cVxString> parts;
    cVxString(vxString::trim_multiple_space(vxString::trim(text))).splitString(parts, ' ');
    std::vector<double> result;
    for (const auto& part : parts) {
        if (part.empty())
            continue;
        double value = 0;
        if (!part.toDouble(value))
            return false;
        result.push_back(value);
    }
    values = std::move(result);
    return true;
}

bool cCurve::checkUnitIsCurrent() const
{
    return unit == "A" || unit == "a" || name.rfind("I(", 0) == 0 || name.rfind("i(", 0) == 0;
}

void cZelWaveXmlParser::clear()
{
    instanceIdentifier = 0;
    mSections.clear();
    mCurves.clear();
    mInstances.clear();
    mCommands.clear();
}

bool cZelWaveXmlParser::parseXmlString(const std::string& text)
{
    clear();
    tinyxml2::XMLDocument document;
    if (document.Parse(text.c_str(), text.size()) != tinyxml2::XML_SUCCESS)
        return false;
    const tinyxml2::XMLElement* root = document.RootElement();
    if (!root)
        return false;
    if (std::strcmp(root->Name(), "vx_zelwave_command") == 0) {
        std::string commands = root->GetText() ? root->GetText() : "";
        for (char& c : commands)
            if (c == '\r')
                c = '\n';
        std::vector<cVxString> lines;
        cVxString(commands).splitString(lines, '\n');
        for (const auto& line : lines) {
            std::string command = vxString::trim(line);
            if (!command.empty())
                mCommands.push_back(command);
        }
        return true;
    }
    if (std::strcmp(root->Name(), "vx_zelwave_curve_list") != 0)
        return false;
    cVisitor visitor(*this);
    root->Accept(&visitor);
    return true;
}

std::string cZelWaveXmlParser::generateXmlString() const
{
    std::string xml = "<?xml version=\"1.0\" ?>\n";
    xml += "<vx_zelwave_curve_list instance_id=\"" + std::to_string(instanceIdentifier) + "\" >\n";
    for (const auto& curve : mCurves) {
        xml += "<curve section_id=\"" + std::to_string(curve.sectionIdentifier) + "\" index=\"" +
               std::to_string(curve.index) + "\" section=\"" + escape(curve.sectionName) + "\" name=\"" +
               escape(curve.name) + "\" unit=\"" + escape(curve.unit) + "\"";
        if (curve.busWidth >= 0)
            xml += " bus_width=\"" + std::to_string(curve.busWidth) + "\" bus_index=\"" +
                   std::to_string(curve.busIndex) + "\"";
        xml += " />\n";
    }
    for (const auto& section : mSections)
        xml += "<section id=\"" + std::to_string(section.identifier) + "\" nb_sweep_variables=\"" +
               std::to_string(section.nbSweepVariables) + "\" name=\"" + escape(section.name) + "\" file=\"" +
               escape(section.file) + "\" />\n";
    for (const auto& instance : mInstances)
        xml += "<instance section_id=\"" + std::to_string(instance.sectionIdentifier) + "\" index=\"" +
               std::to_string(instance.index) + "\" name=\"" + escape(instance.name) + "\" />\n";
    xml += "</vx_zelwave_curve_list>\n";
    return xml;
}

std::string cZelWaveXmlParser::generateCommandXmlString(const std::vector<std::string>& commands)
{
    std::string xml = "<?xml version=\"1.0\" ?>\n<vx_zelwave_command>";
    for (const auto& command : commands)
        xml += "\n" + escape(command, false);
    xml += "\n</vx_zelwave_command>\n";
    return xml;
}

}  // namespace vx3
