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

// Only options.cpp knows the parser's headers, which take longer to compile than a command.
namespace CLI {
class App;
class Option;
}  // namespace CLI

/// Options of a command, each turned into its type where it is read. What is wrong with one is a UsageError.
namespace mfcurve {

/// A finite number out of an option. Throws UsageError with the option's name.
double finiteNumber(std::string_view text, const std::string& option);
/// A finite number above 0.
double positive(std::string_view text, const std::string& option);
/// A whole number from `least` to `most`.
long long wholeNumber(std::string_view text, const std::string& option, long long least, long long most);

/// A command of the tool with what it is for.
CLI::App& addCommand(CLI::App& app, const std::string& name, const std::string& help);
/// What its help ends with.
void addNotes(CLI::App& command, const std::string& notes);
/// What is done once a command line that names it is read.
void whenChosen(CLI::App& command, std::function<void()> act);

/// An option that was declared.
class Option {
public:
    explicit Option(CLI::Option& option) : option_(&option) {}
    /// The heading of the help that it is under.
    Option group(const std::string& heading) const;
    Option required() const;
    Option excludes(Option other) const;

private:
    CLI::Option* option_;
};

using TakeText = std::function<void(const std::string& text)>;
using TakeTexts = std::function<void(const std::vector<std::string>& texts)>;

/// What stands on the command line without an option.
void addArguments(CLI::App& command, const std::string& name, std::vector<std::string>& target,
                  const std::string& help);

/// An option without a text.
Option addFlag(CLI::App& command, const std::string& name, bool& target, const std::string& help);
Option addFlag(CLI::App& command, const std::string& name, std::function<void()> act,
               const std::string& help);

/// An option that takes one text, and hands that to `take`.
Option addText(CLI::App& command, const std::string& name, const char* type, const std::string& help,
               const TakeText& take);
Option addText(CLI::App& command, const std::string& name, const char* type, const std::string& help,
               std::optional<std::string>& target);
Option addNumber(CLI::App& command, const std::string& name, const char* type, const std::string& help,
                 std::optional<double>& target);

/// An option that may be given several times; each takes one text, commas included.
Option addTexts(CLI::App& command, const std::string& name, const char* type, const std::string& help,
                const TakeTexts& take);
Option addTexts(CLI::App& command, const std::string& name, const char* type, const std::string& help,
                std::vector<std::string>& target);

/// Name and text of the options with one text, in the order in which they were written.
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

/// The way the result of a command is printed.
enum class Format { Text, Json };
void addFormat(CLI::App& command, Format& format);

}  // namespace mfcurve
