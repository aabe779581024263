// Value blocks of curves, properties, and the per-curve data of a section.
#include <cmath>

#include <gtest/gtest.h>

#include "base/cLoggedException.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cCurvePlotVariableComparison.h"

using namespace vx3;
using namespace vx3::curvePlotProperties;

TEST(CurvePlotData, PushesRespectTheGrowthFlag)
{
    cCurvePlotData data;
    EXPECT_EQ(data.getVectorSize(), 0u);
    EXPECT_FALSE(data.pushBackValue(1.0)) << "no block and no growth: dropped";
    ASSERT_TRUE(data.setSize(2, sizeof(double)));
    EXPECT_TRUE(data.pushBackValue(1.0));
    EXPECT_TRUE(data.pushBackValue(2.0));
    EXPECT_FALSE(data.pushBackValue(3.0)) << "full block, growth off: ignored";
    EXPECT_EQ(data.getVectorSize(), 2u);
    data.setGrowthFlag(true);
    for (int i = 3; i <= 5000; ++i)
        ASSERT_TRUE(data.pushBackValue(static_cast<double>(i)));
    EXPECT_EQ(data.getVectorSize(), 5000u);
    EXPECT_EQ(data.doubleValues()[4999], 5000.0);
    EXPECT_EQ(data.getAllocatedSize() % sizeof(double), 0u);
    cCurvePlotData copy = data;
    EXPECT_EQ(copy.getVectorSize(), 5000u);
    EXPECT_NE(copy.doubleValues(), data.doubleValues()) << "a deep copy";
    EXPECT_EQ(copy.doubleValues()[1234], 1235.0);
    data.freeStorage();
    EXPECT_EQ(data.getVectorSize(), 0u);
    EXPECT_EQ(copy.doubleValues()[0], 1.0);
    cCurvePlotData none;
    none.setElementSize(0);
    EXPECT_EQ(none.getVectorSize(), 0u);
}

TEST(CurvePlotData, ResizeRule)
{
    cCurvePlotData data;
    ASSERT_TRUE(data.setSize(10, 8));
    ASSERT_TRUE(data.pushBackValue(7.0));
    ASSERT_TRUE(data.resizeStorageVariableSize(100));
    EXPECT_EQ(data.getAllocatedSize(), 160u) << "twice the old size when that is larger";
    ASSERT_TRUE(data.resizeStorageVariableSize(1001));
    EXPECT_EQ(data.getAllocatedSize(), 1008u) << "rounded up to the element size";
    EXPECT_EQ(data.doubleValues()[0], 7.0) << "used bytes kept";
}

TEST(CurvePlotData, ParameterizedHalves)
{
    cCurvePlotData data;
    ASSERT_TRUE(data.setParameterizedSize(2, sizeof(double), sizeof(double)));
    data.setGrowthFlag(true);
    for (int i = 0; i < 3000; ++i)
        ASSERT_TRUE(data.pushBackValuePair(0.5 * i, -1.0 * i));
    EXPECT_FALSE(data.pushBackValuePair(1.0f, 2.0)) << "wrong x width";
    data.balanceParameterizedCurve();
    ASSERT_EQ(data.getVectorSize(), 3000u);
    const double* xs = reinterpret_cast<const double*>(data.parameterizedXData());
    const double* ys = reinterpret_cast<const double*>(data.parameterizedYData());
    EXPECT_EQ(ys, xs + 3000) << "balanced: y follows x directly";
    for (int i = 0; i < 3000; i += 499) {
        EXPECT_EQ(xs[i], 0.5 * i);
        EXPECT_EQ(ys[i], -1.0 * i);
    }
    ASSERT_TRUE(data.pushBackValuePair(9.0, 9.5)) << "growing again after balancing";
    ys = reinterpret_cast<const double*>(data.parameterizedYData());
    EXPECT_EQ(ys[3000], 9.5);
    EXPECT_EQ(ys[2999], -2999.0);
}

TEST(CurveVariable, ValuesVectorsAndMinMax)
{
    cCurvePlotDataFile store;
    cCurvePlotDataSection* section = store.addDataSection("tran");
    const cCurvePlotDataType* time = store.addType("s", data_double, curvePlotDataType::second);
    const cCurvePlotDataType* volt = store.addType("V", data_double, curvePlotDataType::volt);
    const cCurvePlotDataType* cvolt = store.addType("V", true, false, curvePlotDataType::volt);
    section->addSweepVariable(time, "time", 0);
    const double ts[] = {0.0, 1.0, 2.0, 3.0};
    section->getSweepVariable(0).setDoubleValues(ts, 4);
    const uint64_t a = section->addVariable(volt, "v(a)");
    const double ys[] = {0.5, -2.0, 4.0, 1.0};
    section->getVariable(a).setDoubleValues(ys, 4);
    curvePlotFunctionArgs::cDataVectors vectors;
    ASSERT_TRUE(section->getVariable(a).computeDataVectors(*section, vectors));
    EXPECT_EQ(vectors.count, 4u);
    EXPECT_EQ(vectors.xDouble, section->getSweepVariable(0).doubleValues());
    EXPECT_EQ(vectors.yDouble[2], 4.0);
    ASSERT_TRUE(section->getVariable(a).computeMinMaxValues());
    double min = 0, max = 0;
    ASSERT_TRUE(section->getVariable(a).getMinMaxYValues(min, max));
    EXPECT_EQ(min, -2.0);
    EXPECT_EQ(max, 4.0);
    EXPECT_EQ(section->getVariable(a).getMinMax().maxyIndex, 2u);

    const uint64_t c = section->addVariable(cvolt, "v(c)");
    const std::complex<double> cs[] = {{1, 2}, {3, -4}};
    section->getVariable(c).setDoubleComplexValues(cs, 2);
    ASSERT_TRUE(section->getVariable(c).computeMinMaxValues());
    EXPECT_EQ(section->getVariable(c).getMinMax().imagMiny, -4.0);
    EXPECT_EQ(section->getVariable(c).getDoubleValue(1), 3.0);

    const uint64_t p = section->addVariable(store.addType("V", parameterized_double, curvePlotDataType::volt), "v(p)");
    const double px[] = {0.0, 0.25, 0.5};
    const double py[] = {1.0, 2.0, 3.0};
    section->getVariable(p).setParameterizedDoubleValues(px, py, 3);
    ASSERT_TRUE(section->getVariable(p).computeDataVectors(*section, vectors));
    EXPECT_EQ(vectors.xDouble[1], 0.25) << "its own x vector, not the sweep";
    EXPECT_EQ(vectors.yDouble[2], 3.0);
    EXPECT_EQ(section->getVariable(a).getUnitStr(), "V");
    EXPECT_EQ(section->getVariable(a).guessUnitFromName(), curvePlotDataType::volt);
    EXPECT_EQ(section->getVariable(a).getVariableKindAsString(), "double");

    // Copies made when the vector of curves grows keep the values.
    for (int i = 0; i < 100; ++i)
        section->addVariable(volt, "filler" + std::to_string(i));
    EXPECT_EQ(section->getVariable(a).doubleValues()[3], 1.0);
    EXPECT_EQ(section->getVariable(a).getMinMax().miny, -2.0);
}

TEST(CurveDbSupport, EntriesAndFileLink)
{
    cCurveDbSupport db;
    EXPECT_THROW(db.fileName(), cLoggedException);
    EXPECT_FALSE(db.checkDbSupportActive()) << "no file: memory only";
    db.addDbEntry(100, 20);
    db.addDoubleValuesToDbEntry(1.5, -2.5);
    uint64_t position = 0, size = 0;
    ASSERT_TRUE(db.getDbEntry(0, position, size));
    EXPECT_EQ(position, 100u);
    EXPECT_EQ(size, 20u);
    double first = 0, second = 0;
    ASSERT_TRUE(db.getDoubleValuesFromDbEntry(1, first, second));
    EXPECT_EQ(first, 1.5);
    EXPECT_EQ(second, -2.5);
    EXPECT_FALSE(db.getDoubleValuesFromDbEntry(2, first, second));
    EXPECT_TRUE(std::isnan(first) && std::isnan(second));
    cFileDbSupport file("/d/x.psf", fileDbSupport::psf_binary_43, 1);
    db.setFile(&file);
    EXPECT_EQ(db.fileName(), "/d/x.psf");
    EXPECT_TRUE(db.checkDbSupportActive());
    db.setLocalDbType(100);
    EXPECT_FALSE(db.checkDbSupportActive()) << "local type 100 lives in memory";
    db.decrementReferenceCount();
    EXPECT_EQ(db.getReferenceCount(), 0);
}

TEST(Properties, KindsValuesAndComparison)
{
    const cProperty run = cProperty::makeDouble(run_parameter, 27.0, "temp");
    EXPECT_EQ(run.getTypeAsString(), "Run Parameter");
    EXPECT_TRUE(run.isDouble());
    EXPECT_FALSE(run.isInteger());
    EXPECT_EQ(run.getValueAsString(), "27");
    EXPECT_TRUE(run.corresponds(cProperty::makeDouble(run_parameter, 27.0 + 1e-13, "temp")));
    EXPECT_FALSE(run == cProperty::makeDouble(run_parameter, 27.0 + 1e-13, "temp"));
    EXPECT_FALSE(run.corresponds(cProperty::makeDouble(run_parameter, 27.0, "vdd")));
    EXPECT_FALSE(run.corresponds(cProperty::makeInteger(run_parameter, 27, "temp"))) << "value kinds differ";
    EXPECT_EQ(cProperty::makeComplex(scale, 1, -2).getValueAsString(), "(1,-2)");
    EXPECT_TRUE(cProperty().isEmpty());
    EXPECT_EQ(cProperty::makeText(user_defined, "x", "Owner").getTypeAsString(), "Owner");
    EXPECT_EQ(cProperty::makeInteger(original_file_name, 0).getTypeAsString(), "Original File Name");
    EXPECT_EQ(cProperty::makeInteger(line_width_imaginary_part, 0).getTypeAsString(), "Line Width (Imaginary Part)");
    const cProperty unit = cProperty::makeTextWithUnit(temperature, "27", "C");
    EXPECT_TRUE(unit.isText());
    EXPECT_TRUE(unit.hasUnit());
    EXPECT_FALSE(unit.corresponds(cProperty::makeTextWithUnit(temperature, "27", "K")));
    EXPECT_STREQ(convertVcdVariableTypeToString(vcd_wreal), "wreal");
    EXPECT_STREQ(convertVcdVariableTypeToString(vcd_in), "in");
    EXPECT_STREQ(convertVcdVariableTypeToString(99), "");

    cCurvePlotProperties list;
    list.addProperty(cProperty::makeDouble(x_start, 1e-9));
    list.addProperty(cProperty::makeDouble(x_step, 2e-9));
    double start = 0, step = 0;
    ASSERT_TRUE(list.getXStartAndStep(start, step));
    EXPECT_EQ(start, 1e-9);
    EXPECT_EQ(step, 2e-9);
    list.setProperty(cProperty::makeDouble(x_step, 5.0));
    EXPECT_EQ(list.getNbOfProperties(), 2u) << "set replaces";

    cCurvePlotVariableComparison comparison;
    cCurvePlotVariableComparison::cResult result;
    result.value = 3.0;
    result.passed = true;
    comparison.copyToReal(result);
    comparison.copyRealToImag();
    EXPECT_EQ(comparison.imag().value, 3.0);
    comparison.clear();
    EXPECT_TRUE(std::isnan(comparison.real().value));
}

TEST(SectionProperties, OwnFieldsComeFirst)
{
    cCurvePlotDataFile store;
    cFileDbSupport& file = store.findDbSupport("/r/a.raw", fileDbSupport::nutmeg_binary_7);
    cCurvePlotDataSection* section = store.addDataSection("tran", &file);
    section->setAnalysisType(std::string("transient"));
    section->setStepIndex(2);
    section->addProperty(cProperty::makeDouble(temperature, 27));
    ASSERT_EQ(section->getNbOfSectionProperties(), 5u);
    cProperty property;
    ASSERT_TRUE(section->getSectionProperty(0, property));
    EXPECT_EQ(property.getType(), file_name);
    EXPECT_EQ(property.getText(), "/r/a.raw");
    ASSERT_TRUE(section->getSectionProperty(1, property));
    EXPECT_EQ(property.getText(), "tran");
    ASSERT_TRUE(section->getSectionProperty(2, property));
    EXPECT_EQ(property.getText(), "transient");
    ASSERT_TRUE(section->getSectionProperty(3, property));
    EXPECT_EQ(property.getType(), run_index);
    EXPECT_EQ(property.getInteger(), 2);
    ASSERT_TRUE(section->getSectionProperty(4, property));
    EXPECT_EQ(property.getType(), temperature);
    EXPECT_FALSE(section->getSectionProperty(5, property));

    const cCurvePlotDataType* state = store.addType("state", data_enum, curvePlotDataType::no_unit,
                                                    std::vector<std::string>{"idle", "run"});
    const uint64_t curve = section->addVariable(state, "fsm");
    cCurvePlotProperties extra;
    extra.addProperty(cProperty::makeText(instance, "x1"));
    section->addCurveProperties(curve, extra);
    ASSERT_EQ(section->getNbOfCurveProperties(curve), 5u);
    ASSERT_TRUE(section->getCurveProperty(curve, 0, property));
    EXPECT_EQ(property.getTypeAsString(), "Type");
    EXPECT_EQ(property.getText(), "state");
    ASSERT_TRUE(section->getCurveProperty(curve, 1, property));
    EXPECT_EQ(property.getTypeAsString(), "Type Name");
    ASSERT_TRUE(section->getCurveProperty(curve, 3, property));
    EXPECT_EQ(property.getTypeAsString(), "Enum Value");
    EXPECT_EQ(property.getText(), "run");
    ASSERT_TRUE(section->getCurveProperty(curve, 4, property));
    EXPECT_EQ(property.getText(), "x1");
    section->removeCurveProperties(curve);
    EXPECT_EQ(section->getNbOfCurveProperties(curve), 4u);
}

TEST(SectionProperties, ArtificialSweeps)
{
    cCurvePlotDataFile store;
    cCurvePlotDataSection* section = store.addDataSection("scope");
    const cCurvePlotDataType* time = store.addType("s", data_double, curvePlotDataType::second);
    EXPECT_EQ(section->updateOrCreateArtSweepVariable(time, "time", 1e-6, NAN, 1e-9, 1000), 0u);
    ASSERT_EQ(section->getNbOfSweepVariables(), 1u);
    EXPECT_EQ(section->getSweepVariableSize(0), 1000u);
    EXPECT_DOUBLE_EQ(section->getSweepValue(0, 10), 1e-6 + 10e-9);
    EXPECT_TRUE(std::isnan(section->getSweepValue(0, 1000)));
    double start = 0, step = 0;
    EXPECT_TRUE(section->getXStartAndStepOrDefault(0, start, step));
    EXPECT_EQ(step, 1e-9);
    section->setAnalysisTypeFromSweepVariable();
    EXPECT_EQ(section->getAnalysisType(), curvePlotDataSection::tran);

    cCurvePlotDataSection* plain = store.addDataSection("table");
    const uint64_t v = plain->addVariable(store.addType("V", data_double, curvePlotDataType::volt), "v");
    const double values[] = {1, 2, 3, 4, 5};
    plain->getVariable(v).setDoubleValues(values, 5);
    EXPECT_FALSE(plain->getXStartAndStepOrDefault(0, start, step));
    EXPECT_EQ(step, 1.0);
    plain->updateOrCreateArtSweepVariable(store);
    ASSERT_EQ(plain->getNbOfSweepVariables(), 1u);
    EXPECT_EQ(plain->getSweepVariable(0).name(), "x");
    EXPECT_EQ(plain->getSweepVariableSize(0), 5u);
    EXPECT_EQ(plain->getSweepValue(0, 4), 4.0);
}
