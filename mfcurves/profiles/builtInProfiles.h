// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace mf::profiles {

constexpr std::size_t kBuiltInProfileCount = 10;

/// The definitions that are used when the host has no design library.
extern const std::array<const char*, kBuiltInProfileCount> kBuiltInDefinitions;

/// Copies of them. The reader converts them to normal form in place at their first use.
std::array<std::string, kBuiltInProfileCount>& builtInProfiles();

}  // namespace mf::profiles
