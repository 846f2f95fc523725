// SPDX-License-Identifier: MIT

#include "python/src/arrays.h"

#include <algorithm>
#include <vector>

namespace mfpython {
namespace {

// The number of points that are computed in one run without the global interpreter lock.
// Between two runs Python handles its signals. A run takes about a millisecond.
constexpr py::ssize_t kRun = 65'536;

// Calls compute(first, count) for runs of points, without the lock.
void inRuns(py::ssize_t count, const auto& compute)
{
    for (py::ssize_t first = 0; first < count; first += kRun) {
        {
            const py::gil_scoped_release released;
            compute(first, std::min(kRun, count - first));
        }
        if (PyErr_CheckSignals() != 0)
            throw py::error_already_set();
    }
}

}  // namespace

py::array_t<double> valuesAt(const mf::Curve& curve, const py::array_t<double, py::array::c_style>& x,
                             int order, mf::Side side)
{
    py::array_t<double> y(std::vector<py::ssize_t>(x.shape(), x.shape() + x.ndim()));
    const double* from = x.data();
    double* to = y.mutable_data();
    inRuns(x.size(), [&](py::ssize_t first, py::ssize_t count) {
        if (side == mf::Side::Plain)
            return curve.evaluate(from + first, static_cast<std::size_t>(count), order, to + first);
        for (py::ssize_t i = first; i < first + count; ++i)
            to[i] = curve.at(from[i], side)[order];
    });
    return y;
}

py::array_t<double> allValuesAt(const mf::Curve& curve, const py::array_t<double, py::array::c_style>& x,
                                mf::Side side)
{
    std::vector<py::ssize_t> shape{4};
    shape.insert(shape.end(), x.shape(), x.shape() + x.ndim());
    py::array_t<double> y(shape);
    const py::ssize_t points = x.size();
    const double* from = x.data();
    double* to = y.mutable_data();
    // Small enough to stay in the processor's cache until the orders are stored apart.
    constexpr py::ssize_t kPart = 2048;
    inRuns(points, [&](py::ssize_t first, py::ssize_t count) {
        mf::CurveValues values[kPart];
        for (py::ssize_t part = first; part < first + count; part += kPart) {
            const py::ssize_t size = std::min(kPart, first + count - part);
            if (side == mf::Side::Plain) {
                curve.evaluate(from + part, static_cast<std::size_t>(size), values);
            } else {
                for (py::ssize_t i = 0; i < size; ++i)
                    values[i] = curve.at(from[part + i], side);
            }
            for (py::ssize_t i = 0; i < size; ++i) {
                to[part + i] = values[i].y;
                to[points + part + i] = values[i].d1;
                to[2 * points + part + i] = values[i].d2;
                to[3 * points + part + i] = values[i].d3;
            }
        }
    });
    return y;
}

}  // namespace mfpython
