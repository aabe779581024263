// The rules of the curve browser: the order of the levels of its tree, the order of run parameters
// and sweep variables, and the filters on run parameters, sweep variables and analysis types.
// Without Qt, so that the rows and the commands can be tested headless.
#pragma once

#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace vx3 {

namespace browserConfiguration {

enum browser_priority_type : unsigned {
    file_name = 0,
    section_name = 1,
    analysis_type = 2,
    section_alter_index = 3,
    section_run_index_or_parameter = 4,
    additional_section_index = 5,
    additional_sweep_variable_value = 6,
    curve_name = 7,
    nb_priorities = 8,
    no_priority = nb_priorities
};

// How a run shows in the tree: its parameter values alone, as name=value, or its run number.
enum run_parameter_style : unsigned { style_values = 0, style_names_and_values = 1, style_run_index = 2 };

std::string browserPriorityToString(unsigned priority);

// Bounds of a value: NaN is no bound. With both bounds of a part set and the maximum below the
// minimum, the rule is inverted and the value must lie outside.
class wxNumericalFilter {
public:
    double minReal = std::numeric_limits<double>::quiet_NaN();
    double maxReal = std::numeric_limits<double>::quiet_NaN();
    double minImag = std::numeric_limits<double>::quiet_NaN();
    double maxImag = std::numeric_limits<double>::quiet_NaN();
    bool usedForReal = false;
    bool usedForImag = false;

    void set(double minR, double maxR, double minI, double maxI);
    void setFilterFlags();
    bool checkIsUsed() const { return usedForReal || usedForImag; }
    bool checkVerifiesRule(double real, double imag) const;
    bool operator==(const wxNumericalFilter& other) const;
};

// Per name (a parameter or a sweep variable): the values with a flag shown or not, and a number
// filter. An unknown name or value passes.
class wxFilterRules {
public:
    struct cRule {
        std::map<std::string, bool> values;
        wxNumericalFilter numbers;
        bool operator==(const cRule& other) const = default;
    };

    void setValueFlag(const std::string& name, const std::string& value, bool shown);
    void setNumericalFilter(const std::string& name, const wxNumericalFilter& filter);
    // The rule of the name "" applies to every name (a number filter given without a name).
    bool checkVerifiesRule(const std::string& name, const std::string& value) const;
    bool checkVerifiesRule(const std::string& name, const std::string& value, double real, double imag) const;
    void setAll(bool flag);
    void clearFilterRule() { mRules.clear(); }
    bool empty() const { return mRules.empty(); }
    const std::map<std::string, cRule>& rules() const { return mRules; }
    bool operator==(const wxFilterRules& other) const = default;

private:
    std::map<std::string, cRule> mRules;
};

}  // namespace browserConfiguration

class wxBrowserConfiguration {
public:
    using browser_priority_type = browserConfiguration::browser_priority_type;

    wxBrowserConfiguration() { setDefaults(); }
    void setDefaults();
    bool checkPrioritiesAreStandard() const;
    bool checkFileNameIsTopPriority() const;
    bool checkCurveNameIsBottomPriority() const;

    const std::vector<unsigned>& getGroupPriorities() const { return mPriorities; }
    unsigned getGroupPriority(size_t index) const;
    std::string getGroupPriorityAsString(size_t index) const;
    bool moveGroupPriorityUp(size_t index);
    bool moveGroupPriorityDown(size_t index);
    // The priority of a level's text, case-insensitive, or no_priority.
    static unsigned findGroupPriority(const std::string& text);
    // Named levels go first in the given order, the others follow in their present order. False
    // (and nothing changes) when a name is unknown.
    bool setGroupPriorities(const std::vector<std::string>& names, std::string& unknown);

    // Orders of run parameters and sweep variables; names not in them are appended when seen.
    const std::vector<std::string>& getRunParameterOrder() const { return mRunParameters; }
    const std::vector<std::string>& getSweepVariableOrder() const { return mSweepVariables; }
    void setRunParameterOrder(const std::vector<std::string>& names);
    void setSweepVariableOrder(const std::vector<std::string>& names);
    // Appends a name not yet in the order; true when it was new.
    bool addRunParameterName(const std::string& name);
    bool addSweepVariableName(const std::string& name);
    bool moveRunParameterUp(size_t index);
    bool moveRunParameterDown(size_t index);
    bool moveSweepVariableUp(size_t index);
    bool moveSweepVariableDown(size_t index);

    browserConfiguration::wxFilterRules& runParameterRules() { return mRunRules; }
    browserConfiguration::wxFilterRules& sweepVariableRules() { return mSweepRules; }
    browserConfiguration::wxFilterRules& analysisTypeRules() { return mAnalysisRules; }
    const browserConfiguration::wxFilterRules& runParameterRules() const { return mRunRules; }
    const browserConfiguration::wxFilterRules& sweepVariableRules() const { return mSweepRules; }
    const browserConfiguration::wxFilterRules& analysisTypeRules() const { return mAnalysisRules; }
    bool checkVerifiesParameterFilterRules(const std::string& name, const std::string& value, double real,
                                           double imag) const;
    bool checkVerifiesSweepFilterRules(const std::string& name, const std::string& value, double real,
                                       double imag) const;
    bool checkVerifiesAnalysisTypeFilterRules(const std::string& name) const;
    void setAnalysisTypeFlag(const std::string& type, bool shown) { mAnalysisRules.setValueFlag("analysis type", type, shown); }
    bool checkHasFilterRules() const { return !mRunRules.empty() || !mSweepRules.empty() || !mAnalysisRules.empty(); }
    void clearRules();

    unsigned getRunParameterStyle() const { return mRunStyle; }
    void setRunParameterStyle(unsigned style) { mRunStyle = style; }
    // "values", "names" or "run"; false for another word.
    bool setRunParameterStyle(const std::string& word);
    bool getUseFullHierarchicalNames() const { return mFullNames; }
    void setUseFullHierarchicalNames(bool flag) { mFullNames = flag; }

    // The rules as one record of the configuration file (wxBrowserConfigurationRecord.cpp): the
    // order of levels, of run parameters and of sweep variables, the run parameter style and the
    // three filters. A record that can't be read, or whose levels are not the eight known ones,
    // changes nothing and answers false. Full hierarchical names are an option of their own.
    std::string serialize() const;
    bool deserialize(const std::string& record);

    // A dialog edits a copy and takes it back on apply, so that cancel leaves the rules alone.
    void copyToConfigToBeSaved() { mToBeSaved = std::make_unique<wxBrowserConfiguration>(copyOfSettings()); }
    void copyFromToBeSaved();

private:
    wxBrowserConfiguration copyOfSettings() const;
    static bool moveEntry(std::vector<std::string>& list, size_t index, bool up);

    std::vector<unsigned> mPriorities;
    std::vector<std::string> mRunParameters;
    std::vector<std::string> mSweepVariables;
    browserConfiguration::wxFilterRules mRunRules;
    browserConfiguration::wxFilterRules mSweepRules;
    browserConfiguration::wxFilterRules mAnalysisRules;
    unsigned mRunStyle = browserConfiguration::style_values;
    bool mFullNames = false;
    std::unique_ptr<wxBrowserConfiguration> mToBeSaved;

public:
    wxBrowserConfiguration(const wxBrowserConfiguration& other) { *this = other; }
    wxBrowserConfiguration& operator=(const wxBrowserConfiguration& other);
};

}  // namespace vx3
