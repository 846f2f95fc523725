#pragma once

/// Marks the classes that a shared build of the library shows to its users.
/// A static build needs no marking.
#if !defined(MFCURVES_SHARED)
#define MFCURVES_API
#elif defined(_WIN32) && defined(MFCURVES_BUILDING)
#define MFCURVES_API __declspec(dllexport)
#elif defined(_WIN32)
#define MFCURVES_API __declspec(dllimport)
#else
#define MFCURVES_API __attribute__((visibility("default")))
#endif
