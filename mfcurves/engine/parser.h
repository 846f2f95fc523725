// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>
#include <variant>

#include "mfcurves/engine/graph.h"
#include "mfcurves/engine/names.h"
#include "mfcurves/engine/parseError.h"

namespace mf::engine {

/// An expression text as a graph.
struct ParsedText {
    Graph graph;
    NodeId root;
    ParameterNames parameters;
};

/// Builds the graph of an expression text.
///
/// With `variableName` that name is parameter 0, and no other free name is
/// allowed; without one the free names become the parameters.
std::variant<ParsedText, ParseError> parseText(std::wstring_view text,
                                               const std::optional<std::wstring_view>& variableName);

}  // namespace mf::engine
