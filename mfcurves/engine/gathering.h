// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "mfcurves/engine/term.h"

/// Gathers monomials of one inner variable u into a polynomial, and constant factors
/// into its coefficients. Each function returns nothing if the terms are not such
/// monomials, or if, under KeepText, it would round a coefficient that the text does not
/// round.
namespace mf::engine {

/// A term as factor * base; the factor of a term without a constant factor is 1.
struct Scaled {
    double factor;
    Term base;
};

inline Scaled scaled(Term a)
{
    const Node& node = a.node();
    if (node.op == Op::Product && a.a().isConstant())
        return {a.a().number(), a.b()};
    return {1.0, a};
}

/// The sum of two polynomials in one variable as one polynomial.
std::optional<Term> gatheredSum(Term a, Term b);

/// factor * polynomial with the factor in the coefficients; nothing if one over- or underflows.
std::optional<Term> scaledPolynomial(double factor, Term a);

/// u^m times u^n as one monomial; any term counts as its own first power.
std::optional<Term> monomialProduct(Term a, Term b);

}  // namespace mf::engine
