// The cam of the README: a rise, a dwell, a return and a dwell over one turn of
// the cam shaft. Prints value and three derivatives at the middle of the rise.

#include <cmath>
#include <cstdio>

#include "mfcurves/mfcurves.h"

int main()
{
    // README begins
    mf::host::Context host;  // everything the library asks of a host
    QelSession_c::setMotionFunctionContext(&host);
    mfProfileManager_c& profiles = *host.getProfileManager();
    profiles.rebuildUserProfileMap();

    mfFunctionData_c cam;
    cam.initialize();
    auto& rows = *static_cast<mfFunctionSegments_c*>(cam.getFunctionSegments());
    rows.setIndependentVar(mf::IndependentVariableType_CycleAngle);
    rows.setMotorDependentVar(mf::MotorDriveType_Displacment);
    const auto add = [&](double from, double to, double value, const wchar_t* profile) {
        auto* row = new mfSegment_c(from, to, value, profile);
        row->setProfileKey(profiles.getProfileKeyFromDisplayName(profile));
        rows.addSegment(row);  // which owns it now
    };
    add(0, 0, 0, L"3-4-5-Polynomial");  // the first row only states where the curve begins
    add(0, 90, 25, L"3-4-5-Polynomial");
    add(90, 150, 25, L"3-4-5-Polynomial");
    add(150, 240, 0, L"4-5-6-7-Polynomial");
    add(240, 360, 0, L"4-5-6-7-Polynomial");
    for (int row = 1; row < rows.getSegmentCount(); ++row) {
        rows.parseExpression(row);  // numbers into the profile's formula
        rows.calculateValue(row);   // plotting arrays, and derivatives from now on
    }
    for (int order = 0; order <= 3; ++order)
        std::printf("%g\n", cam.evaluate(45, order));
    // README ends

    // Half way up the 3-4-5 polynomial: half the stroke, 15/8 of the mean slope.
    const bool isRight = std::fabs(cam.evaluate(45, 0) - 12.5) < 1e-12 &&
                         std::fabs(cam.evaluate(45, 1) - 15.0 / 8.0 * 25.0 / 90.0) < 1e-12;
    return isRight ? 0 : 1;
}
