// SPDX-License-Identifier: MIT

// Evaluates one curve of each kind through the installed headers and mf::host, and
// compares it with closed forms. DESIGN_LIBRARY is the folder of the installed design
// library, EXPECTED_VERSION the version of the package.

#include <cmath>
#include <cstdio>
#include <cstring>

#include "mfcurves/mfcurves.h"

namespace {

constexpr double kTolerance = 1e-12;

int failures = 0;

void expect(const char* what, double got, double wanted)
{
    if (std::fabs(got - wanted) <= kTolerance)
        return;
    std::printf("%s: %.17g, not %.17g\n", what, got, wanted);
    ++failures;
}

void addRow(mfFunctionSegments_c& table, mfProfileManager_c& profiles, double start, double end, double value)
{
    auto* segment = new mfSegment_c(start, end, value, L"Cubic");
    segment->setProfileKey(profiles.getProfileKeyFromDisplayName(L"Cubic"));
    table.addSegment(segment);
}

// 3u^2 - 2u^3 from 0 to 10 over [0, 2], u = x / 2.
void trySegments(mf::host::Context& host)
{
    mfFunctionData_c curve;
    curve.initialize();
    auto& table = *static_cast<mfFunctionSegments_c*>(curve.getFunctionSegments());
    addRow(table, *host.getProfileManager(), 0.0, 0.0, 0.0);
    addRow(table, *host.getProfileManager(), 0.0, 2.0, 10.0);
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.parseExpression(1);
    table.calculateValue(1);
    expect("value of a segment", curve.evaluate(0.5, 0), 10.0 * (3.0 / 16.0 - 2.0 / 64.0));
    expect("slope of a segment", curve.evaluate(1.0, 1), 10.0 * 1.5 / 2.0);
}

void tryExpression()
{
    mfFunctionData_c curve;
    curve.initialize();
    curve.setFunctionType(mf::FunctionType_Expression);
    curve.getFunctionExpression()->setMathExpression(L"5*time^2");
    expect("value of an expression", curve.evaluate(3.0, 0), 45.0);
}

void tryPoints()
{
    mfFunctionData_c curve;
    curve.initialize();
    curve.setFunctionType(mf::FunctionType_DataPoints);
    auto& table = *static_cast<mfFunctionDataPoints_c*>(curve.getFunctionDataPoints());
    table.insertDataPoint(0, new mfDataPoints_c(new mfPoint2D_c(0.0, 1.0)));
    table.insertDataPoint(1, new mfDataPoints_c(new mfPoint2D_c(2.0, 5.0)));
    expect("value between points", curve.evaluate(0.5, 0), 2.0);
}

// A law that only the design library has.
void tryDesignLibrary(mf::host::Context& host)
{
    host.services().setDesignLibraryPaths(DESIGN_LIBRARY);
    host.getProfileManager()->rebuildUserProfileMap();
    std::vector<CString> names;
    host.getProfileManager()->getAllProfileNames(names);
    bool found = false;
    for (const CString& name : names)
        found = found || name.Find(L"Modified-Sine") == 0;
    expect("a law of the design library", found ? 1.0 : 0.0, 1.0);
}

void tryVersion()
{
    expect("version of the library", std::strcmp(mf::version(), EXPECTED_VERSION) == 0 ? 1.0 : 0.0, 1.0);
}

}  // namespace

int main()
{
    mf::host::Context host;
    QelSession_c::setMotionFunctionContext(&host);
    host.getProfileManager()->rebuildUserProfileMap();
    trySegments(host);
    tryExpression();
    tryPoints();
    tryDesignLibrary(host);
    tryVersion();
    return failures == 0 ? 0 : 1;
}
