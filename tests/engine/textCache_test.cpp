#include "mfcurves/engine/textCache.h"

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
