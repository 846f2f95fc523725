// SPDX-License-Identifier: MIT

#include "mfcurves/curve/RowFreezer.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <utility>
#include <variant>

#include "mfcurves/curve/lawFormula.h"
#include "mfcurves/engine/limits.h"

namespace mf::curve {
namespace {

bool areFinite(std::initializer_list<double> numbers)
{
    return std::all_of(numbers.begin(), numbers.end(), [](double number) { return std::isfinite(number); });
}

}  // namespace

// Each row may have about a thousand characters, which is more than any ordinary law has, and
// a few rows may have the longest text that the engine accepts.
std::size_t RowFreezer::charactersAllowed(std::size_t rows)
{
    return 4 * engine::kLongestText + 1024 * rows;
}

FrozenRows RowFreezer::freeze()
{
    checkNumber(problems_, Place{"row", 0}, "the start x", shape_.startX);
    checkNumber(problems_, Place{"row", 0}, "the start value", shape_.startValue);
    if (shape_.rows.empty())
        report(problems_, "", "the curve has no rows");
    startX_ = shape_.startX;
    startValue_ = shape_.startValue;
    for (std::size_t i = 0; i < shape_.rows.size() && !isTooLong_; ++i) {
        const CurveRow& row = shape_.rows[i];
        iFreezeRow(row, Place{"row", i + 1});
        startX_ = row.endX;
        startValue_ = row.value;
    }
    if (!hasError(problems_) && frozen_.rows.empty())
        report(problems_, "", "no row has a length");
    if (!hasError(problems_))
        iFinish();
    return std::move(frozen_);
}

// A row of no length is a jump, which needs no law.
void RowFreezer::iFreezeRow(const CurveRow& row, Place where)
{
    checkNumber(problems_, where, "the end x", row.endX);
    checkNumber(problems_, where, "the value", row.value);
    if (row.endX < startX_)
        report(problems_, where,
               "the row ends at " + shortNumber(row.endX) + ", before it starts at " + shortNumber(startX_));
    if (row.endX == startX_ && row.profile.empty())
        return;
    const LawFinder::Found& found = laws_.named(row.profile);
    if (!found.problem.empty())
        report(problems_, where, found.problem);
    else if (row.endX > startX_ && areFinite({startX_, startValue_, row.endX, row.value}))
        iCompile(*found.law, row, where);
}

void RowFreezer::iCompile(const Law& law, const CurveRow& row, Place where)
{
    FormulaText text;
    const bool fits = lawFormula(law, startX_, startValue_, row, shape_.sixDecimals, text);
    if (!iPayFor(fits ? text.text.size() : engine::kLongestText)) {
        report(problems_, where,
               "the formulas of the rows up to this one are too long together: " +
                   std::to_string(charactersAllowed(shape_.rows.size())) + " characters are allowed for " +
                   std::to_string(shape_.rows.size()) + " rows");
        return;
    }
    if (!fits) {
        report(problems_, where,
               "the formula of " + quoted(row.profile) + " is longer than the engine takes");
        return;
    }
    engine::Formula::Result formula = engine::Formula::compile(text.text, text.variable);
    if (const auto* error = std::get_if<engine::ParseError>(&formula))
        report(problems_, where,
               "the law " + quoted(row.profile) + " does not compile: " + messageOf(*error));
    else
        iKeep(std::get<std::shared_ptr<const engine::Formula>>(std::move(formula)));
}

// Takes the characters of a formula off those left. If they are too many, no further row is read.
bool RowFreezer::iPayFor(std::size_t characters)
{
    isTooLong_ = characters > charactersLeft_;
    if (!isTooLong_)
        charactersLeft_ -= characters;
    return !isTooLong_;
}

// Keeps the numbers of a law of a known form, and the formula of any other law.
void RowFreezer::iKeep(std::shared_ptr<const engine::Formula> formula)
{
    const std::size_t firstNumber = frozen_.numbers.size();
    const RowForm* const form = rowFormOf(engine::lawFormOf(*formula), frozen_.numbers);
    starts_.push_back(startX_);
    frozen_.rows.push_back({form != nullptr ? form : &kFormulaRow, {}});
    places_.push_back(form != nullptr ? firstNumber : frozen_.formulas.size());
    if (form == nullptr)
        frozen_.formulas.push_back(std::move(formula));
}

// Sets the pointers into the lists of numbers and formulas, which no longer grow.
void RowFreezer::iFinish()
{
    frozen_.numbers.shrink_to_fit();
    for (std::size_t i = 0; i < frozen_.rows.size(); ++i) {
        FrozenRows::Row& row = frozen_.rows[i];
        if (row.form == &kFormulaRow)
            row.data.formula = frozen_.formulas[places_[i]].get();
        else
            row.data.numbers = frozen_.numbers.data() + places_[i];
    }
    frozen_.rows.reserve(frozen_.rows.size() + 1);
    frozen_.rows.push_back(frozen_.rows.back());
    frozen_.rows.shrink_to_fit();
    starts_.reserve(starts_.size() + 3);  // with what KnotIndex adds
    starts_.push_back(startX_);
    frozen_.starts = host::KnotIndex(std::move(starts_));
}

}  // namespace mf::curve
