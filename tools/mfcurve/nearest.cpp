// SPDX-License-Identifier: MIT
#include "tools/mfcurve/nearest.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace mfcurve {

namespace {

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// The number of insertions, deletions, replacements and swaps of neighbours that turn one text into the
// other, ignoring case: the optimal string alignment distance, with three rows of its table in memory.
std::size_t distance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> before(b.size() + 1);
    std::vector<std::size_t> previous(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        before.swap(previous);
        previous.swap(row);
        row[0] = i;
        for (std::size_t k = 1; k <= b.size(); ++k) {
            const bool isSame = lower(a[i - 1]) == lower(b[k - 1]);
            row[k] = std::min({previous[k - 1] + (isSame ? 0 : 1), previous[k] + 1, row[k - 1] + 1});
            if (i > 1 && k > 1 && lower(a[i - 1]) == lower(b[k - 2]) && lower(a[i - 2]) == lower(b[k - 1]))
                row[k] = std::min(row[k], before[k - 2] + 1);
        }
    }
    return row.back();
}

bool beginsWithInAnyCase(std::string_view text, std::string_view start)
{
    return text.size() > start.size() && start.size() >= 3 &&
           equalsInAnyCase(text.substr(0, start.size()), start);
}

}  // namespace

bool equalsInAnyCase(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lower(x) == lower(y); });
}

std::vector<std::string> nearestNames(std::string_view name, const std::vector<std::string>& known)
{
    constexpr std::size_t kLongest = 64;  // a longer text is not a misspelled name
    constexpr std::size_t kMost = 3;
    std::vector<std::pair<std::size_t, std::string>> near;
    for (const std::string& candidate : known) {
        if (name.size() > kLongest || candidate.size() > kLongest)
            continue;
        const std::size_t away = beginsWithInAnyCase(candidate, name) ? 1 : distance(name, candidate);
        if (away <= std::max<std::size_t>(1, std::min(name.size(), candidate.size()) / 3))
            near.emplace_back(away, candidate);
    }
    std::stable_sort(near.begin(), near.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> names;
    for (const auto& [away, candidate] : near) {
        if (names.size() < kMost && std::find(names.begin(), names.end(), candidate) == names.end())
            names.push_back(candidate);
    }
    return names;
}

std::string nearestAdvice(std::string_view name, const std::vector<std::string>& known)
{
    const std::vector<std::string> names = nearestNames(name, known);
    std::string advice;
    for (std::size_t i = 0; i < names.size(); ++i)
        advice += (i == 0 ? "; did you mean " : i + 1 == names.size() ? " or " : ", ") + names[i];
    return advice.empty() ? "" : advice + "?";
}

}  // namespace mfcurve
