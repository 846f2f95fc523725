// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "mfcurves/engine/family.h"
#include "mfcurves/interfaces/ICalculator.h"

namespace mf::engine {

/// The engine's own kind of calculator: one order of a family.
class Calculator final : public ICalculator {
public:
    Calculator(std::shared_ptr<Family> family, int order)
        : family_(std::move(family)), order_(order), result_(family_->resultOf(order))
    {
    }

    ICalculator* differentiate(int unused) override;
    bool Evaluate(int count, MMEP_Data* arguments, MMEP_Data& result) override;
    bool Release() override;

    Family& family() const { return *family_; }
    int order() const { return order_; }

private:
    ~Calculator() override = default;
    [[gnu::noinline]] bool iEvaluateOther(int count, const MMEP_Data* arguments, MMEP_Data& result);

    const std::shared_ptr<Family> family_;
    const int order_;
    const std::uint32_t result_;  // the register of its value
};

}  // namespace mf::engine
