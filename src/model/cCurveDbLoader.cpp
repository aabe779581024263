#include "model/cCurveDbLoader.h"

#include <array>
#include <mutex>

#include "model/cFileDbSupport.h"
#include "model/fileDbType.h"

namespace vx3 {

namespace {
std::mutex gMutex;
std::array<std::shared_ptr<cCurveDbLoader>, fileDbSupport::kNbOfDbTypes> gLoaders;
}  // namespace

int cCurveDbLoader::loadBlocks(cCurveLoadRequest&, cFileDbHandle&, std::string& error)
{
    error = "this file type can't be read through a data base";
    return 3;
}

bool cCurveDbLoader::loadMinMaxValuesFromDb(const cCurveLoadRequest&, curvePlotVariable::cMinMaxCache&)
{
    return false;
}

int cCurveDbLoader::loadVariableDataDbAccess(cCurveLoadRequest&, std::string&) { return 0; }

int cCurveDbLoader::loadSweepVariableDataDbAccess(cCurveLoadRequest&, std::string&) { return 0; }

int cCurveDbLoader::loadSeveral(std::vector<cCurveLoadRequest*>& requests, cFileDbSupport& file, unsigned,
                                std::string& error)
{
    for (cCurveLoadRequest* request : requests) {
        const int code = curveDbLoaders::loadThroughOpenHandle(*this, *request, file, error);
        if (code != 0)
            return code;
    }
    return 0;
}

namespace curveDbLoaders {

void registerLoader(unsigned dbType, std::shared_ptr<cCurveDbLoader> loader)
{
    if (dbType >= gLoaders.size())
        return;
    std::lock_guard<std::mutex> lock(gMutex);
    gLoaders[dbType] = std::move(loader);
}

void unregisterLoader(unsigned dbType) { registerLoader(dbType, nullptr); }

std::shared_ptr<cCurveDbLoader> findLoader(unsigned dbType)
{
    if (dbType >= gLoaders.size())
        return nullptr;
    std::lock_guard<std::mutex> lock(gMutex);
    return gLoaders[dbType];
}

int loadThroughOpenHandle(cCurveDbLoader& loader, cCurveLoadRequest& request, cFileDbSupport& file, std::string& error)
{
    if (cVxMemoryFile* mapped = file.memoryFileHandle()) {
        cBitWiseParser<cVxMemoryFile> parser(*mapped);
        return loader.loadBlocks(request, parser, error);
    }
    if (cVxBinFile* binary = file.binaryFileHandle()) {
        cBitWiseParser<cVxBinFile> parser(*binary);
        return loader.loadBlocks(request, parser, error);
    }
    if (cFileDbHandle* handle = file.dbHandle())
        return loader.loadBlocks(request, *handle, error);
    error = "The file \"" + file.fileName() + "\" is not open.";
    return 3;
}

}  // namespace curveDbLoaders
}  // namespace vx3
