// Units: vocabulary, guessing from curve names, axis labels and scaling.
#include <cmath>

#include <gtest/gtest.h>

#include "model/dataUnit.h"

using namespace vx3::curvePlotDataType;

TEST(DataUnit, TextsKeepTheirSpellings)
{
    EXPECT_STREQ(unitToString(volt), "Volt");
    EXPECT_STREQ(unitToShortString(volt), "V");
    EXPECT_STREQ(unitToString(farenheit), "Farenheit");
    EXPECT_STREQ(unitToString(s_parameter), "S-Pararameter");
    EXPECT_STREQ(unitToShortString(s_parameter), "S-Param");
    EXPECT_STREQ(unitToString(real_volt), "Re(V)");
    EXPECT_STREQ(unitToShortString(imag_ampere), "A");
    EXPECT_STREQ(unitToString(degree_39), "degree");
    EXPECT_STREQ(unitToString(pole), "Pole");
    EXPECT_STREQ(unitToString(mjd), "mjd");
    EXPECT_STREQ(unitToShortString(second), "") << "a unit without short text prints nothing";
    EXPECT_STREQ(unitToString(500), "");
}

TEST(DataUnit, StringToUnitIsCaseInsensitive)
{
    EXPECT_EQ(stringToUnit("V"), volt);
    EXPECT_EQ(stringToUnit("Volts"), volt);
    EXPECT_EQ(stringToUnit("real:v"), volt);
    EXPECT_EQ(stringToUnit("IMEAS"), ampere);
    EXPECT_EQ(stringToUnit("isub"), ampere);
    EXPECT_EQ(stringToUnit("#time"), second);
    EXPECT_EQ(stringToUnit("Double_Frequency"), hertz);
    EXPECT_EQ(stringToUnit("port-impedance"), ohm);
    EXPECT_EQ(stringToUnit("'C"), degree_centigrade);
    EXPECT_EQ(stringToUnit("degree celsius"), degree_centigrade);
    EXPECT_EQ(stringToUnit("K"), kelvin);
    EXPECT_EQ(stringToUnit("power"), watt);
    EXPECT_EQ(stringToUnit("vdb"), volt_db);
    EXPECT_EQ(stringToUnit("VXM"), volt_mag);
    EXPECT_EQ(stringToUnit("vp"), degree);
    EXPECT_EQ(stringToUnit("ir"), real_ampere);
    EXPECT_EQ(stringToUnit("ixi"), imag_ampere);
    EXPECT_EQ(stringToUnit("dbm"), dbm);
    EXPECT_EQ(stringToUnit("DBV"), volt_db);
    EXPECT_EQ(stringToUnit("hPa"), hecto_pascal);
    EXPECT_EQ(stringToUnit("g/m^3"), gram_per_cubic_meter);
    EXPECT_EQ(stringToUnit("Y-Param"), y_parameter);
    EXPECT_EQ(stringToUnit("onoise"), noise);
    EXPECT_EQ(stringToUnit("byte/sec"), bits_per_second);
    EXPECT_EQ(stringToUnit("Bq"), becquerel);
    EXPECT_EQ(stringToUnit("  volt "), volt) << "surrounding blanks";
    EXPECT_EQ(stringToUnit("furlong"), undefined_unit);
    EXPECT_EQ(stringToUnit("double"), undefined_unit);
    EXPECT_TRUE(checkIsKnownUnitWord("Double")) << "known, but names no unit";
    EXPECT_FALSE(checkIsKnownUnitWord("furlong"));
    // Long texts read back, e.g. for units written into exported files.
    EXPECT_EQ(stringToUnit("Farad"), farad);
    EXPECT_EQ(stringToUnit("Reflection Coefficient"), reflection_coefficient);
}

TEST(DataUnit, GuessingFromVariableNames)
{
    EXPECT_EQ(guessUnitFromVariableName("v(out)"), volt);
    EXPECT_EQ(guessUnitFromVariableName("V(X1.OUT)"), volt);
    EXPECT_EQ(guessUnitFromVariableName("i(r1)"), ampere);
    EXPECT_EQ(guessUnitFromVariableName("-i(r1)"), ampere) << "a leading sign is dropped";
    EXPECT_EQ(guessUnitFromVariableName("re(v(x))"), real_volt);
    EXPECT_EQ(guessUnitFromVariableName("im(i(x))"), imag_ampere);
    EXPECT_EQ(guessUnitFromVariableName("vdb(out)"), volt_db);
    EXPECT_EQ(guessUnitFromVariableName("time"), second);
    EXPECT_EQ(guessUnitFromVariableName("frequency"), hertz);
    EXPECT_EQ(guessUnitFromVariableName("a+volt"), volt) << "the part behind the last +";
    EXPECT_EQ(guessUnitFromVariableName("node-current"), ampere) << "the part behind the last -";
    EXPECT_EQ(guessUnitFromVariableName("out"), undefined_unit);
    EXPECT_EQ(guessUnitFromVariableName("v(out"), undefined_unit) << "unbalanced bracket";
    EXPECT_EQ(guessUnitFromExpressionInBrackets("I(R1)"), ampere);
    EXPECT_EQ(guessUnitFromExpressionInBrackets("v(a)+v(b)"), undefined_unit) << "the bracket must close at the end";
}

TEST(DataUnit, ScalingPicksEngineeringPrefixes)
{
    std::string label;
    double factor = 0;
    getLabelAndScaleFactor(volt, "", 0.0, 2e-9, label, factor);
    EXPECT_EQ(label, "nV");
    EXPECT_DOUBLE_EQ(factor, 1e9);
    getLabelAndScaleFactor(volt, "", -3e-3, 1e-6, label, factor);
    EXPECT_EQ(label, "mV") << "the larger exponent of min and max";
    EXPECT_DOUBLE_EQ(factor, 1e3);
    getLabelAndScaleFactor(volt, "", 1e-3, 1e-3, label, factor);
    EXPECT_EQ(label, "mV") << "exactly a power of ten stays in its decade";
    getLabelAndScaleFactor(ampere, "", 0.0, 0.0, label, factor);
    EXPECT_EQ(label, "A") << "all zero: no exponent";
    EXPECT_EQ(factor, 1.0);
    getLabelAndScaleFactor(second, "s", 0.0, 3000.0, label, factor);
    EXPECT_EQ(label, "s") << "never ks";
    EXPECT_EQ(factor, 1.0);
    getLabelAndScaleFactor(second, "s", 0.0, 2e-9, label, factor);
    EXPECT_EQ(label, "ns");
    getLabelAndScaleFactor(hertz, "", 0.0, 0.001, label, factor);
    EXPECT_EQ(label, "Hz") << "no mHz";
    EXPECT_EQ(factor, 1.0);
    getLabelAndScaleFactor(hertz, "", 0.0, 2.4e9, label, factor);
    EXPECT_EQ(label, "GHz");
    EXPECT_DOUBLE_EQ(factor, 1e-9);
    getLabelAndScaleFactor(volt, "", NAN, 1.0, label, factor);
    EXPECT_EQ(label, "V");
    EXPECT_EQ(factor, 1.0);
    getLabelAndScaleFactor(percent, "", 0.0, 2e-6, label, factor);
    EXPECT_EQ(label, "%") << "not scalable";
    getLabelAndScaleFactor(volt, "", 0.0, 1e25, label, factor);
    EXPECT_EQ(label, "V") << "beyond 10^18 nothing is prefixed";
    getLabelAndScaleFactor(undefined_unit, "gain", 0.0, 1.0, label, factor);
    EXPECT_EQ(label, "gain") << "type name stands in for a missing short text";
}

TEST(DataUnit, ConversionsChangeTheUnitFirst)
{
    std::string label;
    double factor = 0;
    EXPECT_EQ(applyConversionToUnit(volt, 0), real_volt);
    EXPECT_EQ(applyConversionToUnit(ampere, 1), imag_ampere);
    EXPECT_EQ(applyConversionToUnit(volt, 3), volt_mag);
    EXPECT_EQ(applyConversionToUnit(ampere, 4), ampere_db);
    EXPECT_EQ(applyConversionToUnit(watt, 4), decibel);
    EXPECT_EQ(applyConversionToUnit(volt, 2), degree);
    EXPECT_EQ(applyConversionToUnit(volt, 15), converted_unit);
    EXPECT_EQ(applyConversionToUnit(watt, 0), watt);
    getLabelAndScaleFactor(volt, "", 0.0, 3e-3, label, factor, 4);
    EXPECT_EQ(label, "V(dB)") << "dB values are never prefixed";
    EXPECT_EQ(factor, 1.0);
    getLabelAndScaleFactor(volt, "", 0.0, 3e-3, label, factor, 3);
    EXPECT_EQ(label, "mV(mag)");
}

TEST(DataUnit, ExponentTexts)
{
    EXPECT_STREQ(exponentToUnit(-18), "a");
    EXPECT_STREQ(exponentToUnit(-16), "100a");
    EXPECT_STREQ(exponentToUnit(0), "");
    EXPECT_STREQ(exponentToUnit(2), "100");
    EXPECT_STREQ(exponentToUnit(3), "k");
    EXPECT_STREQ(exponentToUnit(20), "100E");
    EXPECT_STREQ(exponentToUnit(21), "");
    EXPECT_STREQ(exponentToUnit(-19), "");
    EXPECT_FALSE(checkUnitCanBeScaled(decibel));
    EXPECT_FALSE(checkUnitCanBeScaled(volt_meter));
    EXPECT_TRUE(checkUnitCanBeScaled(farad));
    EXPECT_TRUE(checkUnitCanBeScaled(second));
}
