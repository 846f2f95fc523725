// SPDX-License-Identifier: MIT

#include "mfcurves/engine/merging.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace mf::engine {
namespace {

constexpr std::uint32_t kNoEntry = 0xffffffff;
constexpr unsigned kMostDerivatives = kUsualOrder;
constexpr std::size_t kMostOperands = 4;  // of a step with merged products

bool isSine(const Step& step)
{
    return step.code == Code::Call1 && step.function == FunctionId::Sin;
}

bool isCosine(const Step& step)
{
    return step.code == Code::Call1 && step.function == FunctionId::Cos;
}

// A step that does nothing.
bool isIdle(const Draft::Entry& entry)
{
    return entry.step.code == Code::Move && entry.step.input == Stage::None;
}

bool isNeutral(double number, double neutral)
{
    return std::bit_cast<std::uint64_t>(number) == std::bit_cast<std::uint64_t>(neutral);
}

// A polynomial of the register `a` of its step, without stages around it.
struct PlainPolynomial {
    PolynomialForm form;
    std::span<const double> coefficients;
};

// v * factor + last is a polynomial as well, with the bits of last + factor * v. Its
// coefficients go into `line`.
std::optional<PlainPolynomial> lineOf(const Step& step, std::array<double, 2>& line)
{
    const StageConstants& c = step.before;
    if (step.input != Stage::Linear || step.output != Stage::None)
        return std::nullopt;
    line = {c.last, c.factor};
    if (isNeutral(c.last, kNeutralAddend))
        return PlainPolynomial{{1, 1}, std::span(line).last(1)};
    return PlainPolynomial{{2, 0}, line};
}

std::optional<PlainPolynomial> plainPolynomial(const Draft& draft, const Draft::Entry& entry,
                                               std::array<double, 2>& line)
{
    const Step& step = entry.step;
    if (step.code == Code::Move)
        return lineOf(step, line);
    if (step.code != Code::Polynomial || step.input != Stage::None || step.output != Stage::None)
        return std::nullopt;
    return PlainPolynomial{{step.terms, step.lowest}, {&draft.numbers[entry.firstNumber], step.terms}};
}

// Extends a piece of a table; `added` may be in the same table. A piece that is not at the end of the table
// moves there.
template <class Element>
void extend(std::span<const Element> added, std::vector<Element>& table, std::uint32_t& first,
            std::uint32_t& count)
{
    std::vector<Element> piece;
    piece.reserve(count + added.size());
    piece.assign(table.begin() + first, table.begin() + first + count);
    piece.insert(piece.end(), added.begin(), added.end());
    if (first + count == table.size())
        table.resize(first);
    first = static_cast<std::uint32_t>(table.size());
    count = static_cast<std::uint32_t>(piece.size());
    table.insert(table.end(), piece.begin(), piece.end());
}

// Appends a new piece to a table.
template <class Element>
void appendPiece(std::initializer_list<Element> piece, std::vector<Element>& table, std::uint32_t& first,
                 std::uint32_t& count)
{
    first = static_cast<std::uint32_t>(table.size());
    count = static_cast<std::uint32_t>(piece.size());
    table.insert(table.end(), piece);
}

void addDerivative(Draft& draft, Draft::Entry& law, const PlainPolynomial& derivative, std::uint32_t target)
{
    extend<double>(derivative.coefficients, draft.numbers, law.firstNumber, law.numbers);
    extend<std::uint32_t>({&target, 1}, draft.lists, law.firstInList, law.listed);
    ++law.step.derivatives;
}

// The form of the first derivative that a polynomial step does not compute yet.
PolynomialForm nextDerivative(const Step& law)
{
    PolynomialForm form = {law.terms, law.lowest};
    for (unsigned i = 0; i <= law.derivatives; ++i)
        form = form.derivative();
    return form;
}

// --- Products ------------------------------------------------------------------------------

// What is known of a register while products are merged.
struct RegisterUse {
    std::uint32_t uses = 0;          // by steps, and as the value of an order
    std::uint32_t entry = kNoEntry;  // that computes it
};

std::vector<RegisterUse> registerUses(const Draft& draft)
{
    std::vector<RegisterUse> registers(draft.registers);
    for (const Draft::Entry& entry : draft.entries) {
        const Step& step = entry.step;
        const bool computesB = step.code == Code::SinCos || step.code == Code::CosSin;
        ++registers[step.a].uses;
        if (!computesB)
            ++registers[step.b].uses;
        if (step.derivatives == 0) {
            for (std::uint32_t i = 0; i < entry.listed; ++i)
                ++registers[draft.lists[entry.firstInList + i]].uses;
        }
    }
    for (const std::uint32_t result : draft.results)
        ++registers[result].uses;
    return registers;
}

// Merges products, and sums with them, into the steps that use them. A merged step becomes a
// Move without stages, which does nothing and is erased in the end.
class ProductMerger {
public:
    explicit ProductMerger(Draft& draft) : draft_(draft), registers_(registerUses(draft)) {}

    void merge()
    {
        draft_.lists.reserve(draft_.lists.size() + kMostOperands * draft_.entries.size());
        for (std::uint32_t i = 0; i < draft_.entries.size(); ++i) {
            Draft::Entry& entry = draft_.entries[i];
            if (entry.step.code == Code::Sum)
                mergeIntoSum(entry);
            else if (entry.step.code == Code::Quotient)
                mergeIntoQuotient(entry);
            registers_[entry.step.target].entry = i;
        }
        std::erase_if(draft_.entries, isIdle);
    }

private:
    // The step that computes a register, if it is of that kind and the register has only one
    // use; otherwise null.
    Draft::Entry* only(std::uint32_t number, Code code)
    {
        const RegisterUse& use = registers_[number];
        if (use.entry == kNoEntry || use.uses != 1)
            return nullptr;
        Draft::Entry& entry = draft_.entries[use.entry];
        return entry.step.code == code && entry.step.output == Stage::None ? &entry : nullptr;
    }

    // The sum of a product and another number does not depend on their order.
    void mergeIntoSum(Draft::Entry& sum)
    {
        Step& step = sum.step;
        Draft::Entry* first = only(step.a, Code::Product);
        Draft::Entry* second = only(step.b, Code::Product);
        if (first == nullptr && second != nullptr) {
            std::swap(first, second);
            std::swap(step.a, step.b);
            std::swap(draft_.numbers[sum.firstNumber], draft_.numbers[sum.firstNumber + 1]);
        }
        if (first == nullptr)
            return;
        if (second == nullptr)
            become(sum, Code::ProductPlus, {first->step.a, first->step.b, step.b});
        else
            become(sum, Code::TwoProducts, {first->step.a, first->step.b, second->step.a, second->step.b});
        idle(*first);
        if (second != nullptr)
            idle(*second);
    }

    void mergeIntoQuotient(Draft::Entry& quotient)
    {
        const Step& step = quotient.step;
        if (Draft::Entry* const product = only(step.a, Code::Product)) {
            become(quotient, Code::ProductOver, {product->step.a, product->step.b, step.b});
            idle(*product);
        } else if (Draft::Entry* const sum = only(step.a, Code::ProductPlus)) {
            const double* const k = &draft_.numbers[sum->firstNumber];
            const std::uint32_t* const list = &draft_.lists[sum->firstInList];
            appendPiece({k[0], k[1], draft_.numbers[quotient.firstNumber]}, draft_.numbers,
                        quotient.firstNumber, quotient.numbers);
            become(quotient, Code::ProductPlusOver, {list[0], list[1], list[2], step.b});
            idle(*sum);
        }
    }

    void become(Draft::Entry& entry, Code code, std::initializer_list<std::uint32_t> operands)
    {
        entry.step.code = code;
        entry.step.a = entry.step.b = 0;
        appendPiece(operands, draft_.lists, entry.firstInList, entry.listed);
    }

    static void idle(Draft::Entry& entry)
    {
        entry.step.code = Code::Move;
        entry.listed = entry.numbers = 0;
    }

    Draft& draft_;
    std::vector<RegisterUse> registers_;
};

}  // namespace

void mergeSinesAndCosines(Draft& draft)
{
    auto& entries = draft.entries;
    if (std::ranges::none_of(entries, isSine, &Draft::Entry::step) ||
        std::ranges::none_of(entries, isCosine, &Draft::Entry::step))
        return;
    std::vector<std::uint32_t> firstOn(draft.registers,
                                       kNoEntry);  // the entry that takes a register's sine or cosine
    for (std::uint32_t i = 0; i < entries.size(); ++i) {
        Step& step = entries[i].step;
        if (!isSine(step) && !isCosine(step))
            continue;
        std::uint32_t& first = firstOn[step.operand()];
        if (first == kNoEntry) {
            first = i;
            continue;
        }
        Step& both = entries[first].step;
        if (both.code != Code::Call1 || isSine(both) == isSine(step))
            continue;
        both.code = isSine(both) ? Code::SinCos : Code::CosSin;
        both.b = step.value;
        step.code = Code::Move;
        step.input = std::exchange(step.output, Stage::None);
        step.before = step.after;
        step.a = step.value;
        step.value = step.moved = step.target;
    }
    std::erase_if(entries, isIdle);
}

void mergeDerivatives(Draft& draft)
{
    const auto isPolynomial = [](const Draft::Entry& entry) { return entry.step.code == Code::Polynomial; };
    if (std::ranges::none_of(draft.entries, isPolynomial))
        return;
    std::vector<std::uint32_t> lawIn(draft.registers, kNoEntry);  // the last polynomial in a register
    std::size_t kept = 0;
    for (std::size_t i = 0; i < draft.entries.size(); ++i) {
        const Draft::Entry& entry = draft.entries[i];
        std::array<double, 2> line;
        const auto polynomial = plainPolynomial(draft, entry, line);
        if (polynomial && lawIn[entry.step.a] != kNoEntry) {
            Draft::Entry& law = draft.entries[lawIn[entry.step.a]];
            if (law.step.derivatives < kMostDerivatives && nextDerivative(law.step) == polynomial->form) {
                addDerivative(draft, law, *polynomial, entry.step.value);
                continue;
            }
        }
        if (isPolynomial(entry))
            lawIn[entry.step.operand()] = static_cast<std::uint32_t>(kept);
        if (kept != i)
            draft.entries[kept] = entry;
        ++kept;
    }
    draft.entries.resize(kept);
}

void mergeProducts(Draft& draft)
{
    const auto isProduct = [](const Draft::Entry& entry) { return entry.step.code == Code::Product; };
    if (std::ranges::any_of(draft.entries, isProduct))
        ProductMerger(draft).merge();
}

}  // namespace mf::engine
