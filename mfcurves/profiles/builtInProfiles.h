// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace mf::profiles {

constexpr std::size_t kBuiltInProfileCount = 10;

/// The definitions that are used without a design library.
extern const std::array<const char*, kBuiltInProfileCount> kBuiltInDefinitions;

/// Copies of them that the reader brings to normal form in place at their first use, and
/// that stay so.
std::array<std::string, kBuiltInProfileCount>& builtInProfiles();

}  // namespace mf::profiles
