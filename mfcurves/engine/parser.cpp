#include "mfcurves/engine/parser.h"

#include <vector>

#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/lexer.h"
#include "mfcurves/engine/limits.h"
#include "mfcurves/engine/simplification.h"
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

// One function for each rule of the grammar. After an error every function
// returns at once; the node it answers then, the first of the graph, means nothing.
class Parser {
public:
    Parser(std::wstring_view text, const std::optional<std::wstring_view>& variableName, Graph& graph,
           ParameterNames& parameters)
        : lexer_(text), variableName_(variableName), graph_(graph), parameters_(parameters)
    {
        constant(graph_, 0.0);  // node 0 exists, whatever the text begins with
        advance();
    }

    // text := expression end
    NodeId wholeText()
    {
        if (at(TokenKind::End)) {
            fail(token_.offset, "There is nothing here", "an expression");
            return {};
        }
        const NodeId root = expression();
        if (!stopped() && !at(TokenKind::End))
            failAfterOperand();
        return root;
    }

    std::optional<ParseError> takeError() { return std::move(error_); }

private:
    // expression := term { ("+" | "-") term }
    NodeId expression()
    {
        NodeId left = term();
        while (!stopped() && (at(TokenKind::Plus) || at(TokenKind::Minus))) {
            const bool minus = at(TokenKind::Minus);
            advance();
            const NodeId right = term();
            left = minus ? difference(graph_, left, right) : sum(graph_, left, right);
        }
        return left;
    }

    // term := signed { ("*" | "/" | "%") signed }
    NodeId term()
    {
        NodeId left = signedPower();
        while (!stopped()) {
            const TokenKind kind = token_.kind;
            if (kind != TokenKind::Times && kind != TokenKind::Over && kind != TokenKind::Remainder)
                break;
            advance();
            const NodeId right = signedPower();
            if (kind == TokenKind::Times)
                left = product(graph_, left, right);
            else if (kind == TokenKind::Over)
                left = quotient(graph_, left, right);
            else
                left = call(graph_, FunctionId::Mod, left, right);
        }
        return left;
    }

    // signed := { "+" | "-" } power
    NodeId signedPower()
    {
        const bool minus = signs();
        const NodeId value = powerOf();
        return minus ? negative(graph_, value) : value;
    }

    // power := primary [ "^" signed ]
    //
    // A row a ^ b ^ -c groups to the right. It is read into a list and folded from
    // its end, so that a long row needs no recursion.
    NodeId powerOf()
    {
        NodeId base = primary();
        const std::size_t first = operands_.size();
        while (!stopped() && at(TokenKind::Power)) {
            operands_.push_back(base);
            advance();
            minusSigns_.push_back(signs());
            base = primary();
        }
        while (operands_.size() > first && !stopped()) {
            base = power(graph_, operands_.back(), minusSigns_.back() ? negative(graph_, base) : base);
            operands_.pop_back();
            minusSigns_.pop_back();
        }
        return base;
    }

    // primary := number | name | result | name "(" arguments ")" | "(" expression ")"
    NodeId primary()
    {
        const Token token = token_;
        switch (token.kind) {
            case TokenKind::Number:
                advance();
                return constant(graph_, token.number);
            case TokenKind::Name:
            case TokenKind::Result:
                advance();
                return named(token);
            case TokenKind::Open: {
                if (!enter(token))
                    return {};
                advance();
                const NodeId inner = expression();
                leave(token);
                return inner;
            }
            default:
                failAtOperand();
                return {};
        }
    }

    // The given name stands before a constant or function of that name.
    NodeId named(const Token& token)
    {
        if (variableName_ && sameName(token.text, *variableName_))
            return variable(graph_, parameters_.numberOf(token.text));
        if (token.kind == TokenKind::Name) {
            if (findFunction(token.text, 1) != nullptr)
                return functionCall(token);
            for (const NamedConstant& known : kConstants) {
                if (sameName(token.text, known.name))
                    return constant(graph_, known.value);
            }
            if (at(TokenKind::Open))
                return failAtUnknownFunction(token);
        }
        if (variableName_)
            return failAtOtherName(token);
        return variable(graph_, parameters_.numberOf(token.text));
    }

    // arguments := expression { "," expression }; after the first argument of `if`
    // a ":" may stand for the comma.
    NodeId functionCall(const Token& name)
    {
        if (!at(TokenKind::Open)) {
            fail(token_.offset, "The function " + quoted(name.text) + " is called without arguments", "`(`");
            return {};
        }
        const Token open = token_;
        if (!enter(open))
            return {};
        advance();
        const std::size_t first = operands_.size();
        const bool takesColon = function(FunctionId::If).name.size() == name.text.size() &&
                                findFunction(name.text, 1)->id == FunctionId::If;
        do {
            if (operands_.size() > first)
                advance();
            operands_.push_back(expression());
        } while (!stopped() && (at(TokenKind::Comma) ||
                                (at(TokenKind::Colon) && takesColon && operands_.size() == first + 1)));
        leave(open);
        const NodeId result = stopped() ? NodeId{} : called(name, std::span(operands_).subspan(first));
        operands_.resize(first);
        return result;
    }

    NodeId called(const Token& name, std::span<const NodeId> arguments)
    {
        const int count = static_cast<int>(arguments.size());
        const Function& row = *findFunction(name.text, count);
        if (count < row.fewest || count > row.most) {
            fail(name.offset, quoted(name.text) + " takes " + arity(row) + ", got " + std::to_string(count),
                 quoted(name.text) + " with (" + std::string(row.arguments) + ")");
            return {};
        }
        if (row.expand != nullptr)
            return row.expand(graph_, arguments);
        return count == 1 ? call(graph_, row.id, arguments[0])
                          : call(graph_, row.id, arguments[0], arguments[1]);
    }

    // { "+" | "-" }: true when the minus signs are odd in number.
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
        if (graph_.full())
            fail(0, "The expression is too large", "at most " + std::to_string(kMostNodes) + " parts");
        return error_.has_value();
    }

    void advance()
    {
        before_ = token_;
        token_ = lexer_.next();
    }

    bool enter(const Token& open)
    {
        if (++nesting_ <= kDeepestNesting)
            return true;
        fail(open.offset, "Parentheses stand too deep in one another",
             "at most " + std::to_string(kDeepestNesting) + " levels");
        return false;
    }

    void leave(const Token& open)
    {
        --nesting_;
        if (stopped())
            return;
        if (at(TokenKind::Close))
            advance();
        else if (at(TokenKind::End))
            fail(token_.offset,
                 "The parenthesis opened at character " + std::to_string(open.offset + 1) + " is not closed",
                 "`)`");
        else
            failAfterOperand();
    }

    void fail(std::size_t offset, std::string message, std::string expected)
    {
        if (!error_)
            error_ = ParseError{offset, std::move(message), std::move(expected)};
    }

    // The error of a token that no rule takes, when it is no token at all.
    bool failAtBadToken()
    {
        if (!at(TokenKind::Bad))
            return false;
        error_ = lexer_.error();
        return true;
    }

    void failAtOperand()
    {
        if (failAtBadToken())
            return;
        const std::string after = before_.text.empty() ? "" : " after " + quoted(before_.text);
        if (at(TokenKind::End))
            fail(token_.offset, "The text ends" + after + ", where an operand is missing",
                 "an operand" + after);
        else
            fail(token_.offset, "An operand is missing before " + quoted(token_.text), "an operand" + after);
    }

    void failAfterOperand()
    {
        if (failAtBadToken())
            return;
        const std::string after = quoted(before_.text);
        if (at(TokenKind::Close))
            fail(token_.offset, "This `)` closes no parenthesis", "an operator or the end");
        else if (at(TokenKind::Comma) || at(TokenKind::Colon))
            fail(token_.offset, quoted(token_.text) + " stands outside the arguments of a function",
                 "an operator or the end");
        else
            fail(token_.offset, "An operator is missing between " + after + " and " + quoted(token_.text),
                 "an operator after " + after);
    }

    NodeId failAtUnknownFunction(const Token& token)
    {
        const std::string_view closest = closestFunctionName(token.text);
        fail(token.offset, "There is no function " + quoted(token.text),
             closest.empty() ? "a function" : "perhaps `" + std::string(closest) + "`");
        return {};
    }

    NodeId failAtOtherName(const Token& token)
    {
        if (variableName_->empty())
            fail(token.offset, quoted(token.text) + " is not known: only constants are allowed here",
                 "a number");
        else
            fail(token.offset, quoted(token.text) + " is not the variable", quoted(*variableName_));
        return {};
    }

    Lexer lexer_;
    Token token_;   // the one looked at
    Token before_;  // the one before it
    const std::optional<std::wstring_view>& variableName_;
    Graph& graph_;
    ParameterNames& parameters_;
    std::optional<ParseError> error_;
    int nesting_ = 0;
    std::vector<NodeId> operands_;  // of the calls and rows of powers being read
    std::vector<bool> minusSigns_;  // before the exponents of the rows of powers
};

}  // namespace

std::variant<NodeId, ParseError> parseText(std::wstring_view text,
                                           const std::optional<std::wstring_view>& variableName, Graph& graph,
                                           ParameterNames& parameters)
{
    if (text.size() > kLongestText)
        return ParseError{kLongestText, "The text is too long",
                          "at most " + std::to_string(kLongestText) + " characters"};
    Parser parser(text, variableName, graph, parameters);
    const NodeId root = parser.wholeText();
    if (auto error = parser.takeError())
        return *std::move(error);
    return root;
}

}  // namespace mf::engine
