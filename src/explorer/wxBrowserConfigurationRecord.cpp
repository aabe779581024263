// The browser's rules in the configuration file. The record is written with the file's tagged
// encoding and read back field by field in the same order; the version word lets fields be added
// at the end.
#include <algorithm>

#include "app/core/cDataBaseSerializer.h"
#include "wxBrowserConfiguration.h"

namespace vx3 {

using namespace browserConfiguration;

namespace {
constexpr uint32_t kRecordVersion = 1;

void serializeRules(cDataBaseSerializer& serializer, wxFilterRules& rules)
{
    if (serializer.checkIsSerializing()) {
        uint64_t count = rules.rules().size();
        serializer.serializedeserialize(count);
        for (const auto& [key, rule] : rules.rules()) {
            std::string name = key;
            std::vector<std::string> values;
            std::vector<bool> shown;
            for (const auto& [value, flag] : rule.values) {
                values.push_back(value);
                shown.push_back(flag);
            }
            std::vector<double> bounds = {rule.numbers.minReal, rule.numbers.maxReal, rule.numbers.minImag,
                                          rule.numbers.maxImag};
            serializer.serializedeserialize(name);
            serializer.serializedeserialize(values);
            serializer.serializedeserialize(shown);
            serializer.serializedeserialize(bounds);
        }
        return;
    }
    uint64_t count = 0;
    serializer.serializedeserialize(count);
    // Each rule takes far more than a byte: a larger count is a damaged record.
    if (count > serializer.remaining())
        throw cSerializerException("unexpected end of data !");
    for (uint64_t i = 0; i < count; ++i) {
        std::string name;
        std::vector<std::string> values;
        std::vector<bool> shown;
        std::vector<double> bounds;
        serializer.serializedeserialize(name);
        serializer.serializedeserialize(values);
        serializer.serializedeserialize(shown);
        serializer.serializedeserialize(bounds);
        if (values.size() != shown.size() || bounds.size() != 4)
            throw cSerializerException("type does not correspond !");
        for (size_t v = 0; v < values.size(); ++v)
            rules.setValueFlag(name, values[v], shown[v]);
        wxNumericalFilter filter;
        filter.set(bounds[0], bounds[1], bounds[2], bounds[3]);
        if (filter.checkIsUsed())
            rules.setNumericalFilter(name, filter);
    }
}
}  // namespace

std::string wxBrowserConfiguration::serialize() const
{
    cDataBaseSerializer writer;
    uint32_t version = kRecordVersion;
    std::vector<uint32_t> priorities(mPriorities.begin(), mPriorities.end());
    std::vector<std::string> runParameters = mRunParameters, sweepVariables = mSweepVariables;
    uint32_t style = mRunStyle;
    wxFilterRules run = mRunRules, sweep = mSweepRules, analysis = mAnalysisRules;
    writer.serializedeserialize(version);
    writer.serializedeserialize(priorities);
    writer.serializedeserialize(runParameters);
    writer.serializedeserialize(sweepVariables);
    writer.serializedeserialize(style);
    serializeRules(writer, run);
    serializeRules(writer, sweep);
    serializeRules(writer, analysis);
    const std::vector<uint8_t>& bytes = writer.buffer();
    return std::string(bytes.begin(), bytes.end());
}

bool wxBrowserConfiguration::deserialize(const std::string& record)
{
    cDataBaseSerializer reader(reinterpret_cast<const uint8_t*>(record.data()), record.size());
    uint32_t version = 0, style = 0;
    std::vector<uint32_t> priorities;
    std::vector<std::string> runParameters, sweepVariables;
    wxFilterRules run, sweep, analysis;
    try {
        reader.serializedeserialize(version);
        reader.serializedeserialize(priorities);
        reader.serializedeserialize(runParameters);
        reader.serializedeserialize(sweepVariables);
        reader.serializedeserialize(style);
        serializeRules(reader, run);
        serializeRules(reader, sweep);
        serializeRules(reader, analysis);
    } catch (const cSerializerException&) {
        return false;
    }
    // The tree needs each of the eight levels exactly once.
    std::vector<uint32_t> sorted = priorities;
    std::sort(sorted.begin(), sorted.end());
    for (uint32_t i = 0; i < sorted.size(); ++i)
        if (sorted[i] != i)
            return false;
    if (sorted.size() != nb_priorities || style > style_run_index)
        return false;
    mPriorities.assign(priorities.begin(), priorities.end());
    mRunParameters = std::move(runParameters);
    mSweepVariables = std::move(sweepVariables);
    mRunStyle = style;
    mRunRules = std::move(run);
    mSweepRules = std::move(sweep);
    mAnalysisRules = std::move(analysis);
    return true;
}

}  // namespace vx3
