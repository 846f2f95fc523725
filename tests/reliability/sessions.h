// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "mfcurves/mfcurves.h"
#include "tests/support/processState.h"

// Pieces of work that do once everything that a host does with a curve of each kind. Tests
// run them while something outside the library fails.
namespace mf::test {

inline const char* const kSegmentDocument =
    "<?xml version='1.0' encoding='UTF-8'?><Curve><Version>1</Version><FunctionName>cam</FunctionName>"
    "<FunctionType>Segments</FunctionType><MotionObjectType>Motor</MotionObjectType>"
    "<XYDataType>MfXY_Disp_LinMotor</XYDataType><IndepVar>IndependentVariableType_Time</IndepVar>"
    "<DepVar>MotorDriveType_Displacment</DepVar><RangeX><MinX>0</MinX><MaxX>0</MaxX></RangeX>"
    "<RangeY><MinY>0</MinY><MaxY>0</MaxY></RangeY><Cursor></Cursor><SegmentCount>3</SegmentCount><Segments>"
    "<Segment ID=\"1\"><StartX> </StartX><EndX> </EndX><Value>0</Value><Profile>Bend</Profile></Segment>"
    "<Segment ID=\"2\"><StartX>0</StartX><EndX>1</EndX><Value>10</Value><Profile>Bend</Profile></Segment>"
    "<Segment ID=\"3\"><StartX>1</StartX><EndX>2</EndX><Value>0</Value><Profile>Bend</Profile></Segment>"
    "</Segments><ProfileDefinitions><ProfileDefinition><UniqueName>Bend</UniqueName><ProfileFunction>"
    "segmenttype(\"Bend\",x,x1,y1,x2,y2)xbar=(x-x1)/(x2-x1);y=y1+(y2-y1)*xbar^2;returny;endsegmenttype"
    "</ProfileFunction></ProfileDefinition></ProfileDefinitions></Curve>";

inline const char* const kPointDocument =
    "<?xml version='1.0' encoding='UTF-8'?><Curve><Version>1</Version><FunctionName>lift</FunctionName>"
    "<FunctionType>DataPoints</FunctionType><MotionObjectType>Motor</MotionObjectType>"
    "<XYDataType>MfXY_Disp_LinMotor</XYDataType><IndepVar>IndependentVariableType_Time</IndepVar>"
    "<DepVar>MotorDriveType_Displacment</DepVar>"
    "<Interpolation>DataPointInterpolationType_Akima</Interpolation>"
    "<RangeX><MinX>0</MinX><MaxX>0</MaxX></RangeX><RangeY><MinY>0</MinY><MaxY>0</MaxY></RangeY>"
    "<Cursor></Cursor><PointCount>3</PointCount><Points><Point ID=\"1\"><x>0</x><y>0</y></Point>"
    "<Point ID=\"2\"><x>1</x><y>5</y></Point><Point ID=\"3\"><x>2</x><y>0</y></Point></Points></Curve>";

inline const char* const kExpressionDocument =
    "<?xml version='1.0' encoding='UTF-8'?><Curve><Version>1</Version><FunctionName>spring</FunctionName>"
    "<FunctionType>Expression</FunctionType><MotionObjectType>Force</MotionObjectType>"
    "<XYDataType>MfXY_Force</XYDataType><RangeX><MinX>0</MinX><MaxX>2</MaxX></RangeX>"
    "<RangeY><MinY>0</MinY><MaxY>0</MaxY></RangeY><IndepVar>Time</IndepVar>"
    "<DepVar>ForceTorqueType_Force</DepVar><Cursor></Cursor>"
    "<Expression>-20*time-0.5*sin(time)^3</Expression></Curve>";

inline const char* const kBrokenDocument = "<Curve><Version>1</Version><FunctionName>cam</Curve>";

// True when initialize could allocate every kind; the others are null.
inline bool isWhole(mfFunctionData_c& function)
{
    return function.getFunctionSegments() != nullptr && function.getFunctionDataPoints() != nullptr &&
           function.getFunctionExpression() != nullptr;
}

inline mfFunctionSegments_c& segmentsOf(mfFunctionData_c& function)
{
    return static_cast<mfFunctionSegments_c&>(*function.getFunctionSegments());
}

inline mfFunctionDataPoints_c& pointsOf(mfFunctionData_c& function)
{
    return static_cast<mfFunctionDataPoints_c&>(*function.getFunctionDataPoints());
}

inline mfFunctionExpression_c& expressionOf(mfFunctionData_c& function)
{
    return static_cast<mfFunctionExpression_c&>(*function.getFunctionExpression());
}

// The table owns the row when the call returns; if the call throws, the row is still the
// caller's.
inline void addRow(mfFunctionSegments_c& table, double startX, double endX, double value)
{
    auto row = std::make_unique<mfSegment_c>(startX, endX, value, L"Cubic");
    table.addSegment(row.get());
    row.release();
}

inline void insertPoint(mfFunctionDataPoints_c& table, int row, double x, double y)
{
    auto points = std::make_unique<mfDataPoints_c>();
    points->addPoint(x, y);
    try {
        if (table.insertDataPoint(row, points.get()))
            points.release();
    } catch (...) {
        mfDataPoints_c* held = nullptr;
        if (table.selectDataPoint(row, held) && held == points.get())
            points.release();  // the row is in, the spline could not be rebuilt
        throw;
    }
}

inline void editAndSampleSegments(mfFunctionData_c& function)
{
    mfFunctionSegments_c& table = segmentsOf(function);
    table.setIndependentVar(mf::IndependentVariableType_Time);
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    addRow(table, 0, 0, 0);
    addRow(table, 0, 1, 5);
    addRow(table, 1, 2, 0);
    table.modifySegment(1, 1, 0.0, 3.0, 0.0, L"");
    for (int row = 1; row < table.getSegmentCount(); ++row) {
        table.parseExpression(row);
        table.checkInvalid(row);
        table.calculateValue(row);
        mfSegment_c* sampled = nullptr;
        table.selectSegment(row, sampled);
        sampled->getPlottingData0();
    }
    function.evaluate(0.5, 3);
    mfFunctionSegments_c copy;
    copy.Copy(&table);
    table.deleteSegment(1);
}

inline void editAndSamplePoints(mfFunctionData_c& function)
{
    mfFunctionDataPoints_c& table = pointsOf(function);
    function.setFunctionType(mf::FunctionType_DataPoints);
    table.setInterpolationType(mf::DataPointInterpolationType_Akima);
    insertPoint(table, 0, 0.0, 0.0);
    insertPoint(table, 1, 1.0, 5.0);
    insertPoint(table, 2, 1.0, 7.0);
    table.modifyDataPoint(0, 0, 1.5, 0.0);
    table.calculateValue();
    function.evaluate(1.2, 1);
    mfFunctionDataPoints_c copy;
    copy.Copy(&table);
    table.updateForLegacyData(false);
    table.expandDataPoints(0);
    table.deleteDataPoint(0);
}

inline void compileAndSampleExpression(mfFunctionData_c& function)
{
    mfFunctionExpression_c& expression = expressionOf(function);
    function.setFunctionType(mf::FunctionType_Expression);
    expression.setMotorDependentVar(mf::MotorDriveType_Displacment);
    expression.setDomain(0.0, 2.0);
    expression.setMathExpression(L"3*sin(time)^2+exp(-time)");
    expression.setParseExpression(L"3*sin(time)^2+exp(-time)");
    expression.calculateValue();
    function.evaluate(0.5, 0);
    function.evaluate(0.5, 3);
}

inline void readWriteRead(mfFunctionData_c& function, const char* document)
{
    function.readXMLData(L"", true, document);
    function.createXMLData(L"again", false, L"");
    if (const char* const written = function.getXMLData())
        function.readXMLData(L"", true, written);
}

// Fails the test if the process is in another state at the end, also after an exception.
struct SameState {
    ~SameState()
    {
        if (!(ProcessState() == before))
            ADD_FAILURE() << "the state of the process has changed";
    }
    ProcessState before;
};

// Makes a curve, examines it, writes it and reads it again. An error is a valid outcome, too.
template <class Make>
void useCurve(const Make& make)
{
    const SameState sameState;
    try {
        const mf::Curve curve = make();
        curve.at(0.5);
        std::vector<mf::Problem> losses;
        mf::Curve::parse(curve.toXml(&losses)).definition();
    } catch (const mf::CurveError& error) {
        static_cast<void>(error.problems().front());
    }
}

inline void freezeSegments(mfFunctionData_c& function)
{
    editAndSampleSegments(function);
    useCurve([&] { return mf::Curve::of(function); });
}

inline void makeCurves(const char* document)
{
    useCurve([&] { return mf::Curve::parse(document); });
}

struct Work {
    const char* name;
    std::function<void(mfFunctionData_c&)> run;
};

inline const Work kWork[] = {
    {"EditAndSampleSegments", editAndSampleSegments},
    {"EditAndSamplePoints", editAndSamplePoints},
    {"CompileAndSampleExpression", compileAndSampleExpression},
    {"ReadAndWriteSegments", [](mfFunctionData_c& f) { readWriteRead(f, kSegmentDocument); }},
    {"ReadAndWritePoints", [](mfFunctionData_c& f) { readWriteRead(f, kPointDocument); }},
    {"ReadAndWriteExpression", [](mfFunctionData_c& f) { readWriteRead(f, kExpressionDocument); }},
    {"FreezeSegments", freezeSegments},
    {"CurveOfASegmentDocument", [](mfFunctionData_c&) { makeCurves(kSegmentDocument); }},
    {"CurveOfAPointDocument", [](mfFunctionData_c&) { makeCurves(kPointDocument); }},
    {"CurveOfAnExpressionDocument", [](mfFunctionData_c&) { makeCurves(kExpressionDocument); }},
    {"CurveOfWhatIsNoDocument", [](mfFunctionData_c&) { makeCurves(kBrokenDocument); }},
    {"ReadWhatIsNoDocument", [](mfFunctionData_c& f) { f.readXMLData(L"", true, kBrokenDocument); }},
};

}  // namespace mf::test
