// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/host/Services.h"
#include "mfcurves/host/Study.h"
#include "mfcurves/interfaces/QelMotionFunctionContext.h"
#include "mfcurves/platform/mfExport.h"
#include "mfcurves/profiles/mfProfileManager.h"

namespace mf::host {

/// Everything that the library needs from a host, for a program without a host:
///
///     mf::host::Context host;
///     QelSession_c::setMotionFunctionContext(&host);
///
/// The profiles are read at their first use. By then the context must be set in the
/// session, and its design library must be set; no call of rebuildUserProfileMap is
/// needed. A program that changes the library later makes a new context. To find out
/// whether the library could be read, call rebuildUserProfileMap, which reads it again
/// and returns that, or mf::laws, which reports why not.
///
/// Ownership: the context owns its services, study and profile manager. It has to
/// outlive the functions that were made under it. Its destructor removes it from the
/// session.
class MFCURVES_API Context : public QelMotionFunctionContext_c {
public:
    Context();
    ~Context() override;
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    /// The services, for setting them up.
    Services& services() { return services_; }
    /// The study, for setting it up.
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
