// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace mf::engine {

/// Why a text is not an expression.
struct ParseError {
    std::size_t offset = 0;  ///< of the error, in wide characters from the start of the text
    std::string message;     ///< one sentence without a full stop, UTF-8
    std::string expected;    ///< what could be there instead, such as "an operand"; may be empty
};

/// What is wrong with a text, by the rules of MotionMEParser::parse; nothing
/// if it can be compiled. `text` is not null; `variableName` may be null, as there.
std::optional<ParseError> checkText(const wchar_t* text, const wchar_t* variableName);

}  // namespace mf::engine
