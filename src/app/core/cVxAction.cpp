#include "cVxAction.h"

#include <cstdio>

#include "base/cVxString.h"

namespace vx3 {

namespace {
const std::string& emptyString()
{
    static const std::string empty;
    return empty;
}
template <typename T>
void setAt(std::vector<T>& vector, size_t index, const T& value)
{
    if (index >= vector.size())
        vector.resize(index + 1);
    vector[index] = value;
}
}  // namespace

void cVxAction::clearAction()
{
    handled = false;
    actionType = 0;
    mStringArguments.clear();
    mIntArguments.clear();
    mRealArguments.clear();
    mIntReturnValues.clear();
    mStringReturnValues.clear();
}

const std::string& cVxAction::getStringArgument(size_t index) const
{
    return index < mStringArguments.size() ? mStringArguments[index] : emptyString();
}

std::string cVxAction::getStringArgumentLowerCase(size_t index) const
{
    return vxString::to_lower(getStringArgument(index));
}

void cVxAction::setStringArgument(size_t index, const std::string& value) { setAt(mStringArguments, index, value); }

void cVxAction::stringArgumentsToLowerCase()
{
    for (auto& argument : mStringArguments)
        argument = vxString::to_lower(argument);
}

int64_t cVxAction::getIntArgument(size_t index) const
{
    return index < mIntArguments.size() ? mIntArguments[index] : 0;
}

void cVxAction::setIntArgument(size_t index, int64_t value) { setAt(mIntArguments, index, value); }

std::vector<int64_t> cVxAction::getIntegerVector(size_t first, size_t count) const
{
    std::vector<int64_t> result;
    for (size_t i = first; i < first + count && i < mIntArguments.size(); ++i)
        result.push_back(mIntArguments[i]);
    return result;
}

double cVxAction::getRealArgument(size_t index) const
{
    return index < mRealArguments.size() ? mRealArguments[index] : 0.0;
}

void cVxAction::setRealArgument(size_t index, double value) { setAt(mRealArguments, index, value); }

const std::string& cVxAction::getStringReturnValue(size_t index) const
{
    return index < mStringReturnValues.size() ? mStringReturnValues[index] : emptyString();
}

void cVxAction::setStringReturnValue(size_t index, const std::string& value)
{
    setAt(mStringReturnValues, index, value);
}

int64_t cVxAction::getIntReturnValue(size_t index) const
{
    return index < mIntReturnValues.size() ? mIntReturnValues[index] : 0;
}

void cVxAction::setIntReturnValue(size_t index, int64_t value) { setAt(mIntReturnValues, index, value); }

// ---------------------------------------------------------------------------------------------
void wxWaveExplorerAction::clearAction()
{
    cVxAction::clearAction();
    plotName.clear();
    flags = 0;
    mDoubles.clear();
}

double wxWaveExplorerAction::getDoubleArg(size_t index, double defaultValue) const
{
    return index < mDoubles.size() ? mDoubles[index] : defaultValue;
}

bool wxWaveExplorerAction::getDoubleArgAsBool(size_t index, bool defaultValue) const
{
    return index < mDoubles.size() ? mDoubles[index] != 0.0 : defaultValue;
}

void wxWaveExplorerAction::setDoubleArg(size_t index, double value) { setAt(mDoubles, index, value); }

void wxWaveExplorerAction::getSweepPermAndIndices(size_t first, std::vector<int64_t>& permutation,
                                                  std::vector<int64_t>& indices) const
{
    permutation.clear();
    indices.clear();
    if (first > mIntArguments.size())
        return;
    size_t count = mIntArguments.size() - first;
    if (count % 2 != 0)
        return;
    permutation = getIntegerVector(first, count / 2);
    indices = getIntegerVector(first + count / 2, count / 2);
}

std::string wxWaveExplorerAction::getColorString(size_t index) const
{
    char text[16];
    std::snprintf(text, sizeof(text), "#%06x", static_cast<unsigned>(getIntArgument(index) & 0xffffff));
    return text;
}

}  // namespace vx3
