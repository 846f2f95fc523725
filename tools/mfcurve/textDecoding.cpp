// SPDX-License-Identifier: MIT
#include "tools/mfcurve/textDecoding.h"

#include <algorithm>
#include <cstdint>
#include <fmt/format.h>

namespace mfcurve {

namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";
constexpr const char* kAdvice = "; save the file as UTF-8 or UTF-16";

enum class Encoding { Utf8, Utf16Little, Utf16Big };

unsigned byteAt(std::string_view bytes, std::size_t i)
{
    return static_cast<unsigned char>(bytes[i]);
}

// No UTF-8 text begins with a zero byte, so a zero in the first two bytes shows the byte order of UTF-16.
Encoding encodingOf(std::string_view bytes)
{
    if (bytes.size() < 2)
        return Encoding::Utf8;
    const unsigned first = byteAt(bytes, 0);
    const unsigned second = byteAt(bytes, 1);
    if ((first == 0xFF && second == 0xFE) || (first != 0 && second == 0))
        return Encoding::Utf16Little;
    if ((first == 0xFE && second == 0xFF) || (first == 0 && second != 0))
        return Encoding::Utf16Big;
    return Encoding::Utf8;
}

int lineAt(std::string_view text, std::size_t end)
{
    return 1 +
           static_cast<int>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
}

void appendUtf8(std::string& text, std::uint32_t c)
{
    const auto add = [&](std::uint32_t byte) { text += static_cast<char>(byte); };
    if (c < 0x80) {
        add(c);
        return;
    }
    if (c < 0x800) {
        add(0xC0 | (c >> 6));
    } else if (c < 0x10000) {
        add(0xE0 | (c >> 12));
        add(0x80 | ((c >> 6) & 0x3F));
    } else {
        add(0xF0 | (c >> 18));
        add(0x80 | ((c >> 12) & 0x3F));
        add(0x80 | ((c >> 6) & 0x3F));
    }
    add(0x80 | (c & 0x3F));
}

std::string fromUtf16(std::string_view bytes, bool isBig)
{
    std::string text;
    if (bytes.size() % 2 != 0)
        throw TextError(0, std::string("UTF-16 text ends in the middle of a character") + kAdvice);
    const auto unitAt = [&](std::size_t i) -> std::uint32_t {
        return isBig ? byteAt(bytes, i) << 8 | byteAt(bytes, i + 1)
                     : byteAt(bytes, i + 1) << 8 | byteAt(bytes, i);
    };
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
        const std::uint32_t unit = unitAt(i);
        if (unit == 0xFEFF && i == 0)
            continue;
        const bool isPair =
            unit >= 0xD800 && unit < 0xDC00 && i + 2 < bytes.size() && (unitAt(i + 2) & 0xFC00) == 0xDC00;
        if (isPair)
            appendUtf8(text, 0x10000 + ((unit - 0xD800) << 10) + (unitAt(i += 2) - 0xDC00));
        else if (unit >= 0xD800 && unit < 0xE000)
            throw TextError(lineAt(text, text.size()),
                            fmt::format("half a UTF-16 character, {:#06x}{}", unit, kAdvice));
        else
            appendUtf8(text, unit);
    }
    return text;
}

// The number of bytes of the character at i; 0 when it is not UTF-8.
std::size_t characterLength(std::string_view text, std::size_t i)
{
    const unsigned first = byteAt(text, i);
    const std::size_t length = first < 0x80   ? 1
                               : first < 0xC2 ? 0
                               : first < 0xE0 ? 2
                               : first < 0xF0 ? 3
                               : first < 0xF5 ? 4
                                              : 0;
    if (length == 0 || i + length > text.size())
        return 0;
    for (std::size_t k = 1; k < length; ++k) {
        if ((byteAt(text, i + k) & 0xC0) != 0x80)
            return 0;
    }
    const unsigned second = length > 1 ? byteAt(text, i + 1) : 0;
    const bool isTooLong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool isOutside = (first == 0xED && second >= 0xA0) || (first == 0xF4 && second >= 0x90);
    return isTooLong || isOutside ? 0 : length;
}

void checkUtf8(std::string_view text)
{
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = byteAt(text, i) < 0x80 ? 1 : characterLength(text, i);
        if (length == 0)
            throw TextError(lineAt(text, i),
                            fmt::format("the byte {:#04x} is not UTF-8{}", byteAt(text, i), kAdvice));
        i += length;
    }
}

}  // namespace

std::string decodedText(std::string_view bytes)
{
    const Encoding encoding = encodingOf(bytes);
    if (encoding != Encoding::Utf8)
        return fromUtf16(bytes, encoding == Encoding::Utf16Big);
    if (bytes.starts_with(kMark))
        bytes.remove_prefix(kMark.size());
    checkUtf8(bytes);
    return std::string(bytes);
}

}  // namespace mfcurve
