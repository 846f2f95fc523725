// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/mfcurve/choices.h"
#include "tools/mfcurve/failure.h"

/// Options of a command, each turned into its type where it is read. What is wrong with one is a UsageError.
namespace mfcurve {

/// A finite number out of an option. Throws UsageError with the option's name.
double finiteNumber(std::string_view text, const std::string& option);
/// A finite number above 0.
double positive(std::string_view text, const std::string& option);
/// A whole number from `least` to `most`.
long long wholeNumber(std::string_view text, const std::string& option, long long least, long long most);

/// Declares an option that takes one text, and hands that to `take`.
template <class Take>
CLI::Option* addText(CLI::App& command, const std::string& name, const char* type, const std::string& help,
                     Take take)
{
    return command.add_option_function<std::string>(name, take, help)
        ->type_name(type)
        ->multi_option_policy(CLI::MultiOptionPolicy::Throw);
}

inline CLI::Option* addText(CLI::App& command, const std::string& name, const char* type,
                            const std::string& help, std::optional<std::string>& target)
{
    return addText(command, name, type, help, [&target](const std::string& text) { target = text; });
}

inline CLI::Option* addNumber(CLI::App& command, const std::string& name, const char* type,
                              const std::string& help, std::optional<double>& target)
{
    return addText(command, name, type, help,
                   [&target, name](const std::string& text) { target = finiteNumber(text, name); });
}

/// An option that may be given several times; each takes one text, commas included.
inline CLI::Option* addTexts(CLI::App& command, const std::string& name, const char* type,
                             const std::string& help, std::vector<std::string>& target)
{
    return command.add_option(name, target, help)->type_name(type)->allow_extra_args(false);
}

/// An option that takes one of several names.
template <class Value, class Target>
CLI::Option* addChoice(CLI::App& command, const std::string& name, const std::string& help,
                       Choices<Value> choices, Target& target)
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
