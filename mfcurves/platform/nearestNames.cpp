// SPDX-License-Identifier: MIT

#include "mfcurves/platform/nearestNames.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/locale.h"

namespace mf::platform {
namespace {

constexpr std::size_t kMostNames = 3;
// A longer name is not a misspelling, and the time for a distance grows with the square
// of the length.
constexpr std::size_t kLongestName = 100;

std::wstring folded(std::string_view text)
{
    std::wstring wide = widen(text);
    std::transform(wide.begin(), wide.end(), wide.begin(), foldCase);
    return wide;
}

// Keeps one row of the table of distances: row[j] is the distance between the characters of
// `a` read so far and the first j of `b`.
std::size_t distance(const std::wstring& a, const std::wstring& b)
{
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t exchanged = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({exchanged, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

}  // namespace

std::size_t editDistance(std::string_view a, std::string_view b)
{
    return distance(folded(a), folded(b));
}

std::vector<std::string> nearestNames(std::string_view name, const std::vector<std::string>& candidates)
{
    const std::wstring wanted = folded(name);
    if (wanted.empty() || wanted.size() > kLongestName)
        return {};
    std::vector<std::pair<std::size_t, const std::string*>> near;
    for (const std::string& candidate : candidates) {
        const std::wstring known = folded(candidate);
        if (known.size() > kLongestName)
            continue;
        const std::size_t edits = distance(wanted, known);
        if (3 * edits <= std::max(wanted.size(), known.size()) || known.find(wanted) != std::wstring::npos)
            near.emplace_back(edits, &candidate);
    }
    std::stable_sort(near.begin(), near.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> names;
    for (const auto& [edits, candidate] : near) {
        if (names.size() < kMostNames && std::find(names.begin(), names.end(), *candidate) == names.end())
            names.push_back(*candidate);
    }
    return names;
}

}  // namespace mf::platform
