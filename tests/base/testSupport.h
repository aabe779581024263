// Helpers shared by the foundation tests: a scratch folder, environment and locale guards.
#pragma once

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

namespace zwtest {

// A fresh folder under /tmp, removed with everything in it at the end of the test.
class cTempDir {
public:
    explicit cTempDir(const std::string& prefix = "zw_base_test_")
    {
        std::string pattern = "/tmp/" + prefix + "XXXXXX";
        const char* made = ::mkdtemp(pattern.data());
        mPath = made ? made : "";
    }
    ~cTempDir()
    {
        std::error_code error;
        if (!mPath.empty())
            std::filesystem::remove_all(mPath, error);
    }
    cTempDir(const cTempDir&) = delete;
    cTempDir& operator=(const cTempDir&) = delete;
    const std::string& path() const { return mPath; }
    std::string file(const std::string& name) const { return mPath + "/" + name; }
    std::string write(const std::string& name, const std::string& content) const
    {
        std::string full = file(name);
        std::ofstream(full, std::ios::binary) << content;
        return full;
    }
    std::string append(const std::string& name, const std::string& content) const
    {
        std::string full = file(name);
        std::ofstream(full, std::ios::binary | std::ios::app) << content;
        return full;
    }

private:
    std::string mPath;
};

// Empty when the system interpreter imports the modules ("numpy, pandas"); else a message that
// says what is missing and where it comes from. The oracles of several tests need them.
inline std::string missingPythonModules(const std::string& modules)
{
    const std::string command = "/usr/bin/python3 -c 'import " + modules + "' >/dev/null 2>&1";
    if (std::system(command.c_str()) == 0)
        return std::string();
    return "the oracle of this test needs /usr/bin/python3 with " + modules +
           " (Debian packages python3-numpy, python3-pandas; scripts/install-deps installs them)";
}

inline std::string readFile(const std::string& name)
{
    std::ifstream in(name, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

// Restores one environment variable however the test ends.
class cEnvGuard {
public:
    explicit cEnvGuard(const char* name) : mName(name)
    {
        const char* value = std::getenv(name);
        mWasSet = value != nullptr;
        if (value)
            mValue = value;
    }
    ~cEnvGuard()
    {
        if (mWasSet)
            ::setenv(mName.c_str(), mValue.c_str(), 1);
        else
            ::unsetenv(mName.c_str());
    }
    cEnvGuard(const cEnvGuard&) = delete;
    cEnvGuard& operator=(const cEnvGuard&) = delete;

private:
    std::string mName;
    std::string mValue;
    bool mWasSet = false;
};

// Switches the whole process to a German locale (decimal comma, German month names) and back to
// "C" at the end. Machines without the compiled locale get one built into a scratch folder.
class cGermanLocale {
public:
    cGermanLocale() : mLocalePath("LOCPATH")
    {
        mActive = std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
        if (!mActive && !builtLocaleDir().empty()) {
            ::setenv("LOCPATH", builtLocaleDir().c_str(), 1);
            mActive = std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
        }
    }
    ~cGermanLocale() { std::setlocale(LC_ALL, "C"); }
    cGermanLocale(const cGermanLocale&) = delete;
    cGermanLocale& operator=(const cGermanLocale&) = delete;
    bool active() const { return mActive; }

private:
    // glibc looks for "<LOCPATH>/de_DE.utf8"; built once per test run and removed at exit.
    static const std::string& builtLocaleDir()
    {
        struct cBuiltLocale {
            std::string dir;
            cBuiltLocale()
            {
                char pattern[] = "/tmp/zw_locale_XXXXXX";
                if (!::mkdtemp(pattern))
                    return;
                std::string command = std::string("localedef -i de_DE -f UTF-8 ") + pattern + "/de_DE.utf8 >/dev/null 2>&1";
                int status = std::system(command.c_str());
                std::filesystem::path made(pattern);
                if (status == 0 || std::filesystem::exists(made / "de_DE.utf8" / "LC_NUMERIC"))
                    dir = pattern;
                else
                    std::filesystem::remove_all(made);
            }
            ~cBuiltLocale()
            {
                std::error_code error;
                if (!dir.empty())
                    std::filesystem::remove_all(dir, error);
            }
        };
        static const cBuiltLocale built;
        return built.dir;
    }

    cEnvGuard mLocalePath;
    bool mActive = false;
};

}  // namespace zwtest
