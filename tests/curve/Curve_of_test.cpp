// SPDX-License-Identifier: MIT

// The curve of a motion function in its current state.

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/host/Context.h"
#include "mfcurves/interfaces/QelSession.h"
#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/profiles/mfSegmentTypeParser.h"
#include "tests/curve/givenCurve.h"
#include "tests/curve/randomCurves.h"
#include "tests/documents/curveFixture.h"
#include "tests/segments/segmentTables.h"

namespace mf::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class CurveOf : public CurveTest {
protected:
    mfSegment_c& addRow(double startX, double endX, double value, const char* law = "Cubic (Default)")
    {
        return mf::test::addRow(segments(), manager, startX, endX, value, law);
    }
    // From (0, 1) by a cubic to (2, 5) and by a line to (3, 4).
    void fill()
    {
        function.setMotionObjectType(MotionObjectType_Motor);
        function.setXYDataType(MfXY_Disp_LinMotor);
        segments().setMotorDependentVar(MotorDriveType_Displacment);
        segments().setIndependentVar(IndependentVariableType_Time);
        addRow(0, 0, 1);
        addRow(0, 2, 5);
        addRow(2, 3, 4, "Linear (Default)");
    }
    const SegmentShape& shapeOf(const Curve& curve)
    {
        return std::get<SegmentShape>(curve.definition().shape);
    }

    // The first problem.
    Problem problem()
    {
        try {
            Curve::of(function);
        } catch (const CurveError& error) {
            return error.problems().front();
        }
        return {};
    }
    std::vector<std::string> warnings()
    {
        std::vector<std::string> messages;
        const Curve curve = Curve::of(function);
        for (const Problem& warning : curve.warnings())
            messages.push_back(warning.message);
        return messages;
    }
};

TEST_F(CurveOf, TableHasItsRows)
{
    fill();
    const Curve curve = Curve::of(function);
    const SegmentShape expected = {0.0, 1.0, {{2.0, 5.0, "Cubic"}, {3.0, 4.0, "Linear"}}, {}, true};
    EXPECT_EQ(shapeOf(curve), expected);
    EXPECT_THAT(curve.warnings(), IsEmpty());
}

// Rows of the table above are not compiled: the function itself gives 0.0 for them.
TEST_F(CurveOf, RowsThatWereNotCompiledAreCompiled)
{
    fill();
    EXPECT_EQ(function.evaluate(1.0, 0), 0.0);
    EXPECT_EQ(Curve::of(function)(1.0), 3.0);
    EXPECT_EQ(Curve::of(function)(1.0, 1), 3.0);
    mfSegment_c* row = nullptr;
    segments().selectSegment(1, row);
    EXPECT_TRUE(row->getProfileExpr().IsEmpty()) << "the function stays as it is";
}

TEST_F(CurveOf, EditedRowsHaveTheirCurrentValues)
{
    fill();
    segments().parseExpression(1);
    segments().parseExpression(2);
    segments().modifySegment(1, 2, 0.0, 0.0, -7.5, L"");
    const Curve curve = Curve::of(function);
    EXPECT_EQ(curve(2.0), -7.5);
    EXPECT_EQ(curve(2.5), (-7.5 + 4.0) / 2.0);
}

TEST_F(CurveOf, FormulaThatIsNotThatOfItsLawIsAnError)
{
    fill();
    mfSegment_c* row = nullptr;
    segments().selectSegment(2, row);
    row->setProfileExpr(L"7*x");
    EXPECT_EQ(problem().place, "row 2");
    EXPECT_EQ(problem().message,
              "its formula is not that of the law \"Linear (Default)\"; parseExpression makes the formula of "
              "the law");
}

// Only the sign of a number may differ: the numbers of a row may be negative.
TEST_F(CurveOf, FormulaWithAnotherSignThanItsLawIsAnError)
{
    fill();
    mfSegment_c* row = nullptr;
    segments().selectSegment(2, row);
    segments().parseExpression(2);
    const std::wstring formula(row->getProfileExpr().View());
    row->setProfileExpr((L"-(" + formula + L")").c_str());
    EXPECT_EQ(problem().place, "row 2");
    row->setProfileExpr((L"-" + formula).c_str());
    EXPECT_EQ(problem().place, "row 2");
    row->setProfileExpr(formula.c_str());
    EXPECT_NO_THROW(Curve::of(function));
}

TEST_F(CurveOf, RowsThatDoNotJoinAreErrors)
{
    fill();
    mfSegment_c* row = nullptr;
    segments().selectSegment(2, row);
    row->setStartX(2.5);
    EXPECT_EQ(problem().place, "row 2");
    EXPECT_EQ(problem().message, "it starts at 2.5, but the previous row ends at 2");
    row->setStartX(std::nextafter(2.0, 3.0));
    EXPECT_EQ(problem().place, "row 2");
}

TEST_F(CurveOf, TableWithoutRowsIsAnError)
{
    EXPECT_EQ(problem().message, "it has no row after the start");
    addRow(0, 0, 1);
    EXPECT_EQ(problem().message, "it has no row after the start");
}

TEST_F(CurveOf, RowWithoutAKeyHasTheDefaultLaw)
{
    fill();
    addRow(3, 4, 0, "");
    EXPECT_EQ(shapeOf(Curve::of(function)).rows[2].profile, "Cubic");
    host.managerAnswer = nullptr;
    EXPECT_EQ(shapeOf(Curve::of(function)).rows[2].profile, "Cubic");
}

TEST_F(CurveOf, LawThatTheHostLacksIsAnError)
{
    fill();
    addRow(3, 4, 0, "Wave (Default)");
    EXPECT_EQ(problem().place, "row 3");
    EXPECT_EQ(problem().message, "the host has no law \"Wave (Default)\"");
}

TEST_F(CurveOf, JumpNeedsNoLaw)
{
    fill();
    addRow(3, 3, 0, "Wave (Default)");
    addRow(3, 4, 0, "Linear (Default)");
    const Curve curve = Curve::of(function);
    EXPECT_EQ(curve.at(3.0, Side::Left).y, 4.0);
    EXPECT_EQ(curve.at(3.0, Side::Right).y, 0.0);
}

TEST_F(CurveOf, LawsOfTheHostTravel)
{
    ASSERT_TRUE(
        readBuffer(segmentDocument()
                       .set("Segments", segment(" ", " ", "1", "Mine") + segment("0", "2", "5", "Mine"))
                       .set("ProfileDefinitions", definition("Mine", lineTimes("2", "Mine")))));
    const Curve curve = Curve::of(function);
    ASSERT_EQ(shapeOf(curve).laws.size(), 1u);
    EXPECT_EQ(shapeOf(curve).laws[0].name, "Mine (Assembly)");
    EXPECT_EQ(shapeOf(curve).laws[0].text, lineTimes("2", "Mine"));
    EXPECT_EQ(shapeOf(curve).rows[0].profile, "Mine (Assembly)");
    EXPECT_EQ(curve(1.0), function.evaluate(1.0, 0));
    EXPECT_EQ(curve.toXml(), write("segments"));
}

TEST_F(CurveOf, TwoLawsOfOneNameStayTwo)
{
    fill();
    const auto record = [](const char* factor) {
        auto made = std::make_unique<mfProfile_c>();
        std::string text = lineTimes(factor, "Twin");
        mfSegmentTypeParser_c().parseDefinition(text, made.get(), true);
        return made;
    };
    const auto twice = record("2");
    const auto thrice = record("3");
    for (const auto& [row, law] : {std::pair(1, twice.get()), std::pair(2, thrice.get())}) {
        mfSegment_c* segment = nullptr;
        segments().selectSegment(row, segment);
        mfProfileKey_c key;
        key.name = L"Twin";
        segment->setProfileKey(key);
        segment->setProfile(law);
    }
    const Curve curve = Curve::of(function);
    EXPECT_EQ(shapeOf(curve).rows[0].profile, "Twin");
    EXPECT_EQ(shapeOf(curve).rows[1].profile, "Twin<1>");
    EXPECT_EQ(curve(1.0), 1.0 + 2.0 * 2.0);
    EXPECT_EQ(curve(2.5), 5.0 - 3.0 * 0.5);
    EXPECT_EQ(Curve::parse(curve.toXml()), curve);
}

TEST_F(CurveOf, PointsAndExpressionsAreTaken)
{
    function.setFunctionType(FunctionType_DataPoints);
    points().setInterpolationType(DataPointInterpolationType_Akima);
    points().setIndependentVar(IndependentVariableType_CycleAngle);
    points().setForceTorqueDependentVar(ForceTorqueType_Force);
    points().appendDataPoint(new mfDataPoints_c(new mfPoint2D_c(1, 2)));
    points().appendDataPoint(new mfDataPoints_c(new mfPoint2D_c(3, 1)));
    const Curve throughPoints = Curve::of(function);
    EXPECT_EQ(std::get<PointShape>(throughPoints.definition().shape),
              (PointShape{{1, 3}, {2, 1}, Interpolation::Akima}));
    EXPECT_EQ(throughPoints.definition().over, Over::CycleAngle);
    EXPECT_EQ(throughPoints.definition().quantity, Quantity::Force)
        << "the quantity that is set counts, although motionObjectType was left alone";

    function.setFunctionType(FunctionType_Expression);
    expression().setMathExpression(L"3*{Slip}^2");
    expression().setIndepVar(L"Slip");
    expression().setDomain(-1, 1);
    expression().setMotorDependentVar(MotorDriveType_Velocity);
    host.services.unitFactor = 1000.0;
    const Curve formula = Curve::of(function);
    EXPECT_EQ(formula.definition().motionResult, "Slip");
    EXPECT_EQ(formula(2.0), 12.0) << "the unit factor counts as 1";
}

TEST_F(CurveOf, MissingQuantityAndVariableAreWarnings)
{
    function.setFunctionType(FunctionType_DataPoints);
    points().appendDataPoint(new mfDataPoints_c(new mfPoint2D_c(1, 2)));
    EXPECT_THAT(warnings(),
                ElementsAre("it does not say which quantity it gives; it counts as a displacement",
                            "it does not say what x is; it counts as time"));
}

TEST_F(CurveOf, FunctionOfNoKindIsAnError)
{
    function.setFunctionType(static_cast<FunctionType_e>(9));
    EXPECT_EQ(problem().message,
              "the function type is 9, which is neither segments nor data points nor an expression");
    mfFunctionData_c bare;
    try {
        Curve::of(bare);
        FAIL();
    } catch (const CurveError& error) {
        EXPECT_EQ(error.problems().front().message, "the motion function was not initialised");
    }
}

TEST(CurveOfAHost, AnyFunctionHasItsBits)
{
    host::Context context;
    QelSession_c::setMotionFunctionContext(&context);
    curve_test::RandomCurves random(5);
    for (int i = 0; i < 500; ++i) {
        SCOPED_TRACE(i);
        const CurveDefinition definition = random.any();
        curve_test::GivenCurve given(definition);
        const Curve curve = Curve::of(given.function());
        const std::vector<double> seams = curve_test::seamsOf(definition);
        for (int place = 0; place < 8; ++place) {
            const double x = random.uniform(seams.front(), seams.back());
            if (std::find(seams.begin(), seams.end(), x) != seams.end())
                continue;
            for (int order = 0; order <= 3; ++order) {
                const double value = curve(x, order);
                ASSERT_EQ(std::isnan(value) ? 0.0 : value, given.evaluate(x, order)) << x << ' ' << order;
            }
        }
        ASSERT_EQ(Curve(curve.definition()), curve);
    }
}

}  // namespace
}  // namespace mf::test
