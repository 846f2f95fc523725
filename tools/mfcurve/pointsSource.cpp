// SPDX-License-Identifier: MIT
#include <filesystem>
#include <fmt/format.h>

#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/pointsFile.h"
#include "tools/mfcurve/sources.h"

namespace mfcurve {

namespace {

PointList readPoints(const std::string& path, const ColumnSettings& columns)
{
    try {
        return parsePoints(readInput(path), columns);
    } catch (const TextError& error) {
        throw Failure(kWrong, linePlace(path, error.line()), error.what());
    }
}

}  // namespace

Description describedPoints(const CurveOptions& options)
{
    const std::string& path = *options.pointsFile;
    const PointList list = readPoints(path, options.columns);
    if (list.unsortedLine != 0)
        warn(linePlace(path, list.unsortedLine),
             "x is below that of the previous point; the points are sorted by x");
    if (const auto [first, second] = list.closeLines; second != 0)
        warn(linePlace(path, second),
             fmt::format("x is nearly that of line {}; the curve is nearly vertical between them", first));
    Description description;
    mf::CurveDefinition::Points shape;
    shape.interpolation = options.interpolation.value_or(mf::Interpolation::Linear);
    description.places.emplace_back();
    for (const FilePoint& point : list.points) {
        shape.x.push_back(point.x);
        shape.y.push_back(point.y);
        description.places.push_back(linePlace(path, point.line));
    }
    description.definition.shape = std::move(shape);
    description.definition.name =
        isStandardStream(path) ? "Points" : std::filesystem::path(path).stem().string();
    return description;
}

}  // namespace mfcurve
