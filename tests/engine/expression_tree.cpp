// SPDX-License-Identifier: MIT

#include "tests/engine/expression_tree.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "tests/engine/function_jets.h"

namespace engine_test {

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
