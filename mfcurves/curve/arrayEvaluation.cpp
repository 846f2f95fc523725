// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <numeric>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/curve/FrozenCurve.h"
#include "mfcurves/engine/values.h"

// Evaluates a curve at many x. Successive x on one piece are computed together. Unsorted x are
// first gathered by row, block by block.

namespace mf {
namespace curve {
namespace {

using engine::kNaN;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Fewer x of one row are faster one by one.
constexpr std::size_t kFewestPoints = 4;

// Unsorted x are gathered by row if there are enough of them and the rows are few.
constexpr std::size_t kFewestMixedPoints = 256;
constexpr std::size_t kMostMixedPoints = 4096;
constexpr std::size_t kMostMixedRows = 32;

// The number of x, from the first one on, that are in [from, to). Sixteen are compared at once,
// without a branch in between.
std::size_t runBetween(const double* x, std::size_t count, double from, double to)
{
    constexpr std::size_t kAtOnce = 16;
    std::size_t length = 0;
    for (; length + kAtOnce <= count; length += kAtOnce) {
        std::uint64_t outside = 0;
        for (std::size_t i = length; i < length + kAtOnce; ++i)
            outside |= std::uint64_t{x[i] < from} | std::uint64_t{!(x[i] < to)};
        if (outside != 0)
            break;
    }
    while (length < count && x[length] >= from && x[length] < to)
        ++length;
    return length;
}

// The row that contains an x; for an x beyond the ends, the row at that end.
std::size_t rowAt(const FrozenRows& rows, double x)
{
    if (!(x > rows.starts.first()))
        return 0;
    const std::size_t last = rows.rows.size() - 2;
    return x < rows.starts.last() ? rows.starts.at(x) : last;
}

double finiteOrNaN(double value)
{
    return value - value == 0.0 ? value : kNaN;
}

// The difference of a value from itself is 0 if it is finite, else NaN. Several sums do not wait
// for each other.
bool areFinite(const double* values, std::size_t count)
{
    constexpr std::size_t kSums = 8;
    double differences[kSums] = {};
    std::size_t i = 0;
    for (; i + kSums <= count; i += kSums) {
        for (std::size_t k = 0; k < kSums; ++k)
            differences[k] += values[i + k] - values[i + k];
    }
    for (; i < count; ++i)
        differences[0] += values[i] - values[i];
    return std::accumulate(std::begin(differences), std::end(differences), 0.0) == 0.0;
}

bool areFinite(const CurveValues* values, std::size_t count)
{
    double y = 0.0;
    double d1 = 0.0;
    double d2 = 0.0;
    double d3 = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        y += values[i].y - values[i].y;
        d1 += values[i].d1 - values[i].d1;
        d2 += values[i].d2 - values[i].d2;
        d3 += values[i].d3 - values[i].d3;
    }
    return y + d1 + d2 + d3 == 0.0;
}

// Gathers the x of each row. Calls compute(row, x, places, length) for at most kGathered of them
// at a time, where `places` are their positions in the array, and other(i) for each x beyond the
// ends.
template <class Compute, class Other>
void eachByRow(const FrozenRows& rows, const double* x, std::size_t count, const Compute& compute,
               const Other& other)
{
    constexpr std::size_t kGathered = kMostPoints;
    struct Gathered {
        double x[kGathered];
        std::uint32_t places[kGathered];
    };
    Gathered gathered[kMostMixedRows];
    std::uint32_t lengths[kMostMixedRows] = {};
    const double first = rows.starts.first();
    const double last = rows.starts.last();
    for (std::size_t i = 0; i < count; ++i) {
        if (!(x[i] >= first && x[i] <= last)) {
            other(i);
            continue;
        }
        const std::size_t row = rows.starts.at(x[i]);
        Gathered& own = gathered[row];
        std::uint32_t& length = lengths[row];
        own.x[length] = x[i];
        own.places[length] = static_cast<std::uint32_t>(i);
        if (++length == kGathered) {
            compute(rows.rows[row], own.x, own.places, length);
            length = 0;
        }
    }
    for (std::size_t row = 0; row < rows.rows.size(); ++row)
        compute(rows.rows[row], gathered[row].x, gathered[row].places, lengths[row]);
}

}  // namespace

// The row that computes x[0], and the number of x from there on that it computes; 0 if another
// rule applies to x[0].
FrozenCurve::Run FrozenCurve::iRun(const double* x, std::size_t count, Outside outside) const noexcept
{
    const bool extends = outside == Outside::Extend;
    const double afterEnd = extends ? kInfinity : std::nextafter(lastX_, kInfinity);
    count = std::min(count, kMostPoints);
    if (const auto* expression = std::get_if<FrozenExpression>(&pieces_)) {
        const FrozenRows::Row row = {&kFormulaRow, {.formula = expression->formula.get()}};
        return {row, runBetween(x, count, extends ? -kInfinity : firstX_, afterEnd)};
    }
    const auto* rows = std::get_if<FrozenRows>(&pieces_);
    if (rows == nullptr)
        return {};
    const std::size_t row = rowAt(*rows, x[0]);
    const bool isLast = row + 2 == rows->rows.size();
    const double from = row == 0 && extends ? -kInfinity : rows->starts.knots()[row];
    const double to = isLast ? afterEnd : rows->starts.knots()[row + 1];
    return {rows->rows[row], runBetween(x, count, from, to)};
}

// The rows, if it is worth gathering so many x by row; else null.
const FrozenRows* FrozenCurve::iMixedRows(std::size_t count) const noexcept
{
    const auto* rows = std::get_if<FrozenRows>(&pieces_);
    return rows != nullptr && count >= kFewestMixedPoints && rows->rows.size() <= kMostMixedRows ? rows
                                                                                                 : nullptr;
}

std::size_t FrozenCurve::iEvaluateMixed(const FrozenRows& rows, const double* x, std::size_t count,
                                        Outside outside, int order, double* y) const noexcept
{
    const auto compute = [&](const FrozenRows::Row& row, const double* own, const std::uint32_t* places,
                             std::size_t length) {
        double computed[kMostPoints];
        double* values[4] = {};
        values[order] = computed;
        row.form->block(row.data, own, length, order, order, values);
        if (!areFinite(computed, length))
            std::transform(computed, computed + length, computed, finiteOrNaN);
        for (std::size_t i = 0; i < length; ++i)
            y[places[i]] = computed[i];
    };
    const auto other = [&](std::size_t i) {
        double values[4];
        evaluate(x[i], Side::Plain, outside, order, values);
        y[i] = values[order];
    };
    count = std::min(count, kMostMixedPoints);
    eachByRow(rows, x, count, compute, other);
    return count;
}

std::size_t FrozenCurve::iEvaluateMixed(const FrozenRows& rows, const double* x, std::size_t count,
                                        Outside outside, CurveValues* values) const noexcept
{
    const auto compute = [&](const FrozenRows::Row& row, const double* own, const std::uint32_t* places,
                             std::size_t length) {
        CurveValues computed[kMostPoints];
        row.form->all(row.data, own, length, computed);
        for (std::size_t i = 0; i < length; ++i) {
            const CurveValues& v = computed[i];
            values[places[i]] = {finiteOrNaN(v.y), finiteOrNaN(v.d1), finiteOrNaN(v.d2), finiteOrNaN(v.d3)};
        }
    };
    const auto other = [&](std::size_t i) {
        double at[4];
        evaluate(x[i], Side::Plain, outside, 3, at);
        values[i] = {at[0], at[1], at[2], at[3]};
    };
    count = std::min(count, kMostMixedPoints);
    eachByRow(rows, x, count, compute, other);
    return count;
}

std::size_t FrozenCurve::evaluateRun(const double* x, std::size_t count, Outside outside, int order,
                                     double* y) const noexcept
{
    const Run run = iRun(x, count, outside);
    if (run.length < kFewestPoints) {
        if (const FrozenRows* const rows = iMixedRows(count))
            return iEvaluateMixed(*rows, x, count, outside, order, y);
        double values[4];
        evaluate(x[0], Side::Plain, outside, order, values);
        y[0] = values[order];
        return 1;
    }
    // A derivative of an expression has a value only where all orders below it have one.
    const bool isExpression = std::holds_alternative<FrozenExpression>(pieces_);
    double values[4][kMostPoints];
    double* const rows[4] = {values[0], values[1], values[2], values[3]};
    run.row.form->block(run.row.data, x, run.length, isExpression ? 0 : order, order, rows);
    for (int k = 0; isExpression && k < order; ++k) {
        for (std::size_t i = 0; i < run.length; ++i)
            values[order][i] = values[k][i] - values[k][i] == 0.0 ? values[order][i] : kNaN;
    }
    if (areFinite(values[order], run.length))
        std::copy_n(values[order], run.length, y);
    else
        std::transform(values[order], values[order] + run.length, y, finiteOrNaN);
    return run.length;
}

std::size_t FrozenCurve::evaluateRun(const double* x, std::size_t count, Outside outside,
                                     CurveValues* values) const noexcept
{
    const Run run = iRun(x, count, outside);
    if (run.length < kFewestPoints) {
        if (const FrozenRows* const rows = iMixedRows(count))
            return iEvaluateMixed(*rows, x, count, outside, values);
        double at[4];
        evaluate(x[0], Side::Plain, outside, 3, at);
        values[0] = {at[0], at[1], at[2], at[3]};
        return 1;
    }
    run.row.form->all(run.row.data, x, run.length, values);
    if (areFinite(values, run.length))
        return run.length;
    const bool isExpression = std::holds_alternative<FrozenExpression>(pieces_);
    for (std::size_t i = 0; i < run.length; ++i) {
        CurveValues& v = values[i];
        v = {finiteOrNaN(v.y), finiteOrNaN(v.d1), finiteOrNaN(v.d2), finiteOrNaN(v.d3)};
        if (isExpression) {
            v.d1 = std::isnan(v.y) ? kNaN : v.d1;
            v.d2 = std::isnan(v.d1) ? kNaN : v.d2;
            v.d3 = std::isnan(v.d2) ? kNaN : v.d3;
        }
    }
    return run.length;
}

}  // namespace curve

void Curve::evaluate(const double* x, std::size_t count, int order, double* y) const noexcept
{
    if (order < 0 || order > 3) {
        std::fill_n(y, count, engine::kNaN);
        return;
    }
    for (std::size_t done = 0; done < count;)
        done += frozen_->evaluateRun(x + done, count - done, outside_, order, y + done);
}

void Curve::evaluate(const double* x, std::size_t count, CurveValues* values) const noexcept
{
    for (std::size_t done = 0; done < count;)
        done += frozen_->evaluateRun(x + done, count - done, outside_, values + done);
}

}  // namespace mf
