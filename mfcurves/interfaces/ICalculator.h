// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/interfaces/MMEP_Data.h"
#include "mfcurves/platform/mfExport.h"

/// A compiled expression.
///
/// Ownership: whoever received one gives it back through Release, which is the
/// only way to dispose of it. It outlives the parser that made it.
class MFCURVES_API ICalculator {
public:
    /// A new calculator for the derivative with respect to the one argument; it
    /// has a life of its own and ends by Release. The argument is not used.
    /// Null when there is none: an expression of two or more parameters, or one
    /// whose derivative would outgrow the limits of the engine.
    virtual ICalculator* differentiate(int unused) = 0;

    /// Evaluates with `count` arguments, in the order of the parser's parameters.
    /// False, leaving `result` as it was, when the count does not fit the
    /// parameters or the value is not finite. An expression without parameters
    /// takes any count.
    virtual bool Evaluate(int count, MMEP_Data* arguments, MMEP_Data& result) = 0;

    /// Disposes of this calculator. Always true.
    virtual bool Release() = 0;

protected:
    virtual ~ICalculator() = default;
};
