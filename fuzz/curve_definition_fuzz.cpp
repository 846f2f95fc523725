// SPDX-License-Identifier: MIT

// The bytes describe a definition, line by line. It is refused with a reason, or it makes a
// curve that its definition makes again, that a document takes, and that comes back from there
// but for what is reported as lost.
//
//     rows START VALUE [six]      row END VALUE LAW      law NAME TEXT
//     points KIND                 point X Y              (kind 0 to 2)
//     expression FROM TO TEXT
//     name TEXT                   quantity N             over N RESULT
//     rotary                      data N

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/documents/formatTexts.h"
#include "mfcurves/platform/xmlRuntime.h"

namespace {

using mf::Curve;
using mf::CurveDefinition;

constexpr std::size_t kLongestInput = 4096;  // longer ones find nothing new, slowly

void require(bool holds)
{
    if (!holds)
        std::abort();
}

// The words of a line; what is missing reads as 0 or as no text.
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
Shape& shapeOf(CurveDefinition& definition)
{
    if (!std::holds_alternative<Shape>(definition.shape))
        definition.shape = Shape();
    return std::get<Shape>(definition.shape);
}

void readLine(Line line, CurveDefinition& definition)
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

CurveDefinition definitionOf(std::string_view text)
{
    CurveDefinition definition;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        readLine(Line(text.substr(0, end)), definition);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return definition;
}

// The curve that `make` makes; none, with a reason, where it throws.
template <class Make>
std::optional<Curve> made(const Make& make)
{
    const int starts = mf::platform::xmlStartCount();
    std::optional<Curve> curve;
    try {
        curve = make();
    } catch (const mf::CurveError& error) {
        require(!error.problems().empty());
        for (const mf::Problem& problem : error.problems())
            require(!problem.message.empty() && problem.message.find('\n') == std::string::npos);
    }
    require(mf::platform::xmlStartCount() == starts);
    require(mf::documents::writtenVersion() == mf::documents::kReadableVersion);
    return curve;
}

void requireSameBits(const Curve& a, const Curve& b)
{
    for (const double part : {-0.25, 0.0, 0.1, 0.5, 0.9, 1.0, 1.25}) {
        const double x = a.firstX() + part * (a.lastX() - a.firstX());
        for (int order = 0; order <= 3; ++order)
            require(std::bit_cast<std::uint64_t>(a(x, order)) == std::bit_cast<std::uint64_t>(b(x, order)));
    }
}

std::optional<Curve> readBack(const Curve& curve, const std::string& xml)
{
    mf::ReadSettings settings;
    settings.motionResults = {curve.definition().motionResult};
    return made([&] { return Curve::parse(xml, settings); });
}

// The curve that a document gives, if it gives any.
std::optional<Curve> throughDocument(const Curve& curve, std::vector<mf::Problem>& losses)
{
    const std::string xml = curve.toXml(&losses);
    const std::optional<Curve> read = readBack(curve, xml);
    require(read || !losses.empty());
    if (losses.empty())
        requireSameBits(curve, *read);
    return read;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > kLongestInput)
        return 0;
    const CurveDefinition definition = definitionOf({reinterpret_cast<const char*>(data), size});
    const std::optional<Curve> curve = made([&] { return Curve(definition); });
    if (!curve)
        return 0;
    const Curve again(curve->definition());
    require(again == *curve && again.definition() == curve->definition());
    requireSameBits(*curve, again);

    std::vector<mf::Problem> losses;
    const std::optional<Curve> read = throughDocument(*curve, losses);
    if (!read)
        return 0;
    // Points may move again and again, as far as their digits go.
    std::vector<mf::Problem> more;
    const std::optional<Curve> second = throughDocument(*read, more);
    if (!std::holds_alternative<mf::PointShape>(definition.shape))
        require(more.empty() && second && *second == *read);
    return 0;
}
