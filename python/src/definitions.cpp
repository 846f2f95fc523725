// SPDX-License-Identifier: MIT

#include "python/src/definitions.h"

#include <algorithm>
#include <iterator>
#include <pybind11/numpy.h>
#include <pybind11/stl.h>
#include <string>
#include <utility>
#include <vector>

namespace mfpython {
namespace {

template <typename Value>
struct Named {
    const char* name;
    Value value;
};

constexpr Named<mf::Quantity> kDrives[] = {{"displacement", mf::Quantity::Displacement},
                                           {"velocity", mf::Quantity::Velocity},
                                           {"acceleration", mf::Quantity::Acceleration},
                                           {"force", mf::Quantity::Force},
                                           {"torque", mf::Quantity::Torque}};
constexpr Named<mf::Over> kOvers[] = {
    {"time", mf::Over::Time}, {"angle", mf::Over::CycleAngle}, {"result", mf::Over::MotionResult}};
constexpr Named<mf::Interpolation> kInterpolations[] = {{"linear", mf::Interpolation::Linear},
                                                        {"cubic", mf::Interpolation::Cubic},
                                                        {"akima", mf::Interpolation::Akima}};

template <typename Value, std::size_t count>
Value valueNamed(const Named<Value> (&names)[count], const py::dict& state, const char* key)
{
    const auto name = state[key].cast<std::string>();
    const auto* found = std::ranges::find(names, name, &Named<Value>::name);
    if (found == std::end(names))
        throw py::value_error(std::string(key) + " cannot be '" + name + "'");
    return found->value;
}

template <typename Value, std::size_t count>
const char* nameOf(const Named<Value> (&names)[count], Value value)
{
    return std::ranges::find(names, value, &Named<Value>::value)->name;
}

mf::SegmentShape segmentsFrom(const py::dict& state)
{
    mf::SegmentShape shape;
    std::tie(shape.startX, shape.startValue) = state["start"].cast<std::pair<double, double>>();
    for (const py::handle row : state["rows"]) {
        auto [endX, value, profile] = row.cast<std::tuple<double, double, std::string>>();
        shape.rows.push_back({endX, value, std::move(profile)});
    }
    for (const auto& [name, text] : state["laws"].cast<py::dict>())
        shape.laws.push_back({name.cast<std::string>(), text.cast<std::string>()});
    shape.sixDecimals = state["six_decimals"].cast<bool>();
    return shape;
}

std::vector<double> numbers(const py::handle& array)
{
    const auto values = array.cast<py::array_t<double, py::array::c_style | py::array::forcecast>>();
    return {values.data(), values.data() + values.size()};
}

mf::PointShape pointsFrom(const py::dict& state)
{
    return {numbers(state["x"]), numbers(state["y"]), valueNamed(kInterpolations, state, "interpolation")};
}

mf::ExpressionShape expressionFrom(const py::dict& state)
{
    const auto [from, to] = state["domain"].cast<std::pair<double, double>>();
    return {state["text"].cast<std::string>(), from, to};
}

void putShape(py::dict& state, const mf::SegmentShape& shape)
{
    py::list rows;
    for (const mf::CurveRow& row : shape.rows)
        rows.append(py::make_tuple(row.endX, row.value, row.profile));
    py::dict laws;
    for (const mf::LawText& law : shape.laws)
        laws[py::str(law.name)] = law.text;
    state["kind"] = "segments";
    state["start"] = py::make_tuple(shape.startX, shape.startValue);
    state["rows"] = rows;
    state["laws"] = laws;
    state["six_decimals"] = shape.sixDecimals;
}

void putShape(py::dict& state, const mf::PointShape& shape)
{
    state["kind"] = "points";
    state["x"] = py::array_t<double>(static_cast<py::ssize_t>(shape.x.size()), shape.x.data());
    state["y"] = py::array_t<double>(static_cast<py::ssize_t>(shape.y.size()), shape.y.data());
    state["interpolation"] = nameOf(kInterpolations, shape.interpolation);
}

void putShape(py::dict& state, const mf::ExpressionShape& shape)
{
    state["kind"] = "expression";
    state["text"] = shape.text;
    state["domain"] = py::make_tuple(shape.from, shape.to);
}

}  // namespace

mf::CurveDefinition definitionFrom(const py::dict& state)
{
    mf::CurveDefinition definition;
    const auto kind = state["kind"].cast<std::string>();
    if (kind == "segments")
        definition.shape = segmentsFrom(state);
    else if (kind == "points")
        definition.shape = pointsFrom(state);
    else if (kind == "expression")
        definition.shape = expressionFrom(state);
    else
        throw py::value_error("kind cannot be '" + kind + "'");
    definition.name = state["name"].cast<std::string>();
    definition.quantity = valueNamed(kDrives, state, "drive");
    definition.over = valueNamed(kOvers, state, "over");
    definition.motionResult = state["result"].cast<std::string>();
    definition.rotary = state["rotary"].cast<bool>();
    if (!state["data_type"].is_none())
        definition.dataType = static_cast<mf::MotFuncXYDataType_e>(state["data_type"].cast<int>());
    return definition;
}

py::dict stateOf(const mf::CurveDefinition& definition)
{
    py::dict state;
    std::visit([&](const auto& shape) { putShape(state, shape); }, definition.shape);
    state["name"] = definition.name;
    state["drive"] = nameOf(kDrives, definition.quantity);
    state["over"] = nameOf(kOvers, definition.over);
    state["result"] = definition.motionResult;
    state["rotary"] = definition.rotary;
    state["data_type"] = definition.dataType ? py::cast(static_cast<int>(*definition.dataType)) : py::none();
    return state;
}

}  // namespace mfpython
