// SPDX-License-Identifier: MIT
#include "tools/mfcurve/pointsFile.h"

#include <algorithm>
#include <fmt/format.h>

#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

const ColumnForm& pointForm()
{
    static const ColumnForm form{{"x", "y"},
                                 {"x", "value"},
                                 "a point is \"x, y\", two finite numbers such as \"0.25, -1.5e3\"",
                                 "; --csv-columns chooses among more, such as 2,3",
                                 {}};
    return form;
}

bool isBelow(const FilePoint& a, const FilePoint& b)
{
    return a.x < b.x;
}

void sortPoints(PointList& list)
{
    std::vector<FilePoint>& points = list.points;
    const auto unsorted = std::is_sorted_until(points.begin(), points.end(), isBelow);
    if (unsorted != points.end())
        list.unsortedLine = unsorted->line;
    std::stable_sort(unsorted == points.end() ? points.end() : points.begin(), points.end(), isBelow);
    const auto same = std::adjacent_find(points.begin(), points.end(),
                                         [](const FilePoint& a, const FilePoint& b) { return a.x == b.x; });
    if (same != points.end())
        throw TextError(std::next(same)->line,
                        fmt::format("the x {} is in line {} already; a curve has one y at each x",
                                    numberText(same->x), same->line));
}

// The lines of the first two points that are nearer to each other than a millionth of the mean
// distance. They are mostly one point, rounded in two ways.
std::pair<int, int> linesOfClosePoints(const std::vector<FilePoint>& points)
{
    constexpr double kShare = 1e-6;
    const auto count = static_cast<double>(points.size());
    const double least = kShare * (points.back().x / count - points.front().x / count);
    const auto close =
        std::adjacent_find(points.begin(), points.end(),
                           [&](const FilePoint& a, const FilePoint& b) { return b.x - a.x < least; });
    if (close == points.end())
        return {0, 0};
    return {close->line, std::next(close)->line};
}

}  // namespace

PointList parsePoints(std::string_view bytes, const ColumnSettings& settings)
{
    ColumnText text(bytes, pointForm(), settings);
    PointList list;
    list.points.reserve(text.lines().size());
    for (const ColumnLine& line : text.lines())
        list.points.push_back({text.number(line, 0), text.number(line, 1), line.number});
    if (list.points.empty())
        throw TextError(0, "there are no points; " + pointForm().expected);
    sortPoints(list);
    list.closeLines = linesOfClosePoints(list.points);
    return list;
}

}  // namespace mfcurve
