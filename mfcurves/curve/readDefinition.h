// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "mfcurves/curve/CurveDefinition.h"
#include "mfcurves/curve/Problem.h"

/// Reads documents as definitions, in any thread and independently of the host.
namespace mf::curve {

/// The definition in the file `path`, or in the text of a document. Throws CurveError if it
/// cannot be read; oddities of the document are appended to `warnings`.
CurveDefinition readDefinitionFile(const std::string& path, const ReadSettings& settings,
                                   std::vector<Problem>& warnings);
CurveDefinition readDefinitionText(std::string_view xml, const ReadSettings& settings,
                                   std::vector<Problem>& warnings);

}  // namespace mf::curve
