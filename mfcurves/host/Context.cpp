// SPDX-License-Identifier: MIT

#include "mfcurves/host/Context.h"

#include "mfcurves/interfaces/QelSession.h"

namespace mf::host {

Context::Context() = default;

Context::~Context()
{
    if (QelSession_c::QelMotionFunctionContext() == this)
        QelSession_c::setMotionFunctionContext(nullptr);
}

IMotionServices_c* Context::getMotionServices()
{
    return &services_;
}

IMotionStudy_c* Context::getMotionStudy()
{
    return &study_;
}

mfProfileManager_c* Context::getProfileManager()
{
    if (!profilesRead_) {
        profilesRead_ = true;
        profileManager_.rebuildUserProfileMap();
    }
    return &profileManager_;
}

}  // namespace mf::host
