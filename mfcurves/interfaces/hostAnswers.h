#pragma once

class IMotionServices_c;
class IMotionStudy_c;
class mfProfileManager_c;

namespace mf::interfaces {

// What the host's context answers at this moment. No context is like a context
// whose every answer is null. The answers are for use at once and never kept, as
// a host may change them at any time.
IMotionServices_c* motionServices();
IMotionStudy_c* motionStudy();
mfProfileManager_c* profileManager();

}  // namespace mf::interfaces
