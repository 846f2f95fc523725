// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mf::platform {

/// How many characters have to be put in, left out or exchanged to make `b` of `a`;
/// Levenshtein, Soviet Physics Doklady 10 (1966). Texts are UTF-8; case does not count.
std::size_t editDistance(std::string_view a, std::string_view b);

/// The candidates that `name` may be a misspelling of, at most three, nearest first: those
/// that differ in a third of their characters or less, and those that contain it.
std::vector<std::string> nearestNames(std::string_view name, const std::vector<std::string>& candidates);

}  // namespace mf::platform
