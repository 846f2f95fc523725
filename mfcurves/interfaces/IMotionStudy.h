// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/platform/mfExport.h"

/// The current motion study.
class MFCURVES_API IMotionStudy_c {
public:
    virtual ~IMotionStudy_c();

    /// True when the study allows the cycle angle as an independent variable.
    virtual bool isCycleAngleAvailable() = 0;
};
