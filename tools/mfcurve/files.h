// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "mfcurves/curve/Problem.h"

namespace mfcurve {

/// "-" stands for standard input or output.
bool isStandardStream(const std::string& path);

/// What messages call the input at that path.
std::string inputName(const std::string& path);

/// "FILE:LINE" for messages; the file alone for line 0.
std::string linePlace(const std::string& path, int line);

/// The whole content of a file or of standard input. Throws Failure with the reason when it cannot be read.
std::string readInput(const std::string& path);

/// Stores `content` in a file, whole or not at all, or writes it to standard output. Throws Failure with the
/// reason when it cannot be written.
void writeOutput(const std::string& path, std::string_view content);

/// Writes to standard output. Throws Failure with the reason when that is not possible.
void print(std::string_view text);

/// Hands everything printed on to the system. Throws Failure when it does not take it.
void finishOutput();

/// Writes "mfcurve: error: PLACE: message" or the like with "warning" to standard error, after everything
/// printed so far.
void report(const mf::Problem& problem);
void warn(const std::string& place, const std::string& message);

}  // namespace mfcurve
