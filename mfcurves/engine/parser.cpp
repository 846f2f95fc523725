// SPDX-License-Identifier: MIT

#include "mfcurves/engine/parser.h"

#include <vector>

#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/lexer.h"
#include "mfcurves/engine/limits.h"
#include "mfcurves/engine/term.h"
#include "mfcurves/engine/values.h"
#include "mfcurves/platform/encoding.h"

namespace mf::engine {
namespace {

std::string quoted(std::wstring_view text)
{
    std::string quotation = "`";  // appended to, as gcc 12 warns of an overlap in the sum of all three
    return quotation.append(platform::toUtf8(text)).append("`");
}

std::string arity(const Function& row)
{
    const auto plural = [](int n) { return std::to_string(n) + (n == 1 ? " argument" : " arguments"); };
    if (row.most == kAnyNumber)
        return "at least " + plural(row.fewest);
    return plural(row.fewest);
}

struct NamedConstant {
    std::wstring_view name;
    double value;
};

constexpr NamedConstant kConstants[] = {{L"pi", kPi}, {L"rtod", 180.0 / kPi}, {L"dtor", kPi / 180.0}};

// One function for each rule of the grammar. After an error every function returns
// at once; the returned term is then node 0 of the graph and has no meaning.
class Parser {
public:
    Parser(std::wstring_view text, const std::optional<std::wstring_view>& variableName)
        : lexer_(text), variableName_(variableName)
    {
        advance();
    }

    // text := expression end
    std::variant<ParsedText, ParseError> wholeText() &&
    {
        if (at(TokenKind::End))
            return ParseError{token_.offset, "There is nothing here", "an expression"};
        const Term root = expression();
        if (!stopped() && !at(TokenKind::End))
            failAfterOperand();
        if (error_)
            return *std::move(error_);
        parsed_.root = root.id();
        return std::move(parsed_);
    }

private:
    // expression := term { ("+" | "-") term }
    Term expression()
    {
        Term left = term();
        while (!stopped() && (at(TokenKind::Plus) || at(TokenKind::Minus))) {
            const bool minus = at(TokenKind::Minus);
            advance();
            const Term right = term();
            left = minus ? left - right : left + right;
        }
        return left;
    }

    // term := signed { ("*" | "/" | "%") signed }
    Term term()
    {
        Term left = signedPower();
        while (!stopped()) {
            const TokenKind kind = token_.kind;
            if (kind != TokenKind::Times && kind != TokenKind::Over && kind != TokenKind::Remainder)
                break;
            advance();
            const Term right = signedPower();
            if (kind == TokenKind::Times)
                left = left * right;
            else if (kind == TokenKind::Over)
                left = left / right;
            else
                left = call(FunctionId::Mod, left, right);
        }
        return left;
    }

    // signed := { "+" | "-" } power
    Term signedPower()
    {
        const bool minus = signs();
        const Term value = powerOf();
        return minus ? -value : value;
    }

    // power := primary [ "^" signed ]
    //
    // A chain a ^ b ^ -c groups to the right. It is read into a list and folded from
    // its end, so that a long chain needs no recursion.
    Term powerOf()
    {
        Term base = primary();
        const std::size_t first = operands_.size();
        while (!stopped() && at(TokenKind::Power)) {
            operands_.push_back(base);
            advance();
            minusSigns_.push_back(signs() ? 1 : 0);
            base = primary();
        }
        while (operands_.size() > first && !stopped()) {
            base = power(operands_.back(), minusSigns_.back() != 0 ? -base : base);
            operands_.pop_back();
            minusSigns_.pop_back();
        }
        return base;
    }

    // primary := number | name | result | name "(" arguments ")" | "(" expression ")"
    Term primary()
    {
        const Token token = token_;
        switch (token.kind) {
            case TokenKind::Number:
                advance();
                return maker_.constant(token.number);
            case TokenKind::Name:
            case TokenKind::Result:
                advance();
                return named(token);
            case TokenKind::Open: {
                if (!enter(token))
                    return nothing_;
                advance();
                const Term inner = expression();
                leave(token);
                return inner;
            }
            default:
                failAtOperand();
                return nothing_;
        }
    }

    // The name of the variable hides a constant or function of the same name.
    Term named(const Token& token)
    {
        if (variableName_ && sameName(token.text, *variableName_)) {
            if (!variable_)
                variable_ = maker_.variable(parsed_.parameters.numberOf(token.text));
            return *variable_;
        }
        if (token.kind == TokenKind::Name) {
            for (const NamedConstant& known : kConstants) {
                if (sameName(token.text, known.name))
                    return maker_.constant(known.value);
            }
            if (const auto rows = functionsNamed(token.text); !rows.empty())
                return functionCall(token, rows);
            if (at(TokenKind::Open))
                return failAtUnknownFunction(token);
        }
        if (variableName_)
            return failAtOtherName(token);
        return maker_.variable(parsed_.parameters.numberOf(token.text));
    }

    // arguments := expression { "," expression }; after the first argument of `if`
    // the comma may be a ":".
    Term functionCall(const Token& name, std::span<const Function> rows)
    {
        if (!at(TokenKind::Open))
            return failWithoutArguments(name);
        const Token open = token_;
        if (!enter(open))
            return nothing_;
        advance();
        const std::size_t first = operands_.size();
        const bool takesColon = rows.front().id == FunctionId::If;
        do {
            if (operands_.size() > first)
                advance();
            operands_.push_back(expression());
        } while (!stopped() && (at(TokenKind::Comma) ||
                                (at(TokenKind::Colon) && takesColon && operands_.size() == first + 1)));
        leave(open);
        const Term result = stopped() ? nothing_ : called(name, rows, std::span(operands_).subspan(first));
        operands_.erase(operands_.begin() + static_cast<std::ptrdiff_t>(first), operands_.end());
        return result;
    }

    // Calls the first of the rows with this name that takes so many arguments. If no row does,
    // the last one gives the error message.
    Term called(const Token& name, std::span<const Function> rows, std::span<const Term> arguments)
    {
        const int count = static_cast<int>(arguments.size());
        while (rows.size() > 1 && count > rows.front().most)
            rows = rows.subspan(1);
        const Function& row = rows.front();
        if (count < row.fewest || count > row.most)
            return failAtArguments(name, row, count);
        if (row.expand != nullptr)
            return row.expand(arguments);
        return count == 1 ? call(row.id, arguments[0]) : call(row.id, arguments[0], arguments[1]);
    }

    // { "+" | "-" }. Returns whether the number of minus signs is odd.
    bool signs()
    {
        bool minus = false;
        for (; at(TokenKind::Plus) || at(TokenKind::Minus); advance())
            minus ^= at(TokenKind::Minus);
        return minus;
    }

    bool at(TokenKind kind) const { return token_.kind == kind; }

    bool stopped()
    {
        if (parsed_.graph.full())
            failAsTooLarge();
        return error_.has_value();
    }

    void advance()
    {
        before_ = token_.text;
        token_ = lexer_.next();
    }

    bool enter(const Token& open)
    {
        if (++nesting_ > kDeepestNesting)
            failAtNesting(open);
        return nesting_ <= kDeepestNesting;
    }

    void leave(const Token& open)
    {
        --nesting_;
        if (stopped())
            return;
        if (at(TokenKind::Close))
            advance();
        else if (at(TokenKind::End))
            failAtEnd(open);
        else
            failAfterOperand();
    }

    // Errors are reported by functions of their own, which keeps the others short.

    [[gnu::cold, gnu::noinline]] void fail(std::size_t offset, std::string message, std::string expected)
    {
        if (!error_)
            error_ = ParseError{offset, std::move(message), std::move(expected)};
    }

    // Reports the error of the lexer if the current token is Bad.
    [[gnu::cold, gnu::noinline]] bool failAtBadToken()
    {
        if (!at(TokenKind::Bad))
            return false;
        error_ = lexer_.error();
        return true;
    }

    [[gnu::cold, gnu::noinline]] void failAtOperand()
    {
        if (failAtBadToken())
            return;
        const std::string after = before_.empty() ? "" : " after " + quoted(before_);
        if (at(TokenKind::End))
            fail(token_.offset, "The text ends" + after + ", where an operand is missing",
                 "an operand" + after);
        else
            fail(token_.offset, "An operand is missing before " + quoted(token_.text), "an operand" + after);
    }

    [[gnu::cold, gnu::noinline]] void failAfterOperand()
    {
        if (failAtBadToken())
            return;
        const std::string after = quoted(before_);
        if (at(TokenKind::Close))
            fail(token_.offset, "This `)` closes no parenthesis", "an operator or the end");
        else if (at(TokenKind::Comma) || at(TokenKind::Colon))
            fail(token_.offset, quoted(token_.text) + " is outside the arguments of a function",
                 "an operator or the end");
        else
            fail(token_.offset, "An operator is missing between " + after + " and " + quoted(token_.text),
                 "an operator after " + after);
    }

    [[gnu::cold, gnu::noinline]] void failAsTooLarge()
    {
        fail(0, "The expression is too large", "at most " + std::to_string(kMostNodes) + " parts");
    }

    [[gnu::cold, gnu::noinline]] void failAtNesting(const Token& open)
    {
        fail(open.offset, "Parentheses are nested too deep",
             "at most " + std::to_string(kDeepestNesting) + " levels");
    }

    [[gnu::cold, gnu::noinline]] void failAtEnd(const Token& open)
    {
        fail(token_.offset,
             "The parenthesis opened at character " + std::to_string(open.offset + 1) + " is not closed",
             "`)`");
    }

    [[gnu::cold, gnu::noinline]] Term failWithoutArguments(const Token& name)
    {
        fail(token_.offset, "The function " + quoted(name.text) + " is called without arguments", "`(`");
        return nothing_;
    }

    [[gnu::cold, gnu::noinline]] Term failAtArguments(const Token& name, const Function& row, int count)
    {
        fail(name.offset, quoted(name.text) + " takes " + arity(row) + ", got " + std::to_string(count),
             quoted(name.text) + " with (" + std::string(row.arguments) + ")");
        return nothing_;
    }

    [[gnu::cold, gnu::noinline]] Term failAtUnknownFunction(const Token& token)
    {
        const std::string_view closest = closestFunctionName(token.text);
        fail(token.offset, "There is no function " + quoted(token.text),
             closest.empty() ? "a function" : "perhaps `" + std::string(closest) + "`");
        return nothing_;
    }

    [[gnu::cold, gnu::noinline]] Term failAtOtherName(const Token& token)
    {
        if (variableName_->empty())
            fail(token.offset, quoted(token.text) + " is not known: only constants are allowed here",
                 "a number");
        else
            fail(token.offset, quoted(token.text) + " is not the variable", quoted(*variableName_));
        return nothing_;
    }

    Lexer lexer_;
    Token token_;               // the current one
    std::wstring_view before_;  // the text of the previous one
    const std::optional<std::wstring_view>& variableName_;
    ParsedText parsed_;
    TermMaker maker_{parsed_.graph, Folding::KeepText};
    const Term nothing_ = maker_.constant(0.0);  // node 0, whatever the text begins with
    std::optional<Term> variable_;               // once the text has used it
    std::optional<ParseError> error_;
    int nesting_ = 0;
    std::vector<Term> operands_;    // of the calls and chains of powers being read
    std::vector<char> minusSigns_;  // of the exponents in the chains of powers: 1 for a minus
};

}  // namespace

std::variant<ParsedText, ParseError> parseText(std::wstring_view text,
                                               const std::optional<std::wstring_view>& variableName)
{
    if (text.size() > kLongestText)
        return ParseError{kLongestText, "The text is too long",
                          "at most " + std::to_string(kLongestText) + " characters"};
    return Parser(text, variableName).wholeText();
}

}  // namespace mf::engine
