// The comparison of two model rows by the sort columns of a grid. The keys are read from the
// model once, before the sort, so that a million rows cost a million reads per column rather than
// one per comparison. Numbers compare as numbers with NaN after all numbers in both directions;
// value lists compare element by element, the shorter first when the common part agrees; all
// other columns compare their texts byte by byte, lowered unless the grid is case-sensitive.
// Rows whose keys all agree keep the model's order.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "treegrid/wxTreeGridVirtual.h"

namespace vx3 {

class wxTreeGridImplSorter {
public:
    // cols: model columns in priority order, each with its direction (true ascending).
    wxTreeGridImplSorter(wxTreeGridVirtual& model, const std::vector<std::pair<unsigned, bool>>& cols,
                         bool caseSensitive, unsigned rowCount);

    // Negative, zero or positive as row a goes before, ties with or goes after row b.
    int compareKeys(unsigned a, unsigned b) const;
    bool operator()(unsigned a, unsigned b) const
    {
        const int c = compareKeys(a, b);
        return c != 0 ? c < 0 : a < b;
    }
    // Whether row's key in the first sort column is undefined (a NaN number).
    bool checkFirstKeyIsUndefined(unsigned row) const;

private:
    enum key_kind { kind_number, kind_list, kind_text };
    struct cColumnKeys {
        key_kind kind = kind_text;
        bool ascending = true;
        std::vector<double> numbers;
        std::vector<std::vector<double>> lists;
        std::vector<std::string> texts;
    };
    static int compareNumbers(double a, double b, bool ascending);
    std::vector<cColumnKeys> mColumns;
};

}  // namespace vx3
