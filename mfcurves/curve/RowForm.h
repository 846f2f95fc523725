// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/engine/formula.h"
#include "mfcurves/engine/lawForm.h"

namespace mf::curve {

/// Most points that are computed side by side.
constexpr std::size_t kMostPoints = 128;

/// What a row is computed from: the numbers of a law of a known form, or its formula.
union RowData {
    const double* numbers;
    const engine::Formula* formula;
};

/// The functions that compute rows of one form. Values that are not finite stay as they are.
struct RowForm {
    double (*value)(RowData row, double x);
    /// values[k] for k from 0 to `order`; the others up to 3 may be written too.
    void (*orders)(RowData row, double x, int order, double* values);
    /// values[k][i] for k from `lowest` to `highest` at `count` points, at most kMostPoints.
    void (*block)(RowData row, const double* x, std::size_t count, int lowest, int highest,
                  double* const* values);
    /// values[i] at `count` points, at most kMostPoints.
    void (*all)(RowData row, const double* x, std::size_t count, CurveValues* values);
};

extern const RowForm kFormulaRow;

/// Returns the form of rows with such a law and appends its numbers to `numbers`; null for a law
/// without a form.
const RowForm* rowFormOf(const engine::LawForm& law, std::vector<double>& numbers);

/// Sets values[0] to values[order] of a formula at x; NaN if there is no memory for its registers.
void evaluateFormula(const engine::Formula& formula, double x, int order, double* values);

/// The value of a formula at x; NaN if there is no memory for its registers.
double valueOfFormula(const engine::Formula& formula, double x);

/// Like evaluateFormula, but the limit from the left or the right.
void evaluateFormulaBeside(const engine::Formula& formula, double x, bool fromLeft, int order,
                           double* values);

}  // namespace mf::curve
