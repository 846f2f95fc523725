// SPDX-License-Identifier: MIT

#include "mfcurves/profiles/mfProfileFileParser.h"

#include <string_view>

#include "mfcurves/engine/limits.h"
#include "mfcurves/profiles/definitionReading.h"

namespace {

constexpr std::string_view kOpeningKeyword = "Profile(";
constexpr std::string_view kClosingKeyword = "endProfile";
constexpr std::string_view kOperators = "()+-*/^%";

using mf::profiles::OlderProfile;

template <class Text>
void append(std::vector<Text>& out, const std::vector<OlderProfile>& profiles, Text OlderProfile::*text)
{
    for (const OlderProfile& profile : profiles)
        out.push_back(profile.*text);
}

// Splits a text from left to right into pieces that end at given characters.
class Pieces {
public:
    Pieces(const std::string& text, std::size_t position) : text_(text), position_(position) {}

    // Takes the text before the next `end`. False when the text has no further `end`.
    bool take(char end, std::string& piece)
    {
        const std::size_t found = text_.find(end, position_);
        if (found == std::string::npos)
            return false;
        piece = text_.substr(position_, found - position_);
        position_ = found + 1;
        return true;
    }

    std::size_t position() const { return position_; }

private:
    const std::string& text_;
    std::size_t position_;
};

}  // namespace

mfProfileFileParser_c::mfProfileFileParser_c() = default;

mfProfileFileParser_c::~mfProfileFileParser_c() = default;

bool mfProfileFileParser_c::parseProfiles(const std::string& fileName, bool isText, std::string text)
{
    if (!isText && !iReadFile(fileName, text))
        return false;
    budget_.allowFor(text.size());
    std::size_t position = 0;
    do {
        const std::size_t found = text.find(kClosingKeyword, position);
        if (found == std::string::npos)
            return false;
        const std::size_t end = found + kClosingKeyword.size();
        if (!iParseNext(text.substr(position, end - position)))
            return false;
        position = end;
    } while (position != text.size());
    return true;
}

bool mfProfileFileParser_c::iReadFile(const std::string& fileName, std::string& text)
{
    stream_.open(fileName);
    if (!stream_)
        return false;
    text.clear();
    readCompactText(text);
    stream_.close();
    return true;
}

bool mfProfileFileParser_c::iParseNext(const std::string& definition)
{
    const std::size_t index = profiles_.size();
    profiles_.emplace_back().definition = definition;
    const std::size_t body = parseHeader(index);
    if (body != std::string::npos && parseBody(body, index))
        return true;
    profiles_.pop_back();
    return false;
}

void mfProfileFileParser_c::readCompactText(std::string& out)
{
    for (char c; stream_.get(c);)
        if (!mf::profiles::isWhiteSpace(c))
            out += c;
}

std::size_t mfProfileFileParser_c::parseHeader(std::size_t index)
{
    if (index >= profiles_.size())
        return std::string::npos;
    OlderProfile& profile = profiles_[index];
    const std::string& definition = profile.definition;
    const std::size_t keyword = definition.find(kOpeningKeyword);
    if (keyword == std::string::npos)
        return std::string::npos;

    // The name is assumed to be between two quotes, which are not checked.
    Pieces pieces(definition, keyword + kOpeningKeyword.size() + 1);
    std::string name, indepVar, x1, y1, x2, y2;
    if (!pieces.take(',', name) || !pieces.take(',', indepVar) || !pieces.take(',', x1) ||
        !pieces.take(',', y1) || !pieces.take(',', x2) || !pieces.take(')', y2))
        return std::string::npos;
    if (name.empty())
        return std::string::npos;
    name.pop_back();
    profile.name = name;
    profile.independentVariable = indepVar;
    profile.x1 = x1;
    profile.y1 = y1;
    profile.x2 = x2;
    profile.y2 = y2;
    return pieces.position();
}

// The word "return" only marks the end of the assignments; the name after it is not
// read.
bool mfProfileFileParser_c::parseBody(std::size_t start, std::size_t index)
{
    if (index >= profiles_.size())
        return false;
    OlderProfile& profile = profiles_[index];
    const std::string& definition = profile.definition;
    const std::size_t end = definition.find("return", start);
    if (end == std::string::npos || end == start)
        return false;
    const std::size_t limit = end - 1;

    std::vector<std::string> variables;
    std::vector<std::string> values;
    std::vector<std::vector<std::string>> tokenLists;
    Pieces pieces(definition, start);
    do {
        std::string variable, value;
        if (!pieces.take('=', variable) || !pieces.take(';', value))
            return false;
        variables.push_back(variable);
        values.push_back(value);
        tokenize(tokenLists, value);
        if (!substituteTokens(variables, values, tokenLists, values.size() - 1))
            return false;
    } while (pieces.position() <= limit);

    const std::string& result = values.back();
    if (result.size() > mf::engine::kLongestText || !budget_.payForTokens(result))
        return false;
    profile.result = result;
    std::vector<std::vector<std::string>> resultTokens;
    tokenize(resultTokens, result);
    profile.resultTokens = std::move(resultTokens.front());
    return true;
}

void mfProfileFileParser_c::tokenize(std::vector<std::vector<std::string>>& output,
                                     const std::string& expression)
{
    std::vector<std::string> tokens;
    std::string gathered;
    for (const char c : expression) {
        if (kOperators.find(c) == std::string_view::npos) {
            gathered += c;
            continue;
        }
        if (!gathered.empty())
            tokens.push_back(std::move(gathered));
        gathered.clear();
        tokens.emplace_back(1, c);
    }
    if (!gathered.empty())
        tokens.push_back(std::move(gathered));
    output.push_back(std::move(tokens));
}

// A replacement stays one token, including its brackets, so a later variable does not
// match inside it. The size is checked before a token grows.
bool mfProfileFileParser_c::substituteTokens(const std::vector<std::string>& variables,
                                             std::vector<std::string>& values,
                                             std::vector<std::vector<std::string>>& tokenLists,
                                             std::size_t index)
{
    if (index == 0 || index >= variables.size() || index >= values.size() || index >= tokenLists.size())
        return index == 0;
    std::vector<std::string>& tokens = tokenLists[index];
    std::string& value = values[index];
    if (!budget_.payForComparisons(index, tokens.size(), value))
        return false;

    std::size_t size = value.size();
    bool replaced = false;
    for (std::size_t k = 0; k < index; ++k) {
        for (std::string& token : tokens) {
            if (token != variables[k])
                continue;
            size += 2 + values[k].size() - token.size();
            if (size > mf::engine::kLongestText || !budget_.payForToken(2 + values[k].size()))
                return false;
            token = "(" + values[k] + ")";
            replaced = true;
        }
    }
    if (!replaced)
        return true;
    value.clear();
    for (const std::string& token : tokens)
        value += token;
    return true;
}

void mfProfileFileParser_c::getNames(std::vector<std::string>& out)
{
    append(out, profiles_, &OlderProfile::name);
}

void mfProfileFileParser_c::getResults(std::vector<std::string>& out)
{
    append(out, profiles_, &OlderProfile::result);
}

void mfProfileFileParser_c::getIndepVars(std::vector<std::string>& out)
{
    append(out, profiles_, &OlderProfile::independentVariable);
}

void mfProfileFileParser_c::getX1(std::vector<std::string>& out)
{
    append(out, profiles_, &OlderProfile::x1);
}

void mfProfileFileParser_c::getY1(std::vector<std::string>& out)
{
    append(out, profiles_, &OlderProfile::y1);
}

void mfProfileFileParser_c::getX2(std::vector<std::string>& out)
{
    append(out, profiles_, &OlderProfile::x2);
}

void mfProfileFileParser_c::getY2(std::vector<std::string>& out)
{
    append(out, profiles_, &OlderProfile::y2);
}

void mfProfileFileParser_c::getResultTokens(std::vector<std::vector<std::string>>& out)
{
    append(out, profiles_, &OlderProfile::resultTokens);
}
