// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/platform/mfExport.h"

class IMotionServices_c;
class IMotionStudy_c;
class mfProfileManager_c;

/// What a host gives to the library: its services, its study and the profile manager
/// that it made. Each may be null. The library asks at each use and keeps nothing.
///
/// Threads: where functions are used in several threads, the three operations are called
/// from all of them.
class MFCURVES_API QelMotionFunctionContext_c {
public:
    virtual ~QelMotionFunctionContext_c();
    /// The services; without them there is no spline, no design library and no unit factor.
    virtual IMotionServices_c* getMotionServices() = 0;
    /// The study; without one the cycle angle is not available.
    virtual IMotionStudy_c* getMotionStudy() = 0;
    /// The profile manager; without one rows find no profile by name.
    virtual mfProfileManager_c* getProfileManager() = 0;
};
