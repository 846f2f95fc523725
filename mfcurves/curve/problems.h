// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "mfcurves/curve/Problem.h"
#include "mfcurves/engine/parseError.h"

namespace mf::curve {

/// "row 3".
std::string place(const char* what, std::size_t number);

/// Appends an error.
void report(std::vector<Problem>& problems, std::string where, std::string message);
/// Appends an error if a number is not finite; `what` names the number.
void checkNumber(std::vector<Problem>& problems, const std::string& where, const char* what, double number);

bool hasError(const std::vector<Problem>& problems);

/// The error of these problems, errors before warnings.
CurveError errorOf(std::vector<Problem> problems);

/// A number with up to ten digits, for a message.
std::string shortNumber(double number);

/// A text with blanks in place of control characters, line ends among them.
std::string oneLine(std::string text);

/// The start of a text in quotes, on one line. The text may be as long as a document.
std::string quoted(const std::string& text);

/// A sentence of a parser as a message: the first letter in lower case, unless the sentence
/// begins with several capitals, and no full stop.
std::string messageOf(std::string sentence);
/// A parser's reason as a message.
std::string messageOf(const engine::ParseError& error);

}  // namespace mf::curve
