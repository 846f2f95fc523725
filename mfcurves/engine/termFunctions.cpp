// SPDX-License-Identifier: MIT

#include "mfcurves/engine/termFunctions.h"

#include <optional>
#include <vector>

namespace mf::engine {
namespace {

// The numbers of constant terms; nothing when one is not a constant.
std::optional<std::vector<double>> numbersOf(std::span<const Term> terms)
{
    std::vector<double> numbers;
    numbers.reserve(terms.size());
    for (const Term term : terms) {
        if (!term.isConstant())
            return std::nullopt;
        numbers.push_back(term.number());
    }
    return numbers;
}

// The value where u is defined, undefined where u is not.
Term whereDefined(Term u, Term value)
{
    return 0.0 * u + value;
}

}  // namespace

Term folded(FunctionId f, Arguments arguments)
{
    Term result = arguments[0];
    for (const Term argument : arguments.subspan(1))
        result = call(f, result, argument);
    return result;
}

Term stepOfShape(Arguments arguments, Term (*shape)(Term u))
{
    const Term x = arguments[0];
    const Term x0 = arguments[1];
    const Term h0 = arguments[2];
    const Term x1 = arguments[3];
    const Term h1 = arguments[4];
    const Term u = (x - x0) / (x1 - x0);
    return chooseStep(x, x0, x1, h0, h0 + (h1 - h0) * shape(u), h1);
}

Term powerSeries(Arguments arguments)
{
    const Term h = arguments[0] - arguments[1];
    const auto coefficients = arguments.subspan(2);
    if (const auto numbers = numbersOf(coefficients))
        return polynomial(h, 0, *numbers);
    Term total = coefficients.back();
    if (coefficients.size() == 1)
        return whereDefined(h, total);
    // a0 + h (a1 + h (a2 + ...))
    for (std::size_t j = coefficients.size() - 1; j-- > 0;)
        total = coefficients[j] + h * total;
    return total;
}

Term chebyshevSeries(Arguments arguments)
{
    const Term h = arguments[0] - arguments[1];
    const auto coefficients = arguments.subspan(2);
    if (const auto numbers = numbersOf(coefficients))
        return chebyshev(h, *numbers);
    Term total = coefficients[0];
    if (coefficients.size() == 1)
        return whereDefined(h, total);
    std::vector<double> unit;  // the coefficients of Tj alone
    for (std::size_t j = 1; j < coefficients.size() && !h.maker().graph().full(); ++j) {
        unit.assign(j + 1, 0.0);
        unit[j] = 1.0;
        total = total + coefficients[j] * chebyshev(h, unit);
    }
    return total;
}

Term fourierSeries(FunctionId f, Arguments arguments)
{
    const Term h = arguments[0] - arguments[1];
    const Term w = arguments[2];
    const auto coefficients = arguments.subspan(3);
    Term total = coefficients[0];
    if (coefficients.size() == 1)
        return whereDefined(w * h, total);
    for (std::size_t j = 1; j < coefficients.size(); ++j)
        total = total + coefficients[j] * call(f, static_cast<double>(j) * w * h);
    return total;
}

}  // namespace mf::engine
