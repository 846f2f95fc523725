// SPDX-License-Identifier: MIT

// The row for an x, and the value and derivatives at one point.

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <vector>

#include "tests/segments/formulaTable.h"

using namespace mf::test;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

class Curve : public FormulaTable {};

struct FindCase {
    const char* name;
    const char* table;
    double x;
    int row;
};

void PrintTo(const FindCase& c, std::ostream* os)
{
    *os << c.x << " in " << c.table;
}

const char* const kFourRows = "0:0 0:1 1:2 2:3";  // the first probe is row 2

const FindCase kFindCases[] = {
    {"InsideARow", kFourRows, 0.5, 1},
    {"InsideTheLastRow", kFourRows, 2.5, 3},
    {"SeamOfTheFirstProbeGoesToTheLaterRow", kFourRows, 1.0, 2},
    {"SeamAfterTheFirstProbeGoesToTheEarlierRow", kFourRows, 2.0, 2},
    {"StartBelongsToRowOne", kFourRows, 0.0, 1},
    {"BeforeTheFirstRow", kFourRows, -1.0, 0},
    {"AfterTheLastRow", kFourRows, 5.0, 3},
    {"EndOfTheLastRow", kFourRows, 3.0, 3},
    {"JustAfterTheLastRow", kFourRows, std::nextafter(3.0, 9.0), 3},
    {"JustBeforeASeam", kFourRows, std::nextafter(1.0, 0.0), 1},
    {"JustAfterASeam", kFourRows, std::nextafter(2.0, 9.0), 3},
    {"MinusInfinity", kFourRows, -kInfinity, 0},
    {"Infinity", kFourRows, kInfinity, 3},
    {"NaNIsInTheFirstProbe", kFourRows, kNaN, 2},
    {"SeamOfRowsOneAndTwoOfFive", "0:0 0:1 1:2 2:3 3:4", 1.0, 2},
    {"SeamOfRowsTwoAndThreeOfFive", "0:0 0:1 1:2 2:3 3:4", 2.0, 2},
    {"SeamOfRowsThreeAndFourOfFive", "0:0 0:1 1:2 2:3 3:4", 3.0, 3},
    {"RowOfNoLengthCanAnswer", "0:0 0:1 1:1 1:2 2:3", 1.0, 2},
    {"RowOfNoLengthIsPassedOver", "0:0 0:1 1:2 2:2 2:3", 2.0, 2},
    {"TwoRowsMeet", "0:1 1:2", 1.0, 0},
    {"StartOfTheFirstOfTwoRows", "0:1 1:2", 0.0, 0},
    {"StartOfTheLastRowAfterAGap", "0:0 0:1 2:3", 2.0, 2},
    {"GapBetweenTwoRows", "0:1 2:3", 1.5, 1},
    {"GapOfThreeRows", "0:0 0:1 2:3", 1.5, 1},
    {"GapOfFourRows", "0:0 0:1 2:3 3:4", 1.5, 1},
    {"GapBeforeTheLastOfFourRows", "0:0 0:1 1:2 3:4", 2.5, 2},
    {"EndOfAReversedLastRow", "0:0 0:1 5:3", 3.0, 1},
    {"StartOfAReversedFirstRowOfTwo", "5:3 9:10", 5.0, 1},
    {"OneRowContains", "0:1", 0.5, 0},
    {"BeforeTheOneRow", "0:1", -1.0, 0},
    {"AfterTheOneRow", "0:1", 2.0, 0},
    {"EmptyTable", "", 1.0, 0},
};

class FindSegment : public testing::TestWithParam<FindCase> {};

TEST_P(FindSegment, ReturnsTheRowOfTheBisection)
{
    mfFunctionSegments_c table;
    fill(table, GetParam().table);
    EXPECT_EQ(table.findSegment(GetParam().x), GetParam().row);
}

INSTANTIATE_TEST_SUITE_P(Segments, FindSegment, testing::ValuesIn(kFindCases),
                         [](const auto& tested) { return tested.param.name; });

// ------------------------------------------------------------ value of a row

TEST_F(Curve, RowUsesItsFormulaHoweverFarOutside)
{
    fill(table, "0:0 1:2");
    giveFormula(1, L"10*x");
    for (const double x : {-5.0, 1.0, 1.5, 2.0, 70.0}) {
        double y = -1.0;
        EXPECT_TRUE(table.calculateValue(1, x, y));
        EXPECT_EQ(y, 10.0 * x);
    }
}

TEST_F(Curve, ReversedRowRefusesWhatLiesBetweenItsEnds)
{
    fill(table, "0:0 5:1");
    giveFormula(1, L"10*x");
    for (const double x : {std::nextafter(1.0, 9.0), 3.0, std::nextafter(5.0, 0.0)}) {
        double y = -1.0;
        EXPECT_FALSE(table.calculateValue(1, x, y));
        EXPECT_EQ(y, -1.0);
    }
    for (const double x : {0.0, 1.0, 5.0, 6.0}) {
        double y = -1.0;
        EXPECT_TRUE(table.calculateValue(1, x, y));
        EXPECT_EQ(y, 10.0 * x);
    }
}

TEST_F(Curve, RowZeroIsZeroWhateverItsFields)
{
    fill(table, "3:4=9 4:5");
    giveFormula(0, L"10*x");
    for (const double x : {-1.0, 3.5, 100.0}) {
        double y = -1.0;
        EXPECT_TRUE(table.calculateValue(0, x, y));
        EXPECT_EQ(y, 0.0);
    }
}

// Only the value of row 0 is always 0.0: if the host gives it a formula and samples it, it
// has that formula's derivatives.
TEST_F(Curve, RowZeroHasTheDerivativesOfItsFormulaOnceSampled)
{
    fill(table, "0:4 4:5");
    giveFormula(0, L"x^4");
    double y = -1.0;
    double d1 = -1.0;
    double d2 = -1.0;
    double d3 = -1.0;
    EXPECT_TRUE(table.calculateValue(0, 2.0, y, d1, d2, d3, 3));
    EXPECT_THAT((std::vector<double>{y, d1, d2, d3}), testing::Each(0.0));

    table.calculateValue(0);
    EXPECT_TRUE(table.calculateValue(0, 2.0, y, d1, d2, d3, 3));
    EXPECT_THAT((std::vector<double>{y, d1, d2, d3}), testing::ElementsAre(0.0, 32.0, 48.0, 48.0));
    EXPECT_EQ(table.evaluate(2.0, 0), 0.0);
    EXPECT_EQ(table.evaluate(2.0, 1), 32.0);
    EXPECT_EQ(table.evaluate(2.0, 3), 48.0);
}

TEST_F(Curve, ReversedRowZeroRefusesToo)
{
    fill(table, "5:1");
    double y = -1.0;
    EXPECT_FALSE(table.calculateValue(0, 3.0, y));
    EXPECT_EQ(y, -1.0);
}

TEST_F(Curve, RowWithoutACompiledFormulaIsRefused)
{
    fill(table, "0:0 0:1 1:2");
    giveFormula(2, L"2*(x");
    for (const int row : {1, 2}) {
        double y = -1.0;
        EXPECT_FALSE(table.calculateValue(row, 0.5, y));
        EXPECT_EQ(y, -1.0);
    }
}

TEST_F(Curve, RowsOutsideTheTableAreRefused)
{
    fill(table, "0:0 0:1");
    for (const int row : {-1, 2, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        double y = -1.0;
        EXPECT_FALSE(table.calculateValue(row, 0.5, y));
        EXPECT_EQ(y, -1.0);
        double d1 = -1.0;
        double d2 = -1.0;
        double d3 = -1.0;
        EXPECT_FALSE(table.calculateValue(row, 0.5, y, d1, d2, d3, 3));
        EXPECT_THAT((std::vector<double>{y, d1, d2, d3}), testing::Each(0.0));
    }
}

TEST_F(Curve, WhereTheFormulaHasNoValueItIsZero)
{
    fill(table, "0:0 0:1");
    giveFormula(1, L"1/(x-1)");
    double y = -1.0;
    EXPECT_TRUE(table.calculateValue(1, 1.0, y));
    EXPECT_EQ(y, 0.0);
    EXPECT_TRUE(table.calculateValue(1, kNaN, y));
    EXPECT_EQ(y, 0.0);
}

// ------------------------------------------------- derivatives at one point

struct OrderCase {
    const char* name;
    int points;
    int order;
    std::vector<double> expected;  // y, d1, d2, d3 of x^4 at 2
};

void PrintTo(const OrderCase& c, std::ostream* os)
{
    *os << "order " << c.order << " with " << c.points << " points";
}

// How many derivatives a row has depends on its number of plotting points.
const OrderCase kOrderCases[] = {
    {"ValueOnly", 100, 0, {16, 0, 0, 0}},
    {"First", 100, 1, {16, 32, 0, 0}},
    {"Second", 100, 2, {16, 32, 48, 0}},
    {"Third", 100, 3, {16, 32, 48, 48}},
    {"OrderAboveThree", 100, 4, {16, 32, 48, 48}},
    {"LargestOrder", 100, std::numeric_limits<int>::max(), {16, 32, 48, 48}},
    {"NegativeOrderIsThree", 100, -1, {16, 32, 48, 48}},
    {"ThreePointsAreEnough", 3, 3, {16, 32, 48, 48}},
    {"TwoPointsHaveTheFirst", 2, 1, {16, 32, 0, 0}},
    {"TwoPointsHaveTheFirstAlone", 2, 3, {16, 32, 0, 0}},
    {"TwoPointsAndNegativeOrder", 2, -1, {16, 32, 0, 0}},
    {"TwoPointsValueOnly", 2, 0, {16, 0, 0, 0}},
    {"OnePointHasNone", 1, 3, {16, 0, 0, 0}},
    {"NoPointsHaveNone", 0, 3, {16, 0, 0, 0}},
    {"FewerPointsHaveNone", -5, 3, {16, 0, 0, 0}},
};

class PointDerivatives : public testing::TestWithParam<OrderCase> {};

TEST_P(PointDerivatives, DependOnTheNumberOfPlottingPoints)
{
    const OrderCase& c = GetParam();
    mfFunctionSegments_c table;
    fill(table, "0:0 0:4");
    rowOf(table, 1).setProfileExpr(L"x^4");
    rowOf(table, 1).setProfileIndepVar(L"x");
    rowOf(table, 1).setPlottingDataCount(c.points);

    double y = -1.0;
    double d1 = -1.0;
    double d2 = -1.0;
    double d3 = -1.0;
    EXPECT_TRUE(table.calculateValue(1, 2.0, y, d1, d2, d3, c.order));

    EXPECT_THAT((std::vector<double>{y, d1, d2, d3}), testing::ElementsAreArray(c.expected));

    // At one point the curve returns the requested order.
    const std::size_t asked = c.order >= 0 && c.order <= 2 ? static_cast<std::size_t>(c.order) : 3;
    EXPECT_EQ(table.evaluate(2.0, c.order), c.expected[asked]);
}

INSTANTIATE_TEST_SUITE_P(Segments, PointDerivatives, testing::ValuesIn(kOrderCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(Curve, DerivativesNeedTheRowToHaveBeenSampled)
{
    fill(table, "0:0 0:4");
    giveFormula(1, L"x^4");
    EXPECT_EQ(table.evaluate(2.0, 1), 0.0);
    table.calculateValue(1);
    EXPECT_EQ(table.evaluate(2.0, 1), 32.0);
}

TEST_F(Curve, RefusedPointHasNoDerivatives)
{
    fill(table, "0:0 5:1");
    giveFormula(1, L"x^4");
    rowOf(table, 1).setPlottingDataCount(100);
    double y = -1.0;
    double d1 = -1.0;
    double d2 = -1.0;
    double d3 = -1.0;
    EXPECT_FALSE(table.calculateValue(1, 3.0, y, d1, d2, d3, 3));
    EXPECT_THAT((std::vector<double>{y, d1, d2, d3}), testing::Each(0.0));
}

// ------------------------------------------------------- the curve at one x

TEST_F(Curve, BeyondTheEndTheLastRowsFormulaContinues)
{
    fill(table, "0:0 0:1 1:2");
    giveFormula(1, L"x");
    giveFormula(2, L"10*x");
    EXPECT_EQ(table.evaluate(7.0, 0), 70.0);
}

TEST_F(Curve, BeforeTheFirstRowItIsZero)
{
    fill(table, "0:0=5 0:1 1:2");
    giveFormula(1, L"x+1");
    giveFormula(2, L"x+1");
    EXPECT_EQ(table.evaluate(-1.0, 0), 0.0);
}

TEST_F(Curve, SeamBelongsToTheRowProbedFirst)
{
    fill(table, "0:0 0:1 1:2 2:3 3:4");
    for (int row = 1; row <= 4; ++row)
        giveFormula(row, (L"10+" + CString(std::to_string(row).c_str())).GetString());
    EXPECT_EQ(table.evaluate(1.0, 0), 12.0);
    EXPECT_EQ(table.evaluate(2.0, 0), 12.0);
    EXPECT_EQ(table.evaluate(3.0, 0), 13.0);
}

TEST_F(Curve, IsZeroWithoutAValue)
{
    EXPECT_EQ(table.evaluate(1.0, 0), 0.0);  // no row
    fill(table, "0:0 0:1 1:2");
    giveFormula(1, L"2*(x");
    giveFormula(2, L"1/(x-2)");
    rowOf(table, 2).setPlottingDataCount(100);
    for (const int order : {0, 1, 2, 3}) {
        EXPECT_EQ(table.evaluate(0.5, order), 0.0);
        EXPECT_EQ(table.evaluate(2.0, order), 0.0);
        EXPECT_EQ(table.evaluate(kNaN, order), 0.0);
    }
}

// A formula without a value may still have a derivative.
TEST_F(Curve, EachOrderFailsOnItsOwn)
{
    fill(table, "0:0 -1:1");
    giveFormula(1, L"log(-1)+x");
    rowOf(table, 1).setPlottingDataCount(100);
    EXPECT_EQ(table.evaluate(0.5, 0), 0.0);
    EXPECT_EQ(table.evaluate(0.5, 1), 1.0);
}

// The curve returns what the row returns for all orders together, for any table and these
// formulas: one that compiles, one that does not, one without a value at 1.
TEST_F(Curve, ReturnsWhatItsRowReturns)
{
    const wchar_t* const formulas[] = {L"x^4", L"2*(x", L"1/(x-1)", L"log(-1)+x^2"};
    for (const char* rows : {"0:0", "0:0 0:2", "0:1 1:2 2:3", "5:1 1:2", "0:0 3:1 4:5", "0:0 0:1 2:1 3:4"}) {
        for (int first = 0; first < 4; ++first) {
            for (const int points : {0, 1, 2, 3, 100}) {
                table.clearSegments();
                fill(table, rows);
                for (int row = 0; row < table.getSegmentCount(); ++row) {
                    giveFormula(row, formulas[(first + row) % 4]);
                    rowOf(table, row).setPlottingDataCount(points);
                }
                for (const double x : {-1.0, 0.0, 0.5, 1.0, 1.5, 2.0, 2.5, 3.5, 9.0}) {
                    for (int order = -2; order <= 5; ++order) {
                        double all[4];
                        table.calculateValue(table.findSegment(x), x, all[0], all[1], all[2], all[3], order);
                        EXPECT_EQ(table.evaluate(x, order), all[order >= 0 && order <= 2 ? order : 3])
                            << rows << ", formulas from " << first << ", " << points << " points, order "
                            << order << " at " << x;
                    }
                }
            }
        }
    }
}

TEST_F(Curve, NewFormulaIsUsedAtOnce)
{
    fill(table, "0:0 0:4");
    giveFormula(1, L"x");
    EXPECT_EQ(table.evaluate(2.0, 0), 2.0);
    giveFormula(1, L"10*x");
    EXPECT_EQ(table.evaluate(2.0, 0), 20.0);
}

}  // namespace
