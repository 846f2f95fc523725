// SPDX-License-Identifier: MIT

#include "mfcurves/engine/differentiation.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/term.h"

namespace mf::engine {
namespace {

// Room that is enough for the polynomials of most texts.
constexpr std::size_t kUsualCoefficients = 8;

// Marks a node whose derivative is needed but not made yet. No graph has a node with this id.
constexpr NodeId kWanted{kNoNode.index - 1};

// The derivative of a term, which has been made already.
Term d(Term a)
{
    return a.maker().term(a.node().derivative);
}

bool isExponential(Term a)
{
    return a.op() == Op::Call1 && a.node().function == FunctionId::Exp;
}

// (a b)' = a' b + a b'; with an exponential e^w for b it is (a' + a w') e^w, which
// keeps the exponential a factor of every order.
Term ofProduct(Term a, Term b)
{
    if (isExponential(a))
        std::swap(a, b);
    if (isExponential(b))
        return (d(a) + a * d(b.a())) * b;
    return d(a) * b + a * d(b);
}

// (a / b)' = (a' - f b') / b with f = a / b, so that each order reuses the previous one.
Term ofQuotient(Term f)
{
    return (d(f.a()) - f * d(f.b())) / f.b();
}

// The constant term vanishes; every other exponent is one less.
Term ofPolynomial(Term f, std::vector<double>& slope)
{
    const auto c = f.coefficients();
    const int lowest = f.node().lowest;
    slope.resize(c.size());
    for (std::size_t i = 0; i < c.size(); ++i)
        slope[i] = c[i] * static_cast<double>(lowest + static_cast<int>(i));
    const Term u = f.a();
    const Term outer =
        lowest == 0 ? polynomial(u, 0, std::span(slope).subspan(1)) : polynomial(u, lowest - 1, slope);
    return outer * d(u);
}

// The derivative of a Chebyshev series is one of a lower degree: with
// d(j-1) = d(j+1) + 2 j c(j), and d(0) halved; Mason and Handscomb, Chebyshev
// Polynomials (2003), 2.4.5.
Term ofChebyshev(Term f, std::vector<double>& slope)
{
    const auto c = f.coefficients();
    slope.assign(c.size() + 1, 0.0);
    for (std::size_t j = c.size() - 1; j > 0; --j)
        slope[j - 1] = slope[j + 1] + 2.0 * static_cast<double>(j) * c[j];
    slope[0] *= 0.5;
    return chebyshev(f.a(), std::span(slope).first(c.size() - 1)) * d(f.a());
}

// A constant argument needs no slope, which may not even exist there.
Term ofCall1(Term f)
{
    const Term da = d(f.a());
    return da.isConstant(0.0) ? da : function(f.node().function).slope1(f, f.a()) * da;
}

Term ofCall2(Term f)
{
    return function(f.node().function).slope2(f, f.a(), f.b(), d(f.a()), d(f.b()));
}

// Coefficients are computed in `scratch`.
Term derivativeOf(Term f, std::vector<double>& scratch)
{
    const auto operand = [f](std::size_t i) { return f.operand(i); };
    switch (f.op()) {
        case Op::Constant:
            return f.constant(0.0);
        case Op::Variable:
            return f.constant(1.0);
        case Op::Sum:
            return d(f.a()) + d(f.b());
        case Op::Product:
            return ofProduct(f.a(), f.b());
        case Op::Quotient:
            return ofQuotient(f);
        case Op::Polynomial:
            return ofPolynomial(f, scratch);
        case Op::Chebyshev:
            return ofChebyshev(f, scratch);
        case Op::Call1:
            return ofCall1(f);
        case Op::Call2:
            return ofCall2(f);
        case Op::ChooseLess:
            return chooseLess(operand(0), operand(1), d(operand(2)), d(operand(3)));
        case Op::ChooseSign:
            return chooseSign(operand(0), d(operand(1)), d(operand(2)), d(operand(3)));
        case Op::ChooseStep:
            return chooseStep(operand(0), operand(1), operand(2), d(operand(3)), d(operand(4)),
                              d(operand(5)));
    }
    return f;
}

}  // namespace

// Walks down the ids to mark the nodes that still need a derivative, then up, so that
// operands are done before their users.
NodeId differentiate(Graph& graph, NodeId root)
{
    std::uint32_t lowest = root.index;
    const auto mark = [&](NodeId id) {
        if (graph[id].derivative != kNoNode)
            return;
        graph.setDerivative(id, kWanted);
        lowest = std::min(lowest, id.index);
    };
    mark(root);
    for (std::uint32_t i = root.index + 1; i-- > lowest;) {
        const Node& node = graph[NodeId{i}];
        if (node.derivative == kWanted)
            graph.forEachOperand(node, mark);
    }

    TermMaker maker(graph, Folding::Free);
    std::vector<double> scratch;
    scratch.reserve(kUsualCoefficients);
    for (std::uint32_t i = lowest; i <= root.index && !graph.full(); ++i) {
        const NodeId id{i};
        if (graph[id].derivative == kWanted)
            graph.setDerivative(id, derivativeOf(maker.term(id), scratch).id());
    }
    return graph.full() ? kNoNode : graph[root].derivative;
}

}  // namespace mf::engine
