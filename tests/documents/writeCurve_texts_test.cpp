// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "tests/locale/comma_locale.h"
#include "writeCurveFixture.h"

// The texts of single elements: words, names and numbers.

namespace mf::test {
namespace {

using testing::HasSubstr;

struct NumberText {
    int number;
    const char* text;
};

TEST_F(WriteCurve, MotionObjectTypes)
{
    for (const auto& [number, text] :
         {NumberText{1, "Motor"}, {2, "Force"}, {3, "Torque"}, {0, "Motor"}, {4, "Motor"}, {-1, "Motor"}}) {
        function.setMotionObjectType(static_cast<MotionObjectType_e>(number));
        EXPECT_EQ(written("MotionObjectType"), text) << number;
    }
}

TEST_F(WriteCurve, DataTypes)
{
    const NumberText cases[] = {
        {0, "MfXY_None"},
        {1, "MfXY_Disp_LinMotor"},
        {2, "MfXY_Vel_LinMotor"},
        {3, "MfXY_Acc_LinMotor"},
        {4, "MfXY_Disp_RotMotor"},
        {5, "MfXY_Vel_RotMotor"},
        {6, "MfXY_Acc_RotMotor"},
        {7, "MfXY_Disp_PathMateMotor"},
        {8, "MfXY_Vel_PathMateMotor"},
        {9, "MfXY_Acc_PathMateMotor"},
        {10, "MfXY_Force"},
        {11, "MfXY_Torque"},
        {12, "MfXY_Misc"},
        {15, "MfXY_Misc"},
        {22, "MfXY_Misc"},
        {23, "MfXY_Misc"},
        {24, "MfXY_Misc"},
        {-1, "MfXY_Misc"},
    };
    for (const auto& [number, text] : cases) {
        function.setXYDataType(static_cast<MotFuncXYDataType_e>(number));
        EXPECT_EQ(written("XYDataType"), text) << number;
    }
}

TEST_F(WriteCurve, UnknownDataTypeTurnsIntoMisc)
{
    for (const char* text : {"MfXY_Misc", "Unknown"}) {
        ASSERT_TRUE(readBuffer(dataPointDocument().set("XYDataType", text)));
        EXPECT_EQ(written("XYDataType"), "MfXY_Misc");
    }
}

TEST_F(WriteCurve, IndependentVariables)
{
    for (const auto& [number, text] : {NumberText{0, ""},
                                       {1, "IndependentVariableType_Time"},
                                       {2, "IndependentVariableType_CycleAngle"},
                                       {3, "Slip"},
                                       {4, ""},
                                       {-1, ""}}) {
        segments().setIndependentVar(static_cast<IndependentVariableType_e>(number));
        segments().setMotionResult(L"Slip");
        points().setIndependentVar(static_cast<IndependentVariableType_e>(number));
        points().setMotionResult(L"Slip");
        function.setFunctionType(FunctionType_Segments);
        EXPECT_EQ(written("IndepVar"), text) << number;
        function.setFunctionType(FunctionType_DataPoints);
        EXPECT_EQ(written("IndepVar"), text) << number;
    }
}

struct DependentText {
    int object;  // motionObjectType
    int motor;
    int force;
    const char* ofSegments;
    const char* ofPoints;
    const char* ofExpression;
};

const DependentText kDependentTexts[] = {
    {0, 1, 0, "MotorDriveType_Displacment", "MotorDriveType_Displacment", "MotorDriveType_Displacment"},
    {0, 2, 0, "MotorDriveType_Velocity", "MotorDriveType_Velocity", "MotorDriveType_Velocity"},
    {0, 3, 0, "MotorDriveType_Acceleration", "MotorDriveType_Acceleration", "MotorDriveType_Acceleration"},
    {0, 0, 0, "MotorDriveType_Displacment", "", ""},
    {0, 4, 0, "MotorDriveType_Displacment", "", ""},
    {0, -1, 0, "MotorDriveType_Displacment", "", ""},
    {1, 0, 1, "ForceTorqueType_Force", "ForceTorqueType_Force", "ForceTorqueType_Force"},
    {1, 0, 2, "ForceTorqueType_Torque", "ForceTorqueType_Torque", "ForceTorqueType_Torque"},
    {1, 0, 0, "", "", ""},
    {1, 0, 3, "", "", ""},
    {7, 0, 2, "ForceTorqueType_Torque", "ForceTorqueType_Torque", "ForceTorqueType_Torque"},
    // Two kinds use motionObjectType, the expression the motor's quantity.
    {0, 0, 2, "MotorDriveType_Displacment", "", "ForceTorqueType_Torque"},
    {0, 2, 2, "MotorDriveType_Velocity", "MotorDriveType_Velocity", "MotorDriveType_Velocity"},
    {1, 2, 2, "ForceTorqueType_Torque", "ForceTorqueType_Torque", "MotorDriveType_Velocity"},
};

TEST_F(WriteCurve, DependentVariables)
{
    for (const DependentText& c : kDependentTexts) {
        const std::string shown =
            std::to_string(c.object) + " " + std::to_string(c.motor) + " " + std::to_string(c.force);
        const auto expect = [&](auto& kind, FunctionType_e type, const char* text) {
            kind.motionObjectType = c.object;
            kind.setMotorDependentVar(static_cast<MotorDriveType_e>(c.motor));
            kind.setForceTorqueDependentVar(static_cast<ForceTorqueType_e>(c.force));
            function.setFunctionType(type);
            EXPECT_EQ(written("DepVar"), text) << shown << " of type " << type;
        };
        expect(segments(), FunctionType_Segments, c.ofSegments);
        expect(points(), FunctionType_DataPoints, c.ofPoints);
        expect(expression(), FunctionType_Expression, c.ofExpression);
    }
}

TEST_F(WriteCurve, Interpolations)
{
    function.setFunctionType(FunctionType_DataPoints);
    for (const auto& [number, text] : {NumberText{0, "DataPointInterpolationType_Linear"},
                                       {1, "DataPointInterpolationType_Cubic"},
                                       {2, "DataPointInterpolationType_Akima"},
                                       {3, ""},
                                       {-1, ""}}) {
        points().setInterpolationType(static_cast<DataPointInterpolationType_e>(number));
        EXPECT_EQ(written("Interpolation"), text) << number;
    }
}

struct NumberForm {
    double number;
    const char* significant;  // of points and expressions
    const char* fixed;        // of segments
};

const NumberForm kNumberForms[] = {
    {0.0, "0", "0.000000"},
    {-0.0, "-0", "-0.000000"},
    {1.0, "1", "1.000000"},
    {0.5, "0.5", "0.500000"},
    {1.0 / 3.0, "0.333333", "0.333333"},
    {123456.0, "123456", "123456.000000"},
    {1234567.0, "1.23457E+06", "1234567.000000"},
    {999999.5, "1E+06", "999999.500000"},
    {0.0001, "0.0001", "0.000100"},
    {0.00001, "1E-05", "0.000010"},
    {0.0000005, "5E-07", "0.000000"},  // just below a half, as a double
    {0.0000006, "6E-07", "0.000001"},
    {1e100, "1E+100",
     "10000000000000000159028911097599180468360808563945281389781327557747838772170381060813469985856815104."
     "000000"},
    {std::numeric_limits<double>::infinity(), "INF", "inf"},
    {-std::numeric_limits<double>::infinity(), "-INF", "-inf"},
};

TEST_F(WriteCurve, Numbers)
{
    addSegment(0.0, 0.0, 0.0, L"");
    mfSegment_c* row = addSegment(0.0, 1.0, 0.0, L"");
    for (const NumberForm& form : kNumberForms) {
        function.setFunctionType(FunctionType_Expression);
        expression().setDomain(form.number, 0.0);
        EXPECT_EQ(written("MinX"), form.significant);

        function.setFunctionType(FunctionType_DataPoints);
        points().ClearFunction();
        addPoint(0.0, form.number);
        EXPECT_EQ(written("y"), form.significant);

        function.setFunctionType(FunctionType_Segments);
        row->setStartX(form.number);
        row->setEndX(form.number);
        row->setValue(form.number);
        EXPECT_THAT(write(),
                    HasSubstr(std::string("<Segment ID=\"2\"><StartX>") + form.fixed + "</StartX><EndX>" +
                              form.fixed + "</EndX><Value>" + form.fixed + "</Value><Profile/></Segment>"));
    }
}

TEST_F(WriteCurve, NumbersHaveAPointUnderACommaLocale)
{
    const locale_test::CommaLocale comma;
    ASSERT_TRUE(comma.holds());
    ASSERT_TRUE(readBuffer(dataPointDocument()));
    const std::string text = write();
    ASSERT_TRUE(readBuffer(text));
    EXPECT_EQ(showPoints(points()), "0.5:2 1:3");
    EXPECT_THAT(text, HasSubstr("<x>0.5</x>"));
}

TEST_F(WriteCurve, NamesKeepAllCharactersThatXmlAllows)
{
    CString name(L"a<b>&\"'\t\u00E4\u4E2D\U0001F600 \x01");
    function.createXMLData(name, false, L"");
    EXPECT_THAT(function.getXMLData(),
                HasSubstr("<FunctionName>a&lt;b&gt;&amp;\"'\t\u00E4\u4E2D\U0001F600 \uFFFD</FunctionName>"));
    // The name in the document is the caller's; that of the function does not change.
    EXPECT_TRUE(function.getName().IsEmpty());
}

}  // namespace
}  // namespace mf::test
