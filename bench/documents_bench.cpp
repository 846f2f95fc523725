// Curve documents of data points and of segments, read, written, and parsed by
// the XML engine alone: the same bytes in one run.
//
// Benchmarks are named KIND/ROWS/WORK; ratios.csv says which are compared.

#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <string>

#include "mfcurves/host/Context.h"
#include "mfcurves/interfaces/QelSession.h"
#include "mfcurves/motion/mfFunctionData.h"
#include "mfcurves/platform/numbers.h"

namespace bench {
namespace {

using mf::platform::formatNumber;

constexpr int kRows[] = {10, 1000, 100000};

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

// A sawtooth, so that no number is shorter than in a real table.
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

void parseAlone(benchmark::State& state, const std::string& xml)
{
    for ([[maybe_unused]] auto step : state) {
        xmlDoc* document = xmlReadMemory(xml.data(), static_cast<int>(xml.size()), nullptr, nullptr, 0);
        if (!document)
            state.SkipWithError("not parsed");
        xmlFreeDoc(document);
    }
}

void read(benchmark::State& state, const std::string& xml)
{
    mf::host::Context host;
    QelSession_c::setMotionFunctionContext(&host);
    mfFunctionData_c function;
    function.initialize();
    for ([[maybe_unused]] auto step : state)
        if (!function.readXMLData(L"", true, xml))
            state.SkipWithError("not read");
}

void write(benchmark::State& state, const std::string& xml)
{
    mf::host::Context host;
    QelSession_c::setMotionFunctionContext(&host);
    mfFunctionData_c function;
    function.initialize();
    if (!function.readXMLData(L"", true, xml))
        state.SkipWithError("not read");
    for ([[maybe_unused]] auto step : state)
        function.createXMLData(L"name", false, L"");
}

// Lists the benchmarks of both kinds before main runs them.
const bool kRegistered = [] {
    for (const int rows : kRows) {
        for (const auto& [kind, xml] :
             {std::pair("points", pointsDocument(rows)), {"segments", segmentsDocument(rows)}}) {
            const std::string name = std::string(kind) + "/" + std::to_string(rows) + "/";
            benchmark::RegisterBenchmark((name + "parse").c_str(),
                                         [text = xml](auto& state) { parseAlone(state, text); });
            benchmark::RegisterBenchmark((name + "read").c_str(),
                                         [text = xml](auto& state) { read(state, text); });
            benchmark::RegisterBenchmark((name + "write").c_str(),
                                         [text = xml](auto& state) { write(state, text); });
        }
    }
    return true;
}();

}  // namespace
}  // namespace bench
