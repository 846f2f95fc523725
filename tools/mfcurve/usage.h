// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace mfcurve {

/// The arguments, last one first, as the parser takes them. A number such as -.5 would be taken for an
/// option, and a "--" only before the first number or file: what follows it is written as no option can be.
std::vector<std::string> reversedArguments(int argc, char** argv);

/// What is wrong with a command line that the parser refuses, with the nearest command or option.
std::string usageProblem(const CLI::App& app, const CLI::ParseError& error,
                         const std::vector<std::string>& arguments);

/// "mfcurve eval --help": the help of the command that the arguments name.
std::string helpOf(const CLI::App& app, const std::vector<std::string>& arguments);

}  // namespace mfcurve
