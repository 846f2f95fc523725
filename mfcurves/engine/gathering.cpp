// SPDX-License-Identifier: MIT

#include "mfcurves/engine/gathering.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "mfcurves/engine/exactness.h"
#include "mfcurves/engine/limits.h"

namespace mf::engine {
namespace {

// c[0] + c[1] u + ... + c[highest] u^highest
struct Coefficients {
    std::array<double, kHighestMonomial + 1> c{};
    int highest = 0;
};

std::optional<Coefficients> coefficientsOf(Term polynomial)
{
    const Node& node = polynomial.node();
    Coefficients result;
    result.highest = node.lowest + static_cast<int>(node.count) - 1;
    if (result.highest > kHighestMonomial)
        return std::nullopt;
    std::ranges::copy(polynomial.coefficients(), result.c.begin() + node.lowest);
    return result;
}

// The term as a polynomial in u of a low degree, if it is written as one. Under
// KeepText a sum such as x - 1 does not count: it is exact near its zero, and would
// no longer be so inside a longer polynomial.
std::optional<Coefficients> coefficientsIn(Term a, Term u)
{
    if (a.op() == Op::Polynomial && a.a() == u)
        return coefficientsOf(a);

    Coefficients result;
    if (a.isConstant()) {
        result.c[0] = a.number();
        return result;
    }
    Scaled slope = scaled(a);
    if (a.op() == Op::Sum && a.a().isConstant()) {
        slope = scaled(a.b());
        if (!a.isFree() && isPowerOfTwo(slope.factor))
            return std::nullopt;
        result.c[0] = a.a().number();
    }
    if (slope.base != u)
        return std::nullopt;
    result.c[1] = slope.factor;
    result.highest = 1;
    return result;
}

// The variable in which a term is a polynomial.
std::optional<Term> innerVariable(Term a)
{
    if (a.op() == Op::Polynomial)
        return a.a();
    if (a.isFree() && a.op() == Op::Sum && a.a().isConstant())
        return scaled(a.b()).base;
    return std::nullopt;
}

// Whether each power is u or u^2 times the previous one. Across a wider gap, plain
// multiplications would err more than the power itself.
bool isWithoutGaps(const Coefficients& terms)
{
    int last = -1;
    for (int i = 0; i <= terms.highest; ++i) {
        if (terms.c[i] == 0.0)
            continue;
        if (last >= 0 && i - last > 2)
            return false;
        last = i;
    }
    return true;
}

// u^exponent times a factor.
struct Monomial {
    Term u;
    int exponent;
    double factor;
};

bool isMonomial(Term a)
{
    return a.op() == Op::Polynomial && a.node().count == 1;
}

Monomial monomial(Term a)
{
    return isMonomial(a) ? Monomial{a.a(), a.node().lowest, a.coefficients()[0]} : Monomial{a, 1, 1.0};
}

}  // namespace

std::optional<Term> gatheredSum(Term a, Term b)
{
    std::optional<Term> u = innerVariable(a);
    if (!u)
        u = innerVariable(b);
    if (!u)
        return std::nullopt;
    // Between a constant and powers above the first there would be a gap, filled with zeros.
    if ((a.isConstant() && b.node().lowest > 1) || (b.isConstant() && a.node().lowest > 1))
        return std::nullopt;
    const auto first = coefficientsIn(a, *u);
    const auto second = first ? coefficientsIn(b, *u) : std::nullopt;
    if (!second)
        return std::nullopt;

    Coefficients total;
    total.highest = std::max(first->highest, second->highest);
    for (int i = 0; i <= total.highest; ++i) {
        if (!a.isFree() && !isExactSum(first->c[i], second->c[i]))
            return std::nullopt;
        total.c[i] = first->c[i] + second->c[i];
    }
    if (!a.isFree() && !isWithoutGaps(total))
        return std::nullopt;
    return polynomial(*u, 0, {total.c.data(), static_cast<std::size_t>(total.highest) + 1});
}

std::optional<Term> scaledPolynomial(double factor, Term a)
{
    const Node& node = a.node();
    if (node.op != Op::Polynomial || node.count > kHighestMonomial + 1)
        return std::nullopt;
    Coefficients product;
    const auto coefficients = a.coefficients();
    for (std::size_t i = 0; i < coefficients.size(); ++i) {
        product.c[i] = factor * coefficients[i];
        if (coefficients[i] != 0.0 && !std::isnormal(product.c[i]))
            return std::nullopt;
        const bool single = coefficients.size() == 1;
        if (!a.isFree() && !(single && isExactProduct(factor, coefficients[i])) && !isPowerOfTwo(factor))
            return std::nullopt;
    }
    return polynomial(a.a(), node.lowest, {product.c.data(), coefficients.size()});
}

std::optional<Term> monomialProduct(Term a, Term b)
{
    const Monomial first = monomial(a);
    const Monomial second = monomial(b);
    const int exponent = first.exponent + second.exponent;
    const double factor = first.factor * second.factor;
    if (first.u != second.u || exponent > kHighestMonomial || !std::isnormal(factor))
        return std::nullopt;
    return polynomial(first.u, exponent, {&factor, 1});
}

}  // namespace mf::engine
