// SPDX-License-Identifier: MIT

#include "tests/engine/function_jets.h"

#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>

namespace engine_test {
namespace {

Jet unary(const Jet& u, Series (*value)(const Series&), Series (*slope)(const Series&))
{
    return chain(value(u.value), slope(u.value), u);
}

/// A function known by its value and by the series of its derivative.
Jet fromSlope(const Jet& u, Real value, const Series& slope)
{
    return chain(integrate(value, slope, u.value), slope, u);
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

Jet truncated(const Arguments& a)
{
    return whole(a[0], std::trunc(a[0].value[0]), toNextWhole(a[0].value[0]));
}

}  // namespace

Jet reciprocal(const Jet& u)
{
    if (u.value[0] == 0)  // infinite, from which a later operation may make a finite value
        return clearOf(undefinedJet(), 0, 0);
    const Series value = constant(1) / u.value;
    return clearOf(chain(value, -(value * value), u), u.value[0], u.size[0]);
}

Jet exp(const Arguments& a)
{
    return unary(a[0], exponential, exponential);
}

Jet ln(const Arguments& a)
{
    const Real x = a[0].value[0];
    if (x <= 0)
        return clearOf(undefinedJet(), x, a[0].size[0]);
    return clearOf(fromSlope(a[0], std::log(x), constant(1) / a[0].value), x, a[0].size[0]);
}

Jet mod(const Arguments& a)
{
    if (a[1].value[0] == 0)
        return undefinedJet();
    return a[0] - a[1] * truncated({a[0] * reciprocal(a[1])});
}

namespace {

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

Jet floor(const Arguments& a)
{
    return whole(a[0], std::floor(a[0].value[0]), toNextWhole(a[0].value[0]));
}

Jet ceil(const Arguments& a)
{
    return whole(a[0], std::ceil(a[0].value[0]), toNextWhole(a[0].value[0]));
}

Jet nint(const Arguments& a)
{
    return whole(a[0], std::round(a[0].value[0]), toNextWhole(a[0].value[0] + 0.5L));
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

}  // namespace

Tree positive(Tree argument)
{
    return binary('+', leaf(0.5), callOf("abs", std::move(argument)));
}

namespace {

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

}  // namespace engine_test
