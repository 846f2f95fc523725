// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/platform/mfExport.h"

/// The definition of a curve: plain data with exact doubles, from which mf::Curve makes
/// a curve. All texts are UTF-8.
///
/// Definitions are equal if every field is equal, texts exactly and doubles by their
/// bits. Equal definitions make curves with the same bits.
namespace mf {

/// The x from `from` to `to`, both included.
struct Range {
    double from;  ///< the least x
    double to;    ///< the greatest x
};

/// One row of a curve. It starts where the previous one ends.
struct CurveRow {
    double endX = 0.0;    ///< where the next row starts
    double value = 0.0;   ///< at endX
    std::string profile;  ///< name of the motion law: "3-4-5-Polynomial" or "3-4-5-Polynomial (Default)"
};

/// A motion law in the profile language (docs/profile-language.md).
struct LawText {
    std::string name;  ///< by which rows refer to it
    std::string text;  ///< "SegmentType(...) ... endSegmentType"
};

/// How points are joined: straight, by the natural cubic spline, or by Akima's.
enum class Interpolation { Linear, Cubic, Akima };

/// What the values of a curve are.
enum class Quantity { Displacement, Velocity, Acceleration, Force, Torque };

/// What x is: seconds, degrees of the machine's cycle, or a result of the motion
/// study, which has a name.
enum class Over { Time, CycleAngle, MotionResult };

/// A curve made of rows, each shaped by a motion law.
struct SegmentShape {
    double startX = 0.0;         ///< where the first row starts
    double startValue = 0.0;     ///< the value there
    std::vector<CurveRow> rows;  ///< at least one; endX never descends, and ascends at least once
    std::vector<LawText> laws;   ///< take precedence over built-in and shipped laws of the same name
    /// True: numbers enter the laws rounded to six decimals, as tables and documents
    /// write them. False: with all their digits.
    bool sixDecimals = false;
};

/// A curve through points.
struct PointShape {
    std::vector<double> x;  ///< at least one, strictly ascending
    std::vector<double> y;  ///< one for each x
    /// How the curve runs between the points.
    Interpolation interpolation = Interpolation::Linear;
};

/// A curve given by a text with at most one variable, whatever its name
/// (docs/expressions.md).
struct ExpressionShape {
    std::string text;   ///< such as "10*sin(2*pi*x)"
    double from = 0.0;  ///< the start of the range of x
    double to = 0.0;    ///< the end of the range, not below `from`
};

/// Everything that makes one curve.
///
///     mf::CurveDefinition cam;
///     cam.shape = mf::CurveDefinition::Segments{0.0, 0.0, {{90.0, 25.0, "3-4-5-Polynomial"},
///                                                          {150.0, 25.0, "Linear"},
///                                                          {240.0, 0.0, "Cycloidal"}}, {}, false};
///     cam.over = mf::Over::CycleAngle;
///     const mf::Curve curve(cam);
///
/// Units: x in seconds, degrees or the unit of the motion result. Displacements in
/// millimetres, or degrees if `rotary`, velocities and accelerations in these per unit
/// of x, forces in newtons, torques in newton metres. Nothing is converted, so any
/// other consistent units will do.
struct CurveDefinition {
    using Segments = SegmentShape;       ///< rows shaped by motion laws
    using Points = PointShape;           ///< a spline through points
    using Expression = ExpressionShape;  ///< a text

    std::variant<Segments, Points, Expression> shape;  ///< the curve itself
    std::string name;                                  ///< for people; may be empty
    Quantity quantity = Quantity::Displacement;        ///< what its values are
    Over over = Over::Time;                            ///< what x is
    std::string motionResult;                          ///< name of the result; only for Over::MotionResult
    bool rotary = false;                               ///< degrees instead of millimetres
    /// The kind of X-Y data in a document; empty if quantity and rotary imply it.
    std::optional<MotFuncXYDataType_e> dataType;
};

/// What a document may refer to that is not in it.
struct ReadSettings {
    /// Folders with a SegmentTypes.txt. The first one that defines a law counts.
    std::vector<std::string> libraryFolders;
    std::vector<std::string> motionResults;  ///< names that a curve may run over
};

/// Equality of every field, doubles by their bits.
/// @{
MFCURVES_API bool operator==(const CurveRow& a, const CurveRow& b);
MFCURVES_API bool operator==(const LawText& a, const LawText& b);
MFCURVES_API bool operator==(const SegmentShape& a, const SegmentShape& b);
MFCURVES_API bool operator==(const PointShape& a, const PointShape& b);
MFCURVES_API bool operator==(const ExpressionShape& a, const ExpressionShape& b);
MFCURVES_API bool operator==(const CurveDefinition& a, const CurveDefinition& b);

/// @}

/// The opposite of equality.
/// @{
inline bool operator!=(const CurveRow& a, const CurveRow& b)
{
    return !(a == b);
}
inline bool operator!=(const LawText& a, const LawText& b)
{
    return !(a == b);
}
inline bool operator!=(const SegmentShape& a, const SegmentShape& b)
{
    return !(a == b);
}
inline bool operator!=(const PointShape& a, const PointShape& b)
{
    return !(a == b);
}
inline bool operator!=(const ExpressionShape& a, const ExpressionShape& b)
{
    return !(a == b);
}
inline bool operator!=(const CurveDefinition& a, const CurveDefinition& b)
{
    return !(a == b);
}
/// @}

}  // namespace mf
