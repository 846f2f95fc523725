// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "mfcurves/analysis/analysis.h"

namespace mfcurve {

/// The curve as a table that provably keeps a tolerance of the value. Throws Failure at `place` when there is
/// no proof.
mf::analysis::CamTable provedTable(const mf::Curve& curve, mf::analysis::Form form, double tolerance,
                                   const std::string& place);

/// "x,y,v,a" and the rows of a table of that form; the derivative of order k is multiplied by the k-th power
/// of `rate`.
std::string xyvaText(const mf::analysis::CamTable& table, double rate);

/// The table as the text file that tables of the Modelica standard library read, under the name "curve".
std::string modelicaText(const mf::analysis::CamTable& table);

}  // namespace mfcurve
