#pragma once

#include "mfcurves/interfaces/QelMotionFunctionContext.h"
#include "mfcurves/interfaces/QelSession.h"

class mfProfileManager_c;

namespace mf {

// The profile manager of the host, null when there is none. The host may change
// its answer at any time, so nobody keeps it.
inline mfProfileManager_c* hostProfileManager()
{
    QelMotionFunctionContext_c* context = QelSession_c::QelMotionFunctionContext();
    return context == nullptr ? nullptr : context->getProfileManager();
}

}  // namespace mf
