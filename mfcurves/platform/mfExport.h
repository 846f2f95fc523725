// SPDX-License-Identifier: MIT
#pragma once

/// MFCURVES_API marks what a shared build of the library exports, MFCURVES_LOCAL a
/// member of an exported class that is not exported. In a static build both are
/// empty.
#if !defined(MFCURVES_SHARED)
#define MFCURVES_API
#define MFCURVES_LOCAL
#else
#define MFCURVES_API __attribute__((visibility("default")))
#define MFCURVES_LOCAL __attribute__((visibility("hidden")))
#endif
