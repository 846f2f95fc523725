// SPDX-License-Identifier: MIT
#include "mfcurves/drawing/sampling.h"

#include <algorithm>
#include <cmath>

namespace mf::drawing {

namespace {

constexpr int kCells = 6400;      // of a whole picture, several per pixel
constexpr int kCellsOfRow = 100;  // at least, for a row; even, so that the middle of a law is a sample

void addPiece(std::vector<Piece>& pieces, double from, double to, int row, Range range)
{
    from = std::max(from, range.from);
    to = std::min(to, range.to);
    if (from < to)
        pieces.push_back({from, to, row});
}

}  // namespace

std::vector<Piece> piecesWithin(const Curve& curve, Range range)
{
    std::vector<Piece> pieces;
    const CurveDefinition& definition = curve.definition();
    if (const auto* rows = std::get_if<CurveDefinition::Segments>(&definition.shape)) {
        double start = rows->startX;
        for (std::size_t i = 0; i < rows->rows.size(); ++i) {
            addPiece(pieces, start, rows->rows[i].endX, static_cast<int>(i) + 1, range);
            start = rows->rows[i].endX;
        }
    } else if (const auto* points = std::get_if<CurveDefinition::Points>(&definition.shape)) {
        for (std::size_t i = 1; i < points->x.size(); ++i)
            addPiece(pieces, points->x[i - 1], points->x[i], 0, range);
    } else {
        addPiece(pieces, range.from, range.to, 0, range);
    }
    return pieces;
}

int cellsOf(const Piece& piece, std::size_t pieceCount, double width)
{
    const int least = piece.row > 0 ? kCellsOfRow : 2;
    const double share = width > 0.0 ? (piece.to - piece.from) / width : 1.0;
    const int cells = pieceCount > kCells ? least : std::max(least, static_cast<int>(share * kCells));
    return cells + cells % 2;
}

// Evenly spaced samples alone would show a fast vibration as a slow wave. Therefore each cell has another
// sample, at a place that differs from cell to cell: the fractional parts of the multiples of the golden
// ratio, which have no pattern.
std::vector<Sample> samplesOf(const Curve& curve, const Piece& piece, int cells)
{
    constexpr double kGoldenRatio = 0.6180339887498949;
    std::vector<double> xs;
    xs.reserve(2 * static_cast<std::size_t>(cells));
    for (int cell = 0; cell < cells; ++cell) {
        const double multiple = (cell + 1) * kGoldenRatio;
        for (double place : {static_cast<double>(cell), cell + multiple - std::floor(multiple)}) {
            const double x = std::lerp(piece.from, piece.to, place / cells);
            if (x > piece.from && x < piece.to)
                xs.push_back(x);
        }
    }
    std::vector<CurveValues> values(xs.size());
    curve.evaluate(xs.data(), xs.size(), values.data());
    std::vector<Sample> samples;
    samples.reserve(xs.size() + 2);
    samples.push_back({piece.from, curve.at(piece.from, Side::Right)});
    for (std::size_t i = 0; i < xs.size(); ++i)
        samples.push_back({xs[i], values[i]});
    samples.push_back({piece.to, curve.at(piece.to, Side::Left)});
    return samples;
}

}  // namespace mf::drawing
