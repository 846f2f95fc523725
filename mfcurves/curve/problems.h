// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/curve/Problem.h"

namespace mf::curve {

bool hasError(const std::vector<Problem>& problems);

/// The error of these problems, errors before warnings.
CurveError errorOf(std::vector<Problem> problems);

/// As a person writes it, with up to ten digits.
std::string shortNumber(double number);

/// A text with blanks in place of control characters, line ends among them.
std::string oneLine(std::string text);

/// The start of a text in quotes, on one line: it may be as long as a document.
std::string quoted(const std::string& text);

/// A sentence of a parser as a message: first letter in lower case, but for one that begins
/// with several capitals, and no full stop.
std::string messageOf(std::string sentence);

}  // namespace mf::curve
