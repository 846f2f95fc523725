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

/// Orders that a graph holds: the value, the derivatives that are asked about, and one or
/// two more, which prove what those do.
constexpr int kHighestOrder = 5;

/// A condition that decides between smooth pieces of a formula.
struct Condition {
    enum class Kind {
        Sign,   // of a
        Order,  // sign of a - b
        Whole,  // the whole number that `function` makes of a
        Turns   // the whole number of times that b goes into a
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

/// What the conditions come to on a stretch where none of them changes.
using Decisions = std::map<Condition, double>;

/// The graph of a formula and of its derivatives.
class FormulaGraph {
public:
    /// Nothing when the text does not compile, which a curve's own texts do.
    static std::unique_ptr<FormulaGraph> make(const curve::FormulaText& text);

    /// Orders 0 to highest() exist; fewer than kHighestOrder where they outgrew the limits.
    int highest() const { return static_cast<int>(orders_.size()) - 1; }
    const std::vector<engine::NodeId>& orders() const { return orders_; }
    engine::Graph& graph() { return graph_; }
    /// Nodes that are looked at for all orders: what `openCondition` and `decided` cost for them.
    std::size_t nodesOfOrders() const;

    /// A condition in `root` that is not decided yet and depends on no other such
    /// condition. What no decision leads to is not looked at.
    std::optional<Condition> openCondition(engine::NodeId root, const Decisions& decisions) const;

    /// The node without decided conditions: each is replaced by the piece that it leads
    /// to, with the operations of that piece as they are.
    engine::NodeId decided(engine::NodeId root, const Decisions& decisions);

    /// A node whose zeros are where a condition changes: `level` is the value to find of it.
    engine::NodeId functionOf(const Condition& condition);

    /// Appends derivatives to `orders` until there are `count` nodes, or the limit is met.
    void differentiate(std::vector<engine::NodeId>& orders, std::size_t count);

private:
    engine::Graph graph_;
    std::vector<engine::NodeId> orders_;
};

}  // namespace mf::analysis
