// SPDX-License-Identifier: MIT

#include "mfcurves/host/Spline.h"

#include <bit>
#include <cmath>
#include <utility>
#include <vector>

#include "mfcurves/host/SplinePieces.h"

namespace mf::host {

Spline::Spline() = default;

Spline::~Spline() = default;

void Spline::setKind(int kind)
{
    kind_ = kind;
    iForgetPieces();
}

void Spline::copyFrom(ISimSplineData_c* source)
{
    if (source == nullptr || source == this)
        return;
    clearPoints();
    for (const auto& [x, y] : source->getPointMap())
        addPoint(x, y);
    setKind(source->getKind());
}

void Spline::clearPoints()
{
    points_.clear();
    iForgetPieces();
}

void Spline::addPoint(double x, double y)
{
    if (!std::isfinite(x))
        return;
    points_.insert_or_assign(points_.end(), x, y);
    iForgetPieces();
}

double Spline::getValue(double x)
{
    return iEvaluate<0>(x);
}

double Spline::getFirstDerivative(double x)
{
    return iEvaluate<1>(x);
}

double Spline::getSecondDerivative(double x)
{
    return iEvaluate<2>(x);
}

double Spline::getThirdDerivative(double x)
{
    return iEvaluate<3>(x);
}

// Mostly x is in the piece used last, so that case takes as few instructions as
// possible. Doubles from 0 on have the order of their bits, and the bits of negative
// doubles and of NaN are above all of those, so one comparison tests 0 <= t < length.
template <int order>
double Spline::iEvaluate(double x)
{
    const double t = x - current_.start;
    if (std::bit_cast<std::uint64_t>(t) < current_.lengthBits)
        return iOrderAt<order>(t);
    return iStepAndEvaluate<order>(x);
}

template <int order>
double Spline::iOrderAt(double t) const
{
    if constexpr (order == 0)
        return current_.a + t * (current_.b + t * (current_.c + t * current_.d));
    else if constexpr (order == 1)
        return current_.b + t * (current_.c2 + t * current_.d3);
    else if constexpr (order == 2)
        return current_.c2 + t * current_.d6;
    else
        return current_.d6;
}

// Most callers step along a curve, so the next piece is tried before a search. Not
// inlined, so that iEvaluate need not save and restore registers.
template <int order>
[[gnu::noinline]] double Spline::iStepAndEvaluate(double x)
{
    const double* const knot = current_.knot;
    if (!(x >= knot[1] && x < knot[2]))
        return iSearchAndEvaluate(x, order);
    iEnter(knot + 1, current_.piece + 1);
    return iOrderAt<order>(x - current_.start);
}

double Spline::iSearchAndEvaluate(double x, int order)
{
    if (pieces_ == nullptr)
        iBuild();
    if (!(x >= pieces_->firstX() && x <= pieces_->lastX()))
        return pieces_->outside(x, order);
    const std::size_t index = pieces_->indexAt(x);
    iEnter(pieces_->knots() + index, pieces_->pieces() + index);
    const double t = x - current_.start;
    switch (order) {
        case 0:
            return iOrderAt<0>(t);
        case 1:
            return iOrderAt<1>(t);
        case 2:
            return iOrderAt<2>(t);
        default:
            return iOrderAt<3>(t);
    }
}

void Spline::iEnter(const double* knot, const SplinePiece* piece)
{
    const double length = knot[1] - knot[0];
    current_ = {knot[0],        std::bit_cast<std::uint64_t>(length),
                piece->a,       piece->b,
                piece->c,       piece->d,
                2.0 * piece->c, 3.0 * piece->d,
                6.0 * piece->d, knot,
                piece};
}

void Spline::iBuild()
{
    std::vector<double> x;
    std::vector<double> y;
    x.reserve(points_.size() + 2);  // room for the two that KnotIndex adds
    y.reserve(points_.size());
    for (const auto& [pointX, pointY] : points_) {
        x.push_back(pointX);
        y.push_back(pointY);
    }
    pieces_ = std::make_unique<const SplinePieces>(std::move(x), y, kind_);
}

void Spline::iForgetPieces()
{
    pieces_.reset();
    current_ = {};
}

}  // namespace mf::host
