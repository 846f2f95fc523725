// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>

class mfProfile_c;

namespace mf::segments {

/// A row's numbers as texts, in the order of a profile's parameters: start X, start
/// value, end X, end value.
using EndPoints = std::array<std::wstring, 4>;

/// Sets `text` to the profile's formula with the parameters replaced by the numbers. A
/// parameter is also replaced inside longer names. No brackets are added, so the sign
/// of a negative number is read as part of the formula. False when the text would become
/// longer than the engine allows.
bool enterNumbers(const mfProfile_c& profile, const EndPoints& numbers, std::wstring& text);

}  // namespace mf::segments
