// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mfcurve {

/// Compares letters of the English alphabet in any case.
bool equalsInAnyCase(std::string_view a, std::string_view b);

/// Those of `known` that `name` may be a slip of, the nearest first, three at most.
std::vector<std::string> nearestNames(std::string_view name, const std::vector<std::string>& known);

/// "; did you mean A or B?" as a part of a message; empty when nothing is near.
std::string nearestAdvice(std::string_view name, const std::vector<std::string>& known);

}  // namespace mfcurve
