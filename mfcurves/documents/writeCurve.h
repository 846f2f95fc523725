// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "mfcurves/interfaces/CString.h"

class mfFunctionData_c;

namespace mf::documents {

/// The document that createXMLData writes, as UTF-8. Its version is the one that this
/// library reads, whatever version was read last. If memory runs out, one start of the
/// XML engine is left.
std::string documentText(mfFunctionData_c& function, const CString& name);

}  // namespace mf::documents
