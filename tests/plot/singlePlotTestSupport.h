// Helpers of the single plot tests: a store of curves held in memory, a logger that keeps its
// messages, and a page that records what the plot told it.
#pragma once

#include <cmath>
#include <complex>
#include <string>
#include <vector>

#include "base/cVxLogger.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"
#include "plot/wxAnalogPlotVirtual.h"
#include "plot/wxCurveDescription.h"

namespace zwplot {

using namespace vx3;

class cMessageLog : public cVxLoggerCallBack {
public:
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override
    {
        if (severity != vxLogger::debug)
            messages.push_back(text);
        else
            debugMessages.push_back(text);
    }
    bool contains(const std::string& text) const
    {
        for (const std::string& message : messages)
            if (message.find(text) != std::string::npos)
                return true;
        return false;
    }
    void clear() { messages.clear(), debugMessages.clear(); }
    std::vector<std::string> messages;
    std::vector<std::string> debugMessages;
};

// A logger wired to a message log, for one test.
struct cCapturingLogger {
    cCapturingLogger() { logger.setLoggerCallBack(&log); }
    ~cCapturingLogger() { logger.setLoggerCallBack(nullptr); }
    cMessageLog log;
    cVxLogger logger{vxLogger::debug};
};

class cRecordingPage : public wxAnalogPlotVirtual {
public:
    void analogPlotVirtualStatusBarMessage(unsigned, const std::string& text) override { statusMessages.push_back(text); }
    void analogPlotVirtualCurvesWereCleared(cPlotWidgetCommon*) override { ++cleared; }
    void analogPlotVirtualCurveRemoved(cPlotWidgetCommon*) override { ++removed; }
    unsigned analogPlotVirtualGetNumberOfAllowedCurves() override { return allowedCurves; }
    void analogPlotVirtualPlotWasScrolled(cPlotWidgetCommon*, const analogPlotVirtual::cScrollInfo& info,
                                          bool) override
    {
        lastScroll = info;
        ++scrolls;
    }
    void analogPlotVirtualSlidingWindowSetUserZoomAction(cPlotWidgetCommon*, bool flag) override { userZoom = flag; }
    std::vector<std::string> statusMessages;
    int cleared = 0;
    int removed = 0;
    int scrolls = 0;
    bool userZoom = false;
    unsigned allowedCurves = static_cast<unsigned>(-1);
    analogPlotVirtual::cScrollInfo lastScroll;
};

// A section over an x axis of the given unit; curves are added by the helpers below.
struct cTestSection {
    cTestSection(cCurvePlotDataFile& store, const std::string& name, const std::vector<double>& x,
                 curvePlotDataType::dataUnit xUnit = curvePlotDataType::second)
        : store(store)
    {
        cFileDbSupport& file = store.findDbSupport(name + ".raw");
        section = store.addDataSection(name, &file);
        const cCurvePlotDataType* type = store.addType("time", curvePlotProperties::data_double, xUnit);
        section->getSweepVariable(section->addSweepVariable(type, "time", 0)).setDoubleValues(x.data(), x.size());
    }
    uint64_t addReal(const std::string& name, const std::vector<double>& y,
                     curvePlotDataType::dataUnit unit = curvePlotDataType::volt)
    {
        const cCurvePlotDataType* type = store.addType("v_" + std::to_string(unit), curvePlotProperties::data_double, unit);
        const uint64_t index = section->addVariable(type, name);
        section->getVariable(index).setDoubleValues(y.data(), y.size());
        return index;
    }
    uint64_t addComplex(const std::string& name, const std::vector<std::complex<double>>& y,
                        curvePlotDataType::dataUnit unit = curvePlotDataType::volt)
    {
        const cCurvePlotDataType* type = store.addType("c_" + std::to_string(unit), curvePlotProperties::double_complex, unit);
        const uint64_t index = section->addVariable(type, name);
        section->getVariable(index).setDoubleComplexValues(y.data(), y.size());
        return index;
    }
    uint64_t addText(const std::string& name)
    {
        const cCurvePlotDataType* type = store.addType("text", curvePlotProperties::data_string, curvePlotDataType::undefined_unit);
        return section->addVariable(type, name);
    }
    // Replaces x and a curve's values, as a reload of a growing file does.
    void grow(uint64_t curve, const std::vector<double>& x, const std::vector<double>& y)
    {
        section->getSweepVariable(0).setDoubleValues(x.data(), x.size());
        section->getVariable(curve).setDoubleValues(y.data(), y.size());
    }
    wxCurveDescription describe(uint64_t index, unsigned conversion = 0) const
    {
        wxCurveDescription description;
        description.init(section, index);
        description.postProcessState().realConversion = conversion;
        return description;
    }
    cCurvePlotDataFile& store;
    cCurvePlotDataSection* section = nullptr;
};

inline std::vector<double> ramp(size_t count, double start, double step)
{
    std::vector<double> values(count);
    for (size_t i = 0; i < count; ++i)
        values[i] = start + step * double(i);
    return values;
}

}  // namespace zwplot
