// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>

#include "mfcurves/analysis/analysis.h"
#include "mfcurves/analysis/cubicFit.h"
#include "mfcurves/analysis/parts.h"
#include "mfcurves/analysis/tableParts.h"
#include "mfcurves/platform/numbers.h"

namespace mf::analysis {

using engine::kUnbounded;

namespace {

constexpr std::size_t kMostRows = 1'000'000;

// --- Rows ------------------------------------------------------------------------------

struct Bounds {
    double value = 0.0, d1 = 0.0, d2 = 0.0;

    void include(const Bounds& other)
    {
        value = larger(value, other.value);
        d1 = larger(d1, other.d1);
        d2 = larger(d2, other.d2);
    }
    Bounds& operator+=(const Bounds& other)
    {
        value += other.value;
        d1 += other.d1;
        d2 += other.d2;
        return *this;
    }
    bool isWithin(const Tolerance& t) const { return value <= t.value && d1 <= t.d1 && d2 <= t.d2; }
    // The largest ratio of a bound to its tolerance; at most 1 if all are within.
    double excess(const Tolerance& t) const { return std::max({value / t.value, d1 / t.d1, d2 / t.d2}); }
};

// The error of a chord over a length h is at most h^2/8 times the second derivative, that of its
// slope h/2 times it. Here and below, the derivative comes before the powers of h, which may underflow.
Bounds chordError(double h, double second)
{
    return {h * second * h / 8.0, h * second / 2.0, second};
}

// The error of a quintic with the value, velocity and acceleration of the curve at both ends;
// Birkhoff and Priver, J. Math. and Phys. 46 (1967).
Bounds quinticError(double h, double sixth)
{
    const double h4 = sixth * h * h * h * h;
    return {h4 * h * h / 46080.0, h4 * h * (std::sqrt(5.0) / 30000.0), h4 / 1920.0};
}

// How far a quintic over a length h moves if the values at one end move by a gap, given as magnitudes: sums
// of the largest magnitudes, rounded up, of its three Hermite polynomials there and of their derivatives.
Bounds quinticShift(const CurveValues& gap, double h)
{
    return {gap.y + h * (gap.d1 + h * gap.d2), 2.0 * gap.y / h + gap.d1 + h * gap.d2,
            6.0 * gap.y / h / h + 4.0 * gap.d1 / h + gap.d2};
}

class TableMaker {
public:
    TableMaker(const Curve& curve, Form form, const Tolerance& tolerance)
        : curve_(curve), tolerance_(tolerance), parts_(smoothParts(curve))
    {
        table_.form = form;
        table_.guaranteed = true;
    }

    CamTable run()
    {
        if (parts_.empty()) {
            append(curve_.firstX(), curve_.at(curve_.firstX(), Side::Right));
        } else if (table_.form == Form::Points) {
            CubicFit fit = fitCubic(curve_, parts_, tolerance_.value);
            table_.x = std::move(fit.x);
            table_.y = std::move(fit.y);
            total_.value = fit.bound;
        } else {
            for (std::size_t i = 0; i < parts_.size(); ++i)
                walk(i);
        }
        total_ += ownValues();
        table_.bound = total_.value;
        const bool quintic = table_.form == Form::Xyva;
        table_.boundD1 = quintic ? total_.d1 : kUnbounded;
        table_.boundD2 = quintic ? total_.d2 : kUnbounded;
        table_.guaranteed &= table_.bound < kUnbounded && table_.bound <= tolerance_.value &&
                             (!quintic || total_.isWithin(tolerance_));
        // The bounds are of derivatives, which may be 0 also where the curve has no value.
        table_.guaranteed = table_.guaranteed && summarize(curve_)[0].guaranteed;
        return std::move(table_);
    }

private:
    // Values of a row, which are limits from one side, and how far they may be from the exact ones.
    struct Row {
        CurveValues values;
        CurveValues errors;
    };

    // Appends the rows of a part, each as far from the previous one as the tolerance allows.
    void walk(std::size_t index)
    {
        const Part& part = parts_[index];
        const bool quintic = table_.form == Form::Xyva;
        PartOrders orders = quintic ? PartOrders(part, 4, 4) : PartOrders(part, 0, 4);
        BoxEvaluator evaluator = part.evaluator();
        Row start = limits(evaluator, part.from, Side::Right);
        if (index == 0 || isDoubled(start.values))
            append(part.from, start.values);
        else
            start.errors = sum(start.errors, gapTo(start.values));
        double x = part.from;
        double step = part.to - part.from;
        bool isProved = true;
        while (x < part.to) {
            Bounds bounds;
            const double next = nextRow(orders, part, x, step, isProved, bounds);
            const Row end = limits(evaluator, next, next == part.to ? Side::Left : Side::Plain);
            bounds += shift(start.errors, next - x);
            bounds += shift(end.errors, next - x);
            total_.include(bounds);
            append(next, end.values);
            step = 1.5 * (next - x);
            x = next;
            start = end;
        }
        table_.guaranteed &= isProved;
    }

    static CurveValues sum(const CurveValues& a, const CurveValues& b)
    {
        return {a.y + b.y, a.d1 + b.d1, a.d2 + b.d2, 0.0};
    }

    // How far the rows' course over a length h moves with the values at one end.
    Bounds shift(const CurveValues& errors, double h) const
    {
        return table_.form == Form::Xyva ? quinticShift(errors, h) : Bounds{errors.y, 0.0, 0.0};
    }

    // How far values that the formula has of its own inside a part, as if(x^2: 0, 1, 0) has at 0, are from
    // its smooth course. Values at the ends of a part do not count: there the row has the limit from one
    // side.
    Bounds ownValues() const
    {
        Bounds farthest;
        for (const Part& part : parts_)
            farthest.include(ownValues(part));
        return farthest;
    }

    static Bounds ownValues(const Part& part)
    {
        std::vector<Range> boxes;
        for (Range box : undecidedBoxes(*part.piece)) {
            box = {std::max(box.from, part.from), std::min(box.to, part.to)};
            const bool isAtEnd = box.from == part.from || box.to == part.to;
            const double few = kFewUlps * std::max(std::fabs(box.from), std::fabs(box.to));
            if (box.from <= box.to && !(isAtEnd && box.to - box.from <= few))
                boxes.push_back(box);
        }
        if (boxes.empty())
            return {};
        Budget budget(kOperationsPerPiece);
        FormulaGraph& formula = part.piece->formula();
        BoxEvaluator whole(formula.graph(), formula.orders(), budget);
        BoxEvaluator smooth(formula.graph(), part.smooth().orders, budget);
        Bounds farthest;
        for (const Range& box : boxes) {
            if (budget.isSpent())
                return {kUnbounded, kUnbounded, kUnbounded};
            const Enclosures own = whole.plainly(box.from, box.to);
            const Enclosures course = smooth.plainly(box.from, box.to);
            const auto distance = [&](std::size_t k) { return largestOf(own[k] - course[k]); };
            farthest.include({distance(0), distance(1), distance(2)});
        }
        return farthest;
    }

    Bounds errorOver(PartOrders& orders, double from, double to) const
    {
        const double size = largestOf(orders.in(from, to).over[2]);
        return table_.form == Form::Xyva ? quinticError(to - from, size) : chordError(to - from, size);
    }

    // The end of the next row; unproved if none is within the tolerance. Once the proof of a part has failed,
    // narrow rows are of no use: a thousand follow, or ten thousand in the whole table.
    double nextRow(PartOrders& orders, const Part& part, double x, double step, bool& isProved,
                   Bounds& bounds) const
    {
        constexpr int kMostTries = 30;
        const bool quintic = table_.form == Form::Xyva;
        const double power = quintic ? 1.0 / 6.0 : 1.0 / 2.0;
        const double end = part.to;
        const double least =
            isProved ? 1e-7 * (end - x)
                     : std::max(1e-3 * (end - part.from), 1e-4 * (curve_.lastX() - curve_.firstX()));
        double best = x;
        double h = std::min(step, end - x);
        const bool isFull = table_.x.size() >= kMostRows;
        for (int i = 0; i < kMostTries && !isFull; ++i) {
            const double to = h >= end - x ? end : x + h;
            if (to <= x)
                break;
            const Bounds found = errorOver(orders, x, to);
            const double excess =
                (quintic ? found.excess(tolerance_) : found.value / tolerance_.value) / kShareForRounding;
            if (excess <= 1.0) {
                best = to;
                bounds = found;
                if (to == end || excess > 0.9)
                    return best;
            } else if (best > x) {
                return best;
            } else if (h < least) {
                break;
            }
            const double factor = excess > 0.0 ? std::pow(0.98 / excess, power) : 2.0;
            h *= std::isfinite(excess) ? std::clamp(factor, 0.1, 4.0) : 0.25;
        }
        if (best == x) {
            isProved = false;
            best = isFull ? end : std::min(end, std::max(x + std::max(h, least), std::nextafter(x, end)));
            bounds = errorOver(orders, x, best);
        }
        return best;
    }

    // The values are as computed if the enclosures contain them, else as enclosed.
    Row limits(BoxEvaluator& evaluator, double x, Side side) const
    {
        const CurveValues computed = curve_.at(x, side);
        const Enclosures at = evaluator.at(x);
        const auto value = [&](std::size_t k) {
            const double y = computed[static_cast<int>(k)];
            const bool isKnown = static_cast<int>(k) <= evaluator.highest() && !at[k].contains(y);
            return isKnown ? at[k].middle() : y;
        };
        const auto error = [&](std::size_t k) {
            const bool isKnown = static_cast<int>(k) <= evaluator.highest() && at[k].isFinite();
            return isKnown ? at[k].width() : kUnbounded;
        };
        return {{value(0), value(1), value(2), value(3)}, {error(0), error(1), error(2), 0.0}};
    }

    // From the last row to the start of a part, in whose place the row is unless it is doubled.
    CurveValues gapTo(const CurveValues& start) const
    {
        const auto between = [](double a, double b) {
            const double gap = std::fabs(a - b);
            return std::isfinite(gap) ? gap : kUnbounded;
        };
        CurveValues gap{between(start.y, table_.y.back()), 0.0, 0.0, 0.0};
        if (table_.form == Form::Xyva) {
            gap.d1 = between(start.d1, table_.d1.back());
            gap.d2 = between(start.d2, table_.d2.back());
        }
        return gap;
    }

    // Whether the part begins with values other than those at the end of the previous part.
    bool isDoubled(const CurveValues& start) const
    {
        const auto differs = [](double a, double b, double size) {
            return std::fabs(a - b) > 1e-9 * std::max({std::fabs(a), std::fabs(b), size});
        };
        const double h = table_.x.size() > 1 ? table_.x.back() - table_.x[table_.x.size() - 2] : 0.0;
        const double size = tolerance_.value / 1e-3;  // moves the quintic by a part of the tolerance
        if (differs(table_.y.back(), start.y, size))
            return true;
        return table_.form == Form::Xyva && h > 0.0 &&
               (differs(table_.d1.back(), start.d1, size / h) ||
                differs(table_.d2.back(), start.d2, size / (h * h)));
    }

    void append(double x, const CurveValues& values)
    {
        table_.x.push_back(x);
        table_.y.push_back(values.y);
        if (table_.form != Form::Xyva)
            return;
        table_.d1.push_back(values.d1);
        table_.d2.push_back(values.d2);
    }

    static constexpr double kFewUlps = 64.0 * 0x1p-52;

    const Curve& curve_;
    Tolerance tolerance_;
    std::vector<Part> parts_;
    CamTable table_;
    Bounds total_;
};

void refuse(const std::string& message)
{
    throw CurveError({{Problem::Level::Error, "", message}});
}

void check(const char* what, double tolerance)
{
    if (!(tolerance > 0.0)) {
        refuse(std::string("the tolerance of ") + what + " is " + platform::formatNumber("%.10g", tolerance) +
               ", expected a positive number");
    }
}

}  // namespace

CamTable toTable(const Curve& curve, Form form, const Tolerance& tolerance)
{
    check("the value", tolerance.value);
    check("the first derivative", tolerance.d1);
    check("the second derivative", tolerance.d2);
    if (form != Form::Xyva && (std::isfinite(tolerance.d1) || std::isfinite(tolerance.d2)))
        refuse("tolerances of derivatives are for tables of x, y, v and a, found another form");
    return TableMaker(curve, form, tolerance).run();
}

}  // namespace mf::analysis
