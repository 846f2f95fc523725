// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/motion/mfEnumerations.h"

namespace mf {

// How many derivatives belong to a motor curve. Nobody asks for more than the
// third one of a displacement, so a curve that gives a derivative itself has
// fewer of its own.
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

// How many derivative arrays a curve is plotted with. An object that is neither a
// motor (0) nor a force or torque (1) is plotted without.
inline int plottedDerivatives(int motionObjectType, MotorDriveType_e quantity)
{
    if (motionObjectType == 0)
        return motorDerivatives(quantity);
    return motionObjectType == 1 ? 1 : 0;
}

}  // namespace mf
