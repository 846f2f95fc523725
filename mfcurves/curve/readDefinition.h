// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "mfcurves/curve/CurveDefinition.h"
#include "mfcurves/curve/Problem.h"

/// From documents to definitions, in any thread and apart from the host.
namespace mf::curve {

/// The definition in the file `path`, or in the text of a document. Throws CurveError when
/// there is none; what the document says oddly is appended to `warnings`.
CurveDefinition readDefinitionFile(const std::string& path, const ReadSettings& settings,
                                   std::vector<Problem>& warnings);
CurveDefinition readDefinitionText(std::string_view xml, const ReadSettings& settings,
                                   std::vector<Problem>& warnings);

}  // namespace mf::curve
