#pragma once

#include <cstddef>
#include <utility>

#include "mfcurves/engine/program.h"

/// Polynomials of a few terms, which laws of motion and their derivatives are. The
/// compiler makes functions of its own for them, in tables by index.
namespace mf::engine {

constexpr std::size_t kMostTerms = 4;
constexpr std::size_t kHighestLowest = 4;

inline bool isSmallPolynomial(const Instruction& step)
{
    return step.code == Code::Polynomial && step.count <= kMostTerms && step.lowest < kHighestLowest;
}

inline std::size_t smallPolynomialIndex(const Instruction& step)
{
    return (step.count - 1) * kHighestLowest + step.lowest;
}

constexpr std::size_t termsAt(std::size_t index)
{
    return index / kHighestLowest + 1;
}

constexpr unsigned lowestAt(std::size_t index)
{
    return static_cast<unsigned>(index % kHighestLowest);
}

using SmallPolynomialIndices = std::make_index_sequence<kMostTerms * kHighestLowest>;

}  // namespace mf::engine
