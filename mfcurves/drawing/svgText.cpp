// SPDX-License-Identifier: MIT
#include "mfcurves/drawing/svgText.h"

#include <algorithm>
#include <fmt/format.h>

#include "mfcurves/drawing/path.h"

namespace mf::drawing {

namespace {

// The average width of a letter or digit, as a part of its size.
constexpr double kLetterWidth = 0.56;

// Whether a byte of UTF-8 is the first one of a character.
bool beginsCharacter(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
}

}  // namespace

std::string escaped(std::string_view text)
{
    std::string result;
    for (char c : text) {
        if (c == '&')
            result += "&amp;";
        else if (c == '<')
            result += "&lt;";
        else if (c == '>')
            result += "&gt;";
        else if (static_cast<unsigned char>(c) >= ' ')
            result += c;
    }
    return result;
}

std::size_t characterCount(std::string_view text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), beginsCharacter));
}

std::string shortened(const std::string& text, std::size_t longest)
{
    if (characterCount(text) <= longest)
        return text;
    std::string result;
    std::size_t count = 0;
    for (char c : text) {
        count += beginsCharacter(c) ? 1 : 0;
        if (count < longest)
            result += c;
    }
    return result + "\u2026";
}

double textWidth(std::string_view text, double size)
{
    return kLetterWidth * size * static_cast<double>(characterCount(text));
}

std::string textAt(double x, double y, std::string_view attributes, std::string_view text)
{
    return fmt::format("<text x=\"{}\" y=\"{}\" {}>{}</text>\n", pixels(x), pixels(y), attributes,
                       escaped(text));
}

std::string lineBetween(double x1, double y1, double x2, double y2, std::string_view style)
{
    return fmt::format("<line class=\"{}\" x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\"/>\n", style, pixels(x1),
                       pixels(y1), pixels(x2), pixels(y2));
}

}  // namespace mf::drawing
