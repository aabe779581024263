// The XML texts of drops and the clipboard: a list of commands (vx_zelwave_command) and the
// curve list that windows exchange (vx_zelwave_curve_list).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vx3 {

namespace zelWaveXmlParser {
struct cSection {
    uint64_t identifier = 0;
    uint64_t nbSweepVariables = 0;
    std::string name;
    std::string file;
};
struct cAnnotation {
    std::string text;
    std::string data;
    // The numbers of data, split at blanks, commas and semicolons; false if one does not convert.
    bool parseData(std::vector<double>& values) const;
};
struct cProperty {
    std::string name;
    std::string value;
};
struct cCurve {
    uint64_t sectionIdentifier = 0;
    uint64_t index = 0;
    std::string sectionName;
    std::string name;
    std::string unit;
    int64_t busWidth = -1;  // -1: not a bus
    int64_t busIndex = -1;
    std::vector<int64_t> sweepPermutation;
    std::vector<int64_t> sweepIndices;
    std::string spicePwlSource;
    std::string spiceNodeset;
    std::vector<cAnnotation> annotations;
    std::vector<cProperty> properties;
    bool checkUnitIsCurrent() const;
};
struct cInstance {
    uint64_t sectionIdentifier = 0;
    uint64_t index = 0;
    std::string name;
};
}  // namespace zelWaveXmlParser

class cZelWaveXmlParser {
public:
    // Either root element; false when the text is not XML of these forms.
    bool parseXmlString(const std::string& text);
    bool checkContainsData() const { return !mCurves.empty() || !mSections.empty() || !mInstances.empty(); }
    void clear();

    // The curve list, each element on a line of its own.
    std::string generateXmlString() const;
    static std::string generateCommandXmlString(const std::vector<std::string>& commands);

    uint64_t instanceIdentifier = 0;
    std::vector<zelWaveXmlParser::cSection>& sections() { return mSections; }
    std::vector<zelWaveXmlParser::cCurve>& curves() { return mCurves; }
    std::vector<zelWaveXmlParser::cInstance>& instances() { return mInstances; }
    const std::vector<std::string>& commands() const { return mCommands; }
    const std::vector<zelWaveXmlParser::cCurve>& curves() const { return mCurves; }
    const std::vector<zelWaveXmlParser::cSection>& sections() const { return mSections; }

private:
    std::vector<zelWaveXmlParser::cSection> mSections;
    std::vector<zelWaveXmlParser::cCurve> mCurves;
    std::vector<zelWaveXmlParser::cInstance> mInstances;
    std::vector<std::string> mCommands;
};

}  // namespace vx3
