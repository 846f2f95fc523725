// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "mfcurves/drawing/diagram.h"

namespace mf::drawing {

/// One row, one piece between points, or the whole of an expression, as far as it is within a range.
struct Piece {
    double from;
    double to;
    int row = 0;  ///< of a table of rows, from 1; else 0
};

/// The pieces of a curve within a range, in ascending order. Rows of length 0 are left out. An expression is
/// one piece, as wide as the range.
std::vector<Piece> piecesWithin(const Curve& curve, Range range);

/// The value and the derivatives of a curve at one x.
struct Sample {
    double x;
    CurveValues values;
};

/// Samples of a piece from end to end, ascending in x. At both ends they are the limits from inside.
std::vector<Sample> samplesOf(const Curve& curve, const Piece& piece, int cells);

/// The number of cells to draw a piece with: one of `pieceCount` pieces on a range of length `width`.
int cellsOf(const Piece& piece, std::size_t pieceCount, double width);

}  // namespace mf::drawing
