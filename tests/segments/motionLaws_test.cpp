// SPDX-License-Identifier: MIT

// Compares rows with the built-in motion laws with the closed forms of these laws, and
// checks tables of them at their seams.

#include <cmath>
#include <gtest/gtest.h>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tests/segments/segmentTables.h"
#include "tests/support/FakeHost.h"

using namespace mf::test;

namespace {

const double kPi = std::acos(-1.0);

// A polynomial in u, constant term first, or one of its derivatives.
double polynomial(std::vector<double> c, double u, int order)
{
    for (int k = 0; k < order; ++k) {
        for (std::size_t i = 0; i + 1 < c.size(); ++i)
            c[i] = c[i + 1] * static_cast<double>(i + 1);
        c.pop_back();
    }
    double sum = 0.0;
    for (std::size_t i = 0; i < c.size(); ++i)
        sum += c[i] * std::pow(u, static_cast<double>(i));
    return sum;
}

// sin(w u) or one of its derivatives; cos is a quarter of a turn ahead.
double sine(double w, double u, int order, double phase = 0.0)
{
    return std::pow(w, order) * std::sin(w * u + phase + order * kPi / 2.0);
}

double cosine(double w, double u, int order)
{
    return sine(w, u, order, kPi / 2.0);
}

double one(int order)
{
    return order == 0 ? 1.0 : 0.0;
}

// A law from (0, 0) to (1, 1) and its derivatives with respect to u.
struct Law {
    const char* name;
    const wchar_t* displayName;
    double (*shape)(double u, int order);
};

void PrintTo(const Law& law, std::ostream* os)
{
    *os << law.name;
}

const Law kLaws[] = {
    {"Cubic", L"Cubic (Default)",
     [](double u, int k) {
         return polynomial({0, 0, 3, -2}, u, k);
     }},
    {"QuarterSine", L"Quarter-Sine (Default)", [](double u, int k) { return sine(kPi / 2.0, u, k); }},
    {"QuarterCosine", L"Quarter-Cosine (Default)",
     [](double u, int k) { return one(k) - cosine(kPi / 2.0, u, k); }},
    {"HalfCosine", L"Half-Cosine (Default)",
     [](double u, int k) { return 0.5 * (one(k) - cosine(kPi, u, k)); }},
    {"Polynomial345", L"3-4-5-Polynomial (Default)",
     [](double u, int k) {
         return polynomial({0, 0, 0, 10, -15, 6}, u, k);
     }},
    {"Polynomial4567", L"4-5-6-7-Polynomial (Default)",
     [](double u, int k) {
         return polynomial({0, 0, 0, 0, 35, -84, 70, -20}, u, k);
     }},
    {"Polynomial56789", L"5-6-7-8-9-Polynomial (Default)",
     [](double u, int k) {
         return polynomial({0, 0, 0, 0, 0, 126, -420, 540, -315, 70}, u, k);
     }},
    // The law of this name is a quarter cosine.
    {"Cycloidal", L"Cycloidal (Default)", [](double u, int k) { return one(k) - cosine(kPi / 2.0, u, k); }},
    {"Quadratic", L"Quadratic (Default)",
     [](double u, int k) {
         return polynomial({0, 0, 1}, u, k);
     }},
    {"Linear", L"Linear (Default)",
     [](double u, int k) {
         return k < 2 ? polynomial({0, 1}, u, k) : 0.0;
     }},
};

// A number as written into the formula: with six decimals.
double sixDecimals(double number)
{
    return std::stod(std::to_string(number));
}

class BuiltInLaw : public testing::TestWithParam<Law> {
protected:
    BuiltInLaw()
    {
        host.managerAnswer = &manager;
        EXPECT_TRUE(manager.rebuildUserProfileMap());
        table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    }

    FakeHost host;
    mfProfileManager_c manager;
    mfFunctionSegments_c table;
};

struct Stroke {
    double x1, y1, x2, y2;
};

const Stroke kStrokes[] = {
    {0.0, 0.0, 1.0, 1.0},        {1.0, 3.0, 2.0, 5.0},
    {0.25, 4.0, 2.75, -1.5},     {-3.0, 0.001, -1.0, -0.001},
    {10.0, 1000.0, 370.0, 25.0}, {1.0 / 3.0, 2.0 / 3.0, std::sqrt(2.0), -std::sqrt(3.0)},
};

TEST_P(BuiltInLaw, GivesTheClosedFormAndItsDerivatives)
{
    for (const Stroke& s : kStrokes) {
        table.clearSegments();
        table.setMotorDependentVar(mf::MotorDriveType_Displacment);
        fill(table, "0:0 0:1");
        rowOf(table, 0).setValue(s.y1);
        rowOf(table, 1).setStartX(s.x1);
        rowOf(table, 1).setEndX(s.x2);
        rowOf(table, 1).setValue(s.y2);
        rowOf(table, 1).setProfileKey(manager.getProfileKeyFromDisplayName(GetParam().displayName));
        table.parseExpression(1);
        table.calculateValue(1);

        const double length = sixDecimals(s.x2) - sixDecimals(s.x1);
        const double stroke = sixDecimals(s.y2) - sixDecimals(s.y1);
        for (int i = 0; i < 100; ++i) {
            const double x = rowOf(table, 1).getPlottingData0()[i].x();
            const double u = (x - sixDecimals(s.x1)) / length;
            double got[4];
            ASSERT_TRUE(table.calculateValue(1, x, got[0], got[1], got[2], got[3], 3));
            for (int order = 0; order <= 3; ++order) {
                const double scale = std::abs(stroke) / std::pow(length, order);
                const double offset = order == 0 ? sixDecimals(s.y1) : 0.0;
                const double expected =
                    offset + stroke * GetParam().shape(u, order) / std::pow(length, order);
                // Sums of terms of up to 10^5 strokes that cancel, in double.
                const double tolerance = 1e-10 * scale + 1e-14 * std::abs(offset);
                EXPECT_NEAR(got[order], expected, tolerance) << "order " << order << " at u = " << u;
                EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[i].y(), got[order]);
            }
        }
    }
}

// A law over no length divides by zero. Such a row has its stored value in its array, and
// evaluates to 0.0 at any X.
TEST_P(BuiltInLaw, OverNoLengthHasNoValue)
{
    fill(table, "0:0=3 2:2=5");
    rowOf(table, 1).setProfileKey(manager.getProfileKeyFromDisplayName(GetParam().displayName));
    table.parseExpression(1);
    table.calculateValue(1);
    EXPECT_EQ(rowOf(table, 1).getPlottingData0()[0].x(), 2.0);
    EXPECT_EQ(rowOf(table, 1).getPlottingData0()[0].y(), 5.0);

    rowOf(table, 1).setPlottingDataCount(100);  // so that derivatives are evaluated
    for (const double x : {1.0, 2.0, 3.0}) {
        double got[4] = {-1.0, -1.0, -1.0, -1.0};
        EXPECT_TRUE(table.calculateValue(1, x, got[0], got[1], got[2], got[3], 3));
        for (int order = 0; order <= 3; ++order) {
            EXPECT_EQ(got[order], 0.0) << "order " << order << " at " << x;
            EXPECT_EQ(table.evaluate(x, order), 0.0) << "order " << order << " at " << x;
        }
    }
}

TEST_P(BuiltInLaw, RunsFromValueToValue)
{
    EXPECT_NEAR(GetParam().shape(0.0, 0), 0.0, 1e-15);
    EXPECT_NEAR(GetParam().shape(1.0, 0), 1.0, 1e-15);
}

INSTANTIATE_TEST_SUITE_P(Segments, BuiltInLaw, testing::ValuesIn(kLaws),
                         [](const auto& tested) { return std::string(tested.param.name); });

// Each row starts at the value of the previous row, so a curve has no step. What remains
// is the rounding of X at the seam to six decimals: half a millionth times a slope of at
// most one stroke per unit of X, from both sides.
TEST(Seams, OfRandomTablesMeetWithinAMillionthOfTheStroke)
{
    FakeHost host;
    mfProfileManager_c manager;
    host.managerAnswer = &manager;
    ASSERT_TRUE(manager.rebuildUserProfileMap());
    std::mt19937 random(4711);
    std::uniform_real_distribution<double> length(2.0, 9.0);
    std::uniform_real_distribution<double> value(-50.0, 50.0);
    std::uniform_int_distribution<std::size_t> law(0, std::size(kLaws) - 1);
    std::uniform_int_distribution<int> rows(3, 12);

    for (int tables = 0; tables < 300; ++tables) {
        mfFunctionSegments_c table;
        table.addSegment(new mfSegment_c(0.0, 0.0, value(random), L""));
        double x = 0.0;
        for (int row = rows(random); row > 0; --row) {
            const double end = x + length(random);
            const double valueAtEnd = value(random);
            addRow(table, manager, x, end, valueAtEnd, kLaws[law(random)].displayName);
            x = end;
        }
        for (int row = 1; row < table.getSegmentCount(); ++row)
            table.parseExpression(row);

        for (int row = 1; row + 1 < table.getSegmentCount(); ++row) {
            const double seam = rowOf(table, row).getEndX();
            ASSERT_EQ(rowOf(table, row + 1).getStartX(), seam);
            const double y0 = rowOf(table, row - 1).getValue();
            const double y1 = rowOf(table, row).getValue();
            const double y2 = rowOf(table, row + 1).getValue();
            const double stroke = std::max(std::abs(y1 - y0), std::abs(y2 - y1));
            double left = 0.0;
            double right = 0.0;
            ASSERT_TRUE(table.calculateValue(row, seam, left));
            ASSERT_TRUE(table.calculateValue(row + 1, seam, right));
            // The rounding of the row's value itself is the same on both sides.
            EXPECT_NEAR(left, right, 1e-6 * stroke + 1e-12) << showAll(table) << " row " << row;
            EXPECT_NEAR(left, y1, 1e-6 * stroke + 0.5e-6) << showAll(table) << " row " << row;
        }
    }
}

}  // namespace
