// SPDX-License-Identifier: MIT
#include "tools/mfcurve/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fmt/compile.h>
#include <fmt/format.h>
#include <limits>

namespace mfcurve {

namespace {

// The value of a decimal number that is out of the range of a double: infinity if its first nonzero digit has
// a positive power of ten, else zero.
double beyondDoubles(std::string_view text)
{
    const bool isNegative = text.starts_with('-');
    const std::size_t letter = std::min(text.find_first_of("eE"), text.size());
    const std::string_view digits = text.substr(isNegative ? 1 : 0, letter - (isNegative ? 1 : 0));
    const auto point = static_cast<double>(std::min(digits.find('.'), digits.size()));
    const auto first = static_cast<double>(std::min(digits.find_first_of("123456789"), digits.size()));
    double power = point - first;
    if (letter < text.size()) {
        std::string_view exponent = text.substr(letter + 1);
        const bool isSmall = exponent.starts_with('-');
        exponent.remove_prefix(exponent.find_first_of("0123456789"));
        long long size = 0;
        const auto result = std::from_chars(exponent.data(), exponent.data() + exponent.size(), size);
        const double read = result.ec == std::errc() ? static_cast<double>(size) : 1e18;
        power += isSmall ? -read : read;
    }
    const double number = power > 0.0 ? std::numeric_limits<double>::infinity() : 0.0;
    return isNegative ? -number : number;
}

std::string withoutSignOfZero(const std::string& text)
{
    const bool isZero = text.find_first_not_of("-0.") == std::string::npos;
    return isZero && text.starts_with('-') ? text.substr(1) : text;
}

}  // namespace

std::string numberText(double number)
{
    std::string text;
    addNumberText(text, number);
    return text;
}

void addNumberText(std::string& text, double number)
{
    char buffer[kLongestNumber];
    text.append(buffer, writeNumber(buffer, number));
}

char* writeNumber(char* text, double number)
{
    if (std::isnan(number))
        number = std::numeric_limits<double>::quiet_NaN();  // without a sign
    return fmt::format_to(text, FMT_COMPILE("{}"), number == 0.0 ? 0.0 : number);
}

std::string shortNumberText(double number, int digits)
{
    return withoutSignOfZero(fmt::format("{:.{}g}", number, digits));
}

std::string fixedText(double number, int decimals)
{
    return withoutSignOfZero(fmt::format("{:.{}f}", number, decimals));
}

std::optional<double> readNumber(std::string_view text)
{
    text = trimmed(text);
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    double number = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || result.ptr != text.data() + text.size())
        return std::nullopt;
    // Out of the range of a double, a number is infinite or zero.
    return result.ec == std::errc() ? number : beyondDoubles(text);
}

std::optional<double> readDecimal(std::string_view text)
{
    const std::size_t comma = text.find(',');
    if (comma == std::string_view::npos)
        return readNumber(text);
    if (text.find('.') != std::string_view::npos)
        return std::nullopt;
    std::string number(text);
    number[comma] = '.';
    return readNumber(number);
}

std::string_view trimmed(std::string_view text)
{
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

bool isSameName(std::string_view a, std::string_view b)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::ranges::equal(a, b, {}, lower, lower);
}

std::vector<std::string> splitText(std::string_view text, char separator)
{
    std::vector<std::string> pieces;
    for (;;) {
        const std::size_t end = text.find(separator);
        pieces.emplace_back(trimmed(text.substr(0, end)));
        if (end == std::string_view::npos)
            return pieces;
        text.remove_prefix(end + 1);
    }
}

}  // namespace mfcurve
