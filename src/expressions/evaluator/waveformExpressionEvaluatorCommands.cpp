// The waveform commands of the curve layer (waveform, create_waveform, reduce_waveform,
// resample_waveform, shift_waveform, the digital bus and comparison), a curve used as a function
// of x, and the samples of a curve by index.
#include <algorithm>
#include <cmath>
#include <cctype>

#include "expressions/postProcessCalculus.h"
#include "expressions/postProcessShaping.h"
#include "expressions/evaluator/waveformExpressionEvaluator.h"

namespace vx3::waveformExpressionEvaluator {

using namespace baseExpression;

namespace {

std::string lowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

// The value of a rising curve at x by linear interpolation; undefined outside its range.
template <class V>
V interpolate(const std::vector<double>& xs, const std::vector<V>& ys, double x)
{
    if (xs.empty() || std::isnan(x) || x < xs.front() || x > xs.back())
        return V(NAN);
    const auto upper = std::lower_bound(xs.begin(), xs.end(), x);
    const auto i = static_cast<size_t>(upper - xs.begin());
    if (xs[i] == x) {
        // A jump: the mean of both sides.
        if (i + 1 < xs.size() && xs[i + 1] == x)
            return (ys[i] + ys[i + 1]) * 0.5;
        return ys[i];
    }
    const double t = (x - xs[i - 1]) / (xs[i] - xs[i - 1]);
    return ys[i - 1] + (ys[i] - ys[i - 1]) * t;
}

}  // namespace

op_type cEvaluator::computeUserDefinedFunction(T& node)
{
    bool handled = false;
    const op_type result = createOrFindWaveform(node, handled);
    if (handled)
        return result;
    return cBaseExpressionEvaluator::computeUserDefinedFunction(node);
}

op_type cEvaluator::createOrFindWaveform(T& node, bool& handled)
{
    handled = true;
    const std::string name = lowerCase(node.getFunctionName());
    if (name == "create_waveform")
        return createWaveform(node);
    if (name == "create_random_waveform")
        return createRandomWaveform(node);
    if (name == "reduce_waveform")
        return reduceWaveform(node);
    if (name == "resample_waveform")
        return resampleWaveform(node);
    if (name == "shift_waveform")
        return shiftWaveform(node);
    if (name == "waveform")
        return computeWaveform(node);
    if (name == "create_digital_bus")
        return createDigital(node, false);
    if (name == "compare_digital_signals")
        return createDigital(node, true);
    if (cCurvePlotDataSection* section = getCurrentSection()) {
        // A curve whose name reads as a call, as simulators name them: "v(out)", "i(vdd)".
        const std::string text = node.getExpressionAsString();
        const uint64_t index = section->findVariableIndex(0, text, !mCaseSensitive);
        if (index != cCurvePlotDataSection::npos) {
            const std::string key = normaliseName(text);
            insertLoadedCurves(key, cPostProcessCurveDescription(section, index));
            node = T(key);
            return op_name;
        }
    }
    // A curve's name as a function of x: its value there.
    T curveName(node.getFunctionName());
    if (!checkIsStatus(computeString(curveName))) {
        cPostProcessCurveDescription curve;
        if (getCurveDescription(curveName, curve))
            return computeCurveAsFunction(node, curve);
    }
    handled = false;
    return op_none;
}

op_type cEvaluator::computeCurveAsFunction(T& node, const cPostProcessCurveDescription& curve)
{
    if (node.childSize() != 1)
        return op_bad_number_of_arguments;
    if (checkIsStatus(evaluate(node.operands()[0])))
        return op_failed;
    cNumbers at;
    if (!readNumbers(node.operands()[0], at) || at.complex)
        return op_bad_arguments;
    cPostProcessCurveDescription numeric = curve;
    cCurveCopy copy;
    if (!makeNumeric(numeric) || !readCurve(numeric, copy))
        return op_failed;
    if (!copy.monotone) {
        errorMsg(kNonMonotoneMessage);
        return op_failed;
    }
    cNumbers result;
    result.vector = at.vector;
    result.complex = copy.complex;
    for (const auto& x : at.values)
        result.values.push_back(copy.complex ? interpolate(copy.xs, copy.yc, x.real())
                                             : tComplex(interpolate(copy.xs, copy.ys, x.real()), 0.0));
    writeNumbers(node, result);
    return node.getOperator();
}

op_type cEvaluator::computeIndex(T& node)
{
    if (node.childSize() != 2)
        return op_bad_arguments;
    T& base = node.operands()[0];
    if (checkIsStatus(evaluate(base)))
        return op_failed;
    cPostProcessCurveDescription curve;
    if (!getCurveDescription(base, curve))
        return cBaseExpressionEvaluator::computeIndex(node);
    T& index = node.operands()[1];
    if (curve.checkCurveIsDigital() && index.getOperator() != op_range) {
        // The bit of a logic vector.
        if (checkIsStatus(evaluate(index)))
            return op_failed;
        if (!index.checkIsNumber())
            return op_bad_vector_index;
        return computeCurveBit(node, curve, index.getAsDouble());
    }
    if (!makeNumeric(curve))
        return op_failed;
    cCurveCopy copy;
    if (!readCurve(curve, copy))
        return op_failed;
    // The curve's samples as a vector; the index picks from it.
    T samples;
    cNumbers values;
    values.vector = true;
    values.complex = copy.complex;
    const size_t count = copy.size();
    for (size_t i = 0; i < count; ++i)
        values.values.push_back(copy.complex ? copy.yc[i] : tComplex(copy.ys[i], 0.0));
    writeNumbers(samples, values);
    node.operands()[0] = std::move(samples);
    return cBaseExpressionEvaluator::computeIndex(node);
}

op_type cEvaluator::computeWaveform(T& node)
{
    const std::string self = "waveform()";
    const size_t n = node.childSize();
    if (n != 2 && n != 4) {
        errorMsg("Bad arguments for \"" + self + "\".");
        return op_failed;
    }
    for (size_t i = 2; i < n; ++i)
        if (checkIsStatus(evaluate(node.operands()[i])))
            return op_failed;
    // The section and the curve: by name (bare or quoted) or by number, not evaluated as names.
    T& sectionNode = node.operands()[0];
    T& curveNode = node.operands()[1];
    for (T* argument : {&sectionNode, &curveNode})
        if (argument->getOperator() != op_name && argument->getOperator() != op_quoted_string &&
            checkIsStatus(evaluate(*argument)))
            return op_failed;
    auto isText = [](const T& argument) {
        return argument.getOperator() == op_name || argument.getOperator() == op_quoted_string;
    };
    cCurvePlotDataFile& store = getDataFile();
    cCurvePlotDataSection* section = nullptr;
    if (isText(sectionNode)) {
        const std::string wanted = sectionNode.getAsString();
        section = store.getDataSectionFromName(wanted);
        if (!section) {
            const uint64_t index = store.getDataSectionIndexFromCompleteName(wanted);
            if (index != cCurvePlotDataFile::npos)
                section = store.getDataSectionFromIndex(index);
        }
        if (!section) {
            errorMsg("Didn't find section \"" + wanted + "\".");
            return op_failed;
        }
    } else if (sectionNode.checkIsNumber() && sectionNode.getOperator() != op_complex) {
        // A number is the section's id.
        const double id = sectionNode.getAsDouble();
        section = id >= 1 && id == std::floor(id) ? store.findSectionFromId(static_cast<uint64_t>(id)) : nullptr;
        if (!section) {
            errorMsg("Didn't find section \"" + sectionNode.getExpressionAsString() + "\".");
            return op_failed;
        }
    } else {
        errorMsg("Bad arguments for \"" + self + "\".");
        return op_failed;
    }
    uint64_t index = cCurvePlotDataSection::npos;
    if (isText(curveNode)) {
        const std::string wanted = curveNode.getAsString();
        index = section->findVariableIndex(0, wanted, !mCaseSensitive);
        if (index == cCurvePlotDataSection::npos) {
            errorMsg("Didn't find curve \"" + wanted + "\".");
            return op_failed;
        }
    } else if (curveNode.checkIsNumber() && curveNode.getOperator() != op_complex) {
        // A number is the curve's index in its section, from 0.
        const double number = curveNode.getAsDouble();
        if (!(number >= 0) || number != std::floor(number) ||
            number >= static_cast<double>(section->getNbOfVariables())) {
            errorMsg("Didn't find curve number " + curveNode.getExpressionAsString());
            return op_failed;
        }
        index = static_cast<uint64_t>(number);
    } else {
        errorMsg("Bad arguments for \"" + self + "\".");
        return op_failed;
    }
    cPostProcessCurveDescription description(section, index);
    if (n == 4) {
        // The permutation of the sweep variables and the indices of the cut.
        const T& permutation = node.operands()[2];
        const T& indices = node.operands()[3];
        if (permutation.getOperator() != op_real_vector && permutation.getOperator() != op_real) {
            errorMsg("Bad arguments for \"" + self + "\".");
            return op_failed;
        }
        if (indices.getOperator() != op_real_vector && indices.getOperator() != op_real) {
            errorMsg("Bad arguments for \"" + self + "\".");
            return op_failed;
        }
        const uint64_t sweeps = section->getNbOfSweepVariables();
        if (permutation.doubleSize() != sweeps || indices.doubleSize() != sweeps) {
            errorMsg("Incoherent vector sizes in \"" + self + "\".");
            return op_failed;
        }
        for (size_t i = 0; i < sweeps; ++i) {
            const double p = permutation.doubleValues()[i], k = indices.doubleValues()[i];
            if (!(p >= 0) || p >= static_cast<double>(sweeps) || p != std::floor(p) || !(k >= 0) ||
                k != std::floor(k) ||
                k >= static_cast<double>(section->getSweepVariableSize(static_cast<uint64_t>(p)))) {
                errorMsg("Incoherent vector indices in \"" + self + "\".");
                return op_failed;
            }
            description.sweepPermutation().push_back(static_cast<uint64_t>(p));
            description.sweepIndices().push_back(static_cast<uint64_t>(k));
        }
        // The whole curve when the cut is the only one: the section has a single sweep.
        if (sweeps == 1) {
            description.sweepPermutation().clear();
            description.sweepIndices().clear();
        } else {
            return copySweepCut(node, description);
        }
    }
    const std::string key = "waveform(" + std::to_string(section->getSectionId()) + "," + std::to_string(index) + ")";
    insertLoadedCurves(key, description);
    node = T(key);
    return op_name;
}

op_type cEvaluator::copySweepCut(T& node, cPostProcessCurveDescription description)
{
    // One cut of a swept curve: the sweep that the permutation puts last is its x-axis, the
    // indices of the others choose the cut.
    const std::string self = "waveform()";
    cCurvePlotDataSection& section = *description.getSection();
    const std::vector<uint64_t> permutation = description.sweepPermutation();
    const std::vector<uint64_t> wanted = description.sweepIndices();
    std::vector<uint64_t> sorted = permutation;
    std::sort(sorted.begin(), sorted.end());
    if (std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end()) {
        errorMsg("Incoherent vector indices in \"" + self + "\".");
        return op_failed;
    }
    const uint64_t xSweep = permutation.back();
    uint64_t cut = cCurvePlotDataSection::npos;
    std::vector<uint64_t> indices;
    for (uint64_t c = 0; c < section.computeNbOfCutsPerCurve() && cut == cCurvePlotDataSection::npos; ++c) {
        if (!section.computeSweepIndicesForCut(c, permutation, indices))
            break;
        bool same = true;
        for (uint64_t k = 0; k < indices.size(); ++k)
            same = same && (k == xSweep || indices[k] == wanted[k]);
        if (same)
            cut = c;
    }
    if (cut == cCurvePlotDataSection::npos) {
        errorMsg("Incoherent vector indices in \"" + self + "\".");
        return op_failed;
    }
    std::string error;
    const cPostProcessCurveDescription whole(&section, description.getCurveIndex());
    curvePlotFunctionArgs::cDataVectors vectors;
    if (!whole.load(false, error) ||
        !section.computeSweepDataVectors(description.getCurveIndex(), cut, permutation, vectors)) {
        errorMsg(error.empty() ? "Unsupported curve type." : error);
        return op_failed;
    }
    cCurveCopy copy;
    copy.unit = whole.getCurvePtr()->getUnitIdentifier();
    const bool walked = postProcess::visitSamples(vectors, [&](const auto& samples) {
        using tY = std::remove_cvref_t<decltype(samples.y[0])>;
        for (uint64_t i = 0; i < samples.count; ++i) {
            copy.xs.push_back(static_cast<double>(samples.x[i]));
            if constexpr (postProcess::kIsComplex<tY>)
                copy.yc.emplace_back(samples.y[i].real(), samples.y[i].imag());
            else
                copy.ys.push_back(static_cast<double>(samples.y[i]));
        }
        copy.complex = postProcess::kIsComplex<tY>;
    });
    if (!walked) {
        errorMsg("Unsupported curve type.");
        return op_failed;
    }
    return storeTemporaryCurve(node, copy);
}

op_type cEvaluator::createWaveform(T& node)
{
    const std::string self = "create_waveform()";
    const size_t n = node.childSize();
    auto bad = [&](const std::string& more) {
        errorMsg("Bad arguments for \"" + self + "\"." + more);
        return op_failed;
    };
    if (n != 3 && n != 4)
        return bad("");
    const T& xNode = node.operands()[0];
    const T& yNode = node.operands()[1];
    if ((xNode.getOperator() != op_name && xNode.getOperator() != op_quoted_string) ||
        (yNode.getOperator() != op_name && yNode.getOperator() != op_quoted_string))
        return bad("");
    const std::string xName = xNode.getAsString(), yName = normaliseName(yNode.getAsString());
    cCurveCopy values;
    std::vector<double> xs;
    if (n == 4) {
        T xVector = node.operands()[3];
        if (checkIsStatus(evaluate(xVector)))
            return op_failed;
        if (xVector.getOperator() != op_real_vector)
            return bad("");
        xs = xVector.doubleValues();
    }
    T third = node.operands()[2];
    // An equation is recognised by its names that stand for nothing yet.
    std::set<std::string> unknown;
    for (const auto& name : third.computeVariableNames()) {
        if (!findUserDefinedExpression(name) && !checkIfCurveNameExists(name))
            unknown.insert(name);
    }
    if (!unknown.empty()) {
        if (unknown.size() > 1)
            return bad(" The equation has more than one unknown variable.");
        if (normaliseName(*unknown.begin()) != normaliseName(xName))
            return bad(" The x-axis variable must correspond to the equation's variable.");
        if (n == 3) {
            // Without x values, the x-axis of the current section.
            cCurvePlotDataSection* section = getCurrentSection();
            T axis;
            cCurveCopy copy;
            cPostProcessCurveDescription description;
            if (!section || !section->getNbOfSweepVariables() ||
                !makeXAxisCurve(axis, section->getSweepVariable(section->getNbOfSweepVariables() - 1).name()) ||
                !getCurveDescription(axis, description) || !readCurve(description, copy))
                return bad("");
            xs = copy.xs;
        }
        T xValues;
        xValues.setOperator(op_real_vector);
        xValues.doubleValues() = xs;
        third.substituteFunctionArguments({*unknown.begin()}, {xValues});
        // The vector size limit is for what users write, not for the samples of a curve.
        const uint64_t saved = mMaximumVectorSize;
        mMaximumVectorSize = std::max<uint64_t>(saved, xs.size());
        const op_type kind = evaluate(third);
        mMaximumVectorSize = saved;
        if (checkIsStatus(kind))
            return op_failed;
        if (third.checkIsNumber()) {
            // A constant: the same value everywhere.
            const tComplex value = third.getAsComplex();
            third.clear();
            third.setOperator(value.imag() != 0 ? op_complex_vector : op_real_vector);
            for (size_t i = 0; i < xs.size(); ++i) {
                third.pushDoubleValues(value.real());
                if (value.imag() != 0)
                    third.pushDoubleValues(value.imag());
            }
        }
    } else {
        if (checkIsStatus(evaluate(third)))
            return op_failed;
        if (n == 3 && third.checkIsVector()) {
            // y values alone: x counts 0, 1, 2, ...
            xs.resize(third.size());
            for (size_t i = 0; i < xs.size(); ++i)
                xs[i] = static_cast<double>(i);
        }
    }
    cNumbers ys;
    if (!readNumbers(third, ys) || !ys.vector)
        return bad("");
    if (ys.size() != xs.size()) {
        errorMsg("Incoherent vector sizes in \"" + self + "\".");
        return op_failed;
    }
    for (size_t i = 1; i < xs.size(); ++i)
        if (!(xs[i] >= xs[i - 1]))
            return bad(" The x values must rise.");
    values.xs = xs;
    values.complex = ys.complex;
    for (const auto& y : ys.values) {
        if (ys.complex)
            values.yc.push_back(y);
        else
            values.ys.push_back(y.real());
    }
    if (!defineOrUpdateNumericCurve(yName, values))
        return op_failed;
    node = T(yName);
    return op_name;
}

op_type cEvaluator::createRandomWaveform(T& node)
{
    // create_random_waveform(xName, yName, nPoints, xEnd, distribution): x from 0 to xEnd.
    const std::string self = "create_random_waveform()";
    if (node.childSize() != 5) {
        errorMsg("Bad arguments for \"" + self + "\".");
        return op_failed;
    }
    const T& xNode = node.operands()[0];
    const T& yNode = node.operands()[1];
    if ((xNode.getOperator() != op_name && xNode.getOperator() != op_quoted_string) ||
        (yNode.getOperator() != op_name && yNode.getOperator() != op_quoted_string)) {
        errorMsg("Bad arguments for \"" + self + "\".");
        return op_failed;
    }
    const std::string yName = normaliseName(yNode.getAsString());
    for (size_t i = 2; i < 5; ++i)
        if (checkIsStatus(evaluate(node.operands()[i])))
            return op_failed;
    const double count = node.operands()[2].getAsDouble(), xEnd = node.operands()[3].getAsDouble();
    if (!node.operands()[2].checkIsNumber() || !(count >= 1) || count != std::floor(count) || count > 1e9 ||
        !node.operands()[3].checkIsNumber() || !std::isfinite(xEnd)) {
        errorMsg("Bad arguments for \"" + self + "\".");
        return op_failed;
    }
    const auto n = static_cast<size_t>(count);
    cCurveCopy values;
    values.xs.resize(n);
    values.ys.resize(n);
    for (size_t i = 0; i < n; ++i) {
        values.xs[i] = n == 1 ? 0.0 : xEnd * static_cast<double>(i) / static_cast<double>(n - 1);
        if (!drawRandomNumber(node.operands()[4], values.ys[i])) {
            errorMsg("Bad arguments for \"" + self + "\".");
            return op_failed;
        }
    }
    if (xEnd < 0)
        std::reverse(values.xs.begin(), values.xs.end());
    if (!defineOrUpdateNumericCurve(yName, values))
        return op_failed;
    node = T(yName);
    return op_name;
}

op_type cEvaluator::reduceWaveform(T& node)
{
    if (node.childSize() < 2 || node.childSize() > 3)
        return op_bad_number_of_arguments;
    if (checkIsStatus(evaluateSubExpressions(node)))
        return op_failed;
    cPostProcessCurveDescription curve;
    if (!getCurveDescription(node.operands()[0], curve))
        return op_bad_first_argument;
    if (!node.operands()[1].checkIsNumber())
        return op_bad_second_argument;
    const double epsY = node.operands()[1].getAsDouble();
    double epsX = NAN;
    if (node.childSize() == 3) {
        if (!node.operands()[2].checkIsNumber())
            return op_bad_third_argument;
        epsX = node.operands()[2].getAsDouble();
    }
    cCurveCopy copy;
    if (!makeNumeric(curve) || !readCurve(curve, copy))
        return op_failed;
    if (copy.complex)
        postProcess::reduceNumberOfPoints(copy.xs, copy.yc, epsX, epsY);
    else
        postProcess::reduceNumberOfPoints(copy.xs, copy.ys, epsX, epsY);
    return storeTemporaryCurve(node, copy);
}

op_type cEvaluator::resampleWaveform(T& node)
{
    if (node.childSize() != 2 && node.childSize() != 4)
        return op_bad_number_of_arguments;
    if (checkIsStatus(evaluateSubExpressions(node)))
        return op_failed;
    cPostProcessCurveDescription curve;
    if (!getCurveDescription(node.operands()[0], curve) || !makeNumeric(curve))
        return op_bad_first_argument;
    cCurvePlotDataSection* section = getResultSection();
    const std::string name = generateNewTmpCurve();
    uint64_t index = 0;
    std::string error;
    bool done = false;
    if (node.childSize() == 2) {
        const T& xs = node.operands()[1];
        if (xs.getOperator() != op_real_vector)
            return op_bad_second_argument;
        const std::vector<double> grid = xs.doubleValues();
        done = postProcess::shapeStoreCurve(
            getDataFile(), *section, name, curve,
            [&](const auto& samples, std::vector<double>& out, auto& ys, std::string& message) {
                out = grid;
                return postProcess::resampleCurve(samples, out, ys, message);
            },
            index, error);
    } else {
        for (size_t i = 1; i < 4; ++i)
            if (!node.operands()[i].checkIsNumber())
                return i == 1 ? op_bad_second_argument : i == 2 ? op_bad_third_argument : op_bad_fourth_argument;
        done = postProcess::resampleCurve(getDataFile(), *section, name, curve, node.operands()[1].getAsDouble(),
                                          node.operands()[2].getAsDouble(), node.operands()[3].getAsDouble(), index,
                                          error);
    }
    return adoptTemporaryCurve(node, done, name, section->getSectionId(), error);
}

op_type cEvaluator::shiftWaveform(T& node)
{
    if (node.childSize() != 5)
        return op_bad_number_of_arguments;
    if (checkIsStatus(evaluateSubExpressions(node)))
        return op_failed;
    cPostProcessCurveDescription curve;
    if (!getCurveDescription(node.operands()[0], curve) || !makeNumeric(curve))
        return op_bad_first_argument;
    double factors[4];
    for (size_t i = 1; i < 5; ++i) {
        if (!node.operands()[i].checkIsNumber() || node.operands()[i].getOperator() == op_complex)
            return i == 1 ? op_bad_second_argument : i == 2 ? op_bad_third_argument : i == 3 ? op_bad_fourth_argument
                                                                                             : op_bad_arguments;
        factors[i - 1] = node.operands()[i].getAsDouble();
    }
    cCurvePlotDataSection* section = getResultSection();
    const std::string name = generateNewTmpCurve();
    uint64_t index = 0;
    std::string error;
    const bool shifted = postProcess::shiftCurve(getDataFile(), *section, name, curve, factors[0], factors[1],
                                                 factors[2], factors[3], index, error);
    return adoptTemporaryCurve(node, shifted, name, section->getSectionId(), error);
}

op_type cEvaluator::storeDigitalCurve(T& node, const postProcess::cSparseLogicResult& result)
{
    cCurvePlotDataSection* section = getDigitalResultSection(result.timeScale);
    cCurvePlotDataFile& store = getDataFile();
    const std::string name = generateNewTmpCurve();
    const cCurvePlotDataType* type =
        store.addType(result.width == 1 ? "logic" : "logic vector", curvePlotProperties::sparse_logic_vector_4_state,
                      curvePlotDataType::no_unit);
    const uint64_t index = section->addVariable(type, name);
    cCurvePlotVariable* curve = section->getVariablePtr(index);
    bool stored = curve && curve->setValueVectorPairSize(std::max<uint64_t>(result.count(), 1), result.width);
    for (uint64_t i = 0; stored && i < result.count(); ++i)
        stored = curve->pushBackValueVectorPair(result.positions[i], result.states.data() + i * result.width,
                                                result.width);
    if (!stored && curve)
        section->removeVariable(index);
    return adoptTemporaryCurve(node, stored, name, section->getSectionId(), "Unsupported curve type.");
}

op_type cEvaluator::computeCurveBit(T& node, const cPostProcessCurveDescription& curve, double bit)
{
    std::string error;
    if (!curve.load(false, error)) {
        errorMsg(error);
        return op_failed;
    }
    postProcess::cSparseLogic view;
    if (!postProcess::makeSparseLogic(*curve.getCurvePtr(), *curve.getSection(), view))
        return op_curves_of_wrong_type;
    if (!(bit >= 0) || bit != std::floor(bit))
        return op_bad_vector_index;
    // The bit index counts from the least significant bit, from 0.
    postProcess::cSparseLogicResult result;
    if (!postProcess::computeBit(view, static_cast<uint64_t>(bit), result, error)) {
        errorMsg(error);
        return op_failed;
    }
    return storeDigitalCurve(node, result);
}

op_type cEvaluator::createDigital(T& node, bool compare)
{
    if (node.childSize() < (compare ? 2u : 1u) || (compare && node.childSize() != 2))
        return op_bad_number_of_arguments;
    if (checkIsStatus(evaluateSubExpressions(node)))
        return op_failed;
    std::vector<postProcess::cSparseLogic> parts;
    for (size_t i = 0; i < node.childSize(); ++i) {
        cPostProcessCurveDescription curve;
        std::string error;
        if (!getCurveDescription(node.operands()[i], curve))
            return i == 0 ? op_bad_first_argument : i == 1 ? op_bad_second_argument : op_bad_arguments;
        if (!curve.load(false, error)) {
            errorMsg(error);
            return op_failed;
        }
        postProcess::cSparseLogic view;
        if (!postProcess::makeSparseLogic(*curve.getCurvePtr(), *curve.getSection(), view))
            return op_curves_of_wrong_type;
        parts.push_back(view);
    }
    postProcess::cSparseLogicResult result;
    std::string error;
    const bool done = compare ? postProcess::compareDigitalSignals(parts[0], parts[1], result, error)
                              : postProcess::createDigitalBus(parts, result, error);
    if (!done) {
        errorMsg(error);
        return op_failed;
    }
    return storeDigitalCurve(node, result);
}

}  // namespace vx3::waveformExpressionEvaluator
