// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mfcurve {

/// True for equal texts, ignoring the case of English letters.
bool equalsInAnyCase(std::string_view a, std::string_view b);

/// The names in `known` that `name` may be a misspelling of, nearest first, at most three.
std::vector<std::string> nearestNames(std::string_view name, const std::vector<std::string>& known);

/// "; did you mean A or B?" for the end of a message; empty when no name is near.
std::string nearestAdvice(std::string_view name, const std::vector<std::string>& known);

}  // namespace mfcurve
