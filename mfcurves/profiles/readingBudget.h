#pragma once

#include <cstddef>
#include <string>

namespace mf::profiles {

/// What reading definitions may cost, counted in characters looked at and bytes
/// written, so that a short hostile text fills neither time nor memory.
///
/// It grows with the text: ordinary laws never run out, however many of them a
/// file holds. The fixed part is enough for one result of the largest size that
/// the expression engine takes.
class ReadingBudget {
public:
    explicit ReadingBudget(std::size_t textLength) : left_(kFixed + kForEachCharacter * textLength) {}

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
    static constexpr std::size_t kFixed = std::size_t{1} << 26;
    static constexpr std::size_t kForEachCharacter = 64;

    std::size_t left_;
};

/// Characters that one step of a comparison of two texts covers.
constexpr std::size_t kCharactersForEachStep = 16;

}  // namespace mf::profiles
