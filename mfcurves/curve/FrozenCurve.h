// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <variant>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/engine/formula.h"
#include "mfcurves/host/SplinePieces.h"

namespace mf::curve {

/// The rows of a table that have a length, in ascending order.
struct FrozenRows {
    struct Row {
        double end;
        int number;  // in the definition, from 1
        std::shared_ptr<const engine::Formula> formula;
    };

    std::vector<double> starts;
    std::vector<Row> rows;
};

struct FrozenExpression {
    double from;
    double to;
    std::shared_ptr<const engine::Formula> formula;
};

/// A definition, checked, with everything compiled that its evaluation needs. Constant.
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
    /// is not finite.
    void evaluate(double x, Side side, Outside outside, int order, double* values) const noexcept;

private:
    void iFreeze(const SegmentShape& shape, std::vector<Problem>& problems);
    void iFreeze(const PointShape& shape, std::vector<Problem>& problems);
    void iFreeze(const ExpressionShape& shape, std::vector<Problem>& problems);
    void iInside(double x, Side side, int order, double* values) const noexcept;
    void iExtended(double x, Side side, int order, double* values) const noexcept;
    void iOutside(double x, Side side, Outside outside, int order, double* values) const noexcept;
    void iRepeated(double x, Side side, int order, double* values) const noexcept;

    CurveDefinition definition_;
    std::vector<Problem> warnings_;
    double firstX_ = 0.0;
    double lastX_ = 0.0;
    std::variant<FrozenRows, host::SplinePieces, FrozenExpression> pieces_;
};

}  // namespace mf::curve
