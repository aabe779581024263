// The curve layer's state: the store, the current and result sections, the curves that names
// stand for, the assignment of curves.
#include "expressions/evaluator/waveformExpressionEvaluator.h"

#include <algorithm>
#include <cmath>

#include "expressions/evaluator/cAlgebraicCurve.h"
#include "expressions/postProcessShaping.h"
#include "model/cCurvePlotProperties.h"

namespace vx3::waveformExpressionEvaluator {

using namespace baseExpression;

cEvaluator::cEvaluator() : mOwnStore(std::make_unique<cCurvePlotDataFile>()) {}

cEvaluator::~cEvaluator() = default;

void cEvaluator::setDataFile(cCurvePlotDataFile* store)
{
    mStore = store;
    mCurrentSectionId = 0;
    mResultSectionId = 0;
    mDigitalSectionIds.clear();
    mTemporaryCurves.clear();
    mLoadedCurves.clear();
}

void cEvaluator::setCurrentSection(cCurvePlotDataSection* section)
{
    mCurrentSectionId = section ? section->getSectionId() : 0;
    mLoadedCurves.clear();
}

cCurvePlotDataSection* cEvaluator::getCurrentSection() const
{
    const cCurvePlotDataFile& store = mStore ? *mStore : *mOwnStore;
    return mCurrentSectionId ? store.findSectionFromId(mCurrentSectionId) : nullptr;
}

cCurvePlotDataSection* cEvaluator::getResultSection()
{
    cCurvePlotDataFile& store = getDataFile();
    cCurvePlotDataSection* section = mResultSectionId ? store.findSectionFromId(mResultSectionId) : nullptr;
    if (!section) {
        section = store.insertNewToolBoxSection(mResultSectionName);
        mResultSectionId = section->getSectionId();
    }
    return section;
}

cCurvePlotDataSection* cEvaluator::getDigitalResultSection(double scale)
{
    // Digital curves count time in ticks of their section: one result section per tick size.
    cCurvePlotDataFile& store = getDataFile();
    const auto found = mDigitalSectionIds.find(scale);
    if (found != mDigitalSectionIds.end())
        if (cCurvePlotDataSection* section = store.findSectionFromId(found->second))
            return section;
    cCurvePlotDataSection* section = store.insertNewToolBoxSection(mResultSectionName + "_digital");
    const cCurvePlotDataType* time = store.addType("time", curvePlotProperties::uint_64, curvePlotDataType::second);
    const uint64_t index = section->addSweepVariable(time, "time", 0);
    cCurvePlotProperties properties;
    properties.addProperty(curvePlotProperties::cProperty::makeDouble(curvePlotProperties::scale, scale));
    section->addSweepVariableProperties(index, properties);
    mDigitalSectionIds[scale] = section->getSectionId();
    return section;
}

bool cEvaluator::checkIfCurveNameExists(const std::string& name) const
{
    const std::string key = normaliseName(name);
    if (mTemporaryCurves.count(key) || mLoadedCurves.count(key))
        return true;
    const cCurvePlotDataSection* section = getCurrentSection();
    return section && section->findVariableIndex(0, name, !mCaseSensitive) != cCurvePlotDataSection::npos;
}

bool cEvaluator::getCurveDescription(const T& node, cPostProcessCurveDescription& description) const
{
    if (node.getOperator() != op_name || node.stringValues().empty())
        return false;
    const std::string& key = node.stringValues()[0];
    const cCurvePlotDataFile& store = mStore ? *mStore : *mOwnStore;
    const auto temporary = mTemporaryCurves.find(key);
    if (temporary != mTemporaryCurves.end()) {
        cCurvePlotDataSection* section = store.findSectionFromId(temporary->second);
        const uint64_t index = section ? section->findVariableIndex(0, key, false) : cCurvePlotDataSection::npos;
        if (index == cCurvePlotDataSection::npos)
            return false;
        description = cPostProcessCurveDescription(section, index);
        return true;
    }
    const auto loaded = mLoadedCurves.find(key);
    if (loaded != mLoadedCurves.end()) {
        cCurvePlotDataSection* section = store.findSectionFromId(loaded->second.sectionId);
        if (!section || loaded->second.index >= section->getNbOfVariables())
            return false;
        description = cPostProcessCurveDescription(section, loaded->second.index);
        return true;
    }
    return false;
}

const cCurvePlotVariable* cEvaluator::getResultCurvePtr(const T& result) const
{
    cPostProcessCurveDescription description;
    return getCurveDescription(result, description) ? description.getCurvePtr() : nullptr;
}

std::string cEvaluator::generateNewTmpCurve()
{
    return "_" + std::to_string(++mTemporaryCounter) + "_";
}

std::string cEvaluator::generateNewCurveName(const std::string& base) const
{
    std::string name = base;
    for (unsigned n = 1; checkIfCurveNameExists(name); ++n)
        name = base + "_" + std::to_string(n);
    return name;
}

void cEvaluator::insertLoadedCurves(const std::string& key, const cPostProcessCurveDescription& description)
{
    if (description.getSection())
        mLoadedCurves[key] = {description.getSection()->getSectionId(), description.getCurveIndex()};
}

void cEvaluator::clearTemporaryCurves()
{
    cCurvePlotDataFile& store = getDataFile();
    for (auto it = mTemporaryCurves.begin(); it != mTemporaryCurves.end();) {
        const std::string& name = it->first;
        const bool temporary = name.size() > 2 && name.front() == '_' && name.back() == '_';
        if (!temporary) {
            ++it;
            continue;
        }
        if (cCurvePlotDataSection* section = store.findSectionFromId(it->second)) {
            const uint64_t index = section->findVariableIndex(0, name, false);
            if (index != cCurvePlotDataSection::npos)
                section->removeVariable(index);
        }
        it = mTemporaryCurves.erase(it);
    }
}

bool cEvaluator::clearNumericCurve(const std::string& name)
{
    const auto found = mTemporaryCurves.find(name);
    if (found == mTemporaryCurves.end())
        return false;
    if (cCurvePlotDataSection* section = getDataFile().findSectionFromId(found->second)) {
        const uint64_t index = section->findVariableIndex(0, name, false);
        if (index != cCurvePlotDataSection::npos)
            section->removeVariable(index);
    }
    mTemporaryCurves.erase(found);
    return true;
}

void cEvaluator::clearEvaluator()
{
    cBaseExpressionEvaluator::clearEvaluator();
    cCurvePlotDataFile& store = getDataFile();
    for (const auto& [name, sectionId] : mTemporaryCurves) {
        if (cCurvePlotDataSection* section = store.findSectionFromId(sectionId)) {
            const uint64_t index = section->findVariableIndex(0, name, false);
            if (index != cCurvePlotDataSection::npos)
                section->removeVariable(index);
        }
    }
    mTemporaryCurves.clear();
    mLoadedCurves.clear();
}

op_type cEvaluator::reportEngineError(const std::string& fallback)
{
    errorMsg(getErrorString().empty() ? fallback : getErrorString());
    return op_failed;
}

bool cEvaluator::readCurve(const cPostProcessCurveDescription& description, cCurveCopy& copy)
{
    copy = cCurveCopy();
    std::string error;
    curvePlotFunctionArgs::cDataVectors vectors;
    if (!description.load(false, error) || !description.computeDataVectors(vectors, error)) {
        errorMsg(error);
        return false;
    }
    copy.unit = description.getCurvePtr()->getUnitIdentifier();
    bool monotone = true;
    const bool walked = postProcess::visitSamples(vectors, [&](const auto& samples) {
        using tY = std::remove_cvref_t<decltype(samples.y[0])>;
        monotone = samples.monotone;
        copy.xs.resize(samples.count);
        for (uint64_t i = 0; i < samples.count; ++i)
            copy.xs[i] = static_cast<double>(samples.x[i]);
        if constexpr (postProcess::kIsComplex<tY>) {
            copy.complex = true;
            copy.yc.resize(samples.count);
            for (uint64_t i = 0; i < samples.count; ++i)
                copy.yc[i] = tComplex(samples.y[i].real(), samples.y[i].imag());
        } else {
            copy.ys.resize(samples.count);
            for (uint64_t i = 0; i < samples.count; ++i)
                copy.ys[i] = static_cast<double>(samples.y[i]);
        }
    });
    if (!walked) {
        errorMsg("One or several curves in the expression have an incompatible data type.");
        return false;
    }
    copy.monotone = monotone;
    return true;
}

op_type cEvaluator::storeTemporaryCurve(T& node, const cCurveCopy& values)
{
    cCurvePlotDataSection* section = getResultSection();
    const std::string name = generateNewTmpCurve();
    uint64_t index = 0;
    std::string error;
    const bool stored = postProcess::storeResultCurve(
        getDataFile(), *section, name,
        values.complex ? curvePlotProperties::parameterized_double_complex : curvePlotProperties::parameterized_double,
        static_cast<curvePlotDataType::dataUnit>(values.unit),
        [&](cCurvePlotVariable& result) {
            return values.complex ? result.setParameterizedDoubleComplexValues(values.xs.data(), values.yc.data(),
                                                                                values.xs.size())
                                  : result.setParameterizedDoubleValues(values.xs.data(), values.ys.data(),
                                                                         values.xs.size());
        },
        index, error);
    return adoptTemporaryCurve(node, stored, name, section->getSectionId(), error);
}

op_type cEvaluator::adoptTemporaryCurve(T& node, bool stored, const std::string& name, uint64_t sectionId,
                                        const std::string& error)
{
    if (!stored) {
        errorMsg(error);
        return op_failed;
    }
    insertTemporaryCurve(name, sectionId);
    node = T(name);
    return op_name;
}

bool cEvaluator::makeNumeric(cPostProcessCurveDescription& description)
{
    if (!description.checkCurveIsDigital())
        return true;
    // A logic curve in arithmetic counts by the logic levels.
    cCurvePlotDataSection* section = getResultSection();
    const std::string name = generateNewTmpCurve();
    uint64_t index = 0;
    std::string error;
    if (!postProcess::convertLogicToDouble(getDataFile(), *section, name, description, mLevels, mRiseTime, index,
                                           error)) {
        errorMsg(error);
        return false;
    }
    insertTemporaryCurve(name, section->getSectionId());
    description = cPostProcessCurveDescription(section, index);
    return true;
}

bool cEvaluator::makeXAxisCurve(T& node, const std::string& name)
{
    cCurvePlotDataSection* section = getCurrentSection();
    if (!section || section->getNbOfVariables() == 0)
        return false;
    const uint64_t sweep = section->findSweepVariableIndex(name);
    if (sweep == cCurvePlotDataSection::npos || sweep + 1 != section->getNbOfSweepVariables())
        return false;
    // The x-axis of the first curve that has one, as a curve of its own.
    for (uint64_t i = 0; i < section->getNbOfVariables(); ++i) {
        cPostProcessCurveDescription description(section, i);
        if (description.checkCurveIsDigital())
            continue;
        cCurveCopy copy;
        cVxLogger quiet(vxLogger::fatal_error);
        std::string error;
        curvePlotFunctionArgs::cDataVectors vectors;
        if (!description.load(false, error) || !description.computeDataVectors(vectors, error))
            continue;
        if (!readCurve(description, copy))
            return false;
        copy.ys = copy.xs;
        copy.yc.clear();
        copy.complex = false;
        copy.unit = curvePlotDataType::second;
        return !checkIsStatus(storeTemporaryCurve(node, copy));
    }
    return false;
}

op_type cEvaluator::computeString(T& node)
{
    const std::string raw = node.getAsString();
    const std::string key = normaliseName(raw);
    node.setStringValue(key);
    if (mTemporaryCurves.count(key) || mLoadedCurves.count(key))
        return op_name;
    if (cCurvePlotDataSection* section = getCurrentSection()) {
        const uint64_t index = section->findVariableIndex(0, raw, !mCaseSensitive);
        if (index != cCurvePlotDataSection::npos) {
            if (const cAlgebraicCurve* algebraic = section->getVariable(index).getAlgebraicCurve()) {
                // An algebraic curve stands for its expression.
                node = algebraic->getExpression();
                return evaluate(node);
            }
            insertLoadedCurves(key, cPostProcessCurveDescription(section, index));
            return op_name;
        }
        if (makeXAxisCurve(node, raw))
            return op_name;
    }
    node.setStringValue(raw);
    return cBaseExpressionEvaluator::computeString(node);
}

bool cEvaluator::checkIfEvaluationResultMakesSense(const T& tree) const
{
    cPostProcessCurveDescription description;
    return getCurveDescription(tree, description) || cBaseExpressionEvaluator::checkIfEvaluationResultMakesSense(tree);
}

op_type cEvaluator::defineOrUpdateCurve(const std::string& name, T& value)
{
    cPostProcessCurveDescription source;
    if (!getCurveDescription(value, source))
        return op_bad_arguments;
    const std::string source_name = value.getAsString();
    const auto temporary = mTemporaryCurves.find(source_name);
    const bool isTemporary = temporary != mTemporaryCurves.end() && source_name.front() == '_';
    if (isTemporary) {
        // The result of the right side takes the name.
        const uint64_t sectionId = temporary->second;
        clearNumericCurve(name);
        cCurvePlotDataSection* section = getDataFile().findSectionFromId(sectionId);
        const uint64_t index = section ? section->findVariableIndex(0, source_name, false) : cCurvePlotDataSection::npos;
        if (index == cCurvePlotDataSection::npos || !section->renameVariable(index, name))
            return op_bad_arguments;
        mTemporaryCurves.erase(source_name);
        insertTemporaryCurve(name, sectionId);
    } else {
        // Another named curve: a copy of its values (of a logic curve, its numbers).
        cCurveCopy copy;
        if (!makeNumeric(source) || !readCurve(source, copy))
            return op_failed;
        if (!defineOrUpdateNumericCurve(name, copy))
            return op_failed;
    }
    removeUserDefinedExpression(name);
    value = T(name);
    return op_name;
}

bool cEvaluator::defineOrUpdateNumericCurve(const std::string& name, const cCurveCopy& values)
{
    T node;
    if (checkIsStatus(storeTemporaryCurve(node, values)))
        return false;
    T renamed = node;
    return !checkIsStatus(defineOrUpdateCurve(name, renamed));
}

op_type cEvaluator::computeAssign(T& node)
{
    if (!expandAssign(node))
        return op_failed;
    T& lhs = node.operands()[0];
    cCurvePlotDataSection* current = getCurrentSection();
    auto isFileCurve = [&](const std::string& raw) {
        const std::string key = normaliseName(raw);
        if (mTemporaryCurves.count(key))
            return false;
        return mLoadedCurves.count(key) ||
               (current && current->findVariableIndex(0, raw, !mCaseSensitive) != cCurvePlotDataSection::npos);
    };
    if (lhs.getOperator() == op_user_function && isFileCurve(lhs.getExpressionAsString())) {
        errorMsg("The curve \"" + lhs.getExpressionAsString() + "\" is read-only.");
        return op_failed;
    }
    if (lhs.getOperator() == op_name) {
        const std::string raw = lhs.getAsString();
        if (isFileCurve(raw)) {
            errorMsg("The curve \"" + raw + "\" is read-only.");
            return op_failed;
        }
        T value = std::move(node.operands()[1]);
        if (checkIsStatus(evaluate(value)))
            return op_failed;
        cPostProcessCurveDescription curve;
        if (getCurveDescription(value, curve)) {
            const op_type result = defineOrUpdateCurve(normaliseName(raw), value);
            node = std::move(value);
            return result;
        }
        if (value.getOperator() == op_name) {
            errorMsg("Expression evaluation error ... (" + value.getAsString() + ")");
            return op_failed;
        }
        // A parameter now: a curve of that name would hide it.
        clearNumericCurve(normaliseName(raw));
        insertUserDefinedExpression(raw, value);
        node = std::move(value);
        return node.getOperator();
    }
    if (lhs.getOperator() == op_index && lhs.childSize() == 2 && lhs.getChildOperator(0) == op_name) {
        const std::string raw = lhs.operands()[0].getAsString();
        const std::string key = normaliseName(raw);
        if (isFileCurve(raw)) {
            errorMsg("The curve \"" + raw + "\" is read-only.");
            return op_failed;
        }
        if (mTemporaryCurves.count(key)) {
            // name[i] = value: one sample of a curve defined here.
            T index = lhs.operands()[1];
            T value = std::move(node.operands()[1]);
            if (checkIsStatus(evaluate(index)) || checkIsStatus(evaluate(value)))
                return op_failed;
            if (!index.checkIsNumber() || !value.checkIsNumber())
                return op_bad_arguments;
            cPostProcessCurveDescription description;
            T name(key);
            cCurveCopy copy;
            if (!getCurveDescription(name, description) || !readCurve(description, copy))
                return op_failed;
            const double position = index.getAsDouble() - (mFirstIndexIsOne ? 1 : 0);
            if (!(position >= 0) || position != std::floor(position) || position >= static_cast<double>(copy.size()))
                return op_bad_vector_index;
            const auto i = static_cast<size_t>(position);
            if (value.getOperator() == op_complex && !copy.complex) {
                copy.complex = true;
                for (double y : copy.ys)
                    copy.yc.emplace_back(y, 0.0);
                copy.ys.clear();
            }
            if (copy.complex)
                copy.yc[i] = value.getAsComplex();
            else
                copy.ys[i] = value.getAsDouble();
            if (!defineOrUpdateNumericCurve(key, copy))
                return op_failed;
            node = std::move(value);
            return node.getOperator();
        }
    }
    return cBaseExpressionEvaluator::computeAssign(node);
}

}  // namespace vx3::waveformExpressionEvaluator
