// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

/// A line of a text with columns, before it is known what they hold.
namespace mfcurve {

constexpr std::string_view kBlanks = " \t\v\f";

/// A line and its number in the file, from 1.
struct TextLine {
    int number;
    std::string_view content;
};

/// The text without blanks at its ends.
std::string_view withoutBlanks(std::string_view text);
/// The line up to a "#" that is not within quotes.
std::string_view withoutComment(std::string_view line);
/// Removes the first line, which CR, LF or both end, and returns it.
std::string_view takeLine(std::string_view& text);
/// True when that character is in the line and not within quotes.
bool hasUnquoted(std::string_view line, char wanted);
/// The pieces between blanks.
std::vector<std::string_view> splitAtBlanks(std::string_view line);
/// What separates the columns of all lines: the first of semicolon, tab, comma and blank that does.
char separatorOf(const std::vector<TextLine>& lines);

}  // namespace mfcurve
