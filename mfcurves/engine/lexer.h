// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "mfcurves/engine/parseError.h"

namespace mf::engine {

enum class TokenKind : std::uint8_t {
    End,
    Number,
    Name,    // letters, digits and characters beyond ASCII
    Result,  // a motion result: {any text}
    Plus,
    Minus,
    Times,
    Over,
    Remainder,
    Power,  // ^ or **
    Open,
    Close,
    Comma,
    Colon,
    Bad  // see Lexer::error
};

struct Token {
    TokenKind kind = TokenKind::End;
    std::size_t offset = 0;
    std::wstring_view text;
    double number = 0.0;
};

/// Cuts a text into tokens, one at a time.
class Lexer {
public:
    explicit Lexer(std::wstring_view text) : text_(text) {}

    /// Returns the next token; after the last one, always an End token.
    Token next();

    /// What is wrong with the Bad token that was returned last.
    const std::optional<ParseError>& error() const { return error_; }

private:
    Token iNumber(std::size_t start);
    Token iResult(std::size_t start);
    Token iMake(TokenKind kind, std::size_t start, std::size_t length);
    Token iBad(std::size_t start, std::string message, std::string expected);
    wchar_t iAt(std::size_t i) const { return i < text_.size() ? text_[i] : L'\0'; }
    std::size_t iDigits(std::size_t i) const;

    std::wstring_view text_;
    std::size_t at_ = 0;
    std::optional<ParseError> error_;
};

}  // namespace mf::engine
