// Helpers of the tests of value change dumps: a dump grown to a size, and a dump parsed so that
// its values stay in the file until they are used.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "readerTestSupport.h"
#include "readers/vcd/cCurveParserVcd.h"

namespace zwreaders {

// Appends changes of "!" (a bit that toggles) and "\"" (a bus between 01 and 11), 10 time units
// apart, until the text holds at least size bytes.
inline void appendVcdChanges(std::string& text, size_t size)
{
    for (unsigned step = 0; text.size() < size; ++step)
        text += "#" + std::to_string(step * 10) + "\n" + (step % 2 ? "1!\n" : "0!\n") + "b" +
                std::to_string(step % 2) + "1 \"\n";
}

// Parses file into store with its values left in the file; call under ASSERT_NO_FATAL_FAILURE.
inline void parseVcdKeepingValuesInFile(vx3::cCurvePlotDataFile& store, vx3::cCurvePlotParser& options,
                                        const std::string& file)
{
    vx3::cCurveParserVcd reader(store, options);
    reader.setMinimumSizeForDbAccess(1);
    ASSERT_EQ(reader.parseFile(file), vx3::ok);
}

}  // namespace zwreaders
