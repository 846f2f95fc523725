#pragma once

#include <span>

#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/graph.h"

/// Makers of nodes. Each answers the simplest node for what it is asked, as far
/// as the folding of the graph allows: constants are folded by the very functions
/// that evaluate them, neutral elements dropped, monomials in one inner variable
/// gathered into polynomials.
///
/// What KeepText allows costs no accuracy: a change is made only where it is
/// exact, or where the text would round in the same places. The sign of a zero
/// counts as nothing; only a division by it shows one.
namespace mf::engine {

NodeId constant(Graph& graph, double number);
NodeId variable(Graph& graph, std::uint32_t number);
NodeId negative(Graph& graph, NodeId a);
NodeId sum(Graph& graph, NodeId a, NodeId b);
NodeId difference(Graph& graph, NodeId a, NodeId b);
NodeId product(Graph& graph, NodeId a, NodeId b);
NodeId product(Graph& graph, double factor, NodeId a);
NodeId quotient(Graph& graph, NodeId a, NodeId b);
NodeId power(Graph& graph, NodeId base, NodeId exponent);
NodeId power(Graph& graph, NodeId base, double exponent);

/// u^lowest * (c0 + c1 u + c2 u^2 + ...)
NodeId polynomial(Graph& graph, NodeId u, int lowest, std::span<const double> coefficients);
/// c0 T0(h) + c1 T1(h) + ... with the Chebyshev polynomials T of the first kind.
NodeId chebyshev(Graph& graph, NodeId h, std::span<const double> coefficients);

NodeId call(Graph& graph, FunctionId function, NodeId a);
NodeId call(Graph& graph, FunctionId function, NodeId a, NodeId b);

NodeId chooseLess(Graph& graph, NodeId p, NodeId q, NodeId ifLess, NodeId otherwise);
NodeId chooseSign(Graph& graph, NodeId c, NodeId ifNegative, NodeId ifZero, NodeId ifPositive);
NodeId chooseStep(Graph& graph, NodeId x, NodeId x0, NodeId x1, NodeId before, NodeId between, NodeId after);

}  // namespace mf::engine
