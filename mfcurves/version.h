// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/platform/mfExport.h"

// The version of these headers; the build reads it from here.
#define MFCURVES_VERSION_MAJOR 0
#define MFCURVES_VERSION_MINOR 2
#define MFCURVES_VERSION_PATCH 0

/// The version as one number that grows with it: 10000 * major + 100 * minor + patch.
#define MFCURVES_VERSION \
    (10000 * MFCURVES_VERSION_MAJOR + 100 * MFCURVES_VERSION_MINOR + MFCURVES_VERSION_PATCH)

namespace mf {

/// The version of the library that the program runs with, such as "0.2.0". It can
/// differ from the macros when a shared library was replaced.
MFCURVES_API const char* version();

}  // namespace mf
