// SPDX-License-Identifier: MIT
#pragma once

// Expressions as trees, which Taylor jets evaluate without the engine.

#include <vector>

#include "tests/engine/taylor_jet.h"

namespace engine_test {

using Arguments = std::vector<Jet>;

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
    Jet (*jet)(const Arguments& arguments);
    /// Moves an argument to where the function is defined; null if it is defined everywhere.
    Tree (*guard)(Tree argument);
};

/// The engine's vocabulary.
const std::vector<Function>& functions();

Tree leaf(double number);
Tree binary(char sign, Tree left, Tree right);
/// A tree whose value is at least 0.5.
Tree positive(Tree argument);

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
