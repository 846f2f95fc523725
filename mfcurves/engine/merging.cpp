// SPDX-License-Identifier: MIT

#include "mfcurves/engine/merging.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace mf::engine {
namespace {

constexpr std::uint32_t kNone = 0xffffffff;
constexpr unsigned kMostDerivatives = 3;

// The register from which the operation of a step with one operand takes it.
std::uint32_t operandOf(const Step& step)
{
    return step.input != Stage::None ? step.moved : step.a;
}

bool isSine(const Step& step)
{
    return step.code == Code::Call1 && step.function == FunctionId::Sin;
}

bool isCosine(const Step& step)
{
    return step.code == Code::Call1 && step.function == FunctionId::Cos;
}

bool isNeutral(double number, double neutral)
{
    return std::bit_cast<std::uint64_t>(number) == std::bit_cast<std::uint64_t>(neutral);
}

// A polynomial in register a whose value goes to one register.
struct PlainPolynomial {
    PolynomialForm form;
    std::span<const double> coefficients;
};

// v * factor + last is a polynomial, too: its bits are those of last + factor * v. Its
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

// Appends to a piece of a table, which moves to the table's end if it is not there.
template <class Element>
void append(std::span<const Element> added, std::vector<Element>& table, std::uint32_t& first,
            std::uint32_t& count)
{
    std::vector<Element> piece(table.begin() + first, table.begin() + first + count);
    piece.insert(piece.end(), added.begin(), added.end());
    if (first + count == table.size())
        table.resize(first);
    first = static_cast<std::uint32_t>(table.size());
    count = static_cast<std::uint32_t>(piece.size());
    table.insert(table.end(), piece.begin(), piece.end());
}

void addDerivative(Draft& draft, Draft::Entry& law, const PlainPolynomial& derivative, std::uint32_t target)
{
    append<double>(derivative.coefficients, draft.numbers, law.firstNumber, law.numbers);
    append<std::uint32_t>({&target, 1}, draft.lists, law.firstInList, law.listed);
    ++law.step.derivatives;
}

// The form of the derivative that a polynomial does not compute yet.
PolynomialForm nextDerivative(const Step& law)
{
    PolynomialForm form = {law.terms, law.lowest};
    for (unsigned i = 0; i <= law.derivatives; ++i)
        form = form.derivative();
    return form;
}

}  // namespace

void mergeSinesAndCosines(Draft& draft)
{
    auto& entries = draft.entries;
    if (std::ranges::none_of(entries, isSine, &Draft::Entry::step) ||
        std::ranges::none_of(entries, isCosine, &Draft::Entry::step))
        return;
    std::vector<std::uint32_t> firstOn(draft.registers,
                                       kNone);  // the entry that takes a register's sine or cosine
    for (std::uint32_t i = 0; i < entries.size(); ++i) {
        Step& step = entries[i].step;
        if (!isSine(step) && !isCosine(step))
            continue;
        std::uint32_t& first = firstOn[operandOf(step)];
        if (first == kNone) {
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
    std::erase_if(entries, [](const Draft::Entry& entry) {
        return entry.step.code == Code::Move && entry.step.input == Stage::None;
    });
}

void mergeDerivatives(Draft& draft)
{
    const auto isPolynomial = [](const Draft::Entry& entry) { return entry.step.code == Code::Polynomial; };
    if (std::ranges::none_of(draft.entries, isPolynomial))
        return;
    std::vector<std::uint32_t> lawIn(draft.registers, kNone);  // the last polynomial in a register
    std::size_t kept = 0;
    for (std::size_t i = 0; i < draft.entries.size(); ++i) {
        const Draft::Entry entry = draft.entries[i];
        std::array<double, 2> line;
        const auto polynomial = plainPolynomial(draft, entry, line);
        if (polynomial && lawIn[entry.step.a] != kNone) {
            Draft::Entry& law = draft.entries[lawIn[entry.step.a]];
            if (law.step.derivatives < kMostDerivatives && nextDerivative(law.step) == polynomial->form) {
                addDerivative(draft, law, *polynomial, entry.step.value);
                continue;
            }
        }
        if (isPolynomial(entry))
            lawIn[operandOf(entry.step)] = static_cast<std::uint32_t>(kept);
        draft.entries[kept++] = entry;
    }
    draft.entries.resize(kept);
}

}  // namespace mf::engine
