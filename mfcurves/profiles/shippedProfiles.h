// SPDX-License-Identifier: MIT
#pragma once

namespace mf::profiles {

/// The text of share/mfcurves/SegmentTypes.txt, from which its source is made.
extern const char* const kShippedDefinitions;

}  // namespace mf::profiles
