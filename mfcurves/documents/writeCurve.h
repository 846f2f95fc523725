// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "mfcurves/interfaces/CString.h"

class mfFunctionData_c;

namespace mf::documents {

/// The document that createXMLData writes, as UTF-8 and of the version that this
/// library reads, whatever version was read last. The XML engine keeps one start
/// more when memory runs out.
std::string documentText(mfFunctionData_c& function, const CString& name);

}  // namespace mf::documents
