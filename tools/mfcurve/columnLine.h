// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

/// Lines of a text with columns, before the columns are interpreted.
namespace mfcurve {

constexpr bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\v' || c == '\f';
}

/// A line and its number in the file, from 1.
struct TextLine {
    int number;
    std::string_view content;
};

/// The text without blanks at its ends.
std::string_view withoutBlanks(std::string_view text);
/// The line up to the first "#" outside quotes.
std::string_view withoutComment(std::string_view line);
/// Removes the first line from `text` and returns it. CR, LF or both end a line.
std::string_view takeLine(std::string_view& text);
/// True when the line has that character outside quotes.
bool hasUnquoted(std::string_view line, char wanted);
/// Appends the pieces between blanks.
void splitAtBlanks(std::string_view line, std::vector<std::string_view>& fields);
/// The separator of the columns of all lines: the first of semicolon, tab, comma and blank that fits.
char separatorOf(const std::vector<TextLine>& lines);

}  // namespace mfcurve
