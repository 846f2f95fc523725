// SPDX-License-Identifier: MIT

// A host whose user edits a table row by row: the calls after an edit, and how to make a
// constant curve from the edited table.

#include <cstdio>
#include <vector>

#include "mfcurves/mfcurves.h"

namespace {

constexpr int kEndColumn = 1;
constexpr int kValueColumn = 2;

void addRow(mfFunctionSegments_c& table, mfProfileManager_c& profiles, double from, double to, double value)
{
    auto* row = new mfSegment_c(from, to, value, L"Cubic");
    row->setProfileKey(profiles.getProfileKeyFromDisplayName(L"Cubic"));
    table.addSegment(row);  // the table owns it now
}

// Writes the numbers of a row into its formula and samples it, so that it has derivatives.
void bringUpToDate(mfFunctionSegments_c& table, int row)
{
    table.parseExpression(row);
    table.calculateValue(row);
}

// An edit lists the rows whose formulas are out of date.
void edit(mfFunctionSegments_c& table, int row, int column, double endX, double value)
{
    table.modifySegment(row, column, 0.0, endX, value, L"");
    std::vector<int> stale;
    table.getUpdateRow(stale);
    bringUpToDate(table, row);
    for (const int each : stale)
        bringUpToDate(table, each);
}

}  // namespace

int main()
{
    mf::host::Context host;  // everything that the library needs from a host
    QelSession_c::setMotionFunctionContext(&host);

    mfFunctionData_c cam;
    cam.initialize();
    auto& table = *static_cast<mfFunctionSegments_c*>(cam.getFunctionSegments());
    table.setIndependentVar(mf::IndependentVariableType_CycleAngle);
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    addRow(table, host.profileManager(), 0.0, 0.0, 0.0);  // row 0 only states where the curve begins
    addRow(table, host.profileManager(), 0.0, 90.0, 10.0);
    addRow(table, host.profileManager(), 90.0, 180.0, 0.0);
    for (int row = 1; row < table.getSegmentCount(); ++row)
        bringUpToDate(table, row);

    std::printf("half way up: %g\n", cam.evaluate(45.0, 0));
    edit(table, 1, kValueColumn, 0.0, 20.0);
    std::printf("with twice the stroke: %g, and half way down %g\n", cam.evaluate(45.0, 0),
                cam.evaluate(135.0, 0));
    edit(table, 1, kEndColumn, 120.0, 0.0);
    std::printf("with a longer rise: %g, and half way down %g\n", cam.evaluate(60.0, 0),
                cam.evaluate(150.0, 0));

    // A constant copy of the present table; later edits do not change it.
    const mf::Curve frozen = mf::Curve::of(cam);
    edit(table, 1, kValueColumn, 0.0, 30.0);
    std::printf("frozen: %g, edited: %g\n", frozen(60.0), cam.evaluate(60.0, 0));
    return 0;
}
