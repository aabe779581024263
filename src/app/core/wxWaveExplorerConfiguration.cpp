// The kept values of the configuration besides the options: key bindings, colours, the last opened
// files and directories, and the records of the three topics in the file.
#include "wxWaveExplorerConfiguration.h"

#include <sys/stat.h>

#include <algorithm>

#include "cDataBaseSerializer.h"

namespace vx3 {
namespace waveExplorerConfiguration {

namespace {
struct cKeyBindingRow {
    const char* name;
    const char* key;
};
const cKeyBindingRow kKeyBindings[nb_key_bindings] = {
    {"Reload All Files", ""},
    {"New Analog Plot Page", "P"},
    {"New Synchronized Analog Plot Page", ""},
    {"New Spreadsheet Page", "T"},
    {"New Calculator Page", ""},
    {"Split Page Vertically", "V"},
    {"Split Page Horizontally", "H"},
    {"Page Layout", ""},
    {"Close Current Plot", ""},
    {"Maximize Current Plot", ""},
    {"Minimize Current Plot", ""},
    {"Show Legend", "L"},
    {"Logarithmic X Axis", ""},
    {"Logarithmic Y Axis", ""},
    {"Zoom In", "+"},
    {"Zoom Out", "-"},
    {"Zoom X", "X"},
    {"Zoom Y", "Y"},
    {"Zoom Fit", ""},
    {"Unzoom", "1"},
    {"Previous View Port", ""},
    {"Next View Port", ""},
    {"Auto Scroll Mode", ""},
    {"Set Marker And Cursor", "C"},
    {"Show Browser", ""},
    {"Properties", ""},
    {"Toolbox", ""},
    {"Show Message Logger", ""},
    {"Show Configuration", ""},
    {"Compare Values (Identical Curve)", ""},
    {"Measure Delta X (Identical Curve)", ""},
    {"Compare Values (Identical Y Axes)", ""},
    {"Measure Delta X (Identical Y Axes)", ""},
};

// For the dark background, in 0xRRGGBB.
const uint32_t kColours[nb_colours] = {
    0x808080,  // zoom box
    0x404040,  // grid
    0x606060,  // coarse grid
    0x303030,  // fine grid
    0x808080,  // zero line
    0xc0c0c0,  // axis
    0x000000,  // axis background
    0x606060,  // disabled axis
    0xffff00,  // delta axis
    0x808000,  // disabled delta axis
    0xffffff,  // highlight
    0x00ff00,  // digital main
    0xff0000,  // digital X
    0xffff00,  // digital Z
    0x800000,  // digital X box
    0x00ffff,  // copy and paste indicator
    0x202040,  // delta cycle background
    0x303050,  // delta cycle background, bottom axis
    0x505050,  // widget scroll bar
};

// The record version written by this program; fields added later are read only when the stored
// version has them.
// Version 2 added the browser's rules at the end of the browser topic.
constexpr uint32_t kRecordVersion = 2;
}  // namespace

void cConfigData::setDefaults()
{
    setDefaults(topic_main);
    setDefaults(topic_post_process);
    setDefaults(topic_browser);
}

void cConfigData::setDefaults(topic_type topic)
{
    if (topic == topic_main) {
        windowWidth = 1200;
        windowHeight = 800;
        mKeyBindings.clear();
        for (const auto& row : kKeyBindings)
            mKeyBindings.emplace_back(row.key);
        mColours.assign(std::begin(kColours), std::end(kColours));
        mLastOpened.clear();
        mLastDirectory.clear();
        mLastCommandFileDirectory.clear();
        mLastCurveStyleFileDirectory.clear();
        mLastExportAsImageDirectory.clear();
        mLastCalculatorFile.clear();
        mAutoReloadInterval = 0.0;
        mMessageWindowVisibilityTime = 10.0;
    }
    if (topic == topic_browser)
        mBrowserRules.clear();
    setDefaultOptions(topic);
}

std::string cConfigData::getString(size_t index)
{
    return index < nb_key_bindings ? kKeyBindings[index].name : std::string();
}

std::string cConfigData::getDefaultKeyBinding(size_t index)
{
    return index < nb_key_bindings ? kKeyBindings[index].key : std::string();
}

uint32_t cConfigData::getDefaultColour(size_t index) { return index < nb_colours ? kColours[index] : 0; }

const std::string& cConfigData::getKeyBinding(size_t index) const
{
    static const std::string kNone;
    return index < mKeyBindings.size() ? mKeyBindings[index] : kNone;
}

void cConfigData::setKeyBinding(size_t index, const std::string& key)
{
    if (index >= mKeyBindings.size() || mKeyBindings[index] == key)
        return;
    mKeyBindings[index] = key;
    markChanged("key_bindings");
}

void cConfigData::setColour(size_t index, uint32_t colour)
{
    if (index >= mColours.size() || mColours[index] == colour)
        return;
    mColours[index] = colour;
    markChanged("colours");
}

void cConfigData::invertColours()
{
    for (uint32_t& colour : mColours)
        colour = ~colour & 0xffffffu;
}

bool cConfigData::getFlagUseWhiteBackground() const { return getOptionFlag("use_white_background"); }

void cConfigData::setFlagUseWhiteBackground(bool flag)
{
    if (flag == getFlagUseWhiteBackground())
        return;
    cOptionValue value;
    value.numbers.push_back(flag ? 1.0 : 0.0);
    setOptionValue("use_white_background", value);  // inverts the colours
}

void cConfigData::addLastOpenedFiles(const std::string& name)
{
    if (name.empty() || (!mLastOpened.empty() && mLastOpened.front() == name))
        return;
    mLastOpened.erase(std::remove(mLastOpened.begin(), mLastOpened.end(), name), mLastOpened.end());
    mLastOpened.insert(mLastOpened.begin(), name);
    if (mLastOpened.size() > max_last_opened_files)
        mLastOpened.resize(max_last_opened_files);
    markChanged("last_opened_files");
}

std::string cConfigData::getLastOpenedFiles(size_t index) const
{
    return index < mLastOpened.size() ? mLastOpened[index] : std::string();
}

void cConfigData::removeNonExistingLastOpened()
{
    size_t before = mLastOpened.size();
    std::erase_if(mLastOpened, [](const std::string& name) {
        struct stat info {};
        return ::stat(name.c_str(), &info) != 0;
    });
    if (mLastOpened.size() != before)
        markChanged("last_opened_files");
}

void cConfigData::setWindowSize(int width, int height)
{
    if (width == windowWidth && height == windowHeight)
        return;
    windowWidth = width;
    windowHeight = height;
    markChanged("window_size");
}

void cConfigData::setText(std::string& target, const std::string& value, const char* field)
{
    if (target == value)
        return;
    target = value;
    markChanged(field);
}

void cConfigData::setNumber(double& target, double value, const char* field)
{
    if (target == value)
        return;
    target = value;
    markChanged(field);
}

void cConfigData::markChanged(const std::string& field)
{
    mChangedFields.insert(field);
    setFlagConfigChanged(true);
}

void cConfigData::setFlagConfigChanged(bool flag)
{
    mChanged = flag;
    if (flag && mChangeListener)
        mChangeListener();
}

void cConfigData::copyFields(const cConfigData& other, const std::set<std::string>& fields)
{
    // The white background first: the colours below are copied in the form it asks for.
    if (fields.count("use_white_background") && other.getFlagUseWhiteBackground() != getFlagUseWhiteBackground())
        invertColours();
    for (const std::string& field : fields) {
        if (field == "window_size") {
            windowWidth = other.windowWidth;
            windowHeight = other.windowHeight;
        } else if (field == "key_bindings") {
            mKeyBindings = other.mKeyBindings;
        } else if (field == "colours") {
            mColours = other.mColours;
            if (other.getFlagUseWhiteBackground() != getFlagUseWhiteBackground())
                invertColours();
        } else if (field == "last_opened_files") {
            mLastOpened = other.mLastOpened;
        } else if (field == "last_directory") {
            mLastDirectory = other.mLastDirectory;
        } else if (field == "last_command_file_directory") {
            mLastCommandFileDirectory = other.mLastCommandFileDirectory;
        } else if (field == "last_curve_style_file_directory") {
            mLastCurveStyleFileDirectory = other.mLastCurveStyleFileDirectory;
        } else if (field == "last_export_as_image_directory") {
            mLastExportAsImageDirectory = other.mLastExportAsImageDirectory;
        } else if (field == "last_calculator_file") {
            mLastCalculatorFile = other.mLastCalculatorFile;
        } else if (field == "auto_reload_interval") {
            mAutoReloadInterval = other.mAutoReloadInterval;
        } else if (field == "message_window_visibility_time") {
            mMessageWindowVisibilityTime = other.mMessageWindowVisibilityTime;
        } else if (field == "browser_rules") {
            mBrowserRules = other.mBrowserRules;
        } else if (const cOptionValue* value = other.getOption(field)) {
            mOptions[field] = *value;
        } else {
            mOptions.erase(field);
        }
    }
}

void cConfigData::takeKeptValues(const cConfigData& other)
{
    windowWidth = other.windowWidth;
    windowHeight = other.windowHeight;
    mKeyBindings = other.mKeyBindings;
    mColours = other.mColours;
    mLastOpened = other.mLastOpened;
    mLastDirectory = other.mLastDirectory;
    mLastCommandFileDirectory = other.mLastCommandFileDirectory;
    mLastCurveStyleFileDirectory = other.mLastCurveStyleFileDirectory;
    mLastExportAsImageDirectory = other.mLastExportAsImageDirectory;
    mLastCalculatorFile = other.mLastCalculatorFile;
    mAutoReloadInterval = other.mAutoReloadInterval;
    mMessageWindowVisibilityTime = other.mMessageWindowVisibilityTime;
    mBrowserRules = other.mBrowserRules;
    mOptions = other.mOptions;
}

// ---------------------------------------------------------------------------------------------
void cConfigData::serializedeserialize(cDataBaseSerializer& serializer, topic_type topic)
{
    uint32_t version = kRecordVersion;
    serializer.serializedeserialize(version);
    if (topic == topic_main) {
        int32_t width = windowWidth, height = windowHeight;
        serializer.serializedeserialize(width);
        serializer.serializedeserialize(height);
        windowWidth = width;
        windowHeight = height;
        serializer.serializedeserialize(mKeyBindings);
        serializer.serializedeserialize(mColours);
        for (uint32_t& colour : mColours)  // 24-bit colours: a damaged byte above them is no colour
            colour &= 0xffffffu;
        serializer.serializedeserialize(mLastOpened);
        serializer.serializedeserialize(mLastDirectory);
        serializer.serializedeserialize(mLastCommandFileDirectory);
        serializer.serializedeserialize(mLastCurveStyleFileDirectory);
        serializer.serializedeserialize(mLastExportAsImageDirectory);
        serializer.serializedeserialize(mLastCalculatorFile);
        serializer.serializedeserialize(mAutoReloadInterval);
        serializer.serializedeserialize(mMessageWindowVisibilityTime);
    }
    serializeOptions(serializer, topic);
    if (topic == topic_browser && version >= 2)
        serializer.serializedeserialize(mBrowserRules);
}

load_result cConfigData::deserializeTopic(const std::vector<uint8_t>& data, topic_type topic)
{
    cDataBaseSerializer reader(data);
    load_result result = load_ok;
    // The version word decides between a partial read and none at all.
    bool started = false;
    try {
        uint32_t version = 0;
        cDataBaseSerializer probe(data);
        probe.serializedeserialize(version);
        started = true;
        serializedeserialize(reader, topic);
    } catch (const cSerializerException&) {
        result = started ? load_partial : load_failed;
    }
    // Colours are stored for the dark background.
    if (topic == topic_main && result != load_failed && getFlagUseWhiteBackground())
        invertColours();
    return result;
}

std::vector<uint8_t> cConfigData::serializeTopic(topic_type topic) const
{
    cConfigData copy;
    copy.takeKeptValues(*this);
    if (getFlagUseWhiteBackground())
        copy.invertColours();
    cDataBaseSerializer writer;
    copy.serializedeserialize(writer, topic);
    return std::move(writer.buffer());
}

}  // namespace waveExplorerConfiguration
}  // namespace vx3
