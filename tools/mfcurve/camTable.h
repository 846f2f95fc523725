// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "mfcurves/analysis/analysis.h"

namespace mfcurve {

/// The curve as a table whose values are proved to stay within a tolerance. Throws Failure at `place`
/// when that cannot be proved.
mf::analysis::CamTable provedTable(const mf::Curve& curve, mf::analysis::Form form, double tolerance,
                                   const std::string& place);

/// A header "x,y,v,a" and the rows of such a table. The derivative of order k is multiplied by the k-th
/// power of `rate`.
std::string xyvaText(const mf::analysis::CamTable& table, double rate);

/// The table as a text file for the table blocks of the Modelica standard library, named "curve".
std::string modelicaText(const mf::analysis::CamTable& table);

}  // namespace mfcurve
