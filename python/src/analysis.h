// SPDX-License-Identifier: MIT
#pragma once

#include <pybind11/pybind11.h>

#include "mfcurves/curve/Curve.h"

namespace mfpython {

namespace py = pybind11;

/// Adds the analysis of a curve, as operations of its class that return plain tuples, and
/// the functions about motion laws.
void addAnalysis(py::module_& module, py::class_<mf::Curve>& curve);

}  // namespace mfpython
