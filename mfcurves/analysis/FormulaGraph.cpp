// SPDX-License-Identifier: MIT

#include "mfcurves/analysis/FormulaGraph.h"

#include <array>
#include <utility>

#include "mfcurves/engine/differentiation.h"
#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/parser.h"
#include "mfcurves/engine/term.h"
#include "mfcurves/engine/values.h"

namespace mf::analysis {

using engine::FunctionId;
using engine::Graph;
using engine::Node;
using engine::NodeId;
using engine::Op;

namespace {

// Derivatives of larger graphs are not worth their time: an enclosure with so many
// operations is too wide to prove anything.
constexpr std::size_t kMostNodesToDifferentiate = 20'000;

using Kind = Condition::Kind;

// The conditions that choose the piece of a node, in the order in which they are decided.
struct Conditions {
    std::array<Condition, 2> list;
    int count = 0;

    void add(Kind kind, NodeId a, NodeId b = {}, FunctionId function = {})
    {
        list[static_cast<std::size_t>(count++)] = {kind, a, b, function};
    }
};

Conditions conditionsOf(const Graph& graph, const Node& node)
{
    Conditions found;
    if (node.op == Op::ChooseLess) {
        const auto o = graph.operands(node);
        found.add(Kind::Order, o[0], o[1]);
    } else if (node.op == Op::ChooseSign) {
        found.add(Kind::Sign, graph.operands(node)[0]);
    } else if (node.op == Op::ChooseStep) {
        const auto o = graph.operands(node);
        found.add(Kind::Order, o[0], o[1]);
        found.add(Kind::Order, o[0], o[2]);
    } else if (node.op == Op::Call1 || node.op == Op::Call2) {
        switch (node.function) {
            case FunctionId::Abs:
            case FunctionId::Sign:
            case FunctionId::Atan2:
                found.add(Kind::Sign, node.a);
                break;
            case FunctionId::SignOf:
                found.add(Kind::Sign, node.b);
                found.add(Kind::Sign, node.a);
                break;
            case FunctionId::Int:
            case FunctionId::Nint:
            case FunctionId::Floor:
            case FunctionId::Ceil:
                found.add(Kind::Whole, node.a, {}, node.function);
                break;
            case FunctionId::Min:
                found.add(Kind::Order, node.b, node.a);
                break;
            case FunctionId::Max:
            case FunctionId::Dim:
                found.add(Kind::Order, node.a, node.b);
                break;
            case FunctionId::Mod:
                found.add(Kind::Turns, node.a, node.b);
                break;
            default:
                break;
        }
    }
    return found;
}

// Makes nodes without simplification, so that their values have the bits of the formula.
class Maker {
public:
    explicit Maker(Graph& graph) : graph_(graph) {}

    NodeId number(double number)
    {
        Node node;
        node.number = number;
        return graph_.intern(node);
    }
    NodeId pair(Op op, NodeId a, NodeId b)
    {
        Node node;
        node.op = op;
        node.a = a;
        node.b = b;
        return graph_.intern(node);
    }
    NodeId angle(const Node& like, NodeId a, NodeId b)
    {
        Node node = like;
        node.a = a;
        node.b = b;
        node.derivative = engine::kNoNode;
        return graph_.intern(node);
    }
    NodeId negative(NodeId a) { return pair(Op::Product, number(-1.0), a); }
    NodeId signedBy(double sign, NodeId a) { return sign > 0.0 ? a : sign < 0.0 ? negative(a) : number(0.0); }

private:
    Graph& graph_;
};

// The piece of a node that its decided conditions select. `operand` returns the
// decided form of an operand.
NodeId pieceOf(Graph& graph, const Node& node, double first, double second, auto operand)
{
    Maker make(graph);
    const auto listed = [&](std::size_t i) { return operand(graph.operands(node)[i]); };
    switch (node.op) {
        case Op::ChooseLess:
            return first < 0.0 ? listed(2) : listed(3);
        case Op::ChooseSign:
            return first < 0.0 ? listed(1) : first > 0.0 ? listed(3) : listed(2);
        case Op::ChooseStep:
            return first <= 0.0 ? listed(3) : second >= 0.0 ? listed(5) : listed(4);
        default:
            break;
    }
    const NodeId a = operand(node.a);
    const NodeId b = node.op == Op::Call2 ? operand(node.b) : a;
    switch (node.function) {
        case FunctionId::Abs:
            return make.signedBy(first, a);
        case FunctionId::SignOf:
            return make.signedBy(first < 0.0 ? -second : second, a);
        case FunctionId::Min:
        case FunctionId::Max:
            return first < 0.0 ? b : a;
        case FunctionId::Dim:
            return first < 0.0 ? make.number(0.0) : make.pair(Op::Sum, a, make.negative(b));
        case FunctionId::Mod:
            return make.pair(Op::Sum, a, make.pair(Op::Product, make.number(-first), b));
        case FunctionId::Atan2: {
            // From the y axis, so that the angle is continuous beyond the cut as well. Below the x axis,
            // minus the angle of the mirror image.
            if (first == 0.0)
                return make.angle(node, a, b);
            const NodeId fromAxis = make.angle(node, b, first < 0.0 ? make.negative(a) : a);
            const NodeId upper = make.pair(Op::Sum, make.number(engine::kPi / 2.0), make.negative(fromAxis));
            return first < 0.0 ? make.negative(upper) : upper;
        }
        default:
            return make.number(first);  // sign and the whole numbers
    }
}

}  // namespace

std::unique_ptr<FormulaGraph> FormulaGraph::make(const curve::FormulaText& text)
{
    std::optional<std::wstring_view> variable;
    if (text.hasVariable)
        variable = text.variable;
    auto result = engine::parseText(text.text, variable);
    auto* parsed = std::get_if<engine::ParsedText>(&result);
    if (parsed == nullptr || parsed->parameters.list().size() > 1)
        return nullptr;
    auto formula = std::make_unique<FormulaGraph>();
    formula->graph_ = std::move(parsed->graph);
    formula->orders_.push_back(parsed->root);
    formula->differentiate(formula->orders_, kHighestOrder + 1);
    return formula;
}

void FormulaGraph::differentiate(std::vector<NodeId>& orders, std::size_t count)
{
    while (orders.size() < count && graph_.size() < kMostNodesToDifferentiate) {
        const NodeId next = engine::differentiate(graph_, orders.back());
        if (next == engine::kNoNode)
            return;
        orders.push_back(next);
    }
}

std::size_t FormulaGraph::nodesOfOrders() const
{
    std::size_t nodes = 0;
    for (const NodeId order : orders_)
        nodes += order.index + 1;
    return nodes;
}

// From the root down, so that the last condition found depends on no open one.
std::optional<Condition> FormulaGraph::openCondition(NodeId root, const Decisions& decisions) const
{
    engine::PerNode<char> wanted;
    wanted.assign(root.index + 1, 0);
    wanted[root] = 1;
    std::optional<Condition> open;
    for (std::uint32_t i = root.index + 1; i-- > 0;) {
        const NodeId id{i};
        if (!wanted[id])
            continue;
        const Node& node = graph_[id];
        const Conditions conditions = conditionsOf(graph_, node);
        bool isOpen = false;
        for (int c = 0; c < conditions.count && !isOpen; ++c) {
            const Condition& condition = conditions.list[static_cast<std::size_t>(c)];
            wanted[condition.a] = 1;
            if (condition.kind == Kind::Order || condition.kind == Kind::Turns)
                wanted[condition.b] = 1;
            if (decisions.count(condition) == 0) {
                isOpen = true;
                open = condition;
            }
        }
        if (isOpen)
            continue;
        const bool chooses =
            node.op == Op::ChooseLess || node.op == Op::ChooseSign || node.op == Op::ChooseStep;
        if (!chooses) {
            graph_.forEachOperand(node, [&](NodeId operand) { wanted[operand] = 1; });
            continue;
        }
        const double first = decisions.at(conditions.list[0]);
        const auto o = graph_.operands(node);
        if (node.op == Op::ChooseLess)
            wanted[first < 0.0 ? o[2] : o[3]] = 1;
        else if (node.op == Op::ChooseSign)
            wanted[first < 0.0 ? o[1] : first > 0.0 ? o[3] : o[2]] = 1;
        else
            wanted[first <= 0.0 ? o[3] : decisions.at(conditions.list[1]) >= 0.0 ? o[5] : o[4]] = 1;
    }
    return open;
}

NodeId FormulaGraph::decided(NodeId root, const Decisions& decisions)
{
    engine::PerNode<NodeId> replaced;
    replaced.assign(root.index + 1, engine::kNoNode);
    const auto operand = [&](NodeId id) { return replaced[id]; };
    std::vector<NodeId> operands;
    for (std::uint32_t i = 0; i <= root.index && !graph_.full(); ++i) {
        const NodeId id{i};
        Node node = graph_[id];
        const Conditions conditions = conditionsOf(graph_, node);
        double decision[2] = {};
        bool known = conditions.count > 0;
        for (int c = 0; c < conditions.count && known; ++c) {
            const auto found = decisions.find(conditions.list[static_cast<std::size_t>(c)]);
            known = found != decisions.end();
            decision[c] = known ? found->second : 0.0;
        }
        if (known) {
            replaced[id] = pieceOf(graph_, node, decision[0], decision[1], operand);
            continue;
        }
        bool changed = false;
        graph_.forEachOperand(node, [&](NodeId o) { changed |= replaced[o] != o; });
        if (!changed) {
            replaced[id] = id;
            continue;
        }
        node.derivative = engine::kNoNode;
        switch (node.op) {
            case Op::ChooseLess:
            case Op::ChooseSign:
            case Op::ChooseStep:
                operands.clear();
                for (const NodeId o : graph_.operands(node))
                    operands.push_back(replaced[o]);
                replaced[id] = graph_.intern(node, operands);
                break;
            case Op::Polynomial:
            case Op::Chebyshev: {
                node.a = replaced[node.a];
                const auto c = graph_.coefficients(node);
                const std::vector<double> coefficients(c.begin(), c.end());
                replaced[id] = graph_.intern(node, coefficients);
                break;
            }
            case Op::Call1:
                node.a = replaced[node.a];
                replaced[id] = graph_.intern(node);
                break;
            default:
                node.a = replaced[node.a];
                node.b = replaced[node.b];
                replaced[id] = graph_.intern(node);
        }
    }
    return graph_.full() ? root : replaced[root];
}

NodeId FormulaGraph::functionOf(const Condition& condition)
{
    engine::TermMaker maker(graph_, engine::Folding::KeepText);
    switch (condition.kind) {
        case Kind::Order:
            return (maker.term(condition.a) - maker.term(condition.b)).id();
        case Kind::Turns:
            return (maker.term(condition.a) / maker.term(condition.b)).id();
        default:
            return condition.a;
    }
}

}  // namespace mf::analysis
