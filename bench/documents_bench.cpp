// SPDX-License-Identifier: MIT

// Reads and writes curve documents of data points, of segments and of an expression, and parses
// the same bytes with the XML engine alone.
//
// Benchmarks are named KIND/ROWS/WORK; ratios.csv lists which are compared.

#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <string>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/host/Context.h"
#include "mfcurves/interfaces/QelSession.h"
#include "mfcurves/motion/mfFunctionData.h"
#include "mfcurves/platform/numbers.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"

namespace bench {
namespace {

using mf::platform::formatNumber;

enum class Kind { Points, Segments, Expression };

std::string element(const char* name, const std::string& content)
{
    return std::string("<") + name + ">" + content + "</" + name + ">";
}

std::string documentOf(const char* type, const std::string& body)
{
    const std::string zero = element("MinX", "0") + element("MaxX", "0");
    return element(
        "Curve", element("Version", "1") + element("FunctionName", type) + element("FunctionType", type) +
                     element("MotionObjectType", "Motor") + element("XYDataType", "MfXY_Disp_LinMotor") +
                     element("IndepVar", "IndependentVariableType_Time") +
                     element("DepVar", "MotorDriveType_Displacment") +
                     element("Interpolation", "DataPointInterpolationType_Cubic") + element("RangeX", zero) +
                     element("RangeY", element("MinY", "0") + element("MaxY", "0")) + "<Cursor/>" + body);
}

std::string idOf(int row)
{
    return " ID=\"" + std::to_string(row + 1) + "\">";
}

// A sawtooth, whose numbers are as long as in a real table.
double valueOf(int row)
{
    return (row * 37 % 1000) * 0.0123;
}

std::string pointsDocument(int rows)
{
    std::string points;
    for (int row = 0; row < rows; ++row)
        points += "<Point" + idOf(row) + element("x", formatNumber("%.6G", row * 0.01)) +
                  element("y", formatNumber("%.6G", valueOf(row))) + "</Point>";
    return documentOf("DataPoints", element("PointCount", std::to_string(rows)) + element("Points", points));
}

std::string segmentsDocument(int rows)
{
    std::string segments;
    for (int row = 0; row < rows; ++row)
        segments +=
            "<Segment" + idOf(row) + element("StartX", formatNumber("%f", row == 0 ? 0.0 : row - 1.0)) +
            element("EndX", formatNumber("%f", row)) + element("Value", formatNumber("%f", valueOf(row))) +
            element("Profile", "3-4-5-Polynomial (Default)") + "</Segment>";
    const std::string definition =
        element("ProfileDefinition",
                element("UniqueName", "3-4-5-Polynomial (Default)") +
                    element("ProfileFunction",
                            "segmenttype(\"3-4-5-Polynomial\",x,x1,y1,x2,y2)xbar=(x-x1)/(x2-x1);"
                            "ybar=10*xbar^3-15*xbar^4+6*xbar^5;y=y1+(y2-y1)*ybar;returny;endsegmenttype"));
    return documentOf("Segments", element("SegmentCount", std::to_string(rows)) +
                                      element("Segments", segments) +
                                      element("ProfileDefinitions", definition));
}

std::string expressionDocument()
{
    return documentOf("Expression", element("Expression", "10*sin(2*pi*x)+x^2*exp(-x)/(1+x)"));
}

std::string documentOf(Kind kind, int rows)
{
    switch (kind) {
        case Kind::Points:
            return pointsDocument(rows);
        case Kind::Segments:
            return segmentsDocument(rows);
        default:
            return expressionDocument();
    }
}

void parseOnce(benchmark::State& state, const std::string& xml)
{
    xmlDoc* document = xmlReadMemory(xml.data(), static_cast<int>(xml.size()), nullptr, nullptr, 0);
    if (!document)
        state.SkipWithError("not parsed");
    xmlFreeDoc(document);
}

void parseAlone(benchmark::State& state, Kind kind, int rows)
{
    const std::string xml = documentOf(kind, rows);
    for ([[maybe_unused]] auto step : state)
        parseOnce(state, xml);
}

// A host and a function into which the document was read.
class Curve {
public:
    Curve(benchmark::State& state, const std::string& xml)
    {
        QelSession_c::setMotionFunctionContext(&host_);
        function_.initialize();
        if (!function_.readXMLData(L"", true, xml))
            state.SkipWithError("not read");
    }
    mfFunctionData_c& function() { return function_; }

private:
    mf::host::Context host_;
    mfFunctionData_c function_;
};

void read(benchmark::State& state, Kind kind, int rows)
{
    const std::string xml = documentOf(kind, rows);
    Curve curve(state, xml);
    for ([[maybe_unused]] auto step : state)
        curve.function().readXMLData(L"", true, xml);
}

// The cost for a host that draws every row: all rows are compiled and sampled.
void readAndDraw(benchmark::State& state, int rows)
{
    const std::string xml = documentOf(Kind::Segments, rows);
    Curve curve(state, xml);
    const auto& table = static_cast<mfFunctionSegments_c&>(*curve.function().getFunctionSegments());
    for ([[maybe_unused]] auto step : state) {
        curve.function().readXMLData(L"", true, xml);
        for (int row = 1; row < rows; ++row) {
            mfSegment_c* segment = nullptr;
            table.selectSegment(row, segment);
            benchmark::DoNotOptimize(segment->getPlottingData0());
        }
    }
}

void readCurve(benchmark::State& state, int rows)
{
    const std::string xml = documentOf(Kind::Segments, rows);
    for ([[maybe_unused]] auto step : state)
        benchmark::DoNotOptimize(mf::Curve::parse(xml));
}

// Only the last part of that: every row is compiled in all orders.
void freeze(benchmark::State& state, int rows)
{
    const mf::CurveDefinition definition = mf::Curve::parse(documentOf(Kind::Segments, rows)).definition();
    for ([[maybe_unused]] auto step : state)
        benchmark::DoNotOptimize(mf::Curve(definition));
}

void write(benchmark::State& state, Kind kind, int rows)
{
    Curve curve(state, documentOf(kind, rows));
    for ([[maybe_unused]] auto step : state)
        curve.function().createXMLData(L"name", false, L"");
}

// Lists the benchmarks of all kinds before main runs them.
const bool kRegistered = [] {
    const auto add = [](const std::string& name, Kind kind, int rows) {
        const std::string start = name + '/' + std::to_string(rows);
        benchmark::RegisterBenchmark((start + "/parse").c_str(), parseAlone, kind, rows);
        benchmark::RegisterBenchmark((start + "/read").c_str(), read, kind, rows);
        benchmark::RegisterBenchmark((start + "/write").c_str(), write, kind, rows);
    };
    for (const int rows : {10, 1000, 100000}) {
        add("points", Kind::Points, rows);
        add("segments", Kind::Segments, rows);
        benchmark::RegisterBenchmark(("segments/" + std::to_string(rows) + "/read_and_draw").c_str(),
                                     readAndDraw, rows);
    }
    benchmark::RegisterBenchmark("segments/10/read_curve", readCurve, 10);
    benchmark::RegisterBenchmark("segments/10/freeze", freeze, 10);
    add("expression", Kind::Expression, 1);
    return true;
}();

}  // namespace
}  // namespace bench
