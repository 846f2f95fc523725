// SPDX-License-Identifier: MIT

#include <cmath>

#include "mfcurves/analysis/analysis.h"
#include "mfcurves/curve/lawFormula.h"
#include "mfcurves/engine/lexer.h"
#include "mfcurves/engine/names.h"
#include "mfcurves/engine/parser.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/numbers.h"

namespace mf::analysis {
namespace {

double asEntered(double number, bool sixDecimals)
{
    return sixDecimals ? platform::readNumber(platform::sixDecimals(number)) : number;
}

SegmentShape scaled(SegmentShape shape, double factor)
{
    shape.startX = asEntered(shape.startX, shape.sixDecimals) * factor;
    shape.startValue = asEntered(shape.startValue, shape.sixDecimals);
    for (CurveRow& row : shape.rows) {
        row.endX = asEntered(row.endX, shape.sixDecimals) * factor;
        row.value = asEntered(row.value, shape.sixDecimals);
    }
    shape.sixDecimals = false;
    return shape;
}

PointShape scaled(PointShape shape, double factor)
{
    for (double& x : shape.x)
        x *= factor;
    return shape;
}

// The variable divided by the factor, wherever the text names it.
ExpressionShape scaled(ExpressionShape shape, double factor)
{
    const std::wstring text = platform::widen(shape.text);
    const auto result = engine::parseText(text, std::nullopt);
    const auto* parsed = std::get_if<engine::ParsedText>(&result);
    const bool hasVariable = parsed != nullptr && !parsed->parameters.list().empty();

    std::wstring over;
    std::size_t copied = 0;
    engine::Lexer lexer(text);
    for (engine::Token token = lexer.next(); token.kind != engine::TokenKind::End; token = lexer.next()) {
        const bool isName = token.kind == engine::TokenKind::Name || token.kind == engine::TokenKind::Result;
        if (!isName || !hasVariable || !engine::sameName(token.text, parsed->parameters.list().front()))
            continue;
        over += text.substr(copied, token.offset - copied) + L'(';
        over += std::wstring(token.text) + L'/' + platform::widen(curve::allDigits(factor)) + L')';
        copied = token.offset + token.text.size();
    }
    over += text.substr(copied);
    shape.text = platform::toUtf8(over);
    shape.from *= factor;
    shape.to *= factor;
    return shape;
}

}  // namespace

Curve overTime(const Curve& curve, double secondsPerUnit)
{
    if (!(secondsPerUnit > 0.0) || !std::isfinite(secondsPerUnit)) {
        const std::string found = platform::formatNumber("%.10g", secondsPerUnit);
        throw CurveError({{Problem::Level::Error, "",
                           "the time per unit is " + found + ", expected a positive finite number"}});
    }
    CurveDefinition definition = curve.definition();
    using Shape = decltype(CurveDefinition::shape);
    definition.shape = std::visit([&](const auto& shape) { return Shape(scaled(shape, secondsPerUnit)); },
                                  curve.definition().shape);
    definition.over = Over::Time;
    definition.motionResult.clear();
    return Curve(definition).with(curve.outside());
}

}  // namespace mf::analysis
