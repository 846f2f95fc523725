// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>
#include <locale.h>
#include <string_view>

#include "mfcurves/platform/locale.h"

// A machine without any locale in UTF-8: the linker sends every newlocale of this
// program through __wrap_newlocale, which knows only "C".

// NOLINTBEGIN(bugprone-reserved-identifier): the linker gives the names
extern "C" locale_t __real_newlocale(int mask, const char* name, locale_t base);
extern "C" locale_t __wrap_newlocale(int mask, const char* name, locale_t base);

locale_t __wrap_newlocale(int mask, const char* name, locale_t base)
{
    return name == std::string_view("C") ? __real_newlocale(mask, name, base)
                                         : static_cast<locale_t>(nullptr);
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

TEST(WithoutUtf8, OnlyAsciiIsFolded)
{
    EXPECT_EQ(mf::platform::foldCase(L'A'), L'a');
    EXPECT_EQ(mf::platform::foldCase(L'\u00c9'), L'\u00c9');
    EXPECT_EQ(mf::platform::compareNoCase(L"Caf\u00e9", L"CAF\u00e9"), 0);
    EXPECT_NE(mf::platform::compareNoCase(L"Caf\u00e9", L"CAF\u00c9"), 0);
}

}  // namespace
