// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "mfcurves/curve/CurvePieces.h"
#include "mfcurves/engine/enclosure.h"
#include "mfcurves/engine/graph.h"

namespace mf::analysis {

/// The highest order in a graph: one or two more than the analysis is about, which prove
/// the behaviour of the others.
constexpr int kHighestOrder = 5;

/// A condition that decides between smooth pieces of a formula.
struct Condition {
    enum class Kind {
        Sign,   // of a
        Order,  // sign of a - b
        Whole,  // function(a), a whole number
        Turns   // int(a / b)
    };
    Kind kind;
    engine::NodeId a;
    engine::NodeId b;
    engine::FunctionId function;

    friend bool operator<(const Condition& p, const Condition& q)
    {
        return std::tie(p.kind, p.a, p.b, p.function) < std::tie(q.kind, q.a, q.b, q.function);
    }
};

/// The results of conditions on a stretch where none of them changes.
using Decisions = std::map<Condition, double>;

/// The graph of a formula and of its derivatives.
class FormulaGraph {
public:
    /// Null if the text does not compile or has more than one variable.
    static std::unique_ptr<FormulaGraph> make(const curve::FormulaText& text);

    /// The highest order that exists; below kHighestOrder if further ones exceed the limits.
    int highest() const { return static_cast<int>(orders_.size()) - 1; }
    const std::vector<engine::NodeId>& orders() const { return orders_; }
    engine::Graph& graph() { return graph_; }
    /// Number of nodes that `openCondition` or `decided` visits for all orders: the cost.
    std::size_t nodesOfOrders() const;

    /// A condition in `root` that is not decided yet and depends on no other such
    /// condition; nothing if all are decided. Pieces that the decisions exclude do not count.
    std::optional<Condition> openCondition(engine::NodeId root, const Decisions& decisions) const;

    /// `root` without its decided conditions: each is replaced by the piece that its
    /// decision selects. The operations of that piece stay as they are.
    engine::NodeId decided(engine::NodeId root, const Decisions& decisions);

    /// The node whose value decides a condition: Sign and Order change where it is 0, Whole
    /// and Turns where it passes from one whole number to the next.
    engine::NodeId functionOf(const Condition& condition);

    /// Appends derivatives to `orders` until it has `count` nodes or the graph is too large.
    void differentiate(std::vector<engine::NodeId>& orders, std::size_t count);

private:
    engine::Graph graph_;
    std::vector<engine::NodeId> orders_;
};

}  // namespace mf::analysis
