// SPDX-License-Identifier: MIT

#include "mfcurves/engine/lexer.h"

#include <cmath>
#include <cstdint>
#include <string>

#include "mfcurves/engine/values.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/numbers.h"

namespace mf::engine {
namespace {

bool isBlank(wchar_t c)
{
    return c == L' ' || (c >= L'\t' && c <= L'\r');
}

bool isDigit(wchar_t c)
{
    return c >= L'0' && c <= L'9';
}

bool startsName(wchar_t c)
{
    const wchar_t lower = c | 0x20;
    return (lower >= L'a' && lower <= L'z') || c == L'_' || c < 0 || c > 0x7f;
}

bool continuesName(wchar_t c)
{
    return startsName(c) || isDigit(c);
}

// A number of few digits without exponent. Both its digits as a whole number and the power of
// ten under it are exact, so that one division rounds as reading does; Clinger, Proc. PLDI (1990).
std::optional<double> shortDecimal(std::wstring_view text)
{
    constexpr std::size_t kExactDigits = 15;
    if (text.size() > kExactDigits)
        return std::nullopt;
    std::int64_t digits = 0;
    double unit = 1.0;
    double shift = 1.0;  // of a digit: 10 after the point
    for (const wchar_t c : text) {
        if (c == L'.') {
            shift = 10.0;
            continue;
        }
        if (!isDigit(c))
            return std::nullopt;
        digits = digits * 10 + (c - L'0');
        unit *= shift;
    }
    return static_cast<double>(digits) / unit;
}

// Reads the digits, point and exponent of a number, which are ASCII.
double numberIn(std::wstring_view text)
{
    if (const auto number = shortDecimal(text))
        return *number;
    constexpr std::size_t kUsualLength = 64;
    char buffer[kUsualLength];
    if (text.size() <= kUsualLength) {
        for (std::size_t i = 0; i < text.size(); ++i)
            buffer[i] = static_cast<char>(text[i]);
        return platform::readNumber({buffer, text.size()});
    }
    return platform::readNumber(std::string(text.begin(), text.end()));
}

}  // namespace

Token Lexer::iMake(TokenKind kind, std::size_t start, std::size_t length)
{
    at_ = start + length;
    return {kind, start, text_.substr(start, length), 0.0};
}

Token Lexer::iBad(std::size_t start, std::string message, std::string expected)
{
    error_ = ParseError{start, std::move(message), std::move(expected)};
    return {TokenKind::Bad, start, {}, 0.0};
}

std::size_t Lexer::iDigits(std::size_t i) const
{
    while (isDigit(iAt(i)))
        ++i;
    return i;
}

// number := (digits ["." [digits]] | "." digits) [("e" | "E") ["+" | "-"] digits] ["d" | "D"]
// with the d only where no letter or digit follows.
Token Lexer::iNumber(std::size_t start)
{
    std::size_t end = iDigits(start);
    if (iAt(end) == L'.')
        end = iDigits(end + 1);
    if ((iAt(end) | 0x20) == L'e') {
        const std::size_t sign = iAt(end + 1) == L'+' || iAt(end + 1) == L'-' ? 1 : 0;
        if (isDigit(iAt(end + 1 + sign)))
            end = iDigits(end + 1 + sign);
    }
    double number = numberIn(text_.substr(start, end - start));
    if (std::isinf(number))
        return iBad(start, "The number is too large", "a number below 1.8e308");
    if ((iAt(end) | 0x20) == L'd' && !continuesName(iAt(end + 1))) {
        number = number * kPi / 180.0;
        ++end;
    }
    Token token = iMake(TokenKind::Number, start, end - start);
    token.number = number;
    return token;
}

// result := "{" any text up to the first "}" "}"
Token Lexer::iResult(std::size_t start)
{
    const std::size_t end = text_.find(L'}', start);
    if (end == std::wstring_view::npos)
        return iBad(start, "The brace is never closed", "`}`");
    if (end == start + 1)
        return iBad(start, "The braces are empty", "the name of a motion result between the braces");
    return iMake(TokenKind::Result, start, end + 1 - start);
}

Token Lexer::next()
{
    while (isBlank(iAt(at_)))
        ++at_;
    const std::size_t start = at_;
    if (start == text_.size())
        return iMake(TokenKind::End, start, 0);

    const wchar_t c = text_[start];
    if (isDigit(c) || (c == L'.' && isDigit(iAt(start + 1))))
        return iNumber(start);
    if (startsName(c)) {
        std::size_t end = start + 1;
        while (end < text_.size() && continuesName(text_[end]))
            ++end;
        return iMake(TokenKind::Name, start, end - start);
    }
    switch (c) {
        case L'+':
            return iMake(TokenKind::Plus, start, 1);
        case L'-':
            return iMake(TokenKind::Minus, start, 1);
        case L'*':
            return iAt(start + 1) == L'*' ? iMake(TokenKind::Power, start, 2)
                                          : iMake(TokenKind::Times, start, 1);
        case L'/':
            return iMake(TokenKind::Over, start, 1);
        case L'%':
            return iMake(TokenKind::Remainder, start, 1);
        case L'^':
            return iMake(TokenKind::Power, start, 1);
        case L'(':
            return iMake(TokenKind::Open, start, 1);
        case L')':
            return iMake(TokenKind::Close, start, 1);
        case L',':
            return iMake(TokenKind::Comma, start, 1);
        case L':':
            return iMake(TokenKind::Colon, start, 1);
        case L'{':
            return iResult(start);
        default:
            return iBad(start, "The character `" + platform::toUtf8({&c, 1}) + "` has no meaning here",
                        "an operand or an operator");
    }
}

}  // namespace mf::engine
