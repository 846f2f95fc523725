// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "readCurveFixture.h"

// The meaning of X, and the quantity of the curve.

namespace mf::test {
namespace {

struct ResultCase {
    const char* name;
    bool services;
    std::vector<CString> names;
    int count;
    const char* text;
    bool forSegments;
    bool forPoints;
};

void PrintTo(const ResultCase& c, std::ostream* os)
{
    *os << c.name;
}

const ResultCase kResultCases[] = {
    {"Listed", true, {L"Speed", L"Slip"}, 2, "Slip", true, true},
    {"NotListed", true, {L"Speed"}, 1, "Slip", false, false},
    {"OtherCase", true, {L"slip"}, 1, "Slip", false, false},
    {"NoListAtAll", true, {}, 0, "Slip", false, true},
    // Only the count decides whether names are checked against a list.
    {"CountWithoutNames", true, {}, 1, "Slip", false, false},
    {"NamesWithoutCount", true, {L"Speed"}, 0, "Slip", false, true},
    {"NoServices", false, {}, 0, "Slip", false, false},
    {"Empty", true, {L"Speed"}, 1, "", false, false},
    {"EmptyWithoutAList", true, {}, 0, "", false, true},
};

class MotionResult : public ReadCurve, public testing::WithParamInterface<ResultCase> {
protected:
    template <class Kind>
    void expect(const Document& former, Kind& kind, const std::string& before, bool isTaken)
    {
        ASSERT_TRUE(readBuffer(former));
        host.services.motionResultNames = GetParam().names;
        host.services.motionResultCount = GetParam().count;
        host.servicesAnswer = GetParam().services ? &host.services : nullptr;
        Document document = former;
        const documents::ReadOutcome outcome = outcomeOf(document.set("IndepVar", GetParam().text).xml());
        host.servicesAnswer = &host.services;
        EXPECT_EQ(outcome.taken, isTaken);
        EXPECT_EQ(startsLeft(), isTaken ? 0 : 1);
        const std::string after = std::string("over 3 (") + GetParam().text + before.substr(before.find(')'));
        EXPECT_EQ(showVariables(kind), isTaken ? after : before);
        EXPECT_EQ(outcome.reason.empty(), isTaken);
        if (isTaken)
            return;
        EXPECT_EQ(outcome.reason, std::string("\"IndepVar\" is \"") + GetParam().text +
                                      "\", which is none of \"IndependentVariableType_Time\" or "
                                      "\"IndependentVariableType_CycleAngle\", and the host knows no "
                                      "motion result of that name.");
    }
};

TEST_P(MotionResult, SegmentsAcceptAListedOne)
{
    expect(segmentDocument(), segments(), "over 2 () gives 1 0 for 0", GetParam().forSegments);
    EXPECT_EQ(segments().getSegmentCount(), 3);  // not cleared when the read fails
    EXPECT_EQ(function.getFunctionType(), FunctionType_Segments);
}

TEST_P(MotionResult, PointsAcceptAnyWithoutAList)
{
    expect(dataPointDocument(), points(), "over 1 () gives 2 0 for 0", GetParam().forPoints);
    EXPECT_EQ(points().getDataPointsCount(), 2);
    EXPECT_EQ(function.getFunctionType(), FunctionType_DataPoints);
}

INSTANTIATE_TEST_SUITE_P(Names, MotionResult, testing::ValuesIn(kResultCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(ReadCurve, TimeAndCycleAngleForgetAFormerMotionResult)
{
    host.services.motionResultNames = {L"Slip"};
    host.services.motionResultCount = 1;
    for (const char* text : {"IndependentVariableType_Time", "IndependentVariableType_CycleAngle"}) {
        const std::string expected = std::string("over ") + (text[24] == 'T' ? "1" : "2");
        ASSERT_TRUE(readBuffer(segmentDocument().set("IndepVar", "Slip")));
        ASSERT_TRUE(readBuffer(segmentDocument().set("IndepVar", text)));
        EXPECT_EQ(showVariables(segments()), expected + " () gives 1 0 for 0");
        ASSERT_TRUE(readBuffer(dataPointDocument().set("IndepVar", "Slip")));
        ASSERT_TRUE(readBuffer(dataPointDocument().set("IndepVar", text)));
        EXPECT_EQ(showVariables(points()), expected + " () gives 2 0 for 0");
    }
}

struct DependentCase {
    const char* text;
    const char* afterForce;  // "gives m f for o", after a former document of a force
    const char* afterMotor;
};

const DependentCase kDependentCases[] = {
    {"MotorDriveType_Displacment", "gives 1 0 for 0", "gives 1 0 for 0"},
    {"MotorDriveType_Velocity", "gives 2 0 for 0", "gives 2 0 for 0"},
    {"MotorDriveType_Acceleration", "gives 3 0 for 0", "gives 3 0 for 0"},
    {"ForceTorqueType_Force", "gives 0 1 for 1", "gives 0 1 for 1"},
    {"ForceTorqueType_Torque", "gives 0 2 for 1", "gives 0 2 for 1"},
    // The clearing before resets the quantities and keeps motionObjectType.
    {"MotorDriveType_Displacement", "gives 0 0 for 1", "gives 0 0 for 0"},
    {"motordrivetype_velocity", "gives 0 0 for 1", "gives 0 0 for 0"},
    {"", "gives 0 0 for 1", "gives 0 0 for 0"},
};

TEST_F(ReadCurve, DependentVariableIsKnownByItsText)
{
    for (const DependentCase& c : kDependentCases) {
        for (Document document : {segmentDocument(), dataPointDocument(), expressionDocument()}) {
            const auto after = [&](const char* former) {
                EXPECT_TRUE(readBuffer(document.set("DepVar", former)));
                EXPECT_TRUE(readBuffer(document.set("DepVar", c.text)));
                switch (function.getFunctionType()) {
                    case FunctionType_Segments:
                        return showVariables(segments());
                    case FunctionType_DataPoints:
                        return showVariables(points());
                    default:
                        return showVariables(expression());
                }
            };
            EXPECT_THAT(after("ForceTorqueType_Torque"), testing::EndsWith(c.afterForce)) << c.text;
            EXPECT_THAT(after("MotorDriveType_Velocity"), testing::EndsWith(c.afterMotor)) << c.text;
        }
    }
}

TEST_F(ReadCurve, ReadDoesNotChangeTheOtherKindsAndTheText)
{
    char text[] = "text";
    function.setXMLData(text);
    ASSERT_TRUE(readBuffer(dataPointDocument()));
    ASSERT_TRUE(readBuffer(segmentDocument()));
    ASSERT_TRUE(readBuffer(expressionDocument()));
    EXPECT_EQ(showPoints(points()), "0.5:2 1:3");
    EXPECT_EQ(segments().getSegmentCount(), 3);
    EXPECT_STREQ(function.getXMLData(), "text");
}

}  // namespace
}  // namespace mf::test
