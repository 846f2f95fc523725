// SPDX-License-Identifier: MIT

#include "mfcurves/curve/RowForm.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>

#include "mfcurves/curve/registers.h"
#include "mfcurves/engine/limits.h"
#include "mfcurves/engine/polynomials.h"
#include "mfcurves/engine/strip.h"
#include "mfcurves/engine/values.h"

namespace mf::curve {
namespace {

using engine::kBlock;
using engine::kNaN;
using engine::Strip;
static_assert(kBlock >= kMostPoints);

// --- The argument ------------------------------------------------------------------------

// The positions of the numbers of an argument, which are before all others. The argument is
// (x + shift) / scale if it divides, else (x + shift) * scale + offset. A division is slow, so
// only laws that need one have it.
enum ArgumentNumber { kShift, kScale, kOffset, kArgumentNumbers };

template <bool divides>
[[gnu::always_inline]] inline double argumentAt(const double* n, double x)
{
    return divides ? (x + n[kShift]) / n[kScale] : (x + n[kShift]) * n[kScale] + n[kOffset];
}

// False for an argument of neither form.
bool addArgument(const engine::LawArgument& u, std::vector<double>& numbers)
{
    const bool divides = u.divisor != 1.0;
    if (divides && (u.scale != 1.0 || u.offset != 0.0 || !std::signbit(u.offset)))
        return false;
    numbers.insert(numbers.end(), {u.shift, divides ? u.divisor : u.scale, u.offset});
    return true;
}

// All orders by a function that computes them one by one.
void allByBlock(decltype(RowForm::block) block, RowData row, const double* x, std::size_t count,
                CurveValues* values)
{
    double orders[4][kMostPoints];
    double* const rows[4] = {orders[0], orders[1], orders[2], orders[3]};
    block(row, x, count, 0, 3, rows);
    for (std::size_t i = 0; i < count; ++i)
        values[i] = {orders[0][i], orders[1][i], orders[2][i], orders[3][i]};
}

// --- Polynomial laws ---------------------------------------------------------------------

// The positions of the numbers of a polynomial law.
enum PolynomialNumber { kFactor = kArgumentNumbers, kAddend, kCoefficients };

// The polynomial of an order of a law: u^lowest times a sum of `terms` terms, whose coefficients
// begin at `first`, after those of the lower orders.
template <std::uint32_t lawTerms, unsigned lawLowest, int order>
struct Polynomial {
    using Below = Polynomial<lawTerms, lawLowest, order - 1>;
    static constexpr unsigned lowest = Below::lowest > 0 ? Below::lowest - 1 : 0;
    static constexpr std::uint32_t terms =
        Below::lowest > 0 || Below::terms == 0 ? Below::terms : Below::terms - 1;
    static constexpr std::size_t first = Below::first + Below::terms;
};

template <std::uint32_t lawTerms, unsigned lawLowest>
struct Polynomial<lawTerms, lawLowest, 0> {
    static constexpr unsigned lowest = lawLowest;
    static constexpr std::uint32_t terms = lawTerms;
    static constexpr std::size_t first = kCoefficients;
};

// A polynomial without terms is 0 everywhere.
template <class P, class Number>
[[gnu::always_inline]] inline Number polynomialAt(Number u, const double* coefficients)
{
    if constexpr (P::terms == 0)
        return Number(0.0);
    else
        return engine::polynomialValue(u, P::lowest,
                                       std::span<const double, P::terms>(coefficients, P::terms));
}

template <std::uint32_t terms, unsigned lowest, bool divides, bool isFlat>
struct PolynomialRow {
    template <int order>
    using Order = Polynomial<terms, lowest, order>;

    template <int order>
    [[gnu::always_inline]] static double at(const double* numbers, double u)
    {
        return polynomialAt<Order<order>>(u, numbers + Order<order>::first);
    }

    static double value(RowData row, double x)
    {
        const double* const n = row.numbers;
        return at<0>(n, argumentAt<divides>(n, x)) * n[kFactor] + n[kAddend];
    }

    static void orders(RowData row, double x, int, double* values)
    {
        const double* const n = row.numbers;
        const double u = argumentAt<divides>(n, x);
        values[0] = at<0>(n, u) * n[kFactor] + n[kAddend];
        values[1] = isFlat ? 0.0 : at<1>(n, u);
        values[2] = isFlat ? 0.0 : at<2>(n, u);
        values[3] = isFlat ? 0.0 : at<3>(n, u);
    }

    // The numbers are copied, so that the compiler knows that no result overwrites them.
    template <int order>
    static void row(const double* numbers, const double* u, std::size_t count, double* y)
    {
        if (order > 0 && isFlat) {
            std::fill_n(y, count, 0.0);
            return;
        }
        std::array<double, std::max<std::size_t>(Order<order>::terms, 1)> c{};
        std::copy_n(numbers + Order<order>::first, Order<order>::terms, c.begin());
        const double factor = numbers[kFactor];
        const double addend = numbers[kAddend];
        const auto result = [&](auto argument) {
            const auto value = polynomialAt<Order<order>>(argument, c.data());
            return order == 0 ? value * factor + addend : value;
        };
        std::size_t i = 0;
        for (; i + Strip::kSize <= count; i += Strip::kSize)
            result(Strip::of(u + i)).storeTo(y + i);
        for (; i < count; ++i)
            y[i] = result(u[i]);
    }

    static void block(RowData data, const double* x, std::size_t count, int lowestOrder, int highestOrder,
                      double* const* values)
    {
        const double* const n = data.numbers;
        double u[kMostPoints];
        const double argument[kArgumentNumbers] = {n[kShift], n[kScale], n[kOffset]};
        for (std::size_t i = 0; i < count; ++i)
            u[i] = argumentAt<divides>(argument, x[i]);
        const auto isWanted = [&](int order) { return lowestOrder <= order && order <= highestOrder; };
        if (isWanted(0))
            row<0>(n, u, count, values[0]);
        if (isWanted(1))
            row<1>(n, u, count, values[1]);
        if (isWanted(2))
            row<2>(n, u, count, values[2]);
        if (isWanted(3))
            row<3>(n, u, count, values[3]);
    }

    // The numbers are copied, so that the compiler knows that no result overwrites them.
    static void all(RowData data, const double* x, std::size_t count, CurveValues* values)
    {
        constexpr std::size_t kNumbers = isFlat ? kCoefficients + terms : Order<3>::first + Order<3>::terms;
        std::array<double, kNumbers> n;
        std::copy_n(data.numbers, kNumbers, n.begin());
        for (std::size_t i = 0; i < count; ++i) {
            const double u = argumentAt<divides>(n.data(), x[i]);
            values[i] = {at<0>(n.data(), u) * n[kFactor] + n[kAddend], isFlat ? 0.0 : at<1>(n.data(), u),
                         isFlat ? 0.0 : at<2>(n.data(), u), isFlat ? 0.0 : at<3>(n.data(), u)};
        }
    }

    // The value of a flat law is computed by the function for other laws, so that the processor
    // predicts the call better.
    static constexpr RowForm form = {PolynomialRow<terms, lowest, divides, false>::value, orders, block, all};
};

// Every normalised law up to the degree 9, such as 5-6-7-8-9, is among them.
constexpr std::size_t kMostTerms = 5;
constexpr std::size_t kHighestLowest = 5;

template <bool divides, bool isFlat, std::size_t... i>
constexpr auto polynomialForms(std::index_sequence<i...>)
{
    constexpr std::size_t kLowests = kHighestLowest + 1;
    return std::array{&PolynomialRow<i / kLowests + 1, i % kLowests, divides, isFlat>::form...};
}

const RowForm* formOf(const engine::PolynomialLaw& law, std::vector<double>& numbers)
{
    using Indices = std::make_index_sequence<kMostTerms*(kHighestLowest + 1)>;
    static constexpr std::array kForms = {
        polynomialForms<false, false>(Indices()), polynomialForms<false, true>(Indices()),
        polynomialForms<true, false>(Indices()), polynomialForms<true, true>(Indices())};
    if (law.terms < 1 || law.terms > kMostTerms || law.lowest > kHighestLowest ||
        !addArgument(law.u, numbers))
        return nullptr;
    numbers.insert(numbers.end(), {law.factor, law.addend});
    numbers.insert(numbers.end(), law.coefficients.begin(), law.coefficients.end());
    const std::size_t kind = (law.u.divisor != 1.0 ? 2 : 0) + (law.isFlat ? 1 : 0);
    return kForms[kind][(law.terms - 1) * (kHighestLowest + 1) + law.lowest];
}

// --- Sine laws -----------------------------------------------------------------------------

// The positions of the numbers of a sine law. Those of order k are 3 k after those of order 0.
enum SineNumber { kFirstShift = kArgumentNumbers, kFirstFactor, kFirstAddend };

template <bool beginsWithCosine, bool divides, bool isFlat>
struct SineRow {
    [[gnu::always_inline]] static double order(const double* n, int k, double first, double second)
    {
        if (k > 0 && isFlat)
            return 0.0;
        n += std::ptrdiff_t{3} * k;
        return ((k % 2 == 0 ? first : second) + n[kFirstShift]) * n[kFirstFactor] + n[kFirstAddend];
    }

    static void firstAndSecond(const double* n, double x, double& first, double& second)
    {
        if constexpr (beginsWithCosine)
            engine::sineAndCosine(argumentAt<divides>(n, x), second, first);
        else
            engine::sineAndCosine(argumentAt<divides>(n, x), first, second);
    }

    static double value(RowData row, double x)
    {
        const double u = argumentAt<divides>(row.numbers, x);
        return order(row.numbers, 0, beginsWithCosine ? std::cos(u) : std::sin(u), 0.0);
    }

    static void orders(RowData row, double x, int, double* values)
    {
        double first;
        double second;
        firstAndSecond(row.numbers, x, first, second);
        for (int k = 0; k <= 3; ++k)
            values[k] = order(row.numbers, k, first, second);
    }

    static void block(RowData row, const double* x, std::size_t count, int lowestOrder, int highestOrder,
                      double* const* values)
    {
        double first[kMostPoints];
        double second[kMostPoints];
        for (std::size_t i = 0; i < count; ++i)
            firstAndSecond(row.numbers, x[i], first[i], second[i]);
        for (int k = lowestOrder; k <= highestOrder; ++k) {
            for (std::size_t i = 0; i < count; ++i)
                values[k][i] = order(row.numbers, k, first[i], second[i]);
        }
    }

    static void all(RowData row, const double* x, std::size_t count, CurveValues* values)
    {
        allByBlock(block, row, x, count, values);
    }

    static constexpr RowForm form = {value, orders, block, all};
};

const RowForm* formOf(const engine::SineLaw& law, std::vector<double>& numbers)
{
    if (!addArgument(law.u, numbers))
        return nullptr;
    for (const engine::SineLaw::Order& order : law.orders)
        numbers.insert(numbers.end(), {order.shift, order.factor, order.addend});
    static constexpr const RowForm* kForms[2][2][2] = {
        {{&SineRow<false, false, false>::form, &SineRow<false, false, true>::form},
         {&SineRow<false, true, false>::form, &SineRow<false, true, true>::form}},
        {{&SineRow<true, false, false>::form, &SineRow<true, false, true>::form},
         {&SineRow<true, true, false>::form, &SineRow<true, true, true>::form}}};
    return kForms[law.beginsWithCosine ? 1 : 0][law.u.divisor != 1.0 ? 1 : 0][law.isFlat ? 1 : 0];
}

const RowForm* formOf(std::monostate, std::vector<double>&)
{
    return nullptr;
}

// --- Any formula -----------------------------------------------------------------------------

double formulaValue(RowData row, double x)
{
    return valueOfFormula(*row.formula, x);
}

void formulaOrders(RowData row, double x, int order, double* values)
{
    evaluateFormula(*row.formula, x, order, values);
}

// Blocks of formulas with more registers would not fit into the caches of the processor.
constexpr std::size_t kMostBlockRegisters = 512;

void formulaBlock(RowData row, const double* x, std::size_t count, int lowestOrder, int highestOrder,
                  double* const* values)
{
    const engine::Formula& formula = *row.formula;
    double unwanted[3][kMostPoints];
    double* rows[4];
    for (int k = 0; k <= highestOrder; ++k)
        rows[k] = k < lowestOrder ? unwanted[k] : values[k];
    if (formula.registerCount() <= kMostBlockRegisters &&
        withRegisters(formula.registerCount() * kBlock, [&](double* registers) {
            formula.evaluateBlock(x, count, highestOrder, registers, rows);
        }))
        return;
    for (std::size_t i = 0; i < count; ++i) {
        double at[4];
        evaluateFormula(formula, x[i], highestOrder, at);
        for (int k = 0; k <= highestOrder; ++k)
            rows[k][i] = at[k];
    }
}

void formulaAll(RowData row, const double* x, std::size_t count, CurveValues* values)
{
    allByBlock(formulaBlock, row, x, count, values);
}

// Tries points beside x, the nearest first, until all branches of a formula are decided there. A
// condition may need some distance to differ from its value at x.
template <class Try>
void besideInTurn(double x, bool fromLeft, const Try& isSettledAt)
{
    constexpr int kBesideZero[] = {-1000, -700, -400, -200, -100, -60, -30};
    constexpr int kBesideOther[] = {-52, -46, -40, -34, -28};
    const auto tryAll = [&](const auto& exponents, double scale) {
        for (const int exponent : exponents) {
            const double distance = std::ldexp(scale, exponent);
            if (isSettledAt(fromLeft ? x - distance : x + distance))
                return;
        }
    };
    if (x == 0.0)
        tryAll(kBesideZero, 1.0);
    else
        tryAll(kBesideOther, std::fabs(x));
}

}  // namespace

const RowForm kFormulaRow = {formulaValue, formulaOrders, formulaBlock, formulaAll};

const RowForm* rowFormOf(const engine::LawForm& law, std::vector<double>& numbers)
{
    return std::visit([&](const auto& form) { return formOf(form, numbers); }, law);
}

void evaluateFormula(const engine::Formula& formula, double x, int order, double* values)
{
    const auto use = [&](double* registers) { formula.evaluate(x, order, registers, values); };
    if (!withRegisters(formula.registerCount(), use))
        std::fill_n(values, order + 1, kNaN);
}

double valueOfFormula(const engine::Formula& formula, double x)
{
    double value = kNaN;
    withRegisters(formula.registerCount(), [&](double* registers) { value = formula.value(x, registers); });
    return value;
}

// A formula without branches is its own limit.
void evaluateFormulaBeside(const engine::Formula& formula, double x, bool fromLeft, int order, double* values)
{
    if (!formula.hasBranches())
        return evaluateFormula(formula, x, order, values);
    const auto use = [&](double* registers) {
        besideInTurn(x, fromLeft, [&](double beside) {
            return formula.evaluateBeside(x, beside, order, registers, values);
        });
    };
    if (!withRegisters(2 * formula.registerCount(), use))
        std::fill_n(values, order + 1, kNaN);
}

}  // namespace mf::curve
