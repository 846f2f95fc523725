// SPDX-License-Identifier: MIT

#include "tools/mfcurve/curveSource.h"

#include <filesystem>
#include <optional>
#include <utility>
#include <variant>

#include "mfcurves/documents/readCurve.h"
#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/interfaces/QelSession.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tools/mfcurve/expressionProblem.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/host.h"
#include "tools/mfcurve/pointsFile.h"
#include "tools/mfcurve/problems.h"
#include "tools/mfcurve/rowList.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

struct Drive {
    const char* name;
    mf::MotionObjectType_e object;
    mf::MotorDriveType_e motor;
    mf::ForceTorqueType_e force;
    mf::MotFuncXYDataType_e dataType;
};

constexpr Drive kDrives[] = {
    {"displacement", mf::MotionObjectType_Motor, mf::MotorDriveType_Displacment, mf::ForceTorqueType_None,
     mf::MfXY_Disp_LinMotor},
    {"velocity", mf::MotionObjectType_Motor, mf::MotorDriveType_Velocity, mf::ForceTorqueType_None,
     mf::MfXY_Vel_LinMotor},
    {"acceleration", mf::MotionObjectType_Motor, mf::MotorDriveType_Acceleration, mf::ForceTorqueType_None,
     mf::MfXY_Acc_LinMotor},
    {"force", mf::MotionObjectType_Force, mf::MotorDriveType_None, mf::ForceTorqueType_Force, mf::MfXY_Force},
    {"torque", mf::MotionObjectType_Torque, mf::MotorDriveType_None, mf::ForceTorqueType_Torque,
     mf::MfXY_Torque},
};

const Drive& driveOf(const CurveOptions& options)
{
    for (const Drive& drive : kDrives) {
        if (options.drive == drive.name)
            return drive;
    }
    return kDrives[0];
}

// Clears nothing, so it comes after the content.
void setDrive(Curve& curve, const CurveOptions& options)
{
    const Drive& drive = driveOf(options);
    curve.function().setMotionObjectType(drive.object);
    curve.function().setXYDataType(drive.dataType);
    curve.base().motionObjectType = drive.object == mf::MotionObjectType_Motor ? 0 : 1;
    curve.base().motorDependentVar = drive.motor;
    curve.base().forceTorqueDependentVar = drive.force;
    if (curve.kind() != mf::FunctionType_Expression)
        curve.base().independentVar = options.variable == "angle" ? mf::IndependentVariableType_CycleAngle
                                                                  : mf::IndependentVariableType_Time;
}

// What X stands for follows from the name in the text; a name of its own, such as
// x, counts as the time.
CString variableText(const CString& expression)
{
    MotionMEParser parser;
    parser.parse(expression, nullptr, nullptr);
    const MMEP_WString& parameter = parser.getParam(0);
    if (parameter.isCycleAngle())
        return parameter.text;
    if (!parameter.isResultObject())
        return {};
    CString name = parameter.text;
    name.TrimLeft(L'{');
    name.TrimRight(L'}');
    return name;
}

Curve expressionCurve(const CurveOptions& options)
{
    const CString text = toCString(options.expression);
    if (const auto problem = expressionProblem(text))
        throw Failure(kWrong, *problem);
    Curve curve(mf::FunctionType_Expression);
    mfFunctionExpression_c& expression = curve.expression();
    expression.setMathExpression(text);
    expression.setIndepVar(variableText(text));
    if (!options.from.empty() && !options.to.empty()) {
        const Range range = chosenRange(options, {0.0, 0.0});
        expression.setDomain(range.from, range.to);
    }
    // Without a text to sample this leaves no plotting points, which is the state
    // in which a single point is given all its derivatives.
    expression.calculateValue();
    curve.setTitle(options.expression);
    return curve;
}

mfProfileKey_c profileKey(const Row& row)
{
    const mfProfileKey_c key = profileManager().getProfileKeyFromDisplayName(toCString(row.profile));
    if (profileManager().findProfile(key) != nullptr)
        return key;
    std::vector<CString> names;
    profileManager().getAllProfileNames(names);
    std::string known;
    for (const CString& name : names)
        known += (known.empty() ? "" : ", ") + toUtf8(name);
    throw Failure(kWrong, row.where + ": there is no profile \"" + row.profile + "\"; there are " + known);
}

void addSegment(mfFunctionSegments_c& table, double start, double end, double value, const CString& name,
                const mfProfileKey_c& key)
{
    auto segment = std::make_unique<mfSegment_c>(start, end, value, name);
    segment->setProfileKey(key);
    table.addSegment(segment.get());
    static_cast<void>(segment.release());  // the table owns it now
}

void addStart(mfFunctionSegments_c& table, const CurveRows& list)
{
    // A document whose first row has no key would lose its profile definitions.
    addSegment(table, list.startX, list.startX, list.startValue, L"Initial", profileKey(list.rows.front()));
    // The table puts its first row at 0.
    rowOf(table, 0).setStartX(list.startX);
    rowOf(table, 0).setEndX(list.startX);
}

// Writes the numbers of the last row into its law; fails when that is no formula.
void checkLaw(mfFunctionSegments_c& table, const Row& row)
{
    const int last = table.getSegmentCount() - 1;
    table.parseExpression(last);
    if (const auto problem = lawProblem(rowOf(table, last)))
        throw Failure(kWrong, row.where + ": the law of " + row.profile + " is no formula; " + *problem);
}

// Fails where the six decimals of a law make another curve of the rows.
void checkRounding(mfFunctionSegments_c& table, const CurveRows& list)
{
    const double span = valueSpan(table);
    for (int row = 0; row < table.getSegmentCount(); ++row) {
        const std::string where = row == 0 ? "the start" : list.rows[static_cast<std::size_t>(row) - 1].where;
        const std::string problem = roundingProblem(table, row, span);
        if (!problem.empty())
            throw Failure(kWrong, std::string(where).append(": ").append(problem));
    }
}

Curve rowsCurve(const CurveOptions& options)
{
    const CurveRows list = readRows(options);
    Curve curve(mf::FunctionType_Segments);
    mfFunctionSegments_c& table = curve.segments();
    addStart(table, list);
    double start = list.startX;
    for (const Row& row : list.rows) {
        const mfProfileKey_c key = profileKey(row);
        addSegment(table, start, row.end, row.value, toCString(row.profile), key);
        checkLaw(table, row);
        start = row.end;
    }
    checkRounding(table, list);
    for (int row = 0; row < table.getSegmentCount(); ++row)
        table.checkInvalid(row);
    curve.setTitle(options.rowsFile.empty() ? "Segments"
                                            : std::filesystem::path(options.rowsFile).stem().string());
    return curve;
}

mf::DataPointInterpolationType_e interpolationOf(const std::string& name)
{
    if (name == "akima")
        return mf::DataPointInterpolationType_Akima;
    return name == "cubic" ? mf::DataPointInterpolationType_Cubic : mf::DataPointInterpolationType_Linear;
}

std::vector<FilePoint> readPoints(const CurveOptions& options)
{
    const std::string name = inputName(options.pointsFile);
    const auto place = [&](int line) { return line == 0 ? name : name + ":" + std::to_string(line); };
    try {
        const PointList list = parsePoints(readInput(options.pointsFile), options.columns);
        if (list.unsortedLine != 0)
            warn("warning: " + place(list.unsortedLine) +
                 ": x is below that of the point before it; the points are sorted by x");
        return list.points;
    } catch (const TextError& error) {
        throw Failure(kWrong, place(error.line()) + ": " + error.what());
    }
}

Curve pointsCurve(const CurveOptions& options)
{
    Curve curve(mf::FunctionType_DataPoints);
    mfFunctionDataPoints_c& table = curve.points();
    for (const FilePoint& point : readPoints(options)) {
        auto row = std::make_unique<mfDataPoints_c>(new mfPoint2D_c(point.x, point.y));
        table.appendDataPoint(row.get());
        static_cast<void>(row.release());  // the table owns it now
    }
    table.setInterpolationType(interpolationOf(options.interpolation));
    table.RegenSplineData();
    curve.setTitle(std::filesystem::path(options.pointsFile).stem().string());
    return curve;
}

}  // namespace

Curve describedCurve(const CurveOptions& options)
{
    Curve curve = !options.expression.empty() ? expressionCurve(options)
                  : options.hasRows()         ? rowsCurve(options)
                                              : pointsCurve(options);
    setDrive(curve, options);
    if (!options.name.empty())
        curve.setTitle(options.name);
    return curve;
}

namespace {

// Says what is wrong with the curve of a document; true when nothing is.
bool isSound(Curve& curve, const std::string& name)
{
    const std::vector<std::string> found = problems(curve);
    for (const std::string& problem : found)
        warn(std::string(name).append(": ").append(problem));
    return found.empty();
}

}  // namespace

std::string sectionPlace(const std::string& section)
{
    return section.empty() ? "" : inputName(section) + ": ";
}

int forEachCurve(const CurveOptions& options, const CurveCommand& command, Unsound unsound)
{
    checkOneSource(options);
    std::optional<Host> host(std::in_place, options.library, options.results);
    if (options.files.empty()) {
        Curve curve = describedCurve(options);
        command(curve, "");
        return kDone;
    }
    int status = kDone;
    bool isFirst = true;
    for (const std::string& file : options.files) {
        // A host keeps the profiles of all documents that it met, and a document that
        // lacks a definition would take that of the one before it.
        if (!std::exchange(isFirst, false))
            host.emplace(options.library, options.results);
        const std::string section = options.files.size() > 1 ? file : "";
        std::string place;
        try {
            Curve curve = readDocument(file);
            if (!options.name.empty())
                curve.setTitle(options.name);
            place = sectionPlace(section);
            if (unsound == Unsound::Taken || isSound(curve, inputName(file)))
                command(curve, section);
            else
                status = kFailed;
        } catch (const Failure& failure) {
            warn(place + failure.what());
            status = failure.status();
        }
    }
    return status;
}

}  // namespace mfcurve
