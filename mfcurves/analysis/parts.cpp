// SPDX-License-Identifier: MIT

#include "mfcurves/analysis/parts.h"

#include <algorithm>
#include <cmath>

#include "mfcurves/curve/FrozenCurve.h"

namespace mf::analysis {

using engine::Interval;

namespace {

// Whether a step is too small for a jump, compared with the magnitude of an order at a few places.
// A few are enough, because the limit for a jump is only a power of ten.
bool isSmall(double step, const EndValues& end, std::size_t k)
{
    constexpr int kPlaces = 8;
    if (end.part == nullptr)
        return step <= kJump * end.size[k];
    const Part& part = *end.part;
    BoxEvaluator evaluator = part.evaluator();
    for (int i = kPlaces; i >= 0; --i) {
        const double share = static_cast<double>(i) / kPlaces;
        const Interval y =
            evaluator.at(i == kPlaces ? part.to : part.from + share * (part.to - part.from))[k];
        if (y.isFinite() && step <= kJump * std::fabs(y.middle()))
            return true;
    }
    return false;
}

// A bound of the magnitude; infinite if no bound is known.
double boundOf(const EndValues& end, std::size_t k)
{
    if (end.part == nullptr)
        return end.size[k];
    const Part& part = *end.part;
    const Interval y = part.evaluator().plainly(part.from, part.to)[k];
    return y.isFinite() ? y.largest() : engine::kUnbounded;
}

EndValues valuesAt(const Part& part, BoxEvaluator& evaluator, double x)
{
    EndValues values;
    values.values.fill(Interval::nothing());
    const Enclosures at = evaluator.at(x);
    std::copy_n(at.begin(), evaluator.highest() + 1, values.values.begin());
    values.part = &part;
    return values;
}

}  // namespace

Range cutToCurve(const Curve& curve, Range range)
{
    if (!(range.from <= range.to))
        return {1.0, 0.0};
    return {std::max(range.from, curve.firstX()), std::min(range.to, curve.lastX())};
}

std::vector<curve::CurvePiece> formulaPieces(const Curve& curve, Range range)
{
    if (curve.frozen().spline() != nullptr || range.from > range.to)
        return {};
    std::vector<curve::CurvePiece> pieces = curve::piecesOf(curve);
    const bool point = range.from == range.to;
    std::erase_if(pieces, [&](const curve::CurvePiece& piece) {
        return point ? !(piece.start <= range.from && range.from <= piece.end)
                     : piece.end <= range.from || piece.start >= range.to;
    });
    return pieces;
}

void appendParts(const Curve& curve, const curve::CurvePiece& piece, Range range, std::vector<Part>& parts)
{
    const double from = std::max(piece.start, range.from);
    const double to = std::min(piece.end, range.to);
    const auto formula =
        std::make_shared<FormulaPiece>(std::get<curve::FormulaText>(piece.formula), from, to);
    if (!formula->hasFormula())
        return;
    const std::size_t count = formula->stretches().size();
    for (std::size_t i = 0; i < count; ++i) {
        const Stretch& stretch = formula->stretches()[i];
        const bool begins = i > 0 || from == piece.start;
        const bool ends = i + 1 < count || to == piece.end;
        parts.push_back({stretch.from, stretch.to, begins && stretch.from >= curve.firstX(), ends, i > 0,
                         piece.row, formula, i});
    }
}

std::vector<Part> partsOf(const Curve& curve, Range range)
{
    std::vector<Part> parts;
    for (const curve::CurvePiece& piece : formulaPieces(curve, range))
        appendParts(curve, piece, range, parts);
    return parts;
}

EndValues startOf(const Part& part, BoxEvaluator& evaluator)
{
    return valuesAt(part, evaluator, part.from);
}

EndValues endOf(const Part& part, BoxEvaluator& evaluator)
{
    return valuesAt(part, evaluator, part.to);
}

EndValues startOf(const Part& part)
{
    BoxEvaluator evaluator = part.evaluator();
    return startOf(part, evaluator);
}

EndValues endOf(const Part& part)
{
    BoxEvaluator evaluator = part.evaluator();
    return endOf(part, evaluator);
}

// Two sides that are equal within rounding do not jump.
bool jumps(const EndValues& left, const EndValues& right, int order)
{
    const auto k = static_cast<std::size_t>(order);
    const Interval& a = left.values[k];
    const Interval& b = right.values[k];
    if (!a.isFinite() || !b.isFinite())
        return a.isFinite() != b.isFinite();
    const double step = std::fabs(a.middle() - b.middle());
    const bool apart = a.hi < b.lo || b.hi < a.lo;
    if (!apart || !(step > kJump * std::max(std::fabs(a.middle()), std::fabs(b.middle()))))
        return false;
    // Most jumps are large compared with the bounds, which cost less.
    if (step > kJump * std::max(boundOf(left, k), boundOf(right, k)))
        return true;
    return !isSmall(step, left, k) && !isSmall(step, right, k);
}

int lowestJump(const EndValues& left, const EndValues& right, int upTo)
{
    int order = 0;
    while (order <= upTo && !jumps(left, right, order))
        ++order;
    return order;
}

}  // namespace mf::analysis
