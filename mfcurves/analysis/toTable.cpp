// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>

#include "mfcurves/analysis/analysis.h"
#include "mfcurves/analysis/parts.h"
#include "mfcurves/analysis/tableParts.h"
#include "mfcurves/host/SplinePieces.h"
#include "mfcurves/platform/numbers.h"

namespace mf::analysis {

using engine::Interval;
using engine::kUnbounded;

namespace {

constexpr std::size_t kMostRows = 1'000'000;

double largestOf(const Interval& y)
{
    return y.isFinite() ? y.largest() : kUnbounded;
}

// --- Rows ------------------------------------------------------------------------------

struct Bounds {
    double value = 0.0, d1 = 0.0, d2 = 0.0;

    void include(const Bounds& other)
    {
        value = std::max(value, other.value);
        d1 = std::max(d1, other.d1);
        d2 = std::max(d2, other.d2);
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
// slope h/2 times it.
Bounds chordError(double h, double second)
{
    return {h * h / 8.0 * second, h / 2.0 * second, second};
}

// The error of a quintic with the value, velocity and acceleration of the curve at both ends;
// Birkhoff and Priver, J. Math. and Phys. 46 (1967).
Bounds quinticError(double h, double sixth)
{
    const double h2 = h * h;
    return {h2 * h2 * h2 / 46080.0 * sixth, h2 * h2 * h * (std::sqrt(5.0) / 30000.0) * sixth,
            h2 * h2 / 1920.0 * sixth};
}

// How far a quintic over a length h moves if the values at one end move by a gap, given as magnitudes: sums
// of the largest magnitudes, rounded up, of its three Hermite polynomials there and of their derivatives.
Bounds quinticShift(const CurveValues& gap, double h)
{
    return {gap.y + h * (gap.d1 + h * gap.d2), 2.0 * gap.y / h + gap.d1 + h * gap.d2,
            6.0 * gap.y / (h * h) + 4.0 * gap.d1 / h + gap.d2};
}

// The share of the tolerance for the proved error. The rest is for the rounding of the rows, which
// is added to the bound.
constexpr double kShareForRounding = 0.999;

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
            fitCubic();
        } else {
            for (std::size_t i = 0; i < parts_.size(); ++i)
                walk(i);
        }
        total_ += ownValues();
        table_.bound = total_.value + rounding_;
        const bool quintic = table_.form == Form::Xyva;
        table_.boundD1 = quintic ? total_.d1 : kUnbounded;
        table_.boundD2 = quintic ? total_.d2 : kUnbounded;
        table_.guaranteed &= table_.bound <= tolerance_.value && (!quintic || total_.isWithin(tolerance_));
        // The bounds are of derivatives, which may be 0 also where the curve has no value.
        table_.guaranteed = table_.guaranteed && summarize(curve_)[0].guaranteed;
        return std::move(table_);
    }

private:
    // Appends the rows of a part, each as far from the previous one as the tolerance allows.
    void walk(std::size_t index)
    {
        const Part& part = parts_[index];
        const bool quintic = table_.form == Form::Xyva;
        PartOrders orders = quintic ? PartOrders(part, 4, 4) : PartOrders(part, 0, 4);
        BoxEvaluator values = part.evaluator();
        const CurveValues start = limits(part, values, part.from, Side::Right);
        if (index == 0 || isDoubled(start))
            append(part.from, start);
        const CurveValues gap = gapTo(start);
        double x = part.from;
        double step = part.to - part.from;
        while (x < part.to && table_.x.size() < kMostRows) {
            Bounds bounds;
            const double next = nextRow(orders, part, x, step, bounds);
            if (x == part.from)
                bounds += quintic ? quinticShift(gap, next - x) : Bounds{gap.y, 0.0, 0.0};
            total_.include(bounds);
            append(next, limits(part, values, next, next == part.to ? Side::Left : Side::Plain));
            step = 1.5 * (next - x);
            x = next;
        }
        table_.guaranteed &= x == part.to;
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

    double nextRow(PartOrders& orders, const Part& part, double x, double step, Bounds& bounds)
    {
        constexpr int kMostTries = 30;
        const bool quintic = table_.form == Form::Xyva;
        const double power = quintic ? 1.0 / 6.0 : 1.0 / 2.0;
        const double end = part.to;
        // Once the proof has failed, narrow rows are of no use.
        const double least =
            table_.guaranteed ? 1e-7 * (end - x)
                              : std::max(1e-3 * (end - part.from), 1e-4 * (curve_.lastX() - curve_.firstX()));
        double best = x;
        double h = std::min(step, end - x);
        for (int i = 0; i < kMostTries; ++i) {
            const double to = h >= end - x ? end : x + h;
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
            table_.guaranteed = false;
            best = std::min(end, x + std::max(h, least));
            bounds = errorOver(orders, x, best);
        }
        return best;
    }

    // One-sided values: as computed if the enclosures contain them, else as enclosed.
    CurveValues limits(const Part& part, BoxEvaluator& evaluator, double x, Side side)
    {
        const CurveValues computed = curve_.at(x, side);
        const Enclosures at = evaluator.at(x);
        // A wrong velocity moves the quintic by less than its size times the length of the row, a wrong
        // acceleration by less than its size times the square of that.
        const std::size_t used = table_.form == Form::Xyva ? 3 : 1;
        double rounding = 0.0;
        double reach = 1.0;
        const auto one = [&](std::size_t k) {
            const double y = computed[static_cast<int>(k)];
            if (static_cast<int>(k) > evaluator.highest())
                return y;
            if (k < used && at[k].isFinite())
                rounding += at[k].width() * reach;
            reach *= part.to - part.from;
            return at[k].contains(y) ? y : at[k].middle();
        };
        const CurveValues values{one(0), one(1), one(2), one(3)};
        rounding_ = std::max(rounding_, rounding);
        return values;
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

    // --- Points of the natural cubic spline -------------------------------------------

    // A row and the next one, with what is known of the curve between them.
    struct Cell {
        double from, to;
        std::size_t part;
        Interval start, end;  // values of the curve
        Interval second;      // derivative in the middle
        Interval third;       // derivative over the cell
    };

    static Cell cellOf(double from, double to, std::size_t part, PartOrders& orders)
    {
        const PartOrders::InBox box = orders.in(from, to);
        return {from, to, part, box.from[0], box.to[0], box.middle[2], box.over[3]};
    }

    // Halves cells with too large an error until all are within the tolerance.
    void fitCubic()
    {
        constexpr int kMostRounds = 40;
        std::vector<PartOrders> orders;
        orders.reserve(parts_.size());
        std::vector<Cell> cells;
        for (std::size_t i = 0; i < parts_.size(); ++i) {
            orders.emplace_back(parts_[i], 0, 5);
            if (!appendHalves(parts_[i].from, parts_[i].to, i, orders[i], cells))
                cells.push_back(cellOf(parts_[i].from, parts_[i].to, i, orders[i]));
        }
        for (int round = 0; round < kMostRounds; ++round) {
            std::vector<double> x{cells.front().from};
            for (const Cell& cell : cells)
                x.push_back(cell.to);
            std::vector<double> y(x.size());
            for (std::size_t i = 0; i < x.size(); ++i)
                y[i] = curve_.at(x[i], i + 1 == x.size() ? Side::Left : Side::Right).y;
            const host::SplinePieces spline(x, y, 1);
            std::vector<double> bounds;
            for (std::size_t i = 0; i < cells.size(); ++i)
                bounds.push_back(cubicError(spline.pieces()[i], cells[i]));
            total_ = {*std::ranges::max_element(bounds), 0.0, 0.0};
            std::vector<Cell> finer = halved(cells, bounds, orders);
            table_.x = std::move(x);
            table_.y = std::move(y);
            if (finer.size() == cells.size() || finer.size() > kMostPoints)
                break;
            cells = std::move(finer);
        }
        for (std::size_t i = 0; i < table_.y.size(); ++i)
            rounding_ = std::max(rounding_, 64.0 * 0x1p-53 * std::fabs(table_.y[i]));
    }

    // The cells with those whose bound is too large in halves, as far as that may help. Of cells without a
    // bound some are halved all the same, because the curve may be smooth there.
    std::vector<Cell> halved(const std::vector<Cell>& cells, const std::vector<double>& bounds,
                             std::vector<PartOrders>& orders) const
    {
        constexpr std::ptrdiff_t kMostUnbounded = 1000;
        const bool areUnboundedFew = std::ranges::count(bounds, kUnbounded) <= kMostUnbounded;
        std::vector<Cell> finer;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const Cell& cell = cells[i];
            PartOrders& known = orders[cell.part];
            const bool isOff = bounds[i] > kShareForRounding * tolerance_.value;
            const bool mayHelp = bounds[i] < kUnbounded ? !known.areSpent() : areUnboundedFew;
            if (!(isOff && mayHelp && appendHalves(cell.from, cell.to, cell.part, known, finer)))
                finer.push_back(cell);
        }
        return finer;
    }

    // False, without effect, if there is no x between the two.
    static bool appendHalves(double from, double to, std::size_t part, PartOrders& orders,
                             std::vector<Cell>& cells)
    {
        const double middle = 0.5 * from + 0.5 * to;
        if (middle <= from || middle >= to)
            return false;
        cells.push_back(cellOf(from, middle, part, orders));
        cells.push_back(cellOf(middle, to, part, orders));
        return true;
    }

    // The difference is 0 at both ends, so it is at most h^2/8 times its second derivative. This is
    // at most its value in the middle plus half the length times the third derivative.
    static double cubicError(const host::SplinePiece& piece, const Cell& cell)
    {
        const double h = cell.to - cell.from;
        const double middle = 0.5 * cell.from + 0.5 * cell.to;
        const double t = middle - cell.from;
        const Interval second = cell.second - Interval(2.0 * piece.c + 6.0 * piece.d * t);
        const Interval third = cell.third - Interval(6.0 * piece.d);
        // The cubic meets the curve at both ends except for rounding, unless the value jumps.
        const Interval endError = cell.end - Interval(piece.a + h * (piece.b + h * (piece.c + h * piece.d)));
        const Interval startError = cell.start - Interval(piece.a);
        const double bound = h * h / 8.0 * (largestOf(second) + 0.5 * h * largestOf(third)) +
                             std::max(largestOf(endError), largestOf(startError));
        return std::isnan(bound) ? kUnbounded : bound;
    }

    static constexpr std::size_t kMostPoints = 200'000;
    static constexpr double kFewUlps = 64.0 * 0x1p-52;

    const Curve& curve_;
    Tolerance tolerance_;
    std::vector<Part> parts_;
    CamTable table_;
    Bounds total_;
    double rounding_ = 0.0;  // of the values in the rows
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
