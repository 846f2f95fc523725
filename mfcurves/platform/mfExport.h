// SPDX-License-Identifier: MIT
#pragma once

/// MFCURVES_API marks what a shared build of the library shows to its users,
/// MFCURVES_LOCAL a member of such a class that stays inside. A static build needs
/// no marking.
#if !defined(MFCURVES_SHARED)
#define MFCURVES_API
#define MFCURVES_LOCAL
#else
#define MFCURVES_API __attribute__((visibility("default")))
#define MFCURVES_LOCAL __attribute__((visibility("hidden")))
#endif
