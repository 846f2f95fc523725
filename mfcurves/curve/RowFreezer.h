// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

#include "mfcurves/curve/FrozenCurve.h"
#include "mfcurves/curve/LawFinder.h"

namespace mf::curve {

/// Checks the rows of a shape and compiles them.
class RowFreezer {
public:
    /// Both are referred to; problems are appended.
    RowFreezer(const SegmentShape& shape, std::vector<Problem>& problems)
        : shape_(shape), problems_(problems), laws_(shape.laws)
    {
    }

    /// What it returns is of use only if there were no problems.
    FrozenRows freeze();

    /// The texts of the laws that the rows use and the shape does not have.
    std::vector<LawText> borrowedTexts() const { return laws_.borrowedTexts(); }

private:
    void iFreezeRow(const CurveRow& row, const std::string& where);
    void iCompile(const Law& law, const CurveRow& row, const std::string& where);
    void iKeep(std::shared_ptr<const engine::Formula> formula);
    void iFinish();

    const SegmentShape& shape_;
    std::vector<Problem>& problems_;
    LawFinder laws_;
    FrozenRows frozen_;
    std::vector<double> starts_;
    std::vector<std::size_t> places_;  // by row: of its first number or of its formula
    double startX_ = 0.0;              // of the row whose turn it is
    double startValue_ = 0.0;
};

}  // namespace mf::curve
