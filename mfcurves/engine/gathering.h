// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "mfcurves/engine/term.h"

/// Gathers monomials of one inner variable u into a polynomial, and constant factors
/// into its coefficients. Nothing is returned where the terms are no such monomials,
/// or where, under KeepText, a coefficient would be rounded that the text does not round.
namespace mf::engine {

/// factor * base, with factor 1 where there is none.
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

/// factor * polynomial with the factor in the coefficients, where none of them over- or underflows.
std::optional<Term> scaledPolynomial(double factor, Term a);

/// u^m times u^n as one monomial; a term is its own first power.
std::optional<Term> monomialProduct(Term a, Term b);

}  // namespace mf::engine
