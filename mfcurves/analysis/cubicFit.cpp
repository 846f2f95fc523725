// SPDX-License-Identifier: MIT

#include "mfcurves/analysis/cubicFit.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "mfcurves/analysis/tableParts.h"
#include "mfcurves/host/SplinePieces.h"

namespace mf::analysis {

using engine::Interval;
using engine::kUnbounded;

namespace {

// A row and the next one, with what is known of the curve between them.
struct Cell {
    double from, to;
    std::size_t part;
    Interval start, end;  // values of the curve
    Interval second;      // derivative in the middle
    Interval third;       // derivative over the cell
};

// How far the cubic is from the curve. At the ends they meet except for rounding, unless the value jumps.
struct CubicError {
    double inside;
    double atEnds;
};

Cell cellOf(double from, double to, std::size_t part, PartOrders& orders)
{
    const PartOrders::InBox box = orders.in(from, to);
    return {from, to, part, box.from[0], box.to[0], box.middle[2], box.over[3]};
}

// The difference is 0 at both ends, so it is at most h^2/8 times its second derivative. This is
// at most its value in the middle plus half the length times the third derivative.
CubicError cubicError(const host::SplinePiece& piece, const Cell& cell)
{
    const double h = cell.to - cell.from;
    const double middle = 0.5 * cell.from + 0.5 * cell.to;
    const double t = middle - cell.from;
    const double second = largestOf(cell.second - Interval(2.0 * piece.c + 6.0 * piece.d * t));
    const double third = largestOf(cell.third - Interval(6.0 * piece.d));
    const double end = piece.a + h * (piece.b + h * (piece.c + h * piece.d));
    const double inside = h * (second + 0.5 * h * third) * h / 8.0;
    return {larger(0.0, inside),
            std::max(largestOf(cell.start - Interval(piece.a)), largestOf(cell.end - Interval(end)))};
}

// False, without effect, if there is no x between the two.
bool appendHalves(double from, double to, std::size_t part, PartOrders& orders, std::vector<Cell>& cells)
{
    const double middle = 0.5 * from + 0.5 * to;
    if (middle <= from || middle >= to)
        return false;
    cells.push_back(cellOf(from, middle, part, orders));
    cells.push_back(cellOf(middle, to, part, orders));
    return true;
}

// Halves the cells whose error is too large. A cell with a bound is halved until the operations of its
// part are spent. Where there is no bound, or a jump, halving proves nothing: such cells are halved while
// they are few, so that the table is narrow there.
std::vector<Cell> halved(const std::vector<Cell>& cells, const std::vector<CubicError>& errors,
                         std::vector<PartOrders>& orders, double allowed)
{
    constexpr std::ptrdiff_t kMostUnbounded = 1000;
    constexpr std::ptrdiff_t kMostJumps = 100;
    const auto isUnbounded = [](const CubicError& error) { return error.inside == kUnbounded; };
    const auto jumps = [&](const CubicError& error) {
        return error.atEnds > allowed && error.atEnds < kUnbounded;
    };
    const bool areUnboundedFew = std::ranges::count_if(errors, isUnbounded) <= kMostUnbounded;
    if (std::ranges::count_if(errors, jumps) > kMostJumps)
        return cells;
    std::vector<Cell> finer;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const Cell& cell = cells[i];
        PartOrders& known = orders[cell.part];
        const bool isOff = errors[i].inside + errors[i].atEnds > allowed;
        const bool mayHelp = isUnbounded(errors[i]) ? areUnboundedFew : !known.knowsNoMore();
        if (!(isOff && mayHelp && appendHalves(cell.from, cell.to, cell.part, known, finer)))
            finer.push_back(cell);
    }
    return finer;
}

// The largest rounding error of the spline's values.
double roundingOf(const std::vector<double>& y)
{
    constexpr double kFewUlps = 64.0 * 0x1p-53;
    double largest = 0.0;
    for (const double value : y)
        largest = std::max(largest, std::fabs(value));
    return kFewUlps * largest;
}

}  // namespace

// Halves cells with too large an error until all are within the tolerance.
CubicFit fitCubic(const Curve& curve, const std::vector<Part>& parts, double tolerance)
{
    constexpr int kMostRounds = 40;
    constexpr std::size_t kMostPoints = 200'000;
    std::vector<PartOrders> orders;
    orders.reserve(parts.size());
    std::vector<Cell> cells;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        orders.emplace_back(parts[i], 0, 5);
        if (!appendHalves(parts[i].from, parts[i].to, i, orders[i], cells))
            cells.push_back(cellOf(parts[i].from, parts[i].to, i, orders[i]));
    }
    for (int round = 1;; ++round) {
        CubicFit fit{{cells.front().from}, {}, 0.0};
        for (const Cell& cell : cells)
            fit.x.push_back(cell.to);
        for (const double x : fit.x)
            fit.y.push_back(curve.at(x, x == fit.x.back() ? Side::Left : Side::Right).y);
        const host::SplinePieces spline(fit.x, fit.y, 1);
        std::vector<CubicError> errors;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            errors.push_back(cubicError(spline.pieces()[i], cells[i]));
            fit.bound = std::max(fit.bound, errors.back().inside + errors.back().atEnds);
        }
        std::vector<Cell> finer = halved(cells, errors, orders, kShareForRounding * tolerance);
        if (round == kMostRounds || finer.size() == cells.size() || finer.size() > kMostPoints) {
            fit.bound += roundingOf(fit.y);
            return fit;
        }
        cells = std::move(finer);
    }
}

}  // namespace mf::analysis
