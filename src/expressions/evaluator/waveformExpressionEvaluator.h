// The evaluator's layer of curves. A curve stands in a tree as a name node: a curve of the
// current section, one named by waveform(), or a temporary curve "_n_" that an operation left in
// the result section. Each compute operation first tries the curve case and otherwise hands on
// to the number layer.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "expressions/evaluator/cBaseExpressionEvaluator.h"
#include "expressions/cPostProcessCurveDescription.h"
#include "expressions/cPostProcessCurveDescriptionUser.h"
#include "expressions/cWaveformExpression.h"
#include "expressions/postProcessLogic.h"
#include "model/cCurvePlotDataFile.h"

namespace vx3::waveformExpressionEvaluator {

class cEvaluator : public cBaseExpressionEvaluator<cWaveformExpression>, public cPostProcessCurveDescriptionUser {
public:
    using T = cWaveformExpression;
    using op_type = baseExpression::op_type;

    // A curve's samples copied out in rising x: y real, or complex.
    struct cCurveCopy {
        std::vector<double> xs;
        std::vector<double> ys;
        std::vector<tComplex> yc;
        bool complex = false;
        bool monotone = true;
        unsigned unit = 0;
        size_t size() const { return xs.size(); }
    };

    cEvaluator();
    ~cEvaluator() override;
    cEvaluator(const cEvaluator&) = delete;
    cEvaluator& operator=(const cEvaluator&) = delete;

    // The store in which curves are looked up and made; without one the evaluator has its own.
    void setDataFile(cCurvePlotDataFile* store);
    cCurvePlotDataFile& getDataFile() { return mStore ? *mStore : *mOwnStore; }
    // The section whose curves plain names find.
    void setCurrentSection(cCurvePlotDataSection* section);
    cCurvePlotDataSection* getCurrentSection() const;
    // Where results go: a tool box section of this name, made on first use.
    void setResultSectionName(const std::string& name)
    {
        if (name != mResultSectionName) {
            mResultSectionName = name;
            mResultSectionId = 0;
            mDigitalSectionIds.clear();
        }
    }
    const std::string& getResultSectionName() const { return mResultSectionName; }
    cCurvePlotDataSection* getResultSection();
    void setLogicLevels(const postProcess::cLogicLevels& levels, double riseTime)
    {
        mLevels = levels;
        mRiseTime = riseTime;
    }

    // ---- Curves of the evaluation
    bool checkIfCurveNameExists(const std::string& name) const;
    // The curve that node (a name node) stands for; false for other nodes.
    bool getCurveDescription(const T& node, cPostProcessCurveDescription& description) const;
    // The curve of an evaluation's result, null when the result is no curve.
    const cCurvePlotVariable* getResultCurvePtr(const T& result) const;
    std::string generateNewTmpCurve();
    std::string generateNewCurveName(const std::string& base) const;
    void insertTemporaryCurve(const std::string& name, uint64_t sectionId) { mTemporaryCurves[name] = sectionId; }
    // The curve that the engine stored under name becomes the node's value (op_name); when it
    // could not be stored, error is the evaluation's message (op_failed).
    op_type adoptTemporaryCurve(T& node, bool stored, const std::string& name, uint64_t sectionId,
                                const std::string& error);
    void insertLoadedCurves(const std::string& key, const cPostProcessCurveDescription& description);
    // Removes the curves "_n_" from the result section; named curves stay.
    void clearTemporaryCurves();
    void clearLoadedCurves() { mLoadedCurves.clear(); }
    // Removes a curve defined by assignment.
    bool clearNumericCurve(const std::string& name);
    // Makes the curve that value names the curve name of the result section, replacing an old one.
    op_type defineOrUpdateCurve(const std::string& name, T& value);
    // A numeric curve of its own values, replacing one of the same name.
    bool defineOrUpdateNumericCurve(const std::string& name, const cCurveCopy& values);
    void clearEvaluator() override;

    // ---- The compute operations, curves first
    op_type computeString(T& node) override;
    op_type computeIndex(T& node) override;
    op_type computeAssign(T& node) override;
    op_type computeUserDefinedFunction(T& node) override;
    op_type computeOperator(T& node) override;
    op_type computeSpecialFunction(T& node, bool& handled) override;
    bool checkIfEvaluationResultMakesSense(const T& tree) const override;

    // Which operands of node are curves, and their descriptions (digital ones turned to numbers).
    op_type checkIfEvaluationIsPossible(T& node, std::vector<cPostProcessCurveDescription>& descriptions,
                                        std::vector<bool>& isCurve);
    // The samples of a curve, in rising x; false with the reason logged.
    bool readCurve(const cPostProcessCurveDescription& description, cCurveCopy& copy);
    // Stores values as a new temporary curve and makes node its name.
    op_type storeTemporaryCurve(T& node, const cCurveCopy& values);

private:
    struct cLoadedCurve {
        uint64_t sectionId = 0;
        uint64_t index = 0;
    };

    op_type reportEngineError(const std::string& fallback);
    // A digital curve as numbers, by the logic levels; other curves as they are.
    bool makeNumeric(cPostProcessCurveDescription& description);
    op_type computeCurveUnary(T& node, const cPostProcessCurveDescription& curve);
    op_type computeCurveBinary(T& node, const std::vector<cPostProcessCurveDescription>& curves,
                               const std::vector<bool>& isCurve);
    op_type computeCurveFunction(T& node, const std::vector<cPostProcessCurveDescription>& curves,
                                 const std::vector<bool>& isCurve, bool& handled);
    // A function of a table (poly, interpolate_linear, ...) at each sample of the last argument's curve.
    op_type computeTableOfCurve(T& node, const std::vector<cPostProcessCurveDescription>& curves,
                                const std::vector<bool>& isCurve);
    op_type computeExtreme(T& node, const cPostProcessCurveDescription& curve, bool maximum, bool xValue);
    op_type computeMeasurement(T& node, const cPostProcessCurveDescription& curve);
    // The symbolic derivative of an expression by a name, or its value at a point.
    op_type computeDerivative(T& node);
    // fft, ifft, the shifts and the windows (waveformExpressionEvaluatorFourier.cpp).
    static bool checkIsSpectralFunction(op_type op);
    op_type computeWindow(T& node);
    op_type computeVectorSpectrum(T& node);
    op_type computeCurveSpectrum(T& node, const cPostProcessCurveDescription& curve);
    op_type computeCurveBit(T& node, const cPostProcessCurveDescription& curve, double bit);
    op_type createOrFindWaveform(T& node, bool& handled);
    op_type computeWaveform(T& node);
    op_type createWaveform(T& node);
    op_type copySweepCut(T& node, cPostProcessCurveDescription description);
    op_type createRandomWaveform(T& node);
    op_type reduceWaveform(T& node);
    op_type resampleWaveform(T& node);
    op_type shiftWaveform(T& node);
    op_type createDigital(T& node, bool compare);
    op_type computeCurveAsFunction(T& node, const cPostProcessCurveDescription& curve);
    // The interval arguments from position first on: NaN when absent.
    bool readInterval(const T& node, size_t first, double& x1, double& x2);
    // A temporary curve y = x of the current section's x-axis, for the name of that axis.
    bool makeXAxisCurve(T& node, const std::string& name);
    // A result section for digital curves whose ticks are scale seconds.
    cCurvePlotDataSection* getDigitalResultSection(double scale);
    op_type storeDigitalCurve(T& node, const postProcess::cSparseLogicResult& result);

    cCurvePlotDataFile* mStore = nullptr;
    std::unique_ptr<cCurvePlotDataFile> mOwnStore;
    uint64_t mCurrentSectionId = 0;
    uint64_t mResultSectionId = 0;
    std::map<double, uint64_t> mDigitalSectionIds;
    std::string mResultSectionName = "post_process";
    std::map<std::string, uint64_t> mTemporaryCurves;  // curves made here, by name: their section id
    std::map<std::string, cLoadedCurve> mLoadedCurves;
    uint64_t mTemporaryCounter = 0;
    postProcess::cLogicLevels mLevels{0.0, 1.0, 0.5, 0.3};
    double mRiseTime = 1e-15;
};

}  // namespace vx3::waveformExpressionEvaluator
