#include "cVxFilePath.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include "cPatternMatch.h"
#include "cVxLogger.h"

namespace vx3 {

namespace {

std::vector<std::string> splitComponents(const std::string& text)
{
    std::vector<std::string> parts;
    size_t start = 0;
    while (start <= text.size()) {
        size_t slash = text.find('/', start);
        if (slash == std::string::npos)
            slash = text.size();
        if (slash > start)
            parts.emplace_back(text, start, slash - start);
        start = slash + 1;
    }
    return parts;
}

bool isVariableCharacter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

// An unset and an empty variable alike have no value to put into a path.
const char* lookUpVariable(const std::string& name)
{
    const char* value = std::getenv(name.c_str());
    return (value && *value) ? value : nullptr;
}

std::string homeFromEnvironment()
{
    const char* home = std::getenv("HOME");
    return home ? std::string(home) : std::string();
}

// The account's home for when HOME is missing, so that the configuration still has a place.
std::string homeFromPasswordFile()
{
    long size = sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(size > 0 ? static_cast<size_t>(size) : 16384);
    passwd entry{};
    passwd* result = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &result) != 0 || !result || !result->pw_dir)
        return std::string();
    return result->pw_dir;
}

cVxFilePath literalPath(const std::string& text)
{
    cVxFilePath path;
    path.setPathWithoutEvaluation(text);
    return path;
}

bool statPath(const std::string& name, struct stat& info)
{
    return !name.empty() && ::stat(name.c_str(), &info) == 0;
}

}  // namespace

// ---------------------------------------------------------------------------------------------
void cVxFilePath::setPath(const std::string& name) { setPathWithoutEvaluation(evaluateSystemVariables(name)); }

void cVxFilePath::setPathWithoutEvaluation(const std::string& name)
{
    mAbsolute = !name.empty() && name.front() == '/';
    mComponents = splitComponents(name);
    mFromSymLink = false;
    rebuildText();
}

void cVxFilePath::setPath(const std::string& directory, const std::string& name)
{
    std::string evaluatedName = evaluateSystemVariables(name);
    if (!evaluatedName.empty() && evaluatedName.front() == '/') {
        setPathWithoutEvaluation(evaluatedName);
        return;
    }
    setPath(directory);
    for (auto& part : splitComponents(evaluatedName))
        mComponents.push_back(std::move(part));
    rebuildText();
}

void cVxFilePath::rebuildText()
{
    mText = mAbsolute ? "/" : "";
    for (size_t i = 0; i < mComponents.size(); ++i) {
        if (i > 0)
            mText += '/';
        mText += mComponents[i];
    }
}

std::string cVxFilePath::fileName() const { return mComponents.empty() ? std::string() : mComponents.back(); }

namespace {
// Position of the dot that starts the extension; a leading dot names a hidden file, not an extension.
size_t extensionDot(const std::string& name)
{
    size_t dot = name.rfind('.');
    if (dot == std::string::npos || dot == 0)
        return std::string::npos;
    return dot;
}
}  // namespace

std::string cVxFilePath::extension() const
{
    std::string name = fileName();
    size_t dot = extensionDot(name);
    return dot == std::string::npos ? std::string() : name.substr(dot + 1);
}

std::string cVxFilePath::extensionLowerCase() const
{
    std::string result = extension();
    for (char& c : result)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return result;
}

std::string cVxFilePath::fileNameWithoutExtension() const
{
    std::string name = fileName();
    size_t dot = extensionDot(name);
    return dot == std::string::npos ? name : name.substr(0, dot);
}

cVxFilePath& cVxFilePath::changeExtension(const std::string& extension)
{
    if (mComponents.empty())
        return *this;
    std::string stem = fileNameWithoutExtension();
    if (extension.empty())
        mComponents.back() = stem;
    else if (extension.front() == '.')
        mComponents.back() = stem + extension;
    else
        mComponents.back() = stem + "." + extension;
    rebuildText();
    return *this;
}

cVxFilePath& cVxFilePath::removeExtension() { return changeExtension(std::string()); }

cVxFilePath& cVxFilePath::removeFileName()
{
    if (!mComponents.empty()) {
        mComponents.pop_back();
        rebuildText();
    }
    return *this;
}

cVxFilePath& cVxFilePath::directoryUp() { return removeFileName(); }

cVxFilePath cVxFilePath::getParentPath() const
{
    cVxFilePath parent(*this);
    parent.removeFileName();
    parent.mFromSymLink = false;
    return parent;
}

cVxFilePath& cVxFilePath::pushToPath(const std::string& part)
{
    for (auto& component : splitComponents(part))
        mComponents.push_back(std::move(component));
    rebuildText();
    return *this;
}

bool cVxFilePath::convertToAbsolutePath()
{
    if (!mAbsolute) {
        cVxFilePath current = getCurrentPath();
        if (current.empty())
            return false;
        std::vector<std::string> components = current.mComponents;
        components.insert(components.end(), mComponents.begin(), mComponents.end());
        mComponents = std::move(components);
        mAbsolute = true;
    }
    simplifyPath();
    return true;
}

cVxFilePath& cVxFilePath::simplifyPath()
{
    std::vector<std::string> result;
    for (auto& component : mComponents) {
        if (component == ".")
            continue;
        if (component == "..") {
            if (!result.empty() && result.back() != "..")
                result.pop_back();
            else if (!mAbsolute)
                result.push_back(component);  // a relative path may climb above its start
            continue;                         // above the root there is only the root
        }
        result.push_back(std::move(component));
    }
    mComponents = std::move(result);
    rebuildText();
    return *this;
}

// ---------------------------------------------------------------------------------------------
bool cVxFilePath::exists() const
{
    struct stat info;
    return statPath(mText, info);
}

bool cVxFilePath::isFile() const
{
    struct stat info;
    return statPath(mText, info) && S_ISREG(info.st_mode);
}

bool cVxFilePath::isDirectory() const
{
    struct stat info;
    return statPath(mText, info) && S_ISDIR(info.st_mode);
}

bool cVxFilePath::isSymLink() const
{
    struct stat info;
    return !mText.empty() && ::lstat(mText.c_str(), &info) == 0 && S_ISLNK(info.st_mode);
}

bool cVxFilePath::checkIsReadOnly() const { return exists() && ::access(mText.c_str(), W_OK) != 0; }

uint64_t cVxFilePath::getFileSize() const
{
    struct stat info;
    return statPath(mText, info) ? static_cast<uint64_t>(info.st_size) : 0;
}

time_t cVxFilePath::lastWriteTime() const
{
    struct stat info;
    return statPath(mText, info) ? info.st_mtime : 0;
}

bool cVxFilePath::createDirectories() const
{
    if (mComponents.empty())
        return mAbsolute;
    std::string partial = mAbsolute ? "" : ".";
    for (const auto& component : mComponents) {
        partial += "/" + component;
        if (::mkdir(partial.c_str(), 0777) != 0 && errno != EEXIST)
            return false;
    }
    return isDirectory();
}

bool cVxFilePath::deleteFile() const
{
    if (mText.empty() || (isDirectory() && !isSymLink()))
        return false;
    return ::unlink(mText.c_str()) == 0;
}

bool cVxFilePath::deleteDirectory() const
{
    // A link to a directory is removed as a link: never walk into what it points at.
    if (!isDirectory() || isSymLink())
        return false;
    std::error_code error;
    std::filesystem::remove_all(mText, error);
    return !error;
}

bool cVxFilePath::copyToFile(const cVxFilePath& target) const
{
    if (!isFile() || target.empty())
        return false;
    std::error_code error;
    std::filesystem::copy_file(mText, target.name(), std::filesystem::copy_options::overwrite_existing, error);
    return !error;
}

bool cVxFilePath::copyToDirectory(const cVxFilePath& directory) const
{
    if (!directory.isDirectory())
        return false;
    cVxFilePath target(directory);
    target.mComponents.push_back(fileName());
    target.rebuildText();
    return copyToFile(target);
}

cVxFilePath cVxFilePath::getHomeFolder() { return literalPath(homeFromEnvironment()); }

cVxFilePath cVxFilePath::getTmpFolder() { return literalPath("/tmp"); }

cVxFilePath cVxFilePath::getCurrentPath()
{
    cVxFilePath current;
    std::vector<char> buffer(PATH_MAX);
    while (!::getcwd(buffer.data(), buffer.size())) {
        if (errno != ERANGE)
            return current;
        buffer.resize(buffer.size() * 2);
    }
    current.setPathWithoutEvaluation(buffer.data());
    return current;
}

bool cVxFilePath::setToCurrentPath()
{
    cVxFilePath current = getCurrentPath();
    if (current.empty())
        return false;
    *this = current;
    return true;
}

bool cVxFilePath::resolveSymbolicLinks()
{
    if (mText.empty())
        return false;
    char* resolved = ::realpath(mText.c_str(), nullptr);
    if (!resolved)
        return false;
    cVxFilePath absolute(*this);
    absolute.convertToAbsolutePath();
    setPathWithoutEvaluation(resolved);
    std::free(resolved);
    mFromSymLink = mText != absolute.mText;
    return true;
}

bool cVxFilePath::getEquivalentSymLink(cVxFilePath& link) const
{
    if (!isSymLink())
        return false;
    std::vector<char> buffer(PATH_MAX + 1);
    ssize_t length = ::readlink(mText.c_str(), buffer.data(), buffer.size() - 1);
    if (length <= 0)
        return false;
    std::string target(buffer.data(), static_cast<size_t>(length));
    cVxFilePath result;
    if (!target.empty() && target.front() == '/') {
        result.setPathWithoutEvaluation(target);
    } else {
        result = getParentPath();
        for (auto& component : splitComponents(target))
            result.mComponents.push_back(std::move(component));
        result.simplifyPath();
    }
    result.mFromSymLink = true;
    link = result;
    return true;
}

bool cVxFilePath::resolveWildcardCharacters()
{
    if (mComponents.empty())
        return false;
    const std::string pattern = mComponents.back();
    cVxFilePath directory = getParentPath();
    // Directory order differs between file systems; the smallest name keeps the answer stable.
    std::string best;
    bool found = false;
    cVxFilePathIterator entries(directory);
    while (entries.next()) {
        const std::string& name = entries.entryName();
        if (cWildCardPatternMatch::checkMatches(pattern, name) && (!found || name < best)) {
            best = name;
            found = true;
        }
    }
    if (!found)
        return false;
    mComponents.back() = best;
    rebuildText();
    return true;
}

std::vector<cVxFilePath> cVxFilePath::findFilePattern(const std::string& pattern, bool recursive) const
{
    std::vector<cVxFilePath> result;
    std::vector<cVxFilePath> subdirectories;
    cVxFilePathIterator entries(*this);
    while (entries.next()) {
        cVxFilePath entry = entries.path();
        if (cWildCardPatternMatch::checkMatches(pattern, entries.entryName()))
            result.push_back(entry);
        // Links are not followed into: a link to a parent would never end.
        if (recursive && entry.isDirectory() && !entry.isSymLink())
            subdirectories.push_back(entry);
    }
    std::sort(result.begin(), result.end(), [](const cVxFilePath& a, const cVxFilePath& b) { return a.name() < b.name(); });
    std::sort(subdirectories.begin(), subdirectories.end(),
              [](const cVxFilePath& a, const cVxFilePath& b) { return a.name() < b.name(); });
    for (const auto& subdirectory : subdirectories) {
        auto found = subdirectory.findFilePattern(pattern, true);
        result.insert(result.end(), std::make_move_iterator(found.begin()), std::make_move_iterator(found.end()));
    }
    return result;
}

bool cVxFilePath::makeSureFileNameIsUnique(unsigned& number)
{
    number = 0;
    if (mComponents.empty())
        return false;
    if (!exists())
        return true;
    const std::string stem = fileNameWithoutExtension();
    const std::string extensionText = extension();
    const std::string dotExtension = extensionText.empty() ? std::string() : "." + extensionText;
    for (unsigned counter = 1; counter != 0; ++counter) {
        mComponents.back() = stem + "_" + std::to_string(counter) + dotExtension;
        rebuildText();
        if (!exists()) {
            number = counter;
            return true;
        }
    }
    return false;
}

const std::vector<std::string>& cVxFilePath::getSpiceFileExtensions()
{
    static const std::vector<std::string> extensions = {
        ".sp",  ".spi", ".cir", ".cdl", ".hsp", ".spice",  // the usual netlist names first
        ".net", ".ckt", ".scs", ".inc", ".lib", ".mod", ".spf", ".dspf", ".spx", ".subckt"};
    return extensions;
}

bool cVxFilePath::checkHasSpiceFileExtension() const
{
    std::string extensionText = extensionLowerCase();
    if (extensionText.empty())
        return false;
    extensionText.insert(0, ".");
    const auto& extensions = getSpiceFileExtensions();
    return std::find(extensions.begin(), extensions.end(), extensionText) != extensions.end();
}

bool cVxFilePath::getSpiceFileWithSimilarFileName(cVxFilePath& result) const
{
    if (mComponents.empty())
        return false;
    const std::string stem = fileNameWithoutExtension();
    for (const auto& extensionText : getSpiceFileExtensions()) {
        cVxFilePath candidate(*this);
        candidate.mComponents.back() = stem + extensionText;
        candidate.rebuildText();
        if (candidate.isFile()) {
            result = candidate;
            return true;
        }
    }
    return false;
}

std::string cVxFilePath::getFileOwner() const
{
    struct stat info;
    if (!statPath(mText, info))
        return std::string();
    long size = sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(size > 0 ? static_cast<size_t>(size) : 16384);
    passwd entry{};
    passwd* result = nullptr;
    if (getpwuid_r(info.st_uid, &entry, buffer.data(), buffer.size(), &result) == 0 && result && result->pw_name)
        return result->pw_name;
    return std::to_string(info.st_uid);
}

std::string cVxFilePath::getFileGroup() const
{
    struct stat info;
    if (!statPath(mText, info))
        return std::string();
    long size = sysconf(_SC_GETGR_R_SIZE_MAX);
    std::vector<char> buffer(size > 0 ? static_cast<size_t>(size) : 16384);
    group entry{};
    group* result = nullptr;
    if (getgrgid_r(info.st_gid, &entry, buffer.data(), buffer.size(), &result) == 0 && result && result->gr_name)
        return result->gr_name;
    return std::to_string(info.st_gid);
}

bool cVxFilePath::loadFromFile(std::string& content) const
{
    if (!isFile())
        return false;
    std::ifstream in(mText, std::ios::binary);
    if (!in)
        return false;
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad())
        return false;
    content = std::move(text);
    return true;
}

std::string cVxFilePath::evaluateSystemVariables(const std::string& text, const cVxLogger* logger)
{
    std::string input = text;
    if (!input.empty() && input.front() == '~') {
        std::string home = homeFromEnvironment();
        if (!home.empty()) {
            std::string rest = input.substr(1);
            if (home.back() != '/')
                home += '/';
            if (!rest.empty() && rest.front() == '/')
                rest.erase(0, 1);
            input = home + rest;
        }
    }

    std::string result;
    result.reserve(input.size());
    size_t i = 0;
    while (i < input.size()) {
        if (input[i] != '$') {
            result += input[i++];
            continue;
        }
        size_t nameStart, nameEnd, next;
        if (i + 1 < input.size() && input[i + 1] == '{') {
            nameStart = i + 2;
            nameEnd = input.find('}', nameStart);
            if (nameEnd == std::string::npos) {
                result += input[i++];
                continue;
            }
            next = nameEnd + 1;
        } else {
            nameStart = i + 1;
            nameEnd = nameStart;
            while (nameEnd < input.size() && isVariableCharacter(input[nameEnd]))
                ++nameEnd;
            next = nameEnd;
        }
        if (nameEnd == nameStart) {
            result += input[i++];
            continue;
        }
        std::string name = input.substr(nameStart, nameEnd - nameStart);
        if (const char* value = lookUpVariable(name)) {
            result += value;
        } else {
            if (logger)
                logger->errorMsg("Could not resolve system variable \"" + name + "\" in file path.");
            result.append(input, i, next - i);
        }
        i = next;
    }
    return result;
}

// ---------------------------------------------------------------------------------------------
cVxFilePathIterator::cVxFilePathIterator(const cVxFilePath& directory) : mDirectory(directory)
{
    mDir = ::opendir(directory.empty() ? "." : directory.name().c_str());
}

cVxFilePathIterator::~cVxFilePathIterator()
{
    if (mDir)
        ::closedir(mDir);
}

bool cVxFilePathIterator::next()
{
    if (!mDir)
        return false;
    while (dirent* entry = ::readdir(mDir)) {
        std::string name = entry->d_name;
        if (name == "." || name == "..")
            continue;
        mEntry = std::move(name);
        return true;
    }
    mEntry.clear();
    return false;
}

cVxFilePath cVxFilePathIterator::path() const
{
    cVxFilePath result(mDirectory);
    result.pushToPath(mEntry);
    return result;
}

// ---------------------------------------------------------------------------------------------
std::string evaluateEnvironmentVariable(const std::string& name, const cVxLogger* logger)
{
    if (const char* value = lookUpVariable(name))
        return value;
    if (logger)
        logger->errorMsg("Could not resolve system variable \"" + name + "\" .");
    return std::string();
}

std::string evaluateSpecialPath(const std::string& path, const cVxLogger* logger)
{
    cVxFilePath result;
    result.setPathWithoutEvaluation(cVxFilePath::evaluateSystemVariables(path, logger));
    result.convertToAbsolutePath();
    return result.name();
}

std::string getConfigFileDirImpl(const std::string& directory, const std::string& vendor, const std::string& tool)
{
    if (!directory.empty())
        return directory.back() == '/' ? directory : directory + "/";
    const std::string vendorWord = vendor.empty() ? std::string("HarlanTessel") : vendor;
    std::string home = homeFromEnvironment();
    if (home.empty())
        home = homeFromPasswordFile();
    if (home.empty())
        home = cVxFilePath::getTmpFolder().name();
    if (home.back() != '/')
        home += '/';
    const std::string ownFolder = home + "." + vendorWord + "/";
    if (literalPath(ownFolder).isDirectory())
        return ownFolder;
    if (literalPath(home + ".config/").isDirectory())
        return home + ".config/" + vendorWord + "/";
    return ownFolder;
}

std::string getConfigFileName(const std::string& tool, const std::string& vendor)
{
    return getConfigFileDirImpl(std::string(), vendor, tool) + "conf.db";
}

}  // namespace vx3
