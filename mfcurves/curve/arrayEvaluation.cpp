// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>
#include <limits>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/curve/FrozenCurve.h"

// A curve at many x: runs of x on one piece are computed together.

namespace mf {
namespace curve {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Fewer x are quicker one by one.
constexpr std::size_t kFewestPoints = 4;

// How many x, from the first one on, are at `from` or above it and below `to`.
std::size_t runBetween(const double* x, std::size_t count, double from, double to)
{
    std::size_t length = 0;
    while (length < count && x[length] >= from && x[length] < to)
        ++length;
    return length;
}

// The row that an x belongs to, or would if its ends were not where they are.
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

// What is not finite has no difference from itself.
bool areFinite(const double* values, std::size_t count)
{
    double differences = 0.0;
    for (std::size_t i = 0; i < count; ++i)
        differences += values[i] - values[i];
    return differences == 0.0;
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

}  // namespace

// The row that computes x[0], and how many x from there on are its; no length where another
// rule holds.
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

std::size_t FrozenCurve::evaluateRun(const double* x, std::size_t count, Outside outside, int order,
                                     double* y) const noexcept
{
    const Run run = iRun(x, count, outside);
    if (run.length < kFewestPoints) {
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
        std::fill_n(y, count, std::numeric_limits<double>::quiet_NaN());
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
