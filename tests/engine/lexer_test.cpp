// SPDX-License-Identifier: MIT

#include "mfcurves/engine/lexer.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <ostream>
#include <random>
#include <string>

#include "mfcurves/platform/encoding.h"

namespace {

using namespace mf::engine;

const char* nameOf(TokenKind kind)
{
    switch (kind) {
        case TokenKind::End:
            return "end";
        case TokenKind::Number:
            return "number";
        case TokenKind::Name:
            return "name";
        case TokenKind::Result:
            return "result";
        case TokenKind::Plus:
            return "plus";
        case TokenKind::Minus:
            return "minus";
        case TokenKind::Times:
            return "times";
        case TokenKind::Over:
            return "over";
        case TokenKind::Remainder:
            return "remainder";
        case TokenKind::Power:
            return "power";
        case TokenKind::Open:
            return "open";
        case TokenKind::Close:
            return "close";
        case TokenKind::Comma:
            return "comma";
        case TokenKind::Colon:
            return "colon";
        case TokenKind::Bad:
            return "bad";
    }
    return "?";
}

// One word per token: kind, offset and text, such as `name@2:sin`; the last is `end` or `bad`.
std::string tokensOf(std::wstring_view text)
{
    Lexer lexer(text);
    std::string shown;
    for (;;) {
        const Token token = lexer.next();
        shown += std::string(nameOf(token.kind)) + "@" + std::to_string(token.offset);
        if (token.kind == TokenKind::End || token.kind == TokenKind::Bad)
            return shown;
        shown += ":" + mf::platform::toUtf8(token.text) + " ";
    }
}

struct TokensCase {
    const char* name;
    const wchar_t* text;
    const char* tokens;
};

const TokensCase kTokens[] = {
    {"NothingAtAll", L"", "end@0"},
    {"OnlyBlanks", L" \t\r\n\v\f", "end@6"},
    {"EveryOperator", L"+-*/%^**(),:",
     "plus@0:+ minus@1:- times@2:* over@3:/ remainder@4:% power@5:^ power@6:** open@8:( close@9:) comma@10:, "
     "colon@11:: end@12"},
    {"ThreeStarsAreAPowerAndAProduct", L"***", "power@0:** times@2:* end@3"},
    {"StarsWithABlankBetween", L"* *", "times@0:* times@2:* end@3"},
    {"BlanksBetweenTokens", L" x + 1 ", "name@1:x plus@3:+ number@5:1 end@7"},
    {"Call", L"sin(x)", "name@0:sin open@3:( name@4:x close@5:) end@6"},
    {"NameWithDigitsAndUnderline", L"_a1b2", "name@0:_a1b2 end@5"},
    {"NameBeyondAscii", L"w\u00e4rme", "name@0:w\xc3\xa4rme end@5"},
    {"NumberThenName", L"2x", "number@0:2 name@1:x end@2"},
    {"NumberWithEveryPart", L"12.5e-3", "number@0:12.5e-3 end@7"},
    {"NumberEndsAtTheSecondPoint", L"1.2.3", "number@0:1.2 number@3:.3 end@5"},
    {"ExponentWithoutDigitsIsAName", L"1e", "number@0:1 name@1:e end@2"},
    {"ExponentWithOnlyASignIsAName", L"1e+", "number@0:1 name@1:e plus@2:+ end@3"},
    {"DegreesBelongToTheNumber", L"90d+1", "number@0:90d plus@3:+ number@4:1 end@5"},
    {"LetterAfterTheDegrees", L"2dx", "number@0:2 name@1:dx end@3"},
    {"DigitAfterTheDegrees", L"2d3", "number@0:2 name@1:d3 end@3"},
    {"ResultWithAnyText", L"{a + b}*2", "result@0:{a + b} times@7:* number@8:2 end@9"},
    {"ResultEndsAtTheFirstBrace", L"{a}{b}", "result@0:{a} result@3:{b} end@6"},
    {"LonePoint", L"1+.", "number@0:1 plus@1:+ bad@2"},
    {"StrayCharacter", L"x#", "name@0:x bad@1"},
    {"OpenBrace", L"x{a", "name@0:x bad@1"},
    {"EmptyBraces", L"{}", "bad@0"},
    {"NumberTooLarge", L"1+1e400", "number@0:1 plus@1:+ bad@2"},
};

void PrintTo(const TokensCase& c, std::ostream* os)
{
    *os << mf::platform::toUtf8(c.text);
}

class Tokens : public testing::TestWithParam<TokensCase> {};

TEST_P(Tokens, AreCutFromTheText)
{
    EXPECT_EQ(tokensOf(GetParam().text), GetParam().tokens);
}

INSTANTIATE_TEST_SUITE_P(Engine, Tokens, testing::ValuesIn(kTokens),
                         [](const auto& tested) { return tested.param.name; });

TEST(Lexer, ReadsNumbersAndDegrees)
{
    EXPECT_EQ(Lexer(L"2.5e3").next().number, 2500.0);
    EXPECT_EQ(Lexer(L".5").next().number, 0.5);
    EXPECT_DOUBLE_EQ(Lexer(L"180d").next().number, 3.14159265358979323846);
}

// Numbers of few digits are read in a way of their own, with the same rounding.
TEST(Lexer, RoundsShortNumbersAsTheLibraryDoes)
{
    std::mt19937_64 random(1);
    for (int i = 0; i < 100'000; ++i) {
        std::string text = std::to_string(random()).substr(0, 1 + random() % 17);
        text.insert(random() % (text.size() + 1), ".");
        const std::wstring wide(text.begin(), text.end());
        const Token token = Lexer(wide).next();
        ASSERT_EQ(token.number, std::strtod(text.c_str(), nullptr)) << text;
        ASSERT_EQ(token.text.size(), text.size());
    }
}

TEST(Lexer, ReadsANumberOfManyDigits)
{
    EXPECT_EQ(Lexer(L"0." + std::wstring(100, L'3')).next().number, 1.0 / 3.0);
}

TEST(Lexer, StaysAtTheEnd)
{
    Lexer lexer(L"x ");
    lexer.next();
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(lexer.next().kind, TokenKind::End);
        EXPECT_FALSE(lexer.error().has_value());
    }
}

TEST(Lexer, SaysWhatIsWrongWithABadToken)
{
    Lexer lexer(L"{a");
    EXPECT_EQ(lexer.next().kind, TokenKind::Bad);
    ASSERT_TRUE(lexer.error().has_value());
    EXPECT_EQ(lexer.error()->offset, 0u);
    EXPECT_EQ(lexer.error()->message, "The brace is never closed");
    EXPECT_EQ(lexer.error()->expected, "`}`");
}

}  // namespace
