// Generated from the file format reference table; edit the table, not this file.
#include "model/fileDbTypeTable.h"

namespace vx3::fileDbSupport::detail {

const char* const kDbTypeTexts[kNbOfDbTypes] = {
    "undefined",  // 0
    "wdb",  // 1
    "wdb",  // 2
    "wdb",  // 3
    "nutmeg ascii",  // 4
    "nutmeg ascii",  // 5
    "nutmeg binary",  // 6
    "nutmeg binary",  // 7
    "nutmeg binary",  // 8
    "nutmeg binary",  // 9
    "nutmeg binary",  // 10
    "nutmeg binary",  // 11
    "nutmeg binary",  // 12
    "cou",  // 13
    "cou",  // 14
    "cou",  // 15
    "cou",  // 16
    "cou",  // 17
    "cou",  // 18
    "cou",  // 19
    "cou",  // 20
    "cou",  // 21
    "csv",  // 22
    "csv",  // 23
    "csv",  // 24
    "csv",  // 25
    "csv",  // 26
    "csv",  // 27
    "csv",  // 28
    "csv",  // 29
    "csv",  // 30
    "csv",  // 31
    "touchstone v1",  // 32
    "touchstone v2",  // 33
    "tr0 ascii",  // 34
    "tr0 binary",  // 35
    "tr0 binary",  // 36
    "wsf ascii",  // 37
    "wsf binary",  // 38
    "wsf ascii",  // 39
    "wsf binary",  // 40
    "psf log file",  // 41
    "psf ascii",  // 42
    "psf binary",  // 43
    "psf binary",  // 44
    "psfxl",  // 45
    "psfxl",  // 46
    "undefined",  // 47
    "undefined",  // 48
    "undefined",  // 49
    "psfxl",  // 50
    "psfxl",  // 51
    "psfxl",  // 52
    "psfxl",  // 53
    "tdms",  // 54
    "tdms",  // 55
    "lvm",  // 56
    "lvm",  // 57
    "fsdb",  // 58
    "fsdb",  // 59
    "fsdb",  // 60
    "fsdb",  // 61
    "fsdb",  // 62
    "vcd",  // 63
    "vcd",  // 64
    "vcd",  // 65
    "pwf",  // 66
    "pwf",  // 67
    "user defined",  // 68
    "html",  // 69
    "abf",  // 70
    "plugin",  // 71
    "plugin",  // 72
    "tool box",  // 73
    "tool box",  // 74
    "tmf",  // 75
    "pspice csd",  // 76
    "pspice dat",  // 77
    "spice stimulus",  // 78
    "ic",  // 79
    "wdf",  // 80
    "wdf",  // 81
    "matlab v4",  // 82
    "matlab v5",  // 83
    "matlab v6",  // 84
    "matlab v7",  // 85
    "matlab v7.3",  // 86
    "undefined",  // 87
    "sst2",  // 88
    "sst2",  // 89
    "sst2",  // 90
    "sst2",  // 91
    "sst2",  // 92
    "sst2",  // 93
    "sst2",  // 94
    "tecplot",  // 95
    "hsim dc",  // 96
    "ads citi",  // 97
    "ads ds",  // 98
    "sxdat",  // 99
    "sxdat",  // 100
    "drop",  // 101
};

}  // namespace vx3::fileDbSupport::detail
