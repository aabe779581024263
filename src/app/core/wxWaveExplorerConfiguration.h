// The user's settings, and the file "conf.db" that keeps them between runs.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace vx3 {

class cDataBaseSerializer;
class cDataBaseInterface;
class cVxLogger;
class wxWaveExplorerCommand;

namespace waveExplorerConfiguration {
// Settings of the curve styles that only the configuration dialog changes: they have no
// set_option key, and are kept with the options as one number each (a flag as 1 or 0).
struct cDialogOnlyOption {
    const char* key;
    double defaultValue, minimum, maximum;
    bool flag;
};
const std::vector<cDialogOnlyOption>& getDialogOnlyOptions();
const cDialogOnlyOption* findDialogOnlyOption(const std::string& key);

// The value of one option as its set_option command carried it.
struct cOptionValue {
    std::vector<std::string> strings;
    std::vector<double> numbers;   // flags as 1 and 0
    std::vector<int64_t> integers;  // colours
    bool operator==(const cOptionValue& other) const = default;
};
enum tool_bar_style : int { tool_bar_none = 0, tool_bar_permanent = 2, tool_bar_permanent_left = 3,
                            tool_bar_permanent_right = 4 };

// The blobs of the file; each topic is read and written on its own.
enum topic_type : uint32_t { topic_main = 3, topic_post_process = 36, topic_browser = 37 };
// How a topic's blob was read.
enum load_result : int { load_ok = 0, load_partial = 1, load_failed = 2 };

enum : size_t { nb_key_bindings = 33, nb_colours = 19, max_last_opened_files = 10 };
enum colour_index : size_t {
    colour_zoom_box, colour_grid, colour_coarse_grid, colour_fine_grid, colour_zero_line, colour_axis,
    colour_axis_background, colour_disabled_axis, colour_delta_axis, colour_disabled_delta_axis, colour_highlight,
    colour_digital_main, colour_digital_x, colour_digital_z, colour_digital_x_box, colour_copy_and_paste_indicator,
    colour_delta_cycle_background, colour_delta_cycle_background_bottom_axis, colour_widget_scroll_bar
};

// Everything that the file keeps. Names of the fields that merge() treats one by one are the option
// keys, and for the rest the words of changed_field.
class cConfigData {
public:
    cConfigData() { setDefaults(); }
    void setDefaults();
    void setDefaults(topic_type topic);

    // Window geometry remembered between runs.
    int windowWidth = 1200;
    int windowHeight = 800;

    // The name of key binding `index` ("Zoom In"), empty past the end.
    static std::string getString(size_t index);
    static std::string getDefaultKeyBinding(size_t index);
    const std::vector<std::string>& getKeyBindings() const { return mKeyBindings; }
    const std::string& getKeyBinding(size_t index) const;
    void setKeyBinding(size_t index, const std::string& key);

    uint32_t getColour(size_t index) const { return index < mColours.size() ? mColours[index] : 0; }
    void setColour(size_t index, uint32_t colour);
    static uint32_t getDefaultColour(size_t index);
    uint32_t getZoomBoxColor() const { return getColour(colour_zoom_box); }
    uint32_t getGridColor() const { return getColour(colour_grid); }
    uint32_t getCoarseGridColor() const { return getColour(colour_coarse_grid); }
    uint32_t getFineGridColor() const { return getColour(colour_fine_grid); }
    uint32_t getZeroLineColor() const { return getColour(colour_zero_line); }
    uint32_t getAxisColor() const { return getColour(colour_axis); }
    uint32_t getAxisBackgroundColor() const { return getColour(colour_axis_background); }
    uint32_t getDisabledAxisColor() const { return getColour(colour_disabled_axis); }
    uint32_t getDeltaAxisColor() const { return getColour(colour_delta_axis); }
    uint32_t getDisabledDeltaAxisColor() const { return getColour(colour_disabled_delta_axis); }
    uint32_t getHighlightColor() const { return getColour(colour_highlight); }
    uint32_t getDigitalMainColor() const { return getColour(colour_digital_main); }
    uint32_t getDigitalXColor() const { return getColour(colour_digital_x); }
    uint32_t getDigitalZColor() const { return getColour(colour_digital_z); }
    uint32_t getDigitalXBoxColor() const { return getColour(colour_digital_x_box); }
    uint32_t getCopyAndPasteIndicatorColor() const { return getColour(colour_copy_and_paste_indicator); }
    uint32_t getDeltaCycleBackgroundColor() const { return getColour(colour_delta_cycle_background); }
    uint32_t getDeltaCycleBackgroundColorBottomAxis() const
    {
        return getColour(colour_delta_cycle_background_bottom_axis);
    }
    uint32_t getWidgetScrollBarColor() const { return getColour(colour_widget_scroll_bar); }
    // Colours are kept for the dark background; the white one shows each inverted.
    void invertColours();
    bool getFlagUseWhiteBackground() const;
    void setFlagUseWhiteBackground(bool flag);

    // Most recent first, at most max_last_opened_files.
    void addLastOpenedFiles(const std::string& name);
    std::string getLastOpenedFiles(size_t index) const;
    size_t getNbLastOpenedFiles() const { return mLastOpened.size(); }
    void removeNonExistingLastOpened();

    void setLastDirectory(const std::string& name) { setText(mLastDirectory, name, "last_directory"); }
    void setLastCommandFileDirectory(const std::string& name)
    {
        setText(mLastCommandFileDirectory, name, "last_command_file_directory");
    }
    void setLastCurveStyleFileDirectory(const std::string& name)
    {
        setText(mLastCurveStyleFileDirectory, name, "last_curve_style_file_directory");
    }
    void setLastExportAsImageDirectory(const std::string& name)
    {
        setText(mLastExportAsImageDirectory, name, "last_export_as_image_directory");
    }
    void setLastCalculatorFile(const std::string& name) { setText(mLastCalculatorFile, name, "last_calculator_file"); }
    const std::string& getLastDirectory() const { return mLastDirectory; }
    const std::string& getLastCommandFileDirectory() const { return mLastCommandFileDirectory; }
    const std::string& getLastCurveStyleFileDirectory() const { return mLastCurveStyleFileDirectory; }
    const std::string& getLastExportAsImageDirectory() const { return mLastExportAsImageDirectory; }
    const std::string& getLastCalculatorFile() const { return mLastCalculatorFile; }

    void setWindowSize(int width, int height);
    // Seconds; negative values are refused by verifyConfiguration.
    double getAutoReloadInterval() const { return mAutoReloadInterval; }
    void setAutoReloadInterval(double seconds) { setNumber(mAutoReloadInterval, seconds, "auto_reload_interval"); }
    double getMessageWindowVisibilityTime() const { return mMessageWindowVisibilityTime; }
    void setMessageWindowVisibilityTime(double seconds)
    {
        setNumber(mMessageWindowVisibilityTime, seconds, "message_window_visibility_time");
    }

    // The curve browser's rules (order of levels, filters, run parameter style) as the browser's
    // own record: this layer keeps and saves them without knowing their fields.
    const std::string& getBrowserRules() const { return mBrowserRules; }
    void setBrowserRules(const std::string& record) { setText(mBrowserRules, record, "browser_rules"); }

    // Options of set_option, by key. Setting one that changes its value flags the configuration as
    // changed; the result tells whether it changed.
    bool setOption(const wxWaveExplorerCommand& command);
    bool setOptionValue(const std::string& key, const cOptionValue& value);
    void resetOptionToDefault(const std::string& key);
    const cOptionValue* getOption(const std::string& key) const;
    bool getOptionFlag(const std::string& key, bool defaultValue = false) const;
    double getOptionNumber(const std::string& key, size_t index = 0, double defaultValue = 0.0) const;
    std::string getOptionText(const std::string& key, size_t index = 0) const;
    int64_t getOptionInteger(const std::string& key, size_t index = 0, int64_t defaultValue = 0) const;
    static topic_type getOptionTopic(const std::string& key);

    // Checks of the values a user may have entered: each violation is logged and set back to its
    // default. True when something was changed.
    bool verifyConfiguration(const cVxLogger* logger);
    bool verifyKeyBindings(const cVxLogger* logger);
    // Key `key` for binding `index`, refused with a message when another binding has it.
    bool setKeyBindingChecked(size_t index, const std::string& key, const cVxLogger& logger);
    // After a partial read: what does not fit this version goes back to its default, silently.
    void setIncompatibleValuesToDefault();

    // The record of one topic, in both directions. Fields added later go at the end, behind a test of
    // the version word.
    void serializedeserialize(cDataBaseSerializer& serializer, topic_type topic);
    load_result deserializeTopic(const std::vector<uint8_t>& data, topic_type topic);
    std::vector<uint8_t> serializeTopic(topic_type topic) const;

    // What changed since the last load or save: option keys and field words.
    const std::set<std::string>& changedFields() const { return mChangedFields; }
    void clearChangedFields() { mChangedFields.clear(); }
    void setChangedFields(std::set<std::string> fields) { mChangedFields = std::move(fields); }
    // Takes every kept value from `other`, leaving the change tracking and the listener alone.
    void takeKeptValues(const cConfigData& other);
    // Takes the fields named in `fields` from `other`.
    void copyFields(const cConfigData& other, const std::set<std::string>& fields);

    void setFlagConfigChanged(bool flag);
    bool getFlagConfigChanged() const { return mChanged; }
    // Called after every change of a kept value (the owner restarts its save timer).
    void setChangeListener(std::function<void()> listener) { mChangeListener = std::move(listener); }

protected:
    void markChanged(const std::string& field);

private:
    void setText(std::string& target, const std::string& value, const char* field);
    void setNumber(double& target, double value, const char* field);
    void setDefaultOptions(topic_type topic);
    void serializeOptions(cDataBaseSerializer& serializer, topic_type topic);
    void resetNumberOption(const std::string& key, const std::string& message, const cVxLogger* logger,
                           bool& changed);

    std::vector<std::string> mKeyBindings;
    std::vector<uint32_t> mColours;
    std::vector<std::string> mLastOpened;
    std::string mLastDirectory;
    std::string mLastCommandFileDirectory;
    std::string mLastCurveStyleFileDirectory;
    std::string mLastExportAsImageDirectory;
    std::string mLastCalculatorFile;
    double mAutoReloadInterval = 0.0;
    double mMessageWindowVisibilityTime = 10.0;
    std::string mBrowserRules;
    std::map<std::string, cOptionValue> mOptions;

    std::set<std::string> mChangedFields;
    bool mChanged = false;
    std::function<void()> mChangeListener;
};
}  // namespace waveExplorerConfiguration

class wxWaveExplorerConfiguration : public waveExplorerConfiguration::cConfigData {
public:
    wxWaveExplorerConfiguration() = default;
    // Copies carry the settings, never the owner's listener.
    wxWaveExplorerConfiguration(const wxWaveExplorerConfiguration&) = delete;
    wxWaveExplorerConfiguration& operator=(const wxWaveExplorerConfiguration&) = delete;

    // Fields switched by the style bits of the top object; not kept in the file.
    int sideBarStyle = 4;  // the style field that stands before the tool bar style
    int toolBarStyle = waveExplorerConfiguration::tool_bar_none;
    bool guiFlagBit4 = false;
    bool guiFlagBit32 = false;
    bool showMenuBar = false;
    bool nocliMode = false;
    bool loadAndSaveConfigFile = false;
    std::string toolbarButtonStyle = "classic";
    // The page kind that add_plot makes for a type word it doesn't know (2: analog).
    int defaultWindowType = 2;

    // An address-sized identity that a host can compare with check_instance_identifier.
    uint64_t getInstanceIdentifier() const { return reinterpret_cast<uintptr_t>(this); }

    const std::string& getConfigFileName() const { return mConfigFileName; }
    void setConfigFileName(const std::string& name) { mConfigFileName = name; }

    // Reads the file named by getConfigFileName(). Values the file lacks keep their defaults, and what
    // this session changed before a retried load stays as the session set it. False when the file could
    // not be read (the messages are logged).
    bool loadFromConfig(const cVxLogger& logger);
    // Writes the three topics in one transaction. When another instance has written the file since this
    // one read or wrote it, its values are taken for everything this session did not change.
    bool saveToConfig(const cVxLogger& logger);
    // An explicit read: the file's values replace the session's, and the file becomes the one that later
    // saves write. A file that cannot be read changes nothing.
    bool readConfigurationFile(const std::string& fileName, const cVxLogger& logger);
    bool saveToConfig(const std::string& fileName, const cVxLogger& logger);

    bool checkConfigLoaded() const { return mLoaded; }
    // Loading either worked or cannot work by waiting (missing file, not a data base).
    bool checkConfigLoadedOrDefinitelyFailed() const { return mLoaded || mLoadFailedDefinitely; }
    bool checkLoadIsWorthRetrying() const { return !mLoaded && !mLoadFailedDefinitely; }
    void resetFlagsForLoadingConfig();
    // A session that could not read an existing file does not overwrite it on its own: the file may
    // hold another instance's settings. An explicit save still writes it.
    bool checkAutomaticSaveAllowed() const
    {
        return mLoaded || mFileWasMissing || (!mConfigFileName.empty() && mFileStateName == mConfigFileName);
    }
    void setFlagApplicationCloses(bool flag) { mApplicationCloses = flag; }
    bool getFlagApplicationCloses() const { return mApplicationCloses; }

    // How long a load or save waits for another instance's lock.
    void setBusyTimeout(int milliseconds) { mBusyMilliseconds = milliseconds; }

private:
    bool loadTopics(cDataBaseInterface& db, const std::string& fileName, cConfigData& target, bool log,
                    const cVxLogger& logger);
    void rememberFileState(cDataBaseInterface& db);
    bool checkFileChangedSince(cDataBaseInterface& db);

    std::string mConfigFileName;
    bool mLoaded = false;
    bool mLoadFailedDefinitely = false;
    bool mFileWasMissing = false;
    bool mApplicationCloses = false;
    int mBusyMilliseconds = 2000;
    // The blobs as this session last read or wrote them, by type: a difference at the next save means
    // another instance wrote in between.
    std::map<uint32_t, std::vector<uint8_t>> mFileState;
    std::string mFileStateName;
};

}  // namespace vx3
