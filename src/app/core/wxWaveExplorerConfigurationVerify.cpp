// Checks of the configuration: values a user entered that the analyses cannot work with go back to
// their defaults, each with a line that says why.
#include <algorithm>
#include <cctype>
#include <cmath>

#include "base/cVxLogger.h"
#include "wxWaveExplorerConfiguration.h"

namespace vx3 {
namespace waveExplorerConfiguration {

namespace {
// Keys are compared without case: "p" and "P" are the same key on the keyboard.
bool sameKey(const std::string& a, const std::string& b)
{
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
           });
}

bool sameShape(const cOptionValue& a, const cOptionValue& b)
{
    return a.strings.size() == b.strings.size() && a.numbers.size() == b.numbers.size() &&
           a.integers.size() == b.integers.size();
}
}  // namespace

void cConfigData::resetNumberOption(const std::string& key, const std::string& message, const cVxLogger* logger,
                                    bool& changed)
{
    if (logger)
        logger->warnMsg(message);
    resetOptionToDefault(key);
    changed = true;
}

bool cConfigData::verifyKeyBindings(const cVxLogger* logger)
{
    bool changed = false;
    auto usedElsewhere = [this](size_t index, const std::string& key) {
        for (size_t i = 0; i < mKeyBindings.size(); ++i)
            if (i != index && sameKey(mKeyBindings[i], key))
                return true;
        return false;
    };
    for (size_t j = 0; j < mKeyBindings.size(); ++j) {
        if (mKeyBindings[j].empty())
            continue;
        bool duplicate = false;
        for (size_t i = 0; i < j && !duplicate; ++i)
            duplicate = sameKey(mKeyBindings[i], mKeyBindings[j]);
        if (!duplicate)
            continue;
        if (logger)
            logger->warnMsg("configuration : the key binding for \"" + getString(j) + "\" is already in use.");
        // The later binding gives way: its default when that is free, else no key.
        std::string fallback = getDefaultKeyBinding(j);
        if (!fallback.empty() && usedElsewhere(j, fallback))
            fallback.clear();
        setKeyBinding(j, fallback);
        changed = true;
    }
    return changed;
}

bool cConfigData::setKeyBindingChecked(size_t index, const std::string& key, const cVxLogger& logger)
{
    if (index >= mKeyBindings.size())
        return false;
    for (size_t i = 0; i < mKeyBindings.size() && !key.empty(); ++i) {
        if (i != index && sameKey(mKeyBindings[i], key)) {
            logger.errorMsg("The key binding for \"" + getString(index) + "\" is already in use.");
            return false;
        }
    }
    setKeyBinding(index, key);
    return true;
}

bool cConfigData::verifyConfiguration(const cVxLogger* logger)
{
    bool changed = verifyKeyBindings(logger);
    auto check = [&](bool violated, const std::string& key, const std::string& message) {
        if (violated)
            resetNumberOption(key, message, logger, changed);
    };

    if (mAutoReloadInterval < 0) {
        if (logger)
            logger->warnMsg("configuration : auto reload time interval < 0");
        mAutoReloadInterval = 0.0;
        markChanged("auto_reload_interval");
        changed = true;
    }
    if (mMessageWindowVisibilityTime < 0) {
        if (logger)
            logger->warnMsg("configuration : message window visibility time interval < 0");
        mMessageWindowVisibilityTime = 10.0;
        markChanged("message_window_visibility_time");
        changed = true;
    }

    check(!(getOptionNumber("convolution_parameter_sampling_frequency", 0, 1.0) > 0.0),
          "convolution_parameter_sampling_frequency", "convolution configuration : sampling frequency <= 0.0 ");
    double samples = getOptionNumber("fft_parameter_nb_time_samples", 0, 1024.0);
    check(std::fmod(samples, 2.0) != 0.0, "fft_parameter_nb_time_samples",
          "fft configuration : nb of time samples must be multiple of 2 ");
    check(!(getOptionNumber("fft_parameter_oversampling_factor", 0, 1.0) > 0.0), "fft_parameter_oversampling_factor",
          "fft configuration : oversampling factor <= 0 ");

    // Levels are percent of the swing.
    auto level = [this](const char* key) { return getOptionNumber(key, 0, 50.0); };
    const std::string eye = "eye diagram configuration : ";
    check(level("eye_diagram_low_level") < 0.0, "eye_diagram_low_level", eye + "lower level < 0.0");
    check(level("eye_diagram_low_level") > 100.0, "eye_diagram_low_level", eye + "lower level > 100.0");
    check(level("eye_diagram_high_level") < 0.0, "eye_diagram_high_level", eye + "upper level < 0.0");
    check(level("eye_diagram_high_level") > 100.0, "eye_diagram_high_level", eye + "upper level > 100.0");
    if (level("eye_diagram_high_level") < level("eye_diagram_low_level")) {
        resetNumberOption("eye_diagram_high_level", eye + "upper level < lower level", logger, changed);
        resetOptionToDefault("eye_diagram_low_level");
    }
    check(level("eye_diagram_rise_time_low_level") < 0.0, "eye_diagram_rise_time_low_level",
          eye + "rise-fall time lower level < 0.0");
    check(level("eye_diagram_rise_time_low_level") > 100.0, "eye_diagram_rise_time_low_level",
          eye + "rise-fall time lower level > 100.0");
    check(level("eye_diagram_rise_time_high_level") < 0.0, "eye_diagram_rise_time_high_level",
          eye + "rise-fall time upper level < 0.0");
    check(level("eye_diagram_rise_time_high_level") > 100.0, "eye_diagram_rise_time_high_level",
          eye + "rise-fall time upper level > 100.0");
    if (level("eye_diagram_rise_time_high_level") < level("eye_diagram_rise_time_low_level")) {
        resetNumberOption("eye_diagram_rise_time_high_level", eye + "rise-fall time lower level < upper level", logger,
                          changed);
        resetOptionToDefault("eye_diagram_rise_time_low_level");
    }
    check(getOptionNumber("eye_diagram_number_of_intervals", 0, 2.0) < 0.0, "eye_diagram_number_of_intervals",
          eye + "nb of intervals < 0");
    // An interval given at both ends that runs backwards; NaN stands for an end not given.
    double start = getOptionNumber("eye_diagram_interval_start", 0, NAN);
    double end = getOptionNumber("eye_diagram_interval_end", 0, NAN);
    if (end - start < 0.0) {
        resetNumberOption("eye_diagram_interval_start", eye + "time interval < 0", logger, changed);
        resetOptionToDefault("eye_diagram_interval_end");
    }

    if (changed && logger)
        logger->errorMsg("One or several configuration parameters was changed due to a configuration error.");
    return changed;
}

void cConfigData::setIncompatibleValuesToDefault()
{
    if (mKeyBindings.size() != nb_key_bindings) {
        mKeyBindings.resize(nb_key_bindings);
        for (size_t i = 0; i < nb_key_bindings; ++i)
            mKeyBindings[i] = getDefaultKeyBinding(i);
    }
    if (mColours.size() != nb_colours) {
        // Colours added by a later version take their defaults, in the form shown now.
        size_t kept = std::min<size_t>(mColours.size(), nb_colours);
        mColours.resize(nb_colours);
        for (size_t i = kept; i < nb_colours; ++i)
            mColours[i] = getFlagUseWhiteBackground() ? (~getDefaultColour(i) & 0xffffffu) : getDefaultColour(i);
    }
    for (uint32_t& colour : mColours)
        colour &= 0xffffffu;
    if (windowWidth < 100 || windowHeight < 100 || windowWidth > 100000 || windowHeight > 100000) {
        windowWidth = 1200;
        windowHeight = 800;
    }
    if (mLastOpened.size() > max_last_opened_files)
        mLastOpened.resize(max_last_opened_files);
    if (!std::isfinite(mAutoReloadInterval))
        mAutoReloadInterval = 0.0;
    if (!std::isfinite(mMessageWindowVisibilityTime))
        mMessageWindowVisibilityTime = 10.0;
    // An option whose stored value has another shape than this version's default was written for
    // another form of the option.
    cConfigData defaults;
    for (auto& [key, value] : mOptions) {
        const cOptionValue* reference = defaults.getOption(key);
        if (reference && !sameShape(value, *reference))
            value = *reference;
    }
    verifyConfiguration(nullptr);
}

}  // namespace waveExplorerConfiguration
}  // namespace vx3
