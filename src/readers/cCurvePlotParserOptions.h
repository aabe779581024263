// The settings under which a file is read, with the logger that takes the reader's messages.
#pragma once

#include <cmath>
#include <cstdint>
#include <map>
#include <string>

#include "base/cVxLogger.h"

namespace vx3 {

namespace curvePlotParser {

// The reader a file goes to. Stored in sessions and plug-in calls: never renumber.
enum parser_type : unsigned {
    none = 0,
    psf = 1,
    psf_ascii = 2,
    psf_binary = 3,
    sst2 = 4,
    cadence_log = 5,
    cou = 6,
    nutmeg = 7,
    tabulated = 8,       // fast reader, then slow reader
    tabulated_fast = 9,  // fast reader alone
    tabulated_slow = 10, // slow reader alone
    html = 11,
    vcd = 12,
    wdb = 13,
    touchstone_snp = 14,
    touchstone_ts = 15,
    tr0 = 16,
    wsf = 17,
    wsf_ascii = 18,
    wsf_binary = 19,
    wsf_index = 20,
    fsdb = 21,
    pspice_dat = 22,
    pwf = 23,
    tdms = 24,
    tmf = 25,
    pspice_csdf = 26,
    unknown_try_content = 27,
    tecplot = 28,
    spice_stimulus = 29,
    ic = 30,
    matlab = 32,
    lvm = 33,
    hsim_dc = 34,
    ads_citi = 35,
    ads_dataset = 36,
    psfxl = 38,
    sxdat = 39,
};

// The numeric option identifiers of setOption (the plug-in interface's keys, in this order).
enum option_id : unsigned {
    prop_parser_option_generate_sweep_variable = 0,
    prop_parser_option_convert_int_to_real,
    prop_parser_option_generate_instance_hierarchy,
    prop_parser_option_parse_referenced_files,
    prop_parser_option_parse_hidden_curves,
    prop_parser_option_generate_expanded_curves,
    prop_parser_option_generate_expanded_logic_bus_curves,
    prop_parser_option_generate_expanded_scalar_curves,
    prop_parser_option_create_instance_for_expanded_curves,
    prop_parser_option_minimum_size_for_db_access,
    prop_parser_option_logic_level_0,
    prop_parser_option_logic_level_1,
    prop_parser_option_logic_level_X,
    prop_parser_option_logic_level_Z,
    prop_parser_option_logic_level_U,
    prop_parser_option_logic_rise_fall_time,
    prop_parser_option_enumerated_level,
    prop_parser_option_create_all_section_properties,
    prop_parser_option_read_all_properties,
    prop_parser_option_dont_read_data,
    prop_parser_option_simplify_instance_names_for_currents,
    prop_parser_option_check_x_axis_values_for_multiple_runs,
    prop_parser_option_first_x_axis_value,
    prop_parser_option_last_x_axis_value,
    prop_parser_options_compute_similar_sections,
    prop_parser_options_compute_similar_sections_check_data_types,
    prop_parser_option_spice_read_included_files,
    kNbOfParserOptions
};

}  // namespace curvePlotParser

// What the user chose in the open dialog; kept in the file entry so that a reload honours it.
class cCurvePlotParserOpenFileOptions {
public:
    static constexpr unsigned kNbOfFlags = 13;

    void clearOpenFileOptions()
    {
        mFlags = 0;
        mReadData = true;
        mFirstX = NAN;
        mLastX = NAN;
    }
    bool getFlag(unsigned index) const { return index < kNbOfFlags && (mFlags >> index) & 1u; }
    void setFlag(unsigned index, bool on)
    {
        if (index < kNbOfFlags)
            mFlags = on ? (mFlags | (1u << index)) : (mFlags & ~(1u << index));
    }
    bool getFlagReadData() const { return mReadData; }
    void setFlagReadData(bool flag) { mReadData = flag; }
    double getFirstXAxisValue() const { return mFirstX; }
    double getLastXAxisValue() const { return mLastX; }
    void setFirstXAxisValue(double value) { mFirstX = value; }
    void setLastXAxisValue(double value) { mLastX = value; }
    // A bound counts when it is a number that isn't infinite.
    bool checkFirstXAxisValueIsDefined() const { return std::isfinite(mFirstX); }
    bool checkLastXAxisValueIsDefined() const { return std::isfinite(mLastX); }
    // True when x lies inside the chosen interval (or no interval was chosen).
    bool checkXIsInRange(double x) const
    {
        return !(checkFirstXAxisValueIsDefined() && x < mFirstX) && !(checkLastXAxisValueIsDefined() && x > mLastX);
    }

private:
    unsigned mFlags = 0;
    bool mReadData = true;
    double mFirstX = NAN;
    double mLastX = NAN;
};

class cCurvePlotParserOptions {
public:
    cVxLogger& logger() { return mLogger; }
    const cVxLogger& logger() const { return mLogger; }

    // Relative file names are taken from here; empty: the working directory.
    const std::string& getBaseDirectory() const { return mBaseDirectory; }
    void setBaseDirectory(const std::string& directory) { mBaseDirectory = directory; }

    cCurvePlotParserOpenFileOptions& openFileOptions() { return mOpenFileOptions; }
    const cCurvePlotParserOpenFileOptions& openFileOptions() const { return mOpenFileOptions; }

    // ---- The reader: 0 lets the dispatch decide.
    unsigned getForcedParserType() const { return mForcedParserType; }
    void setForcedParserType(unsigned type) { mForcedParserType = type; }
    bool getFlagFastReaderOnly() const { return mFastReaderOnly; }
    void setFlagFastReaderOnly(bool flag) { mFastReaderOnly = flag; }
    bool getFlagTryFastReader() const { return mTryFastReader; }
    void setFlagTryFastReader(bool flag) { mTryFastReader = flag; }

    // ---- Numeric options by identifier; for flags a value of 1.0 or more is on.
    void setOption(unsigned id, double value);
    double getOption(unsigned id) const { return id < curvePlotParser::kNbOfParserOptions ? mValues[id] : NAN; }
    bool getFlag(unsigned id) const { return getOption(id) >= 1.0; }
    void setFlag(unsigned id, bool flag) { setOption(id, flag ? 1.0 : 0.0); }

    // "v1#branch" becomes "i(v1)".
    bool getFlagSimplifyInstanceNamesForCurrents() const
    {
        return getFlag(curvePlotParser::prop_parser_option_simplify_instance_names_for_currents);
    }
    void setFlagSimplifyInstanceNamesForCurrents(bool flag)
    {
        setFlag(curvePlotParser::prop_parser_option_simplify_instance_names_for_currents, flag);
    }
    bool getFlagParseSweepMatrices() const { return mParseSweepMatrices; }
    void setFlagParseSweepMatrices(bool flag) { mParseSweepMatrices = flag; }
    bool getFlagMonitorReloadChangesInSections() const { return mMonitorReloadChanges; }
    void setFlagMonitorReloadChangesInSections(bool flag) { mMonitorReloadChanges = flag; }
    bool getFlagComputeSimilarSections() const
    {
        return getFlag(curvePlotParser::prop_parser_options_compute_similar_sections);
    }
    bool getFlagGenerateInstanceHierarchy() const
    {
        return getFlag(curvePlotParser::prop_parser_option_generate_instance_hierarchy);
    }
    double getLogicLevel0() const { return mValues[curvePlotParser::prop_parser_option_logic_level_0]; }
    double getLogicLevel1() const { return mValues[curvePlotParser::prop_parser_option_logic_level_1]; }
    double getLogicLevelX() const { return mValues[curvePlotParser::prop_parser_option_logic_level_X]; }
    double getLogicLevelZ() const { return mValues[curvePlotParser::prop_parser_option_logic_level_Z]; }
    double getLogicLevelU() const { return mValues[curvePlotParser::prop_parser_option_logic_level_U]; }
    double getLogicRiseFallTime() const { return mValues[curvePlotParser::prop_parser_option_logic_rise_fall_time]; }
    // A text column with at most this many distinct values becomes an enumeration.
    double getEnumeratedLevel() const { return mValues[curvePlotParser::prop_parser_option_enumerated_level]; }

    // ---- What the import dialog gave: the separator, its character, the header row.
    void setImportParameters(const std::string& separator, const std::string& other, int index)
    {
        mImportSeparator = separator;
        mImportOther = other;
        mImportIndex = index;
    }
    const std::string& getImportSeparator() const { return mImportSeparator; }
    const std::string& getImportOtherSeparator() const { return mImportOther; }
    int getImportIndex() const { return mImportIndex; }
    // The separator type of the tabulated readers (0 automatic).
    unsigned getSeparatorType() const { return mSeparatorType; }
    void setSeparatorType(unsigned type, char other = 0)
    {
        mSeparatorType = type;
        mOtherSeparator = other;
    }
    char getOtherSeparator() const { return mOtherSeparator; }

    // Enumeration names mapped to a plotted level; a NaN or infinite level removes the name.
    void defineEnumReductionLevel(const std::string& name, double level);
    const std::map<std::string, double>& getEnumReductionLevels() const { return mEnumLevels; }

    // Copies every option, but not the logger (nor its call-back): the target keeps its own.
    void copyOptionsFrom(const cCurvePlotParserOptions& other);

private:
    cVxLogger mLogger;
    std::string mBaseDirectory;
    cCurvePlotParserOpenFileOptions mOpenFileOptions;
    unsigned mForcedParserType = 0;
    bool mFastReaderOnly = false;
    bool mTryFastReader = true;
    bool mParseSweepMatrices = true;
    bool mMonitorReloadChanges = false;
    double mValues[curvePlotParser::kNbOfParserOptions] = {
        // generate sweep variable, convert int to real, instance hierarchy, referenced files,
        // hidden curves, expanded curves, expanded logic bus, expanded scalar, instance for
        // expanded curves, minimum size for db access (bytes)
        1, 0, 0, 1, 0, 0, 0, 0, 0, 1e6,
        // logic levels 0, 1, X, Z, U, rise and fall time
        0.0, 1.0, 0.5, 0.3, 0.0, 1e-15,
        // enumerated level, all section properties, all properties, don't read data,
        // simplify current names, check x for multiple runs, first x, last x
        32, 0, 0, 0, 1, 1, NAN, NAN,
        // similar sections, with data types, Spice included files
        0, 0, 1};
    std::string mImportSeparator;
    std::string mImportOther;
    int mImportIndex = -1;
    unsigned mSeparatorType = 0;
    char mOtherSeparator = 0;
    std::map<std::string, double> mEnumLevels;
};

}  // namespace vx3
