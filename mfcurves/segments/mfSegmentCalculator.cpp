#include "mfcurves/segments/mfSegmentCalculator.h"

#include <string>

#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/motion/mfTextConverter.h"
#include "mfcurves/platform/locale.h"
#include "mfcurves/platform/narrowText.h"
#include "mfcurves/segments/mfSegment.h"

namespace {

// Every text reaches the engine through the narrow encoding: what that cannot
// hold changes on the way.
std::wstring throughNarrow(const CString& text)
{
    const mfTextConverter_c converter;
    return converter.toWide(converter.toNarrow(text));
}

// False where the way through the narrow encoding may show: by the locale that it
// leaves behind, or to an encoder of the host's.
bool conversionLeavesNoTrace()
{
    return mf::platform::standsAtC() && mf::platform::hasBuiltInEncoder();
}

}  // namespace

bool mfSegmentCalculator_c::Formula::sharesBuffers(const Formula& other) const
{
    return expression.SharesBuffer(other.expression) && variable.SharesBuffer(other.variable);
}

bool mfSegmentCalculator_c::Formula::isAscii() const
{
    return mf::platform::isAscii(expression.View()) && mf::platform::isAscii(variable.View());
}

mfSegmentCalculator_c::~mfSegmentCalculator_c()
{
    iReleaseCalculators();
}

// Texts share their buffers, so one look at the buffer tells that nothing was set.
// Any other buffer is compared once and remembered.
bool mfSegmentCalculator_c::isUpToDate() const
{
    if (segment_ == nullptr)
        return false;
    const CString& expression = segment_->profileExpr_;
    if (expression.SharesBuffer(confirmedExpression_))
        return true;
    if (expression.CompareNoCase(built_.expression) != 0)
        return false;
    confirmedExpression_ = expression;
    return true;
}

ICalculator* mfSegmentCalculator_c::iRenewCalculator(int order)
{
    if (segment_ == nullptr)
        return nullptr;
    if (!isUpToDate())
        iReleaseCalculators();
    return iGetCalculator(order);
}

ICalculator* mfSegmentCalculator_c::iGetCalculator(int order)
{
    if (order < 0 || order > 3)
        return nullptr;
    if (calculators_[order] != nullptr)
        return calculators_[order];
    if (order == 0) {
        if (iValue() == nullptr)
            iCompile();
    } else if (ICalculator* below = iGetCalculator(order - 1)) {
        calculators_[order] = below->differentiate(0);
    }
    return calculators_[order];
}

// The text counts as built before it is handed over, so one that does not compile
// is up to date too, and is handed over again at the next request.
void mfSegmentCalculator_c::iCompile()
{
    built_ = {segment_->profileExpr_, segment_->profileIndepVar_};
    confirmedExpression_ = built_.expression;
    const std::wstring expression = throughNarrow(built_.expression);
    std::wstring independentVariable = throughNarrow(built_.variable);
    MotionMEParser parser;
    parser.parse(expression.c_str(), independentVariable.data(), &calculators_[0]);
}

// Does what a request for the value does, except that texts are put down to be
// compiled later where nobody can tell. True when their compiled forms can be had
// at any time without a trace.
bool mfSegmentCalculator_c::iPostpone()
{
    if (!isUpToDate())
        iReleaseCalculators();
    const Formula formula{segment_->profileExpr_, segment_->profileIndepVar_};
    const bool isKnown = calculators_[0] != nullptr || postponed_;
    if (!isKnown && formula.isAscii() && conversionLeavesNoTrace()) {
        built_ = formula;
        confirmedExpression_ = formula.expression;
        return postponed_ = true;
    }
    if (!postponed_ || !built_.sharesBuffers(formula))
        iGetCalculator(0);
    return built_.isAscii();
}

// Whether the compiled forms are, or are going to be, those of these texts.
bool mfSegmentCalculator_c::iHas(const Formula& formula) const
{
    return (calculators_[0] != nullptr || postponed_) && built_.sharesBuffers(formula);
}

// The value of the texts last handed over, or put down for that: nothing is tried
// twice.
ICalculator* mfSegmentCalculator_c::iValue()
{
    if (postponed_) {
        std::wstring independentVariable(built_.variable.View());
        MotionMEParser parser;
        parser.parse(built_.expression, independentVariable.data(), &calculators_[0]);
        postponed_ = false;
    }
    return calculators_[0];
}

void mfSegmentCalculator_c::iReleaseCalculators()
{
    for (ICalculator*& calculator : calculators_) {
        if (calculator != nullptr)
            calculator->Release();
        calculator = nullptr;
    }
    postponed_ = false;
}
