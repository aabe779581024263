// The real and imaginary results of comparing two curves.
#pragma once

#include <cmath>

namespace vx3 {

class cCurvePlotVariableComparison {
public:
    struct cResult {
        double value = NAN;  // the compared quantity, NaN while undefined
        double x = NAN;      // where it was found
        bool passed = false;
        bool defined = false;
    };

    void copyToReal(const cResult& result) { mReal = result; }
    void copyToImag(const cResult& result) { mImag = result; }
    void copyRealToImag() { mImag = mReal; }
    void clear()
    {
        mReal = cResult();
        mImag = cResult();
    }
    const cResult& real() const { return mReal; }
    const cResult& imag() const { return mImag; }

private:
    cResult mReal;
    cResult mImag;
};

}  // namespace vx3
