// SPDX-License-Identifier: MIT

#include "bench/handwrittenCurves.h"

#include <algorithm>
#include <utility>

namespace bench {
namespace {

template <std::size_t count>
double horner(const std::array<double, count>& c, double u)
{
    double sum = c[count - 1];
    for (std::size_t i = count - 1; i-- > 0;)
        sum = sum * u + c[i];
    return sum;
}

Orders ordersOf(const CamRow& row, double x)
{
    const double u = (x - row.start) * row.perLength;
    return {horner(row.value, u), horner(row.first, u), horner(row.second, u), horner(row.third, u)};
}

class Polynomial345 final : public HandwrittenLaw {
public:
    explicit Polynomial345(const CamRow& row) : row_(row) {}
    double value(double x) const override { return horner(row_.value, (x - row_.start) * row_.perLength); }
    Orders orders(double x) const override { return ordersOf(row_, x); }

private:
    CamRow row_;
};

// The last of `count` ascending starts that is not above x, without a branch.
std::size_t lastNotAbove(const double* starts, std::size_t count, double x)
{
    const double* base = starts;
    while (count > 1) {
        const std::size_t half = count / 2;
        base = base[half] <= x ? base + half : base;
        count -= half;
    }
    return static_cast<std::size_t>(base - starts);
}

}  // namespace

HandwrittenLaw::~HandwrittenLaw() = default;

HandwrittenTable::HandwrittenTable(double length, const std::vector<double>& values)
{
    for (std::size_t i = 0; i + 1 < values.size(); ++i) {
        const double start = length * static_cast<double>(i);
        rows_.push_back(polynomial345(start, values[i], start + length, values[i + 1]));
        starts_.push_back(start);
        laws_.push_back(std::make_unique<Polynomial345>(rows_.back()));
    }
}

const HandwrittenLaw& HandwrittenTable::lawAt(double x) const
{
    return *laws_[lastNotAbove(starts_.data(), starts_.size(), x)];
}

void HandwrittenTable::orders(const double* x, std::size_t count, Orders* orders) const
{
    std::size_t i = 0;
    for (const CamRow& row : rows_) {
        const bool isLast = &row == &rows_.back();
        for (; i < count && (x[i] < row.end || isLast); ++i)
            orders[i] = ordersOf(row, x[i]);
    }
}

HandwrittenSpline::HandwrittenSpline(std::vector<double> x, std::vector<Piece> pieces)
    : x_(std::move(x)), pieces_(std::move(pieces))
{
}

Orders HandwrittenSpline::orders(double x) const
{
    const std::size_t i = lastNotAbove(x_.data(), x_.size(), x);
    const Piece& p = pieces_[i];
    const double t = x - x_[i];
    return {p.a + t * (p.b + t * (p.c + t * p.d)), p.b + t * (2.0 * p.c + t * (3.0 * p.d)),
            2.0 * p.c + t * (6.0 * p.d), 6.0 * p.d};
}

void generalOrders(const double* x, std::size_t count, Orders* orders)
{
    for (std::size_t i = 0; i < count; ++i)
        orders[i] = kGeneral.orders(x[i]);
}

}  // namespace bench
