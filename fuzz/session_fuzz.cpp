// SPDX-License-Identifier: MIT

// The bytes are a program of edits and calls on two motion functions under
// mf::host::Context. Whatever the order and the arguments, nothing may crash, the
// tables keep their invariants, and a function can read what it writes.

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "mfcurves/mfcurves.h"

namespace {

constexpr std::size_t kLongestProgram = 4096;  // longer programs find nothing new, slowly
constexpr int kMostRows = 64;

const double kNumbers[] = {0.0,
                           1.0,
                           -1.0,
                           0.5,
                           2.0,
                           3.0,
                           10.0,
                           0.1,
                           1.0 / 3.0,
                           360.0,
                           1e-7,
                           -1e-7,
                           1e7,
                           1e15,
                           -1e15,
                           1e300,
                           -1e300,
                           5e-324,
                           std::numeric_limits<double>::infinity(),
                           -std::numeric_limits<double>::infinity(),
                           std::numeric_limits<double>::quiet_NaN()};

const wchar_t* const kTexts[] = {L"",
                                 L"Cubic (Default)",
                                 L"Linear (Default)",
                                 L"3-4-5-Polynomial (Default)",
                                 L"Cycloidal",
                                 L"Initial",
                                 L"Linear (Default)<1>",
                                 L"x (y",
                                 L"sin(time)+1",
                                 L"time/time",
                                 L"{Force 1}^2",
                                 L"CycleAngle*2",
                                 L"step(time,0,0,1,1)",
                                 L"1/0",
                                 L"a+b",
                                 L")(",
                                 L"Time",
                                 L"Force 1"};

// Reads the program's bytes; zeros after the last one.
class Program {
public:
    Program(const std::uint8_t* data, std::size_t size) : data_(data), end_(data + size) {}

    bool isOver() const { return data_ == end_; }
    std::uint8_t byte() { return isOver() ? std::uint8_t{0} : *data_++; }
    int row() { return static_cast<int>(byte() % (kMostRows + 4)) - 2; }
    int order() { return static_cast<int>(byte() % 7) - 2; }
    bool flag() { return byte() % 2 != 0; }

    double number()
    {
        const std::uint8_t choice = byte();
        if (choice < std::size(kNumbers))
            return kNumbers[choice];
        return (static_cast<int>(choice) - 128) / 8.0;
    }

    CString text()
    {
        const std::uint8_t choice = byte();
        if (choice < std::size(kTexts))
            return kTexts[choice];
        std::string raw;
        for (int i = 0; i < choice % 24 && !isOver(); ++i)
            raw += static_cast<char>(byte());
        return raw.c_str();
    }

private:
    const std::uint8_t* data_;
    const std::uint8_t* end_;
};

const char* theStep = "";  // the running step, named when an invariant fails

void require(bool promise)
{
    if (promise)
        return;
    std::fprintf(stderr, "session_fuzz: a promise is broken by: %s\n", theStep);
    std::abort();
}

// One function, its kinds, and what is known about it.
struct Curve {
    mfFunctionData_c function;
    mfFunctionSegments_c* segments = nullptr;
    mfFunctionDataPoints_c* points = nullptr;
    mfFunctionExpression_c* expression = nullptr;
    // True while only rows of one point with moderate numbers were inserted by the
    // rules, so that the table must ascend.
    bool pointsAscend = true;

    Curve()
    {
        require(function.initialize());
        segments = static_cast<mfFunctionSegments_c*>(function.getFunctionSegments());
        points = static_cast<mfFunctionDataPoints_c*>(function.getFunctionDataPoints());
        expression = static_cast<mfFunctionExpression_c*>(function.getFunctionExpression());
    }
};

bool isTame(double x)
{
    return std::abs(x) < 1e9 && (x == 0.0 || std::abs(x) > 1e-3);
}

// Reads every point, so that the sanitizer sees an array that is too short.
void touch(const mfPoint2D_c* array, int count)
{
    for (int i = 0; array != nullptr && i < count; ++i) {
        const volatile double x = array[i].x();
        const volatile double y = array[i].y();
        require(!(x < y) || !(y < x));
    }
}

void checkSegments(const Curve& curve)
{
    const mfFunctionSegments_c& table = *curve.segments;
    std::vector<int> reported;
    table.getUpdateRow(reported);
    for (const int row : reported)
        require(row >= 0 && row <= table.getSegmentCount());
    for (int row = 0; row < table.getSegmentCount(); ++row) {
        mfSegment_c* segment = nullptr;
        table.selectSegment(row, segment);
        require(segment != nullptr);
        touch(segment->getPlottingData0(), segment->getPlottingDataLength());
    }
}

void checkPoints(const Curve& curve)
{
    if (!curve.pointsAscend)
        return;
    for (int row = 1; row < curve.points->getDataPointsCount(); ++row) {
        mfDataPoints_c* before = nullptr;
        mfDataPoints_c* here = nullptr;
        require(curve.points->selectDataPoint(row - 1, before) && curve.points->selectDataPoint(row, here));
        require(before->getEndX() < here->getStartX());
    }
}

// --- Steps of a program: each reads its arguments from the program's bytes. -------------------

struct Step {
    const char* name;
    void (*run)(Program& program, Curve& curve, Curve& other);
};

const Step kSegmentSteps[] = {
    {"add",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         const int count = curve.segments->getSegmentCount();
         if (count >= kMostRows)
             return;
         const double start = program.number();
         const double end = program.number();
         const double value = program.number();
         curve.segments->addSegment(new mfSegment_c(start, end, value, program.text()));
         require(curve.segments->getSegmentCount() == count + 1);
     }},
    {"insert",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         mfFunctionSegments_c& table = *curve.segments;
         const int count = table.getSegmentCount();
         const int row = program.row();
         const double start = program.number();
         const double end = program.number();
         const double value = program.number();
         auto segment = std::make_unique<mfSegment_c>(start, end, value, program.text());
         if (count < kMostRows && row >= 0 && row <= count) {
             table.insertSegment(row, segment.release());
             require(table.getSegmentCount() == count + 1);
         } else if (row < 0 || row > count) {
             table.insertSegment(row, segment.get());
             require(table.getSegmentCount() == count);
         }
     }},
    {"modify",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         const int count = curve.segments->getSegmentCount();
         const int row = program.row();
         const int column = static_cast<int>(program.byte() % 6) - 1;
         const double start = program.number();
         const double end = program.number();
         const double value = program.number();
         require(curve.segments->modifySegment(row, column, start, end, value, program.text()));
         require(curve.segments->getSegmentCount() == count);
     }},
    {"delete",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         const int count = curve.segments->getSegmentCount();
         const int row = program.row();
         curve.segments->deleteSegment(row);
         require(curve.segments->getSegmentCount() == count - (row >= 0 && row < count ? 1 : 0));
     }},
    {"compile a row", [](Program& program, Curve& curve,
                         Curve& /*other*/) { curve.segments->parseExpression(program.row()); }},
    {"sample a row",
     [](Program& program, Curve& curve, Curve& /*other*/) { curve.segments->calculateValue(program.row()); }},
    {"evaluate",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         const double x = program.number();
         require(std::isfinite(curve.segments->evaluate(x, program.order())));
     }},
    {"check a row",
     [](Program& program, Curve& curve, Curve& /*other*/) { curve.segments->checkInvalid(program.row()); }},
    {"check the seams",
     [](Program& /*program*/, Curve& curve, Curve& /*other*/) {
         int seam = -1;
         curve.segments->checkUpdate(seam);
         require(seam >= -1 && seam < curve.segments->getSegmentCount());
     }},
    {"copy",
     [](Program& /*program*/, Curve& curve, Curve& other) {
         require(curve.segments->Copy(other.segments));
         require(curve.segments->getSegmentCount() == other.segments->getSegmentCount());
     }},
    {"choose a profile",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         mfSegment_c* segment = nullptr;
         curve.segments->selectSegment(program.row(), segment);
         if (segment != nullptr)
             segment->setProfileKey(
                 QelSession_c::QelMotionFunctionContext()->getProfileManager()->getProfileKeyFromDisplayName(
                     program.text()));
     }},
    {"choose what is driven",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         curve.segments->setIndependentVar(static_cast<mf::IndependentVariableType_e>(program.byte() % 5));
         curve.segments->setMotorDependentVar(static_cast<mf::MotorDriveType_e>(program.byte() % 5));
         curve.segments->motionObjectType = program.byte() % 3;
     }},
    {"compile and sample all rows",
     [](Program& /*program*/, Curve& curve, Curve& /*other*/) {
         for (int row = 1; row < curve.segments->getSegmentCount(); ++row)
             curve.segments->parseExpression(row);
         curve.segments->calculateValue();
     }},
    {"list the profiles to save",
     [](Program& /*program*/, Curve& curve, Curve& /*other*/) {
         std::vector<CString> names;
         std::vector<mfProfile_c*> profiles;
         require(curve.segments->getProfilesToSave(names, profiles) == (names.size() == profiles.size()));
     }},
};

void insertPoint(Program& program, Curve& curve, Curve& /*other*/)
{
    const int row = program.row();
    auto points = std::make_unique<mfDataPoints_c>();
    const int count = program.byte() % 8 == 0 ? program.byte() % 4 : 1;
    for (int i = 0; i < count; ++i) {
        const double x = program.number();
        points->addPoint(x, program.number());
        curve.pointsAscend = curve.pointsAscend && isTame(x);
    }
    curve.pointsAscend = curve.pointsAscend && count == 1;
    const int before = curve.points->getDataPointsCount();
    if (before >= kMostRows)
        return;
    const bool taken = curve.points->insertDataPoint(row, points.get());
    require(taken == (row >= 0 && row <= before));
    if (curve.points->getDataPointsCount() > before)
        points.release();
}

const Step kPointSteps[] = {
    {"insert", insertPoint},
    {"insert", insertPoint},  // twice as often as the others
    {"modify",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         const int count = curve.points->getDataPointsCount();
         const int row = program.row();
         const int column = static_cast<int>(program.byte() % 4) - 1;
         const double x = program.number();
         curve.pointsAscend = curve.pointsAscend && (column != 0 || isTame(x));
         curve.points->modifyDataPoint(row, column, x, program.number());
         require(curve.points->getDataPointsCount() == count);
     }},
    {"delete",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         const int count = curve.points->getDataPointsCount();
         const int row = program.row();
         require(curve.points->deleteDataPoint(row) == (row >= 0 && row < count));
     }},
    {"delete several",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         std::vector<std::size_t> rows;
         for (int i = program.byte() % 5; i > 0; --i)
             rows.push_back(program.byte());
         require(curve.points->deleteDataPoints(rows));
     }},
    {"evaluate and find",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         const double x = program.number();
         curve.points->evaluate(x, program.order());
         const int row = curve.points->findDataPonts(x);
         require(row == 0 || (row > 0 && row < curve.points->getDataPointsCount()));
     }},
    {"sample",
     [](Program& /*program*/, Curve& curve, Curve& /*other*/) {
         curve.points->calculateValue();
         touch(curve.points->getPlottingData0(), curve.points->getPlottingDataCount());
         touch(curve.points->getPlottingData3(), curve.points->getPlottingDataCount());
     }},
    {"choose the interpolation",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         curve.points->setInterpolationType(
             static_cast<mf::DataPointInterpolationType_e>(program.byte() % 4));
     }},
    {"copy",
     [](Program& /*program*/, Curve& curve, Curve& other) {
         require(curve.points->Copy(other.points));
         curve.pointsAscend = other.pointsAscend;
     }},
    {"expand",
     [](Program& program, Curve& curve, Curve& /*other*/) { curve.points->expandDataPoints(program.row()); }},
    {"read the older form",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         curve.points->updateForLegacyData(program.flag());
         curve.pointsAscend = false;
     }},
    {"clear",
     [](Program& /*program*/, Curve& curve, Curve& /*other*/) {
         curve.points->ClearFunction();
         curve.pointsAscend = true;
         require(curve.points->isEmpty());
     }},
};

const Step kExpressionSteps[] = {
    {"set the math expression",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         curve.expression->setMathExpression(program.text());
     }},
    {"set the parse expression",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         curve.expression->setParseExpression(program.text());
     }},
    {"name the variable",
     [](Program& program, Curve& curve, Curve& /*other*/) { curve.expression->setIndepVar(program.text()); }},
    {"set the domain",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         const double from = program.number();
         curve.expression->setDomain(from, program.number());
     }},
    {"sample",
     [](Program& /*program*/, Curve& curve, Curve& /*other*/) {
         mfFunctionExpression_c& expression = *curve.expression;
         if (expression.calculateValue())
             touch(expression.getPlottingData0(),
                   expression.isValidForPlotting() ? expression.getPlottingPointCount() : 0);
     }},
    {"evaluate",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         const double x = program.number();
         require(std::isfinite(curve.expression->evaluate(x, program.order())));
     }},
    {"copy",
     [](Program& /*program*/, Curve& curve, Curve& other) {
         require(curve.expression->Copy(other.expression));
         require(curve.expression->getMathExpression() == other.expression->getMathExpression());
     }},
    {"choose what is driven",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         curve.expression->setMotorDependentVar(static_cast<mf::MotorDriveType_e>(program.byte() % 5));
         curve.expression->motionObjectType = program.byte() % 3;
         if (program.flag())
             curve.expression->ClearFunction();
     }},
};

const Step kDocumentSteps[] = {
    {"choose the types",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         curve.function.setFunctionType(static_cast<mf::FunctionType_e>(program.byte() % 5));
         curve.function.setMotionObjectType(static_cast<mf::MotionObjectType_e>(program.byte() % 5));
         curve.function.setXYDataType(static_cast<mf::MotFuncXYDataType_e>(program.byte() % 26));
     }},
    {"evaluate",
     [](Program& program, Curve& curve, Curve& /*other*/) {
         const double x = program.number();
         curve.function.evaluate(x, program.order());
     }},
    {"write", [](Program& program, Curve& curve,
                 Curve& /*other*/) { curve.function.createXMLData(program.text(), false, L""); }},
    {"write and let the other read",
     [](Program& program, Curve& curve, Curve& other) {
         curve.function.createXMLData(program.text(), false, L"");
         if (const char* const document = curve.function.getXMLData()) {
             other.function.readXMLData(L"", true, document);
             other.pointsAscend = false;
         }
     }},
};

struct Group {
    std::span<const Step> steps;
    void (*check)(const Curve& curve);
};

const Group kGroups[] = {
    {kSegmentSteps, checkSegments},
    {kPointSteps, checkPoints},
    {kExpressionSteps, [](const Curve& /*curve*/) {}},
    {kDocumentSteps, [](const Curve& /*curve*/) {}},
};

// The choice selects the curve and the kind; the next byte selects the step.
void runStep(Program& program, std::array<Curve, 2>& curves)
{
    const std::uint8_t choice = program.byte();
    Curve& curve = curves[choice % 2];
    const Group& group = kGroups[choice / 2 % std::size(kGroups)];
    const Step& step = group.steps[program.byte() % group.steps.size()];
    theStep = step.name;
    step.run(program, curve, curves[1 - choice % 2]);
    group.check(curve);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > kLongestProgram)
        return 0;

    mf::host::Context host;
    host.services().setMotionResultNames({L"Force 1"});
    QelSession_c::setMotionFunctionContext(&host);
    host.getProfileManager()->rebuildUserProfileMap();
    {
        Program program(data, size);
        std::array<Curve, 2> curves;
        while (!program.isOver())
            runStep(program, curves);
    }
    QelSession_c::setMotionFunctionContext(nullptr);
    return 0;
}
