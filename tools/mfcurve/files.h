// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "mfcurves/curve/Problem.h"

namespace mfcurve {

/// True for "-", which means standard input or output.
bool isStandardStream(const std::string& path);

/// The name of the input at that path in messages.
std::string inputName(const std::string& path);

/// "FILE:LINE" for messages; the file alone for line 0.
std::string linePlace(const std::string& path, int line);

/// The whole content of a file or of standard input. Throws Failure with the reason when it cannot be read.
std::string readInput(const std::string& path);

/// Writes `content` to a file, completely or not at all, or to standard output. Throws Failure with the
/// reason when it cannot be written.
void writeOutput(const std::string& path, std::string_view content);

/// Writes to standard output. Throws Failure with the reason when that fails.
void print(std::string_view text);

/// Flushes standard output. Throws Failure when that fails.
void finishOutput();

/// Writes "mfcurve: error: PLACE: message", or the same with "warning", to standard error. Flushes standard
/// output first.
void report(const mf::Problem& problem);
void warn(const std::string& place, const std::string& message);

}  // namespace mfcurve
