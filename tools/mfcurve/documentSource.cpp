#include "mfcurves/documents/readCurve.h"
#include "tools/mfcurve/curveSource.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

using mf::documents::ReadOutcome;

ReadOutcome readFile(mfFunctionData_c& function, const std::string& path)
{
    // A file has to fit the function, and most are for motors.
    function.setMotionObjectType(mf::MotionObjectType_Motor);
    ReadOutcome outcome = mf::documents::readCurve(function, toCString(path), false, "");
    if (outcome.objectType == mf::MotionObjectType_None || outcome.objectType == mf::MotionObjectType_Motor)
        return outcome;
    function.setMotionObjectType(outcome.objectType);
    return mf::documents::readCurve(function, toCString(path), false, "");
}

}  // namespace

Curve readDocument(const std::string& path)
{
    Curve curve(mf::FunctionType_Segments);  // the document replaces the kind by its own
    const ReadOutcome outcome = isStandardStream(path)
                                    ? mf::documents::readCurve(curve.function(), "", true, readInput(path))
                                    : readFile(curve.function(), path);
    if (!outcome.reason.empty())
        throw Failure(kFailed, (isStandardStream(path) ? "standard input" : path) + ": " + outcome.reason);
    curve.setTitle(toUtf8(curve.function().getName()));
    return curve;
}

}  // namespace mfcurve
