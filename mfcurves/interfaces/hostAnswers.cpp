#include "mfcurves/interfaces/hostAnswers.h"

#include "mfcurves/interfaces/QelMotionFunctionContext.h"
#include "mfcurves/interfaces/QelSession.h"

namespace mf::interfaces {

IMotionServices_c* motionServices()
{
    QelMotionFunctionContext_c* const context = QelSession_c::QelMotionFunctionContext();
    return context == nullptr ? nullptr : context->getMotionServices();
}

IMotionStudy_c* motionStudy()
{
    QelMotionFunctionContext_c* const context = QelSession_c::QelMotionFunctionContext();
    return context == nullptr ? nullptr : context->getMotionStudy();
}

mfProfileManager_c* profileManager()
{
    QelMotionFunctionContext_c* const context = QelSession_c::QelMotionFunctionContext();
    return context == nullptr ? nullptr : context->getProfileManager();
}

}  // namespace mf::interfaces
