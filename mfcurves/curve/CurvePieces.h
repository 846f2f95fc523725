// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/host/SplinePieces.h"

/// The pieces of a curve, for its analysis.
namespace mf::curve {

/// A text of one variable, as the engine compiles it.
struct FormulaText {
    std::wstring text;
    bool hasVariable = false;  // false: the one free name in the text is the variable
    std::wstring variable;
};

/// One piece of a curve, on [start, end].
struct CurvePiece {
    double start = 0.0;
    double end = 0.0;
    int row = 0;  // number from 1 of the row, or of the point where the piece begins; 0 for an expression
    /// The formula, with the numbers of its row, or a polynomial in x - start.
    std::variant<FormulaText, host::SplinePiece> formula;
};

/// The pieces in ascending order, each starting where the previous one ends. Rows of
/// length 0 are left out. A single point is one piece of length 0.
std::vector<CurvePiece> piecesOf(const Curve& curve);

}  // namespace mf::curve
