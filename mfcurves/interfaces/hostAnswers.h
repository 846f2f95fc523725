// SPDX-License-Identifier: MIT
#pragma once

class IMotionServices_c;
class IMotionStudy_c;
class QelMotionFunctionContext_c;
class mfProfileManager_c;

namespace mf::interfaces {

// What the host's context answers at this moment. No context is like a context
// whose every answer is null. The answers are for use at once and never kept, as
// a host may change them at any time.
IMotionServices_c* motionServices();
IMotionStudy_c* motionStudy();
mfProfileManager_c* profileManager();

// While it exists, the calling thread asks `context` in place of the host's, which
// stays as it is for all other threads. Objects of one thread end in the reverse order
// of their making.
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
