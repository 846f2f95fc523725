// SPDX-License-Identifier: MIT

#include "tests/curve/givenCurve.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <variant>

#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/interfaces/hostAnswers.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/profiles/mfSegmentTypeParser.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"

namespace curve_test {
namespace {

// Registers a law of the definition with the host's profile manager.
mfProfileKey_c keyOf(const mf::LawText& law)
{
    mfSegmentTypeParser_c parser;
    std::string text = law.text;
    parser.removeWhiteSpace(text);
    std::transform(text.begin(), text.end(), text.begin(),
                   [&](char c) { return parser.lowerOutsideQuotes(c); });
    auto record = std::make_unique<mfProfile_c>();
    if (!parser.parseDefinition(text, record.get(), true))
        throw std::runtime_error("the law does not parse");
    mfProfileKey_c key;
    const int status =
        mf::interfaces::profileManager()->addAssemblyProfileFromDocument(law.name, true, record.get(), key);
    if (status == 0)
        static_cast<void>(record.release());  // the manager owns it
    return key;
}

mfProfileKey_c keyOf(const mf::SegmentShape& shape, const std::string& name)
{
    for (const mf::LawText& law : shape.laws) {
        if (law.name == name)
            return keyOf(law);
    }
    const std::string base = mfSegmentTypeParser_c().baseProfileName(name);
    return mf::interfaces::profileManager()->getProfileKeyFromDisplayName((base + " (Default)").c_str());
}

}  // namespace

GivenCurve::GivenCurve(const mf::CurveDefinition& definition)
{
    if (!function_.initialize())
        throw std::runtime_error("no function without services");
    std::visit([this](const auto& shape) { iFill(shape); }, definition.shape);
}

void GivenCurve::iFill(const mf::SegmentShape& shape)
{
    function_.setFunctionType(mf::FunctionType_Segments);
    function_.setMotorDriveType(mf::MotorDriveType_Displacment);
    auto& table = static_cast<mfFunctionSegments_c&>(*function_.getFunctionSegments());
    table.addSegment(new mfSegment_c(0.0, 0.0, shape.startValue, L"Initial"));
    double start = shape.startX;
    for (const mf::CurveRow& row : shape.rows) {
        auto* segment = new mfSegment_c(start, row.endX, row.value, row.profile.c_str());
        segment->setProfileKey(keyOf(shape, row.profile));
        if (segment->getProfile() == nullptr)
            throw std::runtime_error("the host has no profile " + row.profile);
        table.addSegment(segment);
        start = row.endX;
    }
    for (int row = 1; row < table.getSegmentCount(); ++row)
        table.parseExpression(row);
    table.calculateValue();
}

void GivenCurve::iFill(const mf::PointShape& shape)
{
    function_.setFunctionType(mf::FunctionType_DataPoints);
    function_.setMotorDriveType(mf::MotorDriveType_Displacment);
    auto& points = static_cast<mfFunctionDataPoints_c&>(*function_.getFunctionDataPoints());
    points.setInterpolationType(static_cast<mf::DataPointInterpolationType_e>(shape.interpolation));
    for (std::size_t i = 0; i < shape.x.size(); ++i) {
        auto* point = new mfDataPoints_c;
        point->addPoint(shape.x[i], shape.y[i]);
        points.appendDataPoint(point);
    }
    points.RegenSplineData();
}

// The three derivatives need more than two plotting points.
void GivenCurve::iFill(const mf::ExpressionShape& shape)
{
    function_.setFunctionType(mf::FunctionType_Expression);
    function_.setMotorDriveType(mf::MotorDriveType_Displacment);
    auto& expression = static_cast<mfFunctionExpression_c&>(*function_.getFunctionExpression());
    expression.setMathExpression(mf::platform::widen(shape.text).c_str());
    expression.setDomain(shape.from, shape.to);
    expression.setPlottingPointCount(100);
}

}  // namespace curve_test
