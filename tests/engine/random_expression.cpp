// SPDX-License-Identifier: MIT

#include "tests/engine/random_expression.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <numbers>
#include <utility>

namespace engine_test {
namespace {

using Arguments = std::vector<Jet>;

constexpr Real kPi = std::numbers::pi_v<double>;  // `pi` of the engine is the nearest double

Jet unary(const Jet& u, Series (*value)(const Series&), Series (*slope)(const Series&))
{
    return chain(value(u.value), slope(u.value), u);
}

/// A function known by its value and by the series of its derivative.
Jet fromSlope(const Jet& u, Real value, const Series& slope)
{
    return chain(integrate(value, slope, u.value), slope, u);
}

Jet reciprocal(const Jet& u)
{
    if (u.value[0] == 0)  // infinite, from which a later operation may make a finite value
        return clearOf(undefinedJet(), 0, 0);
    const Series value = constant(1) / u.value;
    return clearOf(chain(value, -(value * value), u), u.value[0], u.size[0]);
}

Jet sin(const Arguments& a)
{
    return unary(a[0], sine, cosine);
}

Jet cos(const Arguments& a)
{
    return unary(a[0], cosine, [](const Series& u) { return -sine(u); });
}

Jet tan(const Arguments& a)
{
    const Series value = sine(a[0].value) / cosine(a[0].value);
    const Jet result = chain(value, constant(1) + value * value, a[0]);
    return clearOf(result, std::cos(a[0].value[0]), a[0].size[0]);
}

/// asin or acos, whose slope is `sign` / sqrt(1 - u^2).
Jet arc(const Jet& u, Real value, Real sign)
{
    const Real x = u.value[0];
    if (std::abs(x) > 1)
        return clearOf(undefinedJet(), std::abs(x) - 1, u.size[0]);
    const Series slope = sign * power(constant(1) - u.value * u.value, -0.5L);
    return clearOf(fromSlope(u, value, slope), 1 - std::abs(x), u.size[0]);
}

Jet asin(const Arguments& a)
{
    return arc(a[0], std::asin(a[0].value[0]), 1);
}

Jet acos(const Arguments& a)
{
    return arc(a[0], std::acos(a[0].value[0]), -1);
}

Jet atan(const Arguments& a)
{
    const Series slope = constant(1) / (constant(1) + a[0].value * a[0].value);
    return fromSlope(a[0], std::atan(a[0].value[0]), slope);
}

Jet atan2(const Arguments& a)
{
    const Jet& y = a[0];
    const Jet& x = a[1];
    // d atan2 = (x dy - y dx) / (x^2 + y^2)
    const Series squared = x.value * x.value + y.value * y.value;
    const Series slopeY = x.value / squared;
    const Series slopeX = -(y.value / squared);
    Jet result;
    result.value =
        integrate(std::atan2(y.value[0], x.value[0]), slopeY, y.value) + integrate(0, slopeX, x.value);
    const Jet partY = chain(result.value, slopeY, y);
    const Jet partX = chain(result.value, slopeX, x);
    result.size = partY.size + partX.size;
    result = withFlagsOf(withFlagsOf(result, x), y);
    const bool acrossCut = x.value[0] < 0;
    const Real distance = acrossCut ? std::abs(y.value[0]) : std::hypot(x.value[0], y.value[0]);
    return clearOf(result, distance, x.size[0] + y.size[0]);
}

Jet exp(const Arguments& a)
{
    return unary(a[0], exponential, exponential);
}

Jet halfOfExponentials(const Jet& u, Real sign)
{
    const Series up = exponential(u.value);
    const Series down = constant(1) / up;
    return chain(0.5L * (up + sign * down), 0.5L * (up + -sign * down), u);
}

Jet sinh(const Arguments& a)
{
    return halfOfExponentials(a[0], -1);
}

Jet cosh(const Arguments& a)
{
    return halfOfExponentials(a[0], 1);
}

Jet tanh(const Arguments& a)
{
    // 1 - tanh^2 would cancel where tanh is almost 1.
    const Series twice = exponential(2 * a[0].value);
    const Series slope = 4 * twice / ((twice + constant(1)) * (twice + constant(1)));
    return fromSlope(a[0], std::tanh(a[0].value[0]), slope);
}

Jet ln(const Arguments& a)
{
    const Real x = a[0].value[0];
    if (x <= 0)
        return clearOf(undefinedJet(), x, a[0].size[0]);
    return clearOf(fromSlope(a[0], std::log(x), constant(1) / a[0].value), x, a[0].size[0]);
}

Jet log10(const Arguments& a)
{
    return ln(a) * numberJet(1 / std::log(10.0L));
}

Jet root(const Jet& u, Real exponent)
{
    return clearOf(chain(power(u.value, exponent), exponent * power(u.value, exponent - 1), u), u.value[0],
                   u.size[0]);
}

Jet sqrt(const Arguments& a)
{
    if (a[0].value[0] < 0)
        return clearOf(undefinedJet(), a[0].value[0], a[0].size[0]);
    return root(a[0], 0.5L);
}

Jet cbrt(const Arguments& a)
{
    return a[0].value[0] < 0 ? -root(-a[0], 1 / 3.0L) : root(a[0], 1 / 3.0L);
}

Jet abs(const Arguments& a)
{
    return clearOf(a[0].value[0] < 0 ? -a[0] : a[0], a[0].value[0], a[0].size[0]);
}

Jet sign(const Arguments& a)
{
    const Jet& judge = a.back();
    const Real s = judge.value[0] < 0 ? -1 : 1;
    const Jet one = clearOf(withFlagsOf(numberJet(s), judge), judge.value[0], judge.size[0]);
    return a.size() == 1 ? one : abs({a[0]}) * one;
}

Jet choose(const Arguments& a, bool (*better)(Real, Real))
{
    Jet chosen = a[0];
    for (std::size_t i = 1; i < a.size(); ++i) {
        const Real distance = a[i].value[0] - chosen.value[0];
        const Jet& winner = better(a[i].value[0], chosen.value[0]) ? a[i] : chosen;
        Jet next = clearOf(winner, distance, a[i].size[0] + chosen.size[0]);
        next = withFlagsOf(withFlagsOf(next, a[i]), chosen);
        chosen = next;
    }
    return chosen;
}

Jet min(const Arguments& a)
{
    return choose(a, [](Real x, Real y) { return x < y; });
}

Jet max(const Arguments& a)
{
    return choose(a, [](Real x, Real y) { return x > y; });
}

Jet dim(const Arguments& a)
{
    const Jet difference = a[0] - a[1];
    return choose({difference, numberJet(0)}, [](Real x, Real y) { return x > y; });
}

/// A whole number near u, with the distance to the next jump.
Jet whole(const Jet& u, Real value, Real distance)
{
    return clearOf(withFlagsOf(numberJet(value), u), distance, u.size[0]);
}

Real toNextWhole(Real x)
{
    return x - std::nearbyint(x);
}

Jet floor(const Arguments& a)
{
    return whole(a[0], std::floor(a[0].value[0]), toNextWhole(a[0].value[0]));
}

Jet ceil(const Arguments& a)
{
    return whole(a[0], std::ceil(a[0].value[0]), toNextWhole(a[0].value[0]));
}

Jet truncated(const Arguments& a)
{
    return whole(a[0], std::trunc(a[0].value[0]), toNextWhole(a[0].value[0]));
}

Jet nint(const Arguments& a)
{
    return whole(a[0], std::round(a[0].value[0]), toNextWhole(a[0].value[0] + 0.5L));
}

Jet mod(const Arguments& a)
{
    if (a[1].value[0] == 0)
        return undefinedJet();
    return a[0] - a[1] * truncated({a[0] * reciprocal(a[1])});
}

Jet hypot(const Arguments& a)
{
    return sqrt({a[0] * a[0] + a[1] * a[1]});
}

/// The shape of a step between its ends: c3 u^3 + c4 u^4 + c5 u^5, or the haversine.
Jet ramp(const Arguments& a, Jet (*shape)(const Jet&))
{
    const Jet &x = a[0], &x0 = a[1], &h0 = a[2], &x1 = a[3], &h1 = a[4];
    const Jet span = x1 - x0;
    Jet result;
    if (span.value[0] <= 0)
        result = undefinedJet();
    else if (x.value[0] <= x0.value[0])
        result = h0;
    else if (x.value[0] >= x1.value[0])
        result = h1;
    else
        result = h0 + (h1 - h0) * shape((x - x0) * reciprocal(span));
    const Real size = x.size[0] + x0.size[0] + x1.size[0];
    result = clearOf(result, span.value[0], size);
    result = clearOf(result, x.value[0] - x0.value[0], size);
    result = clearOf(result, x.value[0] - x1.value[0], size);
    for (const Jet& argument : a)
        result = withFlagsOf(result, argument);
    return result;
}

Jet step(const Arguments& a)
{
    return ramp(a, [](const Jet& u) { return u * u * (numberJet(3) - numberJet(2) * u); });
}

Jet step5(const Arguments& a)
{
    return ramp(a, [](const Jet& u) {
        return u * u * u * (numberJet(10) + u * (numberJet(-15) + numberJet(6) * u));
    });
}

Jet havsin(const Arguments& a)
{
    return ramp(a, [](const Jet& u) { return (numberJet(1) - cos({numberJet(kPi) * u})) * numberJet(0.5L); });
}

Jet poly(const Arguments& a)
{
    const Jet h = a[0] - a[1];
    Jet sum = a.back();
    for (std::size_t j = a.size() - 1; j-- > 2;)
        sum = sum * h + a[j];
    return sum;
}

Jet cheby(const Arguments& a)
{
    const Jet h = a[0] - a[1];
    Jet previous = numberJet(1);
    Jet current = h;
    Jet sum = a[2];
    for (std::size_t j = 3; j < a.size(); ++j) {
        sum = sum + a[j] * current;
        previous = std::exchange(current, numberJet(2) * h * current - previous);
    }
    return sum;
}

Jet shf(const Arguments& a)
{
    return a[2] * sin({a[3] * (a[0] - a[1]) - a[4]}) + a[5];
}

Jet fourier(const Arguments& a, Jet (*wave)(const Arguments&))
{
    const Jet turn = a[2] * (a[0] - a[1]);
    Jet sum = a[3];
    for (std::size_t j = 4; j < a.size(); ++j)
        sum = sum + a[j] * wave({numberJet(static_cast<Real>(j - 3)) * turn});
    return sum;
}

Jet forsin(const Arguments& a)
{
    return fourier(a, sin);
}

Jet forcos(const Arguments& a)
{
    return fourier(a, cos);
}

Tree leaf(double number)
{
    Tree tree;
    tree.kind = Tree::Kind::Number;
    tree.number = number;
    return tree;
}

Tree binary(char sign, Tree left, Tree right)
{
    Tree tree;
    tree.kind = Tree::Kind::Binary;
    tree.sign = sign;
    tree.arguments.push_back(std::move(left));
    tree.arguments.push_back(std::move(right));
    return tree;
}

const Function& named(const std::string& name)
{
    for (const Function& function : functions()) {
        if (function.name == name)
            return function;
    }
    std::abort();
}

Tree callOf(const std::string& name, Tree argument)
{
    Tree tree;
    tree.kind = Tree::Kind::Call;
    tree.function = &named(name);
    tree.arguments.push_back(std::move(argument));
    return tree;
}

Tree positive(Tree argument)
{
    return binary('+', leaf(0.5), callOf("abs", std::move(argument)));
}

Tree withinOne(Tree argument)
{
    return binary('*', leaf(0.75), callOf("sin", std::move(argument)));
}

Tree moderate(Tree argument)
{
    return binary('*', leaf(3), callOf("sin", std::move(argument)));
}

}  // namespace

// `if` does not have a jet of its own: only the chosen argument is evaluated.
const std::vector<Function>& functions()
{
    static const std::vector<Function> table = {
        {"sin", 1, 1, sin, nullptr},       {"cos", 1, 1, cos, nullptr},
        {"tan", 1, 1, tan, nullptr},       {"asin", 1, 1, asin, withinOne},
        {"acos", 1, 1, acos, withinOne},   {"atan", 1, 1, atan, nullptr},
        {"atan2", 2, 2, atan2, nullptr},   {"sinh", 1, 1, sinh, moderate},
        {"cosh", 1, 1, cosh, moderate},    {"tanh", 1, 1, tanh, moderate},
        {"exp", 1, 1, exp, moderate},      {"ln", 1, 1, ln, positive},
        {"log", 1, 1, ln, positive},       {"log10", 1, 1, log10, positive},
        {"sqrt", 1, 1, sqrt, positive},    {"cbrt", 1, 1, cbrt, nullptr},
        {"abs", 1, 1, abs, nullptr},       {"sign", 1, 2, sign, nullptr},
        {"min", 2, 4, min, nullptr},       {"max", 2, 4, max, nullptr},
        {"mod", 2, 2, mod, nullptr},       {"dim", 2, 2, dim, nullptr},
        {"int", 1, 1, truncated, nullptr}, {"nint", 1, 1, nint, nullptr},
        {"floor", 1, 1, floor, nullptr},   {"ceil", 1, 1, ceil, nullptr},
        {"hypot", 2, 2, hypot, nullptr},   {"if", 4, 4, nullptr, nullptr},
        {"step", 5, 5, step, nullptr},     {"step5", 5, 5, step5, nullptr},
        {"havsin", 5, 5, havsin, nullptr}, {"poly", 3, 7, poly, nullptr},
        {"cheby", 3, 7, cheby, nullptr},   {"shf", 6, 6, shf, nullptr},
        {"forsin", 4, 7, forsin, nullptr}, {"forcos", 4, 7, forcos, nullptr},
    };
    return table;
}

// std::uniform_real_distribution differs between libraries; this does not.
double Generator::uniform(double from, double to)
{
    return from + (to - from) * (static_cast<double>(random_()) / 4294967296.0);
}

int Generator::whole(int from, int to)
{
    return from + static_cast<int>(random_() % static_cast<unsigned>(to - from + 1));
}

Tree Generator::number()
{
    Tree tree = leaf(chance(0.5) ? whole(0, 9) : whole(1, 400) / 100.0);
    if (chance(0.1)) {
        tree.kind = Tree::Kind::Degrees;
        tree.number = whole(1, 36) * 10;
    }
    return tree;
}

Tree Generator::call(int depth)
{
    Tree tree;
    tree.kind = Tree::Kind::Call;
    const int last = static_cast<int>(functions().size()) - 1;
    tree.function = &functions()[static_cast<std::size_t>(whole(0, last))];
    const int count = whole(tree.function->fewestArguments, tree.function->mostArguments);
    for (int i = 0; i < count; ++i) {
        Tree argument = this->tree(depth - 1);
        if (tree.function->guard && chance(0.9))
            argument = tree.function->guard(std::move(argument));
        tree.arguments.push_back(std::move(argument));
    }
    // A step needs its ends in ascending order; sometimes they are the wrong way round.
    if (count == 5 && tree.function->fewestArguments == 5 && chance(0.9)) {
        tree.arguments[1] = leaf(whole(-30, 0) / 10.0);
        tree.arguments[3] = leaf(whole(1, 30) / 10.0);
    }
    return tree;
}

Tree Generator::tree(int depth)
{
    if (depth == 0)
        return chance(0.6) ? Tree() : number();
    if (chance(0.4))
        return call(depth);
    if (chance(0.1)) {
        Tree tree;
        tree.kind = Tree::Kind::Minus;
        tree.arguments.push_back(this->tree(depth - 1));
        return tree;
    }
    const char sign = "++--**//%^^"[whole(0, 10)];
    Tree left = tree(depth - 1);
    Tree right = tree(depth - 1);
    if (sign == '^') {
        if (chance(0.7))
            right = leaf(chance(0.7) ? whole(-3, 9) : whole(-30, 30) / 10.0);
        const bool wholeExponent =
            right.kind == Tree::Kind::Number && right.number == std::floor(right.number);
        if (!wholeExponent)
            left = positive(std::move(left));
    }
    return binary(sign, std::move(left), std::move(right));
}

std::string Generator::blank()
{
    return chance(0.1) ? (chance(0.5) ? " " : "\t ") : "";
}

std::string Generator::digits(double number)
{
    char text[40];
    const char* const forms[] = {"%.15g", "%.6f", "%.17g", "%.16e"};
    std::snprintf(text, sizeof text, forms[whole(0, 3)], number);
    std::string result = text;
    if (result.starts_with("0.") && chance(0.3))
        result.erase(0, 1);
    else if (result.find_first_of(".e") == std::string::npos && chance(0.2))
        result += '.';
    return result;
}

std::string Generator::spelt(const Function& function)
{
    std::string name = function.name;
    if (chance(0.2)) {
        for (char& letter : name) {
            if (chance(0.5))
                letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
        }
    }
    return name;
}

// How tightly the parts of a text bind: a sum, a product, a sign, a power, a primary.
constexpr int kSum = 1;
constexpr int kProduct = 2;
constexpr int kSign = 3;
constexpr int kPower = 4;
constexpr int kPrimary = 5;

// The tree as text that binds at least as tightly as `binding`.
std::string Generator::spelt(const Tree& tree, int binding)
{
    std::string text;
    int own = kPrimary;
    switch (tree.kind) {
        case Tree::Kind::Argument:
            text = "x";
            break;
        case Tree::Kind::Number:
        case Tree::Kind::Degrees:
            text = (tree.number < 0 ? "-" : "") + digits(std::abs(tree.number));
            text += tree.kind == Tree::Kind::Degrees ? "d" : "";
            own = tree.number < 0 ? kSign : kPrimary;
            break;
        case Tree::Kind::Minus:
            text = "-" + blank() + spelt(tree.arguments[0], kSign);
            own = kSign;
            break;
        case Tree::Kind::Binary: {
            const bool sum = tree.sign == '+' || tree.sign == '-';
            own = tree.sign == '^' ? kPower : sum ? kSum : kProduct;
            // A power groups to the right and may have a sign after it; the others group to the left.
            const int left = tree.sign == '^' ? kPrimary : own;
            const int right = tree.sign == '^' ? kSign : own + 1;
            const std::string sign = tree.sign == '^' && chance(0.3) ? "**" : std::string(1, tree.sign);
            text =
                spelt(tree.arguments[0], left) + blank() + sign + blank() + spelt(tree.arguments[1], right);
            break;
        }
        case Tree::Kind::Call:
            text = spelt(*tree.function) + blank() + "(" + blank();
            for (std::size_t i = 0; i < tree.arguments.size(); ++i) {
                const bool colon = i == 1 && !tree.function->jet && chance(0.5);
                text += (i == 0 ? "" : colon ? ":" : ",") + blank() + spelt(tree.arguments[i], kSum);
            }
            text += blank() + ")";
            break;
    }
    return own < binding || chance(0.05) ? "(" + blank() + text + blank() + ")" : text;
}

std::string Generator::text(const Tree& tree)
{
    return blank() + spelt(tree, kSum) + blank();
}

namespace {

bool dependsOnArgument(const Tree& tree)
{
    return tree.kind == Tree::Kind::Argument ||
           std::any_of(tree.arguments.begin(), tree.arguments.end(), dependsOnArgument);
}

Jet wholePowerJet(const Jet& base, int n)
{
    if (n <= 0 && base.value[0] == 0)
        return clearOf(undefinedJet(), 0, 0);
    const Series slope = n == 0 ? constant(0) : static_cast<Real>(n) * wholePower(base.value, n - 1);
    const Jet result = chain(wholePower(base.value, n), slope, base);
    // A derivative of higher order than the exponent has the base in a denominator.
    return n < kOrders ? clearOf(result, base.value[0], base.size[0]) : result;
}

Jet powerJet(const Jet& base, const Jet& exponent, bool exponentIsConstant)
{
    const Real p = exponent.value[0];
    if (exponentIsConstant && p == std::floor(p) && std::abs(p) <= 1000)
        return withFlagsOf(wholePowerJet(base, static_cast<int>(p)), exponent);
    if (base.value[0] > 0)
        return exp({exponent * ln({base})});
    // A negative base has a power only where the exponent happens to be whole.
    const bool decided = exponentIsConstant && base.value[0] < 0;
    return withFlagsOf(withFlagsOf(clearOf(undefinedJet(), decided ? 1 : 0, 0), base), exponent);
}

Jet combined(char sign, const Jet& a, const Jet& b, bool bIsConstant)
{
    switch (sign) {
        case '+':
            return a + b;
        case '-':
            return a - b;
        case '*':
            return a * b;
        case '/':
            return a * reciprocal(b);
        case '%':
            return mod({a, b});
        default:
            return powerJet(a, b, bIsConstant);
    }
}

Jet binaryJet(const Tree& tree, double x)
{
    const Jet a = jet(tree.arguments[0], x);
    const Jet b = jet(tree.arguments[1], x);
    const Jet result = combined(tree.sign, a, b, !dependsOnArgument(tree.arguments[1]));
    return withFlagsOf(withFlagsOf(result, a), b);
}

Jet ifJet(const Tree& tree, double x)
{
    const Jet condition = jet(tree.arguments[0], x);
    const Real c = condition.value[0];
    const Jet piece = jet(tree.arguments[c < 0 ? 1 : c > 0 ? 3 : 2], x);
    return clearOf(withFlagsOf(piece, condition), c, condition.size[0]);
}

Jet treeJet(const Tree& tree, double x)
{
    switch (tree.kind) {
        case Tree::Kind::Number:
            return numberJet(tree.number);
        case Tree::Kind::Degrees:
            return numberJet(tree.number * kPi / 180);
        case Tree::Kind::Argument:
            return argumentJet(x);
        case Tree::Kind::Minus:
            return -jet(tree.arguments[0], x);
        case Tree::Kind::Binary:
            return binaryJet(tree, x);
        case Tree::Kind::Call:
            break;
    }
    if (!tree.function->jet)
        return ifJet(tree, x);
    Arguments arguments;
    for (const Tree& argument : tree.arguments)
        arguments.push_back(jet(argument, x));
    Jet result = tree.function->jet(arguments);
    for (const Jet& argument : arguments)
        result = withFlagsOf(result, argument);
    return result;
}

}  // namespace

// Beyond these bounds a double inside a formula might overflow or underflow, where the
// longer format of the jet does not.
Jet jet(const Tree& tree, double x)
{
    constexpr Real kLargest = 1e60L;
    constexpr Real kSmallest = 1e-60L;
    Jet result = treeJet(tree, x);
    for (const Real coefficient : result.value) {
        const Real magnitude = std::abs(coefficient);
        result.smooth =
            result.smooth && (coefficient == 0 || (magnitude < kLargest && magnitude > kSmallest));
    }
    return result;
}

}  // namespace engine_test
