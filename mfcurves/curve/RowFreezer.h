// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

#include "mfcurves/curve/FrozenCurve.h"
#include "mfcurves/curve/LawFinder.h"

namespace mf::curve {

/// Checks the rows of a shape and compiles them.
///
/// A short definition can name one long law in many rows. So their formulas may only have so
/// many characters together; the row that goes beyond is a problem, and those after it are not
/// looked at.
class RowFreezer {
public:
    /// Both are referred to; problems are appended.
    RowFreezer(const SegmentShape& shape, std::vector<Problem>& problems)
        : shape_(shape),
          problems_(problems),
          laws_(shape.laws),
          charactersLeft_(charactersAllowed(shape.rows.size()))
    {
    }

    /// How many characters the formulas of so many rows may have together.
    static std::size_t charactersAllowed(std::size_t rows);

    /// What it returns is of use only if there were no problems.
    FrozenRows freeze();

    /// The texts of the laws that the rows use and the shape does not have.
    std::vector<LawText> borrowedTexts() const { return laws_.borrowedTexts(); }

private:
    void iFreezeRow(const CurveRow& row, const std::string& where);
    void iCompile(const Law& law, const CurveRow& row, const std::string& where);
    bool iPayFor(std::size_t characters);
    void iKeep(std::shared_ptr<const engine::Formula> formula);
    void iFinish();

    const SegmentShape& shape_;
    std::vector<Problem>& problems_;
    LawFinder laws_;
    std::size_t charactersLeft_;  // for the formulas of the rows to come
    bool isTooLong_ = false;
    FrozenRows frozen_;
    std::vector<double> starts_;
    std::vector<std::size_t> places_;  // by row: of its first number or of its formula
    double startX_ = 0.0;              // of the row whose turn it is
    double startValue_ = 0.0;
};

}  // namespace mf::curve
