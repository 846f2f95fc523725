// SPDX-License-Identifier: MIT

// What a point of an expression compiles once and what it compiles each time. A compile
// allocates memory, so the allocator of this program can distinguish the two.

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <gmock/gmock.h>
#include <locale.h>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/resources.h"
#include "tests/support/operatorNew.h"

namespace {

long allocationCount = 0;
long allocationsLeft = -1;  // negative: without a limit

}  // namespace

void* mf::test::allocate(const MemoryRequest& request)
{
    ++allocationCount;
    if (allocationsLeft == 0)
        return nullptr;
    if (allocationsLeft > 0)
        --allocationsLeft;
    return fromHeap(request);
}

void mf::test::release(void* memory) noexcept
{
    std::free(memory);
}

namespace {

using testing::Each;
using testing::ElementsAre;

using Orders = std::vector<double>;

class ReusedExpression : public testing::Test {
protected:
    ReusedExpression() { function_.setPlottingPointCount(100); }
    ~ReusedExpression() override
    {
        mf::platform::setNarrowEncoder({});
        std::setlocale(LC_ALL, "C");
    }

    static Orders ordersOf(mfFunctionExpression_c& function, double x)
    {
        Orders orders;
        for (int order = 0; order <= 3; ++order)
            orders.push_back(function.evaluate(x, order));
        return orders;
    }
    Orders ordersAt(double x) { return ordersOf(function_, x); }

    // Whether the four orders at x are computed without compiling again.
    static bool isReused(mfFunctionExpression_c& function, double x)
    {
        const long before = allocationCount;
        for (int order = 0; order <= 3; ++order)
            function.evaluate(x, order);
        return allocationCount == before;
    }
    bool isReused(double x = 2.0) { return isReused(function_, x); }

    mfFunctionExpression_c function_;
};

TEST_F(ReusedExpression, IsCompiledOnce)
{
    function_.setMathExpression(L"time^4");
    EXPECT_THAT(ordersAt(1.0), ElementsAre(1.0, 4.0, 12.0, 24.0));
    EXPECT_TRUE(isReused());
    EXPECT_THAT(ordersAt(2.0), ElementsAre(16.0, 32.0, 48.0, 48.0));
    double y = 0.0;
    EXPECT_TRUE(function_.calculateValue(3.0, y));
    EXPECT_EQ(y, 81.0);
    double d[3] = {};
    EXPECT_TRUE(function_.calculateValue(2.0, y, d[0], d[1], d[2]));
    EXPECT_EQ(y, 16.0);
    EXPECT_THAT(d, ElementsAre(32.0, 48.0, 48.0));
    EXPECT_TRUE(isReused());
}

TEST_F(ReusedExpression, HasTheDerivativesThatTheCountAllows)
{
    function_.setMathExpression(L"time^4");
    EXPECT_THAT(ordersAt(2.0), ElementsAre(16.0, 32.0, 48.0, 48.0));
    function_.setPlottingPointCount(1);
    EXPECT_THAT(ordersAt(2.0), ElementsAre(16.0, 0.0, 0.0, 0.0));
    function_.setPlottingPointCount(2);
    EXPECT_THAT(ordersAt(2.0), ElementsAre(16.0, 32.0, 0.0, 0.0));
    double y = 0.0;
    double d[3] = {5.0, 5.0, 5.0};
    EXPECT_TRUE(function_.calculateValue(2.0, y, d[0], d[1], d[2]));
    EXPECT_THAT(d, ElementsAre(32.0, 0.0, 0.0));
}

TEST_F(ReusedExpression, HasTheOrdersInAnySequence)
{
    function_.setMathExpression(L"time^4");
    ordersAt(1.0);
    EXPECT_EQ(function_.evaluate(2.0, 3), 48.0);
    EXPECT_EQ(function_.evaluate(2.0, 0), 16.0);
    EXPECT_EQ(function_.evaluate(3.0, 0), 81.0);
    EXPECT_EQ(function_.evaluate(3.0, 2), 108.0);
    EXPECT_EQ(function_.evaluate(2.0, 1), 32.0);
    EXPECT_EQ(function_.evaluate(4.0, 0), 256.0);
    EXPECT_EQ(function_.evaluate(5.0, 0), 625.0);
    EXPECT_EQ(function_.evaluate(5.0, 3), 120.0);
}

TEST_F(ReusedExpression, DistinguishesTheSignsOfZero)
{
    function_.setMathExpression(L"if(1/time: -1, 0, 1)");
    ordersAt(1.0);
    EXPECT_EQ(function_.evaluate(0.0, 0), 1.0);
    EXPECT_EQ(function_.evaluate(-0.0, 0), -1.0);
    EXPECT_EQ(function_.evaluate(0.0, 0), 1.0);
}

// The square root of 0 has a value but no slope.
TEST_F(ReusedExpression, DoesNotChangeOutputsFromTheFirstFailingDerivativeOn)
{
    function_.setMathExpression(L"sqrt(time)");
    ordersAt(4.0);
    double y = 5.0;
    double d[3] = {5.0, 5.0, 5.0};
    EXPECT_TRUE(function_.calculateValue(0.0, y, d[0], d[1], d[2]));
    EXPECT_EQ(y, 0.0);
    EXPECT_THAT(d, Each(5.0));
    EXPECT_FALSE(function_.calculateValue(-1.0, y, d[0], d[1], d[2]));
    EXPECT_EQ(y, 0.0);
    EXPECT_THAT(d, Each(5.0));
    EXPECT_THAT(ordersAt(0.0), Each(0.0));
    EXPECT_THAT(ordersAt(-1.0), Each(0.0));
}

TEST_F(ReusedExpression, OfAConstantHasDerivativesOfZero)
{
    function_.setMathExpression(L"5");
    for (const double x : {1.0, 1.0, 2.0})
        EXPECT_THAT(ordersAt(x), ElementsAre(5.0, 0.0, 0.0, 0.0));
    EXPECT_TRUE(isReused());
}

TEST_F(ReusedExpression, OfSeveralVariablesHasNoValue)
{
    function_.setMathExpression(L"time*{Angle1}");
    for (const double x : {1.0, 1.0, 2.0})
        EXPECT_THAT(ordersAt(x), Each(0.0));
}

TEST_F(ReusedExpression, NoticesAnotherText)
{
    function_.setMathExpression(L"time^2");
    ordersAt(1.0);
    function_.setMathExpression(L"time^3");
    EXPECT_THAT(ordersAt(2.0), ElementsAre(8.0, 12.0, 12.0, 6.0));
    EXPECT_THAT(ordersAt(2.0), ElementsAre(8.0, 12.0, 12.0, 6.0));
    function_.setMathExpression(L"time^2");
    EXPECT_THAT(ordersAt(2.0), ElementsAre(4.0, 4.0, 2.0, 0.0));
    function_.clearExpression();
    function_.setPlottingPointCount(100);
    EXPECT_THAT(ordersAt(2.0), Each(0.0));
    function_.setMathExpression(L"1+");
    EXPECT_THAT(ordersAt(2.0), Each(0.0));
    function_.setMathExpression(L"time^2");
    EXPECT_THAT(ordersAt(3.0), ElementsAre(9.0, 6.0, 2.0, 0.0));
}

TEST_F(ReusedExpression, TreatsAnEqualTextAsTheSame)
{
    function_.setMathExpression(L"time^2");
    ordersAt(1.0);
    function_.setMathExpression(function_.getMathExpression());
    EXPECT_TRUE(isReused());
    function_.setMathExpression(CString(std::wstring(L"time^2")));
    EXPECT_TRUE(isReused());
    function_.setMathExpression(L"TIME^2");
    EXPECT_FALSE(isReused());
}

TEST_F(ReusedExpression, IsCompiledAfreshAfterSampling)
{
    function_.setMathExpression(L"time^2");
    ordersAt(1.0);
    function_.setParseExpression(L"time^3");
    function_.setMotorDependentVar(mf::MotorDriveType_Displacment);
    function_.setDomain(0.0, 99.0);
    ASSERT_TRUE(function_.calculateValue());
    EXPECT_EQ(function_.getPlottingData0()[2].y(), 8.0);
    EXPECT_EQ(function_.getPlottingData1()[2].y(), 12.0);
    EXPECT_THAT(ordersAt(3.0), ElementsAre(9.0, 6.0, 2.0, 0.0));
    EXPECT_TRUE(isReused());
}

// Derivatives of samples come from the calculator of the last point. After a failed point
// they cannot be computed.
TEST_F(ReusedExpression, LeavesItsCalculatorToTheSamplesUnlessThePointFailed)
{
    function_.setMotorDependentVar(mf::MotorDriveType_Displacment);
    function_.setParseExpression(L"time^3");
    function_.setDomain(0.0, 99.0);
    ASSERT_TRUE(function_.calculateValue());
    function_.setMathExpression(L"sqrt(time-1)+0*time");
    for (const double x : {5.0, 10.0}) {  // compiled, then reused
        EXPECT_EQ(function_.evaluate(x, 0), std::sqrt(x - 1.0));
        EXPECT_FALSE(function_.calculateDerivatives()) << "the samples begin outside the root";
        EXPECT_EQ(function_.evaluate(0.0, 0), 0.0);
    }
    function_.setMathExpression(L"time^2");
    for (const double x : {5.0, 10.0}) {
        EXPECT_EQ(function_.evaluate(x, 0), x * x);
        EXPECT_TRUE(function_.calculateDerivatives());
        EXPECT_EQ(function_.getPlottingData1()[2].y(), 4.0);
        EXPECT_EQ(function_.evaluate(std::nan(""), 0), 0.0);
        EXPECT_FALSE(function_.calculateDerivatives());
    }
    EXPECT_EQ(function_.evaluate(std::nan(""), 0), 0.0);
    ASSERT_TRUE(function_.calculateValue());
    EXPECT_TRUE(function_.calculateDerivatives()) << "sampling has compiled a text of its own";
}

TEST_F(ReusedExpression, ServesAgainAfterAPointThatFailed)
{
    function_.setMathExpression(L"log(time)");
    EXPECT_THAT(ordersAt(-1.0), Each(0.0));
    EXPECT_TRUE(isReused(-2.0));
    EXPECT_EQ(function_.evaluate(2.0, 1), 0.5);
    ordersAt(2.0);
    EXPECT_TRUE(isReused(-2.0));
    EXPECT_TRUE(isReused(3.0));
}

TEST_F(ReusedExpression, IsNotBoundToAFewShortTexts)
{
    std::vector<std::unique_ptr<mfFunctionExpression_c>> curves;
    for (int i = 0; i < 200; ++i) {
        curves.push_back(std::make_unique<mfFunctionExpression_c>());
        curves.back()->setPlottingPointCount(100);
        const std::wstring padding(i == 100 ? 20'000 : 0, L' ');
        curves.back()->setMathExpression(CString(std::to_wstring(i) + L"*time^2" + padding));
        ordersOf(*curves.back(), 1.0);
    }
    for (int i = 0; i < 200; ++i) {
        EXPECT_TRUE(isReused(*curves[i], 3.0)) << i;
        EXPECT_THAT(ordersOf(*curves[i], 3.0), ElementsAre(9.0 * i, 6.0 * i, 2.0 * i, 0.0));
    }
}

// If the conversion to the narrow encoding has an effect, each point converts the text.

TEST_F(ReusedExpression, CallsTheHostsEncoderEachTime)
{
    function_.setMathExpression(L"time^2");
    ordersAt(1.0);
    int asked = 0;
    mf::platform::setNarrowEncoder([&](const wchar_t*, int, char* buffer, int size, std::uint32_t&) {
        const std::string text = "time^3";
        ++asked;
        if (size > 0)
            text.copy(buffer, text.size());
        return static_cast<int>(text.size());
    });
    EXPECT_EQ(function_.evaluate(2.0, 0), 8.0);
    const int forOne = asked;
    EXPECT_GT(forOne, 0);
    EXPECT_EQ(function_.evaluate(2.0, 0), 8.0);
    EXPECT_EQ(asked, 2 * forOne);
    mf::platform::setNarrowEncoder({});
    EXPECT_EQ(function_.evaluate(2.0, 0), 4.0) << "what the encoder of the host made is not used again";
    ordersAt(2.0);
    EXPECT_TRUE(isReused());
}

TEST_F(ReusedExpression, LeavesTheLocaleAtCEachTime)
{
    function_.setMathExpression(L"time^2");
    ordersAt(1.0);
    for (int time = 0; time < 3; ++time) {
        ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
        EXPECT_EQ(function_.evaluate(3.0, 0), 9.0);
        EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
    }
    EXPECT_THAT(ordersAt(3.0), ElementsAre(9.0, 6.0, 2.0, 0.0));
    EXPECT_TRUE(isReused());
}

TEST_F(ReusedExpression, IsCompiledAgainOnAThreadWithItsOwnLocale)
{
    function_.setMathExpression(L"time^2");
    ordersAt(1.0);
    const locale_t own = newlocale(LC_ALL_MASK, "C.UTF-8", static_cast<locale_t>(nullptr));
    ASSERT_NE(own, static_cast<locale_t>(nullptr));
    const locale_t before = uselocale(own);
    EXPECT_FALSE(isReused());
    EXPECT_EQ(function_.evaluate(3.0, 0), 9.0);
    uselocale(before);
    freelocale(own);
}

TEST_F(ReusedExpression, BeyondAsciiIsCompiledAfresh)
{
    function_.setMathExpression(L"{Gr\u00f6\u00dfe}^2");
    EXPECT_THAT(ordersAt(3.0), ElementsAre(9.0, 6.0, 2.0, 0.0));
    EXPECT_FALSE(isReused());
    ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
    EXPECT_EQ(function_.evaluate(3.0, 0), 9.0);
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
}

// A point does not use the meaning of its variable, so the words for time and cycle angle
// do not matter.
TEST_F(ReusedExpression, HasTheSameValuesUnderOtherResources)
{
    const mf::platform::ResourceModule* const before = mf::platform::currentResourceModule();
    const mf::platform::ResourceModule german(
        {{mf::platform::kTimeName, L"Zeit"}, {mf::platform::kCycleAngleName, L"Zykluswinkel"}});
    for (const wchar_t* text : {L"time^2", L"zeit^2", L"cycleangle^2", L"{a}^2"}) {
        function_.setMathExpression(text);
        for (const auto* const module : {before, &german, before}) {
            mf::platform::setCurrentResourceModule(module);
            EXPECT_THAT(ordersAt(3.0), ElementsAre(9.0, 6.0, 2.0, 0.0));
            mfFunctionExpression_c fresh;
            fresh.setMathExpression(text);
            fresh.setPlottingPointCount(100);
            EXPECT_EQ(ordersOf(fresh, 3.0), ordersAt(3.0));
        }
        // A point has only one variable, so a text with two fails, whatever their names.
        function_.setMathExpression(CString(text) + L"+other");
        EXPECT_THAT(ordersAt(3.0), Each(0.0));
    }
}

TEST_F(ReusedExpression, CopiesOnlyItsText)
{
    function_.setMathExpression(L"time^2");
    ordersAt(1.0);
    mfFunctionExpression_c copied;
    {
        mfFunctionExpression_c source;
        source.setMathExpression(L"time^3");
        source.setPlottingPointCount(100);
        ordersOf(source, 1.0);
        ASSERT_TRUE(copied.Copy(&source));
        ASSERT_TRUE(function_.Copy(&source));
    }
    EXPECT_THAT(ordersAt(2.0), ElementsAre(8.0, 12.0, 12.0, 6.0));
    EXPECT_THAT(ordersOf(copied, 2.0), ElementsAre(8.0, 0.0, 0.0, 0.0)) << "a copy has no plotting count";
    copied.setPlottingPointCount(100);
    EXPECT_THAT(ordersOf(copied, 2.0), ElementsAre(8.0, 12.0, 12.0, 6.0));
}

TEST_F(ReusedExpression, IsUsableWhereverMemoryRunsOut)
{
    const CString square = L"time^2+0.125";
    const CString cube = L"time^3+0.125";
    bool finished = false;
    for (long allocations = 0; !finished; ++allocations) {
        ASSERT_LT(allocations, 10'000);
        mfFunctionExpression_c function;
        function.setPlottingPointCount(100);
        function.setMathExpression(square);
        ordersOf(function, 1.0);
        allocationsLeft = allocations;
        double value = 0.0;
        double third = 0.0;
        try {
            function.setMathExpression(cube);
            value = function.evaluate(2.0, 0);
            third = function.evaluate(2.0, 3);
            finished = true;
        } catch (const std::bad_alloc&) {
            finished = false;
        }
        allocationsLeft = -1;
        if (finished) {
            EXPECT_EQ(value, 8.125);
            EXPECT_EQ(third, 6.0);
        }
        EXPECT_THAT(ordersOf(function, 2.0), ElementsAre(8.125, 12.0, 12.0, 6.0));
    }
}

}  // namespace
