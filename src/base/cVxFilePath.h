// A path as a vector of components with "~" and "$VAR" expansion, and file-system queries.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include <dirent.h>

namespace vx3 {

class cVxLogger;

class cVxFilePath {
public:
    cVxFilePath() = default;
    cVxFilePath(const std::string& name) { setPath(name); }
    cVxFilePath(const char* name) { setPath(name ? name : ""); }
    cVxFilePath(const std::string& directory, const std::string& name) { setPath(directory, name); }

    const std::string& name() const { return mText; }  // the whole path
    std::string fileName() const;
    std::string extension() const;  // without the dot
    std::string extensionLowerCase() const;
    std::string fileNameWithoutExtension() const;
    cVxFilePath& changeExtension(const std::string& extension);
    cVxFilePath& removeExtension();
    cVxFilePath& removeFileName();
    cVxFilePath& directoryUp();
    cVxFilePath getParentPath() const;
    cVxFilePath& pushToPath(const std::string& part);
    cVxFilePath& operator/=(const std::string& part) { return pushToPath(part); }
    void setPath(const std::string& name);
    void setPath(const std::string& directory, const std::string& name);
    // As setPath, but takes the text literally: for names that were evaluated already or that
    // may hold a "$" of their own.
    void setPathWithoutEvaluation(const std::string& name);
    bool convertToAbsolutePath();
    bool isAbsolutePath() const { return mAbsolute; }
    bool empty() const { return mComponents.empty() && !mAbsolute; }
    const std::vector<std::string>& components() const { return mComponents; }
    cVxFilePath& simplifyPath();

    bool exists() const;
    bool isFile() const;
    bool isDirectory() const;
    bool isSymLink() const;
    bool checkIsReadOnly() const;
    uint64_t getFileSize() const;
    time_t lastWriteTime() const;
    bool createDirectories() const;
    bool deleteFile() const;
    bool deleteDirectory() const;  // recursive
    bool copyToFile(const cVxFilePath& target) const;
    bool copyToDirectory(const cVxFilePath& directory) const;

    static cVxFilePath getHomeFolder();
    static cVxFilePath getTmpFolder();
    static cVxFilePath getCurrentPath();
    bool setToCurrentPath();
    bool resolveSymbolicLinks();
    bool getEquivalentSymLink(cVxFilePath& link) const;
    // Replaces the last component, a wild-card pattern, by the first matching entry.
    bool resolveWildcardCharacters();
    // All entries of this directory whose names match the pattern; recursive with the flag.
    std::vector<cVxFilePath> findFilePattern(const std::string& pattern, bool recursive) const;
    // Appends a counter in front of the extension while the path exists.
    bool makeSureFileNameIsUnique(unsigned& number);

    static const std::vector<std::string>& getSpiceFileExtensions();
    bool checkHasSpiceFileExtension() const;
    bool getSpiceFileWithSimilarFileName(cVxFilePath& result) const;
    std::string getFileOwner() const;
    std::string getFileGroup() const;
    bool loadFromFile(std::string& content) const;

    // "~" and "$NAME" / "${NAME}"; unresolved names stay and are logged.
    static std::string evaluateSystemVariables(const std::string& text, const cVxLogger* logger = nullptr);

    bool operator==(const cVxFilePath& other) const { return mText == other.mText; }

private:
    void rebuildText();

    std::vector<std::string> mComponents;
    bool mAbsolute = false;
    std::string mDrive;  // always empty here
    bool mFromSymLink = false;
    std::string mText;
};

// Walks one directory, skipping "." and "..".
class cVxFilePathIterator {
public:
    explicit cVxFilePathIterator(const cVxFilePath& directory);
    ~cVxFilePathIterator();
    cVxFilePathIterator(const cVxFilePathIterator&) = delete;
    cVxFilePathIterator& operator=(const cVxFilePathIterator&) = delete;
    bool next();  // false at the end
    cVxFilePath path() const;
    const std::string& entryName() const { return mEntry; }

private:
    cVxFilePath mDirectory;
    DIR* mDir = nullptr;
    std::string mEntry;
};

std::string evaluateEnvironmentVariable(const std::string& name, const cVxLogger* logger = nullptr);
// "~", variables, then an absolute path.
std::string evaluateSpecialPath(const std::string& path, const cVxLogger* logger = nullptr);
// "$HOME/.<vendor>/conf.db" when that folder exists, else "$HOME/.config/<vendor>/conf.db" when
// "$HOME/.config" exists, else "$HOME/.<vendor>/conf.db". Defaults "ZelkoraWave", "HarlanTessel".
std::string getConfigFileName(const std::string& tool = std::string(), const std::string& vendor = std::string());
std::string getConfigFileDirImpl(const std::string& directory, const std::string& vendor, const std::string& tool);

}  // namespace vx3
