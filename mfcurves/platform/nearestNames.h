// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mf::platform {

/// The least number of characters to insert, delete or replace to turn `a` into `b`;
/// Levenshtein, Soviet Physics Doklady 10 (1966). Texts are UTF-8; case does not matter.
std::size_t editDistance(std::string_view a, std::string_view b);

/// The candidates that `name` may be a misspelling of, at most three, nearest first. These
/// are the ones whose edit distance is at most a third of the longer length, and the ones
/// that contain `name`.
std::vector<std::string> nearestNames(std::string_view name, const std::vector<std::string>& candidates);

}  // namespace mf::platform
