#include "model/cFileDbHandle.h"

#include <array>
#include <mutex>

#include "model/fileDbType.h"

namespace vx3::fileDbHandles {

namespace {
struct cRegistry {
    std::mutex mutex;
    std::array<cFactory, fileDbSupport::kNbOfDbTypes> factories;
};

cRegistry& registry()
{
    static cRegistry instance;
    return instance;
}
}  // namespace

void registerFactory(unsigned dbType, cFactory factory)
{
    if (dbType >= fileDbSupport::kNbOfDbTypes)
        return;
    std::lock_guard<std::mutex> lock(registry().mutex);
    registry().factories[dbType] = std::move(factory);
}

void unregisterFactory(unsigned dbType) { registerFactory(dbType, cFactory()); }

std::unique_ptr<cFileDbHandle> create(unsigned dbType)
{
    if (dbType >= fileDbSupport::kNbOfDbTypes)
        return nullptr;
    cFactory factory;
    {
        std::lock_guard<std::mutex> lock(registry().mutex);
        factory = registry().factories[dbType];
    }
    return factory ? factory() : nullptr;
}

bool checkUsesDbHandle(unsigned dbType) { return dbType == fileDbSupport::pwf_66; }

}  // namespace vx3::fileDbHandles
