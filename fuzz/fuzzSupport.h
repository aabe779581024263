// Helpers of the fuzz harnesses: a scratch folder per fuzzing process for readers that read
// files, and a walk over everything a parse left in the store, so that faults in the loaders
// and in the values the readers stored show up as well as faults in the readers themselves.
#pragma once

#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "base/cVxLogger.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"

namespace zwfuzz {

// A temporary folder made on first use and removed when the process ends normally. Each
// input is written over the same file: the readers' maps of it are gone when a parse returns.
class cScratchFolder {
public:
    cScratchFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "zw_fuzz_XXXXXX").string();
        const char* made = ::mkdtemp(pattern.data());
        if (!made) {
            std::perror("mkdtemp");
            std::abort();
        }
        mPath = made;
    }
    ~cScratchFolder()
    {
        std::error_code error;
        std::filesystem::remove_all(mPath, error);
    }
    cScratchFolder(const cScratchFolder&) = delete;
    cScratchFolder& operator=(const cScratchFolder&) = delete;

    // Writes the bytes to name in the folder (replacing what was there); the full path.
    std::string write(const std::string& name, const uint8_t* data, size_t size) const
    {
        const std::string path = mPath + "/" + name;
        std::FILE* file = std::fopen(path.c_str(), "wb");
        if (!file || (size && std::fwrite(data, 1, size, file) != size) || std::fclose(file) != 0) {
            std::perror(path.c_str());
            std::abort();
        }
        return path;
    }
    const std::string& path() const { return mPath; }

private:
    std::string mPath;
};

// The one scratch folder of this process.
inline const cScratchFolder& scratch()
{
    static const cScratchFolder folder;
    return folder;
}

// A call-back that swallows the readers' messages: a fuzzer prints nothing per input.
class cQuietLogger : public vx3::cVxLoggerCallBack {
public:
    void loggerCallBackVirtualLogMessage(unsigned, const std::string&) override {}
};

// Loads every curve of every section (values kept in the file come in through their loaders),
// reads each value and a few derived figures, and frees what can be loaded again.
inline void touchEveryCurve(vx3::cCurvePlotDataFile& store, const vx3::cVxLogger& logger)
{
    volatile double sink = 0;
    for (uint64_t s = 0; s < store.getNbOfDataSections(); ++s) {
        vx3::cCurvePlotDataSection* section = store.getDataSectionFromIndex(s);
        if (!section)
            continue;
        for (uint64_t v = 0; v < section->getNbOfVariables(); ++v) {
            vx3::cCurvePlotVariable& variable = section->getVariable(v);
            if (variable.loadDataFromDb(logger, section, v) != vx3::ok)
                continue;
            const uint64_t count = variable.getValueCount();
            for (uint64_t i = 0; i < count; ++i) {
                double value = 0;
                if (variable.findCorresponingValue(*section, i, value))
                    sink = sink + value;
                sink = sink + variable.computeXValue(*section, i);
            }
            double figure = 0;
            if (variable.computeIntegral(*section, figure))
                sink = sink + figure;
            if (variable.getMinXAxisValue(*section, figure)) {
                uint64_t cursor = 0;
                if (variable.findInterpolatedValue(*section, figure, cursor, figure))
                    sink = sink + figure;
            }
            variable.releaseDb();
        }
    }
    (void)sink;
}

}  // namespace zwfuzz
