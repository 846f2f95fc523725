// SPDX-License-Identifier: MIT
#include "tools/mfcurve/edits.h"

#include <cmath>
#include <fmt/format.h>
#include <limits>

#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/laws.h"
#include "tools/mfcurve/nearest.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

double finite(const std::string& text, const Edit& edit)
{
    const auto number = readNumber(text);
    if (!number || !std::isfinite(*number))
        throw Failure(kWrong, edit.place, "\"" + text + "\" is not a finite number");
    return *number;
}

// The number of a row or point (`part`), from `least` to `most`.
std::size_t numberIn(const std::string& text, const char* part, const Edit& edit, std::size_t least,
                     std::size_t most)
{
    const auto number = readNumber(text);
    if (!number || *number != std::floor(*number) || *number < static_cast<double>(least) ||
        *number > static_cast<double>(most))
        throw Failure(kWrong, edit.place,
                      fmt::format("there is no {} {} here; {} to {} are expected", part,
                                  text.empty() ? "\"\"" : text, least, most));
    return static_cast<std::size_t>(*number);
}

struct Assignment {
    std::string number;
    std::string field;
    std::string value;
};

Assignment assignmentOf(const Edit& edit, const std::vector<std::string>& fields)
{
    const std::size_t sign = edit.text.find('=');
    const std::size_t point = edit.text.rfind('.', sign);
    if (sign == std::string::npos || point == std::string::npos)
        throw Failure(kWrong, edit.place,
                      fmt::format("ROW.FIELD=VALUE is expected, such as 2.{}=10", fields.front()));
    Assignment assignment{edit.text.substr(0, point), edit.text.substr(point + 1, sign - point - 1),
                          std::string(trimmed(edit.text.substr(sign + 1)))};
    for (const std::string& field : fields) {
        if (assignment.field == field)
            return assignment;
    }
    throw Failure(kWrong, edit.place,
                  fmt::format("there is no field \"{}\"; the fields are {}{}", assignment.field,
                              fmt::join(fields, ", "), nearestAdvice(assignment.field, fields)));
}

// Splits "ROW:A,B,C" into ROW and the fields.
std::vector<std::string> insertionOf(const Edit& edit, std::size_t fields, const char* form)
{
    const std::size_t colon = edit.text.find(':');
    std::vector<std::string> parts =
        splitText(colon == std::string::npos ? "" : edit.text.substr(colon + 1), ',');
    if (colon == std::string::npos || parts.size() != fields)
        throw Failure(kWrong, edit.place, fmt::format("{} is expected", form));
    parts.insert(parts.begin(), edit.text.substr(0, colon));
    return parts;
}

}  // namespace

Editor::Editor(const mf::CurveDefinition& definition, std::vector<mf::Law> laws)
    : definition_(definition), laws_(std::move(laws))
{
    const auto* shape = std::get_if<mf::CurveDefinition::Segments>(&definition_.shape);
    if (shape == nullptr)
        return;
    double start = shape->startX;
    for (const mf::CurveRow& row : shape->rows) {
        startsBefore_.push_back(start);
        mayBeEmpty_.push_back(row.endX == start);
        start = row.endX;
    }
}

void Editor::apply(const Edit& edit)
{
    if (auto* rows = std::get_if<mf::CurveDefinition::Segments>(&definition_.shape))
        applyToRows(*rows, edit);
    else if (auto* points = std::get_if<mf::CurveDefinition::Points>(&definition_.shape))
        applyToPoints(*points, edit);
    else
        throw Failure(kWrong, edit.place,
                      "an expression has no rows or points; convert --expression writes another one");
}

void Editor::applyToRows(mf::SegmentShape& shape, const Edit& edit)
{
    if (edit.kind == Edit::Kind::Set) {
        setField(shape, edit);
    } else if (edit.kind == Edit::Kind::Insert) {
        insertRow(shape, edit);
    } else {
        const auto row =
            static_cast<std::ptrdiff_t>(numberIn(edit.text, "row", edit, 1, shape.rows.size())) - 1;
        if (shape.rows.size() == 1)
            throw Failure(kWrong, edit.place, "it is the only row");
        shape.rows.erase(shape.rows.begin() + row);
        startsBefore_.erase(startsBefore_.begin() + row);
        mayBeEmpty_.erase(mayBeEmpty_.begin() + row);
    }
    checkLengths(shape, edit);
}

void Editor::setField(mf::SegmentShape& shape, const Edit& edit)
{
    const Assignment assignment = assignmentOf(edit, {"end", "value", "profile"});
    const std::size_t number = numberIn(assignment.number, "row", edit, 0, shape.rows.size());
    if (number == 0 && assignment.field == "profile")
        throw Failure(kWrong, edit.place, "row 0 states the start and has no profile");
    if (assignment.field == "profile")
        shape.rows[number - 1].profile = profileNamed(shape, assignment.value, edit);
    else if (assignment.field == "end")
        (number == 0 ? shape.startX : shape.rows[number - 1].endX) = finite(assignment.value, edit);
    else
        (number == 0 ? shape.startValue : shape.rows[number - 1].value) = finite(assignment.value, edit);
}

void Editor::insertRow(mf::SegmentShape& shape, const Edit& edit)
{
    const std::vector<std::string> parts = insertionOf(edit, 3, "ROW:END,VALUE,PROFILE");
    const auto row =
        static_cast<std::ptrdiff_t>(numberIn(parts[0], "row", edit, 1, shape.rows.size() + 1)) - 1;
    const mf::CurveRow inserted{finite(parts[1], edit), finite(parts[2], edit),
                                profileNamed(shape, parts[3], edit)};
    shape.rows.insert(shape.rows.begin() + row, inserted);
    startsBefore_.insert(startsBefore_.begin() + row, kNone);
    mayBeEmpty_.insert(mayBeEmpty_.begin() + row, false);
}

// The exact name of an existing law. Adds its text to the definition unless the law is built in.
std::string Editor::profileNamed(mf::SegmentShape& shape, const std::string& name, const Edit& edit) const
{
    for (const mf::LawText& law : shape.laws) {
        if (equalsInAnyCase(law.name, name))
            return law.name;
    }
    const mf::Law* law = findLaw(laws_, name);
    if (law == nullptr)
        throw Failure(kWrong, edit.place, unknownLaw(laws_, name));
    if (law->source != "built-in")
        shape.laws.push_back({law->name, law->text});
    return law->name;
}

void Editor::checkLengths(const mf::SegmentShape& shape, const Edit& edit) const
{
    double start = shape.startX;
    for (std::size_t i = 0; i < shape.rows.size(); ++i) {
        const double end = shape.rows[i].endX;
        if (!(end > start) && !(mayBeEmpty_[i] && end == start))
            throw Failure(kWrong, edit.place,
                          fmt::format("row {} would run from {} to {} and have no length; nothing is written",
                                      i + 1, numberText(start), numberText(end)));
        start = end;
    }
}

void Editor::applyToPoints(mf::PointShape& shape, const Edit& edit)
{
    const auto insertAt = [&](std::size_t point, double x, double y) {
        shape.x.insert(shape.x.begin() + static_cast<std::ptrdiff_t>(point), x);
        shape.y.insert(shape.y.begin() + static_cast<std::ptrdiff_t>(point), y);
    };
    if (edit.kind == Edit::Kind::Set) {
        const Assignment assignment = assignmentOf(edit, {"x", "y"});
        const std::size_t point = numberIn(assignment.number, "point", edit, 1, shape.x.size()) - 1;
        (assignment.field == "x" ? shape.x : shape.y)[point] = finite(assignment.value, edit);
    } else if (edit.kind == Edit::Kind::Insert) {
        const std::vector<std::string> parts = insertionOf(edit, 2, "POINT:X,Y");
        const std::size_t point = numberIn(parts[0], "point", edit, 1, shape.x.size() + 1) - 1;
        insertAt(point, finite(parts[1], edit), finite(parts[2], edit));
    } else {
        const auto point =
            static_cast<std::ptrdiff_t>(numberIn(edit.text, "point", edit, 1, shape.x.size())) - 1;
        if (shape.x.size() == 1)
            throw Failure(kWrong, edit.place, "it is the only point");
        shape.x.erase(shape.x.begin() + point);
        shape.y.erase(shape.y.begin() + point);
    }
    for (std::size_t i = 1; i < shape.x.size(); ++i) {
        if (!(shape.x[i] > shape.x[i - 1]))
            throw Failure(
                kWrong, edit.place,
                fmt::format(
                    "point {} would have x {}, which is not above the {} of point {}; nothing is written",
                    i + 1, numberText(shape.x[i]), numberText(shape.x[i - 1]), i));
    }
}

std::vector<std::string> Editor::movedRows() const
{
    std::vector<std::string> moved;
    const auto* shape = std::get_if<mf::CurveDefinition::Segments>(&definition_.shape);
    if (shape == nullptr)
        return moved;
    double start = shape->startX;
    for (std::size_t i = 0; i < shape->rows.size(); ++i) {
        if (startsBefore_[i] == startsBefore_[i] && startsBefore_[i] != start)
            moved.push_back(fmt::format("row {}: start {} to {}", i + 1, numberText(startsBefore_[i]),
                                        numberText(start)));
        start = shape->rows[i].endX;
    }
    return moved;
}

}  // namespace mfcurve
