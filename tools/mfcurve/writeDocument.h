// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "mfcurves/curve/Curve.h"

namespace mfcurve {

/// Writes a curve as a document to a file or standard output. Warns about numbers that change by rounding to
/// the digits of a document. Throws Failure when this moves the curve by more than kMostLoss of its span, or
/// when the file cannot be written.
void writeDocument(const mf::Curve& curve, const std::string& path);

}  // namespace mfcurve
