// SPDX-License-Identifier: MIT

#include "mfcurves/engine/blocks.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <tuple>
#include <utility>

#include "mfcurves/engine/operations.h"
#include "mfcurves/engine/shortPrograms.h"
#include "mfcurves/engine/strip.h"

namespace mf::engine {
namespace {

// --- Where the numbers of a register are ------------------------------------------------------

// A register is a row of numbers, one for each point. The row of x is the caller's, and
// so are those of the orders that steps compute; all others are in the block.
class Rows {
public:
    Rows(const Program& program, int order, const double* x, double* registers, double* const* values)
        : x_(program.parameterCount() == 1 ? x : nullptr), registers_(registers)
    {
        for (int k = 0; k <= order; ++k) {
            if (count_ < results_.size() && program.isComputed(k) && find(program.result(k)) == end())
                results_[count_++] = {program.result(k), values[k]};
        }
    }

    double* operator[](std::uint32_t number) const
    {
        const Result* const result = find(number);
        return result != end() ? result->row : registers_ + number * kBlock;
    }
    const double* operand(std::uint32_t number) const
    {
        return number == 0 && x_ != nullptr ? x_ : (*this)[number];
    }

private:
    struct Result {
        std::uint32_t number;
        double* row;
    };

    const Result* end() const { return results_.data() + count_; }
    const Result* find(std::uint32_t number) const
    {
        return std::find_if(results_.data(), end(),
                            [=](const Result& result) { return result.number == number; });
    }

    const double* x_;
    double* registers_;
    std::array<Result, 4> results_;
    std::size_t count_ = 0;
};

// --- Operations on rows -----------------------------------------------------------------------

// y[i] = value(i) for each point, a loop that the compiler turns into vector
// instructions where the operation allows it.
void each(std::size_t count, double* __restrict y, auto value)
{
    for (std::size_t i = 0; i < count; ++i)
        y[i] = value(i);
}

void rowThrough(Stage stage, const StageConstants& constants, std::size_t count, const double* from,
                double* to)
{
    const StageConstants c = constants;
    if (stage == Stage::Linear)
        each(count, to, [=](std::size_t i) { return throughStage<Stage::Linear>(from[i], c); });
    else if (stage == Stage::Shifted)
        each(count, to, [=](std::size_t i) { return throughStage<Stage::Shifted>(from[i], c); });
    else
        each(count, to, [=](std::size_t i) { return throughStage<Stage::General>(from[i], c); });
}

const double* operandRow(const Step& step, const Rows& rows, std::size_t count)
{
    const double* const a = rows.operand(step.a);
    if (step.input == Stage::None)
        return a;
    double* const moved = rows[step.moved];
    rowThrough(step.input, step.before, count, a, moved);
    return moved;
}

template <class Operation>
void unary(const Step& step, const Rows& rows, std::size_t count)
{
    const double* const a = operandRow(step, rows, count);
    double* const value = rows[step.value];
    if (a != value)
        each(count, value, [a, operation = Operation(step)](std::size_t i) { return operation(a[i]); });
}

template <class Operation>
void binary(const Step& step, const Rows& rows, std::size_t count)
{
    const double* const a = rows.operand(step.a);
    const double* const b = rows.operand(step.b);
    each(count, rows[step.value],
         [a, b, operation = Operation(step)](std::size_t i) { return operation(a[i], b[i]); });
}

template <class Operation>
void listed(const Step& step, const Rows& rows, std::size_t count)
{
    std::array<const double*, Operation::kOperands> operands;
    for (std::size_t j = 0; j < operands.size(); ++j)
        operands[j] = rows.operand(step.list[j]);
    each(count, rows[step.value], [operands, operation = Operation(step)](std::size_t i) {
        return std::apply([&](auto... operand) { return operation(operand[i]...); }, operands);
    });
}

void sineWithCosine(const Step& step, const Rows& rows, std::size_t count)
{
    const double* const a = operandRow(step, rows, count);
    double* const value = rows[step.value];
    double* const other = rows[step.b];
    double* const sine = step.code == Code::SinCos ? value : other;
    double* const cosine = step.code == Code::SinCos ? other : value;
    for (std::size_t i = 0; i < count; ++i)
        sineAndCosine(a[i], sine[i], cosine[i]);
}

// --- Polynomials, a strip of points at a time ---------------------------------------------------

// Calls doStrip(i) for the strips that begin at the points i and together cover the row. The
// last strip ends with the row and may repeat some points of the previous one. `count` is at
// least Strip::kSize.
void eachStrip(std::size_t count, auto doStrip)
{
    const std::size_t last = count - Strip::kSize;
    for (std::size_t i = 0;; i = std::min(i + Strip::kSize, last)) {
        doStrip(i);
        if (i == last)
            return;
    }
}

// A polynomial whose number of terms the compiler knows; 0 means any number.
template <std::uint32_t terms>
void rowOfTerms(PolynomialForm form, const double* constants, std::size_t count, const double* a, double* y)
{
    const std::span<const double, terms == 0 ? std::dynamic_extent : terms> c(constants, form.terms);
    eachStrip(count,
              [=](std::size_t i) { polynomialValue(Strip::of(a + i), form.lowest, c).storeTo(y + i); });
}

void rowOfPolynomial(PolynomialForm form, const double* c, std::size_t count, const double* a, double* y)
{
    switch (form.terms) {
        case 1:
            return rowOfTerms<1>(form, c, count, a, y);
        case 2:
            return rowOfTerms<2>(form, c, count, a, y);
        case 3:
            return rowOfTerms<3>(form, c, count, a, y);
        case 4:
            return rowOfTerms<4>(form, c, count, a, y);
        default:
            return rowOfTerms<0>(form, c, count, a, y);
    }
}

// The rows for a polynomial and its derivatives.
using OrderRows = std::array<double*, 4>;

void polynomialOrders(const Step& step, std::size_t count, const double* a, const OrderRows& rows)
{
    PolynomialForm form = {step.terms, step.lowest};
    const double* c = step.constants;
    for (unsigned k = 0; k <= step.derivatives; ++k) {
        rowOfPolynomial(form, c, count, a, rows[k]);
        c += form.terms;
        form = form.derivative();
    }
}

void polynomial(const Step& step, const Rows& rows, std::size_t count)
{
    const double* const a = operandRow(step, rows, count);
    OrderRows to = {rows[step.value]};
    for (unsigned k = 0; k < step.derivatives; ++k)
        to[k + 1] = rows[step.list[k]];
    if (count >= Strip::kSize)
        return polynomialOrders(step, count, a, to);
    // Zeros fill up a row that is shorter than a strip.
    double filled[Strip::kSize] = {};
    double values[std::tuple_size_v<OrderRows>][Strip::kSize];
    std::copy_n(a, count, filled);
    polynomialOrders(step, Strip::kSize, filled, {values[0], values[1], values[2], values[3]});
    for (unsigned k = 0; k <= step.derivatives; ++k)
        std::copy_n(values[k], count, to[k]);
}

// --- A normalised law in one pass ---------------------------------------------------------------

// Stores an order and those above it, and returns the sum of all their values.
template <std::uint32_t terms, unsigned lowest, std::size_t order>
[[gnu::always_inline]] inline Strip::Pair storeOrders(Strip u, const double* c, const StageConstants& after,
                                                      std::size_t i, const OrderRows& rows)
{
    Strip value = polynomialValue(u, lowest, std::span<const double, terms>(c, terms));
    if constexpr (order == 0)
        value = throughStage<Stage::Linear>(value, after);
    value.storeTo(rows[order] + i);
    if constexpr (order == 3)
        return sumOf(value);
    else
        return sumOf(value) + storeOrders<terms, lowest - 1, order + 1>(u, c + terms, after, i, rows);
}

// A law that begins at the third power or above has the same number of terms in each order. Its
// numbers are copied, so that the compiler knows that no value overwrites them.
template <std::uint32_t terms, unsigned lowest>
bool runLaw(const Step& law, const double* x, std::size_t count, const OrderRows& to)
{
    std::array<double, std::size_t{4} * terms> c;
    std::copy_n(law.constants, c.size(), c.begin());
    const StageConstants before = law.before;
    const StageConstants after = law.after;
    const OrderRows rows = to;
    const bool divides = law.input == Stage::General;
    Strip::Pair sum = {};
    eachStrip(count, [&](std::size_t i) {
        Strip u = Strip::of(x + i) + before.first;
        u = divides ? u / before.divisor : u * before.factor + before.last;
        sum = sum + storeOrders<terms, lowest, 0>(u, c.data(), after, i, rows);
    });
    return sumOf(sum) * 0.0 == 0.0;
}

using RunLaw = bool (*)(const Step& law, const double* x, std::size_t count, const OrderRows& to);

// Null for a program that is not a normalised motion law with its derivatives.
RunLaw lawFor(const Program& program)
{
    if (!isLawWithDerivatives(program))
        return nullptr;
    const Step& law = program.steps(3).front();
    const PolynomialForm form = {law.terms, law.lowest};
    return form == PolynomialForm{3, 3}   ? runLaw<3, 3>
           : form == PolynomialForm{4, 3} ? runLaw<4, 3>
           : form == PolynomialForm{4, 4} ? runLaw<4, 4>
           : form == PolynomialForm{5, 4} ? runLaw<5, 4>
           : form == PolynomialForm{5, 5} ? runLaw<5, 5>
                                          : nullptr;
}

void runOperation(const Step& step, const Rows& rows, std::size_t count)
{
    switch (step.code) {
        case Code::Move:
            return unary<Move>(step, rows, count);
        case Code::Sum:
            return binary<Sum>(step, rows, count);
        case Code::Product:
            return binary<Product>(step, rows, count);
        case Code::Quotient:
            return binary<Quotient>(step, rows, count);
        case Code::Polynomial:
            return polynomial(step, rows, count);
        case Code::Chebyshev:
            return unary<Chebyshev>(step, rows, count);
        case Code::Call1:
            return unary<Call1>(step, rows, count);
        case Code::Call2:
            return binary<Call2>(step, rows, count);
        case Code::SinCos:
        case Code::CosSin:
            return sineWithCosine(step, rows, count);
        case Code::ProductPlus:
            return listed<ProductPlus>(step, rows, count);
        case Code::TwoProducts:
            return listed<TwoProducts>(step, rows, count);
        case Code::ProductOver:
            return listed<ProductOver>(step, rows, count);
        case Code::ProductPlusOver:
            return listed<ProductPlusOver>(step, rows, count);
        case Code::ChooseLess:
            return listed<ChooseLess>(step, rows, count);
        case Code::ChooseSign:
            return listed<ChooseSign>(step, rows, count);
        case Code::ChooseStep:
            return listed<ChooseStep>(step, rows, count);
    }
}

}  // namespace

void fillConstantRows(const Program& program, double* registers)
{
    for (const auto& [number, target] : program.constants())
        std::fill_n(registers + target * kBlock, kBlock, number);
}

bool runBlock(const Program& program, int order, const double* x, std::size_t count, double* registers,
              double* const* values)
{
    if (const RunLaw law = order == 3 && count >= Strip::kSize ? lawFor(program) : nullptr)
        return law(program.steps(3).front(), x, count, {values[0], values[1], values[2], values[3]});
    const Rows rows(program, order, x, registers, values);
    for (const Step& step : program.steps(order)) {
        runOperation(step, rows, count);
        if (step.output != Stage::None)
            rowThrough(step.output, step.after, count, rows[step.value], rows[step.target]);
    }
    for (int k = 0; k <= order; ++k) {
        const double* const row = rows.operand(program.result(k));
        if (row != values[k])
            std::copy_n(row, count, values[k]);
    }
    return false;
}

// Zero times a number is zero unless the number is not finite.
bool areFinite(const double* values, std::size_t count)
{
    if (count < Strip::kSize)
        return std::all_of(values, values + count, [](double value) { return value * 0.0 == 0.0; });
    Strip zeros(0.0);
    eachStrip(count, [&](std::size_t i) { zeros = zeros + Strip::of(values + i) * 0.0; });
    return sumOf(sumOf(zeros)) == 0.0;
}

bool copyFinite(const double* from, std::size_t count, double* to)
{
    if (count < Strip::kSize) {
        std::copy_n(from, count, to);
        return areFinite(from, count);
    }
    Strip zeros(0.0);
    eachStrip(count, [&](std::size_t i) {
        const Strip values = Strip::of(from + i);
        values.storeTo(to + i);
        zeros = zeros + values * 0.0;
    });
    return sumOf(sumOf(zeros)) == 0.0;
}

bool Block::takes(const Program& program)
{
    constexpr std::size_t kMostRegisters = 512;
    return program.parameterCount() == 1 && program.registerCount() <= kMostRegisters;
}

const double* Block::values(const Programs& programs, int order, const double* x, std::size_t count)
{
    const bool isSameExpression = programs_.all == programs.all;
    const bool isSamePoints =
        isSameExpression && count == x_.size() && std::memcmp(x_.data(), x, count * sizeof(double)) == 0;
    if (!isSamePoints) {
        const int highest = isSameExpression ? std::max(asked_, order) : order;
        if (!isSameExpression)
            programs_ = programs;
        x_.assign(x, x + count);
        asked_ = -1;
        iCompute(highest);
    } else if (order > computed_) {
        iCompute(programs.all->highestOrder());
    }
    asked_ = std::max(asked_, order);
    return &values_[static_cast<std::size_t>(order) * kBlock];
}

void Block::iCompute(int highest)
{
    const Program& program = programs_.upTo(highest);
    computed_ = -1;  // in case an allocation fails
    registers_.resize(program.registerCount() * kBlock);
    values_.resize((static_cast<std::size_t>(highest) + 1) * kBlock);
    rows_.clear();
    for (int k = 0; k <= highest; ++k)
        rows_.push_back(&values_[static_cast<std::size_t>(k) * kBlock]);
    fillConstantRows(program, registers_.data());
    areFinite_ = runBlock(program, highest, x_.data(), x_.size(), registers_.data(), rows_.data());
    computed_ = highest;
}

}  // namespace mf::engine
