// SPDX-License-Identifier: MIT

#include "mfcurves/engine/packedText.h"

#include <bit>
#include <cstdint>

namespace mf::engine {
namespace {

// Looks at all characters, without a branch for each.
bool isAscii(std::wstring_view text)
{
    std::uint32_t bits = 0;
    for (const wchar_t character : text)
        bits |= std::bit_cast<std::uint32_t>(character);
    return bits < 0x80;
}

}  // namespace

std::string packed(std::wstring_view text)
{
    if (isAscii(text))
        return {text.begin(), text.end()};
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t character : text) {
        auto rest = std::bit_cast<std::uint32_t>(character);
        for (; rest >= 0x80; rest >>= 7)
            bytes.push_back(static_cast<char>(0x80 | (rest & 0x7f)));
        bytes.push_back(static_cast<char>(rest));
    }
    return bytes;
}

std::wstring unpacked(std::string_view bytes)
{
    std::wstring text;
    std::uint32_t character = 0;
    unsigned shift = 0;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        character |= static_cast<std::uint32_t>(byte & 0x7f) << shift;
        shift += 7;
        if (byte < 0x80) {
            text.push_back(static_cast<wchar_t>(character));
            character = 0;
            shift = 0;
        }
    }
    return text;
}

}  // namespace mf::engine
