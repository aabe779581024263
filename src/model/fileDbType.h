// The file formats behind a file entry and what they imply for loading.
#pragma once

namespace vx3::fileDbSupport {

// Several numbers per format where files come in variants (endianness, precision, version).
// Stored in sessions: never renumber.
enum db_type : unsigned {
    undefined_db = 0,
    wdb_1 = 1,
    wdb_2 = 2,
    wdb_3 = 3,
    nutmeg_ascii_4 = 4,
    nutmeg_ascii_5 = 5,
    nutmeg_binary_6 = 6,
    nutmeg_binary_7 = 7,
    nutmeg_binary_8 = 8,
    nutmeg_binary_9 = 9,
    nutmeg_binary_10 = 10,
    nutmeg_binary_11 = 11,
    nutmeg_binary_12 = 12,
    cou_13 = 13,
    cou_14 = 14,
    cou_15 = 15,
    cou_16 = 16,
    cou_17 = 17,
    cou_18 = 18,
    cou_19 = 19,
    cou_20 = 20,
    cou_21 = 21,
    csv = 22,
    tabulated_23 = 23,
    tabulated_24 = 24,
    tabulated_25 = 25,
    tabulated_26 = 26,
    tabulated_27 = 27,
    tabulated_28 = 28,
    tabulated_29 = 29,
    tabulated_30 = 30,
    tabulated_31 = 31,
    touchstone_v1 = 32,
    touchstone_v2 = 33,
    tr0_ascii = 34,
    tr0_binary_35 = 35,
    tr0_binary_36 = 36,
    wsf_ascii_37 = 37,
    wsf_binary_38 = 38,
    wsf_ascii_39 = 39,
    wsf_binary_40 = 40,
    psf_log_file = 41,
    psf_ascii = 42,
    psf_binary_43 = 43,
    psf_binary_44 = 44,
    psfxl_45 = 45,
    psfxl_46 = 46,
    db_type_47 = 47,
    db_type_48 = 48,
    db_type_49 = 49,
    psfxl_50 = 50,
    psfxl_51 = 51,
    psfxl_52 = 52,
    psfxl_53 = 53,
    tdms_54 = 54,
    tdms_55 = 55,
    lvm_56 = 56,
    lvm_57 = 57,
    fsdb_58 = 58,
    fsdb_59 = 59,
    fsdb_60 = 60,
    fsdb_61 = 61,
    fsdb_62 = 62,
    vcd_63 = 63,
    vcd_64 = 64,
    vcd_65 = 65,
    pwf_66 = 66,
    pwf_67 = 67,
    user_defined = 68,
    html = 69,
    abf = 70,
    plugin_71 = 71,
    plugin_db_access = 72,
    tool_box = 73,
    tool_box_referable = 74,
    tmf = 75,
    pspice_csd = 76,
    pspice_dat = 77,
    spice_stimulus = 78,
    ic = 79,
    wdf_80 = 80,
    wdf_81 = 81,
    matlab_v4 = 82,
    matlab_v5 = 83,
    matlab_v6 = 84,
    matlab_v7 = 85,
    matlab_v7_3 = 86,
    db_type_87 = 87,
    sst2_88 = 88,
    sst2_89 = 89,
    sst2_90 = 90,
    sst2_91 = 91,
    sst2_92 = 92,
    sst2_93 = 93,
    sst2_94 = 94,
    tecplot = 95,
    hsim_dc = 96,
    ads_citi = 97,
    ads_ds = 98,
    sxdat_99 = 99,
    sxdat_100 = 100,
    drop = 101,
};

constexpr unsigned kNbOfDbTypes = 102;

const char* getDbTypeAsSting(unsigned type);

bool checkIsBigEndian(unsigned type);
bool checkIsToolbox(unsigned type);
bool checkSectionNamesAreUniqueByConstruction(unsigned type);
bool checkSupportsParallelCurveDataAccess(unsigned type);
bool checkAllowsUndefinedValues(unsigned type);
bool checkXAxisIsAlwaysMonotoneRising(unsigned type);
// False for formats whose values were all parsed into memory when the file was opened.
bool checkDbSupportActive(unsigned type);
// False for the two per-curve types that mark a curve living only in memory.
bool checkLocalDbSupportActive(unsigned type);
bool checkHandlesFailSaveReload(unsigned type, bool hasFileName);

}  // namespace vx3::fileDbSupport
