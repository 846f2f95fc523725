// SPDX-License-Identifier: MIT

#include "mfcurves/curve/CurvePieces.h"

#include "mfcurves/curve/FrozenCurve.h"
#include "mfcurves/curve/lawFormula.h"
#include "mfcurves/platform/encoding.h"

namespace mf::curve {
namespace {

std::vector<CurvePiece> piecesOf(const SegmentShape& shape, const host::SplinePieces*)
{
    std::vector<CurvePiece> pieces;
    double startX = shape.startX;
    double startValue = shape.startValue;
    int number = 0;
    LawFinder laws(shape.laws);
    for (const CurveRow& row : shape.rows) {
        ++number;
        if (row.endX > startX) {
            FormulaText text;
            lawFormula(*laws.named(row.profile).law, startX, startValue, row, shape.sixDecimals, text);
            pieces.push_back({startX, row.endX, number, std::move(text)});
        }
        startX = row.endX;
        startValue = row.value;
    }
    return pieces;
}

std::vector<CurvePiece> piecesOf(const PointShape& shape, const host::SplinePieces* spline)
{
    std::vector<CurvePiece> pieces;
    const std::size_t count = shape.x.size();
    if (count == 1)
        pieces.push_back({shape.x[0], shape.x[0], 1, spline->pieces()[0]});
    for (std::size_t i = 0; i + 1 < count; ++i)
        pieces.push_back({shape.x[i], shape.x[i + 1], static_cast<int>(i) + 1, spline->pieces()[i]});
    return pieces;
}

std::vector<CurvePiece> piecesOf(const ExpressionShape& shape, const host::SplinePieces*)
{
    return {{shape.from, shape.to, 0, FormulaText{platform::widen(shape.text), false, {}}}};
}

}  // namespace

std::vector<CurvePiece> piecesOf(const Curve& curve)
{
    const FrozenCurve& frozen = curve.frozen();
    return std::visit([&](const auto& shape) { return piecesOf(shape, frozen.spline()); },
                      frozen.definition().shape);
}

}  // namespace mf::curve
