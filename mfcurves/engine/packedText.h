// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

/// Texts in little memory: each character as groups of seven bits, one byte per group, the
/// lowest first, with the top bit set in all bytes but the last.
namespace mf::engine {

std::string packed(std::wstring_view text);
std::wstring unpacked(std::string_view bytes);

}  // namespace mf::engine
