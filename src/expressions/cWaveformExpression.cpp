#include "expressions/cWaveformExpression.h"

#include <charconv>

namespace vx3 {

namespace baseExpression {
void appendNumber(std::string& text, double value, bool whole)
{
    if (std::isnan(value)) {
        text += "undef";
        return;
    }
    if (std::isinf(value)) {
        text += value < 0 ? "-inf" : "inf";
        return;
    }
    char buffer[64];
    std::to_chars_result result{};
    if (whole && std::fabs(value) < 9e18 && value == std::trunc(value))
        result = std::to_chars(buffer, buffer + sizeof buffer, static_cast<long long>(value));
    else
        result = std::to_chars(buffer, buffer + sizeof buffer, value);
    text.append(buffer, result.ptr);
}
}  // namespace baseExpression

cWaveformExpression::cWaveformExpression(double value) : cBaseExpression(baseExpression::op_real)
{
    mDoubles.push_back(value);
}

cWaveformExpression::cWaveformExpression(double real, double imaginary) : cBaseExpression(baseExpression::op_complex)
{
    mDoubles = {real, imaginary};
}

cWaveformExpression::cWaveformExpression(baseExpression::double_complex value)
    : cWaveformExpression(value.real(), value.imag())
{
}

cWaveformExpression::cWaveformExpression(baseExpression::float_complex value)
    : cWaveformExpression(static_cast<double>(value.real()), static_cast<double>(value.imag()))
{
}

cWaveformExpression::cWaveformExpression(const std::string& name) : cBaseExpression(baseExpression::op_name)
{
    mStrings.push_back(name);
}

cWaveformExpression::cWaveformExpression(op_type kind) : cBaseExpression(kind) {}

cWaveformExpression::cWaveformExpression(op_type kind, cWaveformExpression operand) : cBaseExpression(kind)
{
    mOperands.push_back(std::move(operand));
}

cWaveformExpression::cWaveformExpression(op_type kind, cWaveformExpression first, cWaveformExpression second)
    : cBaseExpression(kind)
{
    mOperands.reserve(2);
    mOperands.push_back(std::move(first));
    mOperands.push_back(std::move(second));
}

}  // namespace vx3
