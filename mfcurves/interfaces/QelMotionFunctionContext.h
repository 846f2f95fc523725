// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/platform/mfExport.h"

class IMotionServices_c;
class IMotionStudy_c;
class mfProfileManager_c;

/// What a host gives to the library: its services, its study and its profile manager.
/// Each may be null. The library asks for them at each use and keeps no pointer.
///
/// Threads: when functions are used in several threads, each of those threads calls the
/// three operations.
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
