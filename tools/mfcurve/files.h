// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace mfcurve {

/// "-" stands for standard input or output.
bool isStandardStream(const std::string& path);

/// What messages call the input at that path.
std::string inputName(const std::string& path);

/// The whole content of a file or of standard input. Fails with the reason when
/// it cannot be read.
std::string readInput(const std::string& path);

/// Puts `content` into a file, whole or not at all, or onto standard output.
/// Fails with the reason when it cannot be written.
void writeOutput(const std::string& path, const std::string& content);

/// Writes to standard output. Fails with the reason when that is not possible.
void print(const std::string& text);

/// Hands everything printed on to the system; fails when it does not take it.
void finishOutput();

/// Writes a line to standard error, behind everything printed so far.
void warn(const std::string& message);

}  // namespace mfcurve
