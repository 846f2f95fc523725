// SPDX-License-Identifier: MIT
#include "mfcurves/drawing/path.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <utility>

namespace mf::drawing {

namespace {

constexpr double kFlatness = 0.1;  // pixels

// How far p is from the line between a and b.
double distance(const Point& p, const Point& a, const Point& b)
{
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double length = std::hypot(dx, dy);
    if (length == 0.0)
        return std::hypot(p.x - a.x, p.y - a.y);
    return std::fabs(dx * (p.y - a.y) - dy * (p.x - a.x)) / length;
}

double rounded(double length)
{
    const double hundredths = std::round(length * 100.0) / 100.0;
    return hundredths == 0.0 ? 0.0 : hundredths;
}

}  // namespace

Line thinned(const Line& line, double from, double to, std::size_t columns)
{
    if (line.size() <= 4 * columns)
        return line;
    const auto columnOf = [&](const Point& point) {
        return std::floor((point.x - from) / (to - from) * static_cast<double>(columns));
    };
    const auto lower = [](const Point& a, const Point& b) { return a.y < b.y; };
    Line result;
    for (auto first = line.begin(); first != line.end();) {
        const auto end = std::find_if(
            first, line.end(), [&](const Point& point) { return columnOf(point) != columnOf(*first); });
        const auto [low, high] = std::minmax_element(first, end, lower);
        result.insert(result.end(), {*first, *std::min(low, high), *std::max(low, high), *(end - 1)});
        first = end;
    }
    return result;
}

// Douglas and Peucker, Cartographica 10 (1973): keeps the farthest point of each stretch, until all are near.
Line simplified(const Line& line)
{
    if (line.size() < 3)
        return line;
    std::vector<bool> stays(line.size(), false);
    stays.front() = stays.back() = true;
    std::vector<std::pair<std::size_t, std::size_t>> stretches{{0, line.size() - 1}};
    while (!stretches.empty()) {
        const auto [first, last] = stretches.back();
        stretches.pop_back();
        double most = kFlatness;
        std::size_t farthest = first;
        for (std::size_t i = first + 1; i < last; ++i) {
            const double away = distance(line[i], line[first], line[last]);
            if (away > most) {
                most = away;
                farthest = i;
            }
        }
        if (farthest == first)
            continue;
        stays[farthest] = true;
        stretches.emplace_back(first, farthest);
        stretches.emplace_back(farthest, last);
    }
    Line result;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (stays[i])
            result.push_back(line[i]);
    }
    return result;
}

std::string pathData(const Line& line)
{
    fmt::memory_buffer data;
    char letter = 'M';
    for (const Point& point : line)
        fmt::format_to(fmt::appender(data), "{}{} {}", std::exchange(letter, 'L'), rounded(point.x),
                       rounded(point.y));
    return fmt::to_string(data);
}

std::string pixels(double length)
{
    return fmt::format("{}", rounded(length));
}

}  // namespace mf::drawing
