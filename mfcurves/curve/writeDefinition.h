// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/curve/Curve.h"

/// From definitions to documents, in any thread and apart from the host.
namespace mf::curve {

/// The document of a definition that makes a curve, UTF-8.
std::string documentOf(const CurveDefinition& definition);

/// What reading the document `xml` of a curve gives in place of its numbers and texts, and
/// how far that moves the curve. The first twenty are told one by one.
std::vector<Problem> lossesOf(const Curve& curve, const std::string& xml);

}  // namespace mf::curve
