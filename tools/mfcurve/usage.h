// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace mfcurve {

/// The arguments in reverse order, as the parser takes them. The parser would take a number such as -.5 for
/// an option, and accepts "--" only before the first number or file; arguments that are not options are
/// therefore rewritten so that they cannot look like one.
std::vector<std::string> reversedArguments(int argc, char** argv);

/// The error in a command line that the parser refuses, with the nearest command or option.
std::string usageProblem(const CLI::App& app, const CLI::ParseError& error,
                         const std::vector<std::string>& arguments);

/// "mfcurve eval --help": the help of the command that the arguments name.
std::string helpOf(const CLI::App& app, const std::vector<std::string>& arguments);

}  // namespace mfcurve
