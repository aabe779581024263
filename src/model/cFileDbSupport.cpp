#include "model/cFileDbSupport.h"

namespace vx3 {

cFileDbSupport::cFileDbSupport(const std::string& fileName, unsigned type, uint64_t id) : mType(type), mId(id)
{
    defineFileNames(fileName);
}

void cFileDbSupport::defineFileNames(const std::string& fileName)
{
    mFileName = fileName;
    std::string name = fileName;
    while (name.size() > 1 && name.back() == '/')
        name.pop_back();
    const size_t slash = name.rfind('/');
    mBaseName = slash == std::string::npos ? name : name.substr(slash + 1);
    updateShortName();
}

void cFileDbSupport::setFileIndex(unsigned index)
{
    mFileIndex = index;
    updateShortName();
}

void cFileDbSupport::updateShortName()
{
    mShortUniqueName = mBaseName;
    if (mFileIndex)
        mShortUniqueName += " (" + std::to_string(mFileIndex) + ")";
}

}  // namespace vx3
