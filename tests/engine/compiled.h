// SPDX-License-Identifier: MIT
#pragma once

// Compiled expressions for the tests of the engine: calculators that release
// themselves, and values that are absent if an evaluation fails.

#include <array>
#include <optional>
#include <string>

#include "mfcurves/functions/calculators.h"
#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/MMEP_Data.h"
#include "mfcurves/interfaces/MotionMEParser.h"

namespace engine_test {

using Calculator = mf::CalculatorHolder;

inline std::wstring wide(const std::string& ascii)
{
    return std::wstring(ascii.begin(), ascii.end());
}

/// The compiled text, or null if it is refused. Its one argument is `variable`.
inline Calculator compile(const std::wstring& text, std::wstring variable = L"x")
{
    ICalculator* calculator = nullptr;
    MotionMEParser parser;
    parser.parse(text.c_str(), variable.data(), &calculator);
    return Calculator(calculator);
}

inline Calculator compile(const std::string& text)
{
    return compile(wide(text));
}

/// The compiled text whose free names are its parameters.
inline Calculator compileFree(const std::wstring& text)
{
    ICalculator* calculator = nullptr;
    MotionMEParser parser;
    parser.parse(text.c_str(), nullptr, &calculator);
    return Calculator(calculator);
}

inline Calculator derivative(const Calculator& calculator)
{
    return mf::derivativeOf(calculator.get());
}

/// The value at x; nothing if the calculator is null or the evaluation fails.
inline std::optional<double> evaluate(const Calculator& calculator, double x)
{
    if (!calculator)
        return std::nullopt;
    MMEP_Data argument(x);
    MMEP_Data result;
    if (!calculator->Evaluate(1, &argument, result))
        return std::nullopt;
    return *result.getValue();
}

/// A text and its three derivatives, which are one family.
class Orders {
public:
    explicit Orders(const std::string& text, const std::wstring& variable = L"x")
    {
        orders_[0] = compile(wide(text), variable);
        for (int order = 1; order < 4; ++order)
            orders_[order] = derivative(orders_[order - 1]);
    }

    explicit operator bool() const { return orders_[3] != nullptr; }
    const Calculator& operator[](int order) const { return orders_[order]; }
    std::optional<double> at(double x, int order) const { return evaluate(orders_[order], x); }

private:
    std::array<Calculator, 4> orders_;
};

}  // namespace engine_test
