// SPDX-License-Identifier: MIT

#include "mfcurves/profiles/mfProfileKey.h"

#include <gtest/gtest.h>
#include <limits>
#include <type_traits>

namespace {

// A value without virtual operations.
static_assert(!std::is_polymorphic_v<mfProfileKey_c>);
static_assert(std::is_same_v<decltype(mfProfileKey_c::index), std::int32_t>);

mfProfileKey_c key(const wchar_t* name, const wchar_t* source, std::int32_t index)
{
    mfProfileKey_c result;
    result.name = name;
    result.source = source;
    result.index = index;
    return result;
}

struct OrderCase {
    const char* name;
    mfProfileKey_c a;
    mfProfileKey_c b;
    int order;  // -1: a first, 0: equal, 1: b first
};

const OrderCase kOrderCases[] = {
    {"Same", key(L"Cubic", L" (User)", 0), key(L"Cubic", L" (User)", 0), 0},
    {"CaseOfNameIsNothing", key(L"CUBIC", L" (User)", 0), key(L"cubic", L" (User)", 0), 0},
    {"CaseOfSourceIsNothing", key(L"Cubic", L" (USER)", 0), key(L"Cubic", L" (user)", 0), 0},
    {"CaseBeyondAsciiIsNothing", key(L"\u00c4rmel", L"", 0), key(L"\u00e4rmel", L"", 0), 0},
    {"NameComesFirst", key(L"A", L" (Z)", 9), key(L"b", L" (A)", 0), -1},
    {"ThenSource", key(L"A", L" (User)", 0), key(L"a", L" (default)", 9), 1},
    {"ThenIndex", key(L"A", L" (User)", 1), key(L"a", L" (user)", 0), 1},
    {"IndexIsSigned", key(L"A", L"", -1), key(L"A", L"", 0), -1},
    {"IndexAtItsEnds", key(L"A", L"", std::numeric_limits<std::int32_t>::min()),
     key(L"A", L"", std::numeric_limits<std::int32_t>::max()), -1},
    {"PrefixComesFirst", key(L"Cub", L"", 0), key(L"Cubic", L"", 0), -1},
    {"EmptyComesFirst", mfProfileKey_c(), key(L"A", L"", 0), -1},
};

class Key : public testing::TestWithParam<OrderCase> {};

TEST_P(Key, OrdersByNameSourceAndIndex)
{
    const OrderCase& c = GetParam();
    EXPECT_EQ(mfProfileKey_c::keyLess(c.a, c.b), c.order < 0);
    EXPECT_EQ(mfProfileKey_c::keyLess(c.b, c.a), c.order > 0);
    EXPECT_EQ(c.a == c.b, c.order == 0);
    EXPECT_EQ(c.b == c.a, c.order == 0);
    EXPECT_EQ(c.a != c.b, c.order != 0);
}

INSTANTIATE_TEST_SUITE_P(Profiles, Key, testing::ValuesIn(kOrderCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(SameNameAndSource, IgnoresIndexAndCase)
{
    EXPECT_TRUE(key(L"A", L" (S)", 0).sameNameAndSource(key(L"a", L" (s)", 7)));
    EXPECT_FALSE(key(L"A", L" (S)", 0).sameNameAndSource(key(L"B", L" (S)", 0)));
    EXPECT_FALSE(key(L"A", L" (S)", 0).sameNameAndSource(key(L"A", L" (T)", 0)));
}

TEST(KeyIsEmpty, OnlyWithoutNameSourceAndIndex)
{
    EXPECT_TRUE(mfProfileKey_c().isEmpty());
    EXPECT_FALSE(key(L"Cubic", L"", 0).isEmpty());
    EXPECT_FALSE(key(L"", L" (User)", 0).isEmpty());
    EXPECT_FALSE(key(L"", L"", 1).isEmpty());
    EXPECT_FALSE(key(L"", L"", -1).isEmpty());
}

TEST(KeyCopy, TakesAllThreeFields)
{
    const mfProfileKey_c original = key(L"Cubic", L" (User)", 3);
    const mfProfileKey_c copy(original);
    mfProfileKey_c assigned;
    assigned = original;
    for (const mfProfileKey_c& k : {copy, assigned}) {
        EXPECT_STREQ(k.name, L"Cubic");
        EXPECT_STREQ(k.source, L" (User)");
        EXPECT_EQ(k.index, 3);
    }
}

struct DisplayCase {
    const char* name;
    mfProfileKey_c key;
    const wchar_t* display;
};

const DisplayCase kDisplayCases[] = {
    {"NegativeIndexHasNoMark", key(L"Cubic", L" (User)", -3), L"Cubic (User)"},
    {"IndexZeroHasNoMark", key(L"Cubic", L" (User)", 0), L"Cubic (User)"},
    {"IndexOneHasAMark", key(L"Cubic", L" (User)", 1), L"Cubic (User)<1>"},
    {"LargestIndex", key(L"Cubic", L"", 2147483647), L"Cubic<2147483647>"},
    {"SourceBringsItsOwnBlank", key(L"Cubic", L"x", 0), L"Cubicx"},
    {"PercentSignsStay", key(L"%s%d", L" (%n)", 2), L"%s%d (%n)<2>"},
    {"EmptyKey", mfProfileKey_c(), L""},
};

class KeyDisplayName : public testing::TestWithParam<DisplayCase> {};

TEST_P(KeyDisplayName, JoinsNameSourceAndMark)
{
    CString display = L"old";
    GetParam().key.keyDisplayName(display);
    EXPECT_STREQ(display, GetParam().display);
}

INSTANTIATE_TEST_SUITE_P(Profiles, KeyDisplayName, testing::ValuesIn(kDisplayCases),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
