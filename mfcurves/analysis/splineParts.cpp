// SPDX-License-Identifier: MIT

#include "mfcurves/analysis/splineParts.h"

#include <algorithm>
#include <cmath>

namespace mf::analysis {
namespace {

// The zeros of p + q t + r t^2, without cancellation: the larger one in magnitude first,
// the other one from their product.
int quadraticZeros(double p, double q, double r, double* t)
{
    if (r == 0.0) {
        if (q == 0.0)
            return 0;
        t[0] = -p / q;
        return 1;
    }
    // A common factor changes no zero and keeps the squares from overflowing.
    const double scale = std::max({std::fabs(p), std::fabs(q), std::fabs(r)});
    p /= scale;
    q /= scale;
    r /= scale;
    const double discriminant = q * q - 4.0 * p * r;
    if (discriminant < 0.0)
        return 0;
    const double sum = -0.5 * (q + std::copysign(std::sqrt(discriminant), q));
    t[0] = sum / r;
    if (sum == 0.0 || discriminant == 0.0)
        return 1;
    t[1] = p / sum;
    if (t[1] < t[0])
        std::swap(t[0], t[1]);
    return 2;
}

// The zero of an order minus `value` between two t where it has different signs.
double zeroBetween(const SplinePart& part, int order, double value, double low, double high)
{
    constexpr int kMostSteps = 200;
    const bool rises = part.at(order, low) < value;
    double t = 0.5 * low + 0.5 * high;
    for (int i = 0; i < kMostSteps; ++i) {
        const double y = part.at(order, t) - value;
        if (y == 0.0)
            return t;
        ((y > 0.0) == rises ? high : low) = t;
        double next = t - y / part.at(order + 1, t);
        if (!(next > low && next < high))
            next = 0.5 * low + 0.5 * high;
        if (next == t || next <= low || next >= high)
            return t;
        t = next;
    }
    return t;
}

}  // namespace

// Between its stationary points the polynomial rises or falls throughout. A place where
// it only touches the value is a stationary point.
int SplinePart::zeros(int order, double value, std::array<double, 3>& t) const
{
    std::array<double, 4> cuts;
    std::size_t count = 0;
    cuts[count++] = from;
    double stationary[2];
    const int some = order == 0   ? quadraticZeros(c.b, 2.0 * c.c, 3.0 * c.d, stationary)
                     : order == 1 ? quadraticZeros(2.0 * c.c, 6.0 * c.d, 0.0, stationary)
                                  : 0;
    for (int i = 0; i < some; ++i) {
        if (stationary[i] > from && stationary[i] < to)
            cuts[count++] = stationary[i];
    }
    cuts[count++] = to;

    const double noise = 4.0 * 0x1p-52 * std::max(size(order), std::fabs(value));
    const auto isZero = [&](std::size_t i) { return std::fabs(at(order, cuts[i]) - value) <= noise; };
    int found = 0;
    for (std::size_t i = 0; i + 1 < count; ++i) {
        const bool first = isZero(i);
        if (first && i > 0 && found < 3)
            t[static_cast<std::size_t>(found++)] = cuts[i];
        if (first || isZero(i + 1) || found == 3)
            continue;
        if ((at(order, cuts[i]) > value) != (at(order, cuts[i + 1]) > value))
            t[static_cast<std::size_t>(found++)] = zeroBetween(*this, order, value, cuts[i], cuts[i + 1]);
    }
    return found;
}

SplinePart splinePart(const host::SplinePieces& spline, std::size_t i, Range range)
{
    const double knot = spline.knots()[i];
    const bool single = spline.count() == 1;
    const double end = single ? knot : spline.knots()[i + 1];
    return {spline.pieces()[i], knot, std::max(range.from, knot) - knot, std::min(range.to, end) - knot};
}

PointRange pointsIn(const host::SplinePieces& spline, Range range)
{
    const std::size_t lastPiece = spline.count() > 1 ? spline.count() - 2 : 0;
    const std::size_t first = std::min(spline.indexAt(range.from), lastPiece);
    std::size_t last = std::min(spline.indexAt(range.to), lastPiece);
    if (last > first && spline.knots()[last] == range.to)
        --last;
    return {first, last};
}

EndValues splineEnd(const SplinePart& part, double t)
{
    EndValues end;
    for (int order = 0; order < kOrdersOfBreaks; ++order) {
        const auto k = static_cast<std::size_t>(order);
        const double y = part.at(order, t);
        const double rounding = 8.0 * 0x1p-53 * part.size(order);
        end.values[k] = {y - rounding, y + rounding};
        end.size[k] = std::max({std::fabs(part.at(order, part.from)), std::fabs(part.at(order, part.to)),
                                std::fabs(part.at(order, 0.5 * (part.from + part.to)))});
    }
    return end;
}

}  // namespace mf::analysis
