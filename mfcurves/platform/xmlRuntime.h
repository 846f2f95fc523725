// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/platform/mfExport.h"

namespace mf::platform {

/// Starts the XML engine for the calling thread and counts the start. Reading and
/// writing a document do this themselves.
MFCURVES_API void startXml();

/// Counts one start of the calling thread less. A host calls it for the starts that
/// mfFunctionData_c::readXMLData left. The engine keeps running, because the whole
/// process shares it.
MFCURVES_API void stopXml();

/// The starts of the calling thread that were not followed by a stop.
MFCURVES_API int xmlStartCount();

}  // namespace mf::platform
