// SPDX-License-Identifier: MIT

#include "mfcurves/curve/FrozenCurve.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <vector>

namespace mf::curve {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

double finiteOrNaN(double value)
{
    return std::isfinite(value) ? value : kNaN;
}

// Calls use(registers) with room for `count` doubles: on the stack up to 64 kB, beyond that
// in a buffer of the thread. False when there is no memory for it.
template <std::size_t room>
[[gnu::noinline]] void onStack(const auto& use)
{
    double registers[room];
    use(registers);
}

bool withRegisters(std::size_t count, const auto& use)
{
    if (count <= 64) {
        double registers[64];
        use(registers);
        return true;
    }
    if (count <= 8192) {
        onStack<8192>(use);
        return true;
    }
    thread_local std::vector<double> buffer;
    try {
        if (buffer.size() < count)
            buffer.resize(count);
    } catch (const std::bad_alloc&) {
        return false;
    }
    use(buffer.data());
    return true;
}

void run(const engine::Formula& formula, double x, int order, double* values)
{
    const auto use = [&](double* registers) { formula.evaluate(x, order, registers, values); };
    if (!withRegisters(formula.registerCount(), use))
        std::fill_n(values, order + 1, kNaN);
}

// The distances from x at which a formula is asked for its branch, nearest first: a condition
// may take some to differ from what it is at x.
template <typename Try>
void besideInTurn(double x, Side side, const Try& isSettledAt)
{
    const double sign = side == Side::Left ? -1.0 : 1.0;
    constexpr int kBesideZero[] = {-1000, -700, -400, -200, -100, -60, -30};
    constexpr int kBesideOther[] = {-52, -46, -40, -34, -28};
    const auto tryAll = [&](const auto& exponents, double scale) {
        for (const int exponent : exponents) {
            if (isSettledAt(x + sign * std::ldexp(scale, exponent)))
                return;
        }
    };
    if (x == 0.0)
        tryAll(kBesideZero, 1.0);
    else
        tryAll(kBesideOther, std::fabs(x));
}

// The limit from a side. A formula without branches is its own limit.
void runBeside(const engine::Formula& formula, double x, Side side, int order, double* values)
{
    if (side == Side::Plain || !formula.hasBranches())
        return run(formula, x, order, values);
    const auto use = [&](double* registers) {
        besideInTurn(x, side, [&](double beside) {
            return formula.evaluateBeside(x, beside, order, registers, values);
        });
    };
    if (!withRegisters(2 * formula.registerCount(), use))
        std::fill_n(values, order + 1, kNaN);
}

void at(const FrozenRows& rows, double x, Side side, int order, double* values)
{
    const auto next = side == Side::Left ? std::lower_bound(rows.starts.begin(), rows.starts.end(), x)
                                         : std::upper_bound(rows.starts.begin(), rows.starts.end(), x);
    const auto index = std::max<std::ptrdiff_t>(next - rows.starts.begin() - 1, 0);
    runBeside(*rows.rows[static_cast<std::size_t>(index)].formula, x, side, order, values);
}

void polynomial(const host::SplinePiece& piece, double t, int order, double* values)
{
    const double c2 = 2.0 * piece.c;
    const double d3 = 3.0 * piece.d;
    const double d6 = 6.0 * piece.d;
    values[0] = piece.a + t * (piece.b + t * (piece.c + t * piece.d));
    if (order > 0)
        values[1] = piece.b + t * (c2 + t * d3);
    if (order > 1)
        values[2] = c2 + t * d6;
    if (order > 2)
        values[3] = d6;
}

// The left limit at a knot has the knot's own Y, as the last piece has it.
void at(const host::SplinePieces& spline, double x, Side side, int order, double* values)
{
    std::size_t index = spline.indexAt(x);
    const bool isKnot = x == spline.knots()[index];
    if (side == Side::Left && isKnot && index > 0) {
        const double knotY = spline.pieces()[index].a;
        --index;
        polynomial(spline.pieces()[index], x - spline.knots()[index], order, values);
        values[0] = knotY;
        return;
    }
    polynomial(spline.pieces()[index], x - spline.knots()[index], order, values);
}

// A derivative only where there is a value.
void at(const FrozenExpression& expression, double x, Side side, int order, double* values)
{
    runBeside(*expression.formula, x, side, order, values);
    for (int k = 1; k <= order; ++k) {
        if (std::isnan(values[k - 1]))
            values[k] = kNaN;
    }
}

}  // namespace

void FrozenCurve::iInside(double x, Side side, int order, double* values) const noexcept
{
    std::visit([&](const auto& pieces) { at(pieces, x, side, order, values); }, pieces_);
}

void FrozenCurve::iExtended(double x, Side side, int order, double* values) const noexcept
{
    if (const auto* rows = std::get_if<FrozenRows>(&pieces_))
        runBeside(*(x > firstX_ ? rows->rows.back() : rows->rows.front()).formula, x, side, order, values);
    else if (const auto* spline = std::get_if<host::SplinePieces>(&pieces_))
        for (int k = 0; k <= order; ++k)
            values[k] = spline->outside(x, k);
    else
        at(std::get<FrozenExpression>(pieces_), x, side, order, values);
}

void FrozenCurve::iOutside(double x, Side side, Outside outside, int order, double* values) const noexcept
{
    if (outside == Outside::Extend)
        return iExtended(x, side, order, values);
    std::fill_n(values, order + 1, outside == Outside::Hold ? 0.0 : kNaN);
    if (outside == Outside::Hold)
        iInside(x < lastX_ ? firstX_ : lastX_, Side::Plain, 0, values);
}

// At lastX and whole periods from it the left limit is the end of the curve and the right
// one its start.
void FrozenCurve::iRepeated(double x, Side side, int order, double* values) const noexcept
{
    const double period = lastX_ - firstX_;
    if (!std::isfinite(x)) {
        std::fill_n(values, order + 1, kNaN);
        return;
    }
    double rest = period > 0.0 ? std::fmod(x - firstX_, period) : 0.0;
    if (rest < 0.0)
        rest += period;
    if (rest == 0.0 || rest == period) {
        if (side == Side::Left)
            iInside(lastX_, Side::Left, order, values);
        else
            iInside(firstX_, Side::Right, order, values);
        return;
    }
    iInside(std::clamp(firstX_ + rest, firstX_, lastX_), side, order, values);
}

void FrozenCurve::evaluate(double x, Side side, Outside outside, int order, double* values) const noexcept
{
    const bool isInside = (x > firstX_ || (x == firstX_ && side != Side::Left)) &&
                          (x < lastX_ || (x == lastX_ && side != Side::Right));
    if (isInside)
        iInside(x, side, order, values);
    else if (std::isnan(x))
        std::fill_n(values, order + 1, kNaN);
    else if (outside == Outside::Repeat)
        iRepeated(x, side, order, values);
    else
        iOutside(x, side, outside, order, values);
    for (int k = 0; k <= order; ++k)
        values[k] = finiteOrNaN(values[k]);
}

}  // namespace mf::curve
