// Name lookups of a section.
#include <cmath>

#include "base/cVxString.h"
#include "model/cCurvePlotDataSection.h"

namespace vx3 {

using key_kind = cVariableNameIndex::key_kind;

uint64_t cCurvePlotDataSection::findWithKey(key_kind kind, const std::string& query, uint64_t start,
                                            bool usersOnly) const
{
    const std::string key = cVariableNameIndex::makeQueryKey(kind, query);
    std::lock_guard<std::mutex> lock(mNameIndexMutex);
    auto nameAt = [this](uint64_t i) -> const std::string& { return mVariables[i].name(); };
    cVariableNameIndex::cAccept accept;
    if (usersOnly)
        accept = [this](uint64_t i) { return !mVariables[i].checkMustClose(); };
    const uint64_t found = mNameIndex.findFirst(kind, key, start, mVariables.size(), nameAt, accept);
    return found == cVariableNameIndex::npos ? npos : found;
}

uint64_t cCurvePlotDataSection::findPasses(uint64_t start, const std::string& name, bool caseInsensitive) const
{
    static const key_kind passes[2][4] = {
        {cVariableNameIndex::exact, cVariableNameIndex::stripped, cVariableNameIndex::dotted,
         cVariableNameIndex::dotted_stripped},
        {cVariableNameIndex::lower, cVariableNameIndex::stripped_lower, cVariableNameIndex::dotted_lower,
         cVariableNameIndex::dotted_stripped_lower}};
    for (key_kind kind : passes[caseInsensitive ? 1 : 0]) {
        const uint64_t found = findWithKey(kind, name, start, true);
        if (found != npos)
            return found;
    }
    return npos;
}

uint64_t cCurvePlotDataSection::findVariableIndex(uint64_t start, const std::string& name, bool caseInsensitive) const
{
    const uint64_t found = findPasses(start, name, caseInsensitive);
    if (found != npos || mSweepVariables.size() < 2)
        return found;
    std::vector<uint64_t> sweepIndices, permutation;
    return findVariableIndexForSweepMatrix(start, name, caseInsensitive, sweepIndices, permutation);
}

uint64_t cCurvePlotDataSection::findVariableCheckType(const cCurvePlotDataType* type, const std::string& name) const
{
    return findNextVariableCheckType(0, type, name);
}

uint64_t cCurvePlotDataSection::findVariableDontCheckType(const std::string& name) const
{
    return findWithKey(cVariableNameIndex::exact, name, 0, false);
}

uint64_t cCurvePlotDataSection::findNextVariableCheckType(uint64_t start, const cCurvePlotDataType* type,
                                                          const std::string& name) const
{
    for (uint64_t found = findWithKey(cVariableNameIndex::exact, name, start, false); found != npos;
         found = findWithKey(cVariableNameIndex::exact, name, found + 1, false))
        if (mVariables[found].getType() == type)
            return found;
    return npos;
}

uint64_t cCurvePlotDataSection::findNextVariableDontCheckType(uint64_t start, const std::string& name) const
{
    return findWithKey(cVariableNameIndex::exact, name, start, false);
}

uint64_t cCurvePlotDataSection::findClosingVariableIndex(const std::string& name) const
{
    uint64_t start = 0;
    return findClosingNextVariableUpdateStart(start, name);
}

uint64_t cCurvePlotDataSection::findClosingNextVariableUpdateStart(uint64_t& start, const std::string& name) const
{
    uint64_t found = findWithKey(cVariableNameIndex::exact, name, start, false);
    if (found == npos)
        found = findWithKey(cVariableNameIndex::closing, cVariableNameIndex::removeClosing(name), start, false);
    if (found != npos)
        start = found + 1;
    return found;
}

uint64_t cCurvePlotDataSection::findSweepVariable(const cCurvePlotDataType* type, const std::string& name,
                                                  int position) const
{
    for (uint64_t i = 0; i < mSweepVariables.size(); ++i)
        if (mSweepVariables[i].isIdentical(type, name, position))
            return i;
    return npos;
}

std::vector<uint64_t> cCurvePlotDataSection::findAllVariableIndices(const std::string& name) const
{
    std::vector<uint64_t> all;
    {
        std::lock_guard<std::mutex> lock(mNameIndexMutex);
        auto nameAt = [this](uint64_t i) -> const std::string& { return mVariables[i].name(); };
        all = mNameIndex.findAll(cVariableNameIndex::exact, name, mVariables.size(), nameAt);
    }
    std::vector<uint64_t> result;
    for (uint64_t index : all)
        if (!mVariables[index].checkMustClose())
            result.push_back(index);
    return result;
}

namespace {
bool isVoltUnit(unsigned unit)
{
    using namespace curvePlotDataType;
    return unit == volt || unit == real_volt || unit == imag_volt || unit == volt_mag || unit == volt_db;
}

bool isAmpereUnit(unsigned unit)
{
    using namespace curvePlotDataType;
    return unit == ampere || unit == real_ampere || unit == imag_ampere || unit == ampere_mag || unit == ampere_db;
}
}  // namespace

uint64_t cCurvePlotDataSection::findVoltageVariableIndex(const std::string& name) const
{
    for (const std::string& candidate : {"v(" + name + ")", name}) {
        for (uint64_t found = findPasses(0, candidate, false); found != npos;
             found = findPasses(found + 1, candidate, false)) {
            const cCurvePlotVariable& variable = mVariables[found];
            if (isVoltUnit(variable.getUnitIdentifier()) || isVoltUnit(variable.guessUnitFromName()))
                return found;
        }
    }
    return npos;
}

uint64_t cCurvePlotDataSection::findCurrentVariableIndex(const std::string& name) const
{
    for (const std::string& candidate : {"i(" + name + ")", name + "#branch", name}) {
        for (uint64_t found = findWithKey(cVariableNameIndex::exact, candidate, 0, true); found != npos;
             found = findWithKey(cVariableNameIndex::exact, candidate, found + 1, true)) {
            const cCurvePlotVariable& variable = mVariables[found];
            if (isAmpereUnit(variable.getUnitIdentifier()) || isAmpereUnit(variable.guessUnitFromName()) ||
                candidate != name)
                return found;
        }
    }
    return npos;
}

uint64_t cCurvePlotDataSection::findVoltageOrLogicVariableIndex(const std::string& name) const
{
    const uint64_t voltage = findVoltageVariableIndex(name);
    if (voltage != npos)
        return voltage;
    for (uint64_t found = findPasses(0, name, false); found != npos; found = findPasses(found + 1, name, false))
        if (curvePlotProperties::checkCurveIsDigital(mVariables[found].getDataType()))
            return found;
    return npos;
}

uint64_t cCurvePlotDataSection::findLogicBusVariableIndex(const std::string& name) const
{
    for (key_kind kind : {cVariableNameIndex::exact, cVariableNameIndex::closing}) {
        const std::string query = kind == cVariableNameIndex::closing ? cVariableNameIndex::removeClosing(name) : name;
        for (uint64_t found = findWithKey(kind, query, 0, true); found != npos;
             found = findWithKey(kind, query, found + 1, true))
            if (curvePlotProperties::checkCurveIsDigital(mVariables[found].getDataType()))
                return found;
    }
    return npos;
}

uint64_t cCurvePlotDataSection::findSweepVariableIndex(const std::string& name) const
{
    // Sections have few sweep variables: a scan per pass is cheapest.
    for (key_kind kind : {cVariableNameIndex::exact, cVariableNameIndex::lower, cVariableNameIndex::stripped_lower,
                          cVariableNameIndex::dotted_stripped_lower}) {
        const std::string key = cVariableNameIndex::makeQueryKey(kind, name);
        for (uint64_t i = 0; i < mSweepVariables.size(); ++i)
            if (cVariableNameIndex::makeKey(kind, mSweepVariables[i].name()) == key)
                return i;
    }
    return npos;
}

namespace {
// Index of a sweep value given as text: the same printed text, else the nearest value close enough.
uint64_t findSweepValueIndex(const cCurvePlotDataSection& section, uint64_t sweep, const std::string& text)
{
    const uint64_t size = section.getSweepVariableSize(sweep);
    double wanted = 0.0;
    const bool numeric = cVxString(vxString::trim(text)).toDouble(wanted);
    uint64_t best = cCurvePlotDataSection::npos;
    double bestDistance = INFINITY;
    for (uint64_t i = 0; i < size; ++i) {
        const double value = section.getSweepValue(sweep, i);
        if (cVxString::createFromNumber(value) == text)
            return i;
        if (numeric && std::fabs(value - wanted) < bestDistance) {
            bestDistance = std::fabs(value - wanted);
            best = i;
        }
    }
    // Six printed digits: accept what rounds to the same text.
    if (best != cCurvePlotDataSection::npos && bestDistance <= 1e-5 * std::fabs(wanted) + 1e-300)
        return best;
    return cCurvePlotDataSection::npos;
}
}  // namespace

uint64_t cCurvePlotDataSection::findVariableIndexForSweepMatrix(uint64_t start, const std::string& cutName,
                                                                bool caseInsensitive,
                                                                std::vector<uint64_t>& sweepIndices,
                                                                std::vector<uint64_t>& permutation) const
{
    const uint64_t n = mSweepVariables.size();
    const size_t vs = cutName.rfind(" vs ");
    if (n < 2 || vs == std::string::npos)
        return npos;
    const std::string left = cutName.substr(0, vs);
    const uint64_t xSweep = findSweepVariableIndex(cutName.substr(vs + 4));
    if (xSweep == npos)
        return npos;
    // The curve name itself may contain " - ": try the separators from the right.
    for (size_t dash = left.rfind(" - "); dash != std::string::npos && dash > 0; dash = left.rfind(" - ", dash - 1)) {
        std::vector<cVxString> assignments;
        cVxString(left.substr(dash + 3)).splitString(assignments, ',');
        std::vector<uint64_t> indices(n, 0), order;
        std::vector<bool> given(n, false);
        bool ok = !assignments.empty();
        for (cVxString& assignment : assignments) {
            const size_t equal = assignment.find('=');
            if (equal == std::string::npos) {
                ok = false;
                break;
            }
            const uint64_t sweep = findSweepVariableIndex(vxString::trim(assignment.substr(0, equal)));
            if (sweep == npos || sweep == xSweep || given[sweep]) {
                ok = false;
                break;
            }
            const uint64_t valueIndex = findSweepValueIndex(*this, sweep, vxString::trim(assignment.substr(equal + 1)));
            if (valueIndex == npos) {
                ok = false;
                break;
            }
            indices[sweep] = valueIndex;
            given[sweep] = true;
            order.push_back(sweep);
        }
        if (!ok || order.size() != n - 1)
            continue;
        const uint64_t curve = findPasses(start, left.substr(0, dash), caseInsensitive);
        if (curve == npos)
            continue;
        order.push_back(xSweep);
        sweepIndices = indices;
        permutation = order;
        return curve;
    }
    return npos;
}

std::string cCurvePlotDataSection::generateUniqueCurveName(const std::string& name) const
{
    if (findVariableDontCheckType(name) == npos)
        return name;
    for (unsigned i = 1; i <= 99999999u; ++i) {
        const std::string candidate = name + "_" + std::to_string(i);
        if (findVariableDontCheckType(candidate) == npos)
            return candidate;
    }
    return std::string();
}

}  // namespace vx3
