// SPDX-License-Identifier: MIT

#include "mfcurves/engine/intervalErrors.h"

namespace mf::engine::intervals {
namespace {

// A bound of the size of the derivative of f over x, where y = f(x).
double steepness(FunctionId function, const Interval& x, const Interval& y)
{
    switch (function) {
        case FunctionId::Tan:
            return 1.0 + y.largest() * y.largest();
        case FunctionId::Asin:
        case FunctionId::Acos:
            return 1.0 / std::sqrt((1.0 - x.largest()) * (1.0 + x.largest()));
        case FunctionId::Atan:
            return 1.0 / (1.0 + x.smallest() * x.smallest());
        case FunctionId::Sinh:
        case FunctionId::Cosh:
            return std::cosh(x.largest());
        case FunctionId::Exp:
            return y.largest();
        case FunctionId::Log:
        case FunctionId::Log10:
            return x.lo > 0.0 ? 1.0 / x.lo : kUnbounded;
        case FunctionId::Sqrt:
            return y.lo > 0.0 ? 0.5 / y.lo : kUnbounded;
        case FunctionId::Cbrt:
            return y.excludesZero() ? 1.0 / (3.0 * y.smallest() * y.smallest()) : kUnbounded;
        case FunctionId::Sign:
        case FunctionId::Int:
        case FunctionId::Nint:
        case FunctionId::Floor:
        case FunctionId::Ceil:
            return y.isPoint() ? 0.0 : kUnbounded;
        default:
            return 1.0;  // sin, cos, tanh, sech, abs
    }
}

constexpr double kUlpsOfAny = 5.0;

double roundingOf(const Interval& y)
{
    return kUlpsOfAny * 0x1p-52 * y.largest() + std::numeric_limits<double>::denorm_min();
}

double carried(double steepness, double error)
{
    return error == 0.0 ? 0.0 : steepness * error;
}

// a^b moves by b a^(b-1) with a and by a^b log a with b.
double errorOfPower(const Interval& a, const Interval& b, const Interval& y, double errorOfA, double errorOfB)
{
    double withA = 0.0;
    if (errorOfA != 0.0) {
        const bool rises = b.isPoint() && b.lo >= 1.0;
        const double slope = rises
                                 ? b.lo * std::pow(a.largest(), b.lo - 1.0)
                                 : b.largest() * (a.excludesZero() ? y.largest() / a.smallest() : kUnbounded);
        withA = slope * errorOfA;
    }
    const bool hasLogarithm = a.lo > 0.0;
    const double logarithm =
        hasLogarithm ? std::max(std::fabs(std::log(a.lo)), std::fabs(std::log(a.hi))) : kUnbounded;
    return withA + carried(y.largest() * logarithm, errorOfB);
}

}  // namespace

double errorOf(FunctionId function, const Interval& x, const Interval& y, double error)
{
    return carried(steepness(function, x, y), error) + roundingOf(y);
}

double errorOf(FunctionId function, const Interval& a, const Interval& b, const Interval& y, double errorOfA,
               double errorOfB)
{
    switch (function) {
        case FunctionId::Atan2: {
            const double square = a.smallest() * a.smallest() + b.smallest() * b.smallest();
            const bool crossesCut = b.lo <= 0.0 && a.lo <= 0.0 && a.hi >= 0.0;
            if ((square == 0.0 || crossesCut) && (errorOfA != 0.0 || errorOfB != 0.0))
                return kUnbounded;
            return carried(b.largest() / square, errorOfA) + carried(a.largest() / square, errorOfB) +
                   roundingOf(y);
        }
        case FunctionId::Min:
        case FunctionId::Max:
            return std::max(errorOfA, errorOfB);
        case FunctionId::SignOf:
            return b.excludesZero() || errorOfB == 0.0 ? errorOfA : kUnbounded;
        case FunctionId::Mod: {
            const Interval k = Interval(std::trunc((a / b).lo), std::trunc((a / b).hi));
            const bool exact = errorOfA == 0.0 && errorOfB == 0.0;
            return exact ? 0.0 : k.isPoint() ? errorOfA + std::fabs(k.lo) * errorOfB : kUnbounded;
        }
        case FunctionId::Power:
            return errorOfPower(a, b, y, errorOfA, errorOfB) + roundingOf(y);
        default:  // hypot, dim
            return errorOfA + errorOfB + roundingOf(y);
    }
}

}  // namespace mf::engine::intervals
