// Helpers of the reader tests: a scratch folder, a store with a parser whose messages are kept,
// and the oracle scripts run with the system interpreter.
#pragma once

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include <unistd.h>

#include <gtest/gtest.h>

#include "../base/testSupport.h"
#include "base/cVxLogger.h"
#include "model/cCurvePlotDataFile.h"
#include "readers/cCurvePlotParser.h"

namespace zwreaders {

// Temporary folders as the foundation's tests make them, named after these tests.
class cTempDir : public zwtest::cTempDir {
public:
    cTempDir() : zwtest::cTempDir("zw_readers_test_") {}
};

// A call-back that keeps the messages and can say that the user interrupted.
class cRecordingLogger : public vx3::cVxLoggerCallBack {
public:
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override
    {
        mText += std::string(vx3::vxLogger::severityTag(severity)) + text + "\n";
    }
    const std::string& text() const { return mText; }
    bool contains(const std::string& part) const { return mText.find(part) != std::string::npos; }
    void clear() { mText.clear(); }

private:
    std::string mText;
};

struct cReading {
    vx3::cCurvePlotDataFile store;
    vx3::cCurvePlotParser parser;
    cRecordingLogger messages;
    cReading() { parser.logger().setLoggerCallBack(&messages); }
    ~cReading() { parser.logger().setLoggerCallBack(nullptr); }
    vx3::returnCode parse(const std::string& name, unsigned type = 0) { return parser.parse(store, name, type); }
    vx3::cCurvePlotDataSection* section(uint64_t index = 0) { return store.getDataSectionFromIndex(index); }
    // The values of a curve (or, with an empty name, of the x axis) of a section.
    std::vector<double> values(uint64_t sectionIndex, const std::string& curve)
    {
        std::vector<double> result;
        vx3::cCurvePlotDataSection* s = section(sectionIndex);
        if (!s)
            return result;
        const vx3::cCurvePlotVariable* variable = nullptr;
        if (curve.empty() && s->getNbOfSweepVariables())
            variable = &s->getSweepVariable(s->getNbOfSweepVariables() - 1);
        else if (uint64_t index = s->findVariableIndex(curve); index != vx3::cCurvePlotDataSection::npos)
            variable = &s->getVariable(index);
        if (!variable)
            return result;
        for (uint64_t i = 0; i < variable->getVectorSize(); ++i)
            result.push_back(curve.empty() ? s->getSweepValue(s->getNbOfSweepVariables() - 1, i)
                                           : variable->getDoubleValue(i));
        return result;
    }
};

// Runs a python script with the system interpreter (numpy and pandas installed); a failure says
// whether the modules are missing or the script failed.
inline ::testing::AssertionResult runPython(const std::string& script, const std::string& folder)
{
    if (const std::string missing = zwtest::missingPythonModules("numpy, pandas"); !missing.empty())
        return ::testing::AssertionFailure() << missing;
    const std::string path = folder + "/oracle.py";
    std::ofstream(path) << script;
    if (std::system(("cd '" + folder + "' && /usr/bin/python3 oracle.py").c_str()) != 0)
        return ::testing::AssertionFailure() << "the oracle script failed";
    return ::testing::AssertionSuccess();
}

inline std::vector<double> readNumbers(const std::string& path)
{
    std::vector<double> numbers;
    std::ifstream in(path);
    double value;
    while (in >> value)
        numbers.push_back(value);
    return numbers;
}

}  // namespace zwreaders
