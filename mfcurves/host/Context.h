// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/host/Services.h"
#include "mfcurves/host/Study.h"
#include "mfcurves/interfaces/QelMotionFunctionContext.h"
#include "mfcurves/platform/mfExport.h"
#include "mfcurves/profiles/mfProfileManager.h"

namespace mf::host {

/// Everything that the library asks of a host, for a program that has none:
///
///     mf::host::Context host;
///     QelSession_c::setMotionFunctionContext(&host);
///
/// The profiles are read when they are asked for first, by which time the context has to
/// be set in the session, with its design library set; no call of rebuildUserProfileMap
/// is needed. A program that changes the library later takes a new context. One that
/// wants to know whether the library could be read calls rebuildUserProfileMap, which
/// reads it once more and says so, or mf::laws, which says why not.
///
/// Ownership: services, study and profile manager belong to the context, which has
/// to outlive the functions that were made under it. When it ends it takes itself
/// out of the session.
class MFCURVES_API Context : public QelMotionFunctionContext_c {
public:
    Context();
    ~Context() override;
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    /// The services, to set them up.
    Services& services() { return services_; }
    /// The study, to set it up.
    Study& study() { return study_; }
    /// The profile manager. Its profiles are read at the first call.
    mfProfileManager_c& profileManager() { return *getProfileManager(); }

    IMotionServices_c* getMotionServices() override;
    IMotionStudy_c* getMotionStudy() override;
    mfProfileManager_c* getProfileManager() override;

private:
    Services services_;
    Study study_;
    mfProfileManager_c profileManager_;
    bool profilesRead_ = false;
};

}  // namespace mf::host
