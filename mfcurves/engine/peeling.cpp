// SPDX-License-Identifier: MIT

#include "mfcurves/engine/peeling.h"

namespace mf::engine {
namespace {

// (c - v) * k + l is (v - c) * -k + l, bit for bit as long as l hides the sign
// of a zero.
void peelSign(const Graph& graph, NodeId& id, OpenStage& stage)
{
    const Node& node = graph[id];
    StageConstants& c = stage.constants;
    if (node.op != Op::Product || graph[node.a].op != Op::Constant || graph[node.a].number != -1.0 ||
        c.last == 0.0)
        return;
    c.first = -c.first;
    c.factor = -c.factor;
    id = node.b;
}

}  // namespace

NodeId peel(const Graph& graph, const PerNode<NodePlace>& places, NodeId id, OpenStage& stage)
{
    const auto isConstant = [&](NodeId part) { return graph[part].op == Op::Constant; };
    const auto number = [&](NodeId part) { return graph[part].number; };
    const auto isOpen = [&](NodeId part) { return stage.isNone || !places[part].hasRegister(); };
    if (graph[id].op == Op::Sum && isConstant(graph[id].a)) {
        const NodeId inner = graph[id].b;
        if (graph[inner].op != Op::Product && graph[inner].op != Op::Quotient) {
            stage.addFirst(number(graph[id].a));
            return inner;
        }
        stage.addLast(number(graph[id].a));
        id = inner;
    }
    if (isOpen(id) && graph[id].op == Op::Product && isConstant(graph[id].a)) {
        stage.multiply(number(graph[id].a));
        id = graph[id].b;
    }
    if (isOpen(id) && graph[id].op == Op::Quotient && isConstant(graph[id].b)) {
        stage.divide(number(graph[id].b));
        id = graph[id].a;
    }
    if (isOpen(id) && graph[id].op == Op::Sum && isConstant(graph[id].a)) {
        stage.addFirst(number(graph[id].a));
        id = graph[id].b;
        peelSign(graph, id, stage);
    }
    return id;
}

}  // namespace mf::engine
