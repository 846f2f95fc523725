// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mfcurves/interfaces/CString.h"

namespace mfcurve {

/// The fewest digits that read back as the same double; zero has no sign. Independent of the locale, like all
/// numbers here.
std::string numberText(double number);

/// A number with that many significant digits, trailing zeros dropped.
std::string shortNumberText(double number, int digits = 6);

/// A number with that many decimals; what they make zero has no sign.
std::string fixedText(double number, int decimals);

/// The number that the whole text stands for, blanks around it aside; nothing when
/// it is not one. "inf" and "nan" are numbers here.
std::optional<double> readNumber(std::string_view text);

/// The text without blanks and tabs at its ends.
std::string_view trimmed(std::string_view text);

/// The pieces between separators, each trimmed; one empty piece for empty text.
std::vector<std::string> splitText(std::string_view text, char separator);

/// UTF-8 to the text of the library and back.
CString toCString(std::string_view utf8);
std::string toUtf8(const CString& text);

}  // namespace mfcurve
