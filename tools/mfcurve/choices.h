// SPDX-License-Identifier: MIT
#pragma once

#include <fmt/format.h>
#include <string>
#include <utility>
#include <vector>

#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/nearest.h"

namespace mfcurve {

/// Names and their values.
template <class Value>
using Choices = std::vector<std::pair<std::string, Value>>;

/// The value of the name `text`. Throws UsageError with the option's name when it is not one of the choices.
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
