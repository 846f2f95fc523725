// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>

class mfProfile_c;

namespace mf::segments {

/// The texts of a row's numbers, in the order of a profile's parameters: start X,
/// start value, end X, end value.
using EndPoints = std::array<std::wstring, 4>;

/// Sets `text` to the profile's formula with the numbers in place of the parameters. A
/// parameter is replaced inside longer names too and without brackets, so a negative
/// number brings its sign along. False when the text would grow longer than the engine
/// takes.
bool enterNumbers(const mfProfile_c& profile, const EndPoints& numbers, std::wstring& text);

}  // namespace mf::segments
