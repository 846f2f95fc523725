// SPDX-License-Identifier: MIT

#include "mfcurves/analysis/stretches.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <set>
#include <span>

#include "mfcurves/engine/functionTable.h"

namespace mf::analysis {

using engine::FunctionId;
using engine::Interval;
using engine::NodeId;
using Kind = Condition::Kind;

namespace {

constexpr std::size_t kMostStretches = 2000;

// The whole number to which a condition of whole numbers maps a value.
double wholeOf(const Condition& condition, double value)
{
    if (condition.kind == Kind::Turns)
        return std::trunc(value);
    return engine::function(condition.function).value1(value);
}

double decisionAt(const Condition& condition, const Interval& value)
{
    if (condition.kind == Kind::Sign || condition.kind == Kind::Order)
        return value.isZero() ? 0.0 : value.middle() < 0.0 ? -1.0 : 1.0;
    return wholeOf(condition, value.middle());
}

// The decision between two places where it may change. If the condition may have no value in between, as at
// a pole, the decision has to be the same at several places; nothing if it is not.
std::optional<double> decisionBetween(const Condition& condition, BoxEvaluator& function, double from,
                                      double to, bool mayHaveNoValue)
{
    constexpr int kSeveral = 15;
    const int count = mayHaveNoValue ? kSeveral : 1;
    std::optional<double> decision;
    for (int i = 1; i <= count; ++i) {
        const double share = static_cast<double>(i) / (count + 1);
        const Interval value = function.at(from * (1.0 - share) + to * share)[0];
        if (mayHaveNoValue && !value.isFinite())
            return {};
        const double here = decisionAt(condition, value);
        if (decision && *decision != here)
            return {};
        decision = here;
    }
    return decision;
}

}  // namespace

Range nearZero(double x, double error)
{
    const double reach = 2.0 * error + 4.0 * 0x1p-52 * std::fabs(x);
    return {x - reach, x + reach};
}

std::vector<Range> undecidedBoxes(const FormulaPiece& piece)
{
    std::vector<Range> boxes;
    for (const Touch& touch : piece.touches())
        boxes.push_back(touch.box);
    for (std::size_t i = 1; i < piece.stretches().size(); ++i)
        boxes.push_back(nearZero(piece.stretches()[i].from, piece.stretches()[i].kinkError));
    return boxes;
}

FormulaPiece::FormulaPiece(const curve::FormulaText& text, double from, double to)
    : formula_(FormulaGraph::make(text))
{
    if (formula_ != nullptr)
        iCut(from, to, 0.0, {});
    iDropSlivers();
}

// Where two conditions change at the same place except for rounding, what is between is no stretch but a
// touch.
void FormulaPiece::iDropSlivers()
{
    constexpr double kFewUlps = 8.0 * 0x1p-52;
    const auto isSliver = [](const Stretch& stretch) {
        return stretch.to - stretch.from <= kFewUlps * std::fabs(stretch.to);
    };
    for (std::size_t i = 1; i + 1 < stretches_.size();) {
        const Stretch& sliver = stretches_[i];
        if (!isSliver(sliver)) {
            ++i;
            continue;
        }
        const double error =
            std::max({sliver.kinkError, stretches_[i + 1].kinkError, sliver.to - sliver.from});
        touches_.push_back({sliver.from, nearZero(sliver.from, error)});
        stretches_[i + 1].from = sliver.from;
        stretches_[i + 1].kinkError = error;
        stretches_.erase(stretches_.begin() + static_cast<std::ptrdiff_t>(i));
    }
}

// Conditions are decided one after the other, inner ones first. Each cuts the stretch
// where it changes; the parts continue with the conditions that are open for them.
void FormulaPiece::iCut(double from, double to, double kinkError, Decisions decisions)
{
    for (;;) {
        std::optional<Condition> open;
        budget_.spend(formula_->nodesOfOrders());
        for (const NodeId order : formula_->orders()) {
            open = formula_->openCondition(order, decisions);
            if (open)
                break;
        }
        if (!open)
            return iAppend(from, to, kinkError, decisions, true);
        if (stretches_.size() >= kMostStretches || budget_.isSpent() || formula_->graph().full())
            return iAppend(from, to, kinkError, decisions, false);
        if (iCutAt(*open, from, to, kinkError, decisions))
            return;
    }
}

// Decides a condition in the middle of each part between two places where it may change.
// True if the stretch was cut and its parts are done; false if it is still whole and the
// condition is now among the decisions.
bool FormulaPiece::iCutAt(const Condition& condition, double from, double to, double kinkError,
                          Decisions& decisions)
{
    const NodeId function = formula_->decided(formula_->functionOf(condition), decisions);
    const Zeros changes = iChanges(condition, function, from, to);
    if (!changes.complete || changes.hasGap) {
        iAppend(from, to, kinkError, decisions, false);
        return true;
    }

    const std::vector<Zero> cuts = iCuts(changes, from, to);
    const NodeId root[] = {function};
    BoxEvaluator evaluator(formula_->graph(), root, budget_);
    std::vector<double> parts;
    for (std::size_t i = 0; i <= cuts.size(); ++i) {
        const double start = i == 0 ? from : cuts[i - 1].x;
        const double end = i == cuts.size() ? to : cuts[i].x;
        const auto decision = decisionBetween(condition, evaluator, start, end, !changes.unsure.empty());
        if (!decision || budget_.isSpent()) {
            iAppend(from, to, kinkError, decisions, false);
            return true;
        }
        if (i > 0 && parts.back() == *decision)
            iAddTouch(cuts[i - 1], from, to);
        parts.push_back(*decision);
    }
    if (std::all_of(parts.begin(), parts.end(), [&](double part) { return part == parts.front(); })) {
        decisions[condition] = parts.front();
        return false;
    }
    for (std::size_t i = 0; i < parts.size();) {
        const std::size_t first = i;
        const double start = first == 0 ? from : cuts[first - 1].x;
        const double error = first == 0 ? kinkError : cuts[first - 1].error;
        if (budget_.isSpent()) {
            iAppend(start, to, error, decisions, false);
            return true;
        }
        while (i < parts.size() && parts[i] == parts[first])
            ++i;
        Decisions decided = decisions;
        decided[condition] = parts[first];
        iCut(start, i == parts.size() ? to : cuts[i - 1].x, error, std::move(decided));
    }
    return true;
}

// Returns the places inside a stretch where a condition may change, ascending. Adds those at its ends as
// touches.
std::vector<Zero> FormulaPiece::iCuts(const Zeros& changes, double from, double to)
{
    std::vector<Zero> all = changes.places;
    for (const Range& flat : changes.flat) {
        all.push_back({flat.from, 0.0});
        all.push_back({flat.to, 0.0});
    }
    // The sign may also change at a pole.
    std::set<double> known;
    for (const Zero& zero : all)
        known.insert(zero.x);
    for (const Range& unsure : changes.unsure) {
        for (const double x : {unsure.from, unsure.to}) {
            if (known.insert(x).second)
                all.push_back({x, 0.0});
        }
    }
    std::ranges::sort(all, {}, &Zero::x);
    std::vector<Zero> cuts;
    for (const Zero& zero : all) {
        if (zero.x > from && zero.x < to)
            cuts.push_back(zero);
        else
            iAddTouch(zero, from, to);
    }
    return cuts;
}

// The error of a zero at an end may reach into the stretch; where the condition is 0 except for rounding, it
// reaches the other end.
void FormulaPiece::iAddTouch(const Zero& zero, double from, double to)
{
    const Range box = nearZero(zero.x, zero.error);
    if (box.from <= to && box.to >= from)
        touches_.push_back({zero.x, {std::max(box.from, from), std::min(box.to, to)}});
}

// Where the function of a condition is 0, or passes from one whole number to the next.
Zeros FormulaPiece::iChanges(const Condition& condition, NodeId function, double from, double to)
{
    constexpr double kMostLevels = 2000.0;
    std::vector<NodeId> orders{function};
    formula_->differentiate(orders, 4);
    BoxEvaluator evaluator(formula_->graph(), orders, budget_);
    if (condition.kind == Kind::Sign || condition.kind == Kind::Order) {
        Zeros changes = zerosOf(evaluator, 0, 0.0, from, to);
        // A zero of high multiplicity, which needs more derivatives.
        const auto isVague = [&](const Zero& zero) {
            return zero.error > 1e-9 * std::max(std::fabs(zero.x), to - from);
        };
        if (std::ranges::none_of(changes.places, isVague))
            return changes;
        formula_->differentiate(orders, kHighestOrder + 1);
        BoxEvaluator higher(formula_->graph(), orders, budget_);
        return zerosOf(higher, 0, 0.0, from, to);
    }

    Zeros all;
    const Interval range = evaluator.plainly(from, to)[0];
    if (!range.isFinite() || range.width() > kMostLevels || range.largest() > 0x1p52) {
        all.complete = false;
        return all;
    }
    const double offset = condition.kind == Kind::Whole && condition.function == FunctionId::Nint ? 0.5 : 0.0;
    for (double level = std::floor(range.lo - offset); level + offset <= range.hi; level += 1.0) {
        const Zeros changes = zerosOf(evaluator, 0, level + offset, from, to);
        all.complete &= changes.complete;
        all.hasGap |= changes.hasGap;
        all.places.insert(all.places.end(), changes.places.begin(), changes.places.end());
        all.flat.insert(all.flat.end(), changes.flat.begin(), changes.flat.end());
        all.unsure.insert(all.unsure.end(), changes.unsure.begin(), changes.unsure.end());
    }
    return all;
}

void FormulaPiece::iAppend(double from, double to, double kinkError, const Decisions& decisions,
                           bool isSmooth)
{
    Stretch stretch{from, to, {}, isSmooth, kinkError};
    const bool isDecided = !decisions.empty() && !budget_.isSpent();
    if (isDecided)
        budget_.spend(formula_->nodesOfOrders());
    for (const NodeId order : formula_->orders())
        stretch.orders.push_back(isDecided ? formula_->decided(order, decisions) : order);
    stretch.isSmooth &= isDecided || decisions.empty();
    if (stretch.isSmooth && isDecided) {
        // Where the value has no limit, as an angle at the origin, its derivatives prove nothing.
        BoxEvaluator value(formula_->graph(), std::span(stretch.orders).first(1), budget_);
        stretch.isSmooth = !value.at(from)[0].partial && !value.at(to)[0].partial;
    }
    stretches_.push_back(std::move(stretch));
}

}  // namespace mf::analysis
