#pragma once

#include <optional>
#include <string_view>
#include <variant>

#include "mfcurves/engine/graph.h"
#include "mfcurves/engine/names.h"
#include "mfcurves/engine/parseError.h"

namespace mf::engine {

/// Builds the graph of an expression text.
///
/// With `variableName` that name is parameter 0, and no other free name is
/// allowed; without one the free names become the parameters.
/// The answer is the root of the expression in `graph`, or what is wrong.
std::variant<NodeId, ParseError> parseText(std::wstring_view text,
                                           const std::optional<std::wstring_view>& variableName, Graph& graph,
                                           ParameterNames& parameters);

}  // namespace mf::engine
