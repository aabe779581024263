// The curves of a plot: adding with the unit rules, removing, undo and redo, reloads.
#include "plot/cPlotWidgetCommon.h"

#include <algorithm>
#include <cmath>

#include "base/cLoggedException.h"
#include "base/cVxLogger.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"
#include "model/dataUnit.h"
#include "model/derivedCurveFunction.h"

namespace vx3 {

using namespace plotWidgetCommon;
using singlePlotWidgetData::part_hidden;

namespace {

// Values that no drawer can put on an axis: texts, structures, declarations.
bool checkIsNonNumeric(unsigned type)
{
    using namespace curvePlotProperties;
    switch (type) {
    case unclear:
    case data_empty:
    case data_string:
    case data_uint32_string:
    case data_uint32_string_sweep_matrix:
    case data_constant_size_string_sweep_matrix:
    case data_double_parameterized_uint32_string:
    case struct_scalar:
    case struct_vector:
    case string_vector:
        return true;
    default:
        return type >= data_array && type <= unit_declaration;
    }
}

// Curves share an axis when their units are the same, or when one of them doesn't say.
bool checkUnitsCompatible(unsigned a, unsigned b)
{
    using namespace curvePlotDataType;
    return a == b || a == undefined_unit || b == undefined_unit || a == any_unit || b == any_unit;
}

std::string unitText(unsigned unit)
{
    const char* text = curvePlotDataType::unitToShortString(unit);
    return text ? text : "";
}

}  // namespace

cPlotWidgetCommon::cPlotWidgetCommon(const cVxLogger& logger, wxAnalogPlotVirtual* page, int windowType)
    : mLogger(logger), mPage(page), mWindowType(windowType)
{
    setSettings(mSettings);
    applyAxisPixels();
    computeBoundingBox();
    unzoom(false);  // an empty plot shows its default boxes as if they held curves
}

cPlotWidgetCommon::~cPlotWidgetCommon() = default;

// --- adding ---------------------------------------------------------------------------------------

bool cPlotWidgetCommon::checkCurveCanBePlotted(const wxCurveDescription& description) const
{
    if (!description.checkIsVariable() || checkIsNonNumeric(description.curvePlotVariable().getDataType())) {
        mLogger.debugMsg("Non-numeric y-axis values.");
        return false;
    }
    const cCurvePlotDataSection& section = *description.getSection();
    const uint64_t sweeps = section.getNbOfSweepVariables();
    if (sweeps && checkIsNonNumeric(section.getSweepVariable(sweeps - 1).getDataType())) {
        mLogger.debugMsg("Non-numeric x-axis values.");
        return false;
    }
    return true;
}

int cPlotWidgetCommon::getCorrespondingAxis(const wxCurveDescription& description, unsigned unit,
                                            bool& isXMismatch) const
{
    isXMismatch = false;
    if (mSettings.checkXAxisUnit && !mCurves.empty() &&
        !checkUnitsCompatible(description.getSweepVariableUnitIdentifier(), mXAxis.getDataUnitIdentifier())) {
        isXMismatch = true;
        return -1;
    }
    if (!mSettings.checkYAxisUnit || checkUnitsCompatible(unit, mY0Axis.getDataUnitIdentifier()))
        return 0;
    if (mY1Active && !checkUnitsCompatible(unit, mY1Axis.getDataUnitIdentifier()))
        return -1;
    return 1;
}

void cPlotWidgetCommon::initialiseXAxisFrom(const wxSinglePlotWidgetData& curve)
{
    mXAxis.setDataUnitIdentifier(curve.getXUnit());
    // Logarithmically spaced X (an AC sweep) reads best on a log axis, if all of it is positive.
    const wxCurveDescription& description = curve.description();
    const bool log = description.checkIsVariable() && curve.getMinX() > 0.0 &&
                     description.curvePlotVariable().checkForLogarithmicScale(*description.getSection());
    mXAxis.setLog(log);
    mY0Axis.setDataUnitIdentifier(curve.checkRealPartShown() ? curve.getRealUnit() : curve.getImagUnit());
    mY1Active = false;
    if (mPage)
        mPage->analogPlotVirtualLockXAxisType(this, curve.getXUnit());
}

bool cPlotWidgetCommon::addCurveToPlotData(const wxCurveDescription& description, unsigned realConversion,
                                           unsigned imagConversion, size_t& index, unsigned position)
{
    index = mCurves.size();
    if (description.checkIsVariable() && description.curvePlotVariable().checkMustClose())
        return true;  // going away with its file: nothing to do, and nothing wrong
    if (!checkCurveCanBePlotted(description)) {
        mRefusedDataType = true;
        setFlagIncompatDataType(true);
        return false;
    }
    const unsigned allowed = mPage ? mPage->analogPlotVirtualGetNumberOfAllowedCurves() : static_cast<unsigned>(-1);
    if (mCurves.size() >= allowed) {
        mRefusedMaxCurves = true;
        return false;
    }
    wxSinglePlotWidgetData candidate(description, realConversion, imagConversion);
    if (candidate.checkIsComplex() && candidate.getRealConversion() == part_hidden) {
        // The first part shown sits in the real slot.
        candidate.setRealConversion(imagConversion);
        candidate.setImagConversion(part_hidden);
    }
    if (!candidate.checkRealPartShown() && !candidate.checkImagPartShown())
        return true;
    candidate.computeDerivedMinMaxValuesIfNecessary(false);

    // Which axes the parts go on.
    bool openY1 = false;
    bool xMismatch = false;
    if (mCurves.empty()) {
        if (mPage) {
            mPage->analogPlotVirtualConnectPlotIfPossible(this);
            unsigned locked = 0;
            if (mPage->analogPlotVirtualCheckIfXAxisTypeIsLocked(this, locked) && mSettings.checkXAxisUnit &&
                !checkUnitsCompatible(locked, candidate.getXUnit())) {
                mRefusedName = description.getName();
                setFlagIncompatX(true);
                return false;
            }
        }
        candidate.setRealAxis(0);
        if (candidate.checkImagPartShown()) {
            const bool differ = mSettings.checkYAxisUnit &&
                                !checkUnitsCompatible(candidate.getImagUnit(), candidate.getRealUnit());
            candidate.setImagAxis(differ ? 1 : 0);
            openY1 = differ;
        }
    } else {
        if (candidate.checkRealPartShown()) {
            const int axis = getCorrespondingAxis(description, candidate.getRealUnit(), xMismatch);
            if (axis < 0) {
                mRefusedName = description.getName();
                mRefusedUnit = candidate.getRealUnit();
                if (xMismatch)
                    setFlagIncompatX(true);
                else
                    setFlagIncompatY(true);
                return false;
            }
            candidate.setRealAxis(axis);
            openY1 = axis == 1 && !mY1Active;
        }
        if (candidate.checkImagPartShown()) {
            int axis = getCorrespondingAxis(description, candidate.getImagUnit(), xMismatch);
            // A second axis opened for the real part takes the imaginary part when the units agree.
            if (axis == 1 && openY1 && !checkUnitsCompatible(candidate.getImagUnit(), candidate.getRealUnit()))
                axis = -1;
            if (axis < 0) {
                mRefusedName = description.getName();
                mRefusedImagY = true;
                setFlagIncompatY(true);
                return false;
            }
            candidate.setImagAxis(axis);
            openY1 = openY1 || (axis == 1 && !mY1Active);
        }
    }

    // Already there: the same conversions count as present, a hidden part of a complex curve comes back.
    for (size_t i = 0; i < mCurves.size(); ++i) {
        wxSinglePlotWidgetData& present = mCurves[i];
        if (!present.checkIfPlotIsIdentical(candidate))
            continue;
        const bool sameReal = present.getRealConversion() == candidate.getRealConversion();
        const bool sameImag = !candidate.checkImagPartShown() || present.getImagConversion() == candidate.getImagConversion();
        if (sameReal && sameImag) {
            index = i;
            return true;
        }
        if (!present.checkIsComplex())
            continue;
        const unsigned shown = candidate.getRealConversion();
        const int shownAxis = candidate.getRealAxis();
        if (!present.checkImagPartShown() && present.checkRealPartShown() && present.getRealConversion() != shown) {
            present.setImagConversion(shown);
            present.setImagAxis(shownAxis);
            present.description().style().copyRealToImagStyle();
            present.computeDerivedMinMaxValuesIfNecessary(true);
            wxSinglePlotWidgetData part = present;
            part.setRealConversion(part_hidden);
            insertToAddedCurves(part, static_cast<unsigned>(i));
        } else if (!present.checkRealPartShown()) {
            present.setRealConversion(shown);
            present.setRealAxis(shownAxis);
            present.description().style().copyImagToRealStyle();
            present.computeDerivedMinMaxValuesIfNecessary(true);
            wxSinglePlotWidgetData part = present;
            part.setImagConversion(part_hidden);
            insertToAddedCurves(part, static_cast<unsigned>(i));
        } else {
            continue;
        }
        if (openY1) {
            mY1Active = true;
            mY1Axis.setDataUnitIdentifier(present.getImagUnit());
        }
        index = i;
        incrementBoundingBox(present);
        return true;
    }

    if (mPage)
        mPage->analogPlotVirtualAdjustCurveStyleForNewCurve(this, candidate.description());
    const bool first = mCurves.empty();
    if (position < mCurves.size()) {
        mCurves.insert(mCurves.begin() + position, candidate);
        index = position;
    } else {
        mCurves.push_back(candidate);
        index = mCurves.size() - 1;
    }
    if (first)
        initialiseXAxisFrom(mCurves[index]);
    if (openY1) {
        mY1Active = true;
        const wxSinglePlotWidgetData& added = mCurves[index];
        mY1Axis.setDataUnitIdentifier(added.checkImagPartShown() && added.getImagAxis() == 1 && added.getRealAxis() != 1
                                          ? added.getImagUnit()
                                          : added.getRealUnit());
    }
    insertToAddedCurves(mCurves[index], static_cast<unsigned>(index));
    incrementBoundingBox(mCurves[index]);
    return true;
}

bool cPlotWidgetCommon::addToPlot(const wxCurveDescription& description)
{
    return addToPlot(std::vector<wxCurveDescription>{description});
}

bool cPlotWidgetCommon::addToPlot(const std::vector<wxCurveDescription>& descriptions, unsigned position)
{
    clearDiagnosisFlags();
    mRefusedDataType = mRefusedMaxCurves = mRefusedImagY = false;
    mRefusedUnit = 0;
    mRefusedName.clear();
    const bool wasEmpty = mCurves.empty();
    const bool y1Before = mY1Active;
    const size_t countBefore = mCurves.size();
    addedCurvesStart();
    size_t handled = 0;
    for (const wxCurveDescription& description : descriptions) {
        // A conversion that shows two values shows its second one in the imaginary slot.
        const unsigned conversion = description.postProcessState().realConversion;
        const unsigned imag = derivedCurveFunction::checkConversionHasTwoValues(conversion) ? conversion : part_hidden;
        size_t index = 0;
        if (addCurveToPlotData(description, conversion, imag, index, position)) {
            ++handled;
            if (position != singlePlotWidgetUndoBuffer::no_position)
                ++position;
        }
    }
    removeLastEntryIfEmpty();
    if (wasEmpty && !mCurves.empty()) {
        // Not a user's zoom: the sliding window must not pause for it.
        const bool userZoom = mSlidingWindowUserZoom;
        mSlidingWindowUserZoom = true;
        unzoom(false);
        mSlidingWindowUserZoom = userZoom;
    } else if (mY1Active && !y1Before) {
        unzoomY1();
    } else if (mCurves.size() != countBefore) {
        plotRequestAddedCurve();  // the view stays: only the new curves are drawn
    } else if (handled) {
        plotRequestFullRedraw();  // a part of a curve already there came back
    }
    zoomToSlidingWindow(true);
    reportAddResult(descriptions.size(), handled);
    return handled > 0;
}

void cPlotWidgetCommon::reportAddResult(size_t requested, size_t added)
{
    if (added == requested)
        return;
    if (mRefusedMaxCurves)
        printMessage("The maximum allowed number of curves has been reached.");
    else if (mRefusedDataType)
        printMessage("Incompatible curve data type.");
    else if (mIncompatX)
        printMessage("Incompatible X axis units.");
    else if (mRefusedImagY)
        printMessage("Incompatible Y axis units for imaginary part of the curve.");
    else if (mIncompatY)
        printMessage("Incompatible Y axis units " + getDiagnosis());
    printMessage(added == 0 ? "The curves could not be plotted." : "Only a part of the curves were plotted.");
}

std::string cPlotWidgetCommon::getDiagnosis() const
{
    if (mBadDropPosition)
        return "(the new position is not allowed)";
    if (mOnlySingleSelection)
        return "(only a single selection of curves can be moved)";
    if (mTargetRefusedDnd)
        return "(incompatible drop target)";
    if (mNoCurveSelected)
        return "(no curve selected)";
    if (mIncompatX && !mIncompatY)
        return "(incompatible x axis units)";
    if (mIncompatNbSweeps)
        return "(incompatible number of x axes)";
    if (mIncompatX && mIncompatY)
        return "(incompatible x and y axis units)";
    if (mIncompatDataType)
        return "(incompatible data type)";
    if (mIncompatY)
        return "(incompatible y axis units \"" + unitText(mRefusedUnit) + "\", should be \"" +
               unitText(mY0Axis.getDataUnitIdentifier()) + "\" or \"" + unitText(mY1Axis.getDataUnitIdentifier()) +
               "\")";
    return std::string();
}

std::string cPlotWidgetCommon::makeSureCurveNameIsNotTooLong(const std::string& name)
{
    if (name.size() <= 20)
        return name;
    return name.substr(0, 9) + " - " + name.substr(name.size() - 8);
}

// --- removing -------------------------------------------------------------------------------------

bool cPlotWidgetCommon::removeCurveFromVector(size_t index, bool imaginary, bool& axesChanged)
{
    if (index >= mCurves.size())
        return false;
    wxSinglePlotWidgetData& curve = mCurves[index];
    if (curve.checkRealPartShown() && curve.checkImagPartShown()) {
        // One part goes; the other stays, so the curve stays.
        wxSinglePlotWidgetData part = curve;
        if (imaginary) {
            part.setRealConversion(part_hidden);
            curve.setImagConversion(part_hidden);
        } else {
            part.setImagConversion(part_hidden);
            curve.setRealConversion(part_hidden);
        }
        insertToRemovedCurves(part, static_cast<unsigned>(index));
        return true;
    }
    insertToRemovedCurves(curve, static_cast<unsigned>(index));
    mCurves.erase(mCurves.begin() + index);
    axesChanged = true;
    return true;
}

void cPlotWidgetCommon::updateAfterRemove()
{
    if (mCurves.empty()) {
        clear();
        return;
    }
    bool y1Used = false;
    for (const wxSinglePlotWidgetData& curve : mCurves)
        y1Used = y1Used || (curve.checkRealPartShown() && curve.getRealAxis() == 1) ||
                 (curve.checkImagPartShown() && curve.getImagAxis() == 1);
    mY1Active = y1Used;
    computeBoundingBox();
    plotRequestFullRedraw();
    if (mPage)
        mPage->analogPlotVirtualCurveRemoved(this);
}

bool cPlotWidgetCommon::removeFromPlot(size_t index, bool imaginary)
{
    if (index >= mCurves.size())
        return false;
    removedCurvesStart();
    bool axesChanged = false;
    removeCurveFromVector(index, imaginary, axesChanged);
    removeLastEntryIfEmpty();
    updateAfterRemove();
    return true;
}

bool cPlotWidgetCommon::removeCurvesFromPlot(std::vector<size_t> indices)
{
    std::sort(indices.begin(), indices.end());
    indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
    while (!indices.empty() && indices.back() >= mCurves.size())
        indices.pop_back();
    if (indices.empty())
        return false;
    removedCurvesStart();
    // From the back, so that the recorded positions are those of the list as it was.
    for (auto it = indices.rbegin(); it != indices.rend(); ++it) {
        insertToRemovedCurves(mCurves[*it], static_cast<unsigned>(*it));
        mCurves.erase(mCurves.begin() + *it);
    }
    removeLastEntryIfEmpty();
    updateAfterRemove();
    return true;
}

bool cPlotWidgetCommon::clearCurves()
{
    std::vector<size_t> all(mCurves.size());
    for (size_t i = 0; i < all.size(); ++i)
        all[i] = i;
    return removeCurvesFromPlot(all);
}

void cPlotWidgetCommon::clear()
{
    mCurves.clear();
    mY1Active = false;
    mXAxis.setLog(false);
    mXAxis.setDataUnitIdentifier(0);
    mY0Axis.setDataUnitIdentifier(0);
    mY1Axis.setDataUnitIdentifier(0);
    computeBoundingBox();
    unzoom(false);
    plotRequestFullRedraw();
    if (mPage)
        mPage->analogPlotVirtualCurvesWereCleared(this);
}

void cPlotWidgetCommon::removeCurvesOfSection(const cCurvePlotDataSection* section)
{
    auto ofSection = [section](const wxSinglePlotWidgetData& curve) {
        return curve.description().getSection() == section;
    };
    removeItemsIf(ofSection);
    const size_t before = mCurves.size();
    mCurves.erase(std::remove_if(mCurves.begin(), mCurves.end(), ofSection), mCurves.end());
    if (mCurves.size() != before)
        updateAfterRemove();
}

void cPlotWidgetCommon::clearSectionPtrsForDestructor()
{
    mCurves.clear();
    clearUndoBuffer();
}

void cPlotWidgetCommon::releaseCurvesForReload(const cFileDbSupport* file)
{
    auto ofFile = [file](const wxSinglePlotWidgetData& curve) {
        const cCurvePlotDataSection* section = curve.description().getSection();
        return section && section->getFile() == file;
    };
    removeItemsIf(ofFile);
    for (size_t i = 0; i < mCurves.size(); ++i) {
        wxCurveDescription& description = mCurves[i].description();
        if (!ofFile(mCurves[i]) || !description.checkIsVariable())
            continue;
        mReleasedCurves.push_back({i, description.getSection()->getSectionId(), description.getName()});
        description.release();
    }
}

void cPlotWidgetCommon::reattachCurvesAfterReload(cCurvePlotDataFile& store)
{
    if (mReleasedCurves.empty())
        return;
    std::vector<size_t> gone;
    for (const cReleasedCurve& released : mReleasedCurves) {
        wxSinglePlotWidgetData& curve = mCurves[released.index];
        cCurvePlotDataSection* section = store.findSectionFromId(released.sectionId);
        const uint64_t index = section ? section->findVariableIndex(released.name) : 0;
        if (!section || index >= section->getNbOfVariables()) {
            gone.push_back(released.index);
            continue;
        }
        // init starts the post-process state afresh: this plot's state of the curve stays.
        const curveDescription::cPostProcessState state = curve.description().postProcessState();
        try {
            curve.description().init(section, index);
        } catch (const cLoggedException& exception) {
            mLogger.errorMsg(exception.message());
            gone.push_back(released.index);
            continue;
        }
        curve.description().postProcessState() = state;
        curve.resetMinMaxInitialized();
    }
    mReleasedCurves.clear();
    for (auto it = gone.rbegin(); it != gone.rend(); ++it)
        mCurves.erase(mCurves.begin() + *it);
    if (!gone.empty())
        updateAfterRemove();  // the second axis may have lost its curves, or the plot all of them
    if (!mCurves.empty())
        redrawAfterReload(true);
}

// --- undo -----------------------------------------------------------------------------------------

void cPlotWidgetCommon::insertCurveAt(const wxSinglePlotWidgetData& item, unsigned position)
{
    for (wxSinglePlotWidgetData& present : mCurves) {
        if (!present.checkIfPlotIsIdentical(item))
            continue;
        // A part of a curve that is still there comes back into its slot.
        if (item.checkRealPartShown() && !present.checkRealPartShown()) {
            present.setRealConversion(item.getRealConversion());
            present.setRealAxis(item.getRealAxis());
            present.description().style().copyRealStyle(item.description().style());
        }
        if (item.checkImagPartShown() && !present.checkImagPartShown()) {
            present.setImagConversion(item.getImagConversion());
            present.setImagAxis(item.getImagAxis());
            present.description().style().copyImagStyle(item.description().style());
        }
        return;
    }
    const size_t at = std::min<size_t>(position, mCurves.size());
    mCurves.insert(mCurves.begin() + at, item);
    if (mCurves.size() == 1)
        initialiseXAxisFrom(mCurves.front());
    const wxSinglePlotWidgetData& added = mCurves[at];
    if ((added.checkRealPartShown() && added.getRealAxis() == 1) || (added.checkImagPartShown() && added.getImagAxis() == 1)) {
        if (!mY1Active)
            mY1Axis.setDataUnitIdentifier(added.getRealAxis() == 1 ? added.getRealUnit() : added.getImagUnit());
        mY1Active = true;
    }
}

namespace {
// Takes away the parts that item shows from the curve it names; true when the curve went.
bool removeParts(std::vector<wxSinglePlotWidgetData>& curves, const wxSinglePlotWidgetData& item)
{
    for (size_t i = 0; i < curves.size(); ++i) {
        wxSinglePlotWidgetData& present = curves[i];
        if (!present.checkIfPlotIsIdentical(item))
            continue;
        if (item.checkRealPartShown())
            present.setRealConversion(part_hidden);
        if (item.checkImagPartShown())
            present.setImagConversion(part_hidden);
        if (!present.checkRealPartShown() && !present.checkImagPartShown())
            curves.erase(curves.begin() + i);
        return true;
    }
    return false;
}
}  // namespace

bool cPlotWidgetCommon::performUndoAction()
{
    if (!checkCanUndo())
        return false;
    const cEntry entry = stepBackForUndo();
    const bool wasEmpty = mCurves.empty();
    // Replaying must not record itself.
    setUndoBufferEnabled(false);
    if (entry.action == singlePlotWidgetUndoBuffer::curves_added) {
        for (auto it = entry.items.rbegin(); it != entry.items.rend(); ++it)
            removeParts(mCurves, *it);
    } else {
        for (size_t k = entry.items.size(); k-- > 0;)
            insertCurveAt(entry.items[k], entry.positions[k]);
    }
    return finishUndoRedoStep(wasEmpty);
}

// What an undo and a redo step share once the curves are back or gone.
bool cPlotWidgetCommon::finishUndoRedoStep(bool wasEmpty)
{
    setUndoBufferEnabled(true);
    if (mCurves.empty()) {
        clear();
        return true;
    }
    for (wxSinglePlotWidgetData& curve : mCurves)
        curve.computeDerivedMinMaxValuesIfNecessary(false);
    updateAfterRemove();
    if (wasEmpty)
        unzoom(false);
    return true;
}

bool cPlotWidgetCommon::performRedoAction()
{
    if (!checkCanRedo())
        return false;
    const cEntry entry = stepForwardForRedo();
    const bool wasEmpty = mCurves.empty();
    setUndoBufferEnabled(false);
    if (entry.action == singlePlotWidgetUndoBuffer::curves_added) {
        for (size_t k = 0; k < entry.items.size(); ++k)
            insertCurveAt(entry.items[k], entry.positions[k]);
    } else {
        for (const wxSinglePlotWidgetData& item : entry.items)
            removeParts(mCurves, item);
    }
    return finishUndoRedoStep(wasEmpty);
}

// --- reload ---------------------------------------------------------------------------------------

void cPlotWidgetCommon::redrawAfterReload(bool force)
{
    bool changed = false;
    for (wxSinglePlotWidgetData& curve : mCurves) {
        if (!force && !curve.checkVariableWasReloaded())
            continue;
        curve.resetMinMaxInitialized();
        curve.computeDerivedMinMaxValuesIfNecessary(true);
        changed = true;
    }
    if (!changed)
        return;
    const bool wasUnzoomed = mUnzoomed;
    computeBoundingBox();
    if (wasUnzoomed && !mSlidingWindowDefined)
        unzoom(false);
    else
        plotRequestFullRedraw();
    zoomToSlidingWindow(false);
}

}  // namespace vx3
