// SPDX-License-Identifier: MIT

#include "mfcurves/engine/enclosure.h"

#include <cmath>
#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "mfcurves/engine/differentiation.h"
#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/intervalRules.h"
#include "mfcurves/engine/parser.h"
#include "mfcurves/interfaces/ICalculator.h"
#include "tests/engine/compiled.h"

namespace {

using mf::engine::Enclosure;
using mf::engine::Function;
using mf::engine::FunctionId;
using mf::engine::functions;
using mf::engine::Graph;
using mf::engine::Interval;
using mf::engine::NodeId;

constexpr int kBoxes = 10'000;

// Boxes of all sizes around numbers of all sizes; some begin or end at a whole number.
class Boxes {
public:
    explicit Boxes(unsigned seed) : random_(seed) {}

    double uniform(double from, double to)
    {
        return std::uniform_real_distribution<double>(from, to)(random_);
    }

    Interval next()
    {
        const double size = std::pow(10.0, uniform(-3.0, 3.0));
        double from = uniform(-size, size);
        if (uniform(0.0, 1.0) < 0.2)
            from = std::round(from);
        double to = from + size * std::pow(10.0, uniform(-12.0, 0.3));
        if (uniform(0.0, 1.0) < 0.1)
            to = from;
        if (uniform(0.0, 1.0) < 0.1)
            to = std::max(from, std::round(to));
        return {from, to};
    }

    double inside(const Interval& box)
    {
        const double choice = uniform(0.0, 1.0);
        if (choice < 0.2)
            return choice < 0.1 ? box.lo : box.hi;
        return std::clamp(box.lo + uniform(0.0, 1.0) * (box.hi - box.lo), box.lo, box.hi);
    }

private:
    std::mt19937 random_;
};

std::string show(const Interval& y)
{
    char text[120];
    std::snprintf(text, sizeof text, "[%.17g, %.17g]%s", y.lo, y.hi, y.partial ? " partial" : "");
    return text;
}

testing::AssertionResult holds(const Interval& enclosure, double value)
{
    if (std::isfinite(value) ? enclosure.contains(value) : enclosure.partial || !enclosure.isFinite())
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << show(enclosure) << " does not hold " << testing::PrintToString(value);
}

class EnclosureOfFunction : public testing::TestWithParam<int> {
protected:
    const Function& row() const { return functions()[static_cast<std::size_t>(GetParam())]; }
};

TEST_P(EnclosureOfFunction, HoldsTheValuesAtPointsOfTheBox)
{
    Boxes boxes(7u + static_cast<unsigned>(GetParam()));
    for (int i = 0; i < kBoxes; ++i) {
        const Interval a = boxes.next();
        const double x = boxes.inside(a);
        if (row().value1 != nullptr) {
            const auto rule = row().interval1;
            ASSERT_NE(rule, nullptr);
            ASSERT_TRUE(holds(rule(a), row().value1(x))) << row().name << " over " << show(a) << " at " << x;
        } else {
            const auto rule = row().interval2;
            ASSERT_NE(rule, nullptr);
            Interval b = boxes.next();
            if (row().id == FunctionId::Power)
                b = {b.lo * 0.01, b.hi * 0.01};
            const double y = boxes.inside(b);
            ASSERT_TRUE(holds(rule(a, b), row().value2(x, y)))
                << row().name << " over " << show(a) << ", " << show(b) << " at " << x << ", " << y;
        }
    }
}

// The enclosure of a point is a few units in the last place wide: the library's error and a step.
TEST_P(EnclosureOfFunction, IsNarrowAtPoints)
{
    constexpr double kMostUlps = 14.0;
    Boxes boxes(70u + static_cast<unsigned>(GetParam()));
    for (int i = 0; i < kBoxes; ++i) {
        const Interval a(boxes.uniform(-30.0, 30.0));
        const Interval b(boxes.uniform(-30.0, 30.0));
        const bool one = row().value1 != nullptr;
        const double value = one ? row().value1(a.lo) : row().value2(a.lo, b.lo);
        const Interval y = one ? row().interval1(a) : row().interval2(a, b);
        if (!std::isfinite(value)) {
            EXPECT_TRUE(y.isNothing() || !y.isFinite()) << row().name << show(a) << show(b) << show(y);
            continue;
        }
        double ulp = std::fabs(value) * 0x1p-52;
        if (row().id == FunctionId::Mod)
            ulp = std::max(std::fabs(a.lo), std::fabs(b.lo)) * 0x1p-52;  // a - k b, exact only as computed
        ASSERT_LE(y.width(), kMostUlps * ulp + 1e-320) << row().name << show(a) << show(b) << show(y);
    }
}

std::vector<int> computedFunctions()
{
    std::vector<int> rows;
    for (std::size_t i = 0; i < functions().size(); ++i) {
        if (functions()[i].value1 != nullptr || functions()[i].value2 != nullptr)
            rows.push_back(static_cast<int>(i));
    }
    return rows;
}

INSTANTIATE_TEST_SUITE_P(Functions, EnclosureOfFunction, testing::ValuesIn(computedFunctions()),
                         [](const auto& tested) {
                             const auto index = static_cast<std::size_t>(tested.param);
                             return std::string(functions()[index].name) + "_" + std::to_string(index);
                         });

// --- Texts -----------------------------------------------------------------------------

// A text and its derivatives, enclosed and computed.
class Enclosed {
public:
    explicit Enclosed(const std::string& text, int highest = 3) : computed_(text)
    {
        auto parsed = mf::engine::parseText(engine_test::wide(text), std::wstring_view(L"x"));
        graph_ = std::move(std::get<mf::engine::ParsedText>(parsed).graph);
        roots_.push_back(std::get<mf::engine::ParsedText>(parsed).root);
        for (int order = 1; order <= highest; ++order)
            roots_.push_back(mf::engine::differentiate(graph_, roots_.back()));
        enclosure_.emplace(graph_, roots_);
    }

    std::vector<Interval> over(double from, double to)
    {
        std::vector<Interval> values(roots_.size());
        enclosure_->evaluate({from, to}, values.data());
        return values;
    }
    std::vector<double> errors(double from, double to)
    {
        std::vector<double> bounds(roots_.size());
        enclosure_->errorBounds({from, to}, bounds.data());
        return bounds;
    }
    // Evaluates one root and leaves the steps of the others as they were.
    void evaluateOnly(int order, double from, double to)
    {
        std::vector<Interval> values(roots_.size());
        enclosure_->evaluate({from, to}, values.data(), 1u << order);
    }
    std::optional<double> computed(double x, int order) const { return computed_.at(x, order); }

private:
    Graph graph_;
    std::vector<NodeId> roots_;
    std::optional<Enclosure> enclosure_;
    engine_test::Orders computed_;
};

const char* const kTexts[] = {
    "1.5 + 23.5*(10*((x-0.3)/0.7)^3 - 15*((x-0.3)/0.7)^4 + 6*((x-0.3)/0.7)^5)",
    "35*x^4-84*x^5+70*x^6-20*x^7",
    "x^11 - 3*x^8 + x^2 - 1",
    "sin(3*x)*exp(-x)+cos(x)^2",
    "sqrt(x^2+1)/(2+x)",
    "tan(x/4)+atan(x)+tanh(x)-sinh(x/3)+cosh(x)",
    "if(x-1: x^2, 0, 3-x)",
    "if(x-1: if(x: -x, 0, x), 1, 2-x)",
    "step(x, 0, 1, 2, 5) + step5(x, -1, 0, 1, 1) + havsin(x, 0, 2, 1, -1)",
    "abs(x-0.5)+min(x, 1-x)+max(x^2, 0.25)+dim(x, 0.75)",
    "mod(x, 0.4) + int(3*x) + nint(x) + floor(2*x) + ceil(x)",
    "cheby(x, 1, 1, -2, 3, 0.5, -1, 2)",
    "poly(x, 0.5, 1, -2, 3, 0.5, -1)",
    "forsin(x, 0, 3, 1, 2, 3) + forcos(x, 0, 2, 1, 2)",
    "atan2(x, x-1) + hypot(x, 2) + sign(x-1, x)*cbrt(x+5)",
    "log(x+4)*ln(x^2+1)+log10(x+3)",
    "(x+3)^x + 2^x + (x+4)^2.5 + (x+4)^-3",
    "asin(x/3)+acos(x/4)",
};

class EnclosureOfText : public testing::TestWithParam<const char*> {};

TEST_P(EnclosureOfText, HoldsComputedValuesOfAllOrders)
{
    Enclosed text(GetParam());
    Boxes boxes(3);
    for (int i = 0; i < 1000; ++i) {
        const double from = boxes.uniform(-2.0, 2.0);
        const double to = std::min(2.0, from + std::pow(10.0, boxes.uniform(-8.0, 0.5)));
        const std::vector<Interval> over = text.over(from, to);
        const double x = boxes.inside({from, to});
        for (int order = 0; order <= 3; ++order) {
            const auto value = text.computed(x, order);
            const Interval& y = over[static_cast<std::size_t>(order)];
            ASSERT_TRUE(holds(y, value.value_or(std::nan(""))))
                << GetParam() << " order " << order << " over [" << from << ", " << to << "] at " << x;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Texts, EnclosureOfText, testing::ValuesIn(kTexts),
                         [](const auto& tested) { return std::to_string(tested.index); });

// The formula in long double, whose error is 2,000 times smaller, counts as the exact value.
TEST(ErrorBounds, HoldTheDistanceBetweenComputedAndExactValues)
{
    struct Case {
        const char* text;
        long double (*exact)(long double);
    };
    const Case cases[] = {
        {"35*x^4-84*x^5+70*x^6-20*x^7",
         [](long double x) { return x * x * x * x * (35 + x * (-84 + x * (70 - 20 * x))); }},
        {"sin(3*x)*exp(-x)+cos(x)^2",
         [](long double x) { return sinl(3 * x) * expl(-x) + cosl(x) * cosl(x); }},
        {"sqrt(x^2+1)/(2+x)", [](long double x) { return sqrtl(x * x + 1) / (2 + x); }},
        {"log(x+4)*ln(x^2+1)", [](long double x) { return logl(x + 4) * logl(x * x + 1); }},
        {"hypot(x, 2)*cbrt(x+5)+atan2(x+3, 2)",
         [](long double x) { return hypotl(x, 2) * cbrtl(x + 5) + atan2l(x + 3, 2); }},
        {"(x+4)^2.5", [](long double x) { return powl(x + 4, 2.5L); }},
    };
    Boxes boxes(11);
    for (const Case& c : cases) {
        Enclosed text(c.text, 0);
        for (int i = 0; i < 1000; ++i) {
            const double from = boxes.uniform(-1.0, 1.0);
            const double to = from + std::pow(10.0, boxes.uniform(-6.0, 0.0));
            const double bound = text.errors(from, to)[0];
            const double x = boxes.inside({from, to});
            ASSERT_LE(std::fabs(static_cast<double>(*text.computed(x, 0) - c.exact(x))), bound)
                << c.text << x;
            // The polynomial at 2: 16 operations, each twice 2^-53 of the sum of its terms, 10,288.
            ASSERT_LE(bound, 4e-11) << c.text;
        }
    }
}

TEST(ErrorBounds, DoNotDependOnTheBoxesBefore)
{
    const char* const text = "sin(3*x)*exp(-x)+cos(x)^2";
    const std::vector<double> expected = Enclosed(text).errors(0.5, 0.75);
    Enclosed used(text);
    used.errors(100.0, 200.0);
    used.evaluateOnly(0, 0.5, 0.75);
    EXPECT_EQ(used.errors(0.5, 0.75), expected);
}

// --- What is exact stays exact ------------------------------------------------------------

TEST(Enclosure, KeepsExactZerosOfALawAtItsEnds)
{
    Enclosed law("10*((x-2)/4)^3-15*((x-2)/4)^4+6*((x-2)/4)^5");
    const std::vector<Interval> start = law.over(2.0, 2.0);
    for (int order = 0; order <= 2; ++order)
        EXPECT_TRUE(start[static_cast<std::size_t>(order)].isZero()) << order;
}

TEST(Enclosure, OfAConstantDerivativeIsExactlyZero)
{
    Enclosed line("3 + 0.1*(x-7)");
    const std::vector<Interval> over = line.over(-1e3, 1e3);
    EXPECT_TRUE(over[2].isZero());
    EXPECT_TRUE(over[3].isZero());
    EXPECT_FALSE(over[2].partial);
}

TEST(Interval, ArithmeticThatIsExactStaysExact)
{
    const Interval sum = Interval(0.5) + Interval(0.25);
    EXPECT_TRUE(sum.isPoint());
    const Interval product = Interval(3.0) * Interval(-1.25);
    EXPECT_TRUE(product.isPoint());
    const Interval quotient = Interval(3.0) / Interval(8.0);
    EXPECT_TRUE(quotient.isPoint());
    const Interval third = Interval(1.0) / Interval(3.0);
    EXPECT_LT(third.lo, third.hi);
    EXPECT_LE(third.width(), 0x1p-53);
}

TEST(Interval, PowersOfABaseFromNegativeZeroAreUnbounded)
{
    const Interval y = mf::engine::intervals::ofPower({-0.0, 1e-12}, Interval(-3.0));
    EXPECT_FALSE(y.isFinite());
    EXPECT_TRUE(y.contains(1e39));
}

// What a double computes as 0 is not 0, and its enclosure shows that.
TEST(Interval, ResultsThatUnderflowAreNotExactlyZero)
{
    constexpr double kTiny = 1e-300;
    constexpr double kHuge = 1e300;
    namespace rules = mf::engine::intervals;
    EXPECT_GT(rules::ofPower({-1e-20, 1e-20}, Interval(18.0)).hi, 0.0);
    EXPECT_LT(rules::ofPower({-1e-20, 1e-20}, Interval(19.0)).lo, 0.0);
    EXPECT_LT(rules::ofPower({-1e200, -1e190}, Interval(-17.0)).lo, 0.0);
    EXPECT_GT(rules::ofPower({-1e200, -1e190}, Interval(-18.0)).hi, 0.0);
    EXPECT_GT(rules::ofAtan2(Interval(kTiny), Interval(kHuge)).hi, 0.0);
    EXPECT_LT(rules::ofAtan2(Interval(-kTiny), Interval(kHuge)).lo, 0.0);
    EXPECT_TRUE(rules::ofPower({-0.0, 0.0}, Interval(3.0)).isZero());
}

// Products just below the largest double, whose halves would overflow; a long double does not.
TEST(Interval, ProductsNearTheLargestNumberAreBounded)
{
    Boxes boxes(5);
    for (int i = 0; i < kBoxes; ++i) {
        const double a = 0x1p511 * boxes.uniform(1.0, 2.0);
        const double b = std::numeric_limits<double>::max() / a * (1.0 - 0x1p-30 * boxes.uniform(0.0, 1.0));
        const long double product = static_cast<long double>(a) * b;
        ASSERT_LE(mf::engine::productDown(a, b), product);
        ASSERT_GE(mf::engine::productUp(a, b), product);
    }
}

TEST(Interval, DividingByWhatMayBeZeroLeavesPointsWithoutValue)
{
    const Interval pole = Interval(1.0, 2.0) / Interval(-1.0, 1.0);
    EXPECT_TRUE(pole.partial);
    EXPECT_EQ(pole.lo, -mf::engine::kUnbounded);
    const Interval oneSided = Interval(1.0, 2.0) / Interval(0.0, 1.0);
    EXPECT_EQ(oneSided.lo, 1.0);
    EXPECT_EQ(oneSided.hi, mf::engine::kUnbounded);
    EXPECT_TRUE((Interval(1.0) / Interval(0.0)).isNothing());
    EXPECT_TRUE((Interval(0.0) / Interval(0.0)).isNothing());
}

TEST(Interval, DistinguishesUndefinedFromPartlyDefined)
{
    using namespace mf::engine::intervals;
    EXPECT_TRUE(ofSqrt({-2.0, -1.0}).isNothing());
    EXPECT_TRUE(ofSqrt({-2.0, 4.0}).partial);
    EXPECT_FALSE(ofSqrt({0.0, 4.0}).partial);
    EXPECT_EQ(ofSqrt({0.0, 4.0}).hi, 2.0);
    EXPECT_TRUE(ofAsin({1.5, 2.0}).isNothing());
    EXPECT_TRUE(ofLog({0.0, 1.0}).partial);
}

TEST(Interval, OverflowIsABoundAtInfinity)
{
    const Interval large = Interval(1e300) * Interval(1e300);
    EXPECT_EQ(large.hi, mf::engine::kUnbounded);
    EXPECT_EQ(large.lo, std::numeric_limits<double>::max());
    EXPECT_FALSE(large.isFinite());
}

}  // namespace
