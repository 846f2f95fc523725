// SPDX-License-Identifier: MIT

#include "mfcurves/curve/definitionOf.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "mfcurves/curve/LawFinder.h"
#include "mfcurves/curve/definitionTables.h"
#include "mfcurves/curve/problems.h"
#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/interfaces/hostAnswers.h"
#include "mfcurves/motion/mfFunctionData.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/segments/lawText.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"

namespace mf::curve {
namespace {

std::string utf8(const CString& text)
{
    return platform::toUtf8(text.View());
}

void report(std::vector<Problem>& problems, Problem::Level level, std::string place, std::string message)
{
    problems.push_back({level, std::move(place), std::move(message)});
}

std::string rowPlace(int row)
{
    return "row " + std::to_string(row);
}

// The quantity in the field of the kind that is valid for its object, motor or force. If
// only the other field has a quantity, it is that one. Null if neither has one.
const QuantityRecord* quantityOf(const mfFunctionBase_c& kind)
{
    const bool isMotor = kind.motionObjectType == 0;
    const QuantityRecord* other = nullptr;
    for (const QuantityRecord& record : kQuantities) {
        const bool isOfMotor = record.motor != MotorDriveType_None;
        const bool isMeant =
            isOfMotor ? record.motor == kind.motorDependentVar : record.force == kind.forceTorqueDependentVar;
        if (isMeant && isOfMotor == isMotor)
            return &record;
        if (isMeant)
            other = &record;
    }
    return other;
}

const QuantityRecord& quantityFor(MotionObjectType_e object)
{
    for (const QuantityRecord& record : kQuantities) {
        if (record.object == object)
            return record;
    }
    return kQuantities[0];
}

const QuantityRecord& quantityOf(mfFunctionData_c& function, const mfFunctionBase_c& kind,
                                 std::vector<Problem>& problems)
{
    const MotionObjectType_e object = function.getMotionObjectType();
    const QuantityRecord* said = quantityOf(kind);
    const QuantityRecord& taken = said ? *said : quantityFor(object);
    if (!said)
        report(problems, Problem::Level::Warning, "",
               std::string("it does not say which quantity it gives; it counts as ") + taken.name);
    else if (object != MotionObjectType_None && object != said->object)
        report(problems, Problem::Level::Warning, "",
               std::string("it is for a ") + objectName(object) + " and gives " + said->name +
                   "; it counts as " + said->name);
    return taken;
}

void setVariable(CurveDefinition& definition, const mfFunctionBase_c& kind, std::vector<Problem>& problems)
{
    switch (kind.independentVar) {
        case IndependentVariableType_Time:
            break;
        case IndependentVariableType_CycleAngle:
            definition.over = Over::CycleAngle;
            break;
        case IndependentVariableType_MotionResult:
            definition.over = Over::MotionResult;
            definition.motionResult = utf8(kind.motionResult);
            break;
        default:
            report(problems, Problem::Level::Warning, "", "it does not say what x is; it counts as time");
    }
}

bool isRotary(MotFuncXYDataType_e type)
{
    return type >= MfXY_Disp_RotMotor && type <= MfXY_Acc_RotMotor;
}

// A formula with "#" for each number with six decimals, as laws insert them.
std::wstring withoutNumbers(const std::wstring& formula)
{
    constexpr std::wstring_view kDigits = L"0123456789";
    std::wstring text;
    for (std::size_t i = 0; i < formula.size();) {
        const std::size_t end = std::min(formula.find_first_not_of(kDigits, i), formula.size());
        if (end == i) {
            text += formula[i++];
            continue;
        }
        const std::size_t last = end < formula.size() && formula[end] == L'.'
                                     ? std::min(formula.find_first_not_of(kDigits, end + 1), formula.size())
                                     : end;
        text += last == end + 7 ? std::wstring(1, L'#') : formula.substr(i, last - i);
        i = last;
    }
    return text;
}

// Whether two formulas without numbers are of one law. A number in `held` may be negative.
bool isSameLaw(std::wstring_view law, std::wstring_view held)
{
    for (const wchar_t c : law) {
        if (c == L'#' && held.starts_with(L'-'))
            held.remove_prefix(1);
        if (!held.starts_with(c))
            return false;
        held.remove_prefix(1);
    }
    return held.empty();
}

// The laws of a host for the rows of its table; the default law for a row without one.
class RowLaws {
public:
    // The law of a row; null if the host has no law for its key.
    const mfProfile_c* recordOf(const mfSegment_c& segment)
    {
        const mfProfileKey_c* key = segment.getProfileKey();
        if (segment.getProfile())
            return segment.getProfile();
        if (key && !key->name.IsEmpty())
            return manager_ ? manager_->findProfile(*key) : nullptr;
        return defaultRecord();
    }

    std::string nameOf(const mfSegment_c& segment, const mfProfile_c& record)
    {
        const std::string name = utf8(segment.getDisplayName());
        return name.empty() ? record.name : name;
    }

private:
    const mfProfile_c* defaultRecord()
    {
        if (!manager_)
            return &builtInLaws().front()->record;
        CString name;
        manager_->defaultDisplayName(name);
        return manager_->findProfile(manager_->getProfileKeyFromDisplayName(name));
    }

    mfProfileManager_c* const manager_ = interfaces::profileManager();
};

// False for a formula that was set by hand: it is not a law, so no definition can contain it.
bool hasFormulaOf(const mfProfile_c& law, const mfSegment_c& segment)
{
    const CString held = segment.getProfileExpr();
    if (held.IsEmpty())
        return true;
    const std::wstring anyNumber = L"0.000000";
    std::wstring formula;
    return segments::enterNumbers(law, {anyNumber, anyNumber, anyNumber, anyNumber}, formula) &&
           isSameLaw(withoutNumbers(formula), withoutNumbers(std::wstring(held.View())));
}

SegmentShape segmentsOf(mfFunctionSegments_c& table, std::vector<Problem>& problems)
{
    SegmentShape shape = rowsOf(table, problems);
    if (hasError(problems))
        return shape;
    RowLaws laws;
    std::vector<std::string> names;
    std::vector<const mfProfile_c*> records;
    for (int row = 1; row < table.getSegmentCount(); ++row) {
        mfSegment_c* segment = nullptr;
        table.selectSegment(row, segment);
        const mfProfile_c* record = laws.recordOf(*segment);
        records.push_back(record ? record : &builtInLaws().front()->record);
        names.push_back(laws.nameOf(*segment, *records.back()));
        const bool isJump = segment->getStartX() == segment->getEndX();
        if (!record && !isJump)
            report(problems, Problem::Level::Error, rowPlace(row),
                   "the host has no law " + quoted(utf8(segment->getDisplayName())));
        else if (record && !isJump && !hasFormulaOf(*record, *segment))
            report(problems, Problem::Level::Error, rowPlace(row),
                   "its formula is not that of the law " + curve::quoted(names.back()) +
                       "; parseExpression makes the formula of the law");
    }
    std::vector<RowLaw> rowLaws;
    for (std::size_t i = 0; i < names.size(); ++i)
        rowLaws.push_back({names[i], records[i]->definitionText});
    nameLaws(shape, rowLaws);
    return shape;
}

// Names for laws that are not built in, one for each text.
class LawNames {
public:
    const std::string& nameOf(const RowLaw& law)
    {
        const auto [place, isNew] = names_.try_emplace(std::pair(law.name, law.definition));
        if (isNew)
            place->second = iFreeName(law);
        return place->second;
    }

    std::vector<LawText> texts() && { return std::move(texts_); }

private:
    std::string iFreeName(const RowLaw& law)
    {
        std::string name(law.name);
        // That source is for built-in laws only.
        if (const std::size_t source = name.find(" (Default)"); source != std::string::npos)
            name.replace(source, std::string::npos, " (Assembly)");
        std::string free = name;
        for (int i = 1; !used_.insert(free).second; ++i)
            free = name + '<' + std::to_string(i) + '>';
        texts_.push_back({free, std::string(law.definition)});
        return free;
    }

    std::map<std::pair<std::string_view, std::string_view>, std::string> names_;
    std::set<std::string> used_;
    std::vector<LawText> texts_;
};

}  // namespace

CurveDefinition headOf(mfFunctionData_c& function, const mfFunctionBase_c& kind,
                       std::vector<Problem>& problems)
{
    CurveDefinition definition;
    definition.name = utf8(function.getName());
    const QuantityRecord& quantity = quantityOf(function, kind, problems);
    definition.quantity = quantity.quantity;
    setVariable(definition, kind, problems);
    const MotFuncXYDataType_e type = function.getXYDataType();
    definition.rotary = isRotary(type);
    if (type != impliedDataType(definition.quantity, definition.rotary))
        definition.dataType = type;
    return definition;
}

SegmentShape rowsOf(mfFunctionSegments_c& table, std::vector<Problem>& problems)
{
    SegmentShape shape;
    shape.sixDecimals = true;
    const int count = table.getSegmentCount();
    if (count < 2) {
        report(problems, Problem::Level::Error, "", "it has no row after the start");
        return shape;
    }
    mfSegment_c* segment = nullptr;
    table.selectSegment(0, segment);
    shape.startValue = segment->getValue();
    shape.rows.reserve(static_cast<std::size_t>(count) - 1);
    for (int row = 1; row < count; ++row) {
        table.selectSegment(row, segment);
        if (row == 1)
            shape.startX = segment->getStartX();
        else if (segment->getStartX() != shape.rows.back().endX)
            report(problems, Problem::Level::Error, rowPlace(row),
                   "it starts at " + shortNumber(segment->getStartX()) + ", but the previous row ends at " +
                       shortNumber(shape.rows.back().endX));
        shape.rows.push_back({segment->getEndX(), segment->getValue(), {}});
    }
    return shape;
}

PointShape pointsOf(mfFunctionDataPoints_c& table)
{
    PointShape shape;
    for (int row = 0; row < table.getDataPointsCount(); ++row) {
        mfDataPoints_c* points = nullptr;
        table.selectDataPoint(row, points);
        for (int i = 0; i < points->getPointCount(); ++i) {
            shape.x.push_back(points->getX(i));
            shape.y.push_back(points->getY(i));
        }
    }
    for (const InterpolationRecord& record : kInterpolations) {
        if (record.type == table.getInterpolationType())
            shape.interpolation = record.interpolation;
    }
    return shape;
}

ExpressionShape textOf(mfFunctionExpression_c& expression)
{
    return {utf8(expression.getMathExpression()), expression.getMinX(), expression.getMaxX()};
}

void nameLaws(SegmentShape& shape, const std::vector<RowLaw>& laws)
{
    LawNames names;
    std::vector<bool> areBuiltIn;
    for (std::size_t i = 0; i < laws.size(); ++i) {
        const std::string name(laws[i].name);
        areBuiltIn.push_back(isBuiltIn(name, laws[i].definition));
        shape.rows[i].profile = areBuiltIn[i] ? withoutSource(name) : names.nameOf(laws[i]);
    }
    shape.laws = std::move(names).texts();
    LawFinder finder(shape.laws);
    for (std::size_t i = 0; i < laws.size(); ++i) {
        if (areBuiltIn[i] && finder.named(shape.rows[i].profile).isOwn)
            shape.rows[i].profile += " (Default)";
    }
}

CurveDefinition definitionOf(mfFunctionData_c& function, std::vector<Problem>& problems)
{
    const auto defined = [&](auto* kind, const auto& shapeOf) {
        CurveDefinition definition;
        if (kind) {
            definition = headOf(function, *kind, problems);
            definition.shape = shapeOf(*kind);
        } else {
            report(problems, Problem::Level::Error, "", "the motion function was not initialised");
        }
        return definition;
    };
    switch (function.getFunctionType()) {
        case FunctionType_Segments:
            return defined(static_cast<mfFunctionSegments_c*>(function.getFunctionSegments()),
                           [&](auto& table) { return segmentsOf(table, problems); });
        case FunctionType_DataPoints:
            return defined(static_cast<mfFunctionDataPoints_c*>(function.getFunctionDataPoints()), pointsOf);
        case FunctionType_Expression:
            return defined(static_cast<mfFunctionExpression_c*>(function.getFunctionExpression()), textOf);
    }
    report(problems, Problem::Level::Error, "",
           "the function type is " + std::to_string(function.getFunctionType()) +
               ", which is neither segments nor data points nor an expression");
    return {};
}

}  // namespace mf::curve
