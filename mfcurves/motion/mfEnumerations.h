// SPDX-License-Identifier: MIT
#pragma once

namespace mf {

/// Which kind of function is active. With any other number, no kind is active.
enum FunctionType_e : int {
    FunctionType_Segments = 1,
    FunctionType_DataPoints = 2,
    FunctionType_Expression = 3,
};

/// What a motion function drives.
enum MotionObjectType_e : int {
    MotionObjectType_None = 0,
    MotionObjectType_Motor = 1,
    MotionObjectType_Force = 2,
    MotionObjectType_Torque = 3,
};

/// The quantity that a motor curve gives.
enum MotorDriveType_e : int {
    MotorDriveType_None = 0,
    MotorDriveType_Displacment = 1,  // spelling is exported
    MotorDriveType_Velocity = 2,
    MotorDriveType_Acceleration = 3,
};

/// The quantity that a force or torque curve gives.
enum ForceTorqueType_e : int {
    ForceTorqueType_None = 0,
    ForceTorqueType_Force = 1,
    ForceTorqueType_Torque = 2,
};

/// What X means.
enum IndependentVariableType_e : int {
    IndependentVariableType_None = 0,
    IndependentVariableType_Time = 1,
    IndependentVariableType_CycleAngle = 2,
    IndependentVariableType_MotionResult = 3,
};

/// How a table of data points is joined. A spline numbers the same three kinds
/// in reverse: linear 2, cubic 1, Akima 0.
enum DataPointInterpolationType_e : int {
    DataPointInterpolationType_Linear = 0,
    DataPointInterpolationType_Cubic = 1,
    DataPointInterpolationType_Akima = 2,
};

/// The kind of X-Y data of a function. 12 to 22 have no names.
enum MotFuncXYDataType_e : int {
    MfXY_None = 0,
    MfXY_Disp_LinMotor = 1,
    MfXY_Vel_LinMotor = 2,
    MfXY_Acc_LinMotor = 3,
    MfXY_Disp_RotMotor = 4,
    MfXY_Vel_RotMotor = 5,
    MfXY_Acc_RotMotor = 6,
    MfXY_Disp_PathMateMotor = 7,
    MfXY_Vel_PathMateMotor = 8,
    MfXY_Acc_PathMateMotor = 9,
    MfXY_Force = 10,
    MfXY_Torque = 11,
    MfXY_Misc = 23,
};

}  // namespace mf
