#include "mfcurves/segments/mfSegmentCalculator.h"

#include <string>

#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/motion/mfTextConverter.h"
#include "mfcurves/segments/mfSegment.h"

namespace {

// Every text reaches the engine through the narrow encoding: what that cannot
// hold changes on the way.
std::wstring throughNarrow(const CString& text)
{
    const mfTextConverter_c converter;
    return converter.toWide(converter.toNarrow(text));
}

}  // namespace

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
    if (expression.CompareNoCase(builtExpression_) != 0)
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
    builtExpression_ = segment_->profileExpr_;
    confirmedExpression_ = builtExpression_;
    const std::wstring expression = throughNarrow(builtExpression_);
    std::wstring independentVariable = throughNarrow(segment_->profileIndepVar_);
    MotionMEParser parser;
    parser.parse(expression.c_str(), independentVariable.data(), &calculators_[0]);
}

void mfSegmentCalculator_c::iReleaseCalculators()
{
    for (ICalculator*& calculator : calculators_) {
        if (calculator != nullptr)
            calculator->Release();
        calculator = nullptr;
    }
}
