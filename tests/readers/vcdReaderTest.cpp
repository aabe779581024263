// Value change dumps written by hand for the corners of the format: codes, aliases, left
// extension, delta cycles, exact 64-bit times, ports, faults with their positions, reload, and
// the pieces read on several threads against one sequential read.
#include <gtest/gtest.h>

#include <random>

#include "model/cCurvePlotProperties.h"
#include "model/fileDbType.h"
#include "readerTestSupport.h"
#include "readers/scan/cBusErrorGuard.h"
#include "readers/vcd/cCurveParserVcd.h"
#include "vcdTestSupport.h"

using namespace vx3;
using namespace zwreaders;

namespace {

using cRecords = std::vector<std::pair<uint64_t, std::string>>;

const cCurvePlotVariable* curveOf(cCurvePlotDataSection& section, const std::string& name)
{
    const uint64_t index = section.findVariableIndex(name);
    return index == cCurvePlotDataSection::npos ? nullptr : &section.getVariable(index);
}

cRecords records(const cCurvePlotVariable* curve)
{
    cRecords result;
    if (!curve || !curve->uint64SparseIndices())
        return result;
    const uint64_t width = curve->getValueVectorWidth();
    for (uint64_t i = 0; i < curve->getValueCount(); ++i)
        result.emplace_back(curve->uint64SparseIndices()[i], std::string(curve->valueVectorData() + i * width, width));
    return result;
}

std::vector<uint64_t> timeAxis(cCurvePlotDataSection& section)
{
    const cCurvePlotSweepVariable& sweep = section.getSweepVariable(0);
    return std::vector<uint64_t>(sweep.uint64Values(), sweep.uint64Values() + sweep.getVectorSize());
}

std::string textProperty(const cCurvePlotDataSection& section, const std::string& name)
{
    const size_t index = section.findProperty(curvePlotProperties::user_defined, name);
    return index < section.getNbOfProperties() ? section.getProperty(index).getText() : std::string("(none)");
}

const char* kHeader = "$timescale 1ns $end\n$scope module top $end\n$var wire 1 ! a $end\n$var wire 8 \" bus [7:0] $end\n"
                      "$upscope $end\n$enddefinitions $end\n";

}  // namespace

TEST(VcdCodes, BaseNinetyFiveIndicesReadBack)
{
    EXPECT_EQ(cCurveParserVcdCodeArray::codeToVectorIndex("!"), 1u);
    EXPECT_EQ(cCurveParserVcdCodeArray::codeToVectorIndex("!!"), 1u + 95u);
    EXPECT_EQ(cCurveParserVcdCodeArray::codeToVectorIndex("~"), 94u);
    EXPECT_EQ(cCurveParserVcdCodeArray::codeToVectorIndex("\"!"), 2u + 95u);
    for (const char* code : {"!", "~", "!!", "a%", "~~~", "z!#Q"})
        EXPECT_EQ(cCurveParserVcdCodeArray::vectorIndexToCode(cCurveParserVcdCodeArray::codeToVectorIndex(code)), code);
    cCurveParserVcdCodeArray codes;
    uint32_t previous = 0, curve = 0;
    EXPECT_TRUE(codes.insertCode("#", 0, previous));
    EXPECT_TRUE(codes.insertCode("a_very_long_code", 1, previous));
    EXPECT_FALSE(codes.insertCode("#", 2, previous));
    EXPECT_EQ(previous, 0u);
    ASSERT_TRUE(codes.getVariableIndex("a_very_long_code", curve));
    EXPECT_EQ(curve, 1u);
    EXPECT_FALSE(codes.getVariableIndex("$", curve));
    EXPECT_FALSE(codes.getVariableIndex("a_very_long_cod", curve));
}

TEST(VcdReader, DeclarationsValuesAliasesAndLeftExtension)
{
    cTempDir dir;
    const std::string file = dir.write("hand.vcd",
                                       "$date\n  today\n$end\n$version hand $end\n$timescale 10 ns $end\n"
                                       "$scope module top $end\n$var wire 8 ! bus [7:0] $end\n$var reg 1 \" a $end\n"
                                       "$var wire 1 \" a_alias $end\n$scope task sub $end\n$var real 64 # r $end\n"
                                       "$var integer 4 $ n $end\n$var wire 1 long_code_name w $end\n$upscope $end\n"
                                       "$upscope $end\n$enddefinitions $end\n"
                                       "b101 !\n1\"\n#5\nbX !\nr2.5 #\nb1z $\n1long_code_name\n"
                                       "#7\nb0 !\nbz1 $\n0\"\nr-1e-3 #\n#12\n");
    cReading reading;
    ASSERT_EQ(reading.parse(file), ok) << reading.messages.text();
    cCurvePlotDataSection& section = *reading.section(0);
    EXPECT_EQ(textProperty(section, "Date"), "today");
    EXPECT_EQ(textProperty(section, "Version"), "hand");
    EXPECT_EQ(textProperty(section, "Time scale"), "10ns");
    // Values before the first time belong to time 0; the axis counts ticks of 10 ns.
    EXPECT_EQ(timeAxis(section), (std::vector<uint64_t>{0, 5, 7, 12}));
    EXPECT_DOUBLE_EQ(section.getSweepValue(0, 2), 7e-8);
    EXPECT_DOUBLE_EQ(section.getTimeScaleFactor(), 1e-8);

    const cRecords bus = records(curveOf(section, "top.bus[7:0]"));
    EXPECT_EQ(bus, (cRecords{{0, "00000101"}, {5, "xxxxxxxx"}, {7, "00000000"}, {12, "00000000"}}));
    // Two variables of one code receive the same values.
    EXPECT_EQ(records(curveOf(section, "top.a")), (cRecords{{0, "1"}, {7, "0"}, {12, "0"}}));
    EXPECT_EQ(records(curveOf(section, "top.a_alias")), records(curveOf(section, "top.a")));
    // "1z" fills with 0 on the left, "z1" with z.
    EXPECT_EQ(records(curveOf(section, "top.sub.n")), (cRecords{{5, "001z"}, {7, "zzz1"}, {12, "zzz1"}}));
    EXPECT_EQ(records(curveOf(section, "top.sub.w")), (cRecords{{5, "1"}, {12, "1"}}));

    // A real keeps its own x in seconds, and its last value to the end.
    const cCurvePlotVariable* real = curveOf(section, "top.sub.r");
    ASSERT_TRUE(real);
    curvePlotFunctionArgs::cDataVectors vectors;
    ASSERT_TRUE(real->computeDataVectors(section, vectors));
    ASSERT_EQ(vectors.count, 3u);
    EXPECT_DOUBLE_EQ(vectors.xDouble[0], 5e-8);
    EXPECT_DOUBLE_EQ(vectors.xDouble[2], 1.2e-7);
    EXPECT_EQ(vectors.yDouble[0], 2.5);
    EXPECT_EQ(vectors.yDouble[1], -1e-3);
    EXPECT_EQ(vectors.yDouble[2], -1e-3);

    std::string state;
    const cCurvePlotVariable* busCurve = curveOf(section, "top.bus[7:0]");
    ASSERT_TRUE(busCurve->getDigitalCurveValue(section, 6e-8, state, derivedCurveFunction::binary));
    EXPECT_EQ(state, "xxxxxxxx");
    ASSERT_TRUE(busCurve->getDigitalCurveValue(section, 1e-6, state, derivedCurveFunction::binary));
    EXPECT_EQ(state, "00000000");
    EXPECT_FALSE(curveOf(section, "top.sub.n")->getDigitalCurveValue(section, 1e-8, state));

    // The variable's kind and bits, and the scopes as instances.
    const uint64_t busIndex = section.findVariableIndex("top.bus[7:0]");
    const cCurvePlotProperties* properties = section.getCurveProperties(busIndex);
    ASSERT_TRUE(properties);
    using namespace curvePlotProperties;
    EXPECT_EQ(properties->getProperty(properties->findProperty(variable_type)).getInteger(), vcd_wire);
    EXPECT_EQ(properties->getProperty(properties->findProperty(left_bit_number)).getInteger(), 7);
    EXPECT_EQ(properties->getProperty(properties->findProperty(right_bit_number)).getInteger(), 0);
    const cCurvePlotDataCurveHierarchy& root = section.getCurveHierarchy();
    ASSERT_EQ(root.getChildren().size(), 1u);
    const cCurvePlotDataCurveHierarchy& top = root.getChildren()[0];
    EXPECT_EQ(top.getFullName(), "top");
    EXPECT_EQ(top.getNumberOfCurves(false), 3u);
    ASSERT_EQ(top.getChildren().size(), 1u);
    EXPECT_EQ(top.getChildren()[0].getFullName(), "top.sub");
    EXPECT_EQ(top.getChildren()[0].getSubcircuitName(), "task");
    EXPECT_EQ(top.getChildren()[0].getNumberOfCurves(false), 3u);
}

TEST(VcdReader, DeltaCyclesAndTimesBeyondDoublePrecision)
{
    cTempDir dir;
    // 2^53 + 1 has no double of its own: the axis and the changes keep it exactly.
    const std::string file = dir.write("delta.vcd",
                                       "$timescale 1fs $end\n$var wire 1 ! a $end\n$enddefinitions $end\n"
                                       "#9007199254740993\n1!\n#9007199254740993+1\n0!\n#9007199254740993+1\n"
                                       "#9007199254740995\n1!\n");
    cReading reading;
    ASSERT_EQ(reading.parse(file), ok) << reading.messages.text();
    cCurvePlotDataSection& section = *reading.section(0);
    // "+1" after the plain time is a new step; the last delta cycle gets a closing step.
    EXPECT_EQ(timeAxis(section),
              (std::vector<uint64_t>{9007199254740993ull, 9007199254740993ull, 9007199254740995ull, 9007199254740995ull}));
    EXPECT_EQ(records(curveOf(section, "a")),
              (cRecords{{9007199254740993ull, "1"}, {9007199254740993ull, "0"}, {9007199254740995ull, "1"}}));
    EXPECT_EQ(section.getSweepVariable(0).getDataType(), curvePlotProperties::uint_64);

    // A plain time after its own delta cycle falls back: a fault at the position of that "#".
    const std::string text = std::string("$var wire 1 ! a $end\n$enddefinitions $end\n#100\n1!\n#100+1\n0!\n");
    const std::string back = dir.write("back.vcd", text + "#100\n1!\n");
    cReading again;
    EXPECT_EQ(again.parse(back), partly_parsed);
    EXPECT_TRUE(again.messages.contains("Vcd parser, file position " + std::to_string(text.size()) +
                                        " : the time must be increasing."))
        << again.messages.text();
    EXPECT_EQ(records(curveOf(*again.section(0), "a")), (cRecords{{100, "1"}, {100, "0"}}));
}

TEST(VcdReader, FaultsKeepTheCompleteStepsAndNameTheirPosition)
{
    cTempDir dir;
    struct cCase {
        const char* name;
        std::string values;
        returnCode code;
        const char* message;
    };
    const cCase cases[] = {
        {"dumpoff", "#0\n1!\n#3\n$dumpoff\nx!\n$end\n#5\n$dumpoff\n", partly_parsed, "invalid $dumpoff directive."},
        {"dumpon", "#0\n1!\n#5\n$dumpon\n", partly_parsed, "invalid $dumpon directive."},
        {"undefined", "#0\n1!\n#5\n0%\n", partly_parsed, "failed to read data, the code \"%\" has not been defined."},
        {"vector", "#0\n1!\n#5\nb102 \"\n", partly_parsed, "unknown value in bus variable."},
        {"empty", "#0\n1!\n#5\nb \"\n", partly_parsed, "empty bus variable."},
        {"cut", "#0\n1!\n#5\n0!\n#10\nb10", partly_parsed, "failed to parse variable code."},
        {"garbage", "#0\n1!\n#5\n\x01\x02\xff\xfe garbage", partly_parsed, "invalid entry."},
        {"first", "#0\n1!\nq!\n#5\n0!\n", file_format_recognized, "invalid entry."},
        {"time", "#0\n1!\n#5x\n", file_format_recognized, "invalid #time directive."},
        {"keyword", "#0\n1!\n#5\n$scope module late $end\n", partly_parsed, "invalid keyword."},
    };
    for (const cCase& c : cases) {
        const std::string file = dir.write(std::string(c.name) + ".vcd", kHeader + c.values);
        cReading reading;
        EXPECT_EQ(reading.parse(file), c.code) << c.name << "\n" << reading.messages.text();
        EXPECT_TRUE(reading.messages.contains(c.message)) << c.name << "\n" << reading.messages.text();
        EXPECT_TRUE(reading.messages.contains("Vcd parser, file position ")) << c.name;
        if (c.code == partly_parsed) {
            // The steps before the faulty one are there, with the values read up to the fault.
            cCurvePlotDataSection& section = *reading.section(0);
            const std::vector<uint64_t> axis = timeAxis(section);
            ASSERT_GE(axis.size(), 2u) << c.name;
            EXPECT_EQ(axis[0], 0u);
            EXPECT_EQ(records(curveOf(section, "top.a")).front(), (std::pair<uint64_t, std::string>{0, "1"})) << c.name;
        } else {
            EXPECT_EQ(reading.store.getNbOfDataSections(), 0u) << c.name;
        }
    }

    // Faults in the declarations refuse the file.
    const std::pair<std::string, const char*> headers[] = {
        {"$var wobble 1 ! a $end\n$enddefinitions $end\n", "unknown $var type \"wobble\"."},
        {"$timescale 3 parsecs $end\n$enddefinitions $end\n", "invalid $timescale directive."},
        {"$scope module top $end\n$var wire 1 ! a $end\n", "unknown entry \"#0\"."},
        {"$var wire 1 ! a [0 $end\n$enddefinitions $end\n", "invalid $var directive, lower and upper bit numbers are bad (var_name = \"a\")."},
        {"$var wire x ! a $end\n$enddefinitions $end\n", "invalid $var directive, variable size is bad (var type =\"wire\")."},
        {"$var wire 1 ! $end\n$enddefinitions $end\n", "invalid $var directive, variable name is bad (var type =\"wire\", var_size = 1, var_id_code = !)."},
        {"$scope module top\n$var wire 1 ! a $end\n", "$end missing after $scope directive (scope type = \"module\", scope name = \"top\")."},
        {"$enddefinitions\n#0\n", "bad $enddefinitions statement."},
        {"junk here\n", "unknown entry \"junk\"."},
    };
    for (const auto& [header, message] : headers) {
        const std::string file = dir.write("header.vcd", header + "#0\n");
        cReading reading;
        EXPECT_NE(reading.parse(file, curvePlotParser::vcd), ok) << header;
        EXPECT_TRUE(reading.messages.contains(message)) << header << "\n" << reading.messages.text();
        EXPECT_EQ(reading.store.getNbOfDataSections(), 0u);
    }

    // A header cut short.
    cReading cut;
    EXPECT_EQ(cut.parse(dir.write("cut.vcd", "$scope module top $end\n$var wire 1 ! a $e"), curvePlotParser::vcd),
              file_format_recognized);
    EXPECT_TRUE(cut.messages.contains("$end missing after $var directive (var_name = \"a\").")) << cut.messages.text();
    cReading noEnd;
    EXPECT_EQ(noEnd.parse(dir.write("noend.vcd", "$scope module top $end\n$var wire 1 ! a $end\n"), curvePlotParser::vcd),
              file_format_recognized);
    EXPECT_TRUE(noEnd.messages.contains("$enddefinitions missing")) << noEnd.messages.text();

    // A width that disagrees with the range is reported, and the variable stays with its values.
    const std::string mismatch = dir.write("mismatch.vcd", "$var wire 4 ! a [7:0] $end\n$enddefinitions $end\n#0\nb1 !\n");
    cReading reading;
    EXPECT_EQ(reading.parse(mismatch), ok);
    EXPECT_TRUE(reading.messages.contains("The variable size does not correspond in $var directive (var_name = \"a\", "
                                          "lower_bit_number = 7, upper_bit_number = 0, port_size = 4)."))
        << reading.messages.text();
    EXPECT_EQ(records(curveOf(*reading.section(0), "a[7:0]")), (cRecords{{0, "0001"}}));

    // Nothing to read, or no file at all.
    cReading empty;
    EXPECT_NE(empty.parse(dir.write("empty.vcd", "")), ok);
    EXPECT_TRUE(empty.messages.contains("is empty"));
    cReading folder;
    EXPECT_NE(folder.parse(dir.path(), curvePlotParser::vcd), ok);
}

TEST(VcdReader, WiderValuesKeepTheirRightBitsAndPortsTheirStates)
{
    cTempDir dir;
    const std::string file =
        dir.write("ports.vcd", "$timescale 1ns $end\n$scope module top $end\n$var port [3:0] <0 bus $end\n"
                               "$var port 1 <1 en $end\n$var reg 4 ! r [3:0] $end\n$upscope $end\n$enddefinitions $end\n"
                               "#0\n$dumpports\npDDUU 6 6 <0\npN 0 6 <1\n$end\nb111100001 !\n#10\npHLHL 6 6 <0\n#20\n"
                               "pDU 6 6 <0\n");
    cReading reading;
    EXPECT_EQ(reading.parse(file), partly_parsed);
    EXPECT_TRUE(reading.messages.contains("bad value vector size for port variable.")) << reading.messages.text();
    cCurvePlotDataSection& section = *reading.section(0);
    EXPECT_EQ(records(curveOf(section, "top.bus")), (cRecords{{0, "DDUU"}, {10, "HLHL"}, {20, "HLHL"}}));
    EXPECT_EQ(records(curveOf(section, "top.en")), (cRecords{{0, "N"}, {20, "N"}}));
    EXPECT_EQ(records(curveOf(section, "top.r[3:0]")), (cRecords{{0, "0001"}, {20, "0001"}}));
}

TEST(VcdReader, ReloadKeepsTheSectionAndShowsTheNewSteps)
{
    cTempDir dir;
    const std::string file = dir.write("grow.vcd", std::string(kHeader) + "#0\n1!\nb1 \"\n#5\n0!\n");
    cReading reading;
    ASSERT_EQ(reading.parse(file), ok);
    const uint64_t id = reading.section(0)->getSectionId();
    const uint64_t busIndex = reading.section(0)->findVariableIndex("top.bus[7:0]");
    dir.append("grow.vcd", "#9\nb11 \"\n#12\n1!\n");
    ASSERT_EQ(reading.parser.reloadFile(reading.store, file, ""), ok) << reading.messages.text();
    ASSERT_EQ(reading.store.getNbOfDataSections(), 1u);
    cCurvePlotDataSection& section = *reading.section(0);
    EXPECT_EQ(section.getSectionId(), id);
    EXPECT_EQ(section.findVariableIndex("top.bus[7:0]"), busIndex);
    EXPECT_EQ(timeAxis(section), (std::vector<uint64_t>{0, 5, 9, 12}));
    EXPECT_EQ(records(&section.getVariable(busIndex)), (cRecords{{0, "00000001"}, {9, "00000011"}, {12, "00000011"}}));
    EXPECT_EQ(records(curveOf(section, "top.a")), (cRecords{{0, "1"}, {5, "0"}, {12, "1"}}));
}

TEST(VcdReader, PiecesOnThreadsGiveWhatOneSequentialReadGives)
{
    // A dump of a few megabytes with many seams between pieces; variants put a $dumpoff across
    // seams and a fault late in the file.
    std::mt19937_64 random(7);
    std::string declarations = "$timescale 1ps $end\n$scope module top $end\n";
    const unsigned signals = 300;
    for (unsigned i = 0; i < signals; ++i) {
        const std::string code = std::string(1, static_cast<char>('!' + i % 90)) + static_cast<char>('!' + i / 90);
        declarations += i % 10 == 9   ? "$var real 64 " + code + " r" + std::to_string(i) + " $end\n"
                        : i % 10 == 8 ? "$var reg 12 " + code + " b" + std::to_string(i) + " [11:0] $end\n"
                                      : "$var wire 1 " + code + " s" + std::to_string(i) + " $end\n";
    }
    declarations += "$upscope $end\n$enddefinitions $end\n";
    std::string values, switched;
    uint64_t time = 0;
    bool off = false;
    for (unsigned step = 0; values.size() < (3u << 20); ++step) {
        time += 1 + random() % 50;
        values += "#" + std::to_string(time) + (step % 7 == 3 ? "+1" : "") + "\n";
        if (step == 30000)
            switched = values;
        if (step % 5000 == 4000 && !switched.empty()) {
            values += off ? "$dumpon\n" : "$dumpoff\n";
            off = !off;
        }
        for (unsigned c = 0, n = 1 + random() % 12; c < n; ++c) {
            const unsigned i = random() % signals;
            const std::string code = std::string(1, static_cast<char>('!' + i % 90)) + static_cast<char>('!' + i / 90);
            if (i % 10 == 9)
                values += "r" + std::to_string(static_cast<double>(random() % 1000) / 8) + " " + code + "\n";
            else if (i % 10 == 8)
                values += "b" + std::to_string(random() % 2) + "x" + std::to_string(random() % 2) + " " + code + "\n";
            else
                values += std::string(1, "01xz"[random() % 4]) + code + "\n";
        }
    }
    cTempDir dir;
    // Without dump switches the pieces fit together; the other variants may need the sequential pass.
    const std::string variants[] = {declarations + switched, declarations + values,
                                    declarations + values + "#1\n1!!\n"};
    for (const std::string& text : variants) {
        const std::string file = dir.write("pieces.vcd", text);
        // One sequential read; pieces on threads; pieces with the values left in the file and
        // every curve loaded afterwards from the pieces that hold its records.
        cCurvePlotDataFile stores[3];
        cCurvePlotParser options[3];
        returnCode codes[3];
        uint64_t pieces[3];
        for (int k = 0; k < 3; ++k) {
            cCurveParserVcd reader(stores[k], options[k]);
            reader.setMaxThreads(k == 0 ? 1 : 4);
            reader.setMinPieceSize(k == 0 ? (1u << 30) : (64u << 10));
            reader.setMinimumSizeForDbAccess(k == 2 ? 1 : 0);
            codes[k] = reader.parseFile(file);
            pieces[k] = reader.getNbOfPiecesRead();
        }
        EXPECT_EQ(codes[0], codes[1]);
        EXPECT_EQ(codes[0], codes[2]);
        EXPECT_EQ(pieces[0], 1u);
        if (&text == &variants[0]) {
            EXPECT_EQ(pieces[1], 4u);
        }
        ASSERT_EQ(stores[0].getNbOfDataSections(), 1u);
        cCurvePlotDataSection& one = *stores[0].getDataSectionFromIndex(0);
        cCurvePlotDataSection& lazy = *stores[2].getDataSectionFromIndex(0);
        EXPECT_EQ(lazy.getFile()->getDbType(), fileDbSupport::vcd_65);
        cVxLogger logger;
        uint64_t loaded = 0;
        for (uint64_t c = 0; c < lazy.getNbOfVariables(); ++c) {
            cCurvePlotVariable& curve = lazy.getVariable(c);
            EXPECT_FALSE(curve.checkHasStorage() && curve.getValueCount() > 0) << curve.name();
            ASSERT_EQ(curve.getDbSize(), one.getVariable(c).getValueCount()) << curve.name();
            // Every third curve: each load scans the pieces that hold it.
            if (curve.getDbSize() && c % 3 == 0) {
                ASSERT_EQ(curve.loadDataFromDb(logger, &lazy, c), ok) << curve.name();
                ++loaded;
            }
        }
        EXPECT_GT(loaded, 80u);
        // A curve read at once can be released and loaded again from the file.
        cCurvePlotVariable& released = one.getVariable(7);
        const cRecords before = records(&released);
        ASSERT_FALSE(before.empty());
        ASSERT_TRUE(released.releaseDb());
        EXPECT_FALSE(released.checkHasStorage());
        ASSERT_EQ(released.loadDataFromDb(logger, &one, 7), ok);
        EXPECT_EQ(records(&released), before);
        for (cCurvePlotDataSection* other : {stores[1].getDataSectionFromIndex(0), &lazy}) {
        cCurvePlotDataSection& many = *other;
        EXPECT_GT(timeAxis(one).size(), 20000u);
        EXPECT_EQ(timeAxis(one), timeAxis(many));
        ASSERT_EQ(one.getNbOfVariables(), many.getNbOfVariables());
        for (uint64_t c = 0; c < one.getNbOfVariables(); ++c) {
            const cCurvePlotVariable& a = one.getVariable(c);
            const cCurvePlotVariable& b = many.getVariable(c);
            if (&many == &lazy && c % 3 != 0)
                continue;
            ASSERT_EQ(a.getValueCount(), b.getValueCount()) << a.name();
            if (a.uint64SparseIndices()) {
                EXPECT_EQ(records(&a), records(&b)) << a.name();
            } else {
                curvePlotFunctionArgs::cDataVectors va, vb;
                ASSERT_TRUE(a.computeDataVectors(one, va) && b.computeDataVectors(many, vb));
                for (uint64_t i = 0; i < va.count; ++i)
                    ASSERT_TRUE(va.xDouble[i] == vb.xDouble[i] && va.yDouble[i] == vb.yDouble[i]) << a.name() << " " << i;
            }
        }
        }
    }
}

TEST(VcdReader, ValuesLeftInAFileThatIsCutFailToLoadWithoutACrash)
{
    // A dump whose curves stay in the file; after one load the file is cut under its mapping,
    // and the next load meets the missing pages.
    std::string text = std::string(kHeader);
    appendVcdChanges(text, (6u << 20));
    cTempDir dir;
    const std::string file = dir.write("cut.vcd", text);
    cCurvePlotDataFile store;
    cCurvePlotParser options;
    cRecordingLogger messages;
    options.logger().setLoggerCallBack(&messages);
    ASSERT_NO_FATAL_FAILURE(parseVcdKeepingValuesInFile(store, options, file));
    cCurvePlotDataSection& section = *store.getDataSectionFromIndex(0);
    cCurvePlotVariable& a = section.getVariable(section.findVariableIndex("top.a"));
    cCurvePlotVariable& bus = section.getVariable(section.findVariableIndex("top.bus[7:0]"));
    ASSERT_EQ(a.loadDataFromDb(options.logger(), &section, 0), ok);
    EXPECT_EQ(a.getValueCount(), a.getDbSize());
    ASSERT_EQ(::truncate(file.c_str(), 1 << 20), 0);
    const unsigned long caught = busErrorGuard::getCaughtCount();
    EXPECT_EQ(bus.loadDataFromDb(options.logger(), &section, 1), failed);
    EXPECT_GT(busErrorGuard::getCaughtCount(), caught);
    EXPECT_FALSE(bus.checkHasStorage());
    EXPECT_TRUE(messages.contains("loadDataFromDb failed for curve top.bus[7:0]")) << messages.text();
    // The curve loaded before keeps its values.
    EXPECT_EQ(a.getValueCount(), a.getDbSize());
    options.logger().setLoggerCallBack(nullptr);
}

TEST(VcdReader, AReloadWithValuesLeftInTheFileBringsBackTheCurvesInUse)
{
    cTempDir dir;
    const std::string file = dir.write("lazy.vcd", std::string(kHeader) + "#0\n1!\nb1 \"\n#5\n0!\n");
    cCurvePlotDataFile store;
    cCurvePlotParser options;
    ASSERT_NO_FATAL_FAILURE(parseVcdKeepingValuesInFile(store, options, file));
    cCurvePlotDataSection& section = *store.getDataSectionFromIndex(0);
    const uint64_t busIndex = section.findVariableIndex("top.bus[7:0]");
    cCurvePlotVariable& bus = section.getVariable(busIndex);
    ASSERT_EQ(bus.loadDataFromDb(options.logger(), &section, busIndex), ok);
    bus.incrementReferenceCount();  // a plot shows it
    section.getSweepVariable(0).incrementReferenceCount();
    dir.append("lazy.vcd", "#9\nb11 \"\n#12\n1!\n");
    {
        cCurveParserVcd reader(store, options);
        reader.setMinimumSizeForDbAccess(1);
        ASSERT_EQ(reader.reloadFile(file, {&section}), ok);
    }
    ASSERT_EQ(store.getNbOfDataSections(), 1u);
    EXPECT_EQ(timeAxis(section), (std::vector<uint64_t>{0, 5, 9, 12}));
    EXPECT_EQ(records(&bus), (cRecords{{0, "00000001"}, {9, "00000011"}, {12, "00000011"}}));
    // The curve nobody holds waits in the file.
    const cCurvePlotVariable& a = *curveOf(section, "top.a");
    EXPECT_FALSE(a.checkHasStorage() && a.getValueCount() > 0);
    EXPECT_EQ(a.getDbSize(), 3u);
}
