#include "wxBrowserConfiguration.h"

#include <algorithm>
#include <cctype>

namespace vx3 {

using namespace browserConfiguration;

namespace {
const char* const kPriorityNames[nb_priorities] = {
    "File name",          "Section name",  "Analysis type", "Section alter index", "Section run index or parameter",
    "Additional section index", "Additional sweep variable value", "Curve name"};

const std::string kAnalysisRuleName = "analysis type";

std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    return text;
}

bool checkPartVerifies(double value, double low, double high)
{
    if (std::isnan(value))
        return true;
    const bool hasLow = !std::isnan(low), hasHigh = !std::isnan(high);
    if (hasLow && hasHigh && high < low)
        return value < high || value > low;  // inverted: outside the interval
    return (!hasLow || value >= low) && (!hasHigh || value <= high);
}
}  // namespace

std::string browserConfiguration::browserPriorityToString(unsigned priority)
{
    return priority < nb_priorities ? kPriorityNames[priority] : std::string();
}

// ---- wxNumericalFilter

void wxNumericalFilter::set(double minR, double maxR, double minI, double maxI)
{
    minReal = minR;
    maxReal = maxR;
    minImag = minI;
    maxImag = maxI;
    setFilterFlags();
}

void wxNumericalFilter::setFilterFlags()
{
    usedForReal = std::isfinite(minReal) || std::isfinite(maxReal);
    usedForImag = std::isfinite(minImag) || std::isfinite(maxImag);
}

bool wxNumericalFilter::checkVerifiesRule(double real, double imag) const
{
    if (usedForReal && !checkPartVerifies(real, minReal, maxReal))
        return false;
    return !usedForImag || checkPartVerifies(imag, minImag, maxImag);
}

bool wxNumericalFilter::operator==(const wxNumericalFilter& other) const
{
    auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    return same(minReal, other.minReal) && same(maxReal, other.maxReal) && same(minImag, other.minImag) &&
           same(maxImag, other.maxImag);
}

// ---- wxFilterRules

void wxFilterRules::setValueFlag(const std::string& name, const std::string& value, bool shown)
{
    mRules[name].values[value] = shown;
}

void wxFilterRules::setNumericalFilter(const std::string& name, const wxNumericalFilter& filter)
{
    mRules[name].numbers = filter;
    mRules[name].numbers.setFilterFlags();
}

bool wxFilterRules::checkVerifiesRule(const std::string& name, const std::string& value) const
{
    const auto found = mRules.find(name);
    if (found == mRules.end())
        return true;
    const auto flag = found->second.values.find(value);
    return flag == found->second.values.end() || flag->second;
}

bool wxFilterRules::checkVerifiesRule(const std::string& name, const std::string& value, double real,
                                      double imag) const
{
    if (!checkVerifiesRule(name, value))
        return false;
    const std::string everyName;
    for (const std::string* key : {&name, &everyName}) {
        const auto found = mRules.find(*key);
        if (found != mRules.end() && !found->second.numbers.checkVerifiesRule(real, imag))
            return false;
    }
    return true;
}

void wxFilterRules::setAll(bool flag)
{
    for (auto& [name, rule] : mRules)
        for (auto& [value, shown] : rule.values)
            shown = flag;
}

// ---- wxBrowserConfiguration

wxBrowserConfiguration& wxBrowserConfiguration::operator=(const wxBrowserConfiguration& other)
{
    if (this == &other)
        return *this;
    mPriorities = other.mPriorities;
    mRunParameters = other.mRunParameters;
    mSweepVariables = other.mSweepVariables;
    mRunRules = other.mRunRules;
    mSweepRules = other.mSweepRules;
    mAnalysisRules = other.mAnalysisRules;
    mRunStyle = other.mRunStyle;
    mFullNames = other.mFullNames;
    mToBeSaved.reset();
    return *this;
}

wxBrowserConfiguration wxBrowserConfiguration::copyOfSettings() const
{
    return *this;
}

void wxBrowserConfiguration::copyFromToBeSaved()
{
    if (!mToBeSaved)
        return;
    std::unique_ptr<wxBrowserConfiguration> copy = std::move(mToBeSaved);
    *this = *copy;
}

void wxBrowserConfiguration::setDefaults()
{
    mPriorities.clear();
    for (unsigned i = 0; i < nb_priorities; ++i)
        mPriorities.push_back(i);
}

bool wxBrowserConfiguration::checkPrioritiesAreStandard() const
{
    for (unsigned i = 0; i < mPriorities.size(); ++i)
        if (mPriorities[i] != i)
            return false;
    return mPriorities.size() == nb_priorities;
}

bool wxBrowserConfiguration::checkFileNameIsTopPriority() const
{
    return !mPriorities.empty() && mPriorities.front() == file_name;
}

bool wxBrowserConfiguration::checkCurveNameIsBottomPriority() const
{
    return !mPriorities.empty() && mPriorities.back() == curve_name;
}

unsigned wxBrowserConfiguration::getGroupPriority(size_t index) const
{
    return index < mPriorities.size() ? mPriorities[index] : unsigned(no_priority);
}

std::string wxBrowserConfiguration::getGroupPriorityAsString(size_t index) const
{
    return browserPriorityToString(getGroupPriority(index));
}

bool wxBrowserConfiguration::moveGroupPriorityUp(size_t index)
{
    if (index == 0 || index >= mPriorities.size())
        return false;
    std::swap(mPriorities[index], mPriorities[index - 1]);
    return true;
}

bool wxBrowserConfiguration::moveGroupPriorityDown(size_t index)
{
    if (index + 1 >= mPriorities.size())
        return false;
    std::swap(mPriorities[index], mPriorities[index + 1]);
    return true;
}

unsigned wxBrowserConfiguration::findGroupPriority(const std::string& text)
{
    const std::string wanted = lowered(text);
    for (unsigned i = 0; i < nb_priorities; ++i)
        if (lowered(kPriorityNames[i]) == wanted)
            return i;
    return no_priority;
}

bool wxBrowserConfiguration::setGroupPriorities(const std::vector<std::string>& names, std::string& unknown)
{
    std::vector<unsigned> order;
    for (const std::string& name : names) {
        const unsigned priority = findGroupPriority(name);
        if (priority == no_priority) {
            unknown = name;
            return false;
        }
        if (std::find(order.begin(), order.end(), priority) == order.end())
            order.push_back(priority);
    }
    for (unsigned priority : mPriorities)
        if (std::find(order.begin(), order.end(), priority) == order.end())
            order.push_back(priority);
    mPriorities = std::move(order);
    return true;
}

void wxBrowserConfiguration::setRunParameterOrder(const std::vector<std::string>& names)
{
    std::vector<std::string> order;
    for (const auto& name : names)
        if (std::find(order.begin(), order.end(), name) == order.end())
            order.push_back(name);
    for (const auto& name : mRunParameters)
        if (std::find(order.begin(), order.end(), name) == order.end())
            order.push_back(name);
    mRunParameters = std::move(order);
}

void wxBrowserConfiguration::setSweepVariableOrder(const std::vector<std::string>& names)
{
    std::vector<std::string> order;
    for (const auto& name : names)
        if (std::find(order.begin(), order.end(), name) == order.end())
            order.push_back(name);
    for (const auto& name : mSweepVariables)
        if (std::find(order.begin(), order.end(), name) == order.end())
            order.push_back(name);
    mSweepVariables = std::move(order);
}

bool wxBrowserConfiguration::addRunParameterName(const std::string& name)
{
    if (std::find(mRunParameters.begin(), mRunParameters.end(), name) != mRunParameters.end())
        return false;
    mRunParameters.push_back(name);
    return true;
}

bool wxBrowserConfiguration::addSweepVariableName(const std::string& name)
{
    if (std::find(mSweepVariables.begin(), mSweepVariables.end(), name) != mSweepVariables.end())
        return false;
    mSweepVariables.push_back(name);
    return true;
}

bool wxBrowserConfiguration::moveEntry(std::vector<std::string>& list, size_t index, bool up)
{
    if (index >= list.size() || (up && index == 0) || (!up && index + 1 >= list.size()))
        return false;
    std::swap(list[index], list[up ? index - 1 : index + 1]);
    return true;
}

bool wxBrowserConfiguration::moveRunParameterUp(size_t index) { return moveEntry(mRunParameters, index, true); }
bool wxBrowserConfiguration::moveRunParameterDown(size_t index) { return moveEntry(mRunParameters, index, false); }
bool wxBrowserConfiguration::moveSweepVariableUp(size_t index) { return moveEntry(mSweepVariables, index, true); }
bool wxBrowserConfiguration::moveSweepVariableDown(size_t index) { return moveEntry(mSweepVariables, index, false); }

bool wxBrowserConfiguration::checkVerifiesParameterFilterRules(const std::string& name, const std::string& value,
                                                               double real, double imag) const
{
    return mRunRules.checkVerifiesRule(name, value, real, imag);
}

bool wxBrowserConfiguration::checkVerifiesSweepFilterRules(const std::string& name, const std::string& value,
                                                           double real, double imag) const
{
    return mSweepRules.checkVerifiesRule(name, value, real, imag);
}

bool wxBrowserConfiguration::checkVerifiesAnalysisTypeFilterRules(const std::string& name) const
{
    return mAnalysisRules.checkVerifiesRule(kAnalysisRuleName, name);
}

void wxBrowserConfiguration::clearRules()
{
    mRunRules.clearFilterRule();
    mSweepRules.clearFilterRule();
    mAnalysisRules.clearFilterRule();
}

bool wxBrowserConfiguration::setRunParameterStyle(const std::string& word)
{
    const std::string w = lowered(word);
    if (w == "values" || w == "value")
        mRunStyle = style_values;
    else if (w == "names" || w == "names_and_values" || w == "name")
        mRunStyle = style_names_and_values;
    else if (w == "run" || w == "run_index" || w == "index")
        mRunStyle = style_run_index;
    else
        return false;
    return true;
}

}  // namespace vx3
