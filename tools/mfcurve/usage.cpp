// SPDX-License-Identifier: MIT
#include "tools/mfcurve/usage.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "tools/mfcurve/nearest.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

std::vector<std::string> commandNames(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(command->get_name());
    return names;
}

std::vector<std::string> optionNames(const CLI::App& command)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    }
    return names;
}

// The command that the first argument names; null if it names none.
const CLI::App* commandOf(const CLI::App& app, const std::vector<std::string>& arguments)
{
    const std::vector<std::string> names = commandNames(app);
    const bool isKnown =
        !arguments.empty() && std::find(names.begin(), names.end(), arguments.back()) != names.end();
    return isKnown ? app.get_subcommand(arguments.back()) : nullptr;
}

}  // namespace

std::vector<std::string> reversedArguments(int argc, char** argv)
{
    std::vector<std::string> arguments;
    bool areOptionsOver = false;
    for (int i = 1; i < argc; ++i) {
        std::string argument = argv[i];
        const bool isNumber = readNumber(argument).has_value();
        if (!areOptionsOver && argument == "--") {
            areOptionsOver = true;
            continue;
        }
        if (argument.starts_with("-.") && isNumber)
            argument.insert(1, "0");
        else if (areOptionsOver && !isNumber && argument.size() > 1 && argument.front() == '-')
            argument.insert(0, "./");
        arguments.push_back(std::move(argument));
    }
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
}

std::string usageProblem(const CLI::App& app, const CLI::ParseError& error,
                         const std::vector<std::string>& arguments)
{
    const CLI::App* command = commandOf(app, arguments);
    if (arguments.empty())
        return "a command is missing";
    if (command == nullptr && !arguments.back().starts_with('-'))
        return "there is no command \"" + arguments.back() + "\"" +
               nearestAdvice(arguments.back(), commandNames(app));
    const std::vector<std::string> known = optionNames(command != nullptr ? *command : app);
    for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
        const std::string name = argument->substr(0, argument->find('='));
        if (name.starts_with("--") && std::find(known.begin(), known.end(), name) == known.end())
            return "there is no option " + name + nearestAdvice(name, known);
    }
    std::string problem = error.what();
    const std::string option = problem.substr(0, problem.find(':'));
    if (problem.starts_with("The following argument"))
        return "no argument is expected here" + problem.substr(problem.find(':'));
    if (problem.find(": At Most 1 required") != std::string::npos)
        return option + " is given more than once";
    if (problem.find(": 1 required") != std::string::npos)
        return option + " needs a value";
    return problem;
}

std::string helpOf(const CLI::App& app, const std::vector<std::string>& arguments)
{
    const CLI::App* command = commandOf(app, arguments);
    return command == nullptr ? "mfcurve --help" : "mfcurve " + command->get_name() + " --help";
}

}  // namespace mfcurve
