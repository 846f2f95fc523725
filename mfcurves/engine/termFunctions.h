// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/term.h"

/// Functions of terms, with their names in formulas.
namespace mf::engine {

inline Term sin(Term a)
{
    return call(FunctionId::Sin, a);
}
inline Term cos(Term a)
{
    return call(FunctionId::Cos, a);
}
inline Term sinh(Term a)
{
    return call(FunctionId::Sinh, a);
}
inline Term cosh(Term a)
{
    return call(FunctionId::Cosh, a);
}
inline Term tanh(Term a)
{
    return call(FunctionId::Tanh, a);
}
inline Term sech(Term a)
{
    return call(FunctionId::Sech, a);
}
inline Term log(Term a)
{
    return call(FunctionId::Log, a);
}
inline Term sqrt(Term a)
{
    return call(FunctionId::Sqrt, a);
}
inline Term sign(Term a)
{
    return call(FunctionId::Sign, a);
}
inline Term nint(Term a)
{
    return call(FunctionId::Nint, a);
}

using Arguments = std::span<const Term>;

/// f(... f(f(a0, a1), a2) ...)
Term folded(FunctionId f, Arguments arguments);

/// Of (x, x0, h0, x1, h1): h0 before x0, h1 after x1, between h0 + (h1 - h0) * shape(u)
/// with u = (x - x0) / (x1 - x0).
Term stepOfShape(Arguments arguments, Term (*shape)(Term u));

/// Of (x, x0, a0, a1, ...) with h = x - x0: a0 + a1 h + a2 h^2 + ...
Term powerSeries(Arguments arguments);
/// Of (x, x0, a0, a1, ...) with h = x - x0: a0 T0(h) + a1 T1(h) + ...
Term chebyshevSeries(Arguments arguments);
/// Of (x, x0, w, a0, a1, ...) with h = x - x0: a0 + a1 f(w h) + a2 f(2 w h) + ...
Term fourierSeries(FunctionId f, Arguments arguments);

}  // namespace mf::engine
