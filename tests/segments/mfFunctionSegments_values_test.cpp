#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "mfcurves/functions/mfPoint2D.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tests/segments/segmentTables.h"

using namespace mf::test;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr int kForceOrTorque = 1;

// A table whose rows have formulas of x.
class Curve : public testing::Test {
protected:
    void giveFormula(int row, const wchar_t* formula)
    {
        rowOf(table, row).setProfileExpr(formula);
        rowOf(table, row).setProfileIndepVar(L"x");
    }

    mfFunctionSegments_c table;
};

// --------------------------------------------------------------- findSegment

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
    {"SeamBehindTheFirstProbeGoesToTheEarlierRow", kFourRows, 2.0, 2},
    {"StartBelongsToRowOne", kFourRows, 0.0, 1},
    {"BeforeTheFirstRow", kFourRows, -1.0, 0},
    {"BehindTheLastRow", kFourRows, 5.0, 3},
    {"EndOfTheLastRow", kFourRows, 3.0, 3},
    {"JustBehindTheLastRow", kFourRows, std::nextafter(3.0, 9.0), 3},
    {"JustBeforeASeam", kFourRows, std::nextafter(1.0, 0.0), 1},
    {"JustBehindASeam", kFourRows, std::nextafter(2.0, 9.0), 3},
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
    {"StartOfTheLastRowBehindAGap", "0:0 0:1 2:3", 2.0, 2},
    {"GapBetweenTwoRows", "0:1 2:3", 1.5, 1},
    {"GapOfThreeRows", "0:0 0:1 2:3", 1.5, 1},
    {"GapOfFourRows", "0:0 0:1 2:3 3:4", 1.5, 1},
    {"GapBeforeTheLastOfFourRows", "0:0 0:1 1:2 3:4", 2.5, 2},
    {"EndOfAReversedLastRow", "0:0 0:1 5:3", 3.0, 1},
    {"StartOfAReversedFirstRowOfTwo", "5:3 9:10", 5.0, 1},
    {"OneRowContains", "0:1", 0.5, 0},
    {"BeforeTheOneRow", "0:1", -1.0, 0},
    {"BehindTheOneRow", "0:1", 2.0, 0},
    {"EmptyTable", "", 1.0, 0},
};

class FindSegment : public testing::TestWithParam<FindCase> {};

TEST_P(FindSegment, AnswersTheRowOfTheBisection)
{
    mfFunctionSegments_c table;
    fill(table, GetParam().table);
    EXPECT_EQ(table.findSegment(GetParam().x), GetParam().row);
}

INSTANTIATE_TEST_SUITE_P(Segments, FindSegment, testing::ValuesIn(kFindCases),
                         [](const auto& tested) { return tested.param.name; });

// ------------------------------------------------------------ value of a row

TEST_F(Curve, RowAnswersByItsFormulaHoweverFarOutside)
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

TEST_F(Curve, RowZeroIsZeroWhateverItHolds)
{
    fill(table, "3:4=9 4:5");
    giveFormula(0, L"10*x");
    for (const double x : {-1.0, 3.5, 100.0}) {
        double y = -1.0;
        EXPECT_TRUE(table.calculateValue(0, x, y));
        EXPECT_EQ(y, 0.0);
    }
}

// Only its value is nothing: a host that samples row 0 gets the derivatives of the
// formula that it gave it.
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

    // At one point the curve gives the one of them that is asked for.
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

TEST_F(Curve, BeyondTheEndTheLastRowsFormulaGoesOn)
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

TEST_F(Curve, SeamIsAnsweredByTheRowProbedFirst)
{
    fill(table, "0:0 0:1 1:2 2:3 3:4");
    for (int row = 1; row <= 4; ++row)
        giveFormula(row, (L"10+" + CString(std::to_string(row).c_str())).GetString());
    EXPECT_EQ(table.evaluate(1.0, 0), 12.0);
    EXPECT_EQ(table.evaluate(2.0, 0), 12.0);
    EXPECT_EQ(table.evaluate(3.0, 0), 13.0);
}

TEST_F(Curve, IsZeroWhereThereIsNoNumber)
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

// What the row answers when it is asked for everything, whatever the table and the
// formulas: one that compiles, one that does not, one without a value at 1.
TEST_F(Curve, AnswersWhatItsRowAnswers)
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

TEST_F(Curve, NewFormulaAnswersAtOnce)
{
    fill(table, "0:0 0:4");
    giveFormula(1, L"x");
    EXPECT_EQ(table.evaluate(2.0, 0), 2.0);
    giveFormula(1, L"10*x");
    EXPECT_EQ(table.evaluate(2.0, 0), 20.0);
}

// ------------------------------------------------------------------ sampling

TEST_F(Curve, SamplesStandAtEqualDistances)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^2");
    table.calculateValue(1);
    ASSERT_EQ(rowOf(table, 1).getPlottingDataCount(), 100);
    const mfPoint2D_c* points = rowOf(table, 1).getPlottingData0();
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(points[i].x(), i);
        EXPECT_EQ(points[i].y(), i * i);
    }
}

TEST_F(Curve, XOfSamplesGathersRoundingExceptForTheLast)
{
    fill(table, "0:0 0.1:1.1");
    giveFormula(1, L"3*x");
    table.calculateValue(1);
    const mfPoint2D_c* points = rowOf(table, 1).getPlottingData0();

    const double step = (1.1 - 0.1) / 99.0;
    double x = 0.1;
    bool productsDiffer = false;
    for (int i = 0; i < 99; ++i) {
        EXPECT_EQ(points[i].x(), x) << i;
        EXPECT_EQ(points[i].y(), 3.0 * x) << i;
        productsDiffer = productsDiffer || x != 0.1 + i * step;
        x += step;
    }
    EXPECT_TRUE(productsDiffer);  // else this row could not tell the two rules apart
    EXPECT_NE(x, 1.1);
    EXPECT_EQ(points[99].x(), 1.1);
    EXPECT_EQ(points[99].y(), 3.0 * 1.1);
}

TEST_F(Curve, ReversedRowIsSampledBackwards)
{
    fill(table, "0:0 99:0");
    giveFormula(1, L"2*x");
    table.calculateValue(1);
    const mfPoint2D_c* points = rowOf(table, 1).getPlottingData0();
    EXPECT_EQ(points[0].x(), 99.0);
    EXPECT_EQ(points[1].x(), 98.0);
    EXPECT_EQ(points[1].y(), 196.0);
    EXPECT_EQ(points[99].x(), 0.0);
}

TEST_F(Curve, EverySampleIsTheValueAtItsX)
{
    fill(table, "0:0 0.3:2.9");
    giveFormula(1, L"sin(3*x)*exp(-x)+x^5/(1+x)");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    for (int i = 0; i < 100; ++i) {
        const double x = rowOf(table, 1).getPlottingData0()[i].x();
        for (int order = 0; order <= 3; ++order) {
            EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[i].x(), x);
            EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[i].y(), table.evaluate(x, order));
        }
    }
}

TEST_F(Curve, SamplesWithoutAValueAreZeroAndTheOthersAreNot)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"1/(x-5)+log(x-2.5)-log(x-2.5)");  // no value up to 2 and at 5
    table.setMotorDependentVar(mf::MotorDriveType_Acceleration);
    table.calculateValue(1);
    for (int i = 0; i < 100; ++i) {
        const bool defined = i > 2 && i != 5;
        EXPECT_EQ(rowOf(table, 1).getPlottingData0()[i].x(), i);
        EXPECT_EQ(rowOf(table, 1).getPlottingData1()[i].x(), i);
        EXPECT_NEAR(rowOf(table, 1).getPlottingData0()[i].y(), defined ? 1.0 / (i - 5) : 0.0, 1e-14) << i;
        if (i == 5) {
            EXPECT_EQ(rowOf(table, 1).getPlottingData1()[i].y(), 0.0);
        }
    }
}

TEST_F(Curve, PointRowHasItsStoredValueAndNoSlope)
{
    fill(table, "0:0 2:2=7");
    giveFormula(1, L"100*x");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    const mfSegment_c& row = rowOf(table, 1);
    EXPECT_EQ(row.getPlottingDataCount(), 1);
    EXPECT_EQ(row.getPlottingDataLength(), 1);
    EXPECT_EQ(row.getPlottingData0()[0].x(), 2.0);
    EXPECT_EQ(row.getPlottingData0()[0].y(), 7.0);
    for (int order = 1; order <= 3; ++order) {
        EXPECT_EQ(row.getPlottingData(order)[0].x(), 2.0);
        EXPECT_EQ(row.getPlottingData(order)[0].y(), 0.0);
    }
}

// Of two ends that compare equal it is the start.
TEST_F(Curve, PointRowStandsAtItsStart)
{
    fill(table, "0:0 -0.0:0.0=7");
    giveFormula(1, L"x");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    ASSERT_EQ(rowOf(table, 1).getPlottingDataCount(), 1);
    for (int order = 0; order <= 3; ++order)
        EXPECT_TRUE(std::signbit(rowOf(table, 1).getPlottingData(order)[0].x())) << order;
}

TEST_F(Curve, NearestEndsAreAStretch)
{
    fill(table, "0:0 2:2");
    rowOf(table, 1).setEndX(std::nextafter(2.0, 3.0));
    giveFormula(1, L"x");
    table.calculateValue(1);
    EXPECT_EQ(rowOf(table, 1).getPlottingDataCount(), 100);
    EXPECT_EQ(rowOf(table, 1).getPlottingData0()[99].x(), std::nextafter(2.0, 3.0));
}

TEST_F(Curve, NaNEndsAreAStretch)
{
    fill(table, "0:0 nan:nan");
    giveFormula(1, L"x");
    table.calculateValue(1);
    EXPECT_EQ(rowOf(table, 1).getPlottingDataCount(), 100);
    EXPECT_TRUE(std::isnan(rowOf(table, 1).getPlottingData0()[50].x()));
    EXPECT_EQ(rowOf(table, 1).getPlottingData0()[50].y(), 0.0);
}

TEST_F(Curve, RowWithoutACompiledFormulaGetsZeros)
{
    for (const char* rows : {"0:0 1:3=7", "0:0 2:2=7"}) {
        table.clearSegments();
        fill(table, rows);
        giveFormula(1, L"2*(x");
        table.setMotorDependentVar(mf::MotorDriveType_Displacment);
        table.calculateValue(1);
        for (int order = 0; order <= 3; ++order) {
            ASSERT_NE(rowOf(table, 1).getPlottingData(order), nullptr);
            for (int i = 0; i < rowOf(table, 1).getPlottingDataLength(); ++i) {
                EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[i].x(), 0.0);
                EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[i].y(), 0.0);
            }
        }
    }
}

TEST_F(Curve, WholeTableIsSampledWithoutRowZero)
{
    fill(table, "0:1 0:1 1:1=3 1:3");
    for (int row = 0; row <= 3; ++row)
        giveFormula(row, L"x");
    table.calculateValue();
    EXPECT_EQ(rowOf(table, 0).getPlottingData0(), nullptr);
    EXPECT_EQ(rowOf(table, 1).getPlottingData0()[99].y(), 1.0);
    EXPECT_EQ(rowOf(table, 2).getPlottingData0()[0].y(), 3.0);
    EXPECT_EQ(rowOf(table, 3).getPlottingData0()[99].y(), 3.0);
}

TEST_F(Curve, RowZeroIsSampledWhenAsked)
{
    fill(table, "0:99");
    giveFormula(0, L"x");
    table.calculateValue(0);
    EXPECT_EQ(rowOf(table, 0).getPlottingData0()[50].y(), 50.0);
}

TEST_F(Curve, SamplingRowsOutsideTheTableDoesNothing)
{
    table.calculateValue();
    fill(table, "0:0 0:1");
    for (const int row : {-1, 2, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        table.calculateValue(row);
        table.calculateDerivatives(row);
    }
    EXPECT_EQ(rowOf(table, 1).getPlottingData0(), nullptr);
}

// ----------------------------------------------- samples stay until the next

struct LaterCase {
    const char* name;
    void (*change)(mfFunctionSegments_c& table, mfSegment_c& row);
};

void PrintTo(const LaterCase& c, std::ostream* os)
{
    *os << c.name;
}

// What may happen to a row between its sampling and a look at its arrays.
const LaterCase kLaterCases[] = {
    {"Nothing", [](mfFunctionSegments_c&, mfSegment_c&) {}},
    {"OtherFormula", [](mfFunctionSegments_c&, mfSegment_c& row) { row.setProfileExpr(L"7+x"); }},
    {"OtherFormulaInUse",
     [](mfFunctionSegments_c& table, mfSegment_c& row) {
         row.setProfileExpr(L"7+x");
         EXPECT_EQ(table.evaluate(2.0, 0), 9.0);
         EXPECT_EQ(table.evaluate(2.0, 3), 0.0);
     }},
    {"FormulaThatDoesNotCompile",
     [](mfFunctionSegments_c& table, mfSegment_c& row) {
         row.setProfileExpr(L"2*(x");
         EXPECT_EQ(table.evaluate(2.0, 0), 0.0);
     }},
    {"OtherVariable", [](mfFunctionSegments_c&, mfSegment_c& row) { row.setProfileIndepVar(L"t"); }},
    {"OtherEnds",
     [](mfFunctionSegments_c&, mfSegment_c& row) {
         row.setStartX(5.0);
         row.setEndX(7.0);
     }},
    {"NoLength", [](mfFunctionSegments_c&, mfSegment_c& row) { row.setEndX(row.getStartX()); }},
    {"OtherValue", [](mfFunctionSegments_c&, mfSegment_c& row) { row.setValue(-3.0); }},
    {"OtherName", [](mfFunctionSegments_c&, mfSegment_c& row) { row.setProfileName(L"Other"); }},
    {"OtherKey",
     [](mfFunctionSegments_c&, mfSegment_c& row) {
         mfProfileKey_c key;
         key.name = L"Cubic";
         row.setProfileKey(key);
     }},
    {"OtherCount", [](mfFunctionSegments_c&, mfSegment_c& row) { row.setPlottingDataCount(3); }},
    {"OtherQuantity",
     [](mfFunctionSegments_c& table, mfSegment_c&) { table.setMotorDependentVar(mf::MotorDriveType_None); }},
    {"OtherObject", [](mfFunctionSegments_c& table, mfSegment_c&) { table.motionObjectType = 1; }},
    {"Edits",
     [](mfFunctionSegments_c& table, mfSegment_c&) {
         table.modifySegment(1, kEndXColumn, 0.0, 50.0, 0.0, L"");
         table.modifySegment(1, kStartXColumn, 1.0, 0.0, 0.0, L"");
         table.modifySegment(0, kValueColumn, 0.0, 0.0, 9.0, L"");
     }},
    {"OtherPlaceInTheTable",
     [](mfFunctionSegments_c& table, mfSegment_c&) {
         table.insertSegment(0, makeSegment("0:0=1").release());
         table.deleteSegment(3);
     }},
    {"OtherRowSampled", [](mfFunctionSegments_c& table, mfSegment_c&) { table.calculateValue(2); }},
    {"RowCopiedInto",
     [](mfFunctionSegments_c&, mfSegment_c& row) {
         mfSegment_c source(1.0, 2.0, 3.0, L"Other");
         source.setProfileExpr(L"7+x");
         source.setPlottingDataCount(5);
         row.copy(&source);
     }},
};

class SampledEarlier : public Curve, public testing::WithParamInterface<LaterCase> {};

TEST_P(SampledEarlier, KeepsItsSamplesWhateverChanges)
{
    fill(table, "0:0 0:99 99:100");
    giveFormula(1, L"x^4");
    giveFormula(2, L"x");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    mfSegment_c& row = rowOf(table, 1);

    GetParam().change(table, row);

    for (int order = 3; order >= 0; --order)
        ASSERT_NE(row.getPlottingData(order), nullptr) << order;
    for (int i = 0; i < 100; ++i) {
        const double x = i;
        const double expected[] = {x * x * x * x, 4.0 * x * x * x, 12.0 * x * x, 24.0 * x};
        for (int order = 0; order <= 3; ++order) {
            ASSERT_EQ(row.getPlottingData(order)[i].x(), x) << "order " << order;
            ASSERT_EQ(row.getPlottingData(order)[i].y(), expected[order]) << "order " << order << " at " << x;
        }
    }
}

TEST_P(SampledEarlier, KeepsItsArraysWhereTheyAre)
{
    fill(table, "0:0 0:99 99:100");
    giveFormula(1, L"x^4");
    giveFormula(2, L"x");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    mfSegment_c& row = rowOf(table, 1);
    const mfPoint2D_c* const before[] = {row.getPlottingData0(), row.getPlottingData1(),
                                         row.getPlottingData2(), row.getPlottingData3()};

    GetParam().change(table, row);

    const mfPoint2D_c* const after[] = {row.getPlottingData0(), row.getPlottingData1(),
                                        row.getPlottingData2(), row.getPlottingData3()};
    for (int order = 0; order <= 3; ++order) {
        EXPECT_EQ(after[order], before[order]) << order;
        EXPECT_EQ(row.getPlottingData(order), before[order]) << order;
    }
}

INSTANTIATE_TEST_SUITE_P(Segments, SampledEarlier, testing::ValuesIn(kLaterCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(Curve, PointRowKeepsTheValueThatItWasSampledWith)
{
    fill(table, "0:0 2:2=7");
    giveFormula(1, L"100*x");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    mfSegment_c& row = rowOf(table, 1);
    row.setValue(9.0);
    row.setStartX(3.0);
    row.setProfileExpr(L"x");
    for (int order = 3; order >= 0; --order) {
        EXPECT_EQ(row.getPlottingData(order)[0].x(), 2.0) << order;
        EXPECT_EQ(row.getPlottingData(order)[0].y(), order == 0 ? 7.0 : 0.0) << order;
    }
}

TEST_F(Curve, BuildingTheArraysAgainForgetsTheSamples)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^4");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    mfSegment_c& row = rowOf(table, 1);
    row.initializePlottingData(0, mf::MotorDriveType_Acceleration);
    EXPECT_EQ(row.getPlottingData0()[2].x(), 0.0);
    EXPECT_EQ(row.getPlottingData0()[2].y(), 0.0);
    EXPECT_EQ(row.getPlottingData1()[2].y(), 0.0);
    EXPECT_EQ(row.getPlottingData2()[2].y(), 48.0);  // not built again
    EXPECT_EQ(row.getPlottingData3()[2].y(), 48.0);
}

TEST_F(Curve, BuildingAllArraysAgainLeavesNoSampleBehind)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^4");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    mfSegment_c& row = rowOf(table, 1);
    row.initializePlottingData(0, mf::MotorDriveType_Displacment);
    for (int order = 0; order <= 3; ++order) {
        EXPECT_EQ(row.getPlottingData(order)[2].x(), 0.0) << order;
        EXPECT_EQ(row.getPlottingData(order)[2].y(), 0.0) << order;
    }
    table.calculateValue(1);
    row.setPlottingDataCount(0);
    row.initializePlottingData(0, mf::MotorDriveType_Displacment);
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(row.getPlottingData(order), nullptr) << order;
}

TEST_F(Curve, DerivingAgainLeavesTheValues)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^4");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    giveFormula(1, L"10*x^4");
    table.calculateDerivatives(1);
    const double atTwo[] = {16.0, 320.0, 480.0, 480.0};
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[2].y(), atTwo[order]) << order;
}

TEST_F(Curve, DerivativesAreTakenAtTheXOfTheValues)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^4");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    rowOf(table, 1).getPlottingData0()[2] = mfPoint2D_c(-1.0, 5.0);
    table.calculateDerivatives(1);
    const double atMinusOne[] = {5.0, -4.0, 12.0, -24.0};
    for (int order = 0; order <= 3; ++order) {
        EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[2].x(), -1.0) << order;
        EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[2].y(), atMinusOne[order]) << order;
    }
}

// Only one of two such rows may be destroyed, so the copy gives up what it shares
// by becoming the copy of a bare one.
TEST_F(Curve, CopyConstructionSharesTheSamples)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^4");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    const mfSegment_c bare;
    mfSegment_c shared(rowOf(table, 1));
    for (int order = 3; order >= 0; --order) {
        ASSERT_NE(shared.getPlottingData(order), nullptr);
        EXPECT_EQ(shared.getPlottingData(order), rowOf(table, 1).getPlottingData(order)) << order;
    }
    shared = bare;
    EXPECT_EQ(shared.getPlottingData0(), nullptr);
    EXPECT_EQ(rowOf(table, 1).getPlottingData3()[2].y(), 48.0);
}

// A formula that did not compile is tried again, with the name that its variable
// has by then; one that did keeps the name that it had.
TEST_F(Curve, SamplingAgainTriesAFormulaUnderAnotherVariable)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^4");
    rowOf(table, 1).setProfileIndepVar(L"t");
    table.calculateValue(1);
    rowOf(table, 1).setProfileIndepVar(L"x");
    table.calculateValue(1);
    EXPECT_EQ(rowOf(table, 1).getPlottingData0()[2].y(), 16.0);
    rowOf(table, 1).setProfileIndepVar(L"t");
    table.calculateValue(1);
    EXPECT_EQ(rowOf(table, 1).getPlottingData0()[2].y(), 16.0);
}

TEST_F(Curve, SamplesOfAFormulaUnderAnotherVariableStayZero)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^4");
    rowOf(table, 1).setProfileIndepVar(L"t");
    table.calculateValue(1);
    rowOf(table, 1).setProfileIndepVar(L"x");
    EXPECT_EQ(table.evaluate(2.0, 0), 16.0);
    EXPECT_EQ(rowOf(table, 1).getPlottingData0()[2].y(), 0.0);
    EXPECT_EQ(rowOf(table, 1).getPlottingData0()[2].x(), 0.0);
}

TEST_F(Curve, DeepCopyHasNoSamples)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^4");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    mfFunctionSegments_c copied;
    ASSERT_TRUE(copied.Copy(&table));
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(rowOf(copied, 1).getPlottingData(order), nullptr) << order;
    EXPECT_EQ(copied.evaluate(2.0, 3), 48.0);  // but the count, and with it its derivatives
}

// -------------------------------------------------------- derivative arrays

struct FilledCase {
    const char* name;
    int motionObjectType;
    int quantity;
    int built;  // the highest derivative that is built and filled
};

void PrintTo(const FilledCase& c, std::ostream* os)
{
    *os << "object " << c.motionObjectType << ", quantity " << c.quantity;
}

// What is filled depends on the quantity alone, but never goes beyond what is
// built: a force that holds a motor's quantity keeps to its one derivative.
const FilledCase kFilledCases[] = {
    {"Displacement", 0, mf::MotorDriveType_Displacment, 3},
    {"Velocity", 0, mf::MotorDriveType_Velocity, 2},
    {"Acceleration", 0, mf::MotorDriveType_Acceleration, 1},
    {"NoQuantity", 0, mf::MotorDriveType_None, 0},
    {"Force", kForceOrTorque, mf::MotorDriveType_None, 1},
    {"ForceWithDisplacement", kForceOrTorque, mf::MotorDriveType_Displacment, 1},
    {"ForceWithVelocity", kForceOrTorque, mf::MotorDriveType_Velocity, 1},
    {"OtherObject", 2, mf::MotorDriveType_Displacment, 0},
};

class FilledDerivatives : public testing::TestWithParam<FilledCase> {
protected:
    void setKind(int motionObjectType, int quantity)
    {
        table.motionObjectType = motionObjectType;
        table.setMotorDependentVar(static_cast<mf::MotorDriveType_e>(quantity));
    }

    void fillWith(const char* rows)
    {
        fill(table, rows);
        rowOf(table, 1).setProfileExpr(L"x^4");
        rowOf(table, 1).setProfileIndepVar(L"x");
    }

    double slope(int order, int i) { return rowOf(table, 1).getPlottingData(order)[i].y(); }

    mfFunctionSegments_c table;
};

TEST_P(FilledDerivatives, AreThoseThatAreBuilt)
{
    const FilledCase& c = GetParam();
    fillWith("0:0 0:99");
    setKind(c.motionObjectType, c.quantity);
    table.calculateValue(1);
    const double atTwo[] = {16.0, 32.0, 48.0, 48.0};
    for (int order = 0; order <= 3; ++order) {
        ASSERT_EQ(rowOf(table, 1).getPlottingData(order) != nullptr, order <= c.built) << order;
        if (order <= c.built) {
            EXPECT_EQ(slope(order, 2), atTwo[order]);
        }
    }
}

TEST_P(FilledDerivatives, StaleOnesAreLeftAlone)
{
    const FilledCase& c = GetParam();
    fillWith("0:0 0:99");
    setKind(0, mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    rowOf(table, 1).setProfileExpr(L"10*x^4");
    setKind(c.motionObjectType, c.quantity);
    table.calculateValue(1);
    const double atTwo[] = {16.0, 32.0, 48.0, 48.0};
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(slope(order, 2), order <= c.built ? 10.0 * atTwo[order] : atTwo[order]) << order;
}

TEST_P(FilledDerivatives, AFormulaThatNoLongerCompilesClearsThoseThatAreBuilt)
{
    const FilledCase& c = GetParam();
    fillWith("0:0 0:99");
    setKind(0, mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    rowOf(table, 1).setProfileExpr(L"2*(x");
    setKind(c.motionObjectType, c.quantity);
    table.calculateValue(1);
    const double atTwo[] = {16.0, 32.0, 48.0, 48.0};
    for (int order = 0; order <= 3; ++order) {
        EXPECT_EQ(slope(order, 2), order <= c.built ? 0.0 : atTwo[order]) << order;
        EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[2].x(), order <= c.built ? 0.0 : 2.0) << order;
    }
}

// The number of points shrinks under a stale array, and grows above one.
TEST_P(FilledDerivatives, StaleOnesOfAnotherLengthAreLeftAlone)
{
    const FilledCase& c = GetParam();
    fillWith("0:0 2:2=5");
    setKind(0, mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    rowOf(table, 1).setStartX(0.0);
    rowOf(table, 1).setEndX(99.0);
    setKind(c.motionObjectType, c.quantity);
    table.calculateValue(1);
    setKind(0, mf::MotorDriveType_Displacment);
    table.calculateDerivatives(1);
    for (int order = 1; order <= 3; ++order) {
        EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[0].x(), order <= c.built ? 0.0 : 2.0) << order;
    }
}

INSTANTIATE_TEST_SUITE_P(Segments, FilledDerivatives, testing::ValuesIn(kFilledCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(Curve, DerivativesKeepToTheLengthThatWasBuilt)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^2");
    table.setMotorDependentVar(mf::MotorDriveType_Acceleration);
    table.calculateValue(1);
    rowOf(table, 1).setPlottingDataCount(100'000);
    giveFormula(1, L"x^3");
    table.calculateDerivatives(1);
    EXPECT_EQ(rowOf(table, 1).getPlottingData1()[99].y(), 3.0 * 99.0 * 99.0);
}

TEST_F(Curve, DerivativesAreTakenAtAsManyPointsAsPlanned)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^2");
    table.setMotorDependentVar(mf::MotorDriveType_Acceleration);
    table.calculateValue(1);
    giveFormula(1, L"x^3");
    for (const int count : {-1, 0, 2}) {
        rowOf(table, 1).setPlottingDataCount(count);
        table.calculateDerivatives(1);
        EXPECT_EQ(rowOf(table, 1).getPlottingData1()[1].y(), count == 2 ? 3.0 : 2.0);
        EXPECT_EQ(rowOf(table, 1).getPlottingData1()[2].y(), 4.0);
    }
}

// Longer arrays than a row is sampled into, built by the host.
TEST_F(Curve, DerivativesOfManyPoints)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^2");
    mfSegment_c& row = rowOf(table, 1);
    row.setPlottingDataCount(257);
    row.initializePlottingData(0, mf::MotorDriveType_Velocity);
    for (int i = 0; i < 257; ++i)
        row.getPlottingData0()[i] = mfPoint2D_c(i, -1.0);
    table.setMotorDependentVar(mf::MotorDriveType_Velocity);
    table.calculateDerivatives(1);
    for (int i = 0; i < 257; ++i) {
        EXPECT_EQ(row.getPlottingData1()[i].x(), i);
        EXPECT_EQ(row.getPlottingData1()[i].y(), 2.0 * i);
        EXPECT_EQ(row.getPlottingData2()[i].y(), 2.0);
        EXPECT_EQ(row.getPlottingData0()[i].y(), -1.0);
    }
}

TEST_F(Curve, NothingIsDerivedWithoutValues)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^2");
    table.calculateDerivatives(1);
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(rowOf(table, 1).getPlottingData(order), nullptr);
}

TEST_F(Curve, NothingIsDerivedWhereNoPointsWereBuilt)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^2");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    mfSegment_c& row = rowOf(table, 1);
    row.setPlottingDataCount(0);
    row.initializePlottingData(0, mf::MotorDriveType_Displacment);
    for (const int count : {1, 2, 100}) {
        row.setPlottingDataCount(count);
        table.calculateDerivatives(1);
        for (int order = 0; order <= 3; ++order)
            EXPECT_EQ(row.getPlottingData(order), nullptr) << count;
    }
}

// A point row asks whether the curve is a motor; a stretch does not.
TEST_F(Curve, PointRowOfAnUnknownObjectHasItsFirstSlopeCleared)
{
    fill(table, "0:0 2:2=5");
    giveFormula(1, L"x^2");
    table.motionObjectType = kForceOrTorque;
    table.calculateValue(1);
    rowOf(table, 1).getPlottingData1()[0] = mfPoint2D_c(9.0, 9.0);
    table.motionObjectType = 2;
    table.calculateDerivatives(1);
    EXPECT_EQ(rowOf(table, 1).getPlottingData1()[0].x(), 2.0);
    EXPECT_EQ(rowOf(table, 1).getPlottingData1()[0].y(), 0.0);

    rowOf(table, 1).getPlottingData1()[0] = mfPoint2D_c(9.0, 9.0);
    table.motionObjectType = 0;  // a motor without a quantity has no slope to clear
    table.calculateDerivatives(1);
    EXPECT_EQ(rowOf(table, 1).getPlottingData1()[0].x(), 9.0);
}

}  // namespace
