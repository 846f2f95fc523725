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

}  // namespace mf
