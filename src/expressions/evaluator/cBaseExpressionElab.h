// The elaboration layer of the evaluator: polynomial and interpolation functions turned into
// tables that are prepared once and then only evaluated, so that a curve of a million samples
// read through "interpolate_spline(xs, ys, x)" solves its spline once, not once per sample, and a
// formula used again with the same points finds its table ready.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/cVxLogger.h"
#include "expressions/baseExpression.h"
#include "expressions/cInterpolationTable.h"

namespace vx3 {

template <class T>
class cBaseExpressionElab : public cVxLogger {
public:
    using op_type = baseExpression::op_type;

    // The table of function op over the two vectors, prepared on first use; null with the reason
    // in error.
    const cInterpolationTable* prepareInterpolation(op_type op, const std::vector<double>& first,
                                                    const std::vector<double>& second, std::string& error)
    {
        interpolationTable::kind kind;
        if (!interpolationTable::getKindOfFunction(op, kind)) {
            error = "No interpolation.";
            return nullptr;
        }
        std::string key(1, static_cast<char>(kind));
        key.append(reinterpret_cast<const char*>(first.data()), first.size() * sizeof(double));
        key.push_back('|');
        key.append(reinterpret_cast<const char*>(second.data()), second.size() * sizeof(double));
        const auto found = mTables.find(key);
        if (found != mTables.end())
            return found->second.get();
        auto table = std::make_shared<cInterpolationTable>();
        if (!table->prepare(kind, first, second, error))
            return nullptr;
        // A bounded cache: formulas with ever new points don't grow it without end.
        if (mTables.size() >= kMaximumTables)
            mTables.clear();
        return mTables.emplace(std::move(key), std::move(table)).first->second.get();
    }
    void clearElaborations() { mTables.clear(); }

private:
    static constexpr size_t kMaximumTables = 64;
    std::map<std::string, std::shared_ptr<cInterpolationTable>> mTables;
};

}  // namespace vx3
