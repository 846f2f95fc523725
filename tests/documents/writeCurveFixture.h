// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "curveFixture.h"
#include "tests/segments/segmentTables.h"

namespace mf::test {

// Fills the function of a fake host, and looks into the document that it writes.
class WriteCurve : public CurveTest {
protected:
    void addPoint(double x, double y) { points().appendDataPoint(new mfDataPoints_c(new mfPoint2D_c(x, y))); }
    mfSegment_c* addSegment(double startX, double endX, double value, const CString& displayName)
    {
        return &addRow(segments(), manager, startX, endX, value, displayName);
    }
    // The text between the tags of the first element of that name.
    std::string written(const std::string& name)
    {
        const std::string text = write();
        if (text.find("<" + name + "/>") != std::string::npos)
            return "";
        const std::size_t start = text.find("<" + name + ">") + name.size() + 2;
        return text.substr(start, text.find("</" + name + ">") - start);
    }
};

}  // namespace mf::test
