// SPDX-License-Identifier: MIT

#include "mfcurves/segments/mfSegmentCalculator.h"

#include <string>

#include "mfcurves/functions/textForEngine.h"
#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/platform/narrowText.h"
#include "mfcurves/segments/mfSegment.h"

mfSegmentCalculator_c::~mfSegmentCalculator_c() = default;

// A text in another buffer is compared once; if it is equal, its buffer is remembered.
bool mfSegmentCalculator_c::isUpToDate() const
{
    if (segment_ == nullptr)
        return false;
    const CString expression = segment_->getProfileExpr();
    if (expression.SharesBuffer(confirmedExpression_))
        return true;
    if (expression.CompareNoCase(formula_.expression()) != 0)
        return false;
    confirmedExpression_ = expression;
    return true;
}

ICalculator* mfSegmentCalculator_c::getCalculator(int order)
{
    if (segment_ == nullptr)
        return nullptr;
    if (!isUpToDate())
        iReleaseCalculators();
    return iGetCalculator(order);
}

// confirmedExpression_ is set before compiling. So a text that does not compile counts as
// up to date, and the next request compiles it again.
ICalculator* mfSegmentCalculator_c::iGetCalculator(int order)
{
    if (order < 0 || order > 3)
        return nullptr;
    if (formula_.calculator(0) == nullptr) {
        confirmedExpression_ = segment_->getProfileExpr();
        formula_.compile(confirmedExpression_, segment_->getProflieIndepVar());
    }
    return formula_.calculator(order);
}

// Does what a request for the value does, but only notes the texts if compiling them later
// has the same effect. True when the calculators of the formula can be made at any time
// with the same effect.
bool mfSegmentCalculator_c::iPrepare()
{
    if (!isUpToDate())
        iReleaseCalculators();
    const CompiledFormula present(segment_->getProfileExpr(), segment_->getProflieIndepVar());
    if (!formula_.isKnown() && present.isAscii() && mf::narrowingLeavesNoTrace()) {
        formula_.note(present.expression(), present.variable());
        confirmedExpression_ = present.expression();
    } else if (!formula_.isNoted() || !formula_.hasTexts(present.expression(), present.variable())) {
        iGetCalculator(0);
    }
    return formula_.isAscii();
}

void mfSegmentCalculator_c::iReleaseCalculators()
{
    formula_.release();
}

mfSegmentCalculator_c::CompiledFormula::CompiledFormula(const CString& expression, const CString& variable)
    : expression_(expression), variable_(variable), isNoted_(true)
{
}

// Compares buffers, which copies of a text share.
bool mfSegmentCalculator_c::CompiledFormula::hasTexts(const CString& expression,
                                                      const CString& variable) const
{
    return expression_.SharesBuffer(expression) && variable_.SharesBuffer(variable);
}

bool mfSegmentCalculator_c::CompiledFormula::isAscii() const
{
    return mf::platform::isAscii(expression_.View()) && mf::platform::isAscii(variable_.View());
}

void mfSegmentCalculator_c::CompiledFormula::note(const CString& expression, const CString& variable)
{
    expression_ = expression;
    variable_ = variable;
    isNoted_ = true;
}

void mfSegmentCalculator_c::CompiledFormula::compile(const CString& expression, const CString& variable)
{
    expression_ = expression;
    variable_ = variable;
    const std::wstring text = mf::throughNarrow(expression);
    std::wstring name = mf::throughNarrow(variable);
    MotionMEParser().parse(text.c_str(), name.data(), &calculators_[0]);
}

// Noted texts are compiled once, even if that fails. They are ASCII, so the narrow
// encoding would not change them.
ICalculator* mfSegmentCalculator_c::CompiledFormula::calculator(int order)
{
    if (order == 0 && isNoted_) {
        std::wstring name(variable_.View());
        MotionMEParser().parse(expression_, name.data(), &calculators_[0]);
        isNoted_ = false;
    } else if (order > 0 && calculators_[order] == nullptr) {
        if (ICalculator* below = calculator(order - 1))
            calculators_[order] = below->differentiate(0);
    }
    return calculators_[order];
}

void mfSegmentCalculator_c::CompiledFormula::release()
{
    for (ICalculator*& calculator : calculators_) {
        if (calculator != nullptr)
            calculator->Release();
        calculator = nullptr;
    }
    isNoted_ = false;
}
