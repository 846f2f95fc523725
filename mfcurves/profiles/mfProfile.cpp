// SPDX-License-Identifier: MIT

#include "mfcurves/profiles/mfProfile.h"

mfProfile_c::~mfProfile_c() = default;
