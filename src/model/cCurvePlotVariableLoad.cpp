// Loading a curve's values from its file and releasing them again.
#include <algorithm>
#include <new>

#include "base/cVxLogger.h"
#include "model/cCurveDbLoader.h"
#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"
#include "model/cFileDbSupport.h"
#include "model/fileDbType.h"
#include "model/curveValueLookup.h"
#include "readers/scan/fileAccessCheck.h"

namespace vx3 {

using namespace curvePlotProperties;

namespace {
struct cLayout {
    uint64_t x;  // 0: flat
    uint64_t y;
};

// Bytes per value of the data types that a loader can fill; {0, 0} for the others. Logic
// vectors take one character per bit of logicWidth.
cLayout layoutOf(unsigned dataType, uint64_t logicWidth = 1)
{
    switch (dataType) {
    case data_double: case int_64: case uint_64: return {0, 8};
    case data_float: case int_32: case uint_32: case data_uint32_string: return {0, 4};
    case double_complex: case int_128: case double_smith_chart: return {0, 16};
    case float_complex: return {0, 8};
    case int_8: case uint_8: return {0, 1};
    case int_16: case uint_16: return {0, 2};
    case parameterized_double: return {8, 8};
    case parameterized_float: return {4, 4};
    case parameterized_double_complex: return {8, 16};
    case parameterized_float_complex: return {4, 8};
    case double_parameterized_float: case double_parameterized_int32: case double_parameterized_uint32:
    case data_double_parameterized_uint32_string:
        return {8, 4};
    case double_parameterized_uint8: case parameterized_9_level_logic: return {8, 1};
    case nine_level_logic: return {0, 1};
    case data_double_parameterized_logic_2_state: case data_double_parameterized_logic_4_state:
    case data_double_parameterized_logic_256_state:
        return {8, std::max<uint64_t>(1, logicWidth)};
    case interleaved_sparse_double_64b_index: return {0, 16};
    case interleaved_sparse_double_32b_index: return {0, 12};
    case interleaved_sparse_logic: return {0, 9};  // int64 position and one logic character
    case data_string: return {0, 1};
    default: return {0, 0};
    }
}

std::string quoted(const std::string& text) { return "\"" + text + "\""; }
}  // namespace

namespace {
// Logic changes: a 64-bit position and the states of a vector per record.
bool checkIsValueVectorType(unsigned dataType)
{
    return dataType == sparse_logic_vector_2_state || dataType == sparse_logic_vector_4_state ||
           dataType == sparse_logic_vector_256_state;
}
}  // namespace

bool cCurvePlotVariable::checkDataTypeCanBeLoaded(unsigned dataType)
{
    return layoutOf(dataType).y != 0 || checkIsValueVectorType(dataType);
}

bool cCurvePlotVariable::prepareStorageForLoading(unsigned dataType, uint64_t count)
{
    // A logic vector's width comes from the curve's type.
    if (checkIsValueVectorType(dataType)) {
        clearValues();
        setGrowthFlag(false);
        return setValueVectorPairSize(std::max<uint64_t>(count, 1),
                                      std::max<uint64_t>(mType ? mType->getConstantStringSize() : 1, 1));
    }
    const cLayout layout = layoutOf(dataType, mType ? mType->getConstantStringSize() : 1);
    if (!layout.y)
        return false;
    clearValues();
    setGrowthFlag(false);
    if (layout.x)
        return setParameterizedSize(count, layout.x, layout.y);
    if (dataType == data_string || dataType == interleaved_sparse_logic ||
        dataType == interleaved_sparse_double_64b_index || dataType == interleaved_sparse_double_32b_index) {
        // Sizes known only while reading: count is a first guess, the block grows.
        setGrowthFlag(true);
        return setSize(count, layout.y);
    }
    return setSize(count, layout.y);
}

returnCode cCurvePlotVariable::loadDataFromDb(const cVxLogger& logger, const cCurvePlotDataSection* section,
                                              uint64_t curveIndex, bool forSweep, unsigned flag)
{
    if (!checkDbSupportActive() || getReferenceCount() > 0 || !checkNeedsLoading())
        return ok;
    // A derived curve (a conversion of another) has no values of its own in the file.
    if (checkIsDerived() && section && mDerivationSource != curveIndex &&
        mDerivationSource < section->getNbOfVariables()) {
        return const_cast<cCurvePlotDataSection*>(section)
            ->getVariable(mDerivationSource)
            .loadDataFromDb(logger, section, mDerivationSource, forSweep, flag);
    }
    if (checkMustClose()) {
        logger.errorMsg("The variable " + quoted(mName) + " must close.");
        return failed;
    }
    cFileDbSupport& file = *getFile();
    if (!file.checkFileIsOpen() && !fileAccess::checkFileExists(file.getDataFileName())) {
        logger.errorMsg("The file " + quoted(file.fileName()) + " does no longer exist.");
        return file_not_found;
    }
    if (!file.openFile(&logger))
        return failed;
    if (getDbSize() == 0) {
        logger.warnMsg("The file " + quoted(file.fileName()) + " has empty data size.");
        return failed;
    }
    return loadFromOpenFile(logger, section, curveIndex, forSweep, flag);
}

returnCode cCurvePlotVariable::loadFromOpenFile(const cVxLogger& logger, const cCurvePlotDataSection* section,
                                                uint64_t curveIndex, bool forSweep, unsigned flag)
{
    cFileDbSupport& file = *getFile();
    const unsigned dataType = getDataType();
    const unsigned dbType = getLocalOrGlobalDbType();
    const std::shared_ptr<cCurveDbLoader> loader = curveDbLoaders::findLoader(dbType);
    std::string reason;
    if (!loader)
        reason = "no loader is registered for the file type " + quoted(fileDbSupport::getDbTypeAsSting(dbType));
    else if (!checkDataTypeCanBeLoaded(dataType))
        reason = "the data type " + quoted(dataTypeToString(dataType)) + " can't be loaded";
    else if (!prepareStorageForLoading(dataType, getDbSize()))
        reason = "not enough memory for " + std::to_string(getDbSize()) + " values";
    int code = reason.empty() ? ok : failed;
    cCurveLoadRequest request{*this, section, curveIndex, forSweep, flag, dataType, dbType, logger};
    if (code == ok) {
        try {
            code = curveDbLoaders::loadThroughOpenHandle(*loader, request, file, reason);
        } catch (const std::bad_alloc&) {
            code = failed;
            reason = "out of memory";
        }
    }
    if (code != ok) {
        freeStorage();
        setNeedsLoading(true);
        // A truncated file keeps failing through its old mapping: the next try opens it anew.
        file.closeFile();
        if (!reason.empty())
            logger.debugMsg(reason);
        logger.errorMsg("cCurvePlotVariable::loadDataFromDb failed for curve " + mName);
        return failed;
    }
    code = finishLoad(*loader, request, reason);
    if (code != ok) {
        freeStorage();
        setNeedsLoading(true);
        logger.debugMsg(reason);
        logger.errorMsg("cCurvePlotVariable::loadDataFromDb failed for curve " + mName);
        return failed;
    }
    return ok;
}

returnCode cCurvePlotVariable::finishLoad(cCurveDbLoader& loader, cCurveLoadRequest& request, std::string& reason)
{
    const bool forSweep = request.forSweep;
    if (checkIsParameterizedLayout())
        balanceParameterizedCurve();
    // Files that store the extremes of their curves save a pass over the values.
    curvePlotVariable::cMinMaxCache cache;
    if (loader.loadMinMaxValuesFromDb(request, cache)) {
        cache.initialized = true;
        mExtras.write().minMax = cache;
    } else {
        resetMinMaxInitialized();
    }
    convertEnum9LevelLogicToLogic(request.dataType);
    setNeedsLoading(false);
    replaceDigitalXRepresentation(request.dataType);
    // A plug-in may read (or amend) the values itself once the block is ready.
    if (request.dbType == fileDbSupport::plugin_db_access) {
        const int code = forSweep ? loader.loadSweepVariableDataDbAccess(request, reason)
                                  : loader.loadVariableDataDbAccess(request, reason);
        if (code != ok) {
            if (reason.empty())
                reason = "the plug-in could not read the values";
            return failed;
        }
    }
    if (request.valuesAreSparse && !convertParameterizedDataToSparse()) {
        reason = "the values could not be converted to their sparse form";
        return failed;
    }
    // An x axis needs its monotony for every lookup; one pass now saves it later.
    if (forSweep && mMonotony == derivedCurveFunction::monotony_unknown) {
        if (!checkIsParameterizedLayout() && getElementSize() == sizeof(double))
            mMonotony = curvePlotVariable::computeMonotonyType(doubleValues(), getVectorSize());
        else if (!checkIsParameterizedLayout() && getElementSize() == sizeof(float))
            mMonotony = curvePlotVariable::computeMonotonyType(floatValues(), getVectorSize());
    }
    return ok;
}

bool cCurvePlotVariable::convertParameterizedDataToSparse()
{
    return removeConstantRuns(checkCurveIsDigital(getDataType()) || checkIsDiscreteCurve(getDataType()));
}

bool cCurvePlotVariable::releaseDb()
{
    if (!checkDbSupportActive() || getReferenceCount() > 0 || checkIsDerived())
        return false;
    freeStorage();
    resetMinMaxInitialized();
    setNeedsLoading(true);
    return true;
}

returnCode cCurvePlotVariable::loadDataFromDbParallel(const cVxLogger& logger, cCurvePlotDataSection& section,
                                                      const std::vector<uint64_t>& curveIndices, unsigned threads)
{
    cFileDbSupport* file = section.getFile();
    std::vector<cCurvePlotVariable*> pending;
    std::vector<uint64_t> pendingIndices;
    for (uint64_t index : curveIndices) {
        cCurvePlotVariable* variable = section.getVariablePtr(index);
        if (variable && variable->checkDbSupportActive() && variable->getReferenceCount() <= 0 &&
            variable->checkNeedsLoading() && !variable->checkIsDerived() && variable->getFile() == file) {
            pending.push_back(variable);
            pendingIndices.push_back(index);
        }
    }
    if (pending.empty())
        return ok;
    const unsigned dbType = pending.front()->getLocalOrGlobalDbType();
    const std::shared_ptr<cCurveDbLoader> loader = curveDbLoaders::findLoader(dbType);
    // Without a shared loader, or with curves of different kinds, each loads on its own.
    bool shared = loader && file && file->checkSupportsParallelCurveDataAccess();
    for (cCurvePlotVariable* variable : pending)
        shared = shared && variable->getLocalOrGlobalDbType() == dbType && !variable->checkMustClose() &&
                 variable->getDbSize() > 0 && checkDataTypeCanBeLoaded(variable->getDataType());
    if (!shared || !file->openFile(&logger)) {
        returnCode result = ok;
        for (uint64_t index : curveIndices)
            if (cCurvePlotVariable* variable = section.getVariablePtr(index))
                if (variable->loadDataFromDb(logger, &section, index) != ok)
                    result = failed;
        return result;
    }
    std::vector<cCurveLoadRequest> requests;
    requests.reserve(pending.size());
    for (size_t i = 0; i < pending.size(); ++i) {
        cCurvePlotVariable* variable = pending[i];
        if (!variable->prepareStorageForLoading(variable->getDataType(), variable->getDbSize())) {
            for (size_t j = 0; j <= i; ++j)
                pending[j]->freeStorage();
            logger.errorMsg("cCurvePlotVariable::loadDataFromDb failed for curve " + variable->name());
            return failed;
        }
        requests.push_back({*variable, &section, pendingIndices[i], false, 0, variable->getDataType(), dbType, logger});
    }
    std::vector<cCurveLoadRequest*> pointers;
    for (cCurveLoadRequest& request : requests)
        pointers.push_back(&request);
    std::string reason;
    int code = failed;
    try {
        code = loader->loadSeveral(pointers, *file, threads, reason);
    } catch (const std::bad_alloc&) {
        reason = "out of memory";
    }
    if (code != ok) {
        for (cCurvePlotVariable* variable : pending) {
            variable->freeStorage();
            variable->setNeedsLoading(true);
        }
        file->closeFile();
        if (!reason.empty())
            logger.debugMsg(reason);
        logger.errorMsg("cCurvePlotVariable::loadDataFromDb failed for curve " + pending.front()->name());
        return failed;
    }
    returnCode result = ok;
    for (cCurveLoadRequest& request : requests) {
        std::string why;
        if (request.variable.finishLoad(*loader, request, why) != ok) {
            request.variable.freeStorage();
            request.variable.setNeedsLoading(true);
            logger.debugMsg(why);
            logger.errorMsg("cCurvePlotVariable::loadDataFromDb failed for curve " + request.variable.name());
            result = failed;
        }
    }
    return result;
}

}  // namespace vx3
