// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>

#include "mfcurves/curve/CurveDefinition.h"

// Definitions of curves as lines of text, for fuzz targets that take any definition:
//
//     rows START VALUE [six]      row END VALUE LAW      law NAME TEXT
//     points KIND                 point X Y              (kind 0 to 2)
//     expression FROM TO TEXT
//     name TEXT                   quantity N             over N RESULT
//     rotary                      data N

namespace fuzz {

// The words of a line; a missing word reads as 0 or as an empty text.
class Line {
public:
    explicit Line(std::string_view text) : rest_(text) {}

    std::string_view word()
    {
        const std::size_t end = std::min(rest_.find(' '), rest_.size());
        const std::string_view word = rest_.substr(0, end);
        rest_.remove_prefix(std::min(end + 1, rest_.size()));
        return word;
    }
    double number()
    {
        const std::string_view text = word();
        double value = 0.0;
        std::from_chars(text.data(), text.data() + text.size(), value);
        return value;
    }
    int whole(int most)
    {
        const double value = number();
        return value >= 0.0 && value <= most ? static_cast<int>(value) : 0;
    }
    std::string rest() { return std::string(rest_); }

private:
    std::string_view rest_;
};

template <class Shape>
Shape& shapeOf(mf::CurveDefinition& definition)
{
    if (!std::holds_alternative<Shape>(definition.shape))
        definition.shape = Shape();
    return std::get<Shape>(definition.shape);
}

inline void readLine(Line line, mf::CurveDefinition& definition)
{
    const std::string_view word = line.word();
    if (word == "rows") {
        auto& shape = shapeOf<mf::SegmentShape>(definition);
        shape.startX = line.number();
        shape.startValue = line.number();
        shape.sixDecimals = line.rest() == "six";
    } else if (word == "row") {
        const double end = line.number();
        const double value = line.number();
        shapeOf<mf::SegmentShape>(definition).rows.push_back({end, value, line.rest()});
    } else if (word == "law") {
        const std::string name(line.word());
        shapeOf<mf::SegmentShape>(definition).laws.push_back({name, line.rest()});
    } else if (word == "points") {
        shapeOf<mf::PointShape>(definition).interpolation = static_cast<mf::Interpolation>(line.whole(2));
    } else if (word == "point") {
        auto& shape = shapeOf<mf::PointShape>(definition);
        shape.x.push_back(line.number());
        shape.y.push_back(line.number());
    } else if (word == "expression") {
        const double from = line.number();
        const double to = line.number();
        definition.shape = mf::ExpressionShape{line.rest(), from, to};
    } else if (word == "name") {
        definition.name = line.rest();
    } else if (word == "quantity") {
        definition.quantity = static_cast<mf::Quantity>(line.whole(4));
    } else if (word == "over") {
        definition.over = static_cast<mf::Over>(line.whole(2));
        definition.motionResult = line.rest();
    } else if (word == "rotary") {
        definition.rotary = true;
    } else if (word == "data") {
        definition.dataType = static_cast<mf::MotFuncXYDataType_e>(line.whole(23));
    }
}

inline mf::CurveDefinition definitionOf(std::string_view text)
{
    mf::CurveDefinition definition;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        readLine(Line(text.substr(0, end)), definition);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return definition;
}

}  // namespace fuzz
