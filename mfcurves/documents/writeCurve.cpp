// SPDX-License-Identifier: MIT

#include "mfcurves/documents/writeCurve.h"

#include <utility>
#include <vector>

#include "mfcurves/documents/formatTexts.h"
#include "mfcurves/documents/mfCurveDocument.h"
#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/motion/mfFunctionData.h"
#include "mfcurves/platform/numbers.h"
#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"

namespace mf::documents {
namespace {

constexpr char kFixedFormat[] = "%f";          // the numbers of segments
constexpr char kSignificantFormat[] = "%.6G";  // those of data points and expressions

CString formatted(const char* format, double number)
{
    return platform::formatNumber(format, number).c_str();
}

CString formatted(int number)
{
    return std::to_string(number).c_str();
}

const wchar_t* motorText(MotorDriveType_e quantity, const wchar_t* otherwise)
{
    return kMotorDriveTypes.textOf(quantity, otherwise);
}

const wchar_t* forceTorqueText(ForceTorqueType_e quantity)
{
    return kForceTorqueTypes.textOf(quantity, L"");
}

// Segments and data points name their independent variable in the same way.
template <class Kind>
CString independentText(Kind& kind)
{
    if (kind.getIndependentVar() == IndependentVariableType_MotionResult)
        return kind.getMotionResult();
    return kIndependentVariables.textOf(kind.getIndependentVar(), L"");
}

// Segments of a motor whose quantity is not known are written as a displacement.
CString dependentText(mfFunctionSegments_c& segments)
{
    if (segments.motionObjectType != 0)
        return forceTorqueText(segments.getForceTorqueDependentVar());
    return motorText(segments.getMotorDependentVar(), motorText(MotorDriveType_Displacment, L""));
}

CString dependentText(mfFunctionDataPoints_c& points)
{
    if (points.motionObjectType != 0)
        return forceTorqueText(points.getForceTorqueDependentVar());
    return motorText(points.getMotorDependentVar(), L"");
}

// An expression belongs to a motor if it has a motor quantity; motionObjectType is not
// used.
CString dependentText(mfFunctionExpression_c& expression)
{
    if (expression.getMotorDependentVar() == MotorDriveType_None)
        return forceTorqueText(expression.getForceTorqueDependentVar());
    return motorText(expression.getMotorDependentVar(), L"");
}

// Writes one curve into a document without nodes.
class CurveWriter {
public:
    CurveWriter(mfCurveDocument_c& document, mfFunctionData_c& function, const CString& name, double version)
        : document_(document), function_(function), name_(name), version_(version)
    {
    }

    void write()
    {
        switch (function_.getFunctionType()) {
            case FunctionType_Segments:
                writeIfThere(static_cast<mfFunctionSegments_c*>(function_.getFunctionSegments()));
                break;
            case FunctionType_DataPoints:
                writeIfThere(static_cast<mfFunctionDataPoints_c*>(function_.getFunctionDataPoints()));
                break;
            case FunctionType_Expression:
                writeIfThere(static_cast<mfFunctionExpression_c*>(function_.getFunctionExpression()));
                break;
        }
    }

private:
    template <class Kind>
    void writeIfThere(Kind* kind)
    {
        if (!kind)
            return;
        writeHead();
        writeBody(*kind);
    }

    XmlNode add(XmlNode parent, const char* name)
    {
        return document_.appendNode(parent, document_.document()->createElement(name));
    }

    void add(XmlNode parent, const char* name, const CString& text)
    {
        document_.document()->setText(add(parent, name), text);
    }

    // Rows are numbered from 1.
    XmlNode addRow(XmlNode parent, const char* name, int row)
    {
        const XmlNode node = add(parent, name);
        document_.document()->setAttribute(node, "ID", formatted(row + 1));
        return node;
    }

    void writeHead()
    {
        document_.appendNode(XmlNode(), document_.document()->createProcessingInstruction(
                                            "xml", "version='1.0' encoding='UTF-8'"));
        root_ = add(XmlNode(), "Curve");
        add(root_, "Version", versionText(version_).c_str());
        add(root_, "FunctionName", name_);
        add(root_, "FunctionType", kFunctionTypes.textOf(function_.getFunctionType(), L""));
        add(root_, "MotionObjectType",
            kMotionObjectTypes.textOf(function_.getMotionObjectType(),
                                      kMotionObjectTypes.textOf(MotionObjectType_Motor, L"")));
        add(root_, "XYDataType", kXYDataTypes.textOf(function_.getXYDataType(), L"MfXY_Misc"));
    }

    void writeRange(const char* name, const char* minName, const char* maxName, const char* format,
                    double min, double max)
    {
        const XmlNode range = add(root_, name);
        add(range, minName, formatted(format, min));
        add(range, maxName, formatted(format, max));
    }

    void writeRanges(const char* format, double minX, double maxX)
    {
        writeRange("RangeX", "MinX", "MaxX", format, minX, maxX);
        writeRange("RangeY", "MinY", "MaxY", format, 0.0, 0.0);
    }

    void writeBody(mfFunctionSegments_c& segments)
    {
        add(root_, "IndepVar", independentText(segments));
        add(root_, "DepVar", dependentText(segments));
        writeRanges(kFixedFormat, 0.0, 0.0);
        add(root_, "Cursor", L"");
        add(root_, "SegmentCount", formatted(segments.getSegmentCount()));
        const XmlNode rows = add(root_, "Segments");
        for (int row = 0; row < segments.getSegmentCount(); ++row) {
            mfSegment_c* segment = nullptr;
            segments.selectSegment(row, segment);
            writeSegment(addRow(rows, "Segment", row), *segment, row == 0);
        }
        writeDefinitions(add(root_, "ProfileDefinitions"), segments);
    }

    // The first row only states where the curve begins: it has no X of its own.
    void writeSegment(XmlNode node, mfSegment_c& segment, bool isFirst)
    {
        add(node, "StartX", isFirst ? CString(L" ") : formatted(kFixedFormat, segment.getStartX()));
        add(node, "EndX", isFirst ? CString(L" ") : formatted(kFixedFormat, segment.getEndX()));
        add(node, "Value", formatted(kFixedFormat, segment.getValue()));
        add(node, "Profile",
            mfProfileManager_c::s_UseNewProfileManager() ? segment.getDisplayName()
                                                         : segment.getProfileName());
    }

    // If the profile of any row has no record, no definitions are written.
    void writeDefinitions(XmlNode definitions, mfFunctionSegments_c& segments)
    {
        std::vector<CString> names;
        std::vector<mfProfile_c*> profiles;
        if (!segments.getProfilesToSave(names, profiles))
            return;
        for (std::size_t i = 0; i < names.size(); ++i) {
            const XmlNode definition = add(definitions, "ProfileDefinition");
            add(definition, "UniqueName", names[i]);
            add(definition, "ProfileFunction", profiles[i]->definitionText.c_str());
        }
    }

    void writeBody(mfFunctionDataPoints_c& points)
    {
        add(root_, "IndepVar", independentText(points));
        add(root_, "DepVar", dependentText(points));
        add(root_, "Interpolation", kInterpolationTypes.textOf(points.getInterpolationType(), L""));
        writeRanges(kSignificantFormat, 0.0, 0.0);
        add(root_, "Cursor", L"");
        add(root_, "PointCount", formatted(points.getTotalPoints()));
        const XmlNode rows = add(root_, "Points");
        for (int row = 0; row < points.getDataPointsCount(); ++row) {
            mfDataPoints_c* list = nullptr;
            points.selectDataPoint(row, list);
            writePoints(addRow(rows, "Point", row), *list);
        }
    }

    void writePoints(XmlNode node, const mfDataPoints_c& list)
    {
        for (int i = 0; i < list.getPointCount(); ++i) {
            add(node, "x", formatted(kSignificantFormat, list.getX(i)));
            add(node, "y", formatted(kSignificantFormat, list.getY(i)));
        }
    }

    void writeBody(mfFunctionExpression_c& expression)
    {
        writeRanges(kSignificantFormat, expression.getMinX(), expression.getMaxX());
        add(root_, "IndepVar", expression.getIndepVar());
        add(root_, "DepVar", dependentText(expression));
        add(root_, "Cursor", L"");
        add(root_, "Expression", expression.getMathExpression());
    }

    mfCurveDocument_c& document_;
    mfFunctionData_c& function_;
    const CString& name_;
    const double version_;
    XmlNode root_;
};

}  // namespace

std::string documentText(mfFunctionData_c& function, const CString& name)
{
    const SilentEngine engine;
    mfCurveDocument_c document;
    document.initialize();
    CurveWriter(document, function, name, kReadableVersion).write();
    std::string text = document.document()->serialise();
    document.shutdown();
    return text;
}

}  // namespace mf::documents

void mfFunctionData_c::createXMLData(const CString& name, bool toFile, const CString& path)
{
    const mf::documents::SilentEngine engine;
    mfCurveDocument_c document;
    document.setPath(path);
    document.initialize();
    mf::documents::CurveWriter(document, *this, name, mf::documents::writtenVersion()).write();
    if (toFile) {
        document.save();
    } else {
        document.extractXmlText();
        xmlData_ = document.getXmlText();
    }
    document.shutdown();
}
