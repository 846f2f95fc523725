#include "mfcurves/documents/readCurve.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "mfcurves/documents/formatTexts.h"
#include "mfcurves/documents/mfCurveDocument.h"
#include "mfcurves/engine/limits.h"
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

// Worth about a thousand characters of formula in a ReadingBudget.
constexpr std::size_t kAllowanceOfRow = 64;

CString wideText(const XmlNode& node)
{
    return CString(platform::widen(node.text()));
}

std::string narrowText(const XmlNode& node)
{
    return mfTextConverter_c().toNarrow(wideText(node));
}

std::string quoted(const CString& text)
{
    return '"' + platform::toUtf8(text.View()) + '"';
}

// A text may be as long as the document; its start is enough to find it.
std::string quotedStart(const std::string& text)
{
    constexpr int kLongestQuote = 60;
    const CString wide(platform::widen(text));
    return quoted(wide.GetLength() > kLongestQuote ? wide.Left(kLongestQuote) + L"..." : wide);
}

// `"Point" 3`: rows are counted as the attribute ID counts them.
std::string rowPlace(const char* element, int row)
{
    return '"' + std::string(element) + "\" " + std::to_string(row + 1);
}

std::string shortNumber(double number)
{
    return platform::formatNumber("%.10G", number);
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
    CurveReader(mfFunctionData_c& function, const CString& path, bool fromBuffer, const ReadOptions& options)
        : function_(function), path_(path), fromBuffer_(fromBuffer), options_(options)
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
    ReadOutcome outcome(bool taken) { return {taken, std::move(reason_), std::move(remarks_), objectType_}; }

    bool fail(std::string reason)
    {
        reason_ = std::move(reason);
        return false;
    }

    bool mayRemark() const { return remarks_.size() < kMostRemarks; }

    void remark(std::string text)
    {
        if (mayRemark())
            remarks_.push_back(std::move(text));
    }

    // Every narrow encoding has the characters of a number where UTF-8 has them.
    // `place` answers which number this is; it is asked only when there is need.
    template <class Place>
    double number(const XmlNode& node, Place place)
    {
        const std::string text = node.text();
        const double number = platform::readNumber(text);
        if (!platform::isNumber(text) && mayRemark())
            remark(place() + " is " + quotedStart(text) + ", which is no finite number; it reads as " +
                   shortNumber(number) + '.');
        return number;
    }

    void tellRow(std::size_t row, std::size_t count) const
    {
        if (options_.onRow)
            options_.onRow(row, count);
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
        const double version = node ? platform::readNumber(node.text()) : kReadableVersion;
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
        if (fromBuffer_ || (options_.takeObjectOfFile && objectType_ != MotionObjectType_None))
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
        XmlNode unused;
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
        XmlNode unused;
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
        XmlNode minX;
        XmlNode maxX;
        if (!range(minX, maxX))
            return false;
        const double from = number(minX, [] { return placeOf("//Curve//RangeX//MinX"); });
        const double to = number(maxX, [] { return placeOf("//Curve//RangeX//MaxX"); });
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
    bool range(XmlNode& minX, XmlNode& maxX)
    {
        minX = singleNode("//Curve//RangeX//MinX");
        if (!minX)
            return false;
        maxX = singleNode("//Curve//RangeX//MaxX");
        return maxX && singleNode("//Curve//RangeY//MinY") && singleNode("//Curve//RangeY//MaxY");
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

    // An unknown text sets nothing. The empty one is what a curve without such a
    // quantity writes.
    template <class Kind>
    void setDependentVariable(Kind& kind, const CString& text)
    {
        const auto motor = kMotorDriveTypes.numberOf(text);
        const auto force = kForceTorqueTypes.numberOf(text);
        if (!motor && !force) {
            if (!text.IsEmpty())
                remark("\"DepVar\" is " + quoted(text) + ", which is none of " + kMotorDriveTypes.list() +
                       " and none of " + kForceTorqueTypes.list() + '.');
            return;
        }
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
        else if (!interpolation.IsEmpty())
            remark("\"Interpolation\" is " + quoted(interpolation) + ", which is none of " +
                   kInterpolationTypes.list() + '.');
        const std::vector<XmlNode> nodes = document_.document()->selectNodes("//Curve//Points//Point");
        int row = 0;
        for (const XmlNode& node : nodes) {
            tellRow(static_cast<std::size_t>(row), nodes.size());
            insertRow(function, row, readPoint(node, row));
            ++row;
        }
        function.RegenSplineData();
        function.calculateValue();
        return true;
    }

    // Children are told by position, whatever their names: x at even positions, y
    // at odd ones. A last x without a y is dropped.
    std::unique_ptr<mfDataPoints_c> readPoint(const XmlNode& node, int row)
    {
        auto points = std::make_unique<mfDataPoints_c>();
        double x = 0.0;
        double y = 0.0;
        int position = 0;
        for (XmlNode child = node.firstChild(); child; child = child.nextSibling(), ++position) {
            const bool isY = position % 2 == 1;
            const auto place = [&] { return (isY ? "\"y\" of " : "\"x\" of ") + rowPlace("Point", row); };
            if (child.isElement())
                (isY ? y : x) = number(child, place);
            if (isY)
                points->addPoint(x, y);
        }
        if (position == 0 || position % 2 == 1)
            remark(rowPlace("Point", row) + " does not hold pairs of x and y.");
        return points;
    }

    // Rows go in at their number in the document, as long as the table has taken
    // all before them: behind a row that it left out, none has a place any more.
    void insertRow(mfFunctionDataPoints_c& function, int row, std::unique_ptr<mfDataPoints_c> points)
    {
        const double x = points->getX(0);
        if (row == function.getDataPointsCount())
            function.appendDataPoint(points.get());
        else
            function.insertDataPoint(row, points.get());
        if (row >= function.getDataPointsCount())
            return remark(rowPlace("Point", row) + " has no place behind the ones before and is left out.");
        const double storedX = points.release()->getX(0);  // the table owns it
        if (storedX != x)
            remark(rowPlace("Point", row) + " has x = " + shortNumber(x) +
                   ", which does not lie behind the point before; it moves to " + shortNumber(storedX) + '.');
    }

    // A definition inside another one is text of both. Only the document's length
    // adds to what reading all of them may cost, and behind what uses it up none is
    // looked at.
    void readProfileDefinitions()
    {
        int definition = 0;
        constexpr std::size_t kCostOfCharacter = 8;  // its way out of the tree and to narrow text
        definitionBudget_.allowFor(document_.document()->size());
        for (const XmlNode& node :
             document_.document()->selectNodes("//Curve//ProfileDefinitions//ProfileDefinition")) {
            if (!definitionBudget_.spend(1))
                return;
            std::string uniqueName;
            std::string functionText;
            int position = 0;
            for (XmlNode child = node.firstChild(); child && position < 2;
                 child = child.nextSibling(), ++position)
                if (child.isElement())
                    (position == 0 ? uniqueName : functionText) = narrowText(child);
            definitionBudget_.spend(kCostOfCharacter * (uniqueName.size() + functionText.size()));
            if (mfProfileManager_c::s_UseNewProfileManager())
                registerProfile(definition, uniqueName, functionText);
            ++definition;
        }
    }

    // A definition that does not parse is left out, and so is one that equals a
    // profile at hand: its name then stands for that profile.
    void registerProfile(int definition, const std::string& uniqueName, std::string& functionText)
    {
        mfProfileManager_c* manager = interfaces::profileManager();
        if (!manager)
            return;
        mfSegmentTypeParser_c parser;
        auto profile = std::make_unique<mfProfile_c>();
        parser.upgradeKeywords(functionText);
        if (const auto failure = profiles::parseDefinition(functionText, *profile, definitionBudget_)) {
            if (mayRemark())
                remark(rowPlace("ProfileDefinition", definition) + ", " + quotedStart(uniqueName) +
                       ", is left out: " + failure->reason + '.');
            return;
        }
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
        const std::vector<XmlNode> nodes = document_.document()->selectNodes("//Curve//Segments//Segment");
        int row = 0;
        for (const XmlNode& node : nodes) {
            tellRow(static_cast<std::size_t>(row), nodes.size());
            addRow(function, row, readSegment(node, row, manager));
            ++row;
        }
        return true;
    }

    // Elements are told by their number, whatever their names; other children do
    // not count.
    std::unique_ptr<mfSegment_c> readSegment(const XmlNode& node, int row, mfProfileManager_c* manager)
    {
        auto segment = std::make_unique<mfSegment_c>();
        XmlNode profile;
        int element = 0;
        for (XmlNode child = node.firstChild(); child && element < 4; child = child.nextSibling()) {
            if (!child.isElement())
                continue;
            switch (++element) {
                case 1:
                    segment->setStartX(segmentX(child, "StartX", row));
                    break;
                case 2:
                    segment->setEndX(segmentX(child, "EndX", row));
                    break;
                case 3:
                    segment->setValue(
                        number(child, [&] { return "\"Value\" of " + rowPlace("Segment", row); }));
                    break;
                default:
                    profile = child;
                    setProfile(*segment, child, manager);
            }
        }
        if (element < (row == 0 ? 3 : 4))
            remark(rowPlace("Segment", row) + " does not hold start, end, value and profile.");
        if (mfProfileManager_c::s_UseNewProfileManager() && manager) {
            const bool isFound = segment->getProfileKey() != nullptr;
            completeProfile(*segment, *manager);
            if (!isFound && profile && row > 0 && mayRemark())
                remark("\"Profile\" of " + rowPlace("Segment", row) + " is " + quotedStart(profile.text()) +
                       ", which the document does not define; the row takes " +
                       quoted(segment->getDisplayName()) + '.');
        }
        return segment;
    }

    // The first row has no X of its own and is written with blanks for it.
    double segmentX(const XmlNode& node, const char* name, int row)
    {
        if (row == 0)
            return platform::readNumber(node.text());
        return number(node, [&] { return '"' + std::string(name) + "\" of " + rowPlace("Segment", row); });
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

    // The first row only states where the curve begins. A row keeps its formula with
    // its numbers written in, and a short document can name a long one often: behind
    // what uses up the budget, rows stay without.
    void addRow(mfFunctionSegments_c& function, int row, std::unique_ptr<mfSegment_c> segment)
    {
        const double startX = segment->getStartX();
        function.addSegment(segment.get());
        const mfSegment_c& stored = *segment.release();  // the table owns it
        function.checkInvalid(row);
        formulaBudget_.allowFor(kAllowanceOfRow);
        if (row == 0)
            return;
        if (stored.getStartX() != startX)
            remark(rowPlace("Segment", row) + " starts at " + shortNumber(startX) +
                   ", where the one before does not end; it becomes a row from " +
                   shortNumber(stored.getStartX()) + " to " + shortNumber(stored.getEndX()) +
                   " with value 0.");
        if (formulasFit_) {
            function.parseExpression(row);
            formulasFit_ = formulaBudget_.spend(costOfFormula(stored));
            if (!formulasFit_)
                remark("The rows behind " + rowPlace("Segment", row) +
                       " get no formula, because those of the rows before are too long together.");
        }
        function.calculateValue(row);
    }

    // In bytes. A formula that outgrew the engine's limit was written as far as that.
    static std::size_t costOfFormula(const mfSegment_c& segment)
    {
        const CString formula = segment.getProfileExpr();
        if (formula.IsEmpty() && segment.getProfile())
            return engine::kLongestText * sizeof(wchar_t);
        return formula.View().size() * sizeof(wchar_t);
    }

    mfFunctionData_c& function_;
    const CString& path_;
    bool fromBuffer_;
    const ReadOptions& options_;
    profiles::ReadingBudget definitionBudget_;  // of all definitions in the document
    profiles::ReadingBudget formulaBudget_;     // of the formulas of all rows
    bool formulasFit_ = true;                   // into that budget, up to now
    mfCurveDocument_c document_;
    std::string reason_;
    std::vector<std::string> remarks_;
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
