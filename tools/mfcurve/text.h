// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mfcurve {

/// The fewest digits that read back as the same double; zero has no sign. Like all functions here,
/// independent of the locale.
std::string numberText(double number);
/// Appends the same digits to a text.
void addNumberText(std::string& text, double number);

/// Writes the same digits to a buffer with room for kLongestNumber characters; returns the end.
char* writeNumber(char* text, double number);
constexpr std::size_t kLongestNumber = 32;

/// A number with that many significant digits, trailing zeros dropped.
std::string shortNumberText(double number, int digits = 6);

/// A number with that many decimals; if it rounds to zero, it has no sign.
std::string fixedText(double number, int decimals);

/// The number in a text, with or without blanks around it; std::nullopt when the text is not a
/// number. "inf" and "nan" count as numbers.
std::optional<double> readNumber(std::string_view text);

/// A number with a decimal point or, if there is no point, with a decimal comma.
std::optional<double> readDecimal(std::string_view text);

/// The text without blanks and tabs at its ends.
std::string_view trimmed(std::string_view text);

/// Whether two names of ASCII letters, digits and `_` are the same for an expression, where case does not
/// matter.
bool isSameName(std::string_view a, std::string_view b);

/// The pieces between separators, each trimmed; one empty piece for an empty text.
std::vector<std::string> splitText(std::string_view text, char separator);

}  // namespace mfcurve
