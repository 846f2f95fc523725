// SPDX-License-Identifier: MIT

#include "mfcurves/documents/readCurve.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "mfcurves/documents/formatTexts.h"
#include "mfcurves/documents/readState.h"
#include "mfcurves/documents/readTables.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/interfaces/IMotionServices.h"
#include "mfcurves/interfaces/hostAnswers.h"
#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/motion/mfFunctionData.h"
#include "mfcurves/platform/numbers.h"
#include "mfcurves/segments/mfFunctionSegments.h"

namespace mf::documents {
namespace {

// One read. Each step returns false when it fails; what was set before stays set.
class CurveReader : ReadState {
public:
    CurveReader(mfFunctionData_c& function, const CString& path, bool fromBuffer, const ReadOptions& options)
        : ReadState(path, fromBuffer, options), function_(function)
    {
    }

    // The start of the XML engine is undone when the head fails and when the whole
    // document was read. The other returns leave one start, on which callers rely.
    ReadOutcome read(std::string buffer)
    {
        document().initialize();
        if (!load(std::move(buffer)))
            return outcome(false, objectType_);
        if (!isReadableVersion())
            return outcome(true, objectType_);
        CString functionType;
        if (!readHead(functionType)) {
            document().shutdown();
            return outcome(false, objectType_);
        }
        if (!readBody(functionType))
            return outcome(false, objectType_);
        document().shutdown();
        return outcome(true, objectType_);
    }

private:
    bool load(std::string buffer)
    {
        if (isFromBuffer())
            document().setXmlText(std::move(buffer));
        if (isFromBuffer() ? document().loadBuffer() : document().load())
            return true;
        return fail(xml().problem());
    }

    // Documents that are written later get this version, even one that cannot be read.
    bool isReadableVersion()
    {
        const XmlNode node = xml().selectSingleNode("//Curve//Version");
        const double version = node ? platform::readNumber(node.text()) : kReadableVersion;
        if (options().setsVersion)
            setWrittenVersion(version);
        if (version == kReadableVersion)
            return true;
        return fail("The document has version " + versionText(version) + ", and only version " +
                    versionText(kReadableVersion) + " is read.");
    }

    bool readHead(CString& functionType)
    {
        CString name;
        CString objectText;
        CString dataText;
        if (!text("//Curve//FunctionName", name))
            return false;
        function_.setName(name);
        if (!text("//Curve//FunctionType", functionType) || !text("//Curve//MotionObjectType", objectText))
            return false;
        objectType_ = static_cast<MotionObjectType_e>(
            kMotionObjectTypes.numberOf(objectText).value_or(MotionObjectType_None));
        if (isFromBuffer() || (options().takeObjectOfFile && objectType_ != MotionObjectType_None))
            function_.setMotionObjectType(objectType_);
        if (!text("//Curve//XYDataType", dataText))
            return false;
        setDataType(dataText);
        return fitsObject(objectText) && isKnownFunctionType(functionType);
    }

    void setDataType(const CString& text)
    {
        const auto type = kXYDataTypes.numberOf(text);
        if (!type && text != L"MfXY_Misc")
            remark("", "\"XYDataType\" is " + quoted(text) + ", which is none of " + kXYDataTypes.list() +
                           "; it reads as \"MfXY_Misc\"");
        function_.setXYDataType(static_cast<MotFuncXYDataType_e>(type.value_or(MfXY_Misc)));
    }

    bool fitsObject(const CString& objectText)
    {
        if (function_.getMotionObjectType() == objectType_)
            return true;
        const CString wanted = kMotionObjectTypes.textOf(function_.getMotionObjectType(), L"");
        if (objectType_ == MotionObjectType_None)
            return fail("\"MotionObjectType\" is " + quoted(objectText) + ", which is none of " +
                        kMotionObjectTypes.list() + '.');
        return fail("\"MotionObjectType\" is " + quoted(objectText) + ", and this function is for " +
                    (wanted.IsEmpty() ? "no motion object" : quoted(wanted)) + '.');
    }

    bool isKnownFunctionType(const CString& functionType)
    {
        if (kFunctionTypes.numberOf(functionType))
            return true;
        return fail("\"FunctionType\" is " + quoted(functionType) + ", which is none of " +
                    kFunctionTypes.list() + '.');
    }

    bool readBody(const CString& functionType)
    {
        switch (*kFunctionTypes.numberOf(functionType)) {
            case FunctionType_Segments:
                return readSegmentFunction();
            case FunctionType_DataPoints:
                return readDataPointFunction();
            default:
                return readExpressionFunction();
        }
    }

    bool readSegmentFunction()
    {
        function_.setFunctionType(FunctionType_Segments);
        auto* segments = static_cast<mfFunctionSegments_c*>(function_.getFunctionSegments());
        CString independent;
        CString dependent;
        XmlNode unused;
        if (!exists(segments) || !readVariables(independent, dependent) ||
            !setIndependentVariable(*segments, independent, &CurveReader::isListedResult) ||
            !range(unused, unused))
            return false;
        setDependentVariable(*segments, dependent);
        if (!singleNode("//Curve//Cursor"))
            return false;
        return readSegments(*this, *segments);
    }

    bool readDataPointFunction()
    {
        function_.setFunctionType(FunctionType_DataPoints);
        auto* points = static_cast<mfFunctionDataPoints_c*>(function_.getFunctionDataPoints());
        CString independent;
        CString dependent;
        XmlNode unused;
        if (!exists(points) || !readVariables(independent, dependent) ||
            !setIndependentVariable(*points, independent, &CurveReader::isAcceptedResult) ||
            !range(unused, unused))
            return false;
        setDependentVariable(*points, dependent);
        return singleNode("//Curve//Cursor") && readPoints(*this, *points);
    }

    bool readExpressionFunction()
    {
        function_.setFunctionType(FunctionType_Expression);
        auto* expression = static_cast<mfFunctionExpression_c*>(function_.getFunctionExpression());
        if (!exists(expression))
            return false;
        expression->clearExpression();
        XmlNode minX;
        XmlNode maxX;
        if (!range(minX, maxX))
            return false;
        const double from = number(minX, [] { return std::pair("", placeOf("//Curve//RangeX//MinX")); });
        const double to = number(maxX, [] { return std::pair("", placeOf("//Curve//RangeX//MaxX")); });
        expression->setDomain(from, to);
        CString independent;
        CString dependent;
        if (!readVariables(independent, dependent))
            return false;
        setDependentVariable(*expression, dependent);
        expression->setIndepVar(independent);
        CString mathExpression;
        if (!singleNode("//Curve//Cursor") || !text("//Curve//Expression", mathExpression))
            return false;
        expression->setMathExpression(mathExpression);
        expression->calculateValue();
        return true;
    }

    bool exists(const mfFunctionBase_c* kind)
    {
        if (kind)
            return true;
        return fail("The motion function was not initialised.");
    }

    bool readVariables(CString& independent, CString& dependent)
    {
        return text("//Curve//IndepVar", independent) && text("//Curve//DepVar", dependent);
    }

    // The range of Y must be present but is not used.
    bool range(XmlNode& minX, XmlNode& maxX)
    {
        minX = singleNode("//Curve//RangeX//MinX");
        if (!minX)
            return false;
        maxX = singleNode("//Curve//RangeX//MaxX");
        return maxX && singleNode("//Curve//RangeY//MinY") && singleNode("//Curve//RangeY//MaxY");
    }

    // A text other than those of time and cycle angle names a motion result, which the
    // host has to accept. Otherwise the former curve is not cleared.
    template <class Kind>
    bool setIndependentVariable(Kind& kind, const CString& name,
                                bool (CurveReader::*isAccepted)(const CString&))
    {
        const int variable =
            kIndependentVariables.numberOf(name).value_or(IndependentVariableType_MotionResult);
        const bool isResult = variable == IndependentVariableType_MotionResult;
        if (isResult && !(this->*isAccepted)(name))
            return false;
        kind.ClearFunction();
        kind.setIndependentVar(static_cast<IndependentVariableType_e>(variable));
        kind.setMotionResult(isResult ? name : CString());
        return true;
    }

    // For segments: the name must be in the host's list.
    bool isListedResult(const CString& name)
    {
        IMotionServices_c* services = interfaces::motionServices();
        std::vector<CString> results;
        if (services)
            services->getMotionResultNames(results);
        if (std::find(results.begin(), results.end(), name) != results.end())
            return true;
        return failForResult(name, "\"IndepVar\" is " + quoted(name) + ", which is none of " +
                                       kIndependentVariables.list() +
                                       ", and the host knows no motion result of that name.");
    }

    // For data points: if the host has no list, any name is accepted.
    bool isAcceptedResult(const CString& name)
    {
        IMotionServices_c* services = interfaces::motionServices();
        return (services && services->getMotionResultCount() == 0) || isListedResult(name);
    }

    // An unknown text sets nothing. A curve without such a quantity writes an empty text.
    template <class Kind>
    void setDependentVariable(Kind& kind, const CString& text)
    {
        const auto motor = kMotorDriveTypes.numberOf(text);
        const auto force = kForceTorqueTypes.numberOf(text);
        if (!motor && !force) {
            if (!text.IsEmpty())
                remark("", "\"DepVar\" is " + quoted(text) + ", which is none of " + kMotorDriveTypes.list() +
                               " and none of " + kForceTorqueTypes.list());
            return;
        }
        kind.setMotorDependentVar(static_cast<MotorDriveType_e>(motor.value_or(MotorDriveType_None)));
        kind.setForceTorqueDependentVar(static_cast<ForceTorqueType_e>(force.value_or(ForceTorqueType_None)));
        kind.motionObjectType = motor ? 0 : 1;
    }

    mfFunctionData_c& function_;
    MotionObjectType_e objectType_ = MotionObjectType_None;
};

}  // namespace

ReadOutcome readCurve(mfFunctionData_c& function, const CString& path, bool fromBuffer, std::string buffer,
                      const ReadOptions& options)
{
    const SilentEngine engine;
    return CurveReader(function, path, fromBuffer, options).read(std::move(buffer));
}

}  // namespace mf::documents

bool mfFunctionData_c::readXMLData(const CString& path, bool fromBuffer, std::string buffer)
{
    return mf::documents::readCurve(*this, path, fromBuffer, std::move(buffer)).taken;
}
