// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/MMEP_Data.h"

namespace mf {

// A calculator ends by Release and by nothing else.
struct ReleaseCalculator {
    void operator()(ICalculator* calculator) const { calculator->Release(); }
};
using CalculatorHolder = std::unique_ptr<ICalculator, ReleaseCalculator>;

// The derivative of a calculator; null where there is none to derive from.
inline CalculatorHolder derivativeOf(ICalculator* calculator)
{
    return CalculatorHolder(calculator == nullptr ? nullptr : calculator->differentiate(0));
}

// A calculator that is missing counts as one that fails. A failed evaluation
// leaves y as it was.
inline bool evaluateAt(ICalculator* calculator, double x, double& y)
{
    MMEP_Data argument(x);
    MMEP_Data result;
    if (calculator == nullptr || !calculator->Evaluate(1, &argument, result))
        return false;
    y = *result.getValue();
    return true;
}

// 0.0 where there is no finite value.
inline double valueAt(ICalculator& calculator, double x)
{
    MMEP_Data argument(x);
    MMEP_Data result;
    calculator.Evaluate(1, &argument, result);
    return *result.getValue();
}

}  // namespace mf
