#include "mfcurves/documents/readCurve.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "mfcurves/documents/formatTexts.h"
#include "mfcurves/documents/mfCurveDocument.h"
#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/interfaces/IMotionServices.h"
#include "mfcurves/interfaces/hostAnswers.h"
#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/motion/mfFunctionData.h"
#include "mfcurves/motion/mfTextConverter.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/numbers.h"
#include "mfcurves/profiles/definitionReading.h"
#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/profiles/mfSegmentTypeParser.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"

namespace mf::documents {
namespace {

CString wideText(const XmlNode& node)
{
    return CString(platform::widen(node.text()));
}

std::string narrowText(const XmlNode& node)
{
    return mfTextConverter_c().toNarrow(wideText(node));
}

// Every narrow encoding has the characters of a number where UTF-8 has them.
double number(const XmlNode& node)
{
    return platform::readNumber(node.text());
}

std::string quoted(const CString& text)
{
    return '"' + platform::toUtf8(text.View()) + '"';
}

// "//Curve//RangeX//MinX" as `"MinX" within "RangeX" within "Curve"`.
std::string placeOf(std::string_view path)
{
    std::string place;
    while (!path.empty()) {
        const std::size_t separator = path.rfind('/');
        place += place.empty() ? "\"" : " within \"";
        place.append(path.substr(separator + 1)) += '"';
        path = path.substr(0, path.find_last_not_of('/', separator) + 1);
    }
    return place;
}

// One read. Each step answers false when the read fails there, and `reason_`
// then tells why; what was set before stays set.
class CurveReader {
public:
    CurveReader(mfFunctionData_c& function, const CString& path, bool fromBuffer)
        : function_(function), path_(path), fromBuffer_(fromBuffer)
    {
        document_.setPath(path);
        document_.setFromBuffer(fromBuffer);
    }

    // The start of the XML engine is taken back where the head ends the read and
    // where the whole document was read. Callers count on the starts that the
    // other ways out leave behind.
    ReadOutcome read(std::string buffer)
    {
        document_.initialize();
        if (!load(std::move(buffer)))
            return outcome(false);
        if (!isReadableVersion())
            return outcome(true);
        CString functionType;
        if (!readHead(functionType)) {
            document_.shutdown();
            return outcome(false);
        }
        if (!readBody(functionType))
            return outcome(false);
        document_.shutdown();
        return outcome(true);
    }

private:
    ReadOutcome outcome(bool taken) { return {taken, std::move(reason_), objectType_}; }

    bool fail(std::string reason)
    {
        reason_ = std::move(reason);
        return false;
    }

    bool load(std::string buffer)
    {
        if (fromBuffer_)
            document_.setXmlText(std::move(buffer));
        if (fromBuffer_ ? document_.loadBuffer() : document_.load())
            return true;
        const XmlProblem& problem = document_.document()->problem();
        if (problem.line == 0)
            return fail(problem.message + '.');
        return fail(problem.message + " (line " + std::to_string(problem.line) + ", column " +
                    std::to_string(problem.column) + ").");
    }

    // The version is kept whatever it is: documents written later carry it.
    bool isReadableVersion()
    {
        const XmlNode node = document_.document()->selectSingleNode("//Curve//Version");
        const double version = node ? number(node) : kReadableVersion;
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
        if (fromBuffer_)
            function_.setMotionObjectType(objectType_);
        if (!text("//Curve//XYDataType", dataText))
            return false;
        function_.setXYDataType(
            static_cast<MotFuncXYDataType_e>(kXYDataTypes.numberOf(dataText).value_or(MfXY_Misc)));
        return fitsObject(objectText) && isKnownFunctionType(functionType);
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
        double unused = 0.0;
        if (!exists(segments) || !readVariables(independent, dependent) ||
            !setIndependentVariable(*segments, independent, &CurveReader::isListedResult) ||
            !range(unused, unused))
            return false;
        setDependentVariable(*segments, dependent);
        if (!singleNode("//Curve//Cursor"))
            return false;
        readProfileDefinitions();
        return readSegments(*segments);
    }

    bool readDataPointFunction()
    {
        function_.setFunctionType(FunctionType_DataPoints);
        auto* points = static_cast<mfFunctionDataPoints_c*>(function_.getFunctionDataPoints());
        CString independent;
        CString dependent;
        double unused = 0.0;
        if (!exists(points) || !readVariables(independent, dependent) ||
            !setIndependentVariable(*points, independent, &CurveReader::isAcceptedResult) ||
            !range(unused, unused))
            return false;
        setDependentVariable(*points, dependent);
        return singleNode("//Curve//Cursor") && readPoints(*points);
    }

    bool readExpressionFunction()
    {
        function_.setFunctionType(FunctionType_Expression);
        auto* expression = static_cast<mfFunctionExpression_c*>(function_.getFunctionExpression());
        if (!exists(expression))
            return false;
        expression->clearExpression();
        double minX = 0.0;
        double maxX = 0.0;
        if (!range(minX, maxX))
            return false;
        expression->setDomain(minX, maxX);
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
        return kind || fail("The motion function was not initialised.");
    }

    // A node that every document holds; null, which fails the read, where this one
    // does not.
    XmlNode singleNode(const char* path)
    {
        const XmlNode node = document_.document()->selectSingleNode(path);
        if (!node)
            fail("The element " + placeOf(path) + " is missing.");
        return node;
    }

    bool text(const char* path, CString& out)
    {
        const XmlNode node = singleNode(path);
        if (node)
            out = wideText(node);
        return static_cast<bool>(node);
    }

    bool readVariables(CString& independent, CString& dependent)
    {
        return text("//Curve//IndepVar", independent) && text("//Curve//DepVar", dependent);
    }

    // The range of Y has to be there and counts for nothing.
    bool range(double& minX, double& maxX)
    {
        const XmlNode minNode = singleNode("//Curve//RangeX//MinX");
        if (!minNode)
            return false;
        const XmlNode maxNode = singleNode("//Curve//RangeX//MaxX");
        if (!maxNode || !singleNode("//Curve//RangeY//MinY") || !singleNode("//Curve//RangeY//MaxY"))
            return false;
        minX = number(minNode);
        maxX = number(maxNode);
        return true;
    }

    // Any text but those of time and cycle angle names a motion result, which the
    // host has to accept. Only then is the former curve cleared.
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

    // Segments: the host's list has to hold the name.
    bool isListedResult(const CString& name)
    {
        IMotionServices_c* services = interfaces::motionServices();
        std::vector<CString> results;
        if (services)
            services->getMotionResultNames(results);
        if (std::find(results.begin(), results.end(), name) != results.end())
            return true;
        return fail("\"IndepVar\" is " + quoted(name) + ", which is none of " + kIndependentVariables.list() +
                    ", and the host knows no motion result of that name.");
    }

    // Data points: a host without a list takes any name.
    bool isAcceptedResult(const CString& name)
    {
        IMotionServices_c* services = interfaces::motionServices();
        return (services && services->getMotionResultCount() == 0) || isListedResult(name);
    }

    template <class Kind>
    static void setDependentVariable(Kind& kind, const CString& text)
    {
        const auto motor = kMotorDriveTypes.numberOf(text);
        const auto force = kForceTorqueTypes.numberOf(text);
        if (!motor && !force)
            return;
        kind.setMotorDependentVar(static_cast<MotorDriveType_e>(motor.value_or(MotorDriveType_None)));
        kind.setForceTorqueDependentVar(static_cast<ForceTorqueType_e>(force.value_or(ForceTorqueType_None)));
        kind.motionObjectType = motor ? 0 : 1;
    }

    bool readPoints(mfFunctionDataPoints_c& function)
    {
        CString interpolation;
        if (!text("//Curve//Interpolation", interpolation) || !singleNode("//Curve//PointCount"))
            return false;
        if (const auto type = kInterpolationTypes.numberOf(interpolation))
            function.setInterpolationType(static_cast<DataPointInterpolationType_e>(*type));
        int row = 0;
        for (const XmlNode& node : document_.document()->selectNodes("//Curve//Points//Point"))
            insertRow(function, row++, readPoint(node));
        function.RegenSplineData();
        function.calculateValue();
        return true;
    }

    // Children are told by position, whatever their names: x at even positions, y
    // at odd ones. A last x without a y is dropped.
    static std::unique_ptr<mfDataPoints_c> readPoint(const XmlNode& node)
    {
        auto points = std::make_unique<mfDataPoints_c>();
        double x = 0.0;
        double y = 0.0;
        int position = 0;
        for (XmlNode child = node.firstChild(); child; child = child.nextSibling(), ++position) {
            const bool isY = position % 2 == 1;
            if (child.isElement())
                (isY ? y : x) = number(child);
            if (isY)
                points->addPoint(x, y);
        }
        return points;
    }

    // Rows go in at their number in the document, as long as the table has taken
    // all before them: behind a row that it left out, none has a place any more.
    static void insertRow(mfFunctionDataPoints_c& function, int row, std::unique_ptr<mfDataPoints_c> points)
    {
        if (row == function.getDataPointsCount())
            function.appendDataPoint(points.get());
        else
            function.insertDataPoint(row, points.get());
        if (row < function.getDataPointsCount())
            (void)points.release();  // the table owns it
    }

    void readProfileDefinitions()
    {
        for (const XmlNode& node :
             document_.document()->selectNodes("//Curve//ProfileDefinitions//ProfileDefinition")) {
            std::string uniqueName;
            std::string functionText;
            int position = 0;
            for (XmlNode child = node.firstChild(); child && position < 2;
                 child = child.nextSibling(), ++position)
                if (child.isElement())
                    (position == 0 ? uniqueName : functionText) = narrowText(child);
            if (mfProfileManager_c::s_UseNewProfileManager())
                registerProfile(uniqueName, functionText);
        }
    }

    // A definition that does not parse is left out, and so is one that equals a
    // profile at hand: its name then stands for that profile.
    void registerProfile(const std::string& uniqueName, std::string& functionText)
    {
        mfProfileManager_c* manager = interfaces::profileManager();
        if (!manager)
            return;
        mfSegmentTypeParser_c parser;
        auto profile = std::make_unique<mfProfile_c>();
        parser.upgradeKeywords(functionText);
        if (profiles::parseDefinition(functionText, *profile, budget_))
            return;
        const std::string baseName = parser.baseProfileName(uniqueName);
        mfProfileKey_c key;
        const int status = fromBuffer_
                               ? manager->addAssemblyProfileFromDocument(baseName, true, profile.get(), key)
                               : manager->addAssemblyProfile(baseName, path_, profile.get(), key);
        if (status == 0)
            (void)profile.release();  // the manager owns it
        if (status < 2)
            manager->rememberDocumentName(uniqueName, key);
    }

    bool readSegments(mfFunctionSegments_c& function)
    {
        if (!singleNode("//Curve//SegmentCount"))
            return false;
        mfProfileManager_c* manager = interfaces::profileManager();
        int row = 0;
        for (const XmlNode& node : document_.document()->selectNodes("//Curve//Segments//Segment"))
            addRow(function, row++, readSegment(node, manager));
        return true;
    }

    // Elements are told by their number, whatever their names; other children do
    // not count.
    static std::unique_ptr<mfSegment_c> readSegment(const XmlNode& node, mfProfileManager_c* manager)
    {
        auto segment = std::make_unique<mfSegment_c>();
        int element = 0;
        for (XmlNode child = node.firstChild(); child && element < 4; child = child.nextSibling()) {
            if (!child.isElement())
                continue;
            switch (++element) {
                case 1:
                    segment->setStartX(number(child));
                    break;
                case 2:
                    segment->setEndX(number(child));
                    break;
                case 3:
                    segment->setValue(number(child));
                    break;
                default:
                    setProfile(*segment, child, manager);
            }
        }
        if (mfProfileManager_c::s_UseNewProfileManager() && manager)
            completeProfile(*segment, *manager);
        return segment;
    }

    // The name of a definition in the document or, if there are any definitions
    // at all, of a profile at hand. No other name is looked at.
    static void setProfile(mfSegment_c& segment, const XmlNode& node, mfProfileManager_c* manager)
    {
        if (!mfProfileManager_c::s_UseNewProfileManager()) {
            segment.setProfileName(wideText(node));
            return;
        }
        if (!manager || !manager->hasDocumentNames())
            return;
        mfProfileKey_c key;
        manager->lookupDocumentName(narrowText(node), key);
        if (key.isEmpty()) {
            key.name = wideText(node);
            manager->currentSourceSuffix(key.source);
        }
        if (manager->findProfile(key))
            segment.setProfileKey(key);
    }

    // A row that has no profile by now gets the default one.
    static void completeProfile(mfSegment_c& segment, mfProfileManager_c& manager)
    {
        if (!segment.getProfileKey() || segment.getProfileKey()->name.IsEmpty()) {
            CString name;
            manager.defaultDisplayName(name);
            segment.setProfileKey(manager.getProfileKeyFromDisplayName(name));
        }
        if (!segment.getProfile())
            segment.setProfile(manager.findProfile(*segment.getProfileKey()));
    }

    // The first row only states where the curve begins.
    static void addRow(mfFunctionSegments_c& function, int row, std::unique_ptr<mfSegment_c> segment)
    {
        function.addSegment(segment.get());
        (void)segment.release();  // the table owns it
        function.checkInvalid(row);
        if (row == 0)
            return;
        function.parseExpression(row);
        function.calculateValue(row);
    }

    mfFunctionData_c& function_;
    const CString& path_;
    bool fromBuffer_;
    profiles::ReadingBudget budget_;  // of all definitions in the document
    mfCurveDocument_c document_;
    std::string reason_;
    MotionObjectType_e objectType_ = MotionObjectType_None;
};

}  // namespace

ReadOutcome readCurve(mfFunctionData_c& function, const CString& path, bool fromBuffer, std::string buffer)
{
    const SilentEngine engine;
    return CurveReader(function, path, fromBuffer).read(std::move(buffer));
}

}  // namespace mf::documents

bool mfFunctionData_c::readXMLData(const CString& path, bool fromBuffer, std::string buffer)
{
    return mf::documents::readCurve(*this, path, fromBuffer, std::move(buffer)).taken;
}
