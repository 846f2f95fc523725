// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/curve/CurveDefinition.h"
#include "mfcurves/curve/laws.h"

namespace mfcurve {

/// One change of a document, as an option states it.
struct Edit {
    enum class Kind { Set, Insert, Delete } kind;
    std::string text;   ///< "3.end=120", "3:120,25,Cubic", "3"
    std::string place;  ///< "--set 3.end=120"
};

/// Applies edits to rows or points in their order. Rows are numbered as `info` does, points from 1. A row
/// starts where the previous one ends, so that moving an end moves the next start.
///
/// Throws Failure with the edit as place when it is not one, names a row, point, field or profile that does
/// not exist, or would leave a row without length or an x that does not ascend; and for an expression.
class Editor {
public:
    Editor(const mf::CurveDefinition& definition, std::vector<mf::Law> laws);

    void apply(const Edit& edit);
    const mf::CurveDefinition& definition() const { return definition_; }

    /// "row 3: start 150 to 120" for each row whose start moved, numbered as they are now.
    std::vector<std::string> movedRows() const;

private:
    void applyToRows(mf::SegmentShape& shape, const Edit& edit);
    void applyToPoints(mf::PointShape& shape, const Edit& edit);
    void setField(mf::SegmentShape& shape, const Edit& edit);
    void insertRow(mf::SegmentShape& shape, const Edit& edit);
    std::string profileNamed(mf::SegmentShape& shape, const std::string& name, const Edit& edit) const;
    void checkLengths(const mf::SegmentShape& shape, const Edit& edit) const;

    mf::CurveDefinition definition_;
    std::vector<mf::Law> laws_;
    std::vector<double> startsBefore_;  // of each row that was there; NaN for one that was inserted
    std::vector<bool> mayBeEmpty_;      // rows without length, which are jumps
};

}  // namespace mfcurve
