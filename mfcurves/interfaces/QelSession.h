// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/platform/mfExport.h"

class QelMotionFunctionContext_c;

/// The host session as the library sees it: the one place that holds the host's
/// context.
class MFCURVES_API QelSession_c {
public:
    /// The context that the host set last, null before that. The library asks for it
    /// at each use and keeps no copy.
    static QelMotionFunctionContext_c* QelMotionFunctionContext();

    /// Sets the host's context; null removes it. The host keeps ownership.
    static void setMotionFunctionContext(QelMotionFunctionContext_c* context);
};
