// SPDX-License-Identifier: MIT
#pragma once

// The steps of a program as text, one per line, for tests.

#include <sstream>
#include <string>

#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/program.h"

namespace engine_test {

inline std::string listed(double number)
{
    std::ostringstream text;
    text << number;
    return text.str();
}

inline std::string registerName(std::uint32_t number)
{
    return "r" + std::to_string(number);
}

/// A value on its way through a stage, such as "(r0 + -0.5) / 1.75".
inline std::string throughStage(std::string value, mf::engine::Stage stage,
                                const mf::engine::StageConstants& c)
{
    using mf::engine::Stage;
    if (stage == Stage::Shifted || stage == Stage::General)
        value = "(" + value + " + " + listed(c.first) + ")";
    if (stage == Stage::General)
        value += " / " + listed(c.divisor);
    if (stage != Stage::None)
        value += " * " + listed(c.factor) + " + " + listed(c.last);
    return value;
}

/// Such as "r1^2 * [3, -2]", the terms from the lowest power on.
inline std::string polynomialText(const std::string& operand, mf::engine::PolynomialForm form,
                                  const double* c)
{
    std::string text = operand + "^" + std::to_string(form.lowest) + " * [";
    for (std::uint32_t i = 0; i < form.terms; ++i)
        text += (i == 0 ? "" : ", ") + listed(c[i]);
    return text + "]";
}

inline std::string operationText(const mf::engine::Step& step, const std::string& a)
{
    using mf::engine::Code;
    const std::string b = registerName(step.b);
    const double* const k = step.constants;
    const auto list = [&](const char* name, int count) {
        std::string text = name;
        for (int i = 0; i < count; ++i)
            text += " " + registerName(step.list[i]);
        return text;
    };
    const auto constant = [&](int i) { return listed(k[i]) + " * "; };
    const auto operand = [&](int i) { return registerName(step.list[i]); };
    const auto product = [&](int i) { return "(" + operand(i) + " * " + operand(i + 1) + ")"; };
    const std::string function(mf::engine::function(step.function).name);
    switch (step.code) {
        case Code::Move:
            return a;
        case Code::Sum:
            return listed(k[0]) + " * " + a + " + " + listed(k[1]) + " * " + b;
        case Code::Product:
            return a + " * " + b;
        case Code::Quotient:
            return a + " / (" + b + " + " + listed(k[0]) + ")";
        case Code::Polynomial:
            return polynomialText(a, {step.terms, step.lowest}, k);
        case Code::Chebyshev:
            return "chebyshev of " + std::to_string(step.terms) + " terms " + a;
        case Code::Call1:
            return function + " " + a;
        case Code::Call2:
            return (function.empty() ? "power" : function) + " " + a + " " + b;
        case Code::SinCos:
            return "sin " + a + ", " + b + " = cos " + a;
        case Code::CosSin:
            return "cos " + a + ", " + b + " = sin " + a;
        case Code::ProductPlus:
            return constant(0) + product(0) + " + " + constant(1) + operand(2);
        case Code::TwoProducts:
            return constant(0) + product(0) + " + " + constant(1) + product(2);
        case Code::ProductOver:
            return product(0) + " / (" + operand(2) + " + " + listed(k[0]) + ")";
        case Code::ProductPlusOver:
            return "(" + constant(0) + product(0) + " + " + constant(1) + operand(2) + ") / (" + operand(3) +
                   " + " + listed(k[2]) + ")";
        case Code::ChooseLess:
            return list("less", 4);
        case Code::ChooseSign:
            return list("sign", 4);
        case Code::ChooseStep:
            return list("step", 6);
    }
    return "?";
}

inline std::string listing(const mf::engine::Step& step)
{
    using namespace mf::engine;
    std::string text;
    std::string a = registerName(step.a);
    if (step.input != Stage::None) {
        text = registerName(step.moved) + " = " + throughStage(a, step.input, step.before);
        a = registerName(step.moved);
    }
    if (step.code != Code::Move)
        text += (text.empty() ? "" : "; ") + registerName(step.value) + " = " + operationText(step, a);
    if (step.output != Stage::None)
        text += "; " + registerName(step.target) + " = " +
                throughStage(registerName(step.value), step.output, step.after);
    PolynomialForm form = {step.terms, step.lowest};
    const double* c = step.constants;
    for (unsigned i = 0; i < step.derivatives; ++i) {
        c += form.terms;
        form = form.derivative();
        text += "; " + registerName(step.list[i]) + " = " + polynomialText(a, form, c);
    }
    return text + "\n";
}

/// The constants of a program with their registers, then its steps. A line `order k: r`
/// comes after the last step that order k needs; r is the register of its value.
inline std::string listing(const mf::engine::Program& program)
{
    std::string text;
    for (const auto& [number, target] : program.constants())
        text += registerName(target) + " = " + listed(number) + "\n";
    std::size_t done = 0;
    for (int order = 0; order <= program.highestOrder(); ++order) {
        for (const mf::engine::Step& step : program.steps(order).subspan(done))
            text += listing(step);
        done = program.steps(order).size();
        text += "order " + std::to_string(order) + ": " + registerName(program.result(order)) + "\n";
    }
    return text;
}

}  // namespace engine_test
