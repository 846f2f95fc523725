// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "mfcurves/curve/laws.h"

namespace mfcurve {

/// The check that a law leads from (0, 0) to (1, 1) without a jump, with finite derivatives at its ends.
struct LawCheck {
    bool isSound;
    std::string text;  ///< the finding
};

LawCheck checkLaw(const mf::Law& law);

/// How a law begins and ends: "from rest with an acceleration to a velocity". Throws CurveError when it does
/// not compile.
std::string motionOf(const mf::Law& law);

}  // namespace mfcurve
