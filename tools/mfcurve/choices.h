// SPDX-License-Identifier: MIT
#pragma once

#include <fmt/format.h>
#include <string>
#include <utility>
#include <vector>

#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/nearest.h"

namespace mfcurve {

/// Names and what they stand for.
template <class Value>
using Choices = std::vector<std::pair<std::string, Value>>;

/// What a name stands for. Throws UsageError with the option's name when it is none of the choices.
template <class Value>
Value chosen(const std::string& text, const std::string& option, const Choices<Value>& choices)
{
    std::vector<std::string> names;
    for (const auto& [name, value] : choices) {
        if (text == name)
            return value;
        names.push_back(name);
    }
    throw UsageError(fmt::format("{} takes {}, not \"{}\"{}", option, fmt::join(names, ", "), text,
                                 nearestAdvice(text, names)));
}

}  // namespace mfcurve
