// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace mfcurve {

/// Why a text cannot be read: the line, counted from 1, and the reason. Line 0 means the whole text.
class TextError : public std::runtime_error {
public:
    TextError(int line, const std::string& message) : std::runtime_error(message), line_(line) {}
    int line() const { return line_; }

private:
    int line_;
};

/// The bytes of a text file as UTF-8 without a byte order mark. UTF-16 is recognised by its mark, or by a
/// zero in one of the first two bytes. Throws TextError for bytes that are neither.
std::string decodedText(std::string_view bytes);

}  // namespace mfcurve
