// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mfcurve {

/// The fewest digits that read back as the same double; zero has no sign. Independent of the locale, like all
/// numbers here.
std::string numberText(double number);
/// The same at the end of a text.
void addNumberText(std::string& text, double number);

/// The same at a place with room for kLongestNumber characters; returns the end.
char* writeNumber(char* text, double number);
constexpr std::size_t kLongestNumber = 32;

/// A number with that many significant digits, trailing zeros dropped.
std::string shortNumberText(double number, int digits = 6);

/// A number with that many decimals; what they make zero has no sign.
std::string fixedText(double number, int decimals);

/// The number that the whole text stands for, blanks around it aside; nothing when
/// it is not one. "inf" and "nan" are numbers here.
std::optional<double> readNumber(std::string_view text);

/// A number with a decimal point or, if there is no point, with a decimal comma.
std::optional<double> readDecimal(std::string_view text);

/// The text without blanks and tabs at its ends.
std::string_view trimmed(std::string_view text);

/// The pieces between separators, each trimmed; one empty piece for empty text.
std::vector<std::string> splitText(std::string_view text, char separator);

}  // namespace mfcurve
