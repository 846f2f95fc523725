// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/interfaces/MMEP_Data.h"
#include "mfcurves/platform/mfExport.h"

/// A compiled expression.
///
/// Ownership: whoever receives a calculator must call Release, the only way to
/// dispose of it. It may outlive the parser that made it.
class MFCURVES_API ICalculator {
public:
    /// Returns a new calculator for the derivative with respect to the expression's
    /// one parameter. It is independent of this one; the caller must release it.
    /// Null for an expression of two or more parameters, and when the derivative
    /// would exceed the limits of the engine. `unused` is ignored.
    virtual ICalculator* differentiate(int unused) = 0;

    /// Evaluates with `count` arguments, in the order of the parser's parameters.
    /// False, leaving `result` unchanged, when `count` differs from the number of
    /// parameters or the value is not finite. An expression without parameters
    /// accepts any count.
    virtual bool Evaluate(int count, MMEP_Data* arguments, MMEP_Data& result) = 0;

    /// Disposes of this calculator. Always true.
    virtual bool Release() = 0;

protected:
    virtual ~ICalculator() = default;
};
