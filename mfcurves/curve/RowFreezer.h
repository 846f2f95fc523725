// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

#include "mfcurves/curve/FrozenCurve.h"
#include "mfcurves/curve/LawFinder.h"
#include "mfcurves/curve/problems.h"

namespace mf::curve {

/// Checks the rows of a shape and compiles them.
///
/// A short definition can name one long law in many rows. Therefore the number of characters in
/// all their formulas is limited; the row that exceeds the limit is a problem, and the rows after
/// it are not checked.
class RowFreezer {
public:
    /// Both must outlive the object; problems are appended.
    RowFreezer(const SegmentShape& shape, std::vector<Problem>& problems)
        : shape_(shape),
          problems_(problems),
          laws_(shape.laws),
          charactersLeft_(charactersAllowed(shape.rows.size()))
    {
    }

    /// How many characters the formulas of `rows` rows may have in all.
    static std::size_t charactersAllowed(std::size_t rows);

    /// The result may be used only if no problem was appended.
    FrozenRows freeze();

    /// The texts of the laws that the rows use and the shape does not have.
    std::vector<LawText> borrowedTexts() const { return laws_.borrowedTexts(); }

private:
    void iFreezeRow(const CurveRow& row, Place where);
    void iCompile(const Law& law, const CurveRow& row, Place where);
    bool iPayFor(std::size_t characters);
    void iKeep(std::shared_ptr<const engine::Formula> formula);
    void iFinish();

    const SegmentShape& shape_;
    std::vector<Problem>& problems_;
    LawFinder laws_;
    std::size_t charactersLeft_;  // for the formulas of the remaining rows
    bool isTooLong_ = false;
    FrozenRows frozen_;
    std::vector<double> starts_;
    std::vector<std::size_t> places_;  // by row: of its first number or of its formula
    double startX_ = 0.0;              // of the current row
    double startValue_ = 0.0;
};

}  // namespace mf::curve
