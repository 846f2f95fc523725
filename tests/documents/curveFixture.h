// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/motion/mfFunctionData.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/numbers.h"
#include "mfcurves/platform/xmlRuntime.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tests/support/FakeHost.h"

namespace mf::test {

// A curve document as a list of parts, in order, each an element below the root. A
// test takes one of the documents below and changes the part that it tests.
class Document {
public:
    Document(std::initializer_list<std::pair<std::string, std::string>> parts) : parts_(parts) {}

    // Replaces the content of the part of that name.
    Document& set(const std::string& name, const std::string& content)
    {
        part(name).second = content;
        return *this;
    }
    Document& drop(const std::string& name)
    {
        std::erase_if(parts_, [&](const auto& one) { return one.first == name; });
        return *this;
    }
    // Inserts a part before all others.
    Document& first(const std::string& name, const std::string& content)
    {
        parts_.insert(parts_.begin(), {name, content});
        return *this;
    }

    std::string xml() const
    {
        std::string text = "<Curve>";
        for (const auto& [name, content] : parts_)
            text += "<" + name + ">" + content + "</" + name + ">";
        return text + "</Curve>";
    }
    const std::vector<std::pair<std::string, std::string>>& parts() const { return parts_; }

private:
    std::pair<std::string, std::string>& part(const std::string& name)
    {
        for (auto& one : parts_)
            if (one.first == name)
                return one;
        throw std::logic_error("no part " + name);
    }

    std::vector<std::pair<std::string, std::string>> parts_;
};

inline std::string point(const std::string& x, const std::string& y)
{
    return "<Point ID='1'><x>" + x + "</x><y>" + y + "</y></Point>";
}

inline std::string segment(const std::string& startX, const std::string& endX, const std::string& value,
                           const std::string& profile = "")
{
    return "<Segment ID='1'><StartX>" + startX + "</StartX><EndX>" + endX + "</EndX><Value>" + value +
           "</Value><Profile>" + profile + "</Profile></Segment>";
}

inline std::string definition(const std::string& uniqueName, const std::string& function)
{
    return "<ProfileDefinition><UniqueName>" + uniqueName + "</UniqueName><ProfileFunction>" + function +
           "</ProfileFunction></ProfileDefinition>";
}

// A definition of that name whose curve is the straight line times `factor`.
inline std::string lineTimes(const std::string& factor, const std::string& name)
{
    return "segmenttype(\"" + name + "\",x,x1,y1,x2,y2)s=(y2-y1)/(x2-x1);v=y1+" + factor +
           "*s*(x-x1);returnv;endsegmenttype";
}

inline Document dataPointDocument()
{
    return {{"Version", "1"},
            {"FunctionName", "points"},
            {"FunctionType", "DataPoints"},
            {"MotionObjectType", "Motor"},
            {"XYDataType", "MfXY_Disp_LinMotor"},
            {"IndepVar", "IndependentVariableType_Time"},
            {"DepVar", "MotorDriveType_Velocity"},
            {"Interpolation", "DataPointInterpolationType_Akima"},
            {"RangeX", "<MinX>7</MinX><MaxX>8</MaxX>"},
            {"RangeY", "<MinY>7</MinY><MaxY>8</MaxY>"},
            {"Cursor", ""},
            {"PointCount", "2"},
            {"Points", point("0.5", "2") + point("1", "3")}};
}

inline Document segmentDocument()
{
    return {{"Version", "1"},
            {"FunctionName", "segments"},
            {"FunctionType", "Segments"},
            {"MotionObjectType", "Motor"},
            {"XYDataType", "MfXY_Disp_RotMotor"},
            {"IndepVar", "IndependentVariableType_CycleAngle"},
            {"DepVar", "MotorDriveType_Displacment"},
            {"RangeX", "<MinX>7</MinX><MaxX>8</MaxX>"},
            {"RangeY", "<MinY>7</MinY><MaxY>8</MaxY>"},
            {"Cursor", ""},
            {"SegmentCount", "3"},
            {"Segments", segment(" ", " ", "1") + segment("0", "2", "5") + segment("2", "3", "4")},
            {"ProfileDefinitions", ""}};
}

inline Document expressionDocument()
{
    return {{"Version", "1"},
            {"FunctionName", "expression"},
            {"FunctionType", "Expression"},
            {"MotionObjectType", "Motor"},
            {"XYDataType", "MfXY_Vel_LinMotor"},
            {"RangeX", "<MinX>-1</MinX><MaxX>2.5</MaxX>"},
            {"RangeY", "<MinY>7</MinY><MaxY>8</MaxY>"},
            {"IndepVar", "Time"},
            {"DepVar", "MotorDriveType_Acceleration"},
            {"Cursor", ""},
            {"Expression", "2*time"}};
}

inline std::string utf8(const CString& text)
{
    return platform::toUtf8(text.View());
}

// Small text forms of a function's content, for expectations on one line.
inline std::string number(double value)
{
    return platform::formatNumber("%.17g", value);
}

inline std::string showHead(mfFunctionData_c& function)
{
    return utf8(function.getName()) + " type " + std::to_string(function.getFunctionType()) + " object " +
           std::to_string(function.getMotionObjectType()) + " data " +
           std::to_string(function.getXYDataType());
}

// "over 1 (result) gives 2 0 for 0": independent variable, motion result, motor
// and force quantity, motionObjectType.
inline std::string showVariables(const mfFunctionBase_c& kind)
{
    return "over " + std::to_string(kind.independentVar) + " (" + utf8(kind.motionResult) + ") gives " +
           std::to_string(kind.motorDependentVar) + " " + std::to_string(kind.forceTorqueDependentVar) +
           " for " + std::to_string(kind.motionObjectType);
}

// "0.5:2 1:3,2:4": rows separated by blanks, the points of a row by commas.
inline std::string showPoints(mfFunctionDataPoints_c& function)
{
    std::string text;
    for (int row = 0; row < function.getDataPointsCount(); ++row) {
        mfDataPoints_c* list = nullptr;
        function.selectDataPoint(row, list);
        text += row == 0 ? "" : " ";
        for (int i = 0; i < list->getPointCount(); ++i)
            text += (i == 0 ? "" : ",") + number(list->getX(i)) + ":" + number(list->getY(i));
    }
    return text;
}

// "0-2=5 Cubic (Default)" for a row, rows separated by "; ".
inline std::string showSegments(mfFunctionSegments_c& function)
{
    std::string text;
    for (int row = 0; row < function.getSegmentCount(); ++row) {
        mfSegment_c* one = nullptr;
        function.selectSegment(row, one);
        text += row == 0 ? "" : "; ";
        text += number(one->getStartX()) + "-" + number(one->getEndX()) + "=" + number(one->getValue());
        const std::string profile = utf8(one->getDisplayName()) + utf8(one->getProfileName());
        text += profile.empty() ? "" : " " + profile;
    }
    return text;
}

// A motion function of a host with services, a study and a profile manager that has
// the built-in profiles.
class CurveTest : public testing::Test {
protected:
    CurveTest()
    {
        host.managerAnswer = &manager;
        manager.rebuildUserProfileMap();
        function.initialize();
        // Documents that are written from now on get version 1.
        mfFunctionData_c().readXMLData(L"", true, "<Curve/>");
        starts = platform::xmlStartCount();
    }

    bool readBuffer(const std::string& xml) { return function.readXMLData(L"some.xml", true, xml); }
    bool readBuffer(const Document& document) { return readBuffer(document.xml()); }

    std::string write(const char* name = "name")
    {
        function.createXMLData(name, false, L"");
        return function.getXMLData() ? function.getXMLData() : "";
    }

    mfFunctionSegments_c& segments()
    {
        return static_cast<mfFunctionSegments_c&>(*function.getFunctionSegments());
    }
    mfFunctionDataPoints_c& points()
    {
        return static_cast<mfFunctionDataPoints_c&>(*function.getFunctionDataPoints());
    }
    mfFunctionExpression_c& expression()
    {
        return static_cast<mfFunctionExpression_c&>(*function.getFunctionExpression());
    }

    // How many starts of the XML engine a test has left.
    int startsLeft() const { return platform::xmlStartCount() - starts; }

    FakeHost host;
    mfProfileManager_c manager;
    mfFunctionData_c function;
    int starts = 0;
};

}  // namespace mf::test
