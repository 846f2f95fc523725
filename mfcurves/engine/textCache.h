// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

#include "mfcurves/engine/compiledText.h"

namespace mf::engine {

/// Returns the compiled form of a text, from the calling thread's cache of recently
/// used texts if it is there. The cache keeps as many texts as fit into a few megabytes;
/// texts that cannot be compiled are not kept.
CompiledText::Result compiledThroughCache(std::wstring_view text,
                                          const std::optional<std::wstring_view>& variableName);

}  // namespace mf::engine
