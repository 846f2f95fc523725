// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/platform/mfExport.h"

class QelMotionFunctionContext_c;

/// The host session as the library sees it: the one place where the host's
/// context is asked for.
class MFCURVES_API QelSession_c {
public:
    /// The context that the host handed in last, null before that. The library
    /// asks afresh at each use and keeps no copy.
    static QelMotionFunctionContext_c* QelMotionFunctionContext();

    /// Hands the host's context in; null takes it back. The host keeps ownership.
    static void setMotionFunctionContext(QelMotionFunctionContext_c* context);
};
