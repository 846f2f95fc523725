// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

namespace mfcurve {

/// Two lines that show the text around a character, counted from 1, and a caret below it.
std::string caretBelow(const std::string& text, std::size_t character);

}  // namespace mfcurve
