// SPDX-License-Identifier: MIT

#include "mfcurves/platform/encoding.h"

#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "mfcurves/platform/narrowText.h"

namespace {

using mf::platform::encodeNarrow;
using mf::platform::kErrorBufferTooSmall;
using mf::platform::kErrorInvalidParameter;

struct EncodeCase {
    const char* name;
    const wchar_t* text;
    int length;
    int size;
    int written;
    std::uint32_t error;
};

// The text L"a€" takes 1 + 3 bytes, its terminator one more.
const EncodeCase kEncodeCases[] = {
    {"Fits", L"a\u20ac", 3, 5, 5, 0},
    {"HasRoomToSpare", L"a\u20ac", 3, 6, 5, 0},
    {"IsOneByteShort", L"a\u20ac", 3, 4, 0, kErrorBufferTooSmall},
    {"WithoutTheTerminator", L"a\u20ac", 2, 4, 4, 0},
    {"AsksForTheSize", L"a\u20ac", 3, 0, 5, 0},
    {"TheTerminatorAlone", L"", 1, 1, 1, 0},
    {"NoText", nullptr, 1, 8, 0, kErrorInvalidParameter},
    {"NoLength", L"a", 0, 8, 0, kErrorInvalidParameter},
    {"LengthBelowZero", L"a", -1, 8, 0, kErrorInvalidParameter},
    {"SizeBelowZero", L"a", 1, -1, 0, kErrorInvalidParameter},
};

class EncodeNarrow : public testing::TestWithParam<EncodeCase> {};

TEST_P(EncodeNarrow, ReturnsTheBytesOrAnError)
{
    const EncodeCase& c = GetParam();
    char buffer[8];
    std::fill(std::begin(buffer), std::end(buffer), '#');
    std::uint32_t error = 0;
    EXPECT_EQ(encodeNarrow(c.text, c.length, buffer, c.size, error), c.written);
    EXPECT_EQ(error, c.error);
    const int filled = c.size > 0 ? c.written : 0;
    for (int i = filled; i < 8; ++i)
        EXPECT_EQ(buffer[i], '#') << "byte " << i;
}

INSTANTIATE_TEST_SUITE_P(Encoding, EncodeNarrow, testing::ValuesIn(kEncodeCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(SetNarrowEncoder, ReplacesTheBuiltInOneUntilAnEmptyOneBringsItBack)
{
    mf::platform::setNarrowEncoder([](const wchar_t*, int, char*, int, std::uint32_t& error) {
        error = 5;
        return 0;
    });
    char buffer[8];
    std::uint32_t error = 0;
    EXPECT_EQ(encodeNarrow(L"a", 2, buffer, 8, error), 0);
    EXPECT_EQ(error, 5u);
    mf::platform::setNarrowEncoder({});
    EXPECT_EQ(encodeNarrow(L"a", 2, buffer, 8, error), 2);
    EXPECT_STREQ(buffer, "a");
}

struct WidenCase {
    const char* name;
    std::string utf8;
    std::wstring wide;
};

const WidenCase kWidenCases[] = {
    {"Empty", "", L""},
    {"Ascii", "cam", L"cam"},
    {"TwoBytes", "\xC3\xA9", L"\u00e9"},
    {"ThreeBytes", "\xE2\x82\xAC", L"\u20ac"},
    {"FourBytes", "\xF0\x9F\x98\x80", L"\U0001F600"},
    {"LastCodePoint", "\xF4\x8F\xBF\xBF", L"\U0010FFFF"},
    {"BeyondTheLastCodePoint", "\xF4\x90\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
    {"AFollowerAlone", "a\x80z", L"a\uFFFDz"},
    {"ASequenceCutShort", "a\xE2\x82", L"a\uFFFD\uFFFD"},
    {"ASequenceBroken", "\xE2\x82z", L"\uFFFD\uFFFDz"},
    {"OverlongTwoBytes", "\xC0\x80", L"\uFFFD\uFFFD"},
    {"OverlongThreeBytes", "\xE0\x80\x80", L"\uFFFD\uFFFD\uFFFD"},
    {"OverlongFourBytes", "\xF0\x80\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
    {"ASurrogate", "\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"},
    {"FirstByteThatStartsNothing", "\xFE\xFF", L"\uFFFD\uFFFD"},
    {"ZeroInside", std::string("a\0b", 3), std::wstring(L"a\0b", 3)},
};

class Widen : public testing::TestWithParam<WidenCase> {};

TEST_P(Widen, ReplacesEachByteOutsideAValidSequence)
{
    EXPECT_EQ(mf::platform::widen(GetParam().utf8), GetParam().wide);
}

INSTANTIATE_TEST_SUITE_P(Encoding, Widen, testing::ValuesIn(kWidenCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

// ASCII text is handled eight characters at a time, wherever another character interrupts it.
TEST(PlainText, EndsAtTheFirstOtherCharacter)
{
    for (std::size_t at = 0; at <= 20; ++at) {
        std::string utf8(20, 'a');
        std::wstring wide(20, L'a');
        utf8.insert(at, "\xC3\xA9");
        wide.insert(at, L"\u00e9");
        EXPECT_EQ(mf::platform::widen(utf8), wide) << at;
        EXPECT_FALSE(mf::platform::isAscii(std::string_view(utf8)));
        EXPECT_FALSE(mf::platform::isAscii(std::wstring_view(wide)));
    }
    EXPECT_TRUE(mf::platform::isAscii(std::string_view("twenty plain \x01\x7f ones")));
    EXPECT_TRUE(mf::platform::isAscii(std::wstring_view(L"twenty plain \x01\x7f ones")));
    EXPECT_TRUE(mf::platform::isAscii(std::string_view()));
    EXPECT_FALSE(mf::platform::isAscii(std::string_view("\x80")));
    EXPECT_FALSE(mf::platform::isAscii(std::wstring_view(L"\x80")));
}

// With buffers of each size, the whole text is moved and no buffer ends inside a
// sequence.
TEST(MoveValidUtf8, MovesTheSameTextThroughBuffersOfEachSize)
{
    const std::string text =
        "plain text \xC3\xA9 more of it \xF0\x9F\x98\x80\xE2\x82\xAC and \x80 broken\xE2\x82";
    const std::string expected = mf::platform::toUtf8(mf::platform::widen(text));
    for (std::size_t size = 4; size <= text.size() + 8; ++size) {
        std::string moved;
        std::string_view rest = text;
        std::vector<char> buffer(size);
        while (!rest.empty()) {
            const std::size_t written = mf::platform::moveValidUtf8(rest, buffer.data(), size);
            ASSERT_GT(written, 0u);
            const std::string piece(buffer.data(), written);
            EXPECT_EQ(mf::platform::toUtf8(mf::platform::widen(piece)), piece);
            moved += piece;
        }
        EXPECT_EQ(moved, expected) << size;
    }
}

// Every code point of the first three planes and the ends of the last one.
TEST(ToUtf8, OfEveryCodePointReadsBackAsItself)
{
    std::wstring all;
    for (char32_t c = 0; c < 0x30000; ++c) {
        if (c < 0xD800 || c > 0xDFFF)
            all += static_cast<wchar_t>(c);
    }
    all += L'\U00100000';
    all += L'\U0010FFFF';
    EXPECT_EQ(mf::platform::widen(mf::platform::toUtf8(all)), all);
}

TEST(ToUtf8, GoesPastTheReplaceableEncoder)
{
    mf::platform::setNarrowEncoder([](const wchar_t*, int, char*, int, std::uint32_t&) { return 0; });
    EXPECT_EQ(mf::platform::toUtf8(L"\u20ac"), "\xE2\x82\xAC");
    mf::platform::setNarrowEncoder({});
}

}  // namespace
