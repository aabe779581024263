// Inputs that fuzzing found to crash or to exhaust memory, kept under tests/fuzz_inputs and read
// here as the fuzz harnesses read them. Each folder is walked whole, so a new input only needs
// to be dropped in; the checks below pin what each known input must give.
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "readerTestSupport.h"
#include "readers/scan/cParserBase.h"

using namespace vx3;
using namespace zwreaders;

namespace {

std::string inputFolder(const std::string& harness) { return std::string(ZW_SOURCE_DIR) + "/tests/fuzz_inputs/" + harness; }

std::vector<std::string> inputsOf(const std::string& harness)
{
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(inputFolder(harness)))
        if (entry.is_regular_file())
            files.push_back(entry.path().string());
    return files;
}

std::string readAll(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// Every curve loaded and read, as the harness does.
void loadEveryCurve(cReading& reading)
{
    for (uint64_t s = 0; s < reading.store.getNbOfDataSections(); ++s) {
        cCurvePlotDataSection* section = reading.section(s);
        for (uint64_t v = 0; v < section->getNbOfVariables(); ++v) {
            cCurvePlotVariable& variable = section->getVariable(v);
            if (variable.loadDataFromDb(reading.parser.logger(), section, v) != ok)
                continue;
            double value = 0;
            for (uint64_t i = 0; i < variable.getValueCount(); ++i)
                variable.findCorresponingValue(*section, i, value);
        }
    }
}

}  // namespace

TEST(FuzzRegression, NumbersWithExponentsBeyondALongGiveInfinityOrZero)
{
    using parser = cParserBase<cParserBaseStringIterator>;
    for (const std::string& file : inputsOf("numbers")) {
        const std::string text = readAll(file);
        cParserBaseStringIteratorHandler handler;
        handler.useStringData(text);
        for (auto at = handler.begin(); at != handler.end(); ++at) {
            auto begin = at;
            double value = 0;
            parser::parseDoubleWithUnits(begin, handler.end(), value, true, true, nullptr, true);
        }
    }
    // The exponent is out of a long's range; with a suffix it used to wrap to a tiny power.
    cParserBaseStringIteratorHandler handler;
    const std::string huge = "-2.5e99999999999999999999999999999999999999999k 1.5e-99999999999999999999999999u";
    handler.useStringData(huge);
    auto begin = handler.begin();
    double value = 0;
    ASSERT_TRUE(parser::parseDoubleWithUnits(begin, handler.end(), value));
    EXPECT_EQ(value, -INFINITY);
    parser::skipWhiteSpace(begin, handler.end());
    ASSERT_TRUE(parser::parseDoubleWithUnits(begin, handler.end(), value));
    EXPECT_EQ(value, 0.0);
}

TEST(FuzzRegression, TecPlotZonesLargerThanTheFileReadWhatIsThere)
{
    for (const std::string& file : inputsOf("tecplot")) {
        cReading reading;
        reading.parser.setForcedParserType(curvePlotParser::tecplot);
        const returnCode code = reading.parse(file);
        EXPECT_TRUE(code == ok || code == partly_parsed || code == file_format_recognized) << file << " " << code;
        loadEveryCurve(reading);
    }
    // A zone of four trillion points holding two: the two rows, and a warning instead of
    // four trillion rows padded with NaN.
    cReading reading;
    ASSERT_EQ(reading.parse(inputFolder("tecplot") + "/zone_larger_than_file.dat"), partly_parsed)
        << reading.messages.text();
    EXPECT_EQ(reading.values(0, "y"), (std::vector<double>{1, 3}));
    EXPECT_EQ(reading.values(0, ""), (std::vector<double>{0, 2}));
    EXPECT_TRUE(reading.messages.contains("declares more points than the file holds")) << reading.messages.text();

    cReading overflow;  // I * J * K wraps around 2^64
    ASSERT_EQ(overflow.parse(inputFolder("tecplot") + "/zone_size_overflows.dat"), partly_parsed)
        << overflow.messages.text();
    EXPECT_EQ(overflow.values(0, "z"), (std::vector<double>{2}));
}
