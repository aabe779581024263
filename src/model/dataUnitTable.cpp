// Generated from the unit reference table; edit the table, not this file.
#include "model/dataUnitTable.h"

namespace vx3::curvePlotDataType::detail {

const cUnitTexts kUnitTexts[kNbOfUnits] = {
    {"undefined", ""},  // 0
    {"undefined", ""},  // 1
    {"", ""},  // 2
    {"", ""},  // 3
    {"Error", ""},  // 4
    {"Any", ""},  // 5
    {"Second", ""},  // 6
    {"Hour", ""},  // 7
    {"Volt", "V"},  // 8
    {"Ampere", "A"},  // 9
    {"Kelvin", ""},  // 10
    {"degree centigrade", "C"},  // 11
    {"Farenheit", "F"},  // 12
    {"Watt", "W"},  // 13
    {"Hertz", "Hz"},  // 14
    {"integer index", "index"},  // 15
    {"Ampere*turn", "A*turn"},  // 16
    {"Weber", "Wb"},  // 17
    {"Volt/second", "V/s"},  // 18
    {"Ampere/second", "A/s"},  // 19
    {"1/second", "1/s"},  // 20
    {"Newton*meter", "N*m"},  // 21
    {"radians per second squared", "rads/s^2"},  // 22
    {"radians per second", "rads/s"},  // 23
    {"radians", "rads"},  // 24
    {"gradians", "grads"},  // 25
    {"Newton", ""},  // 26
    {"meter per second cubed", "m/s^3"},  // 27
    {"meter per second squared", "m/s^2"},  // 28
    {"meter per second", "m/s"},  // 29
    {"meter", "m"},  // 30
    {"Coulomb", "C"},  // 31
    {"Index", "index"},  // 32
    {"degree", "deg"},  // 33
    {"V(dB)", "V(dB)"},  // 34
    {"A(dB)", "A(dB)"},  // 35
    {"V(mag)", "V(mag)"},  // 36
    {"A(mag)", "A(mag)"},  // 37
    {"degree", "deg"},  // 38
    {"degree", "deg"},  // 39
    {"Re(V)", "V"},  // 40
    {"Re(A)", "A"},  // 41
    {"Im(V)", "V"},  // 42
    {"Im(A)", "A"},  // 43
    {"dB", "dB"},  // 44
    {"parameter", "par"},  // 45
    {"Ohm", "ohm"},  // 46
    {"Henry", "H"},  // 47
    {"Farad", "F"},  // 48
    {"Siemens", "S"},  // 49
    {"S-Pararameter", "S-Param"},  // 50
    {"Z-Pararameter", "Z-Param"},  // 51
    {"Y-Pararameter", "Y-Param"},  // 52
    {"G-Pararameter", "G-Param"},  // 53
    {"H-Pararameter", "H-Param"},  // 54
    {"Noise Figure", "NF"},  // 55
    {"Noise", "Noise"},  // 56
    {"Reflection Coefficient", "Coeff"},  // 57
    {"Logic State", "Logic"},  // 58
    {"Logic State", "Logic"},  // 59
    {"Date", "Date"},  // 60
    {"Count", "Count"},  // 61
    {"Kg", "kg"},  // 62
    {"Candela", "cd"},  // 63
    {"Mole", "mol"},  // 64
    {"Pascal", "Pa"},  // 65
    {"Joule", ""},  // 66
    {"Tesla", "T"},  // 67
    {"Lumen", "lm"},  // 68
    {"Lux", "lx"},  // 69
    {"Becquerel", "Bq"},  // 70
    {"Gray", "Gy"},  // 71
    {"Sievert", "Sv"},  // 72
    {"Katal", "kat"},  // 73
    {"%", "%"},  // 74
    {"hPa", "hPa"},  // 75
    {"g/m^3", "g/m^3"},  // 76
    {"dBm", "dBm"},  // 77
    {"b/s", "b/s"},  // 78
    {"Correlation", "Correlation"},  // 79
    {"Vm", "Vm"},  // 80
    {"", ""},  // 81
    {"V/", "V/"},  // 82
    {"date", "date"},  // 83
    {"mjd", "mjd"},  // 84
    {"Pole", "Pole"},  // 85
};

const cUnitWord kUnitWords[] = {
    {"v", volt},
    {"volt", volt},
    {"volts", volt},
    {"voltage", volt},
    {"vdd", volt},
    {"vss", volt},
    {"gnd", volt},
    {"net", volt},
    {"double_voltage", volt},
    {"real:v", volt},
    {"i", ampere},
    {"a", ampere},
    {"amp", ampere},
    {"amps", ampere},
    {"ampere", ampere},
    {"current", ampere},
    {"ib", ampere},
    {"ic", ampere},
    {"id", ampere},
    {"ie", ampere},
    {"ig", ampere},
    {"is", ampere},
    {"isub", ampere},
    {"imeas", ampere},
    {"s", second},
    {"sec", second},
    {"second", second},
    {"seconds", second},
    {"time", second},
    {"temps", second},
    {"#time", second},
    {"double_time", second},
    {"hz", hertz},
    {"hertz", hertz},
    {"freq", hertz},
    {"frequency", hertz},
    {"double_frequency", hertz},
    {"ohm", ohm},
    {"r", ohm},
    {"port-impedance", ohm},
    {"k", kelvin},
    {"'c", degree_centigrade},
    {"c", degree_centigrade},
    {"temperature", degree_centigrade},
    {"temp", degree_centigrade},
    {"degree_celsius", degree_centigrade},
    {"degree celsius", degree_centigrade},
    {"degree_centigrade", degree_centigrade},
    {"degree centigrade", degree_centigrade},
    {"w", watt},
    {"watt", watt},
    {"power", watt},
    {"vdb", volt_db},
    {"vm", volt_mag},
    {"vp", degree},
    {"vr", real_volt},
    {"vi", imag_volt},
    {"vxdb", volt_db},
    {"vxm", volt_mag},
    {"vxp", degree},
    {"vxr", real_volt},
    {"vxi", imag_volt},
    {"idb", ampere_db},
    {"im", ampere_mag},
    {"ip", degree},
    {"ir", real_ampere},
    {"ii", imag_ampere},
    {"ixdb", ampere_db},
    {"ixm", ampere_mag},
    {"ixp", degree},
    {"ixr", real_ampere},
    {"ixi", imag_ampere},
    {"dbv", volt_db},
    {"dbi", ampere_db},
    {"db", decibel},
    {"decibel", decibel},
    {"dbm", dbm},
    {"deg", degree},
    {"degree", degree},
    {"degrees", degree},
    {"logic", logic_state},
    {"logic_state", logic_state},
    {"logic state", logic_state},
    {"time stamp", date},
    {"time_stamp", date},
    {"timestamp", date},
    {"count", count},
    {"correlation", correlation},
    {"pole", pole},
    {"h", hour},
    {"hour", hour},
    {"hours", hour},
    {"kg", kilogram},
    {"cd", candela},
    {"mol", mole},
    {"pa", pascal},
    {"j", joule},
    {"energy", joule},
    {"t", tesla},
    {"lm", lumen},
    {"lx", lux},
    {"gy", gray},
    {"sv", sievert},
    {"kat", katal},
    {"%", percent},
    {"hpa", hecto_pascal},
    {"g/m^3", gram_per_cubic_meter},
    {"date", date_text},
    {"mjd", mjd},
    {"flux", weber},
    {"lambda", meter},
    {"gamma", reflection_coefficient},
    {"s-param", s_parameter},
    {"y-param", y_parameter},
    {"z-param", z_parameter},
    {"g-param", g_parameter},
    {"h-param", h_parameter},
    {"y", y_parameter},
    {"z", z_parameter},
    {"g", g_parameter},
    {"onoise", noise},
    {"inoise", noise},
    {"byte/s", bits_per_second},
    {"byte/sec", bits_per_second},
    {"byte/second", bits_per_second},
    {"$flow", bits_per_second},
    {"b/s", bits_per_second},
    {"bq", becquerel},
    {"notype", undefined_unit},
    {"none", undefined_unit},
    {"double", undefined_unit},
    {"float", undefined_unit},
    {"integer", undefined_unit},
    {"complex", undefined_unit},
    {"array", undefined_unit},
    {"input", undefined_unit},
    {"output", undefined_unit},
};
const size_t kNbOfUnitWords = sizeof(kUnitWords) / sizeof(kUnitWords[0]);

}  // namespace vx3::curvePlotDataType::detail
