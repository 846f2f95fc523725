// SPDX-License-Identifier: MIT

#include "mfcurves/curve/writeDefinition.h"

#include <map>
#include <memory>
#include <utility>

#include "mfcurves/curve/LawFinder.h"
#include "mfcurves/curve/PlainFunction.h"
#include "mfcurves/curve/definitionTables.h"
#include "mfcurves/documents/writeCurve.h"
#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/segments/mfSegment.h"

namespace mf::curve {
namespace {

CString wide(const std::string& text)
{
    return CString(platform::widen(text));
}

IndependentVariableType_e variableOf(Over over)
{
    switch (over) {
        case Over::CycleAngle:
            return IndependentVariableType_CycleAngle;
        case Over::MotionResult:
            return IndependentVariableType_MotionResult;
        default:
            return IndependentVariableType_Time;
    }
}

void setVariables(mfFunctionBase_c& kind, const CurveDefinition& definition)
{
    const QuantityRecord& quantity = recordOf(definition.quantity);
    kind.motionObjectType = quantity.object == MotionObjectType_Motor ? 0 : 1;
    kind.motorDependentVar = quantity.motor;
    kind.forceTorqueDependentVar = quantity.force;
    kind.independentVar = variableOf(definition.over);
    kind.motionResult = wide(definition.motionResult);
}

// A function with the content of a definition, and what its rows refer to.
class FilledFunction {
public:
    explicit FilledFunction(const CurveDefinition& definition)
    {
        const QuantityRecord& quantity = recordOf(definition.quantity);
        function.setMotionObjectType(quantity.object);
        function.setXYDataType(
            definition.dataType.value_or(impliedDataType(definition.quantity, definition.rotary)));
        std::visit([&](const auto& shape) { iFill(shape, definition); }, definition.shape);
    }

    PlainFunction function;

private:
    void iFill(const SegmentShape& shape, const CurveDefinition& definition)
    {
        function.setFunctionType(FunctionType_Segments);
        setVariables(function.segments, definition);
        LawFinder finder(shape.laws);
        // The first row has the value at the start. If it had no law, those of the other rows
        // would not be written.
        iAddRow(shape.startX, {shape.startX, shape.startValue, shape.rows.front().profile}, finder);
        double startX = shape.startX;
        for (const CurveRow& row : shape.rows) {
            iAddRow(startX, row, finder);
            startX = row.endX;
        }
    }

    void iAddRow(double startX, const CurveRow& row, LawFinder& finder)
    {
        // A jump needs no law and may name none.
        const std::shared_ptr<const Law>& law =
            row.profile.empty() ? builtInLaws().front() : finder.named(row.profile).law;
        const CString name = wide(law->isBuiltIn ? law->text.name + " (Default)" : law->text.name);
        auto segment = std::make_unique<mfSegment_c>(startX, row.endX, row.value, name);
        mfProfileKey_c key;
        key.name = name;
        segment->setProfileKey(key);
        segment->setProfile(&iRecordOf(law));
        function.segments.addSegment(segment.get());
        static_cast<void>(segment.release());  // the table owns it
    }

    mfProfile_c& iRecordOf(const std::shared_ptr<const Law>& law)
    {
        std::unique_ptr<mfProfile_c>& record = records_[law.get()];
        if (!record)
            record = std::make_unique<mfProfile_c>(law->record);
        return *record;
    }

    void iFill(const PointShape& shape, const CurveDefinition& definition)
    {
        function.setFunctionType(FunctionType_DataPoints);
        setVariables(function.points, definition);
        for (const InterpolationRecord& record : kInterpolations) {
            if (record.interpolation == shape.interpolation)
                function.points.setInterpolationType(record.type);
        }
        for (std::size_t i = 0; i < shape.x.size(); ++i) {
            auto row = std::make_unique<mfDataPoints_c>();
            row->addPoint(shape.x[i], shape.y[i]);
            function.points.appendDataPoint(row.get());
            static_cast<void>(row.release());  // the table owns it
        }
    }

    void iFill(const ExpressionShape& shape, const CurveDefinition& definition)
    {
        function.setFunctionType(FunctionType_Expression);
        setVariables(function.expression, definition);
        function.expression.setIndepVar(definition.over == Over::Time ? CString()
                                        : definition.over == Over::CycleAngle
                                            ? CString(L"CycleAngle")
                                            : wide(definition.motionResult));
        function.expression.setMathExpression(wide(shape.text));
        function.expression.setDomain(shape.from, shape.to);
    }

    std::map<const Law*, std::unique_ptr<mfProfile_c>> records_;
};

}  // namespace

std::string documentOf(const CurveDefinition& definition)
{
    FilledFunction filled(definition);
    return documents::documentText(filled.function, wide(definition.name));
}

}  // namespace mf::curve
