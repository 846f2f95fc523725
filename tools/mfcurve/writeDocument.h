// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "mfcurves/curve/Curve.h"

namespace mfcurve {

/// Writes a curve as a document to a file or standard output, with a warning about what its digits change.
/// Throws Failure when they move the curve by more than kMostLoss of its span, or the file cannot be written.
void writeDocument(const mf::Curve& curve, const std::string& path);

}  // namespace mfcurve
