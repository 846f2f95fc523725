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
/// The same where a number is not finite, which `what` names.
void checkNumber(std::vector<Problem>& problems, const std::string& where, const char* what, double number);

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
/// A parser's reason as a message.
std::string messageOf(const engine::ParseError& error);

}  // namespace mf::curve
