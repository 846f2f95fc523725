// SPDX-License-Identifier: MIT
#pragma once

class IMotionServices_c;
class IMotionStudy_c;
class QelMotionFunctionContext_c;
class mfProfileManager_c;

namespace mf::interfaces {

// What the host's context returns at this moment; null when no context is set. Use
// the results at once and do not keep them: the host may return others at any time.
IMotionServices_c* motionServices();
IMotionStudy_c* motionStudy();
mfProfileManager_c* profileManager();

// While it exists, the calling thread uses `context` in place of the host's, which
// all other threads still use. Objects of one thread must be destroyed in the reverse
// order of their construction.
class HostOfThread {
public:
    explicit HostOfThread(QelMotionFunctionContext_c& context);
    ~HostOfThread();
    HostOfThread(const HostOfThread&) = delete;
    HostOfThread& operator=(const HostOfThread&) = delete;

private:
    QelMotionFunctionContext_c* before_;
};

}  // namespace mf::interfaces
