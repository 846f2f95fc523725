// SPDX-License-Identifier: MIT

#include "mfcurves/motion/mfEnumerations.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <type_traits>

namespace {

// Documents and hosts rely on these numbers.
TEST(Enumerations, HaveTheirNumbers)
{
    EXPECT_EQ(mf::FunctionType_Segments, 1);
    EXPECT_EQ(mf::FunctionType_DataPoints, 2);
    EXPECT_EQ(mf::FunctionType_Expression, 3);

    EXPECT_EQ(mf::MotionObjectType_None, 0);
    EXPECT_EQ(mf::MotionObjectType_Motor, 1);
    EXPECT_EQ(mf::MotionObjectType_Force, 2);
    EXPECT_EQ(mf::MotionObjectType_Torque, 3);

    EXPECT_EQ(mf::MotorDriveType_None, 0);
    EXPECT_EQ(mf::MotorDriveType_Displacment, 1);
    EXPECT_EQ(mf::MotorDriveType_Velocity, 2);
    EXPECT_EQ(mf::MotorDriveType_Acceleration, 3);

    EXPECT_EQ(mf::ForceTorqueType_None, 0);
    EXPECT_EQ(mf::ForceTorqueType_Force, 1);
    EXPECT_EQ(mf::ForceTorqueType_Torque, 2);

    EXPECT_EQ(mf::IndependentVariableType_None, 0);
    EXPECT_EQ(mf::IndependentVariableType_Time, 1);
    EXPECT_EQ(mf::IndependentVariableType_CycleAngle, 2);
    EXPECT_EQ(mf::IndependentVariableType_MotionResult, 3);

    EXPECT_EQ(mf::DataPointInterpolationType_Linear, 0);
    EXPECT_EQ(mf::DataPointInterpolationType_Cubic, 1);
    EXPECT_EQ(mf::DataPointInterpolationType_Akima, 2);

    EXPECT_EQ(mf::MfXY_None, 0);
    EXPECT_EQ(mf::MfXY_Disp_LinMotor, 1);
    EXPECT_EQ(mf::MfXY_Vel_LinMotor, 2);
    EXPECT_EQ(mf::MfXY_Acc_LinMotor, 3);
    EXPECT_EQ(mf::MfXY_Disp_RotMotor, 4);
    EXPECT_EQ(mf::MfXY_Vel_RotMotor, 5);
    EXPECT_EQ(mf::MfXY_Acc_RotMotor, 6);
    EXPECT_EQ(mf::MfXY_Disp_PathMateMotor, 7);
    EXPECT_EQ(mf::MfXY_Vel_PathMateMotor, 8);
    EXPECT_EQ(mf::MfXY_Acc_PathMateMotor, 9);
    EXPECT_EQ(mf::MfXY_Force, 10);
    EXPECT_EQ(mf::MfXY_Torque, 11);
    EXPECT_EQ(mf::MfXY_Misc, 23);
}

template <typename Enumeration>
constexpr bool kIsSigned32Bit = std::is_same_v<std::underlying_type_t<Enumeration>, std::int32_t>;

TEST(Enumerations, AreSignedWith32Bits)
{
    EXPECT_TRUE(kIsSigned32Bit<mf::FunctionType_e>);
    EXPECT_TRUE(kIsSigned32Bit<mf::MotionObjectType_e>);
    EXPECT_TRUE(kIsSigned32Bit<mf::MotorDriveType_e>);
    EXPECT_TRUE(kIsSigned32Bit<mf::ForceTorqueType_e>);
    EXPECT_TRUE(kIsSigned32Bit<mf::IndependentVariableType_e>);
    EXPECT_TRUE(kIsSigned32Bit<mf::DataPointInterpolationType_e>);
    EXPECT_TRUE(kIsSigned32Bit<mf::MotFuncXYDataType_e>);
}

}  // namespace
