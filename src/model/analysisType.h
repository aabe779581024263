// The kind of analysis that produced a section.
#pragma once

#include <string>
#include <string_view>

namespace vx3::curvePlotDataSection {

// Numbers are stored in sessions: never renumber.
enum analysisType : unsigned {
    no_analysis = 0,  // the free analysis name applies
    dc = 1,
    op = 2,
    tran = 3,
    ac = 4,
    sst = 5,
    sstnoise = 6,
    fsst = 7,
    tsst = 8,
    extract = 9,
    modsst = 10,
    tmodsst = 11,
    fmodsst = 12,
    fourmodsst = 13,
    digital = 14,
    noise = 15,
    sstxf = 16,
    sstac = 17,
    fft = 18,
    post_process = 19,
    sstjitter = 20,
    network = 21,
    calculator = 22,
    transfer_function = 23,
    dc_sweep = 24,
    dc_op = 25,
    ac_sweep = 26,
    violations = 27,
    info = 28,
    info_primitives = 29,
    info_subcircuits = 30,
    s_parameters = 31,
    transient_s_parameters = 32,
    sweep = 33,
    td_pss = 34,
    fd_pss = 35,
    pxf_cross = 36,
    tran_pss = 37,
    fd_qpss = 38,
    fi_qpss = 39,
    analysis_40 = 40,
    montecarlo = 41,
    stability_analysis = 42,
    pole_zero_analysis = 43,
    acmatch = 44,
    traces = 45,
    xf = 46,
    foreach = 47,
    ac_1 = 48,  // ac_1 .. ac_32 are 48 .. 79
    ac_32 = 79,
    undefined_analysis = 80,  // initial value of a section: not decided yet
};

// "" for numbers without a text.
const char* typeToString(unsigned type);
// Case-insensitive; also reads the simulators' own spellings and "ac_N". no_analysis if unknown.
analysisType stringToType(std::string_view text);

}  // namespace vx3::curvePlotDataSection
