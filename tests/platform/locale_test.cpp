// SPDX-License-Identifier: MIT

#include "mfcurves/platform/locale.h"

#include <clocale>
#include <gmock/gmock.h>
#include <locale.h>
#include <string>
#include <vector>

#include "mfcurves/motion/mfTextConverter.h"
#include "tests/locale/comma_locale.h"

// The linker sends every setlocale of this program through __wrap_setlocale, so
// that the calls can be counted and refused.
namespace {
std::vector<std::string> localesAskedFor;
std::vector<std::string> localesRefused;
}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the linker gives the names
extern "C" char* __real_setlocale(int category, const char* name);
extern "C" char* __wrap_setlocale(int category, const char* name);

char* __wrap_setlocale(int category, const char* name)
{
    if (name != nullptr) {
        localesAskedFor.emplace_back(name);
        for (const std::string& refused : localesRefused) {
            if (refused == name)
                return nullptr;
        }
    }
    return __real_setlocale(category, name);
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ToWide : public testing::Test {
protected:
    ToWide() { forget(); }
    ~ToWide() override
    {
        localesRefused.clear();
        std::setlocale(LC_ALL, "C");
    }

    static void forget() { localesAskedFor.clear(); }
    static std::string processLocale() { return std::setlocale(LC_ALL, nullptr); }
    static std::wstring toWide(const std::string& text) { return mfTextConverter_c().toWide(text); }
};

TEST_F(ToWide, TakesAsciiAtCWithoutTouchingTheLocale)
{
    EXPECT_EQ(toWide("x^2 + 1"), L"x^2 + 1");
    EXPECT_EQ(toWide(""), L"");
    EXPECT_THAT(localesAskedFor, IsEmpty());
    EXPECT_EQ(processLocale(), "C");
}

TEST_F(ToWide, TakesOtherTextThroughTheUtf8LocaleAndGoesBackToC)
{
    EXPECT_EQ(toWide("\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"), L"\u00e9 \u20ac \U0001F600");
    EXPECT_THAT(localesAskedFor, ElementsAre("C.UTF-8", "C"));
    EXPECT_EQ(processLocale(), "C");
}

TEST_F(ToWide, LeavesAProcessInAnotherLocaleAtC)
{
    ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
    forget();
    EXPECT_EQ(toWide("x"), L"x");
    EXPECT_THAT(localesAskedFor, ElementsAre("C.UTF-8", "C"));
    EXPECT_EQ(processLocale(), "C");
}

TEST_F(ToWide, LeavesAProcessWithOneCategoryElsewhereAtC)
{
    const locale_test::CommaLocale comma;
    ASSERT_TRUE(comma.holds());
    forget();
    EXPECT_EQ(toWide("x"), L"x");
    EXPECT_THAT(localesAskedFor, ElementsAre("C.UTF-8", "C"));
    EXPECT_EQ(processLocale(), "C");
}

TEST_F(ToWide, UsesTheSlowPathOnAThreadWithItsOwnLocale)
{
    const locale_t own = newlocale(LC_ALL_MASK, "C.UTF-8", static_cast<locale_t>(nullptr));
    ASSERT_NE(own, static_cast<locale_t>(nullptr));
    const locale_t before = uselocale(own);
    EXPECT_EQ(toWide("x"), L"x");
    uselocale(before);
    freelocale(own);
    EXPECT_THAT(localesAskedFor, ElementsAre("C.UTF-8", "C"));
}

TEST_F(ToWide, TriesTheLocalesInOrder)
{
    localesRefused = {"C.UTF-8", "C.utf8"};
    toWide("\xC3\xA9");
    EXPECT_THAT(localesAskedFor, ElementsAre("C.UTF-8", "C.utf8", "en_US.UTF-8", "C"));
    EXPECT_EQ(processLocale(), "C");
}

TEST_F(ToWide, EndsAtTheFirstSequenceThatIsNotValid)
{
    EXPECT_EQ(toWide("ab\xC3\xA9\xFFyz"), L"ab\u00e9");
    EXPECT_EQ(toWide("ab\xC3"), L"ab");
    EXPECT_EQ(toWide("\x80"), L"");
    EXPECT_EQ(processLocale(), "C");
}

TEST_F(ToWide, EndsAtAZeroCharacterOnBothPaths)
{
    EXPECT_EQ(toWide(std::string("ab\0cd", 5)), L"ab");
    EXPECT_EQ(toWide(std::string("\xC3\xA9\0cd", 5)), L"\u00e9");
}

TEST_F(ToWide, BothPathsGiveTheSameForEveryAsciiCharacter)
{
    std::string text;
    for (char c = 1; c < 127; ++c)
        text += c;
    const std::wstring fast = toWide(text);
    ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
    EXPECT_EQ(toWide(text), fast);
    EXPECT_EQ(fast.size(), 126u);
}

// Characters that the narrow form cannot represent are changed by it.
TEST_F(ToWide, OfToNarrowKeepsEveryCodePointAndReplacesTheRest)
{
    const mfTextConverter_c converter;
    const CString text(L"a\u00e9\u20ac\U0001F600");
    EXPECT_EQ(converter.toWide(converter.toNarrow(text)), text.GetString());
    const CString lone(std::wstring(1, wchar_t(0xD800)));
    EXPECT_EQ(converter.toWide(converter.toNarrow(lone)), L"\uFFFD");
}

TEST(FoldCase, UsesTheUtf8TablesUnderEveryLocale)
{
    EXPECT_EQ(std::string(std::setlocale(LC_ALL, nullptr)), "C");
    EXPECT_EQ(mf::platform::foldCase(L'A'), L'a');
    EXPECT_EQ(mf::platform::foldCase(L'Z'), L'z');
    EXPECT_EQ(mf::platform::foldCase(L'@'), L'@');
    EXPECT_EQ(mf::platform::foldCase(L'['), L'[');
    EXPECT_EQ(mf::platform::foldCase(L'\u00c9'), L'\u00e9');
    EXPECT_EQ(mf::platform::foldCase(L'\u0416'), L'\u0436');
    EXPECT_EQ(mf::platform::foldCase(L'\u00df'), L'\u00df');
}

TEST(FoldCase, KeepsValuesThatAreNotCharacters)
{
    EXPECT_EQ(mf::platform::foldCase(wchar_t(-5)), wchar_t(-5));
    EXPECT_EQ(mf::platform::foldCase(wchar_t(0x7fffffff)), wchar_t(0x7fffffff));
}

struct CompareCase {
    const char* name;
    const wchar_t* a;
    const wchar_t* b;
    int order;
};

const CompareCase kCompareCases[] = {
    {"BothEmpty", L"", L"", 0},
    {"EmptyComesFirst", L"", L"a", -1},
    {"CaseDoesNotCount", L"CycleAngle", L"CYCLEANGLE", 0},
    {"NorBeyondAscii", L"\u00c9t\u00e9", L"\u00e9T\u00c9", 0},
    {"PrefixComesFirst", L"time", L"times", -1},
    {"TheLowerFormsDecide", L"_", L"A", -1},
    {"Greater", L"b", L"A", 1},
};

class CompareNoCase : public testing::TestWithParam<CompareCase> {};

TEST_P(CompareNoCase, OrdersByLowerForms)
{
    const CompareCase& c = GetParam();
    EXPECT_EQ(mf::platform::compareNoCase(c.a, c.b), c.order);
    EXPECT_EQ(mf::platform::compareNoCase(c.b, c.a), -c.order);
}

INSTANTIATE_TEST_SUITE_P(Locale, CompareNoCase, testing::ValuesIn(kCompareCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
