// The body of the expression parser, written once over the scanner's iterator type and the tree
// type. Every parse function takes the moving iterator and the end, answers a bool, and leaves
// the iterator where it was when it answers false.
//
// Binary operators are read left to right into a list and folded from the right (see
// cExpressionFrontInserter), so a long operator chain costs no stack. Brackets, indices and the
// prefix operators recurse; their nesting is limited to kMaximumNesting levels.
#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "expressions/baseExpression.h"
#include "expressions/cExpressionFrontInserter.h"
#include "readers/scan/cParserBase.h"

namespace vx3 {

template <class It, class Expr>
class cParserBaseExpression : public cParserBase<It> {
public:
    using op_type = baseExpression::op_type;
    using Base = cParserBase<It>;
    static constexpr unsigned kMaximumNesting = 1000;

    // With the flag, "%" is the modulo operator instead of the postfix percent.
    void setFlagParseModuloOperator(bool flag) { mParseModulo = flag; }
    bool getFlagParseModuloOperator() const { return mParseModulo; }
    // 0: blanks and tabs separate tokens (the only rule there is).
    void setSkipType(unsigned type) { mSkipType = type; }
    unsigned getSkipType() const { return mSkipType; }

    // One expression from begin; begin ends behind it.
    bool parseExpression(It& begin, const It& end, Expr& result)
    {
        mDepth = 0;
        mNestingExceeded = false;
        return parseExpressionRecursion(begin, end, result) && !mNestingExceeded;
    }
    bool checkNestingExceeded() const { return mNestingExceeded; }

    static bool checkIsNameTerminator(char c) { return baseExpression::checkIsNameTerminator(c); }

    // A name; a single "%" at its end is left for the percent operator ("a%" is a percentage,
    // "a%b" a name).
    static bool parseFunctionName(It& begin, const It& end, std::string& name)
    {
        It cursor = begin, beforeLast = begin;
        std::string text;
        bool lastWasSingle = false;
        while (cursor != end) {
            const char c = *cursor;
            if (c == ':') {
                It next = cursor;
                ++next;
                if (next == end || *next != ':')
                    break;
                text += "::";
                cursor = ++next;
                lastWasSingle = false;
                continue;
            }
            if (checkIsNameTerminator(c))
                break;
            beforeLast = cursor;
            text += c;
            ++cursor;
            lastWasSingle = true;
        }
        if (text.empty())
            return false;
        if (lastWasSingle && text.size() > 1 && text.back() == '%') {
            text.pop_back();
            cursor = beforeLast;
        }
        name = std::move(text);
        begin = cursor;
        return true;
    }

    // "text" with \" and \\ inside; the text without the quotes.
    static bool parseQuotedString(It& begin, const It& end, std::string& text)
    {
        if (begin == end || *begin != '"')
            return false;
        It cursor = begin;
        ++cursor;
        std::string value;
        while (cursor != end && *cursor != '"') {
            if (*cursor == '\\') {
                ++cursor;
                if (cursor == end)
                    return false;
            }
            value += *cursor;
            ++cursor;
        }
        if (cursor == end)
            return false;
        ++cursor;
        text = std::move(value);
        begin = cursor;
        return true;
    }

    // "inf" or "nan" in any case, optionally after "-": exactly three characters, whatever follows.
    static bool parseDoubleInfNan(It& begin, const It& end, double& value)
    {
        It cursor = begin;
        bool negative = false;
        if (cursor != end && *cursor == '-') {
            negative = true;
            ++cursor;
        }
        char word[3];
        for (char& c : word) {
            if (cursor == end)
                return false;
            c = Base::toLower(*cursor);
            ++cursor;
        }
        const std::string_view text(word, 3);
        if (text == "inf")
            value = negative ? -INFINITY : INFINITY;
        else if (text == "nan")
            value = NAN;
        else
            return false;
        begin = cursor;
        return true;
    }

    // The operator at begin, longest match of one or two characters.
    bool checkIsArithmeticOperator(It& begin, const It& end, op_type& op) const
    {
        using namespace baseExpression;
        if (begin == end)
            return false;
        const char c = *begin;
        It next = begin;
        ++next;
        const char d = next != end ? *next : '\0';
        op_type two = op_none;
        switch (c) {
        case '*': two = d == '=' ? op_multiply_assign : d == '*' ? op_power : op_none; break;
        case '/': two = d == '=' ? op_divide_assign : op_none; break;
        case '-': two = d == '=' ? op_subtract_assign : d == '>' ? op_arrow : op_none; break;
        case '+': two = d == '=' ? op_add_assign : op_none; break;
        case ':': two = d == '=' ? op_assign : op_none; break;
        case '|': two = d == '|' ? op_logical_or : op_none; break;
        case '&': two = d == '&' ? op_logical_and : op_none; break;
        case '!': two = d == '=' ? op_not_equal : d == '~' ? op_regex_mismatch : op_none; break;
        case '~': two = d == '=' ? op_not_equal : op_none; break;
        case '=': two = d == '=' ? op_equal : d == '~' ? op_regex_match : op_none; break;
        case '<': two = d == '=' ? op_less_equal : op_none; break;
        case '>': two = d == '=' ? op_greater_equal : op_none; break;
        default: break;
        }
        if (two != op_none) {
            op = two;
            begin = ++next;
            return true;
        }
        op_type one = op_none;
        switch (c) {
        case '=': one = op_assign; break;
        case '?': one = op_condition; break;
        case ':': one = op_range; break;
        case '|': one = op_bitwise_or; break;
        case '&': one = op_bitwise_and; break;
        case '<': one = op_less; break;
        case '>': one = op_greater; break;
        case '+': one = op_add; break;
        case '-': one = op_subtract; break;
        case '*': one = op_multiply; break;
        case '/': one = op_divide; break;
        case '^': one = op_power; break;
        case '.': one = op_dot; break;
        case '%': one = mParseModulo ? op_modulo : op_none; break;
        default: break;
        }
        if (one == op_none)
            return false;
        op = one;
        ++begin;
        return true;
    }

protected:
    // Counts one level of nesting for its lifetime; false past the limit.
    class cNestingGuard {
    public:
        explicit cNestingGuard(cParserBaseExpression& parser) : mParser(parser)
        {
            if (++mParser.mDepth > kMaximumNesting)
                mParser.mNestingExceeded = true;
        }
        ~cNestingGuard() { --mParser.mDepth; }
        explicit operator bool() const { return !mParser.mNestingExceeded; }

    private:
        cParserBaseExpression& mParser;
    };

    // An operand, then any binary operators with their operands, folded from the right.
    bool parseExpressionRecursion(It& begin, const It& end, Expr& result)
    {
        const It start = begin;
        Base::skipWhiteSpace(begin, end);
        Expr value;
        if (!parseOperand(begin, end, value)) {
            begin = start;
            return false;
        }
        std::vector<Expr> lefts;
        std::vector<op_type> ops;
        while (!mNestingExceeded) {
            const It save = begin;
            Base::skipWhiteSpace(begin, end);
            op_type op = baseExpression::op_none;
            Expr next;
            if (!checkIsArithmeticOperator(begin, end, op) || !Base::skipWhiteSpace(begin, end) ||
                !parseOperand(begin, end, next)) {
                begin = save;
                break;
            }
            lefts.push_back(std::move(value));
            ops.push_back(op);
            value = std::move(next);
        }
        if (mNestingExceeded) {
            begin = start;
            return false;
        }
        cExpressionFrontInserter<Expr> inserter(value);
        for (size_t i = lefts.size(); i-- > 0;)
            inserter.insert(ops[i], std::move(lefts[i]));
        result = std::move(value);
        return true;
    }

    // A primary, an optional percent, then index suffixes.
    bool parseOperand(It& begin, const It& end, Expr& result)
    {
        if (!parsePrimary(begin, end, result))
            return false;
        if (!mParseModulo) {
            It behind = begin;
            Base::skipWhiteSpace(behind, end);
            if (behind != end && *behind == '%') {
                begin = ++behind;
                result = Expr(baseExpression::op_percent, std::move(result));
            }
        }
        while (parseIndex(begin, end, result)) {
        }
        return !mNestingExceeded;
    }

    bool parsePrimary(It& begin, const It& end, Expr& result)
    {
        using namespace baseExpression;
        if (begin == end)
            return false;
        double number = 0;
        if (Base::parseDoubleNoUnits(begin, end, number)) {
            result = Expr(number);
            return true;
        }
        const char c = *begin;
        if ((c == '-' || c == 'I' || c == 'N' || c == 'i' || c == 'n') && parseDoubleInfNan(begin, end, number)) {
            result = Expr(number);
            return true;
        }
        switch (c) {
        case '+':
        case '!':
        case '~':
        case '-': {
            const It start = begin;
            cNestingGuard guard(*this);
            Expr operand;
            ++begin;
            if (!guard || !parseExpressionRecursion(begin, end, operand)) {
                begin = start;
                return false;
            }
            if (c == '+')
                result = std::move(operand);
            else if (c == '!')
                result = Expr(op_logical_not, std::move(operand));
            else if (c == '~')
                result = Expr(op_bitwise_not, std::move(operand));
            else if (!operand.checkIsFunction() && operand.childSize() > 1) {
                // The negation takes the first operand of what follows: "-a+b" is "(-a)+b".
                Expr& first = operand.operands()[0];
                first = Expr(op_negate, std::move(first));
                result = std::move(operand);
            } else {
                result = Expr(op_negate, std::move(operand));
            }
            return true;
        }
        case '(':
        case '[':
        case '{': return parseBracketsExpression(begin, end, result);
        default: return parseFunctionExpression(begin, end, result);
        }
    }

    // "(a, b)", "[...]", "{...}": the opening character decides the kind and the closing one.
    bool parseBracketsExpression(It& begin, const It& end, Expr& result)
    {
        using namespace baseExpression;
        if (begin == end)
            return false;
        const char open = *begin;
        const char close = open == '(' ? ')' : open == '[' ? ']' : open == '{' ? '}' : '\0';
        if (!close)
            return false;
        const It start = begin;
        cNestingGuard guard(*this);
        if (!guard)
            return false;
        Expr list(open == '(' ? op_round_brackets : open == '[' ? op_square_brackets : op_curly_brackets);
        ++begin;
        Base::skipWhiteSpace(begin, end);
        if (begin != end && *begin == close) {
            ++begin;
            result = std::move(list);
            return true;
        }
        while (true) {
            Expr element;
            if (!parseExpressionRecursion(begin, end, element))
                break;
            list.pushOperand(std::move(element));
            Base::skipWhiteSpace(begin, end);
            if (begin == end)
                break;
            if (*begin == ',') {
                ++begin;
                continue;
            }
            if (*begin != close)
                break;
            ++begin;
            result = std::move(list);
            return true;
        }
        begin = start;
        return false;
    }

    // A name, a call "name(...)" (built-in or user function), or a quoted string.
    bool parseFunctionExpression(It& begin, const It& end, Expr& result)
    {
        using namespace baseExpression;
        std::string name;
        if (parseFunctionName(begin, end, name)) {
            const It afterName = begin;
            Base::skipWhiteSpace(begin, end);
            Expr list;
            if (begin != end && *begin == '(' && parseBracketsExpression(begin, end, list)) {
                const op_type function = stringToOpFunctionType(name);
                if (function != op_none) {
                    list.setOperator(function);
                } else {
                    list.setOperator(op_user_function);
                    list.setStringValue(name);
                }
                result = std::move(list);
                return true;
            }
            if (mNestingExceeded)
                return false;
            begin = afterName;
            result = Expr(name);
            return true;
        }
        std::string text;
        if (!parseQuotedString(begin, end, text))
            return false;
        result = Expr(op_quoted_string);
        result.setStringValue(text);
        return true;
    }

    // "[ index ]" behind value. Built like an operator: value indexed goes in front of the index
    // expression, so "x[1+2]" is "(x[1])+2" while "x[1:2]" and "x[(1+2)]" index with the whole.
    // Several indices "x[i, j]" stay one list.
    bool parseIndex(It& begin, const It& end, Expr& value)
    {
        const It start = begin;
        Base::skipWhiteSpace(begin, end);
        Expr list;
        if (begin == end || *begin != '[' || !parseBracketsExpression(begin, end, list) || list.childSize() == 0) {
            begin = start;
            return false;
        }
        Expr index = list.childSize() == 1 ? Expr(std::move(list.operands()[0])) : std::move(list);
        index.insertFront(Expr(baseExpression::op_index, std::move(value)));
        value = std::move(index);
        return true;
    }

private:
    unsigned mDepth = 0;
    bool mNestingExceeded = false;
    bool mParseModulo = false;
    unsigned mSkipType = 0;
};

}  // namespace vx3
