// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <variant>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/curve/RowForm.h"
#include "mfcurves/engine/formula.h"
#include "mfcurves/host/KnotIndex.h"
#include "mfcurves/host/SplinePieces.h"

namespace mf::curve {

/// The rows of a table that have a length, in ascending order. Each ends where the next one
/// starts.
struct FrozenRows {
    struct Row {
        const RowForm* form;
        RowData data;  // in the two lists below
    };

    host::KnotIndex starts;  // of the rows, and the end of the last one
    std::vector<Row> rows;   // the last one twice, so that it also begins at its own end
    std::vector<double> numbers;
    std::vector<std::shared_ptr<const engine::Formula>> formulas;
};

struct FrozenExpression {
    std::shared_ptr<const engine::Formula> formula;
};

/// A checked definition and the compiled form of all that its evaluation needs. It never
/// changes.
class FrozenCurve {
public:
    /// Throws CurveError with every problem of the definition.
    explicit FrozenCurve(CurveDefinition definition, std::vector<Problem> warnings = {});

    const CurveDefinition& definition() const { return definition_; }
    const std::vector<Problem>& warnings() const { return warnings_; }
    double firstX() const { return firstX_; }
    double lastX() const { return lastX_; }
    /// The polynomials of a curve through points; null for other kinds.
    const host::SplinePieces* spline() const { return std::get_if<host::SplinePieces>(&pieces_); }

    /// Sets values[k], for k from 0 to `order`, to the derivative of order k at x; NaN where it
    /// is not finite. `values` has room for four.
    void evaluate(double x, Side side, Outside outside, int order, double* values) const noexcept;

    /// The value at x between the ends of rows or an expression; NaN for points and every other x.
    double valueInside(double x) const noexcept;

    /// Computes the first x, and as many of the following ones, up to `count` in all, as can be
    /// computed together with it. Sets y[i] to the derivative of that order for each of them and
    /// returns their number, at least 1.
    std::size_t evaluateRun(const double* x, std::size_t count, Outside outside, int order,
                            double* y) const noexcept;
    /// The same for all orders.
    std::size_t evaluateRun(const double* x, std::size_t count, Outside outside,
                            CurveValues* values) const noexcept;

private:
    void iFreeze(const SegmentShape& shape, std::vector<Problem>& problems);
    void iFreeze(const PointShape& shape, std::vector<Problem>& problems);
    void iFreeze(const ExpressionShape& shape, std::vector<Problem>& problems);
    struct Run {
        FrozenRows::Row row;
        std::size_t length;
    };
    Run iRun(const double* x, std::size_t count, Outside outside) const noexcept;
    const FrozenRows* iMixedRows(std::size_t count) const noexcept;
    std::size_t iEvaluateMixed(const FrozenRows& rows, const double* x, std::size_t count, Outside outside,
                               int order, double* y) const noexcept;
    std::size_t iEvaluateMixed(const FrozenRows& rows, const double* x, std::size_t count, Outside outside,
                               CurveValues* values) const noexcept;
    void iInside(double x, Side side, int order, double* values) const noexcept;
    void iBeyond(double x, Side side, Outside outside, int order, double* values) const noexcept;
    void iExtended(double x, Side side, int order, double* values) const noexcept;
    void iRepeated(double x, Side side, int order, double* values) const noexcept;

    CurveDefinition definition_;
    std::vector<Problem> warnings_;
    double firstX_ = 0.0;
    double lastX_ = 0.0;
    std::variant<FrozenRows, host::SplinePieces, FrozenExpression> pieces_;
};

}  // namespace mf::curve
