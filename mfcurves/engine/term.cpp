// SPDX-License-Identifier: MIT

#include "mfcurves/engine/term.h"

#include <cmath>
#include <optional>
#include <utility>

#include "mfcurves/engine/exactness.h"
#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/gathering.h"
#include "mfcurves/engine/limits.h"
#include "mfcurves/engine/polynomials.h"
#include "mfcurves/engine/values.h"

namespace mf::engine {
namespace {

Term makeNode(Op op, Term a, Term b)
{
    return a.maker().make({.a = a.id(), .b = b.id(), .op = op});
}

// A sum or product has the same bits in either order of its operands, so they are
// sorted: constants first, then by id.
Term makeCommutative(Op op, Term a, Term b)
{
    if (!a.isConstant() && (b.isConstant() || b.id() < a.id()))
        std::swap(a, b);
    return makeNode(op, a, b);
}

Term makeCall(FunctionId function, Term a, Term b)
{
    return a.maker().make({.a = a.id(), .b = b.id(), .op = Op::Call2, .function = function});
}

template <class... Terms>
Term makeChoice(Op op, Term first, Terms... others)
{
    const NodeId operands[] = {first.id(), others.id()...};
    return first.maker().make({.op = op}, operands);
}

// (f * u + rest) + g * u as (f + g) * u + rest; nothing when there is no such u.
std::optional<Term> joinedSum(Term a, const Scaled& addend)
{
    if (a.op() != Op::Sum)
        return std::nullopt;
    Term rest = a.a();
    Scaled same = scaled(a.b());
    if (same.base != addend.base) {
        rest = a.b();
        same = scaled(a.a());
    }
    if (same.base != addend.base || same.base.isConstant())
        return std::nullopt;
    // Not through operator+, which would walk down a long sum.
    const Term joined = (same.factor + addend.factor) * same.base;
    return joined.isConstant(0.0) ? rest : makeCommutative(Op::Sum, rest, joined);
}

// In a derivative constants are gathered in front of a product, and powers of one
// factor become one power.
Term freeProduct(Term a, Term b)
{
    const Scaled first = scaled(a);
    const Scaled second = scaled(b);
    const double factor = first.factor * second.factor;
    if (const auto gathered = monomialProduct(first.base, second.base))
        return factor * *gathered;
    return factor * makeCommutative(Op::Product, first.base, second.base);
}

bool isExponentOfMonomial(double exponent)
{
    return std::fabs(exponent) <= kHighestMonomial && exponent == std::trunc(exponent);
}

}  // namespace

Term TermMaker::constant(double number)
{
    return make({.number = number, .op = Op::Constant});
}

Term TermMaker::variable(std::uint32_t number)
{
    return make({.index = number, .op = Op::Variable});
}

Term operator+(Term a, Term b)
{
    if (a.isConstant() && b.isConstant())
        return a.constant(a.number() + b.number());
    if (a.isConstant(0.0))
        return b;
    if (b.isConstant(0.0))
        return a;
    if (a == b)
        return 2.0 * a;
    if (a.isFree()) {
        const Scaled first = scaled(a);
        const Scaled second = scaled(b);
        if (first.base == second.base)
            return (first.factor + second.factor) * first.base;
        if (const auto joined = joinedSum(a, second))
            return *joined;
        if (const auto joined = joinedSum(b, first))
            return *joined;
    }
    if (const auto gathered = gatheredSum(a, b))
        return *gathered;
    return makeCommutative(Op::Sum, a, b);
}

Term operator+(double a, Term b)
{
    return b.constant(a) + b;
}

Term operator-(Term a)
{
    return -1.0 * a;
}

Term operator-(Term a, Term b)
{
    if (a.isConstant() && b.isConstant())
        return a.constant(a.number() - b.number());
    return a + -b;
}

Term operator-(double a, Term b)
{
    return b.constant(a) - b;
}

Term operator*(double factor, Term a)
{
    if (a.isConstant())
        return a.constant(factor * a.number());
    if (factor == 1.0)
        return a;
    if (factor == 0.0 && a.isFree())
        return a.constant(0.0);
    // Only one level, so that a long product is not walked again and again.
    const Scaled inner = scaled(a);
    const double both = factor * inner.factor;
    const bool exact = isPowerOfTwo(factor) || isPowerOfTwo(inner.factor);
    if (inner.base != a && std::isnormal(both) && (a.isFree() || exact)) {
        factor = both;
        a = inner.base;
        if (factor == 1.0)
            return a;
    }
    if (const auto folded = scaledPolynomial(factor, a))
        return *folded;
    return makeNode(Op::Product, a.constant(factor), a);
}

Term operator*(Term a, Term b)
{
    if (a.isConstant())
        return a.number() * b;
    if (b.isConstant())
        return b.number() * a;
    if (a.isFree())
        return freeProduct(a, b);
    return makeCommutative(Op::Product, a, b);
}

Term operator/(Term a, Term b)
{
    if (b.isConstant()) {
        const double divisor = b.number();
        if (a.isConstant())
            return a.constant(a.number() / divisor);
        if (std::isnormal(1.0 / divisor) && (a.isFree() || isPowerOfTwo(divisor)))
            return (1.0 / divisor) * a;
    }
    if (a.isFree()) {
        if (a.isConstant(0.0))
            return a;
        const Scaled numerator = scaled(a);
        if (numerator.factor != 1.0)
            return numerator.factor * makeNode(Op::Quotient, numerator.base, b);
    }
    return makeNode(Op::Quotient, a, b);
}

Term operator/(double a, Term b)
{
    return b.constant(a) / b;
}

Term power(Term base, Term exponent)
{
    if (base.isConstant() && exponent.isConstant())
        return base.constant(powerValue(base.number(), exponent.number()));
    if (exponent.isConstant() && isExponentOfMonomial(exponent.number())) {
        const int n = static_cast<int>(exponent.number());
        const double one = 1.0;
        if (n > 0)
            return polynomial(base, n, {&one, 1});
        if (n < 0)
            return 1.0 / polynomial(base, -n, {&one, 1});
    }
    return makeCall(FunctionId::Power, base, exponent);
}

Term power(Term base, double exponent)
{
    return power(base, base.constant(exponent));
}

Term square(Term a)
{
    return power(a, 2.0);
}

Term polynomial(Term u, int lowest, std::span<const double> c)
{
    if (u.isConstant())
        return u.constant(polynomialValue(u.number(), static_cast<unsigned>(lowest), c));
    while (c.size() > 1 && c.back() == 0.0)
        c = c.first(c.size() - 1);
    for (; c.size() > 1 && c.front() == 0.0 && lowest < kHighestMonomial; ++lowest)
        c = c.subspan(1);

    // Where u is undefined the text is undefined, even if no coefficient needs u.
    if (c.size() == 1 && lowest == 0)
        return 0.0 * u + u.constant(c[0]);
    if (c.size() == 1 && lowest == 1)
        return c[0] * u;
    if (c.size() == 2 && lowest == 0)
        return c[0] + c[1] * u;
    return u.maker().make({.a = u.id(), .lowest = static_cast<std::uint16_t>(lowest), .op = Op::Polynomial},
                          c);
}

Term chebyshev(Term h, std::span<const double> c)
{
    if (h.isConstant())
        return h.constant(chebyshevValue(h.number(), c));
    if (c.size() <= 2)
        return polynomial(h, 0, c);
    return h.maker().make({.a = h.id(), .op = Op::Chebyshev}, c);
}

Term call(FunctionId id, Term a)
{
    if (a.isConstant())
        return a.constant(function(id).value1(a.number()));
    return a.maker().make({.a = a.id(), .op = Op::Call1, .function = id});
}

Term call(FunctionId id, Term a, Term b)
{
    if (a.isConstant() && b.isConstant())
        return a.constant(function(id).value2(a.number(), b.number()));
    return makeCall(id, a, b);
}

Term chooseLess(Term p, Term q, Term ifLess, Term otherwise)
{
    if (ifLess == otherwise)
        return ifLess;
    return makeChoice(Op::ChooseLess, p, q, ifLess, otherwise);
}

Term chooseSign(Term c, Term ifNegative, Term ifZero, Term ifPositive)
{
    if (c.isConstant()) {
        const double sign = signValue(c.number());
        return sign < 0.0 ? ifNegative : sign > 0.0 ? ifPositive : sign == 0.0 ? ifZero : c;
    }
    if (ifNegative == ifZero && ifZero == ifPositive && c.isFree())
        return ifZero;
    return makeChoice(Op::ChooseSign, c, ifNegative, ifZero, ifPositive);
}

Term chooseStep(Term x, Term x0, Term x1, Term before, Term between, Term after)
{
    if (before == between && between == after && x.isFree())
        return between;
    return makeChoice(Op::ChooseStep, x, x0, x1, before, between, after);
}

}  // namespace mf::engine
