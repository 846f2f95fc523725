#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace mfcurve {

/// A point of a curve and the line of the file that it stands in, from 1.
struct FilePoint {
    double x;
    double y;
    int line;
};

/// Why a text is no list of points, ready to stand behind "FILE:LINE: ".
struct PointsProblem {
    int line;  ///< 0 when the text as a whole is to blame
    std::string message;
};

/// Reads one point a line: x and y, apart by a comma, a semicolon, tabs or blanks,
/// with a decimal point under every locale. A first line that does not begin like
/// a number is a header. Blank lines do not count, nor what stands behind a "#".
///
/// The points come in ascending x whatever their order in the text, at least one
/// and each x once; both numbers are finite.
std::variant<std::vector<FilePoint>, PointsProblem> parsePoints(std::string_view text);

}  // namespace mfcurve
