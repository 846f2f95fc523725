#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace mf::profiles {

constexpr std::size_t kBuiltInProfileCount = 10;

/// The definitions that stand in for a design library. The reader brings them to
/// normal form in place at their first use, and they stay so.
std::array<std::string, kBuiltInProfileCount>& builtInProfiles();

}  // namespace mf::profiles
