// SPDX-License-Identifier: MIT

#include "mfcurves/version.h"

#define MFCURVES_TEXT_OF(major, minor, patch) #major "." #minor "." #patch
#define MFCURVES_TEXT(major, minor, patch) MFCURVES_TEXT_OF(major, minor, patch)

const char* mf::version()
{
    return MFCURVES_TEXT(MFCURVES_VERSION_MAJOR, MFCURVES_VERSION_MINOR, MFCURVES_VERSION_PATCH);
}
