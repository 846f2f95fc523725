// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/interfaces/IMotionStudy.h"
#include "mfcurves/platform/mfExport.h"

namespace mf::host {

/// The motion study of a program that is its own host. A new one allows the cycle
/// angle as an independent variable.
class MFCURVES_API Study : public IMotionStudy_c {
public:
    /// Sets what isCycleAngleAvailable returns from now on.
    void setCycleAngleAvailable(bool available) { cycleAngleAvailable_ = available; }
    bool isCycleAngleAvailable() override;

private:
    bool cycleAngleAvailable_ = true;
};

}  // namespace mf::host
