#include "mfcurves/engine/textCache.h"

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "mfcurves/engine/limits.h"

namespace {

using mf::engine::CompiledText;

std::shared_ptr<CompiledText> compiled(const std::wstring& text, std::optional<std::wstring_view> name = L"x")
{
    auto answer = mf::engine::compiledThroughCache(text, name);
    return std::get<std::shared_ptr<CompiledText>>(answer);
}

TEST(TextCache, AnswersTheSameTextAgain)
{
    EXPECT_EQ(compiled(L"x+1"), compiled(L"x+1"));
}

TEST(TextCache, TellsTextsApartByTheirLetters)
{
    EXPECT_NE(compiled(L"x+1"), compiled(L"X+1"));
    EXPECT_NE(compiled(L"x+1"), compiled(L"x+1 "));
}

// One step of the hash over eight bytes of a text.
std::uint64_t mixed(std::uint64_t hash, std::uint64_t word)
{
    hash = (hash ^ word) * 0x9e3779b97f4a7c15ULL;
    return hash ^ (hash >> 32);
}

// Two texts of two words each with one hash: the second word of one makes up for
// what differs in the first.
TEST(TextCache, TellsTextsOfOneHashApart)
{
    using Words = std::array<std::uint64_t, 2>;
    constexpr std::uint64_t kSize = sizeof(Words);
    const Words first = {0x0000'0391'0000'0392, 0x0000'0393'0000'0394};
    const std::uint64_t start = 0x0000'0395'0000'0396;
    const Words second = {start, first[1] ^ mixed(kSize, first[0]) ^ mixed(kSize, start)};
    const auto textOf = [](const Words& words) {
        std::wstring text(kSize / sizeof(wchar_t), L'\0');
        std::memcpy(text.data(), words.data(), kSize);
        return text;
    };
    const auto kept = compiled(textOf(first), std::nullopt);
    EXPECT_NE(compiled(textOf(second), std::nullopt), kept);
    EXPECT_EQ(compiled(textOf(first), std::nullopt), kept);
}

TEST(TextCache, TellsVariableNamesApart)
{
    EXPECT_NE(compiled(L"5", L"x"), compiled(L"5", L"y"));
    EXPECT_NE(compiled(L"5", L""), compiled(L"5", std::nullopt));
}

TEST(TextCache, ForgetsWhatWasUsedLongestAgo)
{
    const std::weak_ptr<CompiledText> first = compiled(L"x+1000");
    const std::weak_ptr<CompiledText> used = compiled(L"x+1001");
    for (int i = 0; i < 100; ++i) {
        compiled(L"x+" + std::to_wstring(i));
        compiled(L"x+1001");
    }
    EXPECT_TRUE(first.expired());
    EXPECT_FALSE(used.expired());
}

TEST(TextCache, KeepsNoVeryLongText)
{
    std::wstring text = L"x";
    while (text.size() < mf::engine::kLongestText / 2)
        text += L"+x";
    const std::weak_ptr<CompiledText> longText = compiled(text);
    EXPECT_TRUE(longText.expired());
}

TEST(TextCache, KeepsATextAliveForWhoeverHoldsIt)
{
    const auto held = compiled(L"x*x");
    for (int i = 0; i < 100; ++i)
        compiled(L"x*" + std::to_wstring(i));
    EXPECT_EQ(held->section(0)->result, compiled(L"x*x")->section(0)->result);
}

}  // namespace
