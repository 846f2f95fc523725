// SPDX-License-Identifier: MIT

#include "mfcurves/interfaces/CString.h"

#include <clocale>
#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <map>
#include <sstream>

#include "mfcurves/platform/resources.h"
#include "tests/locale/comma_locale.h"
#include "tests/support/FakeHost.h"

namespace {

const wchar_t* const kNoText = nullptr;

TEST(CStringConstruction, GivesTheText)
{
    EXPECT_EQ(CString().GetLength(), 0);
    EXPECT_STREQ(CString().GetString(), L"");
    EXPECT_STREQ(CString(L"cam").GetString(), L"cam");
    EXPECT_STREQ(CString(L"").GetString(), L"");
    EXPECT_STREQ(CString(kNoText).GetString(), L"");
    EXPECT_STREQ(CString("caf\xC3\xA9").GetString(), L"caf\u00e9");
    EXPECT_STREQ(CString(static_cast<const char*>(nullptr)).GetString(), L"");
    EXPECT_STREQ(CString(std::wstring(L"cam")).GetString(), L"cam");
}

TEST(CStringConstruction, TakesTheFirstCharacters)
{
    EXPECT_STREQ(CString(L"camera", 3).GetString(), L"cam");
    EXPECT_STREQ(CString(L"cam", 0).GetString(), L"");
    EXPECT_STREQ(CString(L"cam", -1).GetString(), L"");
    EXPECT_STREQ(CString(kNoText, 3).GetString(), L"");
}

TEST(CStringConstruction, CountsCharactersAfterAZero)
{
    const CString text(L"ab\0cd", 5);
    EXPECT_EQ(text.GetLength(), 5);
    EXPECT_STREQ(text.GetString(), L"ab");
}

TEST(CStringCopy, SharesTheBuffer)
{
    const CString text(L"cam");
    const CString copy = text;
    EXPECT_EQ(copy.GetString(), text.GetString());
}

TEST(CStringCopy, StaysWhenTheOriginalChanges)
{
    CString text(L"cam");
    const CString copy = text;
    text += L"shaft";
    EXPECT_STREQ(copy.GetString(), L"cam");
    EXPECT_STREQ(text.GetString(), L"camshaft");
    text = L"lever";
    EXPECT_STREQ(text.GetString(), L"lever");
    text = CString();
    EXPECT_TRUE(text.IsEmpty());
    text = kNoText;
    EXPECT_TRUE(text.IsEmpty());
}

TEST(CStringCopy, OfItselfChangesNothing)
{
    CString text(L"cam");
    const CString& same = text;
    text = same;
    EXPECT_STREQ(text.GetString(), L"cam");
    text = text.GetString();
    EXPECT_STREQ(text.GetString(), L"cam");
}

TEST(CStringText, ConvertsToAPointer)
{
    const CString text(L"cam");
    const wchar_t* const pointer = text;
    EXPECT_EQ(pointer, text.GetString());
}

struct CompareCase {
    const char* name;
    const wchar_t* a;
    const wchar_t* b;
    int order;
    int orderNoCase;
};

const CompareCase kCompareCases[] = {
    {"Equal", L"cam", L"cam", 0, 0},         {"BothEmpty", L"", L"", 0, 0},
    {"CaseCounts", L"Cam", L"cam", -1, 0},   {"CaseBeyondAscii", L"\u00c9", L"\u00e9", -1, 0},
    {"Prefix", L"cam", L"camshaft", -1, -1}, {"EmptyFirst", L"", L"a", -1, -1},
    {"Less", L"abc", L"abd", -1, -1},        {"UpperAfterLowerWithoutCase", L"B", L"a", -1, 1},
};

class CStringCompare : public testing::TestWithParam<CompareCase> {};

TEST_P(CStringCompare, OrdersBothWays)
{
    const CompareCase& c = GetParam();
    EXPECT_EQ(CString(c.a).Compare(c.b), c.order);
    EXPECT_EQ(CString(c.b).Compare(c.a), -c.order);
    EXPECT_EQ(CString(c.a).CompareNoCase(c.b), c.orderNoCase);
    EXPECT_EQ(CString(c.b).CompareNoCase(c.a), -c.orderNoCase);
}

TEST_P(CStringCompare, OperatorsAgreeWithCompare)
{
    const CompareCase& c = GetParam();
    const CString a(c.a);
    const CString b(c.b);
    EXPECT_EQ(a == b, c.order == 0);
    EXPECT_EQ(a != b, c.order != 0);
    EXPECT_EQ(a < b, c.order < 0);
    EXPECT_EQ(a <= b, c.order <= 0);
    EXPECT_EQ(a > b, c.order > 0);
    EXPECT_EQ(a >= b, c.order >= 0);
    EXPECT_EQ(a == c.b, c.order == 0);
    EXPECT_EQ(c.a == b, c.order == 0);
    EXPECT_EQ(a < c.b, c.order < 0);
    EXPECT_EQ(c.a < b, c.order < 0);
    EXPECT_EQ(a >= c.b, c.order >= 0);
    EXPECT_EQ(c.a > b, c.order > 0);
}

INSTANTIATE_TEST_SUITE_P(Texts, CStringCompare, testing::ValuesIn(kCompareCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(CStringCompareWithNull, ReadsItAsTheEmptyText)
{
    EXPECT_EQ(CString().Compare(nullptr), 0);
    EXPECT_EQ(CString(L"a").Compare(nullptr), 1);
    EXPECT_EQ(CString().CompareNoCase(nullptr), 0);
    EXPECT_TRUE(CString() == kNoText);
}

TEST(CStringCompareOfTexts, ComparesCharactersAfterAZero)
{
    EXPECT_FALSE(CString(L"a\0b", 3) == CString(L"a\0c", 3));
    EXPECT_TRUE(CString(L"a\0b", 3) < CString(L"a\0c", 3));
}

TEST(CStringOrder, KeepsAMapSorted)
{
    const std::map<CString, int> map{{L"b", 2}, {L"a", 1}, {L"B", 3}};
    std::wstring keys;
    for (const auto& [key, value] : map)
        keys += key;
    EXPECT_EQ(keys, L"Bab");
    EXPECT_EQ(map.at(L"a"), 1);
}

TEST(CStringFind, ReturnsThePositionOrMinusOne)
{
    const CString text(L"rise;dwell;return");
    EXPECT_EQ(text.Find(L";"), 4);
    EXPECT_EQ(text.Find(L";", 4), 4);
    EXPECT_EQ(text.Find(L";", 5), 10);
    EXPECT_EQ(text.Find(L";", 11), -1);
    EXPECT_EQ(text.Find(L"dwell"), 5);
    EXPECT_EQ(text.Find(L"rise;dwell;return!"), -1);
    EXPECT_EQ(text.Find(L';'), 4);
    EXPECT_EQ(text.Find(L';', 5), 10);
    EXPECT_EQ(text.Find(L'!'), -1);
}

TEST(CStringFind, ClampsTheStart)
{
    const CString text(L"aba");
    EXPECT_EQ(text.Find(L"a", -7), 0);
    EXPECT_EQ(text.Find(L"a", 3), -1);
    EXPECT_EQ(text.Find(L"a", 99), -1);
    EXPECT_EQ(text.Find(L'a', -7), 0);
    EXPECT_EQ(text.Find(L'a', 99), -1);
    EXPECT_EQ(CString().Find(L"a"), -1);
}

TEST(CStringFind, FindsTheEmptyTextWhereItStarts)
{
    EXPECT_EQ(CString(L"ab").Find(L""), 0);
    EXPECT_EQ(CString(L"ab").Find(L"", 1), 1);
    EXPECT_EQ(CString(L"ab").Find(kNoText), 0);
}

struct PartCase {
    const char* name;
    int count;
    const wchar_t* left;
    const wchar_t* right;
    const wchar_t* mid;  // from `count` on
};

const PartCase kPartCases[] = {
    {"None", 0, L"", L"", L"lever"},     {"BelowZero", -3, L"", L"", L"lever"},
    {"One", 1, L"l", L"r", L"ever"},     {"AllButOne", 4, L"leve", L"ever", L"r"},
    {"All", 5, L"lever", L"lever", L""}, {"More", 9, L"lever", L"lever", L""},
};

class CStringParts : public testing::TestWithParam<PartCase> {};

TEST_P(CStringParts, AreClampedToTheText)
{
    const CString text(L"lever");
    EXPECT_EQ(text.Left(GetParam().count), GetParam().left);
    EXPECT_EQ(text.Right(GetParam().count), GetParam().right);
    EXPECT_EQ(text.Mid(GetParam().count), GetParam().mid);
}

INSTANTIATE_TEST_SUITE_P(Texts, CStringParts, testing::ValuesIn(kPartCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(CStringMid, TakesACount)
{
    const CString text(L"lever");
    EXPECT_EQ(text.Mid(1, 3), L"eve");
    EXPECT_EQ(text.Mid(1, 99), L"ever");
    EXPECT_EQ(text.Mid(1, 0), L"");
    EXPECT_EQ(text.Mid(1, -1), L"");
    EXPECT_EQ(text.Mid(-2, 2), L"le");
    EXPECT_EQ(text.Mid(5, 1), L"");
    EXPECT_EQ(text.Mid(std::numeric_limits<int>::max(), std::numeric_limits<int>::max()), L"");
}

TEST(CStringMid, OfTheWholeSharesTheBuffer)
{
    const CString text(L"lever");
    EXPECT_EQ(text.Mid(0).GetString(), text.GetString());
    EXPECT_EQ(text.Left(5).GetString(), text.GetString());
    EXPECT_EQ(text.Right(9).GetString(), text.GetString());
}

struct ReplaceCase {
    const char* name;
    const wchar_t* text;
    const wchar_t* from;
    const wchar_t* to;
    const wchar_t* result;
    int count;
};

const ReplaceCase kReplaceCases[] = {
    {"Every", L"x+x*x", L"x", L"t", L"t+t*t", 3},
    {"Longer", L"x+x", L"x", L"(12)", L"(12)+(12)", 2},
    {"Shorter", L"abcabc", L"abc", L"", L"", 2},
    {"Overlapping", L"aaa", L"aa", L"b", L"ba", 1},
    {"NeverWhatItPutIn", L"x", L"x", L"xx", L"xx", 1},
    {"Nowhere", L"abc", L"d", L"e", L"abc", 0},
    {"CaseCounts", L"X", L"x", L"y", L"X", 0},
    {"EmptyFrom", L"abc", L"", L"e", L"abc", 0},
    {"EmptyText", L"", L"a", L"b", L"", 0},
    {"NullFrom", L"abc", nullptr, L"e", L"abc", 0},
    {"NullTo", L"abc", L"b", nullptr, L"ac", 1},
};

class CStringReplace : public testing::TestWithParam<ReplaceCase> {};

TEST_P(CStringReplace, WorksInPlaceAndCounts)
{
    const ReplaceCase& c = GetParam();
    CString text(c.text);
    EXPECT_EQ(text.Replace(c.from, c.to), c.count);
    EXPECT_EQ(text, c.result);
}

INSTANTIATE_TEST_SUITE_P(Texts, CStringReplace, testing::ValuesIn(kReplaceCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(CStringReplaceOfItself, ReadsTheTextAsItWas)
{
    CString text(L"ab");
    EXPECT_EQ(text.Replace(text, text + text), 1);
    EXPECT_EQ(text, L"abab");
}

TEST(CStringAppend, AddsAtTheEnd)
{
    CString text;
    text.Append(L"cam");
    text.Append(L"");
    text.Append(nullptr);
    text.Append(text);
    EXPECT_EQ(text, L"camcam");
}

TEST(CStringPlus, JoinsEveryPairOfForms)
{
    const CString a(L"a");
    EXPECT_EQ(a + CString(L"b"), L"ab");
    EXPECT_EQ(a + L"b", L"ab");
    EXPECT_EQ(L"b" + a, L"ba");
    EXPECT_EQ(a + CString(), L"a");
    EXPECT_EQ(CString() + a, L"a");
    EXPECT_EQ((CString() + CString()).GetLength(), 0);
    EXPECT_EQ((a + CString()).GetString(), a.GetString()) << "nothing is joined, so the buffer is shared";
}

TEST(CStringPlusAssign, JoinsInPlace)
{
    CString text(L"a");
    text += CString(L"b");
    text += L"c";
    text += L'd';
    text += text;
    EXPECT_EQ(text, L"abcdabcd");
}

struct TrimCase {
    const char* name;
    const wchar_t* text;
    const wchar_t* both;
    const wchar_t* left;
    const wchar_t* right;
};

const TrimCase kTrimCases[] = {
    {"Nothing", L"a b", L"a b", L"a b", L"a b"},
    {"Spaces", L"  a b  ", L"a b", L"a b  ", L"  a b"},
    {"EveryKind", L" \t\n\v\f\ra\r\f\v\n\t ", L"a", L"a\r\f\v\n\t ", L" \t\n\v\f\ra"},
    {"OnlySpaces", L" \t ", L"", L"", L""},
    {"Empty", L"", L"", L"", L""},
};

class CStringTrim : public testing::TestWithParam<TrimCase> {};

TEST_P(CStringTrim, RemovesWhiteSpace)
{
    const TrimCase& c = GetParam();
    EXPECT_EQ(CString(c.text).Trim(), c.both);
    EXPECT_EQ(CString(c.text).TrimLeft(), c.left);
    EXPECT_EQ(CString(c.text).TrimRight(), c.right);
}

INSTANTIATE_TEST_SUITE_P(Texts, CStringTrim, testing::ValuesIn(kTrimCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(CStringTrimOfACharacter, RemovesAllOfThem)
{
    EXPECT_EQ(CString(L"{{a}b}}").TrimLeft(L'{'), L"a}b}}");
    EXPECT_EQ(CString(L"{{a}b}}").TrimRight(L'}'), L"{{a}b");
    EXPECT_EQ(CString(L"--a-b--").Trim(L'-'), L"a-b");
    EXPECT_EQ(CString(L"{{{").TrimLeft(L'{'), L"");
    EXPECT_EQ(CString(L" a ").Trim(L'-'), L" a ");
}

TEST(CStringTrim, OfNothingSharesTheBuffer)
{
    const CString text(L"a b");
    CString trimmed = text;
    trimmed.Trim();
    EXPECT_EQ(trimmed.GetString(), text.GetString());
}

TEST(CStringFormat, FollowsPrintf)
{
    CString text;
    text.Format(L"%f", 1.5);
    EXPECT_EQ(text, L"1.500000");
    text.Format(L"%.6G|%g|%E|%e", 1234567.0, 0.25, 1.0, -0.5);
    EXPECT_EQ(text, L"1.23457E+06|0.25|1.000000E+00|-5.000000e-01");
    text.Format(L"%d|%5d|%-5d|%05d|%+d|%i", 42, 42, 42, 42, 42, -42);
    EXPECT_EQ(text, L"42|   42|42   |00042|+42|-42");
    text.Format(L"%u|%x|%X", 4294967295u, 255u, 255u);
    EXPECT_EQ(text, L"4294967295|ff|FF");
    text.Format(L"%8.3f|%-8.3f|%08.3f", 3.14159, 3.14159, 3.14159);
    EXPECT_EQ(text, L"   3.142|3.142   |0003.142");
    text.Format(L"%s and %c%%", L"\u20ac", L'\u00e9');
    EXPECT_EQ(text, L"\u20ac and \u00e9%");
    text.Format(L"%5s|%-5s|%.2s|%5.2s|%3c|", L"abc", L"abc", L"abc", L"abc", L'x');
    EXPECT_EQ(text, L"  abc|abc  |ab|   ab|  x|");
    text.Format(L"%.s|%2s", L"abc", L"abc");
    EXPECT_EQ(text, L"|abc");
}

TEST(CStringFormat, WritesNaNAndInfinity)
{
    CString text;
    text.Format(L"%f %f %.6G", std::numeric_limits<double>::infinity(),
                -std::numeric_limits<double>::infinity(), std::nan(""));
    EXPECT_EQ(text, L"inf -inf NAN");
}

TEST(CStringFormat, HasNoLengthLimit)
{
    const std::wstring longText(100000, L'x');
    CString text;
    text.Format(L"<%s>", longText.c_str());
    EXPECT_EQ(text.GetLength(), 100002);
    text.Format(L"%f", 1e308);
    EXPECT_EQ(text.GetLength(), 309 + 7);
    text.Format(L"%2000d", 7);
    EXPECT_EQ(text.GetLength(), 2000);
    EXPECT_EQ(text.Right(2), L" 7");
}

TEST(CStringFormat, CopiesTextThatIsNotAConversion)
{
    CString text;
    text.Format(L"100%");
    EXPECT_EQ(text, L"100%");
    text.Format(L"a%5");
    EXPECT_EQ(text, L"a%5");
    text.Format(L"%y %q");
    EXPECT_EQ(text, L"%y %q");
    text.Format(L"plain");
    EXPECT_EQ(text, L"plain");
    text.Format(nullptr);
    EXPECT_EQ(text, L"");
}

TEST(CStringFormat, TakesItsOwnTextAndANullOne)
{
    CString text(L"cam");
    text.Format(L"%s-%s-%s", text.GetString(), text.GetString(), kNoText);
    EXPECT_EQ(text, L"cam-cam-");
}

TEST(CStringFormat, WritesAPointUnderACommaLocale)
{
    const locale_test::CommaLocale comma;
    ASSERT_TRUE(comma.holds());
    CString text;
    text.Format(L"%f %.6G %g", 1.5, 0.1, 2.5);
    EXPECT_EQ(text, L"1.500000 0.1 2.5");
    EXPECT_TRUE(comma.holds());
}

TEST(CStringLoadString, TakesTheTextOfTheCurrentModule)
{
    CString text(L"before");
    EXPECT_TRUE(text.LoadString(1033));
    EXPECT_EQ(text, L"Time");
    EXPECT_TRUE(text.LoadString(1034));
    EXPECT_EQ(text, L"CycleAngle");
}

TEST(CStringLoadString, LeavesAnEmptyTextForAMissingString)
{
    CString text(L"before");
    EXPECT_FALSE(text.LoadString(7));
    EXPECT_TRUE(text.IsEmpty());

    const auto* const module = mf::platform::currentResourceModule();
    mf::platform::setCurrentResourceModule(nullptr);
    text = L"before";
    EXPECT_FALSE(text.LoadString(1033));
    EXPECT_TRUE(text.IsEmpty());
    mf::platform::setCurrentResourceModule(module);
}

TEST(CStringPrinting, ShowsTheTextInAFailedTest)
{
    EXPECT_EQ(testing::PrintToString(CString(L"caf\u00e9")), "\"caf\xC3\xA9\"");
}

}  // namespace
