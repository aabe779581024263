// The readers that the dispatch knows, and the one place where a reader type becomes a reader
// object (parse, detection and reload all go through it). Included by the dispatch's sources only.
#pragma once

#include "readers/cCurvePlotParser.h"
#include "readers/cCurvePlotParserStandIns.h"
#include "readers/html/cCurvePlotParserHtmlData.h"
#include "readers/nutmeg/cCurvePlotParserNutmeg.h"
#include "readers/tabulated/cCurvePlotParserTabulatedData.h"
#include "readers/tabulated/cCurvePlotTabulatedParserFast.h"
#include "readers/tecplot/cCurvePlotParserTecPlotAscii.h"
#include "readers/vcd/cCurveParserVcd.h"

namespace vx3 {

// fn gets the reader of the type to run; a type without a reader answers "try the next one".
template <class Fn>
inline returnCode cCurvePlotParser::withReader(unsigned type, cCurvePlotDataFile& store, Fn&& fn)
{
    using namespace curvePlotParser;
    switch (type) {
    case nutmeg: {
        cCurvePlotParserNutmeg reader(store, *this);
        return fn(reader);
    }
    case tabulated_fast: {
        cCurvePlotTabulatedParserFast reader(store, *this);
        return fn(reader);
    }
    case tabulated_slow: {
        cCurvePlotParserTabulatedData reader(store, *this);
        return fn(reader);
    }
    case html: {
        cCurvePlotParserHtmlData reader(store, *this);
        return fn(reader);
    }
    case vcd: {
        cCurveParserVcd reader(store, *this);
        return fn(reader);
    }
    case pwf: {
        cCurvePlotParserPWF reader(store, *this);
        return fn(reader);
    }
    case tecplot: {
        cCurvePlotParserTecPlotAscii reader(store, *this);
        return fn(reader);
    }
    default:
        return failed;  // no reader of this type yet: the chain goes on
    }
}

}  // namespace vx3
