// SPDX-License-Identifier: MIT
#pragma once

// Random expressions from a fixed seed, which can be written as a text for the engine in
// many ways.

#include <random>
#include <string>

#include "tests/engine/expression_tree.h"

namespace engine_test {

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

}  // namespace engine_test
