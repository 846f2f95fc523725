#include "mfcurves/engine/simplification.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

#include "mfcurves/engine/limits.h"
#include "mfcurves/engine/values.h"

namespace mf::engine {
namespace {

bool isConstant(const Graph& graph, NodeId id)
{
    return graph[id].op == Op::Constant;
}

bool isConstant(const Graph& graph, NodeId id, double number)
{
    return graph[id].op == Op::Constant && graph[id].number == number;
}

bool isFree(const Graph& graph)
{
    return graph.folding == Folding::Free;
}

// A factor by which every product is exact, as long as nothing over- or
// underflows: plus or minus a power of two.
bool isPowerOfTwo(double number)
{
    int exponent = 0;
    return std::isnormal(number) && std::fabs(std::frexp(number, &exponent)) == 0.5;
}

// Of numbers whose product is normal.
bool isExactProduct(double a, double b)
{
    return std::fma(a, b, -(a * b)) == 0.0;
}

bool isExactSum(double a, double b)
{
    const double s = a + b;
    const double bPart = s - a;
    return std::isfinite(s) && (a - (s - bPart)) + (b - bPart) == 0.0;
}

NodeId makeNode(Graph& graph, Op op, NodeId a, NodeId b, FunctionId function = {})
{
    Node node;
    node.op = op;
    node.a = a;
    node.b = b;
    node.function = function;
    return graph.intern(node);
}

NodeId makeChoice(Graph& graph, Op op, std::span<const NodeId> operands)
{
    Node node;
    node.op = op;
    return graph.intern(node, operands);
}

// Equal operands in another order are the same sum or product, bit for bit;
// constants stand first.
NodeId makeCommutative(Graph& graph, Op op, NodeId a, NodeId b)
{
    if (!isConstant(graph, a) && (isConstant(graph, b) || b < a))
        std::swap(a, b);
    return makeNode(graph, op, a, b);
}

// factor * base, with factor 1 where there is none.
struct Scaled {
    double factor;
    NodeId base;
};

Scaled scaled(const Graph& graph, NodeId id)
{
    const Node& node = graph[id];
    if (node.op == Op::Product && isConstant(graph, node.a))
        return {graph[node.a].number, node.b};
    return {1.0, id};
}

bool isMonomial(const Graph& graph, NodeId id)
{
    return graph[id].op == Op::Polynomial && graph[id].count == 1;
}

// --- Gathering monomials of one inner variable into a polynomial ---------------

// c[0] + c[1] u + ... + c[highest] u^highest
struct Terms {
    std::array<double, kLargestProductPower + 1> c{};
    int highest = 0;
};

std::optional<Terms> polynomialTerms(const Graph& graph, const Node& node)
{
    Terms terms;
    terms.highest = node.lowest + static_cast<int>(node.count) - 1;
    if (terms.highest > kLargestProductPower)
        return std::nullopt;
    std::ranges::copy(graph.coefficients(node), terms.c.begin() + node.lowest);
    return terms;
}

// The node as a polynomial in u of a low degree, if it is written as one. In a
// text a sum such as x - 1 is no such polynomial: it is exact near its zero, and
// would not be any more inside a longer one.
std::optional<Terms> termsIn(const Graph& graph, NodeId id, NodeId u)
{
    const Node& node = graph[id];
    if (node.op == Op::Polynomial && node.a == u)
        return polynomialTerms(graph, node);

    Terms terms;
    if (node.op == Op::Constant) {
        terms.c[0] = node.number;
        return terms;
    }
    Scaled slope = scaled(graph, id);
    if (node.op == Op::Sum && isConstant(graph, node.a)) {
        slope = scaled(graph, node.b);
        if (!isFree(graph) && isPowerOfTwo(slope.factor))
            return std::nullopt;
        terms.c[0] = graph[node.a].number;
    }
    if (slope.base != u)
        return std::nullopt;
    terms.c[1] = slope.factor;
    terms.highest = 1;
    return terms;
}

// The variable in which a node is a polynomial, or kNoNode.
NodeId innerVariable(const Graph& graph, NodeId id)
{
    const Node& node = graph[id];
    if (node.op == Op::Polynomial)
        return node.a;
    if (isFree(graph) && node.op == Op::Sum && isConstant(graph, node.a))
        return scaled(graph, node.b).base;
    return kNoNode;
}

// Whether each power follows from the one before by a factor or a square. Across a
// wider gap a row of plain multiplications would err more than the power itself.
bool isWithoutGaps(const Terms& terms)
{
    int last = -1;
    for (int i = 0; i <= terms.highest; ++i) {
        if (terms.c[i] == 0.0)
            continue;
        if (last >= 0 && i - last > 2)
            return false;
        last = i;
    }
    return true;
}

// The sum of a and b as one polynomial, if both are polynomials of one variable
// and, in a text, no coefficient has to be rounded that the text would not round.
std::optional<NodeId> gatheredSum(Graph& graph, NodeId a, NodeId b)
{
    NodeId u = innerVariable(graph, a);
    if (u == kNoNode)
        u = innerVariable(graph, b);
    if (u == kNoNode)
        return std::nullopt;
    // A constant beside higher powers only would fill the gap with zeros.
    if ((isConstant(graph, a) && graph[b].lowest > 1) || (isConstant(graph, b) && graph[a].lowest > 1))
        return std::nullopt;
    const auto first = termsIn(graph, a, u);
    const auto second = first ? termsIn(graph, b, u) : std::nullopt;
    if (!second)
        return std::nullopt;

    Terms total;
    total.highest = std::max(first->highest, second->highest);
    for (int i = 0; i <= total.highest; ++i) {
        if (!isFree(graph) && !isExactSum(first->c[i], second->c[i]))
            return std::nullopt;
        total.c[i] = first->c[i] + second->c[i];
    }
    if (!isFree(graph) && !isWithoutGaps(total))
        return std::nullopt;
    return polynomial(graph, u, 0, {total.c.data(), static_cast<std::size_t>(total.highest) + 1});
}

// factor * polynomial with the factor in the coefficients: where none of them over- or
// underflows, and in a text only where that is exact.
std::optional<NodeId> scaledPolynomial(Graph& graph, double factor, NodeId id)
{
    const Node node = graph[id];
    if (node.op != Op::Polynomial || node.count > kLargestProductPower + 1)
        return std::nullopt;
    Terms terms;
    const auto coefficients = graph.coefficients(node);
    for (std::size_t i = 0; i < coefficients.size(); ++i) {
        terms.c[i] = factor * coefficients[i];
        if (coefficients[i] != 0.0 && !std::isnormal(terms.c[i]))
            return std::nullopt;
        const bool one = node.count == 1;
        if (!isFree(graph) && !(one && isExactProduct(factor, coefficients[i])) && !isPowerOfTwo(factor))
            return std::nullopt;
    }
    return polynomial(graph, node.a, node.lowest, {terms.c.data(), coefficients.size()});
}

// u^m times u^n as one monomial; a node is its own first power.
std::optional<NodeId> monomialProduct(Graph& graph, NodeId a, NodeId b)
{
    if (!isMonomial(graph, a))
        std::swap(a, b);
    const bool aIsOne = isMonomial(graph, a);
    const bool bIsOne = isMonomial(graph, b);
    const NodeId u = aIsOne ? graph[a].a : a;
    if ((bIsOne ? graph[b].a : b) != u)
        return std::nullopt;
    const int exponent = (aIsOne ? graph[a].lowest : 1) + (bIsOne ? graph[b].lowest : 1);
    const double factor =
        (aIsOne ? graph.coefficients(graph[a])[0] : 1.0) * (bIsOne ? graph.coefficients(graph[b])[0] : 1.0);
    if (exponent > kLargestProductPower || !std::isnormal(factor))
        return std::nullopt;
    return polynomial(graph, u, exponent, {&factor, 1});
}

// --- Products and quotients in a derivative --------------------------------------

// (f * u + rest) + g * u as (f + g) * u + rest; nothing when there is no such u.
std::optional<NodeId> joinedSum(Graph& graph, NodeId a, const Scaled& addend)
{
    if (graph[a].op != Op::Sum)
        return std::nullopt;
    NodeId rest = graph[a].a;
    Scaled same = scaled(graph, graph[a].b);
    if (same.base != addend.base) {
        rest = graph[a].b;
        same = scaled(graph, graph[a].a);
    }
    if (same.base != addend.base || isConstant(graph, same.base))
        return std::nullopt;
    // Not through sum, which would walk down a long row of a text.
    const NodeId joined = product(graph, same.factor + addend.factor, same.base);
    return isConstant(graph, joined, 0.0) ? rest : makeCommutative(graph, Op::Sum, rest, joined);
}

// In a derivative constants are gathered in front of a product, and powers of one
// factor become one power.
NodeId freeProduct(Graph& graph, NodeId a, NodeId b)
{
    const Scaled first = scaled(graph, a);
    const Scaled second = scaled(graph, b);
    NodeId bases;
    if (const auto gathered = monomialProduct(graph, first.base, second.base))
        bases = *gathered;
    else
        bases = makeCommutative(graph, Op::Product, first.base, second.base);
    return product(graph, first.factor * second.factor, bases);
}

bool isWholePower(double exponent)
{
    return std::fabs(exponent) <= kLargestProductPower && exponent == std::trunc(exponent);
}

}  // namespace

NodeId constant(Graph& graph, double number)
{
    Node node;
    node.number = number;
    return graph.intern(node);
}

NodeId variable(Graph& graph, std::uint32_t number)
{
    Node node;
    node.op = Op::Variable;
    node.index = number;
    return graph.intern(node);
}

NodeId negative(Graph& graph, NodeId a)
{
    return product(graph, -1.0, a);
}

NodeId sum(Graph& graph, NodeId a, NodeId b)
{
    if (isConstant(graph, a) && isConstant(graph, b))
        return constant(graph, graph[a].number + graph[b].number);
    if (isConstant(graph, a, 0.0))
        return b;
    if (isConstant(graph, b, 0.0))
        return a;
    if (a == b)
        return product(graph, 2.0, a);
    if (isFree(graph)) {
        const Scaled first = scaled(graph, a);
        const Scaled second = scaled(graph, b);
        if (first.base == second.base)
            return product(graph, first.factor + second.factor, first.base);
        if (const auto joined = joinedSum(graph, a, second))
            return *joined;
        if (const auto joined = joinedSum(graph, b, first))
            return *joined;
    }
    if (const auto gathered = gatheredSum(graph, a, b))
        return *gathered;
    return makeCommutative(graph, Op::Sum, a, b);
}

NodeId difference(Graph& graph, NodeId a, NodeId b)
{
    return sum(graph, a, negative(graph, b));
}

NodeId product(Graph& graph, double factor, NodeId a)
{
    if (isConstant(graph, a))
        return constant(graph, factor * graph[a].number);
    if (factor == 1.0)
        return a;
    if (factor == 0.0 && isFree(graph))
        return constant(graph, 0.0);
    // One level: a long row of factors in a text is not walked again and again.
    const Scaled inner = scaled(graph, a);
    const double both = factor * inner.factor;
    const bool exact = isPowerOfTwo(factor) || isPowerOfTwo(inner.factor);
    if (inner.base != a && std::isnormal(both) && (isFree(graph) || exact)) {
        factor = both;
        a = inner.base;
        if (factor == 1.0)
            return a;
    }
    if (const auto folded = scaledPolynomial(graph, factor, a))
        return *folded;
    return makeNode(graph, Op::Product, constant(graph, factor), a);
}

NodeId product(Graph& graph, NodeId a, NodeId b)
{
    if (isConstant(graph, a))
        return product(graph, graph[a].number, b);
    if (isConstant(graph, b))
        return product(graph, graph[b].number, a);
    if (isFree(graph))
        return freeProduct(graph, a, b);
    return makeCommutative(graph, Op::Product, a, b);
}

NodeId quotient(Graph& graph, NodeId a, NodeId b)
{
    if (isConstant(graph, b)) {
        const double divisor = graph[b].number;
        if (isConstant(graph, a))
            return constant(graph, graph[a].number / divisor);
        const bool exact = isPowerOfTwo(divisor) && std::isnormal(1.0 / divisor);
        if (exact || (isFree(graph) && std::isnormal(1.0 / divisor)))
            return product(graph, 1.0 / divisor, a);
    }
    if (isFree(graph)) {
        if (isConstant(graph, a, 0.0))
            return a;
        const Scaled numerator = scaled(graph, a);
        if (numerator.factor != 1.0)
            return product(graph, numerator.factor, makeNode(graph, Op::Quotient, numerator.base, b));
    }
    return makeNode(graph, Op::Quotient, a, b);
}

NodeId power(Graph& graph, NodeId base, NodeId exponent)
{
    if (isConstant(graph, base) && isConstant(graph, exponent))
        return constant(graph, powerValue(graph[base].number, graph[exponent].number));
    if (isConstant(graph, exponent) && isWholePower(graph[exponent].number)) {
        const int n = static_cast<int>(graph[exponent].number);
        const double one = 1.0;
        if (n > 0)
            return polynomial(graph, base, n, {&one, 1});
        if (n < 0)
            return quotient(graph, constant(graph, 1.0), polynomial(graph, base, -n, {&one, 1}));
    }
    return makeNode(graph, Op::Call2, base, exponent, FunctionId::Power);
}

NodeId power(Graph& graph, NodeId base, double exponent)
{
    return power(graph, base, constant(graph, exponent));
}

NodeId polynomial(Graph& graph, NodeId u, int lowest, std::span<const double> c)
{
    if (isConstant(graph, u))
        return constant(graph, polynomialValue(graph[u].number, static_cast<unsigned>(lowest), c));
    while (c.size() > 1 && c.back() == 0.0)
        c = c.first(c.size() - 1);
    for (; c.size() > 1 && c.front() == 0.0 && lowest < kLargestProductPower; ++lowest)
        c = c.subspan(1);

    // Where u is undefined the text is, even if no coefficient asks for u.
    if (c.size() == 1 && lowest == 0)
        return sum(graph, product(graph, 0.0, u), constant(graph, c[0]));
    if (c.size() == 1 && lowest == 1)
        return product(graph, c[0], u);
    if (c.size() == 2 && lowest == 0) {
        const double c0 = c[0];
        return sum(graph, constant(graph, c0), product(graph, c[1], u));
    }
    Node node;
    node.op = Op::Polynomial;
    node.a = u;
    node.lowest = static_cast<std::uint16_t>(lowest);
    return graph.intern(node, c);
}

NodeId chebyshev(Graph& graph, NodeId h, std::span<const double> c)
{
    if (isConstant(graph, h))
        return constant(graph, chebyshevValue(graph[h].number, c));
    if (c.size() <= 2)
        return polynomial(graph, h, 0, c);
    Node node;
    node.op = Op::Chebyshev;
    node.a = h;
    return graph.intern(node, c);
}

NodeId call(Graph& graph, FunctionId id, NodeId a)
{
    if (isConstant(graph, a))
        return constant(graph, function(id).value1(graph[a].number));
    return makeNode(graph, Op::Call1, a, {}, id);
}

NodeId call(Graph& graph, FunctionId id, NodeId a, NodeId b)
{
    if (isConstant(graph, a) && isConstant(graph, b))
        return constant(graph, function(id).value2(graph[a].number, graph[b].number));
    return makeNode(graph, Op::Call2, a, b, id);
}

NodeId chooseLess(Graph& graph, NodeId p, NodeId q, NodeId ifLess, NodeId otherwise)
{
    if (ifLess == otherwise)
        return ifLess;
    const NodeId operands[] = {p, q, ifLess, otherwise};
    return makeChoice(graph, Op::ChooseLess, operands);
}

NodeId chooseSign(Graph& graph, NodeId c, NodeId ifNegative, NodeId ifZero, NodeId ifPositive)
{
    if (isConstant(graph, c)) {
        const double sign = signValue(graph[c].number);
        return sign < 0.0 ? ifNegative : sign > 0.0 ? ifPositive : sign == 0.0 ? ifZero : c;
    }
    if (ifNegative == ifZero && ifZero == ifPositive && isFree(graph))
        return ifZero;
    const NodeId operands[] = {c, ifNegative, ifZero, ifPositive};
    return makeChoice(graph, Op::ChooseSign, operands);
}

NodeId chooseStep(Graph& graph, NodeId x, NodeId x0, NodeId x1, NodeId before, NodeId between, NodeId after)
{
    if (before == between && between == after && isFree(graph))
        return between;
    const NodeId operands[] = {x, x0, x1, before, between, after};
    return makeChoice(graph, Op::ChooseStep, operands);
}

}  // namespace mf::engine
