// Any text may be refused as a list of points, none may crash. What is taken stands
// in ascending x, is finite, and written out reads back as the same points.

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "tools/mfcurve/pointsFile.h"

namespace {

constexpr std::size_t kLongestText = 4096;  // longer texts find nothing new, slowly

void require(bool holds)
{
    if (!holds)
        std::abort();
}

std::string written(const std::vector<mfcurve::FilePoint>& points)
{
    std::string text;
    char line[80];
    for (const mfcurve::FilePoint& point : points) {
        std::snprintf(line, sizeof line, "%.17g;%.17g\n", point.x, point.y);
        text += line;
    }
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > kLongestText)
        return 0;

    const auto result = mfcurve::parsePoints({reinterpret_cast<const char*>(data), size});
    const auto* points = std::get_if<std::vector<mfcurve::FilePoint>>(&result);
    if (points == nullptr) {
        require(!std::get<mfcurve::PointsProblem>(result).message.empty());
        return 0;
    }
    require(!points->empty());
    for (std::size_t i = 0; i < points->size(); ++i) {
        const mfcurve::FilePoint& point = (*points)[i];
        require(std::isfinite(point.x) && std::isfinite(point.y) && point.line > 0);
        require(i == 0 || (*points)[i - 1].x < point.x);
    }

    const auto again = mfcurve::parsePoints(written(*points));
    const auto& same = std::get<std::vector<mfcurve::FilePoint>>(again);
    require(same.size() == points->size());
    for (std::size_t i = 0; i < same.size(); ++i)
        require(same[i].x == (*points)[i].x && same[i].y == (*points)[i].y);
    return 0;
}
