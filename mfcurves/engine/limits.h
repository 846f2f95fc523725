// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace mf::engine {

/// Longest expression text in wide characters. Code that builds a text for the
/// engine, such as the substitution of profile variables, stops at the same size.
constexpr std::size_t kLongestText = std::size_t{1} << 20;

/// How deep parentheses and function calls may be nested.
constexpr int kDeepestNesting = 1000;

/// How many nodes the graph of one text may have, its derivatives and the
/// coefficients of its polynomials included.
constexpr std::size_t kMostNodes = 1'000'000;

/// How much looking up the nodes of one text and of its derivatives may cost, in
/// steps of a search and list elements compared. Ordinary texts take a few per
/// node. A text with many hash collisions or repeated long lists would take too long.
constexpr std::size_t kMostLookups = 64 * kMostNodes;

/// Powers up to this whole exponent are monomials, from which polynomials are built;
/// larger ones are calls of `pow`. The evaluation decides how to compute a monomial.
constexpr int kHighestMonomial = 16;

/// How many points a program computes side by side: enough for 100, the usual number of
/// samples of a curve.
constexpr std::size_t kBlock = 128;

}  // namespace mf::engine
