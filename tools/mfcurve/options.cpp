// SPDX-License-Identifier: MIT
#include "tools/mfcurve/options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>
#include <map>

#include "tools/mfcurve/text.h"

namespace mfcurve {

double finiteNumber(std::string_view text, const std::string& option)
{
    const std::optional<double> number = readNumber(text);
    if (!number || !std::isfinite(*number))
        throw UsageError(fmt::format("{} takes a finite number, not \"{}\"", option, text));
    return *number;
}

double positive(std::string_view text, const std::string& option)
{
    const double number = finiteNumber(text, option);
    if (!(number > 0.0))
        throw UsageError(fmt::format("{} takes a number above 0, not \"{}\"", option, text));
    return number;
}

long long wholeNumber(std::string_view text, const std::string& option, long long least, long long most)
{
    long long number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = result.ec == std::errc() && result.ptr == text.data() + text.size();
    if (!isNumber || number < least || number > most)
        throw UsageError(
            fmt::format("{} takes a whole number from {} to {}, not \"{}\"", option, least, most, text));
    return number;
}

CLI::App& addCommand(CLI::App& app, const std::string& name, const std::string& help)
{
    return *app.add_subcommand(name, help);
}

void addNotes(CLI::App& command, const std::string& notes)
{
    command.footer(notes);
}

void whenChosen(CLI::App& command, std::function<void()> act)
{
    command.callback(std::move(act));
}

Option Option::group(const std::string& heading) const
{
    option_->group(heading);
    return *this;
}

Option Option::required() const
{
    option_->required();
    return *this;
}

Option Option::excludes(Option other) const
{
    option_->excludes(other.option_);
    return *this;
}

void addArguments(CLI::App& command, const std::string& name, std::vector<std::string>& target,
                  const std::string& help)
{
    command.add_option(name, target, help);
}

Option addFlag(CLI::App& command, const std::string& name, bool& target, const std::string& help)
{
    return Option(*command.add_flag(name, target, help));
}

Option addFlag(CLI::App& command, const std::string& name, std::function<void()> act, const std::string& help)
{
    return Option(*command.add_flag_callback(name, std::move(act), help));
}

Option addText(CLI::App& command, const std::string& name, const char* type, const std::string& help,
               const TakeText& take)
{
    return Option(*command.add_option_function<std::string>(name, take, help)
                       ->type_name(type)
                       ->multi_option_policy(CLI::MultiOptionPolicy::Throw));
}

Option addText(CLI::App& command, const std::string& name, const char* type, const std::string& help,
               std::optional<std::string>& target)
{
    return addText(command, name, type, help, [&target](const std::string& text) { target = text; });
}

Option addNumber(CLI::App& command, const std::string& name, const char* type, const std::string& help,
                 std::optional<double>& target)
{
    return addText(command, name, type, help,
                   [&target, name](const std::string& text) { target = finiteNumber(text, name); });
}

Option addTexts(CLI::App& command, const std::string& name, const char* type, const std::string& help,
                const TakeTexts& take)
{
    return Option(*command.add_option_function<std::vector<std::string>>(name, take, help)
                       ->type_name(type)
                       ->allow_extra_args(false));
}

Option addTexts(CLI::App& command, const std::string& name, const char* type, const std::string& help,
                std::vector<std::string>& target)
{
    return addTexts(command, name, type, help,
                    [&target](const std::vector<std::string>& texts) { target = texts; });
}

std::vector<std::pair<std::string, std::string>> textsInOrder(const CLI::App& command)
{
    std::map<const CLI::Option*, std::size_t> taken;
    std::vector<std::pair<std::string, std::string>> texts;
    for (const CLI::Option* option : command.parse_order()) {
        if (const std::size_t next = taken[option]++; next < option->results().size())
            texts.emplace_back(option->get_name(), option->results()[next]);
    }
    return texts;
}

void addFormat(CLI::App& command, Format& format)
{
    addChoice<Format>(command, "--format", "how the result is printed",
                      {{"text", Format::Text}, {"json", Format::Json}}, format);
}

}  // namespace mfcurve
