// SPDX-License-Identifier: MIT

// The bytes are a program of edits and calls on two motion functions under the
// stand-alone host. Whatever its order and arguments, nothing may crash, the
// tables keep their promises, and what a function writes it can be asked to read.

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <memory>
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

// Answers what the program's bytes say; zeros when they have run out.
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

void require(bool promise)
{
    if (!promise)
        std::abort();
}

// One function, its kinds, and what the program knows of it.
struct Curve {
    mfFunctionData_c function;
    mfFunctionSegments_c* segments = nullptr;
    mfFunctionDataPoints_c* points = nullptr;
    mfFunctionExpression_c* expression = nullptr;
    // Only one-point rows at tame numbers came in through the rules of insertion,
    // so the table has to ascend.
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

void checkSegments(const mfFunctionSegments_c& table)
{
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

void runSegmentStep(Program& program, Curve& curve, Curve& other)
{
    mfFunctionSegments_c& table = *curve.segments;
    const int count = table.getSegmentCount();
    switch (program.byte() % 14) {
        case 0: {
            if (count >= kMostRows)
                break;
            const double start = program.number();
            const double end = program.number();
            const double value = program.number();
            table.addSegment(new mfSegment_c(start, end, value, program.text()));
            require(table.getSegmentCount() == count + 1);
            break;
        }
        case 1: {
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
            break;
        }
        case 2: {
            const int row = program.row();
            const int column = static_cast<int>(program.byte() % 6) - 1;
            const double start = program.number();
            const double end = program.number();
            const double value = program.number();
            require(table.modifySegment(row, column, start, end, value, program.text()));
            require(table.getSegmentCount() == count);
            break;
        }
        case 3: {
            const int row = program.row();
            table.deleteSegment(row);
            require(table.getSegmentCount() == count - (row >= 0 && row < count ? 1 : 0));
            break;
        }
        case 4:
            table.parseExpression(program.row());
            break;
        case 5:
            table.calculateValue(program.row());
            break;
        case 6: {
            const double x = program.number();
            const double y = table.evaluate(x, program.order());
            require(std::isfinite(y));
            break;
        }
        case 7:
            table.checkInvalid(program.row());
            break;
        case 8: {
            int seam = -1;
            table.checkUpdate(seam);
            require(seam >= -1 && seam < count);
            break;
        }
        case 9:
            require(table.Copy(other.segments));
            require(table.getSegmentCount() == other.segments->getSegmentCount());
            break;
        case 10: {
            mfSegment_c* segment = nullptr;
            table.selectSegment(program.row(), segment);
            if (segment != nullptr)
                segment->setProfileKey(QelSession_c::QelMotionFunctionContext()
                                           ->getProfileManager()
                                           ->getProfileKeyFromDisplayName(program.text()));
            break;
        }
        case 11:
            table.setIndependentVar(static_cast<mf::IndependentVariableType_e>(program.byte() % 5));
            table.setMotorDependentVar(static_cast<mf::MotorDriveType_e>(program.byte() % 5));
            table.motionObjectType = program.byte() % 3;
            break;
        case 12:
            for (int row = 1; row < count; ++row)
                table.parseExpression(row);
            table.calculateValue();
            break;
        default: {
            std::vector<CString> names;
            std::vector<mfProfile_c*> profiles;
            require(table.getProfilesToSave(names, profiles) == (names.size() == profiles.size()));
        }
    }
    checkSegments(table);
}

void insertPoint(Program& program, Curve& curve)
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

void runPointStep(Program& program, Curve& curve, Curve& other)
{
    mfFunctionDataPoints_c& table = *curve.points;
    const int count = table.getDataPointsCount();
    switch (program.byte() % 12) {
        case 0:
        case 1:
            insertPoint(program, curve);
            break;
        case 2: {
            const int row = program.row();
            const int column = static_cast<int>(program.byte() % 4) - 1;
            const double x = program.number();
            curve.pointsAscend = curve.pointsAscend && (column != 0 || isTame(x));
            table.modifyDataPoint(row, column, x, program.number());
            require(table.getDataPointsCount() == count);
            break;
        }
        case 3: {
            const int row = program.row();
            require(table.deleteDataPoint(row) == (row >= 0 && row < count));
            break;
        }
        case 4: {
            std::vector<std::size_t> rows;
            for (int i = program.byte() % 5; i > 0; --i)
                rows.push_back(program.byte());
            require(table.deleteDataPoints(rows));
            break;
        }
        case 5: {
            const double x = program.number();
            table.evaluate(x, program.order());
            const int row = table.findDataPonts(x);
            require(row == 0 || (row > 0 && row < table.getDataPointsCount()));
            break;
        }
        case 6:
            table.calculateValue();
            touch(table.getPlottingData0(), table.getPlottingDataCount());
            touch(table.getPlottingData3(), table.getPlottingDataCount());
            break;
        case 7:
            table.setInterpolationType(static_cast<mf::DataPointInterpolationType_e>(program.byte() % 4));
            break;
        case 8:
            require(table.Copy(other.points));
            curve.pointsAscend = other.pointsAscend;
            break;
        case 9:
            table.expandDataPoints(program.row());
            break;
        case 10: {
            const bool pointPerRow = program.flag();
            table.updateForLegacyData(pointPerRow);
            curve.pointsAscend = false;
            break;
        }
        default:
            table.ClearFunction();
            curve.pointsAscend = true;
            require(table.isEmpty());
    }
    checkPoints(curve);
}

void runExpressionStep(Program& program, Curve& curve, Curve& other)
{
    mfFunctionExpression_c& expression = *curve.expression;
    switch (program.byte() % 8) {
        case 0:
            expression.setMathExpression(program.text());
            break;
        case 1:
            expression.setParseExpression(program.text());
            break;
        case 2:
            expression.setIndepVar(program.text());
            break;
        case 3: {
            const double from = program.number();
            expression.setDomain(from, program.number());
            break;
        }
        case 4:
            if (expression.calculateValue())
                touch(expression.getPlottingData0(),
                      expression.isValidForPlotting() ? expression.getPlottingPointCount() : 0);
            break;
        case 5: {
            const double x = program.number();
            require(std::isfinite(expression.evaluate(x, program.order())));
            break;
        }
        case 6:
            require(expression.Copy(other.expression));
            require(expression.getMathExpression() == other.expression->getMathExpression());
            break;
        default:
            expression.setMotorDependentVar(static_cast<mf::MotorDriveType_e>(program.byte() % 5));
            expression.motionObjectType = program.byte() % 3;
            if (program.flag())
                expression.ClearFunction();
    }
}

void runDocumentStep(Program& program, Curve& curve, Curve& other)
{
    switch (program.byte() % 4) {
        case 0:
            curve.function.setFunctionType(static_cast<mf::FunctionType_e>(program.byte() % 5));
            curve.function.setMotionObjectType(static_cast<mf::MotionObjectType_e>(program.byte() % 5));
            curve.function.setXYDataType(static_cast<mf::MotFuncXYDataType_e>(program.byte() % 26));
            break;
        case 1: {
            const double x = program.number();
            curve.function.evaluate(x, program.order());
            break;
        }
        case 2:
            curve.function.createXMLData(program.text(), false, L"");
            break;
        default:
            curve.function.createXMLData(program.text(), false, L"");
            if (const char* const document = curve.function.getXMLData()) {
                other.function.readXMLData(L"", true, document);
                other.pointsAscend = false;
            }
    }
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
        while (!program.isOver()) {
            const std::uint8_t choice = program.byte();
            Curve& curve = curves[choice % 2];
            Curve& other = curves[1 - choice % 2];
            switch (choice / 2 % 4) {
                case 0:
                    runSegmentStep(program, curve, other);
                    break;
                case 1:
                    runPointStep(program, curve, other);
                    break;
                case 2:
                    runExpressionStep(program, curve, other);
                    break;
                default:
                    runDocumentStep(program, curve, other);
            }
        }
    }
    QelSession_c::setMotionFunctionContext(nullptr);
    return 0;
}
