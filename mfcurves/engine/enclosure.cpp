// SPDX-License-Identifier: MIT

#include "mfcurves/engine/enclosure.h"

#include <algorithm>
#include <queue>
#include <utility>

#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/intervalErrors.h"
#include "mfcurves/engine/intervalPolynomials.h"
#include "mfcurves/engine/intervalRules.h"
#include "mfcurves/engine/program.h"

namespace mf::engine {
namespace {

// An undefined number is not less than any number, so `otherwise` is possible then.
Interval lessOf(const Interval& p, const Interval& q, const Interval& less, const Interval& otherwise)
{
    const bool partial = p.partial || q.partial;
    if (p.hi < q.lo)
        return partial ? hull(less, otherwise) : less;
    if (p.lo >= q.hi || p.isNothing() || q.isNothing())
        return otherwise;
    return hull(less, otherwise);
}

// The hull of the branches that may be chosen.
class Candidates {
public:
    void add(bool possible, const Interval& value)
    {
        if (!possible)
            return;
        hull_ = any_ ? hull(hull_, value) : value;
        any_ = true;
    }
    Interval result(bool partial) const
    {
        if (!any_)
            return Interval::nothing();
        Interval all = hull_;
        all.partial |= partial;
        return all;
    }

private:
    Interval hull_;
    bool any_ = false;
};

}  // namespace

namespace {

// The nodes that some roots depend on, ascending, so that operands come before what uses them.
struct WantedNodes {
    std::vector<NodeId> ids;
    std::vector<std::uint32_t> by;  // bit k: root k depends on the node
};

// From the highest node down, so that all that use a node come before it. A graph may have so many more
// nodes that a table of them all would cost more than the evaluations.
WantedNodes wantedNodes(const Graph& graph, std::span<const NodeId> roots)
{
    using Open = std::pair<std::uint32_t, std::uint32_t>;  // a node's index, and a part of its `by`
    std::priority_queue<Open> open;
    for (std::size_t k = 0; k < roots.size(); ++k)
        open.emplace(roots[k].index, 1u << k);
    WantedNodes wanted;
    while (!open.empty()) {
        const NodeId id{open.top().first};
        std::uint32_t by = 0;
        for (; !open.empty() && open.top().first == id.index; open.pop())
            by |= open.top().second;
        wanted.ids.push_back(id);
        wanted.by.push_back(by);
        graph.forEachOperand(graph[id], [&](NodeId operand) { open.emplace(operand.index, by); });
    }
    std::ranges::reverse(wanted.ids);
    std::ranges::reverse(wanted.by);
    return wanted;
}

// Each node has the register of its position in the list.
std::uint32_t registerOf(std::span<const NodeId> nodes, NodeId id)
{
    return static_cast<std::uint32_t>(std::ranges::lower_bound(nodes, id.index, {}, &NodeId::index) -
                                      nodes.begin());
}

}  // namespace

Enclosure::Enclosure(const Graph& graph, std::span<const NodeId> roots)
{
    const WantedNodes wanted = wantedNodes(graph, roots);
    for (std::size_t i = 0; i < wanted.ids.size(); ++i)
        iAppend(graph, wanted.ids, i, wanted.by[i]);
    errors_.assign(wanted.ids.size(), 0.0);
    for (const NodeId root : roots)
        roots_.push_back(registerOf(wanted.ids, root));
}

namespace {

// Whether the result follows from the two operands being the same number, which the
// interval rules do not know.
bool cancelsItself(const Graph& graph, const Node& node)
{
    if (node.op == Op::Quotient || (node.op == Op::Call2 && node.function == FunctionId::Mod))
        return node.a == node.b;
    if (node.op != Op::Sum)
        return false;
    const auto isNegative = [&](NodeId negative, NodeId of) {
        const Node& product = graph[negative];
        return product.op == Op::Product && product.b == of && graph[product.a].op == Op::Constant &&
               graph[product.a].number == -1.0;
    };
    return isNegative(node.b, node.a) || isNegative(node.a, node.b);
}

// The unit is the sum of two intervals; the costs are measured.
std::size_t costOf(const Node& node)
{
    switch (node.op) {
        case Op::Polynomial:
        case Op::Chebyshev:
            return 4 + 2 * node.count;
        case Op::Call1:
            return 6;
        case Op::Call2:
            return node.function == FunctionId::Power ? 16 : 6;
        default:
            return 1;
    }
}

}  // namespace

void Enclosure::iAppend(const Graph& graph, std::span<const NodeId> nodes, std::size_t i, unsigned roots)
{
    const Node& node = graph[nodes[i]];
    const auto target = static_cast<std::uint32_t>(i);
    values_.emplace_back(node.number);
    if (node.op == Op::Constant) {
        if (!std::isfinite(node.number))
            values_.back() = Interval::nothing();
        return;
    }
    if (node.op == Op::Variable) {
        variables_.push_back(target);
        return;
    }
    Step step;
    step.op = node.op;
    step.function = node.function;
    step.lowest = node.lowest;
    step.roots = static_cast<std::uint8_t>(roots);
    step.cancels = cancelsItself(graph, node);
    step.target = target;
    step.count = node.count;
    switch (node.op) {
        case Op::ChooseLess:
        case Op::ChooseSign:
        case Op::ChooseStep:
            step.first = static_cast<std::uint32_t>(lists_.size());
            for (const NodeId operand : graph.operands(node))
                lists_.push_back(registerOf(nodes, operand));
            break;
        case Op::Polynomial:
        case Op::Chebyshev: {
            const auto coefficients = graph.coefficients(node);
            step.a = registerOf(nodes, node.a);
            step.first = static_cast<std::uint32_t>(coefficients_.size());
            coefficients_.insert(coefficients_.end(), coefficients.begin(), coefficients.end());
            break;
        }
        case Op::Call1:
            step.a = registerOf(nodes, node.a);
            step.rule1 = function(node.function).interval1;
            break;
        case Op::Call2:
            step.rule2 = function(node.function).interval2;
            [[fallthrough]];
        default:
            step.a = registerOf(nodes, node.a);
            step.b = registerOf(nodes, node.b);
    }
    steps_.push_back(step);
    cost_ += costOf(node);
}

void Enclosure::evaluate(const Interval& x, Interval* values, unsigned wanted)
{
    iRun(x, wanted);
    for (std::size_t k = 0; k < roots_.size(); ++k)
        values[k] = values_[roots_[k]];
}

// Sets the registers that the wanted roots depend on.
void Enclosure::iRun(const Interval& x, unsigned wanted)
{
    for (const std::uint32_t variable : variables_)
        values_[variable] = x;
    for (const Step& step : steps_) {
        if ((step.roots & wanted) != 0)
            values_[step.target] = iValueOf(step);
    }
}

namespace {

// a - a, a / a or a mod a; b is -a in the first.
Interval cancelled(Op op, const Interval& a, const Interval& b)
{
    if (a.isNothing() || b.isNothing() || (op != Op::Sum && a.isZero()))
        return Interval::nothing();
    const bool partial = a.partial || a.largest() == kUnbounded || (op != Op::Sum && a.contains(0.0));
    const double value = op == Op::Quotient ? 1.0 : 0.0;
    return {value, value, partial};
}

}  // namespace

Interval Enclosure::iValueOf(const Step& step) const
{
    const Interval& a = values_[step.a];
    const auto o = [&](std::size_t i) -> const Interval& { return iOperand(step, i); };
    if (step.cancels)
        return cancelled(step.op, a, values_[step.b]);
    switch (step.op) {
        case Op::Sum:
            return a + values_[step.b];
        case Op::Product:
            return a * values_[step.b];
        case Op::Quotient:
            return a / values_[step.b];
        case Op::Polynomial:
            return intervals::polynomialRange(a, step.lowest, iCoefficients(step));
        case Op::Chebyshev:
            return intervals::chebyshevRange(a, iCoefficients(step));
        case Op::Call1:
            return step.rule1(a);
        case Op::Call2:
            return step.rule2(a, values_[step.b]);
        case Op::ChooseLess:
            return lessOf(o(0), o(1), o(2), o(3));
        case Op::ChooseSign: {
            Candidates candidates;
            candidates.add(o(0).lo < 0.0, o(1));
            candidates.add(o(0).contains(0.0), o(2));
            candidates.add(o(0).hi > 0.0, o(3));
            return candidates.result(o(0).partial);
        }
        case Op::ChooseStep: {
            const Interval &x = o(0), &x0 = o(1), &x1 = o(2);
            Candidates candidates;
            if (x0.lo < x1.hi) {
                candidates.add(x.lo <= x0.hi, o(3));
                candidates.add(x.hi > x0.lo && x.lo < x1.hi, o(4));
                candidates.add(x.hi >= x1.lo, o(5));
            }
            return candidates.result(x.partial || x0.partial || x1.partial || !(x0.hi < x1.lo));
        }
        default:
            return Interval::nothing();
    }
}

void Enclosure::errorBounds(const Interval& x, double* errors)
{
    iRun(x, ~0u);
    constexpr double kRoomForRounding = 1.0 + 1e-9;  // of the bounds themselves
    for (const Step& step : steps_) {
        const double error = iErrorOf(step) * kRoomForRounding;
        errors_[step.target] = error == error && values_[step.target].isFinite() ? error : kUnbounded;
    }
    for (std::size_t k = 0; k < roots_.size(); ++k)
        errors[k] = errors_[roots_[k]];
}

double Enclosure::iErrorOf(const Step& step) const
{
    const Interval& y = values_[step.target];
    const Interval& a = values_[step.a];
    const double ea = errors_[step.a];
    const double rounding = 2.0 * intervals::kHalfUlp * y.largest();
    if (step.cancels)
        return 0.0;
    switch (step.op) {
        case Op::Sum:
            return ea + errors_[step.b] + rounding;
        case Op::Product: {
            const double eb = errors_[step.b];
            return a.largest() * eb + values_[step.b].largest() * ea + ea * eb + rounding;
        }
        case Op::Quotient:
            return (ea + y.largest() * errors_[step.b]) / values_[step.b].smallest() + rounding;
        case Op::Polynomial:
            return intervals::errorOfPolynomial(a, step.lowest, iCoefficients(step), ea);
        case Op::Chebyshev:
            return intervals::errorOfChebyshev(a, iCoefficients(step), ea);
        case Op::Call1:
            return intervals::errorOf(step.function, a, y, ea);
        case Op::Call2:
            return intervals::errorOf(step.function, a, values_[step.b], y, ea, errors_[step.b]);
        default:
            return kUnbounded;  // a choice, as an error may lead to another branch
    }
}

}  // namespace mf::engine
