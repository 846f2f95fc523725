// SPDX-License-Identifier: MIT

#include "mfcurves/interfaces/hostAnswers.h"

#include "mfcurves/interfaces/QelMotionFunctionContext.h"
#include "mfcurves/interfaces/QelSession.h"

namespace mf::interfaces {
namespace {

thread_local QelMotionFunctionContext_c* contextOfThread = nullptr;

QelMotionFunctionContext_c* currentContext()
{
    return contextOfThread ? contextOfThread : QelSession_c::QelMotionFunctionContext();
}

}  // namespace

HostOfThread::HostOfThread(QelMotionFunctionContext_c& context) : before_(contextOfThread)
{
    contextOfThread = &context;
}

HostOfThread::~HostOfThread()
{
    contextOfThread = before_;
}

IMotionServices_c* motionServices()
{
    QelMotionFunctionContext_c* const context = currentContext();
    return context ? context->getMotionServices() : nullptr;
}

IMotionStudy_c* motionStudy()
{
    QelMotionFunctionContext_c* const context = currentContext();
    return context ? context->getMotionStudy() : nullptr;
}

mfProfileManager_c* profileManager()
{
    QelMotionFunctionContext_c* const context = currentContext();
    return context ? context->getProfileManager() : nullptr;
}

}  // namespace mf::interfaces
