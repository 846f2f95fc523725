// SPDX-License-Identifier: MIT
#pragma once

// Random expressions from a fixed seed: a tree that can be written as a text for the
// engine in many ways, and evaluated with Taylor jets.

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/engine/taylor_jet.h"

namespace engine_test {

struct Function;

/// A number, the argument x, a sign, a binary operator or a function.
struct Tree {
    enum class Kind { Number, Degrees, Argument, Minus, Binary, Call };
    Kind kind = Kind::Argument;
    double number = 0.0;
    char sign = 0;                       ///< of a binary operator
    const Function* function = nullptr;  ///< of a call
    std::vector<Tree> arguments;
};

/// One function of the engine's vocabulary with an independent definition.
struct Function {
    const char* name;
    int fewestArguments;
    int mostArguments;
    Jet (*jet)(const std::vector<Jet>& arguments);
    /// Moves an argument to where the function is defined; null if it is defined everywhere.
    Tree (*guard)(Tree argument);
};

const std::vector<Function>& functions();

class Generator {
public:
    explicit Generator(unsigned seed) : random_(seed) {}

    Tree tree(int depth);
    /// The tree as text, with random blanks, redundant parentheses, cases and spellings.
    std::string text(const Tree& tree);
    double uniform(double from, double to);
    int whole(int from, int to);

private:
    bool chance(double probability) { return uniform(0.0, 1.0) < probability; }
    Tree number();
    Tree call(int depth);
    std::string spelt(const Tree& tree, int binding);
    std::string spelt(const Function& function);
    std::string digits(double number);
    std::string blank();

    std::mt19937 random_;
};

/// The value of the tree at x. Only the chosen argument of an `if` is evaluated.
Jet jet(const Tree& tree, double x);

/// Calls `use` with each function of the tree.
template <class Use>
void forEachFunction(const Tree& tree, Use use)
{
    if (tree.function)
        use(*tree.function);
    for (const Tree& argument : tree.arguments)
        forEachFunction(argument, use);
}

}  // namespace engine_test
