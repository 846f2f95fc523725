// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

namespace mf::profiles {

/// Limits the cost of reading definitions and writing the formulas of rows, so that a
/// short hostile text uses neither much time nor much memory. The unit is one character
/// read or one byte written; all prices are defined here.
///
/// The definitions of one file or document share a budget, which grows in proportion
/// to the length of that text, so that ordinary laws never exhaust it, however many
/// there are. The initial budget is enough for one result of the largest size that the
/// expression engine accepts.
///
/// A payment that exceeds the budget returns false and empties the budget.
class WorkBudget {
public:
    /// Adds the allowance for reading a text of that length.
    void allowFor(std::size_t length) { left_ += 64 * length; }
    /// Adds the allowance for the formula of one row: about a thousand characters.
    void allowForRow() { allowFor(64); }

    /// For finding a definition in a document.
    bool payForDefinition() { return pay(1); }
    /// For copying that many characters from the document and converting them to narrow
    /// text.
    bool payForNarrowText(std::size_t length) { return pay(8 * length); }
    /// For searching a name in the worst case: at every position the text differs from
    /// the name only near its end.
    bool payForSearch(const std::string& text, const std::string& name)
    {
        return pay(kCall + text.size() * (1 + name.size() / kCharactersOfStep));
    }
    /// For writing a text of that size.
    bool payForText(std::size_t size) { return pay(kCall + size); }
    /// For splitting an expression into tokens. In the worst case each character becomes
    /// a string.
    bool payForTokens(const std::string& expression) { return pay(sizeof(std::string) * expression.size()); }
    /// For comparing each of that many tokens of an expression with that many names.
    bool payForComparisons(std::size_t names, std::size_t tokens, const std::string& expression)
    {
        return pay(names * (kCharactersOfStep * tokens + expression.size() / kCharactersOfStep));
    }
    /// For a token of that size.
    bool payForToken(std::size_t size) { return pay(size); }
    /// For a formula that a row stores.
    bool payForFormula(std::size_t bytes) { return pay(bytes); }

private:
    static constexpr std::size_t kStart = std::size_t{1} << 26;
    static constexpr std::size_t kCall = 64;              // the fixed cost of a call
    static constexpr std::size_t kCharactersOfStep = 16;  // characters compared in one step

    bool pay(std::size_t cost)
    {
        const bool enough = cost <= left_;
        left_ = enough ? left_ - cost : 0;
        return enough;
    }

    std::size_t left_ = kStart;
};

}  // namespace mf::profiles
