// SPDX-License-Identifier: MIT

#include "mfcurves/profiles/definitionReading.h"

#include <algorithm>
#include <string_view>

#include "mfcurves/engine/limits.h"
#include "mfcurves/profiles/mfProfile.h"

namespace mf::profiles {
namespace {

constexpr const char* kOpeningKeyword = "segmenttype";
constexpr const char* kHeaderDelimiters = "(,\")";
constexpr const char* kStatementDelimiters = "=;";
constexpr const char* kOperators = "()+-*/^%";
constexpr std::string_view kReturn = "return";
constexpr char kCommentMark = '\'';
constexpr std::size_t kHeaderPieces = 7;

constexpr const char* kTooLarge = "the expression outgrows the largest text that can be compiled";

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::size_t countOf(const std::string& text, const std::string& pattern)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(pattern); at != std::string::npos;
         at = text.find(pattern, at + pattern.size()))
        ++count;
    return count;
}

// Replaces like replaceAll, but computes the size of the new text first. False,
// changing nothing, when that is too large or exceeds the budget.
bool substitute(std::string& text, const std::string& name, const std::string& replacement,
                WorkBudget& budget)
{
    if (name.empty())
        return true;
    if (!budget.payForSearch(text, name))
        return false;
    const std::size_t count = countOf(text, name);
    const std::size_t size = text.size() - count * name.size() + count * replacement.size();
    // The text still starts with the word "return", which is removed at the end.
    if (size > engine::kLongestText + kReturn.size())
        return false;
    if (count == 0)
        return true;
    if (!budget.payForText(size))
        return false;
    replaceAll(text, name, replacement);
    return true;
}

// The start of the first statement that is not a variable, one "=" and an expression,
// or that is a return statement.
std::size_t faultyStatement(std::string_view body)
{
    std::size_t start = 0;
    while (true) {
        const std::size_t end = body.find(';', start);
        if (end == std::string_view::npos)
            return start;
        const std::string_view statement = body.substr(start, end - start);
        const std::size_t sign = statement.find('=');
        const bool assigns = !statement.starts_with(kReturn) && sign != std::string_view::npos && sign != 0 &&
                             sign + 1 != statement.size() &&
                             statement.find('=', sign + 1) == std::string_view::npos;
        if (!assigns)
            return start;
        start = end + 1;
    }
}

}  // namespace

// The classes of the locale "C". Narrow text is UTF-8, and no byte of a longer
// sequence is white space or a capital letter.
bool isWhiteSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

void removeWhiteSpace(std::string& text)
{
    std::erase_if(text, isWhiteSpace);
}

char lowerOutsideQuotes(char character, bool& betweenQuotes)
{
    if (character == '"')
        betweenQuotes = !betweenQuotes;
    return betweenQuotes ? character : lower(character);
}

void appendNormalLine(std::string line, bool& betweenQuotes, std::string& out)
{
    removeWhiteSpace(line);
    // Returns before the quotes are scanned: quotes in a comment do not count.
    if (line.starts_with(kCommentMark))
        return;
    for (const char c : line)
        out += lowerOutsideQuotes(c, betweenQuotes);
}

// Does not use a stream, which would treat a failed allocation as the end of the text.
std::vector<std::string_view> linesOf(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

std::string normalText(const std::string& text)
{
    bool betweenQuotes = false;
    std::string normal;
    for (const std::string_view line : linesOf(text))
        appendNormalLine(std::string(line), betweenQuotes, normal);
    for (const KeywordUpgrade& upgrade : kKeywordUpgrades)
        replaceAll(normal, upgrade.older, upgrade.current);
    return normal;
}

std::vector<std::size_t> replaceAll(std::string& text, const std::string& pattern,
                                    const std::string& replacement)
{
    std::vector<std::size_t> replaced;
    if (pattern.empty())
        return replaced;
    std::string result;
    std::size_t copied = 0;
    for (std::size_t at = text.find(pattern); at != std::string::npos; at = text.find(pattern, copied)) {
        result.append(text, copied, at - copied);
        replaced.push_back(result.size());
        result += replacement;
        copied = at + pattern.size();
    }
    if (!replaced.empty()) {
        result.append(text, copied);
        text = std::move(result);
    }
    return replaced;
}

// A piece extends from a character that is not a delimiter to the next delimiter. Two
// boundary rules hold at the end of the text: a piece after the last delimiter loses its
// last character, and delimiters at the end lose the last of them. Texts that end in ";"
// or ")" do not show them, but the list of tokens relies on them.
void splitTokens(const std::string& text, const std::string& delimiters, bool keep,
                 std::vector<std::string>& out)
{
    constexpr std::size_t kAbsent = std::string::npos;
    out.clear();
    std::size_t start = text.find_first_not_of(delimiters);
    std::size_t pos = text.find_first_of(delimiters);
    const std::size_t last = text.size() - 1;
    while (start != kAbsent || pos != kAbsent) {
        if (start != kAbsent && (pos == kAbsent || start < pos)) {
            const std::size_t end = pos == kAbsent ? last : pos;
            out.push_back(text.substr(start, end - start));
            start = pos == kAbsent ? kAbsent : text.find_first_not_of(delimiters, pos);
        }
        if (keep && pos != kAbsent) {
            const std::size_t end = start == kAbsent ? last : start;
            for (; pos < end; ++pos)
                out.emplace_back(1, text[pos]);
        }
        pos = start == kAbsent ? kAbsent : text.find_first_of(delimiters, start);
    }
}

std::vector<std::string> cutDefinitions(const std::string& text)
{
    const std::string_view terminator = kClosingKeyword;
    std::vector<std::string> definitions;
    std::size_t position = 0;
    for (std::size_t found = text.find(terminator); found != std::string::npos;
         found = text.find(terminator, position)) {
        const std::size_t end = found + terminator.size();
        definitions.push_back(text.substr(position, end - position));
        position = end;
    }
    return definitions;
}

Outcome splitDefinition(const std::string& definition, std::string& header, std::string& body)
{
    const std::size_t close = definition.find(')');
    if (close == std::string::npos)
        return Problem{0, "the header has no closing parenthesis"};
    header = definition.substr(0, close + 1);
    body = definition.substr(close + 1);
    if (body.empty())
        return Problem{close, "nothing follows the header"};
    if (const std::size_t end = body.find(kClosingKeyword); end != std::string::npos)
        body.resize(end);
    return {};
}

Outcome parseHeader(const std::string& header, mfProfile_c& record)
{
    std::vector<std::string> pieces;
    splitTokens(header, kHeaderDelimiters, false, pieces);
    if (pieces.size() != kHeaderPieces)
        return Problem{0, "the header does not consist of a name and five arguments"};
    if (pieces[0] != kOpeningKeyword)
        return Problem{0, "the definition does not begin with its keyword"};
    record.name = pieces[1];
    record.independentVariable = pieces[2];
    record.x1 = pieces[3];
    record.y1 = pieces[4];
    record.x2 = pieces[5];
    record.y2 = pieces[6];
    return {};
}

Outcome splitStatements(const std::string& body, std::vector<std::string>& variables,
                        std::vector<std::string>& values)
{
    std::vector<std::string> pieces;
    splitTokens(body, kStatementDelimiters, false, pieces);
    if (pieces.size() % 2 == 0)
        return Problem{faultyStatement(body), "a statement is not made of a variable, = and an expression"};
    for (std::size_t i = 0; i < pieces.size(); ++i)
        (i % 2 == 0 ? variables : values).push_back(std::move(pieces[i]));
    const std::string& last = variables.back();
    if (last.find(kReturn) == std::string::npos)
        return Problem{body.rfind(last), "the last statement is not a return statement"};
    return {};
}

// Replaces each variable by its value in all later values and in the return statement,
// in the order of the assignments. The result depends on that order.
Outcome expandStatements(const std::vector<std::string>& variables, std::vector<std::string> values,
                         std::string& result, WorkBudget& budget)
{
    if (variables.size() != values.size() + 1)
        return Problem{0, "a statement lacks its variable or its expression"};
    if (values.empty())
        return Problem{0, "nothing is assigned before the return statement"};
    result = variables.back();
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::string replacement = "(" + values[i] + ")";
        for (std::size_t k = i + 1; k < values.size(); ++k)
            if (!substitute(values[k], variables[i], replacement, budget))
                return Problem{0, kTooLarge};
        if (!substitute(result, variables[i], replacement, budget))
            return Problem{0, kTooLarge};
    }
    replaceAll(result, std::string(kReturn), "");
    return {};
}

Outcome parseBody(const std::string& body, mfProfile_c& record, WorkBudget& budget)
{
    if (body.empty())
        return Problem{0, "the definition has no statements"};
    std::vector<std::string> variables;
    std::vector<std::string> values;
    if (const Outcome outcome = splitStatements(body, variables, values); !outcome)
        return outcome;
    std::string result;
    if (const Outcome outcome = expandStatements(variables, std::move(values), result, budget); !outcome)
        return outcome;
    if (result.empty())
        return Problem{body.rfind(variables.back()), "the return statement names nothing"};
    if (result.size() > engine::kLongestText || !budget.payForTokens(result))
        return Problem{0, kTooLarge};
    record.resultExpression = std::move(result);
    splitTokens(record.resultExpression, kOperators, true, record.resultTokens);
    return {};
}

Outcome parseDefinition(const std::string& definition, mfProfile_c& record, WorkBudget& budget)
{
    record.definitionText = definition;
    std::string header;
    std::string body;
    if (const Outcome outcome = splitDefinition(definition, header, body); !outcome)
        return outcome;
    if (const Outcome outcome = parseHeader(header, record); !outcome)
        return outcome;
    if (const Outcome outcome = parseBody(body, record, budget); !outcome)
        return Problem{header.size() + outcome.problem().position, outcome.problem().reason};
    return {};
}

}  // namespace mf::profiles
