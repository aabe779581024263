// Generated from the analysis type reference list; edit the list, not this file.
#include "model/analysisTypeTable.h"

namespace vx3::curvePlotDataSection::detail {

const char* const kAnalysisTypeTexts[kNbOfAnalysisTypeTexts] = {
    "",  // 0
    "dc",  // 1
    "op",  // 2
    "tran",  // 3
    "ac",  // 4
    "sst",  // 5
    "sstnoise",  // 6
    "fsst",  // 7
    "tsst",  // 8
    "extract",  // 9
    "modsst",  // 10
    "tmodsst",  // 11
    "fmodsst",  // 12
    "fourmodsst",  // 13
    "digital",  // 14
    "noise",  // 15
    "sstxf",  // 16
    "sstac",  // 17
    "fft",  // 18
    "post process",  // 19
    "sstjitter",  // 20
    "network",  // 21
    "calculator",  // 22
    "transfer function",  // 23
    "dc sweep",  // 24
    "dc op",  // 25
    "ac sweep",  // 26
    "violations",  // 27
    "info",  // 28
    "info.primitives",  // 29
    "info.subcircuits",  // 30
    "s-parameters",  // 31
    "transient s-parameters",  // 32
    "sweep",  // 33
    "td.pss",  // 34
    "fd.pss",  // 35
    "pxf_cross",  // 36
    "tran.pss",  // 37
    "fd.qpss",  // 38
    "fi.qpss",  // 39
    "",  // 40
    "montecarlo",  // 41
    "stability analysis",  // 42
    "pole-zero analysis",  // 43
    "acmatch",  // 44
    "traces",  // 45
    "xf",  // 46
    "foreach",  // 47
    "ac_1",  // 48
    "ac_2",  // 49
    "ac_3",  // 50
    "ac_4",  // 51
    "ac_5",  // 52
    "ac_6",  // 53
    "ac_7",  // 54
    "ac_8",  // 55
    "ac_9",  // 56
    "ac_10",  // 57
    "ac_11",  // 58
    "ac_12",  // 59
    "ac_13",  // 60
    "ac_14",  // 61
    "ac_15",  // 62
    "ac_16",  // 63
    "ac_17",  // 64
    "ac_18",  // 65
    "ac_19",  // 66
    "ac_20",  // 67
    "ac_21",  // 68
    "ac_22",  // 69
    "ac_23",  // 70
    "ac_24",  // 71
    "ac_25",  // 72
    "ac_26",  // 73
    "ac_27",  // 74
    "ac_28",  // 75
    "ac_29",  // 76
    "ac_30",  // 77
    "ac_31",  // 78
    "ac_32",  // 79
};

}  // namespace vx3::curvePlotDataSection::detail
