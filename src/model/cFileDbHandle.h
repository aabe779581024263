// A file whose values are served by a data base of its own instead of a mapped or read file:
// the PWF format's data base, or a plug-in's own file access. A format registers a factory for
// its db type; cFileDbSupport then opens a handle of it in place of the file.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace vx3 {

class cFileDbHandle {
public:
    virtual ~cFileDbHandle() = default;
    // False with a message in error when the data base can't be opened.
    virtual bool open(const std::string& fileName, std::string& error) = 0;
    virtual void close() = 0;
    // Whether reading the file again would find something new.
    virtual bool checkIfReloadMakesSense() = 0;
};

namespace fileDbHandles {
using cFactory = std::function<std::unique_ptr<cFileDbHandle>()>;
// Replaces the factory of dbType; an empty one removes it.
void registerFactory(unsigned dbType, cFactory factory);
void unregisterFactory(unsigned dbType);
// A new, unopened handle; null when nobody registered the type.
std::unique_ptr<cFileDbHandle> create(unsigned dbType);
// Formats whose files are always served by a data base handle.
bool checkUsesDbHandle(unsigned dbType);
}  // namespace fileDbHandles

}  // namespace vx3
