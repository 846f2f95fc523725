// SPDX-License-Identifier: MIT

#include "mfcurves/interfaces/QelSession.h"

#include <atomic>

namespace {

std::atomic<QelMotionFunctionContext_c*> theContext = nullptr;

}  // namespace

QelMotionFunctionContext_c* QelSession_c::QelMotionFunctionContext()
{
    return theContext;
}

void QelSession_c::setMotionFunctionContext(QelMotionFunctionContext_c* context)
{
    theContext = context;
}
