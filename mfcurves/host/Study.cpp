// SPDX-License-Identifier: MIT

#include "mfcurves/host/Study.h"

namespace mf::host {

bool Study::isCycleAngleAvailable()
{
    return cycleAngleAvailable_;
}

}  // namespace mf::host
