// SPDX-License-Identifier: MIT

#include "mfcurves/engine/calculator.h"

namespace mf::engine {

ICalculator* Calculator::differentiate(int)
{
    if (family_->parameterCount() > 1 || !family_->addOrder(order_ + 1))
        return nullptr;
    return new Calculator(family_, order_ + 1);
}

bool Calculator::iEvaluateOther(int count, const MMEP_Data* arguments, MMEP_Data& result)
{
    const auto parameters = static_cast<int>(family_->parameterCount());
    if (parameters == 0)
        return family_->evaluate(0.0, order_, result_, *result.getValue());
    if (parameters == 1 || parameters != count || arguments == nullptr)
        return false;
    return family_->evaluate(arguments, result_, *result.getValue());
}

// An integrator calls this at every step: the usual case needs little setup here, and
// the slower cases have functions of their own.
bool Calculator::Evaluate(int count, MMEP_Data* arguments, MMEP_Data& result)
{
    if (count != 1) [[unlikely]]
        return iEvaluateOther(count, arguments, result);
    if (arguments == nullptr) [[unlikely]]
        return iEvaluateOther(count, arguments, result);
    return family_->evaluate(*arguments->getValue(), order_, result_, *result.getValue());
}

bool Calculator::Release()
{
    delete this;
    return true;
}

}  // namespace mf::engine
