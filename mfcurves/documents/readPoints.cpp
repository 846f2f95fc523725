// SPDX-License-Identifier: MIT

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "mfcurves/documents/formatTexts.h"
#include "mfcurves/documents/readState.h"
#include "mfcurves/documents/readTables.h"
#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"

namespace mf::documents {
namespace {

// Children are identified by position, not by name: x at even positions, y at odd ones.
// A last x without a y is dropped.
std::unique_ptr<mfDataPoints_c> readPoint(ReadState& reading, const XmlNode& node, int row)
{
    auto points = std::make_unique<mfDataPoints_c>();
    double x = 0.0;
    double y = 0.0;
    int position = 0;
    for (XmlNode child = node.firstChild(); child; child = child.nextSibling(), ++position) {
        const bool isY = position % 2 == 1;
        const auto where = [&] { return std::pair(pointPlace(row), std::string(isY ? "\"y\"" : "\"x\"")); };
        if (child.isElement())
            (isY ? y : x) = reading.number(child, where);
        if (isY)
            points->addPoint(x, y);
    }
    if (position == 0 || position % 2 == 1)
        reading.remark(pointPlace(row), "it does not hold pairs of x and y");
    return points;
}

// Each row is inserted at its index in the document. If the table has left out a row,
// the indices of all later rows are outside the table, so they are left out too.
void insertRow(ReadState& reading, mfFunctionDataPoints_c& function, int row,
               std::unique_ptr<mfDataPoints_c> points)
{
    const double x = points->getX(0);
    if (row == function.getDataPointsCount())
        function.appendDataPoint(points.get());
    else
        function.insertDataPoint(row, points.get());
    if (row >= function.getDataPointsCount())
        return reading.remark(pointPlace(row), "it has no place after the previous ones and is left out");
    const double storedX = points.release()->getX(0);  // the table owns it
    if (storedX != x)
        reading.remark(pointPlace(row), "its x is " + shortNumber(x) +
                                            ", which is not above the previous point's; it becomes " +
                                            shortNumber(storedX));
}

}  // namespace

bool readPoints(ReadState& reading, mfFunctionDataPoints_c& function)
{
    CString interpolation;
    if (!reading.text("//Curve//Interpolation", interpolation))
        return false;
    if (const auto type = kInterpolationTypes.numberOf(interpolation))
        function.setInterpolationType(static_cast<DataPointInterpolationType_e>(*type));
    else if (!interpolation.IsEmpty())
        reading.remark("", "\"Interpolation\" is " + quoted(interpolation) + ", which is none of " +
                               kInterpolationTypes.list());
    if (!reading.singleNode("//Curve//PointCount"))
        return false;
    const std::vector<XmlNode> nodes = reading.xml().selectNodes("//Curve//Points//Point");
    int row = 0;
    for (const XmlNode& node : nodes) {
        reading.tellRow(static_cast<std::size_t>(row), nodes.size());
        insertRow(reading, function, row, readPoint(reading, node, row));
        ++row;
    }
    function.RegenSplineData();
    function.calculateValue();
    return true;
}

}  // namespace mf::documents
