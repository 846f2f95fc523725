// SPDX-License-Identifier: MIT

#include "mfcurves/analysis/tableParts.h"

#include <string>

#include "mfcurves/curve/FrozenCurve.h"
#include "mfcurves/curve/lawFormula.h"
#include "mfcurves/host/SplinePieces.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/numbers.h"

namespace mf::analysis {

using engine::Interval;

namespace {

std::wstring number(double value)
{
    return L"(" + platform::widen(curve::allDigits(value)) + L")";
}

// A polynomial between two points as a formula.
curve::FormulaText textOf(const host::SplinePiece& piece, double knot)
{
    const std::wstring t = L"(x-" + number(knot) + L")";
    return {number(piece.a) + L"+" + t + L"*(" + number(piece.b) + L"+" + t + L"*(" + number(piece.c) + L"+" +
                t + L"*" + number(piece.d) + L"))",
            true, L"x"};
}

}  // namespace

std::vector<Part> smoothParts(const Curve& curve)
{
    const host::SplinePieces* spline = curve.frozen().spline();
    if (spline == nullptr)
        return partsOf(curve, all);
    std::vector<Part> parts;
    for (std::size_t i = 0; i + 1 < spline->count(); ++i) {
        const double knot = spline->knots()[i];
        curve::CurvePiece piece;
        piece.start = knot;
        piece.end = spline->knots()[i + 1];
        piece.formula = textOf(spline->pieces()[i], knot);
        appendParts(curve, piece, all, parts);
    }
    return parts;
}

PartOrders::PartOrders(const Part& part, std::size_t lowest, std::size_t count) : budget_(kOperations)
{
    const std::vector<engine::NodeId>& known = part.smooth().orders;
    std::vector<engine::NodeId> orders(known.begin(), known.end());
    part.piece->formula().differentiate(orders, lowest + count);
    if (orders.size() < lowest + count || !part.smooth().isSmooth)
        return;
    orders.erase(orders.begin(), orders.begin() + static_cast<std::ptrdiff_t>(lowest));
    orders.resize(count);
    evaluator_.emplace(part.piece->formula().graph(), orders, budget_);
}

PartOrders::InBox PartOrders::in(double from, double to)
{
    InBox box;
    if (knowsNoMore()) {
        for (Enclosures* orders : {&box.from, &box.middle, &box.to, &box.over})
            orders->fill(Interval::everything());
        return box;
    }
    const double middle = 0.5 * from + 0.5 * to;
    box.from = evaluator_->at(from);
    box.middle = evaluator_->at(middle);
    box.to = evaluator_->at(to);
    box.over = evaluator_->over(from, to, box.from, middle, box.middle, box.to);
    return box;
}

}  // namespace mf::analysis
