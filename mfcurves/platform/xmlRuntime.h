// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/platform/mfExport.h"

namespace mf::platform {

/// Starts the XML engine for the calling thread and counts it. Reading and writing a
/// document do that themselves.
MFCURVES_API void startXml();

/// Takes one start of the calling thread back; a host calls it for what
/// mfFunctionData_c::readXMLData left. The engine itself stays up, because it belongs to
/// the whole process.
MFCURVES_API void stopXml();

/// How many starts of the calling thread were not taken back by a stop.
MFCURVES_API int xmlStartCount();

}  // namespace mf::platform
