// SPDX-License-Identifier: MIT

#include "mfcurves/platform/numbers.h"

#include <bit>
#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

#include "tests/locale/comma_locale.h"

namespace {

using mf::platform::formatNumber;
using mf::platform::isNumber;
using mf::platform::readInteger;
using mf::platform::readNumber;
using mf::platform::sixDecimals;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct ReadCase {
    const char* name;
    const char* text;
    double number;
};

const ReadCase kReadCases[] = {
    {"Empty", "", 0.0},
    {"Blank", " \t\n", 0.0},
    {"Whole", "12", 12.0},
    {"Fraction", "-0.25", -0.25},
    {"PlusSign", "+3", 3.0},
    {"TwoSigns", "+-3", 0.0},
    {"SignAlone", "-", -0.0},
    {"SignApart", "- 3", -0.0},
    {"LeadingSpace", " \t\v\f\r\n7", 7.0},
    {"NoDigitBeforeThePoint", ".5", 0.5},
    {"NoDigitAfterThePoint", "5.", 5.0},
    {"PointAlone", ".", 0.0},
    {"PointAndExponent", ".e5", 0.0},
    {"Exponent", "1.5e3", 1500.0},
    {"ExponentWithoutDigits", "1.5e", 1.5},
    {"ExponentWithSignAlone", "1.5e+", 1.5},
    {"RestIsIgnored", "2.5mm", 2.5},
    {"SecondPointIsRest", "1.5.2", 1.5},
    {"CommaIsRest", "1,5", 1.0},
    {"HexadecimalIsRest", "0x10", 0.0},
    {"WordsAreNoNumbers", "inf", 0.0},
    {"NorThisOne", "nan", 0.0},
    {"NothingButText", "abc", 0.0},
    {"TooLarge", "1e400", kInfinity},
    {"TooLargeBelowZero", "-1e400", -kInfinity},
    {"TooLargeByExponent", "1e99999999999999999999", kInfinity},
    {"TooSmall", "1e-400", 0.0},
    {"TooSmallByExponent", "1e-99999999999999999999", 0.0},
    {"SmallFractionWithLargeExponent", "0.0001e312", 1e308},
    {"SmallFractionWithTooLargeExponent", "0.0001e320", kInfinity},
    {"LargeNumberWithTooSmallExponent", "1000e-400", 0.0},
    {"Smallest", "4.9406564584124654e-324", 4.9406564584124654e-324},
    {"Largest", "1.7976931348623157e308", std::numeric_limits<double>::max()},
    {"NearestDouble", "0.1", 0.1},
};

class ReadNumber : public testing::TestWithParam<ReadCase> {};

TEST_P(ReadNumber, TakesAsMuchAsIsANumber)
{
    EXPECT_EQ(readNumber(GetParam().text), GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(Numbers, ReadNumber, testing::ValuesIn(kReadCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

struct IsNumberCase {
    const char* name;
    const char* text;
    bool isNumber;
};

const IsNumberCase kIsNumberCases[] = {
    {"Empty", "", false},
    {"Blank", " ", false},
    {"Whole", "12", true},
    {"Fraction", "-0.25", true},
    {"PlusSign", "+3", true},
    {"TwoSigns", "+-3", false},
    {"SignAlone", "-", false},
    {"SpaceAround", " \n7\t ", true},
    {"SpaceWithin", "7 8", false},
    {"NoDigitBeforeThePoint", ".5", true},
    {"NoDigitAfterThePoint", "5.", true},
    {"PointAlone", ".", false},
    {"Exponent", "1.5e3", true},
    {"ExponentWithoutDigits", "1.5e", false},
    {"Rest", "2.5mm", false},
    {"Comma", "1,5", false},
    {"Hexadecimal", "0x10", false},
    {"Infinity", "inf", false},
    {"NaN", "nan", false},
    {"Words", "abc", false},
    {"TooLarge", "1e400", false},
    {"TooLargeBelowZero", "-1e400", false},
    {"TooSmall", "1e-400", true},
    {"Largest", "1.7976931348623157e308", true},
};

class IsNumber : public testing::TestWithParam<IsNumberCase> {};

TEST_P(IsNumber, LeavesNothingOut)
{
    EXPECT_EQ(isNumber(GetParam().text), GetParam().isNumber) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Texts, IsNumber, testing::ValuesIn(kIsNumberCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(ReadNumberDigits, FourHundredOfThemOverflowOrVanish)
{
    const std::string zeros(400, '0');
    EXPECT_EQ(readNumber("1" + zeros), kInfinity);
    EXPECT_EQ(readNumber("0." + zeros + "1"), 0.0);
    EXPECT_EQ(readNumber("1" + zeros + "e-400"), 1.0);
}

struct IntegerCase {
    const char* name;
    const char* text;
    std::int32_t number;
};

const IntegerCase kIntegerCases[] = {
    {"Empty", "", 0},
    {"Number", "42", 42},
    {"SpaceAndSign", " -42", -42},
    {"RestIsIgnored", "42.9", 42},
    {"NoNumber", "x1", 0},
    {"TwoSigns", "--1", 0},
    {"Largest", "2147483647", 2147483647},
    {"OneMore", "2147483648", 2147483647},
    {"Smallest", "-2147483648", std::numeric_limits<std::int32_t>::min()},
    {"OneLess", "-2147483649", std::numeric_limits<std::int32_t>::min()},
    {"BeyondSixtyFourBits", "99999999999999999999", 2147483647},
    {"BeyondSixtyFourBitsBelowZero", "-99999999999999999999", std::numeric_limits<std::int32_t>::min()},
};

class ReadInteger : public testing::TestWithParam<IntegerCase> {};

TEST_P(ReadInteger, SaturatesAtTheEndsOfTheRange)
{
    EXPECT_EQ(readInteger(GetParam().text), GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(Numbers, ReadInteger, testing::ValuesIn(kIntegerCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(FormatNumber, FollowsPrintf)
{
    EXPECT_EQ(formatNumber("%f", 1.5), "1.500000");
    EXPECT_EQ(formatNumber("%f", -0.0), "-0.000000");
    EXPECT_EQ(formatNumber("%f", 1e-7), "0.000000");
    EXPECT_EQ(formatNumber("%.6G", 1234567.0), "1.23457E+06");
    EXPECT_EQ(formatNumber("%.6G", 0.1), "0.1");
    EXPECT_EQ(formatNumber("%.6G", kInfinity), "INF");
}

TEST(FormatNumber, HasNoLongestResult)
{
    const std::string text = formatNumber("%f", 1e300);
    EXPECT_EQ(text.size(), 301u + 7u);
    EXPECT_EQ(text.substr(301), ".000000");
    // One below, at and above the size of the buffer on the stack.
    for (const int length : {62, 63, 64, 65, 128}) {
        const std::string format = "%" + std::to_string(length) + "f";
        EXPECT_EQ(formatNumber(format.c_str(), 1.0), std::string(length - 8, ' ') + "1.000000");
    }
}

// The C library's result for "%f", which is exact.
void expectAsPrintf(double number)
{
    char expected[400];
    std::snprintf(expected, sizeof expected, "%f", number);
    EXPECT_EQ(sixDecimals(number), expected);
}

TEST(SixDecimals, AreThoseOfPrintfAtTheEdges)
{
    using Limits = std::numeric_limits<double>;
    for (const double number : {0.0, 1.5, 1e-7, 0.5e-6, 1.5e-6, 2.5e-6, 0.0000005, 0.9999995, 999999.9999995,
                                1e15, 4503599627370497.5, 9007199254740993.0, 1e22, 1e300, Limits::max(),
                                Limits::min(), Limits::denorm_min(), kInfinity, Limits::quiet_NaN()})
        for (const double sign : {1.0, -1.0})
            expectAsPrintf(std::copysign(number, sign));
}

TEST(SixDecimals, AreThoseOfPrintfForRandomNumbers)
{
    std::mt19937_64 random(20240611);
    std::uniform_real_distribution<double> usual(-1000.0, 1000.0);
    for (int i = 0; i < 20'000; ++i) {
        expectAsPrintf(usual(random));
        expectAsPrintf(std::bit_cast<double>(random()));         // any number at all
        expectAsPrintf(double(random() % 100'000'000) / 128e6);  // many of them ties at the last decimal
    }
}

TEST(NumbersUnderACommaLocale, AreReadAndWrittenWithAPoint)
{
    const locale_test::CommaLocale comma;
    ASSERT_TRUE(comma.holds());
    EXPECT_EQ(formatNumber("%f", 1.5), "1.500000");
    EXPECT_EQ(formatNumber("%.6G", 0.1), "0.1");
    EXPECT_EQ(sixDecimals(1.5), "1.500000");
    EXPECT_EQ(readNumber("1.5"), 1.5);
    EXPECT_EQ(readNumber("1,5"), 1.0);
    EXPECT_TRUE(comma.holds()) << "the host's own locale must stay";
}

}  // namespace
