// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/curve/CurveDefinition.h"
#include "mfcurves/curve/laws.h"

namespace mfcurve {

/// One change of a document, as given by an option.
struct Edit {
    enum class Kind { Set, Insert, Delete } kind;
    std::string text;   ///< "3.end=120", "3:120,25,Cubic", "3"
    std::string place;  ///< "--set 3.end=120"
};

/// Applies edits to rows or points, in order. Rows are numbered as in `info`, points from 1. A row starts
/// where the previous one ends, so moving an end moves the next start.
///
/// Throws Failure, with the edit as place, when the edit cannot be parsed; when it names a row, point, field
/// or profile that does not exist; when it would leave a row without length or an x that does not ascend; and
/// for an expression.
class Editor {
public:
    Editor(const mf::CurveDefinition& definition, std::vector<mf::Law> laws);

    void apply(const Edit& edit);
    const mf::CurveDefinition& definition() const { return definition_; }

    /// "row 3: start 150 to 120" for each row whose start moved, with its present number.
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
    std::vector<double> startsBefore_;  // the original start of each row; NaN for an inserted row
    std::vector<bool> mayBeEmpty_;      // true for rows that had no length at first, which are jumps
};

}  // namespace mfcurve
