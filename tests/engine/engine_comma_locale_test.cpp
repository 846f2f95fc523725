// SPDX-License-Identifier: MIT

// The engine under a host that writes its decimals with a comma.

#include <gtest/gtest.h>

#include "tests/engine/compiled.h"
#include "tests/locale/comma_locale.h"

namespace engine_test {
namespace {

TEST(CommaLocale, ChangesNoNumber)
{
    const locale_test::CommaLocale locale;
    ASSERT_TRUE(locale.holds());
    EXPECT_EQ(evaluate(compile("1.5*x+2.25e-1"), 2.0), 3.225);
    EXPECT_EQ(evaluate(compile("poly(x,0.5,1.5,2.5)"), 2.0), 5.25);
    EXPECT_EQ(evaluate(derivative(compile("x^2.5")), 4.0), 20.0);
}

TEST(CommaLocale, LeavesTheCommaASeparator)
{
    const locale_test::CommaLocale locale;
    ASSERT_TRUE(locale.holds());
    EXPECT_FALSE(compile("1,5"));
    EXPECT_EQ(evaluate(compile("max(1,5)"), 0.0), 5.0);
}

TEST(CommaLocale, IsLeftAsItIs)
{
    const locale_test::CommaLocale locale;
    ASSERT_TRUE(locale.holds());
    EXPECT_TRUE(compile("1.5*x"));
    EXPECT_TRUE(locale.holds());
}

}  // namespace
}  // namespace engine_test
