// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/MMEP_Data.h"

namespace mf {

// Release is the only way to dispose of a calculator.
struct ReleaseCalculator {
    void operator()(ICalculator* calculator) const { calculator->Release(); }
};
using CalculatorHolder = std::unique_ptr<ICalculator, ReleaseCalculator>;

// The derivative of a calculator; null when `calculator` is null or has no derivative.
inline CalculatorHolder derivativeOf(ICalculator* calculator)
{
    return CalculatorHolder(calculator == nullptr ? nullptr : calculator->differentiate(0));
}

// Evaluates at x into y. False, leaving y unchanged, when the evaluation fails or
// `calculator` is null.
inline bool evaluateAt(ICalculator* calculator, double x, double& y)
{
    MMEP_Data argument(x);
    MMEP_Data result;
    if (calculator == nullptr || !calculator->Evaluate(1, &argument, result))
        return false;
    y = *result.getValue();
    return true;
}

// The value at x; 0.0 when it is not finite.
inline double valueAt(ICalculator& calculator, double x)
{
    MMEP_Data argument(x);
    MMEP_Data result;
    calculator.Evaluate(1, &argument, result);
    return *result.getValue();
}

}  // namespace mf
