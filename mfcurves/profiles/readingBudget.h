#pragma once

#include <cstddef>
#include <string>

namespace mf::profiles {

/// What reading definitions may cost, counted in characters looked at and bytes
/// written, so that a short hostile text fills neither time nor memory.
///
/// The definitions of one file or document share a budget, which grows in proportion
/// to the length of that text: ordinary laws never run out, however many there are.
/// What it starts with is enough for one result of the largest size that the
/// expression engine takes.
class ReadingBudget {
public:
    /// Adds what reading a text of that length may cost.
    void allowFor(std::size_t length) { left_ += kForEachCharacter * length; }

    /// False, with nothing left, when `cost` is more than what is left.
    bool spend(std::size_t cost)
    {
        const bool enough = cost <= left_;
        left_ = enough ? left_ - cost : 0;
        return enough;
    }

    /// Pays for splitting an expression into tokens, each of which may be a string
    /// for a single character.
    bool spendOnTokens(const std::string& expression)
    {
        return spend(sizeof(std::string) * expression.size());
    }

private:
    static constexpr std::size_t kStart = std::size_t{1} << 26;
    static constexpr std::size_t kForEachCharacter = 64;

    std::size_t left_ = kStart;
};

/// Characters that one step of a comparison of two texts covers.
constexpr std::size_t kCharactersForEachStep = 16;

}  // namespace mf::profiles
