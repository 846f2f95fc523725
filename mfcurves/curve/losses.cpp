// SPDX-License-Identifier: MIT

#include <algorithm>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <utility>

#include "mfcurves/curve/LawFinder.h"
#include "mfcurves/curve/problems.h"
#include "mfcurves/curve/readDefinition.h"
#include "mfcurves/curve/writeDefinition.h"

namespace mf::curve {
namespace {

constexpr std::size_t kMostLosses = 20;  // reported one by one

// The shortest text that reads back as the number.
std::string digits(double number)
{
    char buffer[40];
    return {buffer, std::to_chars(std::begin(buffer), std::end(buffer), number).ptr};
}

// The largest distance between two curves at some x, and the x where it is.
struct Distance {
    double size = 0.0;
    double x = 0.0;

    void take(const Distance& other)
    {
        if (other.size > size)
            *this = other;
    }
};

// Compares the definition of a curve with the one that was read from its document.
class Comparison {
public:
    Comparison(const Curve& curve, const CurveDefinition& read) : curve_(curve), read_(read)
    {
        try {
            readCurve_ = Curve(read);
        } catch (const CurveError& error) {
            add("", "the document holds no curve: " + error.problems().front().message);
        }
    }

    std::vector<Problem> losses()
    {
        const CurveDefinition& whole = curve_.definition();
        compare("the name", whole.name, read_.name);
        if (whole.over != read_.over || whole.motionResult != read_.motionResult)
            add("", "the motion result " + quoted(whole.motionResult) +
                        (read_.over == Over::MotionResult ? " becomes " + quoted(read_.motionResult)
                         : read_.over == Over::Time       ? " becomes time"
                                                          : " becomes the cycle angle"));
        if (whole.rotary != read_.rotary)
            add("", whole.rotary ? "the document does not say that it is rotary"
                                 : "the document says that it is rotary");
        if (whole.dataType != read_.dataType)
            add("", "the kind of X-Y data becomes another");
        std::visit([&](const auto& shape) { compareShape(shape); }, whole.shape);
        if (count_ > losses_.size())
            add("", std::to_string(count_) + " numbers change in all" + movement(worst_));
        return std::move(losses_);
    }

private:
    void add(std::string place, std::string message)
    {
        losses_.push_back({Problem::Level::Warning, std::move(place), std::move(message)});
    }

    void compare(const char* what, const std::string& whole, const std::string& read)
    {
        if (whole != read)
            add("", std::string(what) + ' ' + quoted(whole) + " becomes " + quoted(read));
    }

    // Reports a number that changes, and how far that moves the curve in these stretches.
    void compare(const std::string& place, const char* what, double whole, double read,
                 std::initializer_list<Range> stretches)
    {
        if (whole == read)
            return;
        Distance distance;
        for (const Range& stretch : stretches)
            distance.take(distanceWithin(stretch));
        worst_.take(distance);
        if (++count_ <= kMostLosses)
            add(place,
                std::string(what) + ' ' + digits(whole) + " becomes " + digits(read) + movement(distance));
    }

    static std::string movement(const Distance& distance)
    {
        if (distance.size == 0.0)
            return "";
        return "; the value moves by up to " + shortNumber(distance.size) + ", at x = " + digits(distance.x);
    }

    Distance distanceWithin(const Range& stretch) const
    {
        constexpr int kSteps = 8;
        Distance distance;
        for (int i = 0; readCurve_ && i <= kSteps; ++i) {
            const double x =
                i == kSteps ? stretch.to : stretch.from + (stretch.to - stretch.from) * i / kSteps;
            distance.take({std::fabs((*readCurve_)(x)-curve_(x)), x});
        }
        return distance;
    }

    void compareShape(const SegmentShape& whole)
    {
        const auto& read = std::get<SegmentShape>(read_.shape);
        LawFinder wholeLaws(whole.laws);
        LawFinder readLaws(read.laws);
        const double firstEnd = whole.rows.front().endX;
        compare("row 0", "start x", whole.startX, read.startX, {{whole.startX, firstEnd}});
        compare("row 0", "start value", whole.startValue, read.startValue, {{whole.startX, firstEnd}});
        double startX = whole.startX;
        for (std::size_t i = 0; i < std::min(whole.rows.size(), read.rows.size()); ++i) {
            const CurveRow& row = whole.rows[i];
            const std::string place = "row " + std::to_string(i + 1);
            compare(place, "end x", row.endX, read.rows[i].endX, {{startX, row.endX}});
            compare(place, "value", row.value, read.rows[i].value, {{startX, row.endX}});
            const bool isSameLaw =
                row.profile.empty() ||
                compareLaw(place, wholeLaws.named(row.profile).law, readLaws.named(read.rows[i].profile).law);
            if (isSameLaw && count_ == 0)
                compareFormula(place, row.profile, {startX, row.endX});
            startX = row.endX;
        }
    }

    // Whether the law stays the same.
    bool compareLaw(const std::string& place, const std::shared_ptr<const Law>& whole,
                    const std::shared_ptr<const Law>& read)
    {
        const bool isSame = read && whole->record.definitionText == read->record.definitionText;
        if (!isSame)
            add(place, "its law " + quoted(whole->text.name) + " becomes another");
        return isSame;
    }

    // A law that joins a number and a digit, as x22 does for the parameter x2, makes another number of
    // 1.000000 than of 1.
    void compareFormula(const std::string& place, const std::string& law, const Range& row)
    {
        const Distance distance = distanceWithin(row);
        if (distance.size > 0.0)
            add(place, "the law " + quoted(law) + " makes another formula of numbers with six decimals" +
                           movement(distance));
    }

    void compareShape(const PointShape& whole)
    {
        const auto& read = std::get<PointShape>(read_.shape);
        if (read.x.size() < whole.x.size())
            add("", std::to_string(whole.x.size() - read.x.size()) + " points are left out");
        for (std::size_t i = 0; i < std::min(whole.x.size(), read.x.size()); ++i) {
            const std::string place = "point " + std::to_string(i + 1);
            const Range before = {whole.x[i == 0 ? 0 : i - 1], whole.x[i]};
            const Range after = {whole.x[i], whole.x[std::min(i + 1, whole.x.size() - 1)]};
            compare(place, "x", whole.x[i], read.x[i], {before, after});
            compare(place, "y", whole.y[i], read.y[i], {before, after});
        }
    }

    void compareShape(const ExpressionShape& whole)
    {
        const auto& read = std::get<ExpressionShape>(read_.shape);
        compare("the expression", whole.text, read.text);
        // The range does not change the value.
        compare("", "the range's start", whole.from, read.from, {});
        compare("", "the range's end", whole.to, read.to, {});
    }

    const Curve& curve_;
    const CurveDefinition& read_;
    std::optional<Curve> readCurve_;  // empty if the document has no curve
    std::vector<Problem> losses_;
    std::size_t count_ = 0;  // of numbers that change
    Distance worst_;
};

}  // namespace

std::vector<Problem> lossesOf(const Curve& curve, const std::string& xml)
{
    ReadSettings settings;
    settings.motionResults = {curve.definition().motionResult};
    std::vector<Problem> warnings;
    try {
        const CurveDefinition read = readDefinitionText(xml, settings, warnings);
        return Comparison(curve, read).losses();
    } catch (const CurveError& error) {
        return {{Problem::Level::Warning, "",
                 "the document cannot be read: " + error.problems().front().message}};
    }
}

}  // namespace mf::curve
