// SPDX-License-Identifier: MIT

#include "tests/engine/random_expression.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <utility>

namespace engine_test {

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

}  // namespace engine_test
