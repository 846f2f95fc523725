// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/host/SplinePieces.h"

/// What a curve is made of, for those who examine it.
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
    int row = 0;  // of a table, or of the point where the piece begins, both from 1; 0 for an expression
    /// The formula, with the numbers of its row, or a polynomial in x - start.
    std::variant<FormulaText, host::SplinePiece> formula;
};

/// The pieces in ascending order, each starting where the previous one ends. Rows of no
/// length are not among them. A single point is one piece of no length.
std::vector<CurvePiece> piecesOf(const Curve& curve);

}  // namespace mf::curve
