// SPDX-License-Identifier: MIT

#include "bench/handwrittenCam.h"

#include <cstddef>

namespace bench {
namespace {

constexpr int kPoints = 100;

template <std::size_t count>
double horner(const std::array<double, count>& c, double u)
{
    double sum = c[count - 1];
    for (std::size_t i = count - 1; i-- > 0;)
        sum = sum * u + c[i];
    return sum;
}

template <std::size_t count>
std::array<double, count - 1> derivative(const std::array<double, count>& c, double perLength)
{
    std::array<double, count - 1> result;
    for (std::size_t i = 1; i < count; ++i)
        result[i - 1] = static_cast<double>(i) * c[i] * perLength;
    return result;
}

}  // namespace

// 3-4-5 polynomial; Norton, Cam Design and Manufacturing Handbook.
CamRow polynomial345(double start, double startValue, double end, double endValue)
{
    const double stroke = endValue - startValue;
    CamRow row{};
    row.start = start;
    row.end = end;
    row.perLength = 1.0 / (end - start);
    row.value = {startValue, 0.0, 0.0, 10.0 * stroke, -15.0 * stroke, 6.0 * stroke};
    row.first = derivative(row.value, row.perLength);
    row.second = derivative(row.first, row.perLength);
    row.third = derivative(row.second, row.perLength);
    return row;
}

HandwrittenCam::HandwrittenCam()
    : rows_{polynomial345(0.0, 0.0, 2.0, 10.0), polynomial345(2.0, 10.0, 3.0, 10.0),
            polynomial345(3.0, 10.0, 5.0, 0.0)}
{
}

inline const CamRow& HandwrittenCam::rowAt(double x) const
{
    std::size_t i = 0;
    while (i + 1 < rows_.size() && x > rows_[i].end)
        ++i;
    return rows_[i];
}

double HandwrittenCam::value(double x) const
{
    const CamRow& row = rowAt(x);
    return horner(row.value, (x - row.start) * row.perLength);
}

Orders HandwrittenCam::orders(double x) const
{
    const CamRow& row = rowAt(x);
    const double u = (x - row.start) * row.perLength;
    return {horner(row.value, u), horner(row.first, u), horner(row.second, u), horner(row.third, u)};
}

CamSamples HandwrittenCam::samples(int number) const
{
    const CamRow& row = rows_[static_cast<std::size_t>(number)];
    CamSamples samples = {std::vector<mfPoint2D_c>(kPoints), std::vector<mfPoint2D_c>(kPoints),
                          std::vector<mfPoint2D_c>(kPoints), std::vector<mfPoint2D_c>(kPoints)};
    const double step = (row.end - row.start) / (kPoints - 1);
    double x = row.start;
    for (std::size_t i = 0; i < kPoints; ++i) {
        if (i == kPoints - 1)
            x = row.end;
        const double u = (x - row.start) * row.perLength;
        samples.value[i] = {x, horner(row.value, u)};
        samples.first[i] = {x, horner(row.first, u)};
        samples.second[i] = {x, horner(row.second, u)};
        samples.third[i] = {x, horner(row.third, u)};
        x += step;
    }
    return samples;
}

}  // namespace bench
