// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/motion/mfEnumerations.h"

namespace mf {

// How many derivatives a motor curve has. The highest is the third derivative of the
// displacement, so a velocity has two and an acceleration one.
inline int motorDerivatives(MotorDriveType_e quantity)
{
    switch (quantity) {
        case MotorDriveType_Displacment:
            return 3;
        case MotorDriveType_Velocity:
            return 2;
        case MotorDriveType_Acceleration:
            return 1;
        default:
            return 0;
    }
}

// How many derivative arrays a curve is plotted with: none for an object that is
// neither a motor (0) nor a force or torque (1).
inline int plottedDerivatives(int motionObjectType, MotorDriveType_e quantity)
{
    if (motionObjectType == 0)
        return motorDerivatives(quantity);
    return motionObjectType == 1 ? 1 : 0;
}

}  // namespace mf
