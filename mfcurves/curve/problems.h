// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

#include "mfcurves/curve/Problem.h"
#include "mfcurves/engine/parseError.h"

namespace mf::curve {

/// "row 3", or "" for the whole curve. It becomes a text only where a problem is reported.
struct Place {
    const char* what = nullptr;
    std::size_t number = 0;

    operator std::string() const;
};

/// Appends an error.
void report(std::vector<Problem>& problems, std::string where, std::string message);
/// Appends the error that a number, which `what` names, is not finite.
void reportNotFinite(std::vector<Problem>& problems, Place where, const char* what, double number);
/// Appends that error if the number is not finite.
inline void checkNumber(std::vector<Problem>& problems, Place where, const char* what, double number)
{
    if (!std::isfinite(number))
        reportNotFinite(problems, where, what, number);
}

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
