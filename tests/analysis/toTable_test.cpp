// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "mfcurves/analysis/analysis.h"
#include "tests/analysis/curves.h"

namespace {

using analysis_test::cam;
using analysis_test::expression;
using analysis_test::points;
using analysis_test::rows;
using mf::Curve;
using mf::analysis::CamTable;
using mf::analysis::Form;
using mf::analysis::Tolerance;
using mf::analysis::toTable;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// The quintic of the basis functions, as a controller joins two rows.
double quintic(const CamTable& t, std::size_t i, double x)
{
    const double h = t.x[i + 1] - t.x[i];
    const double u = (x - t.x[i]) / h;
    const double w = 1.0 - u;
    const auto value = [](double s) { return s * s * s * (10.0 - s * (15.0 - 6.0 * s)); };
    const auto slope = [](double s) { return s * (1.0 - s * s * (6.0 - s * (8.0 - 3.0 * s))); };
    const auto bend = [](double s) { return 0.5 * s * s * (1.0 - s * (3.0 - s * (3.0 - s))); };
    return t.y[i] * value(w) + t.y[i + 1] * value(u) + h * (t.d1[i] * slope(u) - t.d1[i + 1] * slope(w)) +
           h * h * (t.d2[i] * bend(u) + t.d2[i + 1] * bend(w));
}

double joined(const CamTable& t, std::size_t i, double x)
{
    if (t.form == Form::Xyva)
        return quintic(t, i, x);
    return t.y[i] + (t.y[i + 1] - t.y[i]) * ((x - t.x[i]) / (t.x[i + 1] - t.x[i]));
}

double largestError(const Curve& curve, const CamTable& t)
{
    double largest = 0.0;
    if (t.form == Form::Points) {
        const Curve spline = points(t.x, t.y, mf::Interpolation::Cubic);
        for (int i = 0; i <= 50'000; ++i) {
            const double x = curve.firstX() + (curve.lastX() - curve.firstX()) * i / 50'000.0;
            largest = std::max(largest, std::fabs(spline(x) - curve(x)));
        }
        return largest;
    }
    for (std::size_t i = 0; i + 1 < t.x.size(); ++i) {
        for (int k = 1; k < 200 && t.x[i] < t.x[i + 1]; ++k) {
            const double x = t.x[i] + (t.x[i + 1] - t.x[i]) * k / 200.0;
            largest = std::max(largest, std::fabs(joined(t, i, x) - curve(x)));
        }
    }
    return largest;
}

void expectWithin(const Curve& curve, Form form, double tolerance)
{
    const CamTable table = toTable(curve, form, {tolerance});
    EXPECT_TRUE(table.guaranteed);
    EXPECT_LE(table.bound, tolerance);
    constexpr double kRoundingHere = 1e-13;  // of the joined rows as this test computes them
    EXPECT_LE(largestError(curve, table), table.bound + kRoundingHere);
    EXPECT_EQ(table.x.front(), curve.firstX());
    EXPECT_EQ(table.x.back(), curve.lastX());
    EXPECT_TRUE(std::is_sorted(table.x.begin(), table.x.end()));
}

TEST(ToTable, KeepsItsToleranceInEveryForm)
{
    for (const Form form : {Form::Linear, Form::Points, Form::Xyva}) {
        for (const double tolerance : {1e-2, 1e-4}) {
            expectWithin(cam(), form, tolerance);
            expectWithin(expression("10*sin(2*x)+exp(-x)", 0.0, 5.0), form, tolerance);
            expectWithin(points({0.0, 1.0, 1.5, 4.0}, {0.0, 3.0, -1.0, 2.0}, mf::Interpolation::Cubic), form,
                         tolerance);
        }
    }
}

struct CertifiedTable {
    Form form;
    double tolerance, from, to;
    std::string formula;
    double low, high;  // of the largest distance between table and formula
    std::vector<double> x;
};

// From table_bounds.txt, which make_table_bounds.py writes.
std::vector<CertifiedTable> certifiedTables()
{
    std::ifstream file(ANALYSIS_TEST_DATA "/table_bounds.txt");
    std::vector<CertifiedTable> tables;
    std::string form;
    CertifiedTable t;
    while (file >> form >> t.tolerance >> t.from >> t.to >> t.formula >> t.low >> t.high) {
        t.form = form == "linear" ? Form::Linear : form == "points" ? Form::Points : Form::Xyva;
        std::string line;
        std::getline(file >> std::ws, line);
        std::istringstream numbers(line);
        t.x.assign(std::istream_iterator<double>(numbers), {});
        tables.push_back(t);
    }
    return tables;
}

TEST(ToTable, BoundsADistanceThatSollyaCertifies)
{
    constexpr double kOtherRounding = 1e-6;  // other libraries' sin and exp move the rows
    const std::vector<CertifiedTable> certified = certifiedTables();
    ASSERT_EQ(certified.size(), 8u);
    for (const CertifiedTable& expected : certified) {
        SCOPED_TRACE(expected.formula + ", tolerance " + std::to_string(expected.tolerance));
        const CamTable table = toTable(expression(expected.formula, expected.from, expected.to),
                                       expected.form, {expected.tolerance});
        EXPECT_THAT(table.x, testing::Pointwise(testing::DoubleNear(kOtherRounding), expected.x));
        EXPECT_TRUE(table.guaranteed);
        EXPECT_GE(table.bound, expected.low * (1.0 - kOtherRounding));
        EXPECT_LE(expected.high, expected.tolerance);
        EXPECT_LE(table.bound, expected.tolerance);
    }
}

// A cam of four rows, 25 high, with laws that are not quintics.
Curve otherCam()
{
    return rows({{90.0, 25.0, "Modified-Sine"},
                 {150.0, 25.0, "Linear"},
                 {240.0, 0.0, "True-Cycloidal"},
                 {360.0, 0.0, "Linear"}});
}

TEST(ToTable, NeedsFewRowsOfQuintics)
{
    expectWithin(otherCam(), Form::Xyva, 1e-6);
    EXPECT_LE(toTable(cam(), Form::Xyva, {2.5e-5}).x.size(), 16u);
    EXPECT_LE(toTable(cam(), Form::Xyva, {1e-6}).x.size(), 20u);
}

TEST(ToTable, OfQuinticsIsExactForALawOfDegree5)
{
    const CamTable table = toTable(rows({{1.0, 1.0, "3-4-5-Polynomial"}}), Form::Xyva, {1e-9});
    EXPECT_EQ(table.x, (std::vector<double>{0.0, 1.0}));
    EXPECT_LE(table.bound, 1e-14);
    EXPECT_TRUE(table.guaranteed);
}

TEST(ToTable, KeepsTolerancesOfDerivatives)
{
    const Curve curve = expression("sin(x)", 0.0, 6.0);
    const CamTable table = toTable(curve, Form::Xyva, {1e-3, 1e-5, 1e-4});
    EXPECT_TRUE(table.guaranteed);
    EXPECT_LE(table.boundD1, 1e-5);
    EXPECT_LE(table.boundD2, 1e-4);
    EXPECT_GT(table.x.size(), toTable(curve, Form::Xyva, {1e-3}).x.size());
}

TEST(ToTable, DoublesARowWhereTheCurveJumps)
{
    const CamTable value = toTable(expression("if(x-1: x, x, x+1)", 0.0, 2.0), Form::Linear, {1e-3});
    EXPECT_EQ(value.x, (std::vector<double>{0.0, 1.0, 1.0, 2.0}));
    EXPECT_EQ(value.y, (std::vector<double>{0.0, 1.0, 2.0, 3.0}));
    const CamTable velocity = toTable(rows({{1.0, 1.0, "Linear"}, {3.0, 0.0, "Linear"}}), Form::Xyva, {1e-3});
    EXPECT_EQ(velocity.x, (std::vector<double>{0.0, 1.0, 1.0, 3.0}));
    EXPECT_EQ(velocity.d1, (std::vector<double>{1.0, 1.0, -0.5, -0.5}));
}

TEST(ToTable, OfOnePointIsOneRow)
{
    const CamTable table = toTable(points({2.0}, {5.0}, mf::Interpolation::Linear), Form::Xyva, {1e-3});
    EXPECT_EQ(table.x, (std::vector<double>{2.0}));
    EXPECT_EQ(table.y, (std::vector<double>{5.0}));
    EXPECT_EQ(table.d2.size(), 1u);
}

TEST(ToTable, DoesNotPromiseWhatItCannotProve)
{
    EXPECT_FALSE(toTable(expression("tan(x)", 1.0, 2.0), Form::Linear, {1e-3}).guaranteed);
    EXPECT_FALSE(toTable(expression("if(x-1: 0, 0, 1)", 0.0, 2.0), Form::Points, {1e-3}).guaranteed);
}

// Below 0 the angle is -3/4 pi and above it pi/4; at 0 it is 0.
TEST(ToTable, DoesNotPromiseAnAngleAtTheOrigin)
{
    EXPECT_FALSE(toTable(expression("atan2(x,x)", -1.0, 2.0), Form::Linear, {1e-3}).guaranteed);
    EXPECT_TRUE(toTable(expression("atan2(x,1)", -1.0, 2.0), Form::Linear, {1e-3}).guaranteed);
}

// A natural spline needs a distance h with h^4/384 times the fourth derivative below the tolerance: here
// 0.0028. Halving stops at most a factor of two below it, and next to the ends a little further.
TEST(ToTable, ProvesPointsOfManyTurns)
{
    const CamTable table = toTable(expression("1e6*sin(50*x)", 0.0, 4.0), Form::Points, {1.0});
    EXPECT_TRUE(table.guaranteed);
    EXPECT_GT(table.x.size(), 4.0 / 0.0028);
    EXPECT_LT(table.x.size(), 5000u);
}

// Straight lines depend on the values alone, not on derivatives, whose rounding errors are larger than a
// part of the tolerance here.
TEST(ToTable, ProvesStraightLinesOfManyTurns)
{
    const CamTable table = toTable(expression("1e6*sin(50*x)", 0.0, 4.0), Form::Linear, {1.0});
    EXPECT_TRUE(table.guaranteed);
    EXPECT_LE(table.bound, 1.0);
}

TEST(ToTable, OfPointsWithoutAProofHasFewRows)
{
    for (const char* text : {"sin(1/x)", "1/x", "atan2(x,x^3)+tan(x)", "mod(x,0.001)"}) {
        const CamTable table = toTable(expression(text, -1.0, 1.0), Form::Points, {1e-4});
        EXPECT_FALSE(table.guaranteed) << text;
        EXPECT_GT(table.x.size(), 500u) << text;
        EXPECT_LT(table.x.size(), 5000u) << text;
        EXPECT_EQ(table.x.back(), 1.0) << text;
    }
}

// Rounding moves a value of 1e6 by 1e-10, and that the second derivative of a row of length h by 6e-10/h^2.
TEST(ToTable, CountsTheRoundingOfTheRowsInDerivatives)
{
    const auto isProved = [](const char* text, double d1, double d2) {
        return toTable(expression(text, 0.0, 1.0), Form::Xyva, {1e-3, d1, d2}).guaranteed;
    };
    EXPECT_FALSE(isProved("1e6+sin(50*x)", kInfinity, 1e-6));
    EXPECT_FALSE(isProved("1e6+sin(50*x)", 1e-9, kInfinity));
    EXPECT_FALSE(isProved("sin(50*x)", kInfinity, 1e-9));
    EXPECT_TRUE(isProved("sin(50*x)", 1e-6, 1e-3));
}

// The quintic of a row in powers of u from 0 to 1, in more digits than the rows have.
struct QuinticSlopes {
    long double d1;
    long double d2;
};

QuinticSlopes quinticSlopes(const CamTable& t, std::size_t i, long double u)
{
    const long double h = static_cast<long double>(t.x[i + 1]) - t.x[i];
    const long double c1 = h * t.d1[i];
    const long double c2 = h * h * t.d2[i] / 2;
    const long double rise = static_cast<long double>(t.y[i + 1]) - t.y[i] - c1 - c2;
    const long double slope = h * t.d1[i + 1] - c1 - 2 * c2;
    const long double bend = h * h * t.d2[i + 1] - 2 * c2;
    const long double c3 = 10 * rise - 4 * slope + bend / 2;
    const long double c4 = -15 * rise + 7 * slope - bend;
    const long double c5 = 6 * rise - 3 * slope + bend / 2;
    return {(c1 + u * (2 * c2 + u * (3 * c3 + u * (4 * c4 + u * 5 * c5)))) / h,
            (2 * c2 + u * (6 * c3 + u * (12 * c4 + u * 20 * c5))) / h / h};
}

void expectDerivativesWithin(const Curve& curve, const CamTable& table)
{
    for (std::size_t i = 0; i + 1 < table.x.size(); ++i) {
        const double from = table.x[i];
        const long double h = static_cast<long double>(table.x[i + 1]) - from;
        for (int k = 1; k < 10; ++k) {
            const double x = from + (table.x[i + 1] - from) * k / 10.0;
            const QuinticSlopes slopes = quinticSlopes(table, i, (static_cast<long double>(x) - from) / h);
            ASSERT_LE(std::fabs(slopes.d1 - curve(x, 1)), table.boundD1) << x;
            ASSERT_LE(std::fabs(slopes.d2 - curve(x, 2)), table.boundD2) << x;
        }
    }
}

TEST(ToTable, BoundsTheDerivativesOfItsQuintics)
{
    const Tolerance tolerances[] = {
        {1e-3, kInfinity, 1e-6}, {1e-3, 1e-9, kInfinity}, {1e-6, 1e-3, 1e-1}, {1e-13, kInfinity, kInfinity}};
    for (const char* text : {"1e6+sin(50*x)", "sin(50*x)", "exp(x)*sin(x)", "cos(3*x)*1e4"}) {
        SCOPED_TRACE(text);
        const Curve curve = expression(text, 0.0, 1.0);
        for (const Tolerance& tolerance : tolerances)
            expectDerivativesWithin(curve, toTable(curve, Form::Xyva, tolerance));
    }
}

// The second derivative is 1e308, and the square of a row's length underflows.
TEST(ToTable, OfVerySteepCurvesIsWithinItsBound)
{
    const CamTable table = toTable(expression("1e-22*sin(1e165*x)", 0.0, 3e-165), Form::Linear, {1e-25});
    EXPECT_TRUE(table.guaranteed);
    EXPECT_GT(table.x.size(), 25u);
}

TEST(ToTable, ReachesTheEndWhereRowsCannotBeShorter)
{
    for (const Form form : {Form::Linear, Form::Points, Form::Xyva}) {
        const CamTable table = toTable(expression("1/(x-1e15-0.5)", 1e15, 1e15 + 1.0), form, {1e-3});
        EXPECT_FALSE(table.guaranteed);
        EXPECT_EQ(table.x.back(), 1e15 + 1.0);
        EXPECT_LT(table.x.size(), 5000u);
    }
}

// The slope of the root is infinite at 0, and nothing is proved there.
TEST(ToTable, OfAPartWithoutAProofLeavesTheOthersAsTheyAre)
{
    const CamTable alone = toTable(expression("1/((x-0.5)^2+1e-6)", 0.1, 1.0), Form::Linear, {1.0});
    const CamTable both =
        toTable(expression("if(x-0.1: sqrt(x), 0.3, 1/((x-0.5)^2+1e-6))", 0.0, 1.0), Form::Linear, {1.0});
    EXPECT_TRUE(alone.guaranteed);
    EXPECT_FALSE(both.guaranteed);
    EXPECT_GT(both.x.size(), alone.x.size());
}

// There are more kinks than the analysis can find, and hundreds of parts between those that it finds.
TEST(ToTable, OfManyPartsWithoutAProofHasFewRows)
{
    const CamTable table = toTable(expression("mod(310,x)*3", 0.33, 310.0), Form::Xyva, {1e7});
    EXPECT_FALSE(table.guaranteed);
    EXPECT_LT(table.x.size(), 20'000u);
    EXPECT_EQ(table.x.back(), 310.0);
}

// Rows must reach the end, also where nothing is known of the way there.
TEST(ToTable, OfWhatHasNoValueHasFewRows)
{
    const CamTable table = toTable(expression("tan(x)/ln(x)", -1.0, 0.0), Form::Linear, {1e-3});
    EXPECT_FALSE(table.guaranteed);
    EXPECT_LT(table.x.size(), 5000u);
    EXPECT_EQ(table.x.back(), 0.0);
}

TEST(ToTable, RefusesTolerancesWithoutMeaning)
{
    for (const double wrong : {0.0, -1.0, std::nan("")})
        EXPECT_THROW(toTable(cam(), Form::Linear, {wrong}), mf::CurveError);
    EXPECT_THROW(toTable(cam(), Form::Linear, {1e-3, 1e-3}), mf::CurveError);
    EXPECT_THROW(toTable(cam(), Form::Points, {1e-3, kInfinity, 1e-3}), mf::CurveError);
    EXPECT_THROW(toTable(cam(), Form::Xyva, {1e-3, -1.0}), mf::CurveError);
}

// The second derivative is 0 everywhere, but the curve has no value where it divides by 0.
TEST(ToTable, ProvesNothingForACurveWithoutAValue)
{
    for (const char* text : {"x*(8/x)-x*(8/x)", "0/(x-1)"}) {
        EXPECT_FALSE(toTable(expression(text, 0.0, 9.0), Form::Linear, {1e-3}).guaranteed) << text;
        EXPECT_TRUE(toTable(expression(text, 2.0, 9.0), Form::Linear, {1e-3}).guaranteed) << text;
    }
}

// The gap from 0.46 to 0.48 has no value, and a few samples would miss it.
TEST(ToTable, ProvesNothingForAGapWithoutValues)
{
    for (const char* text : {"max(x, sqrt((x-0.47)^2-0.0001)-5)", "if(sqrt((x-0.47)^2-0.0001)+1: 0, 0, x)"}) {
        const Curve curve = expression(text, 0.0, 1.0);
        EXPECT_FALSE(toTable(curve, Form::Linear, {1e-3}).guaranteed) << text;
        EXPECT_FALSE(mf::analysis::summarize(curve)[0].guaranteed) << text;
    }
}

// The jumps of 0.3 are within the tolerance, so that they need no rows of their own.
TEST(ToTable, CountsAJumpWithoutARow)
{
    const Curve curve = expression("mod(x,3)*0.1+300^5", 0.0, 10.0);
    const CamTable table = toTable(curve, Form::Linear, {1e9});
    EXPECT_TRUE(table.guaranteed);
    EXPECT_GE(table.bound, 0.29);
    EXPECT_LE(table.bound, 0.31);
}

// Between the rows, the formula has another value at a single x, or wherever rounding decides.
TEST(ToTable, DoesNotPromiseValuesBesideTheCourse)
{
    for (const Form form : {Form::Linear, Form::Points, Form::Xyva}) {
        for (const char* text : {"if(x^2: 0, 1, 0)", "x+if((x-1)^2: 0, 1, 0)", "ln(0.5+abs(mod(7*x, -x)))",
                                 "if(x^5-1.5*x^4+0.9*x^3-0.27*x^2+0.0405*x-0.00243: 0, 0.5, 1)"})
            EXPECT_FALSE(toTable(expression(text, -1.1, 3.0), form, {1e-3}).guaranteed) << text;
        for (const char* text : {"abs(x^2)", "abs((x-1)^2)+x", "max(x^2, -x^2)"})
            EXPECT_TRUE(toTable(expression(text, -1.1, 3.0), form, {1e-3}).guaranteed) << text;
    }
}

}  // namespace
