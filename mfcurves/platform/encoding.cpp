// SPDX-License-Identifier: MIT

#include "mfcurves/platform/encoding.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "mfcurves/platform/narrowText.h"

namespace mf::platform {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kLastCodePoint = 0x10FFFF;

bool isSurrogate(char32_t c)
{
    return c >= 0xD800 && c <= 0xDFFF;
}

// A wide character holds one code point.
char32_t codePointOf(wchar_t wide)
{
    const auto c = static_cast<char32_t>(wide);
    return isSurrogate(c) || c > kLastCodePoint ? kReplacement : c;
}

void appendUtf8(std::string& out, char32_t c)
{
    const auto tail = [&](int shift) { out += static_cast<char>(0x80 | ((c >> shift) & 0x3F)); };
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        tail(0);
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        tail(6);
        tail(0);
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

// How many bytes follow a first byte, whose own bits go to `bits`; -1 if no sequence
// can start with that byte.
int followers(unsigned char first, char32_t& bits)
{
    if (first < 0x80)
        return bits = first, 0;
    if (first >= 0xC2 && first < 0xE0)
        return bits = first & 0x1F, 1;
    if (first >= 0xE0 && first < 0xF0)
        return bits = first & 0x0F, 2;
    if (first >= 0xF0 && first < 0xF5)
        return bits = first & 0x07, 3;
    return -1;
}

// Length of the valid sequence at the front of the text, with its code point; 0 if
// that sequence is not valid. Overlong forms and surrogates are not valid.
std::size_t validSequence(std::string_view text, char32_t& codePoint)
{
    const int count = followers(static_cast<unsigned char>(text.front()), codePoint);
    if (count < 0 || text.size() <= static_cast<std::size_t>(count))
        return 0;
    for (int i = 1; i <= count; ++i) {
        const auto byte = static_cast<unsigned char>(text[static_cast<std::size_t>(i)]);
        if ((byte & 0xC0) != 0x80)
            return 0;
        codePoint = (codePoint << 6) | (byte & 0x3F);
    }
    constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
    if (codePoint < kSmallest[count] || codePoint > kLastCodePoint || isSurrogate(codePoint))
        return 0;
    return static_cast<std::size_t>(count) + 1;
}

// How many ASCII characters the text begins with. Checks eight at a time, because
// nearly every text is ASCII.
std::size_t asciiAtTheFront(std::string_view text)
{
    std::size_t at = 0;
    for (std::uint64_t eight; text.size() - at >= sizeof eight; at += sizeof eight) {
        std::memcpy(&eight, text.data() + at, sizeof eight);
        if ((eight & 0x8080808080808080) != 0)
            break;
    }
    while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80)
        ++at;
    return at;
}

int encodeUtf8(const wchar_t* text, int length, char* buffer, int size, std::uint32_t& error)
{
    if (text == nullptr || length <= 0 || size < 0) {
        error = kErrorInvalidParameter;
        return 0;
    }
    const std::string bytes = toUtf8({text, static_cast<std::size_t>(length)});
    const int needed = static_cast<int>(bytes.size());
    if (size == 0)
        return needed;
    if (needed > size) {
        error = kErrorBufferTooSmall;
        return 0;
    }
    std::copy(bytes.begin(), bytes.end(), buffer);
    return needed;
}

NarrowEncoder& currentEncoder()
{
    static NarrowEncoder encoder;
    return encoder;
}

}  // namespace

void setNarrowEncoder(NarrowEncoder encoder)
{
    currentEncoder() = std::move(encoder);
}

bool hasBuiltInEncoder()
{
    return !currentEncoder();
}

int encodeNarrow(const wchar_t* text, int length, char* buffer, int size, std::uint32_t& error)
{
    const NarrowEncoder& encoder = currentEncoder();
    return encoder ? encoder(text, length, buffer, size, error)
                   : encodeUtf8(text, length, buffer, size, error);
}

bool isAscii(std::string_view text)
{
    return asciiAtTheFront(text) == text.size();
}

bool isAscii(std::wstring_view text)
{
    std::uint32_t bits = 0;  // of all characters, without a branch for each
    for (const wchar_t c : text)
        bits |= static_cast<std::uint32_t>(c);
    return bits < 0x80;
}

std::wstring widen(std::string_view utf8)
{
    if (isAscii(utf8))
        return {utf8.begin(), utf8.end()};

    std::wstring wide;
    wide.reserve(utf8.size());
    while (!utf8.empty()) {
        char32_t codePoint = 0;
        const std::size_t length = validSequence(utf8, codePoint);
        wide += static_cast<wchar_t>(length == 0 ? kReplacement : codePoint);
        utf8.remove_prefix(length == 0 ? 1 : length);
    }
    return wide;
}

std::size_t moveValidUtf8(std::string_view& utf8, char* buffer, std::size_t size)
{
    constexpr std::string_view kReplacementBytes = "\xEF\xBF\xBD";
    std::size_t written = 0;
    while (!utf8.empty()) {
        const std::size_t plain = asciiAtTheFront(utf8.substr(0, size - written));
        written += utf8.copy(buffer + written, plain);
        utf8.remove_prefix(plain);
        if (utf8.empty())
            break;
        char32_t codePoint = 0;
        const std::size_t length = validSequence(utf8, codePoint);
        const std::string_view piece = length == 0 ? kReplacementBytes : utf8.substr(0, length);
        if (piece.size() > size - written)
            break;
        written += piece.copy(buffer + written, piece.size());
        utf8.remove_prefix(length == 0 ? 1 : length);
    }
    return written;
}

std::string toUtf8(std::wstring_view text)
{
    // Nearly every text is ASCII, and each compile of an expression calls this.
    if (isAscii(text))
        return {text.begin(), text.end()};

    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t c : text)
        appendUtf8(bytes, codePointOf(c));
    return bytes;
}

}  // namespace mf::platform
