// SPDX-License-Identifier: MIT

#include <algorithm>
#include <array>

#include "mfcurves/engine/functionTable.h"

namespace mf::engine {
namespace {

constexpr std::size_t kLongestName = 8;

// The name in lower-case ASCII; empty if no function can have it.
std::string_view inLowerCase(std::wstring_view name, std::array<char, kLongestName>& buffer)
{
    if (name.size() > kLongestName)
        return {};
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] < 0 || name[i] > 0x7f)
            return {};
        const char c = static_cast<char>(name[i]);
        buffer[i] = c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    }
    return {buffer.data(), name.size()};
}

// Levenshtein distance of two names of at most kLongestName characters.
std::size_t editDistance(std::string_view a, std::string_view b)
{
    std::array<std::size_t, kLongestName + 1> row{};
    for (std::size_t j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i - 1] != b[j - 1] ? 1 : 0);
            diagonal = row[j];
            row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row[b.size()];
}

}  // namespace

std::span<const Function> functionsNamed(std::wstring_view name)
{
    std::array<char, kLongestName> buffer;
    const std::string_view wanted = inLowerCase(name, buffer);
    if (wanted.empty())
        return {};
    const auto hasName = [&](const Function& row) { return row.name == wanted; };
    const auto first = std::ranges::find_if(functions(), hasName);
    return {first, std::ranges::find_if_not(first, functions().end(), hasName)};
}

std::string_view closestFunctionName(std::wstring_view name)
{
    constexpr std::size_t kClose = 2;
    std::array<char, kLongestName> buffer;
    const std::string_view wanted = inLowerCase(name, buffer);
    std::string_view closest;
    std::size_t least = (wanted.size() <= 3 ? 1 : kClose) + 1;
    for (const Function& row : functions()) {
        if (row.name.empty() || wanted.empty())
            continue;
        const std::size_t distance = editDistance(wanted, row.name);
        if (distance < least) {
            least = distance;
            closest = row.name;
        }
    }
    return closest;
}

}  // namespace mf::engine
