// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/curve/Curve.h"

/// Writes definitions as documents, in any thread and independently of the host.
namespace mf::curve {

/// The document of a definition that makes a curve, UTF-8.
std::string documentOf(const CurveDefinition& definition);

/// Warnings about the numbers and texts of a curve that change when its document `xml` is
/// read, and how far that moves the curve. The first twenty numbers are reported one by one.
std::vector<Problem> lossesOf(const Curve& curve, const std::string& xml);

}  // namespace mf::curve
