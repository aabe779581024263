// Argument carriers of commands and of the actions they turn into on their way to a plot.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vx3 {

// Generic carrier: typed argument and return vectors read and written by index.
// A missing index reads as an empty string or 0.
class cVxAction {
public:
    virtual ~cVxAction() = default;

    void clearAction();
    bool handled = false;
    int actionType = 0;

    const std::string& getStringArgument(size_t index) const;
    std::string getStringArgumentLowerCase(size_t index) const;
    void setStringArgument(size_t index, const std::string& value);
    void pushStringArguments(const std::string& value) { mStringArguments.push_back(value); }
    size_t getNumberOfStringArguments() const { return mStringArguments.size(); }
    void stringArgumentsToLowerCase();

    int64_t getIntArgument(size_t index) const;
    bool getIntArgumentAsBool(size_t index) const { return getIntArgument(index) != 0; }
    void setIntArgument(size_t index, int64_t value);
    void pushIntArguments(int64_t value) { mIntArguments.push_back(value); }
    size_t getNumberOfIntArguments() const { return mIntArguments.size(); }
    std::vector<int64_t> getIntegerVector(size_t first, size_t count) const;

    double getRealArgument(size_t index) const;
    void setRealArgument(size_t index, double value);

    const std::string& getStringReturnValue(size_t index) const;
    void setStringReturnValue(size_t index, const std::string& value);
    int64_t getIntReturnValue(size_t index) const;
    bool getIntReturnValueAsBool(size_t index) const { return getIntReturnValue(index) != 0; }
    void setIntReturnValue(size_t index, int64_t value);

protected:
    std::vector<std::string> mStringArguments;
    std::vector<int64_t> mIntArguments;
    std::vector<double> mRealArguments;
    std::vector<int64_t> mIntReturnValues;
    std::vector<std::string> mStringReturnValues;
};

// An action addressed to a plot.
class wxWaveExplorerAction : public cVxAction {
public:
    void clearAction();
    std::string plotName;
    unsigned flags = 0;
    void clearFlags() { flags = 0; }

    double getDoubleArg(size_t index, double defaultValue) const;
    bool getDoubleArgAsBool(size_t index, bool defaultValue) const;
    void setDoubleArg(size_t index, double value);
    void pushDoubleArg(double value) { mDoubles.push_back(value); }
    size_t getNumberOfDoubleArgs() const { return mDoubles.size(); }
    const std::vector<double>& doubleArgs() const { return mDoubles; }

    // Integer arguments from `first` on as two halves: permutation, then sweep indices.
    void getSweepPermAndIndices(size_t first, std::vector<int64_t>& permutation, std::vector<int64_t>& indices) const;
    // "#rrggbb" from an integer argument.
    std::string getColorString(size_t index) const;

protected:
    std::vector<double> mDoubles;
};

}  // namespace vx3
