// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include "mfcurves/analysis/boxes.h"
#include "mfcurves/analysis/zeros.h"
#include "mfcurves/curve/CurvePieces.h"

namespace mf::analysis {

/// A part of a row or expression on which no condition changes, so that its formula
/// is smooth wherever it has a value.
struct Stretch {
    double from;
    double to;
    std::vector<engine::NodeId> orders;  // without conditions
    bool isSmooth = true;                // false: some conditions are not decided, or an end has no limit
    double kinkError = 0.0;              // how far the kink may be from `from`
};

/// Where a condition is at its edge without cutting a stretch, because it decides the same on both sides
/// or the place is an end. There the formula may have a value of its own, as if(x^2: 0, 1, 0) has at 0.
struct Touch {
    double x;
    Range box;  // the place is known only to rounding
};

/// The range in which a zero at x may be, given the error of x, widened for rounding.
Range nearZero(double x, double error);

class FormulaPiece;

/// Where rounding may decide conditions of a piece otherwise than in its stretches: touches and kinks.
std::vector<Range> undecidedBoxes(const FormulaPiece& piece);

/// One formula of a curve between two x, with its stretches.
///
/// Threads: operations change the graph and the budget, so one object is for one thread.
class FormulaPiece {
public:
    /// The part of a piece between two x.
    FormulaPiece(const curve::FormulaText& text, double from, double to);

    /// False: the text is not a function of one variable.
    bool hasFormula() const { return formula_ != nullptr; }
    const std::vector<Stretch>& stretches() const { return stretches_; }
    const std::vector<Touch>& touches() const { return touches_; }
    /// Evaluates the orders of a stretch. The evaluator refers to this object.
    BoxEvaluator evaluator(const Stretch& stretch) { return {formula_->graph(), stretch.orders, budget_}; }
    /// The same for the formula with its conditions.
    BoxEvaluator wholeEvaluator() { return {formula_->graph(), formula_->orders(), budget_}; }
    FormulaGraph& formula() { return *formula_; }
    Budget& budget() { return budget_; }
    /// For another search of its own.
    void renewBudget() { budget_ = Budget(kOperationsPerPiece); }

private:
    void iCut(double from, double to, double kinkError, Decisions decisions);
    bool iCutAt(const Condition& condition, double from, double to, double kinkError, Decisions& decisions);
    std::vector<Zero> iCuts(const Zeros& changes, double from, double to);
    void iDropSlivers();
    Zeros iChanges(const Condition& condition, engine::NodeId function, double from, double to);
    void iAddTouch(const Zero& zero, double from, double to);
    void iAppend(double from, double to, double kinkError, const Decisions& decisions, bool isSmooth);

    Budget budget_{kOperationsPerPiece};
    std::unique_ptr<FormulaGraph> formula_;
    std::vector<Stretch> stretches_;
    std::vector<Touch> touches_;
};

}  // namespace mf::analysis
