// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/curve/CurveDefinition.h"

namespace mf::curve {

/// A quantity and its values in the enumerations of a motion function.
struct QuantityRecord {
    const char* name;  ///< for a message
    Quantity quantity;
    MotionObjectType_e object;
    MotorDriveType_e motor;      ///< None for a force or torque
    ForceTorqueType_e force;     ///< None for a motor
    MotFuncXYDataType_e linear;  ///< kind of X-Y data
    MotFuncXYDataType_e rotary;  ///< the same of a rotary motor
};

constexpr QuantityRecord kQuantities[] = {
    {"a displacement", Quantity::Displacement, MotionObjectType_Motor, MotorDriveType_Displacment,
     ForceTorqueType_None, MfXY_Disp_LinMotor, MfXY_Disp_RotMotor},
    {"a velocity", Quantity::Velocity, MotionObjectType_Motor, MotorDriveType_Velocity, ForceTorqueType_None,
     MfXY_Vel_LinMotor, MfXY_Vel_RotMotor},
    {"an acceleration", Quantity::Acceleration, MotionObjectType_Motor, MotorDriveType_Acceleration,
     ForceTorqueType_None, MfXY_Acc_LinMotor, MfXY_Acc_RotMotor},
    {"a force", Quantity::Force, MotionObjectType_Force, MotorDriveType_None, ForceTorqueType_Force,
     MfXY_Force, MfXY_Force},
    {"a torque", Quantity::Torque, MotionObjectType_Torque, MotorDriveType_None, ForceTorqueType_Torque,
     MfXY_Torque, MfXY_Torque},
};

inline const QuantityRecord& recordOf(Quantity quantity)
{
    for (const QuantityRecord& record : kQuantities) {
        if (record.quantity == quantity)
            return record;
    }
    return kQuantities[0];
}

inline MotFuncXYDataType_e impliedDataType(Quantity quantity, bool rotary)
{
    const QuantityRecord& record = recordOf(quantity);
    return rotary ? record.rotary : record.linear;
}

/// The name of an object for a message.
inline const char* objectName(MotionObjectType_e object)
{
    switch (object) {
        case MotionObjectType_Force:
            return "force";
        case MotionObjectType_Torque:
            return "torque";
        default:
            return "motor";
    }
}

struct InterpolationRecord {
    Interpolation interpolation;
    DataPointInterpolationType_e type;
};

constexpr InterpolationRecord kInterpolations[] = {
    {Interpolation::Linear, DataPointInterpolationType_Linear},
    {Interpolation::Cubic, DataPointInterpolationType_Cubic},
    {Interpolation::Akima, DataPointInterpolationType_Akima},
};

}  // namespace mf::curve
