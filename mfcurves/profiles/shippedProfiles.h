// SPDX-License-Identifier: MIT
#pragma once

namespace mf::profiles {

/// The text of share/mfcurves/SegmentTypes.txt; the build generates its source from
/// that file.
extern const char* const kShippedDefinitions;

}  // namespace mf::profiles
