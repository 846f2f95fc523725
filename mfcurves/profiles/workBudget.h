// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

namespace mf::profiles {

/// What reading definitions and writing the formulas of rows may cost, so that a short
/// hostile text fills neither time nor memory. It is counted in characters looked at and
/// bytes written; all prices are here.
///
/// The definitions of one file or document share a budget, which grows in proportion
/// to the length of that text: ordinary laws never run out, however many there are.
/// What it starts with is enough for one result of the largest size that the
/// expression engine takes.
///
/// Each payment is false, and leaves nothing, when it is more than what is left.
class WorkBudget {
public:
    /// Adds what reading a text of that length may cost.
    void allowFor(std::size_t length) { left_ += 64 * length; }
    /// Adds what the formula of one row may cost: about a thousand characters.
    void allowForRow() { allowFor(64); }

    /// For finding a definition in a document.
    bool payForDefinition() { return pay(1); }
    /// For the way of that many characters out of the document and to narrow text.
    bool payForNarrowText(std::size_t length) { return pay(8 * length); }
    /// For a search for a name, assuming the worst: a text and a name that differ late at
    /// every position.
    bool payForSearch(const std::string& text, const std::string& name)
    {
        return pay(kCall + text.size() * (1 + name.size() / kCharactersOfStep));
    }
    /// For writing a text of that size.
    bool payForText(std::size_t size) { return pay(kCall + size); }
    /// For splitting an expression into tokens, each of which may be a string for a
    /// single character.
    bool payForTokens(const std::string& expression) { return pay(sizeof(std::string) * expression.size()); }
    /// For comparing each of that many tokens of an expression with that many names.
    bool payForComparisons(std::size_t names, std::size_t tokens, const std::string& expression)
    {
        return pay(names * (kCharactersOfStep * tokens + expression.size() / kCharactersOfStep));
    }
    /// For a token of that size.
    bool payForToken(std::size_t size) { return pay(size); }
    /// For a formula that a row keeps, in bytes.
    bool payForFormula(std::size_t bytes) { return pay(bytes); }

private:
    static constexpr std::size_t kStart = std::size_t{1} << 26;
    static constexpr std::size_t kCall = 64;              // what any call costs
    static constexpr std::size_t kCharactersOfStep = 16;  // that one step of a comparison covers

    bool pay(std::size_t cost)
    {
        const bool enough = cost <= left_;
        left_ = enough ? left_ - cost : 0;
        return enough;
    }

    std::size_t left_ = kStart;
};

}  // namespace mf::profiles
