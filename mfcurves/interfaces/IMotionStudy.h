// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/platform/mfExport.h"

/// The motion study at hand.
class MFCURVES_API IMotionStudy_c {
public:
    virtual ~IMotionStudy_c();

    /// True when the cycle angle is a legal independent variable of the study.
    virtual bool isCycleAngleAvailable() = 0;
};
