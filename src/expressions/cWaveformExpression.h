// The expression tree node of the waveform calculator: the tree type with its constructors.
#pragma once

#include <string>

#include "expressions/cBaseExpression.h"

namespace vx3 {

class cWaveformExpression : public cBaseExpression<cWaveformExpression> {
public:
    using op_type = baseExpression::op_type;

    cWaveformExpression() = default;
    cWaveformExpression(const cWaveformExpression&) = default;
    cWaveformExpression(cWaveformExpression&&) noexcept = default;
    cWaveformExpression& operator=(const cWaveformExpression&) = default;
    cWaveformExpression& operator=(cWaveformExpression&&) noexcept = default;
    ~cWaveformExpression() = default;

    // A real number.
    explicit cWaveformExpression(double value);
    // A complex number.
    cWaveformExpression(double real, double imaginary);
    explicit cWaveformExpression(baseExpression::double_complex value);
    explicit cWaveformExpression(baseExpression::float_complex value);
    // A name, still to be resolved.
    explicit cWaveformExpression(const std::string& name);
    // A node of the given kind without content.
    explicit cWaveformExpression(op_type kind);
    // An operator with its operands.
    cWaveformExpression(op_type kind, cWaveformExpression operand);
    cWaveformExpression(op_type kind, cWaveformExpression first, cWaveformExpression second);
};

}  // namespace vx3
