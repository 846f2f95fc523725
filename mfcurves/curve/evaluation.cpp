// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/curve/FrozenCurve.h"
#include "mfcurves/engine/values.h"

// Evaluates a curve at one x. The operations of Curve are in one file with the functions that they
// call, so that the usual case, an x between the ends, is compiled into one function.

namespace mf {
namespace curve {
namespace {

using engine::kNaN;

// The difference of a value from itself is 0 if it is finite, else NaN.
bool areFinite(const double* values, int order)
{
    double differences = 0.0;
    for (int k = 0; k <= order; ++k)
        differences += values[k] - values[k];
    return differences == 0.0;
}

[[gnu::noinline]] void takeOutInfinite(int order, double* values)
{
    for (int k = 0; k <= order; ++k)
        values[k] = std::isfinite(values[k]) ? values[k] : kNaN;
}

void evaluateRow(const FrozenRows::Row& row, double x, Side side, int order, double* values)
{
    if (side != Side::Plain && row.form == &kFormulaRow)
        evaluateFormulaBeside(*row.data.formula, x, side == Side::Left, order, values);
    else if (order == 0)
        values[0] = row.form->value(row.data, x);
    else
        row.form->orders(row.data, x, order, values);
}

void evaluateInside(const FrozenRows& rows, double x, Side side, int order, double* values)
{
    std::size_t row = rows.starts.at(x);
    if (side == Side::Left && x == rows.starts.knots()[row])
        --row;
    evaluateRow(rows.rows[row], x, side, order, values);
}

void evaluatePolynomial(const host::SplinePiece& piece, double t, double* values)
{
    const double c2 = 2.0 * piece.c;
    const double d3 = 3.0 * piece.d;
    const double d6 = 6.0 * piece.d;
    values[0] = piece.a + t * (piece.b + t * (piece.c + t * piece.d));
    values[1] = piece.b + t * (c2 + t * d3);
    values[2] = c2 + t * d6;
    values[3] = d6;
}

// The left limit at a knot is exactly the knot's own Y, the `a` of the piece that begins there.
void evaluateInside(const host::SplinePieces& spline, double x, Side side, int, double* values)
{
    const std::size_t index = spline.indexAt(x);
    const double* const knot = spline.knots() + index;
    const host::SplinePiece* const piece = spline.pieces() + index;
    if (side == Side::Left && x == *knot && index > 0) {
        evaluatePolynomial(piece[-1], x - knot[-1], values);
        values[0] = piece->a;
    } else {
        evaluatePolynomial(*piece, x - *knot, values);
    }
}

// Keeps a derivative only if the value and every lower derivative are finite.
[[gnu::noinline]] void takeOutAboveNaN(int order, double* values)
{
    for (int k = 1; k <= order; ++k)
        values[k] = std::isnan(values[k - 1]) ? kNaN : values[k];
}

void evaluateInside(const FrozenExpression& expression, double x, Side side, int order, double* values)
{
    if (side == Side::Plain)
        evaluateFormula(*expression.formula, x, order, values);
    else
        evaluateFormulaBeside(*expression.formula, x, side == Side::Left, order, values);
    if (!areFinite(values, order)) [[unlikely]]
        takeOutAboveNaN(order, values);
}

}  // namespace

inline void FrozenCurve::iInside(double x, Side side, int order, double* values) const noexcept
{
    if (const auto* rows = std::get_if<FrozenRows>(&pieces_))
        evaluateInside(*rows, x, side, order, values);
    else if (const auto* spline = std::get_if<host::SplinePieces>(&pieces_))
        evaluateInside(*spline, x, side, order, values);
    else
        evaluateInside(*std::get_if<FrozenExpression>(&pieces_), x, side, order, values);
}

void FrozenCurve::iExtended(double x, Side side, int order, double* values) const noexcept
{
    if (const auto* rows = std::get_if<FrozenRows>(&pieces_)) {
        evaluateRow(x > firstX_ ? rows->rows.back() : rows->rows.front(), x, side, order, values);
    } else if (const auto* spline = std::get_if<host::SplinePieces>(&pieces_)) {
        for (int k = 0; k <= order; ++k)
            values[k] = spline->outside(x, k);
    } else {
        evaluateInside(*std::get_if<FrozenExpression>(&pieces_), x, side, order, values);
    }
}

// At lastX and whole periods from it the left limit is the end of the curve and the right
// one its start.
void FrozenCurve::iRepeated(double x, Side side, int order, double* values) const noexcept
{
    const double period = lastX_ - firstX_;
    double rest = period > 0.0 ? std::fmod(x - firstX_, period) : 0.0;
    if (rest < 0.0)
        rest += period;
    if (rest == 0.0 || rest == period)
        iInside(side == Side::Left ? lastX_ : firstX_, side, order, values);
    else
        iInside(std::clamp(firstX_ + rest, firstX_, lastX_), side, order, values);
}

[[gnu::noinline]] void FrozenCurve::iBeyond(double x, Side side, Outside outside, int order,
                                            double* values) const noexcept
{
    std::fill_n(values, order + 1, kNaN);
    if (std::isnan(x))
        return;
    switch (outside) {
        case Outside::Extend:
            return iExtended(x, side, order, values);
        case Outside::Hold:
            iInside(x < lastX_ ? firstX_ : lastX_, Side::Plain, 0, values);
            std::fill_n(values + 1, order, 0.0);
            return;
        case Outside::Repeat:
            if (std::isfinite(x))
                iRepeated(x, side, order, values);
            return;
        case Outside::Undefined:
            return;
    }
}

// A short way for the usual cases. Returns NaN for all others.
inline double FrozenCurve::valueInside(double x) const noexcept
{
    if (!(x >= firstX_ && x <= lastX_))
        return kNaN;
    if (const auto* rows = std::get_if<FrozenRows>(&pieces_)) {
        const FrozenRows::Row& row = rows->rows[rows->starts.at(x)];
        return row.form->value(row.data, x);
    }
    const auto* expression = std::get_if<FrozenExpression>(&pieces_);
    return expression != nullptr ? valueOfFormula(*expression->formula, x) : kNaN;
}

void FrozenCurve::evaluate(double x, Side side, Outside outside, int order, double* values) const noexcept
{
    const bool isBetween = x > firstX_ && x < lastX_;
    const bool isInside = isBetween ||
                          (x == firstX_ && side != Side::Left && (side == Side::Plain || x < lastX_)) ||
                          (x == lastX_ && side != Side::Right && (side == Side::Plain || x > firstX_));
    if (isInside) [[likely]]
        iInside(x, side, order, values);
    else
        iBeyond(x, side, outside, order, values);
    if (!areFinite(values, order)) [[unlikely]]
        takeOutInfinite(order, values);
}

}  // namespace curve

double Curve::operator()(double x, int order) const noexcept
{
    if (order < 0 || order > 3) [[unlikely]]
        return engine::kNaN;
    if (order == 0) {
        const double y = frozen_->valueInside(x);
        if (y - y == 0.0) [[likely]]
            return y;
    }
    double values[4];
    frozen_->evaluate(x, Side::Plain, outside_, order, values);
    return values[order];
}

CurveValues Curve::at(double x, Side side) const noexcept
{
    double values[4];
    frozen_->evaluate(x, side, outside_, 3, values);
    return {values[0], values[1], values[2], values[3]};
}

}  // namespace mf
