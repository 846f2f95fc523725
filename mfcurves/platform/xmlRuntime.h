#pragma once

#include "mfcurves/platform/mfExport.h"

namespace mf::platform {

/// Starts the XML engine for the calling thread and counts it.
MFCURVES_API void startXml();

/// Takes one start of the calling thread back.
MFCURVES_API void stopXml();

/// How many starts of the calling thread stand against stops.
MFCURVES_API int xmlStartCount();

}  // namespace mf::platform
