// SPDX-License-Identifier: MIT

#include "mfcurves/engine/textCache.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace {

using mf::engine::CompiledText;

std::shared_ptr<CompiledText> compiled(const std::wstring& text, std::optional<std::wstring_view> name = L"x")
{
    auto result = mf::engine::compiledThroughCache(text, name);
    return std::get<std::shared_ptr<CompiledText>>(result);
}

TEST(TextCache, ReturnsTheSameCompiledTextAgain)
{
    EXPECT_EQ(compiled(L"x+1"), compiled(L"x+1"));
}

TEST(TextCache, DistinguishesTextsByTheirLetters)
{
    EXPECT_NE(compiled(L"x+1"), compiled(L"X+1"));
    EXPECT_NE(compiled(L"x+1"), compiled(L"x+1 "));
}

TEST(TextCache, DistinguishesVariableNames)
{
    EXPECT_NE(compiled(L"5", L"x"), compiled(L"5", L"y"));
    EXPECT_NE(compiled(L"5", L""), compiled(L"5", std::nullopt));
}

// A different text for each number, about `size` characters long.
std::wstring textOf(int number, std::size_t size)
{
    std::wstring text = L"x+" + std::to_wstring(number);
    text.append(size - text.size(), L' ');
    return text;
}

constexpr std::size_t kTenthOfTheCache = 150'000;  // characters that fill a tenth of the cache

TEST(TextCache, ForgetsWhatWasUsedLongestAgo)
{
    const std::weak_ptr<CompiledText> first = compiled(textOf(1000, kTenthOfTheCache));
    const std::weak_ptr<CompiledText> used = compiled(textOf(1001, kTenthOfTheCache));
    for (int i = 0; i < 20; ++i) {
        compiled(textOf(i, kTenthOfTheCache));
        compiled(textOf(1001, kTenthOfTheCache));
    }
    EXPECT_TRUE(first.expired());
    EXPECT_FALSE(used.expired());
}

// A host evaluates many curves in turn.
TEST(TextCache, KeepsAThousandTexts)
{
    std::vector<std::weak_ptr<CompiledText>> texts;
    for (int i = 0; i < 1000; ++i)
        texts.push_back(compiled(textOf(i, 30)));
    for (const auto& text : texts)
        EXPECT_FALSE(text.expired());
}

TEST(TextCache, KeepsALongText)
{
    const std::wstring text = textOf(7, 100'000);
    EXPECT_EQ(compiled(text), compiled(text));
}

// The memory of derivatives counts as well, although they are compiled later.
TEST(TextCache, CountsTheDerivatives)
{
    std::wstring text = L"0";
    for (int i = 1; i <= 4000; ++i)
        text += L"+sin(x*" + std::to_wstring(i) + L")*exp(x/" + std::to_wstring(i + 1) + L")";
    const std::weak_ptr<CompiledText> large = compiled(text);
    EXPECT_FALSE(large.expired());
    large.lock()->programs(3);
    compiled(L"x+1");
    compiled(L"x+2");
    EXPECT_TRUE(large.expired());
}

TEST(TextCache, KeepsATextAliveForWhoeverHoldsIt)
{
    const auto held = compiled(L"x*x");
    for (int i = 0; i < 20; ++i)
        compiled(textOf(i, kTenthOfTheCache));
    EXPECT_NE(compiled(L"x*x"), held);
    EXPECT_EQ(held->programs(0)->value->highestOrder(), 0);
}

// The first derivative compiles the usual three. After that the graph is not needed.
TEST(CompiledText, DropsTheGraphWithTheFirstDerivative)
{
    const auto text = compiled(L"10*sin(2*pi*x)+x^2*exp(-x)/(1+x)");
    const std::size_t before = text->bytes();
    EXPECT_EQ(text->programs(1)->all->highestOrder(), 3);
    EXPECT_LT(text->bytes(), before);
}

// The graph is built again from the text, whatever characters it has.
TEST(CompiledText, HasFurtherDerivativesLater)
{
    const auto text = compiled(L"\u00fc^5 + \u00fc", L"\u00fc");
    EXPECT_EQ(text->programs(3)->all->highestOrder(), 3);
    EXPECT_EQ(text->programs(5)->all->highestOrder(), 5);
    EXPECT_EQ(text->programs(1)->all->highestOrder(), 5);
}

TEST(CompiledText, HasNoDerivativeOfTwoParameters)
{
    EXPECT_FALSE(compiled(L"a+b", std::nullopt)->programs(1));
}

}  // namespace
