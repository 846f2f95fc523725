// SPDX-License-Identifier: MIT
#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include "mfcurves/curve/Curve.h"

namespace mfpython {

namespace py = pybind11;

/// One order of a curve at every number of an array of doubles in C order. Returns an array
/// of the same shape.
py::array_t<double> valuesAt(const mf::Curve& curve, const py::array_t<double, py::array::c_style>& x,
                             int order, mf::Side side);

/// The same for all four orders. Returns an array with a first axis of length 4.
py::array_t<double> allValuesAt(const mf::Curve& curve, const py::array_t<double, py::array::c_style>& x,
                                mf::Side side);

}  // namespace mfpython
