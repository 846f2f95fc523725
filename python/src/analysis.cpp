// SPDX-License-Identifier: MIT

#include "python/src/analysis.h"

#include <limits>
#include <optional>
#include <pybind11/numpy.h>
#include <pybind11/stl.h>
#include <utility>
#include <vector>

#include "mfcurves/analysis/analysis.h"
#include "mfcurves/analysis/requirements.h"
#include "mfcurves/curve/laws.h"
#include "mfcurves/drawing/diagram.h"

namespace mfpython {
namespace {

using namespace mf::analysis;

const char* sideName(mf::Side side)
{
    return side == mf::Side::Left ? "left" : side == mf::Side::Right ? "right" : "plain";
}

py::tuple tupleOf(const mf::CurveValues& values)
{
    return py::make_tuple(values.y, values.d1, values.d2, values.d3);
}

py::tuple tupleOf(const Peak& peak)
{
    return py::make_tuple(peak.x, peak.y, sideName(peak.side), peak.error);
}

const char* causeName(Cause cause)
{
    switch (cause) {
        case Cause::Seam:
            return "seam";
        case Cause::Knot:
            return "knot";
        case Cause::Kink:
            return "kink";
        case Cause::CycleEnd:
            return "cycle end";
    }
    return "";
}

py::list findBreaks(const mf::Curve& curve, int order)
{
    py::list list;
    for (const Break& found : breaks(curve, order))
        list.append(py::make_tuple(found.x, found.lowest, causeName(found.cause), found.row,
                                   tupleOf(found.left), tupleOf(found.right)));
    return list;
}

py::list summaries(const mf::Curve& curve)
{
    py::list list;
    for (const Summary& order : summarize(curve))
        list.append(py::make_tuple(tupleOf(order.least), tupleOf(order.greatest), order.rms, order.mean,
                                   order.impulses, order.guaranteed));
    return list;
}

double limitOf(const std::optional<double>& limit)
{
    return limit.value_or(std::numeric_limits<double>::infinity());
}

py::tuple findViolations(const mf::Curve& curve, std::optional<double> velocity,
                         std::optional<double> acceleration, std::optional<double> jerk,
                         std::optional<std::pair<double, double>> range, std::optional<int> continuity,
                         bool isCyclic)
{
    Requirements required;
    required.limits = {limitOf(velocity), limitOf(acceleration), limitOf(jerk)};
    if (range)
        required.values = mf::Range{range->first, range->second};
    required.continuity = continuity;
    required.isCyclic = isCyclic;
    py::list list;
    for (const Violation& violation : violations(curve, required)) {
        const auto& worst = violation.worst;
        list.append(py::make_tuple(violation.order, violation.limit, violation.where.from, violation.where.to,
                                   worst ? py::cast(worst->y) : py::none(),
                                   worst ? py::cast(worst->x) : py::none()));
    }
    return py::make_tuple(list, areAllViolationsFound(curve, required));
}

py::array_t<double> arrayOf(const std::vector<double>& numbers)
{
    return py::array_t<double>(static_cast<py::ssize_t>(numbers.size()), numbers.data());
}

Form formNamed(const std::string& name)
{
    return name == "linear" ? Form::Linear : name == "points" ? Form::Points : Form::Xyva;
}

py::tuple tabulate(const mf::Curve& curve, const std::string& form, double tolerance,
                   std::optional<double> d1, std::optional<double> d2)
{
    const CamTable table = toTable(curve, formNamed(form), {tolerance, limitOf(d1), limitOf(d2)});
    return py::make_tuple(arrayOf(table.x), arrayOf(table.y), arrayOf(table.d1), arrayOf(table.d2),
                          table.bound, table.guaranteed);
}

std::string picture(const mf::Curve& curve)
{
    return mf::drawing::toSvg(mf::drawing::diagramOf({curve}));
}

py::list knownLaws()
{
    py::list list;
    std::set<std::string> seen;  // of several laws with one name, the first is used
    for (const mf::Law& law : mf::laws()) {
        if (!seen.insert(law.name).second)
            continue;
        const LawFactors known = factors({law.name, law.text});
        const int continuity = std::min({known.startContinuity, known.endContinuity, known.innerContinuity});
        list.append(py::make_tuple(law.name, law.text, known.cv, known.ca, known.cj, continuity));
    }
    return list;
}

py::list fastestMoves(double stroke, std::optional<double> velocity, std::optional<double> acceleration,
                      std::optional<double> jerk)
{
    static constexpr const char* kLimits[] = {"velocity", "acceleration", "jerk"};
    py::list list;
    for (const Move& move : fastest(stroke, {limitOf(velocity), limitOf(acceleration), limitOf(jerk)}))
        list.append(py::make_tuple(move.profile, move.duration, kLimits[static_cast<int>(move.limitedBy)]));
    return list;
}

}  // namespace

void addAnalysis(py::module_& module, py::class_<mf::Curve>& curve)
{
    curve.def("find_breaks", &findBreaks)
        .def("summarize", &summaries)
        .def("has_motion",
             [](const mf::Curve& self, int derivative) {
                 return motionOrder(self.definition().quantity, derivative).has_value();
             })
        .def("found_all_breaks",
             [](const mf::Curve& self, int order) { return areAllBreaksFound(self, order); })
        .def("found_all_crossings", [](const mf::Curve& self, int order,
                                       double value) { return areAllCrossingsFound(self, order, value); })
        .def("find_crossings",
             [](const mf::Curve& self, int order, double value) { return crossings(self, order, value); })
        .def("find_violations", &findViolations)
        .def("timed", &overTime)
        .def("tabulate", &tabulate)
        .def("picture", &picture);
    module.def("laws", &knownLaws);
    module.def("fastest", &fastestMoves);
}

}  // namespace mfpython
