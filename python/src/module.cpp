// SPDX-License-Identifier: MIT

#include <new>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>
#include <string>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/curve/Problem.h"
#include "mfcurves/version.h"
#include "python/src/analysis.h"
#include "python/src/arrays.h"
#include "python/src/definitions.h"

namespace py = pybind11;

namespace mfpython {
namespace {

py::list problemsOf(const std::vector<mf::Problem>& problems)
{
    py::list list;
    for (const mf::Problem& problem : problems)
        list.append(py::make_tuple(problem.level == mf::Problem::Level::Error ? "error" : "warning",
                                   problem.place, problem.message));
    return list;
}

// The exception class is defined in Python, so that it can be pickled.
void raise(const mf::CurveError& error)
{
    const py::object type = py::module_::import("mfcurves._errors").attr("CurveError");
    PyErr_SetObject(type.ptr(), type(error.what(), problemsOf(error.problems())).ptr());
}

mf::Side sideNamed(const std::string& name)
{
    if (name == "plain")
        return mf::Side::Plain;
    if (name == "left")
        return mf::Side::Left;
    if (name == "right")
        return mf::Side::Right;
    throw py::value_error("side must be 'plain', 'left' or 'right', not '" + name + "'");
}

constexpr const char* kOutsides[] = {"extend", "hold", "repeat", "undefined"};

mf::Outside outsideNamed(const std::string& name)
{
    for (int i = 0; i < 4; ++i) {
        if (name == kOutsides[i])
            return static_cast<mf::Outside>(i);
    }
    throw py::value_error("rule must be 'extend', 'hold', 'repeat' or 'undefined', not '" + name + "'");
}

using Array = py::array_t<double, py::array::c_style>;

// The order of a call whose arguments are a float and at most a whole number; -1 for any other call.
int orderOfQuickCall(PyObject* const* arguments, Py_ssize_t count, PyObject* names)
{
    if (names != nullptr || count < 1 || count > 2 || !PyFloat_Check(arguments[0]))
        return -1;
    if (count == 1)
        return 0;
    int overflow = 0;
    const long order =
        PyLong_CheckExact(arguments[1]) ? PyLong_AsLongAndOverflow(arguments[1], &overflow) : -1;
    return overflow == 0 && order >= 0 && order <= 3 ? static_cast<int>(order) : -1;
}

// Curve.__call__. A simulation calls it for one number at each step, for which pybind11 would take
// longer than the curve. All other calls go through the checks in Python.
PyObject* call(PyObject* self, PyObject* const* arguments, Py_ssize_t count, PyObject* names)
try {
    const int order = orderOfQuickCall(arguments, count, names);
    if (order >= 0) {
        const auto& curve = py::handle(self).cast<const mf::Curve&>();
        return PyFloat_FromDouble(curve(PyFloat_AS_DOUBLE(arguments[0]), order));
    }
    const py::object values = py::module_::import("mfcurves._values").attr("values");
    std::vector<PyObject*> all{self};
    all.insert(all.end(), arguments, arguments + count + (names == nullptr ? 0 : PyTuple_GET_SIZE(names)));
    return PyObject_Vectorcall(values.ptr(), all.data(), static_cast<std::size_t>(count) + 1, names);
} catch (py::error_already_set& error) {
    error.restore();
    return nullptr;
} catch (const std::exception& error) {
    PyErr_SetString(PyExc_TypeError, error.what());
    return nullptr;
}

void addCall(py::class_<mf::Curve>& curve)
{
    static PyMethodDef definition = {
        "__call__", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(&call)),
        METH_FASTCALL | METH_KEYWORDS,
        "__call__($self, x, nu=0, side='plain')\n--\n\n"
        "The value or a derivative at x.\n\n"
        "Parameters\n----------\n"
        "x : real number, or array_like of real numbers\n"
        "nu : int from 0 to 3\n"
        "    The order: 0 is the value, 1 to 3 are the derivatives.\n"
        "side : {\"plain\", \"left\", \"right\"}\n"
        "    \"left\" and \"right\" return the limits from that side of x. At an x where two\n"
        "    rows meet, \"plain\" evaluates the row that begins there.\n\n"
        "Returns\n-------\n"
        "float, or ndarray of the shape of x; NaN where the curve has no finite value."};
    curve.attr("__call__") = py::reinterpret_steal<py::object>(
        PyDescr_NewMethod(reinterpret_cast<PyTypeObject*>(curve.ptr()), &definition));
}

// mfcurves/_curve.py adds the documentation, the checks of types and the named results.
py::class_<mf::Curve> addCurve(py::module_& module)
{
    return py::class_<mf::Curve>(module, "CurveCore", "What mfcurves.Curve is made of.")
        .def(py::init<const mf::Curve&>(), py::arg("core"))
        .def(py::init([](const py::dict& state) { return mf::Curve(definitionFrom(state)); }),
             py::arg("state"))
        .def("values", [](const mf::Curve& curve, const Array& x, int nu,
                          const std::string& side) { return valuesAt(curve, x, nu, sideNamed(side)); })
        .def("all_values", [](const mf::Curve& curve, const Array& x,
                              const std::string& side) { return allValuesAt(curve, x, sideNamed(side)); })
        .def_property_readonly("first_x", &mf::Curve::firstX)
        .def_property_readonly("last_x", &mf::Curve::lastX)
        .def_property_readonly(
            "outside", [](const mf::Curve& curve) { return kOutsides[static_cast<int>(curve.outside())]; })
        .def("state", [](const mf::Curve& curve) { return stateOf(curve.definition()); })
        .def("found_odd", [](const mf::Curve& curve) { return problemsOf(curve.warnings()); })
        .def("with_rule",
             [](const mf::Curve& curve, const std::string& rule) { return curve.with(outsideNamed(rule)); })
        .def("equals", [](const mf::Curve& a, const mf::Curve& b) { return a == b; })
        .def("document",
             [](const mf::Curve& curve) {
                 std::vector<mf::Problem> losses;
                 const std::string xml = curve.toXml(&losses);
                 return py::make_tuple(xml, problemsOf(losses));
             })
        .def("save", &mf::Curve::write);
}

void fill(py::module_& module)
{
    py::register_exception_translator([](std::exception_ptr thrown) {
        try {
            std::rethrow_exception(thrown);
        } catch (const mf::CurveError& error) {
            raise(error);
        }
    });
    module.attr("__version__") = mf::version();
    py::class_<mf::Curve> curve = addCurve(module);
    addCall(curve);
    addAnalysis(module, curve);
    // The lock is kept while a curve is made or read, so that no other thread of Python can
    // fork this process while a lock of the library is held.
    module.def("read", [](const std::string& path, const std::vector<std::string>& library,
                          const std::vector<std::string>& results) {
        return mf::Curve::read(path, {library, results});
    });
    module.def("parse", [](const std::string& text, const std::vector<std::string>& library,
                           const std::vector<std::string>& results) {
        return mf::Curve::parse(text, {library, results});
    });
}

}  // namespace
}  // namespace mfpython

// Does what PYBIND11_MODULE does, after a check that must come before any call of pybind11: in
// an interpreter other than the main one, the first call of pybind11 would wait forever.
extern "C" PYBIND11_EXPORT PyObject* PyInit__mfcurves()
{
    if (PyInterpreterState_Get() != PyInterpreterState_Main()) {
        PyErr_SetString(PyExc_ImportError, "mfcurves works in the main interpreter only");
        return nullptr;
    }
    PYBIND11_ENSURE_INTERNALS_READY
    static py::module_::module_def definition;
    auto module = py::module_::create_extension_module("_mfcurves", nullptr, &definition);
    try {
        mfpython::fill(module);
        return module.ptr();
    }
    PYBIND11_CATCH_INIT_EXCEPTIONS
}
