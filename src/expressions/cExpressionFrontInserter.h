// Folds "x0 op1 x1 op2 ... opn xn" from the right, as repeated insertFront calls would: xn is the
// first tree, then op_n with its left operand x(n-1) is put in front of it, and so on.
//
// insertFront walks down the first children of the tree, so a long chain that folds to the left
// ("a+b+c+...") would cost a walk of the whole spine for every operator. The inserter keeps that
// left spine with the running maximum of the precedences met on the way down; the place where a
// new operator stops is then the first spine entry whose maximum binds tighter than the operator,
// found by a binary search. Nodes leave the spine for good when an operator is put above them, so
// the whole fold is O(n log n).
#pragma once

#include <algorithm>
#include <vector>

#include "expressions/baseExpression.h"

namespace vx3 {

template <class Expr>
class cExpressionFrontInserter {
public:
    explicit cExpressionFrontInserter(Expr& root) { pushSpine(&root); }

    // root.insertFront(Expr(op, lhs)) for a binary operator op (not an index).
    void insert(baseExpression::op_type op, Expr lhs)
    {
        using namespace baseExpression;
        const int precedence = getPrecedence(op);
        const bool range = op == op_range;
        // A range passes an index node on the way down: an index gives way to a range.
        const auto found = std::upper_bound(mSpine.begin(), mSpine.end(), precedence, [range](int p, const cEntry& entry) {
            return p < (range ? entry.maximumForRange : entry.maximum);
        });
        const size_t stop = static_cast<size_t>(found - mSpine.begin());  // the last entry always blocks
        Expr* place = mSpine[stop].node;
        Expr node(op);
        node.operands().reserve(2);
        node.operands().push_back(std::move(lhs));
        node.operands().push_back(std::move(*place));
        *place = std::move(node);
        mSpine.resize(stop);
        pushSpine(place);
    }

private:
    struct cEntry {
        Expr* node;
        int maximum;          // of the blocking levels from the root down to here
        int maximumForRange;  // the same, seen by a range operator
    };
    // Above every operator's precedence: a node without operands ends the walk.
    static constexpr int kBlocks = 1000;

    // Appends node and its first children down to the first node that blocks every operator.
    void pushSpine(Expr* node)
    {
        using namespace baseExpression;
        while (true) {
            const bool leaf = node->operands().empty();
            const int level = leaf ? kBlocks : getPrecedence(node->getOperator());
            const int levelForRange = !leaf && node->getOperator() == op_index ? 0 : level;
            const int maximum = mSpine.empty() ? level : std::max(mSpine.back().maximum, level);
            const int maximumForRange =
                mSpine.empty() ? levelForRange : std::max(mSpine.back().maximumForRange, levelForRange);
            mSpine.push_back({node, maximum, maximumForRange});
            if (leaf || (level >= 39 && levelForRange >= 39))
                return;
            node = &node->operands()[0];
        }
    }

    std::vector<cEntry> mSpine;
};

}  // namespace vx3
