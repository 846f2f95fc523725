#pragma once

#include <optional>
#include <string_view>

#include "mfcurves/engine/compiledText.h"

namespace mf::engine {

/// The compiled form of a text, from the calling thread's cache of the texts
/// compiled last if it is there. Texts that cannot be compiled, and very long
/// ones, are not kept.
CompiledText::Answer compiledThroughCache(std::wstring_view text,
                                          const std::optional<std::wstring_view>& variableName);

}  // namespace mf::engine
