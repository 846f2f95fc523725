#pragma once

#include "mfcurves/platform/mfExport.h"

class IMotionServices_c;
class IMotionStudy_c;
class mfProfileManager_c;

/// What a host answers to the library: its services, its study and the profile
/// manager that it made. Each may be null.
class MFCURVES_API QelMotionFunctionContext_c {
public:
    virtual ~QelMotionFunctionContext_c();
    virtual IMotionServices_c* getMotionServices() = 0;
    virtual IMotionStudy_c* getMotionStudy() = 0;
    virtual mfProfileManager_c* getProfileManager() = 0;
};
