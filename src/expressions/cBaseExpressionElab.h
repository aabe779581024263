// The elaboration layer of the evaluator: polynomial and interpolation functions turned into
// tables that are prepared once and then only evaluated, so that a curve of a million samples
// read through "interpolate_spline(xs, ys, x)" solves its spline once, not once per sample.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/cVxLogger.h"
#include "expressions/baseExpression.h"

namespace vx3 {

template <class T>
class cBaseExpressionElab : public cVxLogger {
public:
    using op_type = baseExpression::op_type;

    void clearElaborations() { mTables.clear(); }

protected:
    // Prepared tables by the text of their points and kind.
    std::map<std::string, std::shared_ptr<void>> mTables;
};

}  // namespace vx3
