#include "mfcurves/engine/functionRules.h"

#include <optional>
#include <vector>

#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/simplification.h"
#include "mfcurves/engine/values.h"

namespace mf::engine::rules {
namespace {

NodeId squared(Graph& graph, NodeId a)
{
    return power(graph, a, 2.0);
}

NodeId inverse(Graph& graph, NodeId a)
{
    return quotient(graph, constant(graph, 1.0), a);
}

// sqrt(1 - a^2), without the loss of digits near 1 that squaring would bring.
NodeId cosineOfArcsine(Graph& graph, NodeId a)
{
    const NodeId one = constant(graph, 1.0);
    return call(graph, FunctionId::Sqrt, product(graph, difference(graph, one, a), sum(graph, one, a)));
}

}  // namespace

// --- Slopes of functions of one argument -------------------------------------------

NodeId slopeOfSin(Graph& graph, NodeId, NodeId a)
{
    return call(graph, FunctionId::Cos, a);
}

NodeId slopeOfCos(Graph& graph, NodeId, NodeId a)
{
    return negative(graph, call(graph, FunctionId::Sin, a));
}

NodeId slopeOfTan(Graph& graph, NodeId f, NodeId)
{
    return sum(graph, constant(graph, 1.0), squared(graph, f));
}

NodeId slopeOfAsin(Graph& graph, NodeId, NodeId a)
{
    return inverse(graph, cosineOfArcsine(graph, a));
}

NodeId slopeOfAcos(Graph& graph, NodeId, NodeId a)
{
    return negative(graph, inverse(graph, cosineOfArcsine(graph, a)));
}

NodeId slopeOfAtan(Graph& graph, NodeId, NodeId a)
{
    return inverse(graph, sum(graph, constant(graph, 1.0), squared(graph, a)));
}

NodeId slopeOfSinh(Graph& graph, NodeId, NodeId a)
{
    return call(graph, FunctionId::Cosh, a);
}

NodeId slopeOfCosh(Graph& graph, NodeId, NodeId a)
{
    return call(graph, FunctionId::Sinh, a);
}

// 1 - tanh^2 would have no digit left where tanh is close to 1.
NodeId slopeOfTanh(Graph& graph, NodeId, NodeId a)
{
    return squared(graph, call(graph, FunctionId::Sech, a));
}

NodeId slopeOfSech(Graph& graph, NodeId f, NodeId a)
{
    return negative(graph, product(graph, f, call(graph, FunctionId::Tanh, a)));
}

NodeId slopeOfExp(Graph&, NodeId f, NodeId)
{
    return f;
}

NodeId slopeOfLog(Graph& graph, NodeId, NodeId a)
{
    return inverse(graph, a);
}

NodeId slopeOfLog10(Graph& graph, NodeId, NodeId a)
{
    return quotient(graph, constant(graph, 1.0 / std::log(10.0)), a);
}

NodeId slopeOfSqrt(Graph& graph, NodeId f, NodeId)
{
    return quotient(graph, constant(graph, 0.5), f);
}

NodeId slopeOfCbrt(Graph& graph, NodeId f, NodeId)
{
    return quotient(graph, constant(graph, 1.0 / 3.0), squared(graph, f));
}

NodeId slopeOfAbs(Graph& graph, NodeId, NodeId a)
{
    return call(graph, FunctionId::Sign, a);
}

NodeId slopeOfPieces(Graph& graph, NodeId, NodeId)
{
    return constant(graph, 0.0);
}

// --- Derivatives of functions of two arguments --------------------------------------

NodeId slopeOfAtan2(Graph& graph, NodeId, NodeId a, NodeId b, NodeId da, NodeId db)
{
    const NodeId numerator = difference(graph, product(graph, b, da), product(graph, a, db));
    return quotient(graph, numerator, sum(graph, squared(graph, a), squared(graph, b)));
}

NodeId slopeOfHypot(Graph& graph, NodeId f, NodeId a, NodeId b, NodeId da, NodeId db)
{
    return sum(graph, product(graph, quotient(graph, a, f), da), product(graph, quotient(graph, b, f), db));
}

NodeId slopeOfSignOf(Graph& graph, NodeId, NodeId a, NodeId b, NodeId da, NodeId)
{
    const NodeId signOfB = call(graph, FunctionId::SignOf, constant(graph, 1.0), b);
    return product(graph, signOfB, product(graph, call(graph, FunctionId::Sign, a), da));
}

NodeId slopeOfMin(Graph& graph, NodeId, NodeId a, NodeId b, NodeId da, NodeId db)
{
    return chooseLess(graph, b, a, db, da);
}

NodeId slopeOfMax(Graph& graph, NodeId, NodeId a, NodeId b, NodeId da, NodeId db)
{
    return chooseLess(graph, a, b, db, da);
}

NodeId slopeOfDim(Graph& graph, NodeId, NodeId a, NodeId b, NodeId da, NodeId db)
{
    return chooseLess(graph, a, b, constant(graph, 0.0), difference(graph, da, db));
}

// a mod b = a - k b with a whole k.
NodeId slopeOfMod(Graph& graph, NodeId f, NodeId a, NodeId b, NodeId da, NodeId db)
{
    const NodeId k = call(graph, FunctionId::Nint, quotient(graph, difference(graph, a, f), b));
    return difference(graph, da, product(graph, k, db));
}

// n a^(n-1) a' for a constant exponent, else a^b (b' log a + b a' / a). The
// logarithm is left out where b' is 0, for a negative base has none.
NodeId slopeOfPower(Graph& graph, NodeId f, NodeId a, NodeId b, NodeId da, NodeId db)
{
    if (graph[b].op == Op::Constant) {
        const double n = graph[b].number;
        return product(graph, n, product(graph, power(graph, a, n - 1.0), da));
    }
    const NodeId exponentMoves = product(graph, db, call(graph, FunctionId::Log, a));
    const NodeId baseMoves = quotient(graph, product(graph, b, da), a);
    return product(graph, f, sum(graph, exponentMoves, baseMoves));
}

// --- Functions made of others ---------------------------------------------------------

NodeId expandLn(Graph& graph, std::span<const NodeId> arguments)
{
    return call(graph, FunctionId::Log, arguments[0]);
}

NodeId expandMin(Graph& graph, std::span<const NodeId> arguments)
{
    NodeId least = arguments[0];
    for (const NodeId argument : arguments.subspan(1))
        least = call(graph, FunctionId::Min, least, argument);
    return least;
}

NodeId expandMax(Graph& graph, std::span<const NodeId> arguments)
{
    NodeId greatest = arguments[0];
    for (const NodeId argument : arguments.subspan(1))
        greatest = call(graph, FunctionId::Max, greatest, argument);
    return greatest;
}

NodeId expandIf(Graph& graph, std::span<const NodeId> arguments)
{
    return chooseSign(graph, arguments[0], arguments[1], arguments[2], arguments[3]);
}

namespace {

// The arguments (x, x0, h0, x1, h1) of the steps and their u = (x - x0) / (x1 - x0).
struct StepArguments {
    NodeId x, x0, h0, x1, h1, u;

    StepArguments(Graph& graph, std::span<const NodeId> arguments)
        : x(arguments[0]),
          x0(arguments[1]),
          h0(arguments[2]),
          x1(arguments[3]),
          h1(arguments[4]),
          u(quotient(graph, difference(graph, x, x0), difference(graph, x1, x0)))
    {
    }

    // h0 before x0, h1 after x1, between h0 + (h1 - h0) * shape
    NodeId withShape(Graph& graph, NodeId shape) const
    {
        const NodeId between = sum(graph, h0, product(graph, difference(graph, h1, h0), shape));
        return chooseStep(graph, x, x0, x1, h0, between, h1);
    }
};

// The numbers behind constant nodes; nothing when one is no constant.
std::optional<std::vector<double>> constants(const Graph& graph, std::span<const NodeId> nodes)
{
    std::vector<double> numbers;
    numbers.reserve(nodes.size());
    for (const NodeId id : nodes) {
        if (graph[id].op != Op::Constant)
            return std::nullopt;
        numbers.push_back(graph[id].number);
    }
    return numbers;
}

// The value where u is defined; where u is not, nothing.
NodeId whereDefined(Graph& graph, NodeId u, NodeId value)
{
    return sum(graph, product(graph, 0.0, u), value);
}

// a0 + a1 f(w h) + a2 f(2 w h) + ..., from the arguments (x, x0, w, a0, ...)
NodeId fourierSeries(Graph& graph, FunctionId f, std::span<const NodeId> arguments)
{
    const NodeId h = difference(graph, arguments[0], arguments[1]);
    const NodeId w = arguments[2];
    NodeId total = arguments[3];
    if (arguments.size() == 4)
        return whereDefined(graph, product(graph, w, h), total);
    for (std::size_t j = 1; j + 3 < arguments.size(); ++j) {
        const NodeId angle = product(graph, product(graph, static_cast<double>(j), w), h);
        total = sum(graph, total, product(graph, arguments[j + 3], call(graph, f, angle)));
    }
    return total;
}

}  // namespace

NodeId expandStep(Graph& graph, std::span<const NodeId> arguments)
{
    constexpr double kShape[] = {3.0, -2.0};
    const StepArguments step(graph, arguments);
    return step.withShape(graph, polynomial(graph, step.u, 2, kShape));
}

NodeId expandStep5(Graph& graph, std::span<const NodeId> arguments)
{
    constexpr double kShape[] = {10.0, -15.0, 6.0};
    const StepArguments step(graph, arguments);
    return step.withShape(graph, polynomial(graph, step.u, 3, kShape));
}

NodeId expandHavsin(Graph& graph, std::span<const NodeId> arguments)
{
    const StepArguments step(graph, arguments);
    const NodeId cosine = call(graph, FunctionId::Cos, product(graph, kPi, step.u));
    return step.withShape(graph, product(graph, 0.5, difference(graph, constant(graph, 1.0), cosine)));
}

// a0 + h (a1 + h (a2 + ...))
NodeId expandPoly(Graph& graph, std::span<const NodeId> arguments)
{
    const NodeId h = difference(graph, arguments[0], arguments[1]);
    const auto coefficients = arguments.subspan(2);
    if (const auto numbers = constants(graph, coefficients))
        return polynomial(graph, h, 0, *numbers);
    NodeId total = coefficients.back();
    if (coefficients.size() == 1)
        return whereDefined(graph, h, total);
    for (std::size_t j = coefficients.size() - 1; j-- > 0;)
        total = sum(graph, coefficients[j], product(graph, h, total));
    return total;
}

NodeId expandCheby(Graph& graph, std::span<const NodeId> arguments)
{
    const NodeId h = difference(graph, arguments[0], arguments[1]);
    const auto coefficients = arguments.subspan(2);
    if (const auto numbers = constants(graph, coefficients))
        return chebyshev(graph, h, *numbers);
    NodeId total = coefficients[0];
    if (coefficients.size() == 1)
        return whereDefined(graph, h, total);
    std::vector<double> unit;
    for (std::size_t j = 1; j < coefficients.size() && !graph.full(); ++j) {
        unit.assign(j + 1, 0.0);
        unit[j] = 1.0;
        total = sum(graph, total, product(graph, coefficients[j], chebyshev(graph, h, unit)));
    }
    return total;
}

NodeId expandShf(Graph& graph, std::span<const NodeId> arguments)
{
    const NodeId h = difference(graph, arguments[0], arguments[1]);
    const NodeId angle = difference(graph, product(graph, arguments[3], h), arguments[4]);
    return sum(graph, product(graph, arguments[2], call(graph, FunctionId::Sin, angle)), arguments[5]);
}

NodeId expandForsin(Graph& graph, std::span<const NodeId> arguments)
{
    return fourierSeries(graph, FunctionId::Sin, arguments);
}

NodeId expandForcos(Graph& graph, std::span<const NodeId> arguments)
{
    return fourierSeries(graph, FunctionId::Cos, arguments);
}

}  // namespace mf::engine::rules
