// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "mfcurves/platform/mfExport.h"

namespace mf {

/// One error or oddity, in words for people.
struct Problem {
    /// With an error there is no curve; with a warning there is one.
    enum class Level { Error, Warning };

    /// How bad it is.
    Level level = Level::Error;
    /// Where: "cam.xml:12", "row 3", "point 3", "character 7", counted from 1. The
    /// row that states where a curve begins is row 0. Empty if the problem is about
    /// the whole.
    std::string place;
    /// One line, UTF-8: what was expected and what was found. Its first letter is
    /// lower case, and it has no full stop.
    std::string message;
};

/// Equal in every field.
inline bool operator==(const Problem& a, const Problem& b)
{
    return a.level == b.level && a.place == b.place && a.message == b.message;
}
/// Different in any field.
inline bool operator!=(const Problem& a, const Problem& b)
{
    return !(a == b);
}

/// A curve that cannot be made, read or written.
///
///     try {
///         const mf::Curve cam = mf::Curve::read("cam.xml");
///     } catch (const mf::CurveError& error) {
///         for (const mf::Problem& problem : error.problems())
///             std::cerr << problem.place << ": " << problem.message << '\n';
///     }
///
/// `what()` has one line for each problem, "PLACE: MESSAGE".
class MFCURVES_API CurveError : public std::runtime_error {
public:
    /// Takes all problems found; what() is made from them.
    explicit CurveError(std::vector<Problem> problems);
    CurveError(const CurveError&) = default;
    CurveError& operator=(const CurveError&) = default;
    ~CurveError() override;

    /// All problems found, errors before warnings; at least one is an error.
    const std::vector<Problem>& problems() const { return problems_; }

private:
    std::vector<Problem> problems_;
};

}  // namespace mf
