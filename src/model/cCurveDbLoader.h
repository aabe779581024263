// How the store reaches each file format's block loader without knowing the readers: a table
// keyed by fileDbSupport::db_type that a reader fills when it registers. A db type without a
// loader can't be loaded (code 3).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "readers/scan/cBitWiseParser.h"
#include "readers/scan/cVxBinFile.h"
#include "readers/scan/cVxMemoryFile.h"

namespace vx3 {

class cCurvePlotVariable;
class cCurvePlotDataSection;
class cFileDbHandle;
class cFileDbSupport;
class cVxLogger;
namespace curvePlotVariable {
struct cMinMaxCache;
}

// One load: the curve whose block was prepared for its data type and db size.
struct cCurveLoadRequest {
    cCurvePlotVariable& variable;
    const cCurvePlotDataSection* section;
    uint64_t curveIndex;
    bool forSweep;
    unsigned flag;
    unsigned dataType;
    unsigned dbType;
    const cVxLogger& logger;
    // Set by a loader that found the values to be sparse (few changes): the store converts the
    // curve to its sparse form once the load is done.
    bool valuesAreSparse = false;
};

class cCurveDbLoader {
public:
    virtual ~cCurveDbLoader() = default;
    // Fill request.variable from the file. 0 on success; otherwise 3 and the reason in error.
    // Readers of mapped files run their copies under the bus-error guard (the file access
    // classes do that), so that a file truncated meanwhile fails here instead of crashing.
    virtual int loadBlocks(cCurveLoadRequest& request, cBitWiseParser<cVxMemoryFile>& file, std::string& error) = 0;
    virtual int loadBlocks(cCurveLoadRequest& request, cBitWiseParser<cVxBinFile>& file, std::string& error) = 0;
    // Formats served by a data base handle (PWF) load through it; the others never get here.
    virtual int loadBlocks(cCurveLoadRequest& request, cFileDbHandle& handle, std::string& error);
    // A file that stores the extremes of its curves hands them out after a load, saving a pass.
    virtual bool loadMinMaxValuesFromDb(const cCurveLoadRequest& request, curvePlotVariable::cMinMaxCache& cache);
    // Plug-in files: the plug-in's own access runs after the block load, for a curve or for a
    // sweep (x-axis) variable. 0 on success, else 3 with the reason in error.
    virtual int loadVariableDataDbAccess(cCurveLoadRequest& request, std::string& error);
    virtual int loadSweepVariableDataDbAccess(cCurveLoadRequest& request, std::string& error);
    // Several curves of the same open file. Formats that store a row of all curves per point
    // override it to extract every curve in one pass; by default the curves load one by one.
    virtual int loadSeveral(std::vector<cCurveLoadRequest*>& requests, cFileDbSupport& file, unsigned threads,
                            std::string& error);
};

namespace curveDbLoaders {
// Replaces the loader of dbType; a null loader removes it.
void registerLoader(unsigned dbType, std::shared_ptr<cCurveDbLoader> loader);
void unregisterLoader(unsigned dbType);
std::shared_ptr<cCurveDbLoader> findLoader(unsigned dbType);
// One request through the handle that the file has open.
int loadThroughOpenHandle(cCurveDbLoader& loader, cCurveLoadRequest& request, cFileDbSupport& file,
                          std::string& error);
}  // namespace curveDbLoaders

}  // namespace vx3
