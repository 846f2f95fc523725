// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "tests/documents/curveFixture.h"

// Documents of curves, and small text forms of what is read from them.

namespace mf::test {

// "place: message", errors first.
inline std::vector<std::string> shown(const std::vector<Problem>& problems)
{
    std::vector<std::string> texts;
    for (const Problem& problem : problems) {
        const std::string level = problem.level == Problem::Level::Error ? "" : "warning: ";
        texts.push_back(level + problem.place + (problem.place.empty() ? "" : ": ") + problem.message);
    }
    return texts;
}

// The problems of the error that `make` throws.
template <class Make>
std::vector<std::string> problemsOf(const Make& make)
{
    try {
        make();
    } catch (const CurveError& error) {
        return shown(error.problems());
    }
    return {"no error"};
}

inline std::vector<std::string> problemsOf(const Document& document, const ReadSettings& settings = {})
{
    return problemsOf([&] { Curve::parse(document.xml(), settings); });
}

// "0 1 | 2 5 Mine | 3 4 Cubic": start, then end, value and law of each row.
inline std::string show(const SegmentShape& shape)
{
    std::string text = number(shape.startX) + ' ' + number(shape.startValue);
    for (const CurveRow& row : shape.rows)
        text += " | " + number(row.endX) + ' ' + number(row.value) + ' ' + row.profile;
    for (const LawText& law : shape.laws)
        text += "; " + law.name + '=' + law.text.substr(law.text.find(')') + 1, 20);
    return text;
}

inline std::string show(const PointShape& shape)
{
    std::string text = shape.interpolation == Interpolation::Linear  ? "linear"
                       : shape.interpolation == Interpolation::Cubic ? "cubic"
                                                                     : "akima";
    for (std::size_t i = 0; i < shape.x.size(); ++i)
        text += ' ' + number(shape.x[i]) + ':' + number(shape.y[i]);
    return text;
}

inline std::string show(const ExpressionShape& shape)
{
    return shape.text + " from " + number(shape.from) + " to " + number(shape.to);
}

inline std::string show(const CurveDefinition& definition)
{
    return std::visit([](const auto& shape) { return show(shape); }, definition.shape);
}

inline const std::string kStart = segment(" ", " ", "1");

inline Document withRows(const std::string& rows, const std::string& definitions = "")
{
    return segmentDocument().set("Segments", kStart + rows).set("ProfileDefinitions", definitions);
}

// How the formula of lineTimes starts.
inline const std::string kLine = "s=(y2-y1)/(x2-x1);v=";

}  // namespace mf::test
