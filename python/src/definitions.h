// SPDX-License-Identifier: MIT
#pragma once

#include <pybind11/pybind11.h>

#include "mfcurves/curve/CurveDefinition.h"

namespace mfpython {

namespace py = pybind11;

/// A definition from the dictionary that Python stores and pickles. Its keys:
///
/// - "kind": "segments", "points" or "expression"
/// - "name", "drive", "over" ("time", "angle" or "result"), "result", "rotary", "data_type"
/// - segments: "start" (x, y), "rows" [(end, value, profile)], "laws" {name: text}, "six_decimals"
/// - points: "x", "y" (arrays), "interpolation"
/// - expression: "text", "domain" (from, to)
///
/// Throws the C++ form of KeyError, TypeError or ValueError for any other dictionary.
mf::CurveDefinition definitionFrom(const py::dict& state);

/// The dictionary of a definition, with all digits of its numbers.
py::dict stateOf(const mf::CurveDefinition& definition);

}  // namespace mfpython
