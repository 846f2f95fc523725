#include "mfcurves/engine/differentiation.h"

#include <vector>

#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/simplification.h"

namespace mf::engine {
namespace {

NodeId derivativeOf(const Graph& graph, NodeId id)
{
    return graph[id].derivative;
}

bool isExponential(const Graph& graph, NodeId id)
{
    return graph[id].op == Op::Call1 && graph[id].function == FunctionId::Exp;
}

// (a b)' = a' b + a b'; with an exponential e^w for b it is (a' + a w') e^w, which
// keeps the exponential a factor of every order.
NodeId ofProduct(Graph& graph, NodeId a, NodeId b)
{
    if (isExponential(graph, a))
        std::swap(a, b);
    const NodeId da = derivativeOf(graph, a);
    if (isExponential(graph, b)) {
        const NodeId dw = derivativeOf(graph, graph[b].a);
        return product(graph, sum(graph, da, product(graph, a, dw)), b);
    }
    return sum(graph, product(graph, da, b), product(graph, a, derivativeOf(graph, b)));
}

// (a / b)' = (a' - f b') / b with f = a / b, so that each order reuses the one before.
NodeId ofQuotient(Graph& graph, NodeId f, NodeId a, NodeId b)
{
    const NodeId numerator =
        difference(graph, derivativeOf(graph, a), product(graph, f, derivativeOf(graph, b)));
    return quotient(graph, numerator, b);
}

NodeId ofPolynomial(Graph& graph, const Node& node, std::vector<double>& scratch)
{
    scratch.assign(node.count, 0.0);
    const auto coefficients = graph.coefficients(node);
    for (std::size_t i = 0; i < coefficients.size(); ++i)
        scratch[i] = coefficients[i] * static_cast<double>(node.lowest + i);
    // The constant term falls away; every other exponent is one less.
    const bool hasConstant = node.lowest == 0;
    const std::span<const double> left = std::span(scratch).subspan(hasConstant ? 1 : 0);
    const NodeId outer = polynomial(graph, node.a, hasConstant ? 0 : node.lowest - 1, left);
    return product(graph, outer, derivativeOf(graph, node.a));
}

// The derivative of a Chebyshev series is one of a lower degree: with
// d(j-1) = d(j+1) + 2 j c(j), and d(0) halved; Mason and Handscomb, Chebyshev
// Polynomials (2003), 2.4.5.
NodeId ofChebyshev(Graph& graph, const Node& node, std::vector<double>& scratch)
{
    const auto c = graph.coefficients(node);
    scratch.assign(node.count + 1, 0.0);
    for (std::size_t j = node.count - 1; j > 0; --j)
        scratch[j - 1] = scratch[j + 1] + 2.0 * static_cast<double>(j) * c[j];
    scratch[0] *= 0.5;
    const NodeId outer = chebyshev(graph, node.a, std::span(scratch).first(node.count - 1));
    return product(graph, outer, derivativeOf(graph, node.a));
}

NodeId ofCall(Graph& graph, NodeId f, const Node& node)
{
    const Function& row = function(node.function);
    const NodeId da = derivativeOf(graph, node.a);
    if (node.op == Op::Call2)
        return row.slope2(graph, f, node.a, node.b, da, derivativeOf(graph, node.b));
    // What does not move needs no slope, which may not even exist there.
    if (graph[da].op == Op::Constant && graph[da].number == 0.0)
        return da;
    return product(graph, row.slope1(graph, f, node.a), da);
}

NodeId ofNode(Graph& graph, NodeId id, std::vector<double>& scratch)
{
    const Node node = graph[id];
    const auto d = [&](std::size_t operand) { return derivativeOf(graph, graph.operands(node)[operand]); };
    const auto o = [&](std::size_t operand) { return graph.operands(node)[operand]; };
    switch (node.op) {
        case Op::Constant:
            return constant(graph, 0.0);
        case Op::Variable:
            return constant(graph, 1.0);
        case Op::Sum:
            return sum(graph, derivativeOf(graph, node.a), derivativeOf(graph, node.b));
        case Op::Product:
            return ofProduct(graph, node.a, node.b);
        case Op::Quotient:
            return ofQuotient(graph, id, node.a, node.b);
        case Op::Polynomial:
            return ofPolynomial(graph, node, scratch);
        case Op::Chebyshev:
            return ofChebyshev(graph, node, scratch);
        case Op::Call1:
        case Op::Call2:
            return ofCall(graph, id, node);
        case Op::ChooseLess:
            return chooseLess(graph, o(0), o(1), d(2), d(3));
        case Op::ChooseSign:
            return chooseSign(graph, o(0), d(1), d(2), d(3));
        case Op::ChooseStep:
            return chooseStep(graph, o(0), o(1), o(2), d(3), d(4), d(5));
    }
    return kNoNode;
}

}  // namespace

// Down the ids to find what is still without a derivative, then up them, so that
// operands are done before their users.
NodeId differentiate(Graph& graph, NodeId root)
{
    PerNode<bool> wanted;
    std::vector<double> scratch;
    wanted.assign(root.index + 1, false);
    wanted[root] = true;
    for (std::uint32_t i = root.index + 1; i-- > 0;) {
        const NodeId id{i};
        if (graph[id].derivative != kNoNode)
            wanted[id] = false;
        else if (wanted[id])
            graph.forEachOperand(graph[id], [&](NodeId operand) { wanted[operand] = true; });
    }

    graph.folding = Folding::Free;
    for (std::uint32_t i = 0; i <= root.index && !graph.full(); ++i) {
        if (wanted[NodeId{i}])
            graph.setDerivative(NodeId{i}, ofNode(graph, NodeId{i}, scratch));
    }
    return graph.full() ? kNoNode : graph[root].derivative;
}

}  // namespace mf::engine
