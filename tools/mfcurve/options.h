// SPDX-License-Identifier: MIT
#pragma once

#include <fmt/format.h>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/mfcurve/choices.h"
#include "tools/mfcurve/failure.h"

// The commands do not include the parser's headers, which take longer to compile than a command.
namespace CLI {
class App;
class Option;
}  // namespace CLI

/// Options of a command. Each is converted to its type when it is read; an error is a UsageError.
namespace mfcurve {

/// Reads a finite number. Throws UsageError with the option's name, as the next two do.
double finiteNumber(std::string_view text, const std::string& option);
/// Reads a finite number above 0.
double positive(std::string_view text, const std::string& option);
/// Reads a whole number from `least` to `most`.
long long wholeNumber(std::string_view text, const std::string& option, long long least, long long most);

/// Adds a command to the tool; `help` is its description.
CLI::App& addCommand(CLI::App& app, const std::string& name, const std::string& help);
/// Sets the end of its help.
void addNotes(CLI::App& command, const std::string& notes);
/// Sets what is done after a command line with this command is read.
void whenChosen(CLI::App& command, std::function<void()> act);

/// A declared option.
class Option {
public:
    explicit Option(CLI::Option& option) : option_(&option) {}
    /// Sets the heading in the help under which it is listed.
    Option group(const std::string& heading) const;
    Option required() const;
    Option excludes(Option other) const;

private:
    CLI::Option* option_;
};

using TakeText = std::function<void(const std::string& text)>;
using TakeTexts = std::function<void(const std::vector<std::string>& texts)>;

/// Declares the arguments that are not options.
void addArguments(CLI::App& command, const std::string& name, std::vector<std::string>& target,
                  const std::string& help);

/// An option without a value.
Option addFlag(CLI::App& command, const std::string& name, bool& target, const std::string& help);
Option addFlag(CLI::App& command, const std::string& name, std::function<void()> act,
               const std::string& help);

/// An option that takes one text, which is passed to `take`.
Option addText(CLI::App& command, const std::string& name, const char* type, const std::string& help,
               const TakeText& take);
Option addText(CLI::App& command, const std::string& name, const char* type, const std::string& help,
               std::optional<std::string>& target);
Option addNumber(CLI::App& command, const std::string& name, const char* type, const std::string& help,
                 std::optional<double>& target);

/// An option that may be given several times, each time with one text, which may contain commas.
Option addTexts(CLI::App& command, const std::string& name, const char* type, const std::string& help,
                const TakeTexts& take);
Option addTexts(CLI::App& command, const std::string& name, const char* type, const std::string& help,
                std::vector<std::string>& target);

/// Name and text of each option that takes one text, in the order of the command line.
std::vector<std::pair<std::string, std::string>> textsInOrder(const CLI::App& command);

/// An option that takes one of several names.
template <class Value, class Target>
Option addChoice(CLI::App& command, const std::string& name, const std::string& help, Choices<Value> choices,
                 Target& target)
{
    std::vector<std::string> names;
    for (const auto& choice : choices)
        names.push_back(choice.first);
    return addText(
        command, name, "NAME", fmt::format("{}: {}", help, fmt::join(names, ", ")),
        [&target, name, choices](const std::string& text) { target = chosen(text, name, choices); });
}

/// The format of the result of a command.
enum class Format { Text, Json };
void addFormat(CLI::App& command, Format& format);

}  // namespace mfcurve
