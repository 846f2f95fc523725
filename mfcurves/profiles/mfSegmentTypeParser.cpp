// SPDX-License-Identifier: MIT

#include "mfcurves/profiles/mfSegmentTypeParser.h"

#include <fstream>
#include <istream>
#include <memory>

#include "mfcurves/profiles/builtInProfiles.h"
#include "mfcurves/profiles/definitionReading.h"
#include "mfcurves/profiles/mfProfile.h"

namespace {

using mf::profiles::WorkBudget;

// Whether the text read so far ends between double quotes. The state carries over from
// one text to the next: after an unbalanced quote, case is kept up to the next quote.
bool betweenQuotes = false;

}  // namespace

bool mfSegmentTypeParser_c::readProfiles(const std::string& fileName, std::vector<mfProfile_c*>& out)
{
    std::vector<std::string> definitions;
    if (fileName.empty()) {
        for (std::string& definition : mf::profiles::builtInProfiles()) {
            removeWhiteSpace(definition);
            for (char& c : definition)
                c = lowerOutsideQuotes(c);
            definitions.push_back(definition);
        }
    } else if (!readDefinitions(fileName, definitions)) {
        return false;
    }

    WorkBudget budget;
    for (const std::string& definition : definitions) {
        budget.allowFor(definition.size());
        auto record = std::make_unique<mfProfile_c>();
        if (!mf::profiles::parseDefinition(definition, *record, budget))
            return false;
        out.push_back(record.get());
        static_cast<void>(record.release());  // the caller owns it
    }
    return true;
}

bool mfSegmentTypeParser_c::parseDefinition(std::string& text, mfProfile_c* record, bool upgradeKeywords)
{
    if (upgradeKeywords)
        this->upgradeKeywords(text);
    WorkBudget budget;
    budget.allowFor(text.size());
    return record && mf::profiles::parseDefinition(text, *record, budget);
}

std::string mfSegmentTypeParser_c::baseProfileName(const std::string& displayName)
{
    std::string name = displayName.substr(0, displayName.find('('));
    const std::size_t first = name.find_first_not_of(' ');
    if (first == std::string::npos)
        return name;
    return name.substr(first, name.find_last_not_of(' ') + 1 - first);
}

bool mfSegmentTypeParser_c::readDefinitions(const std::string& fileName, std::vector<std::string>& out)
{
    out.clear();
    std::ifstream stream(fileName);
    if (!stream)
        return false;
    std::string text;
    if (!readNormalText(stream, text))
        return false;
    upgradeKeywords(text);
    out = mf::profiles::cutDefinitions(text);
    return !out.empty();
}

bool mfSegmentTypeParser_c::readNormalText(std::istream& stream, std::string& out)
{
    bool quoted = betweenQuotes;  // kept only if the text is read to its end
    for (std::string line; std::getline(stream, line);)
        mf::profiles::appendNormalLine(std::move(line), quoted, out);
    if (stream.bad())
        return false;
    betweenQuotes = quoted;
    return true;
}

bool mfSegmentTypeParser_c::upgradeKeywords(std::string& text)
{
    for (const mf::profiles::KeywordUpgrade& upgrade : mf::profiles::kKeywordUpgrades)
        replaceAll(text, upgrade.older, upgrade.current);
    return true;
}

bool mfSegmentTypeParser_c::splitDefinition(const std::string& definition, std::string& header,
                                            std::string& body)
{
    return static_cast<bool>(mf::profiles::splitDefinition(definition, header, body));
}

bool mfSegmentTypeParser_c::parseHeader(const std::string& header, mfProfile_c* record)
{
    return record && mf::profiles::parseHeader(header, *record);
}

bool mfSegmentTypeParser_c::parseBody(const std::string& body, mfProfile_c* record)
{
    WorkBudget budget;
    budget.allowFor(body.size());
    return record && mf::profiles::parseBody(body, *record, budget);
}

bool mfSegmentTypeParser_c::splitStatements(const std::string& body, std::vector<std::string>& variables,
                                            std::vector<std::string>& values)
{
    return static_cast<bool>(mf::profiles::splitStatements(body, variables, values));
}

bool mfSegmentTypeParser_c::expandStatements(const std::vector<std::string>& variables,
                                             const std::vector<std::string>& values, std::string& result)
{
    WorkBudget budget;
    return static_cast<bool>(mf::profiles::expandStatements(variables, values, result, budget));
}

bool mfSegmentTypeParser_c::replaceAll(std::string& text, const std::string& pattern,
                                       const std::string& replacement)
{
    mf::profiles::replaceAll(text, pattern, replacement);
    return true;
}

void mfSegmentTypeParser_c::splitTokens(const std::string& text, const std::string& delimiters, bool keep,
                                        std::vector<std::string>& out)
{
    mf::profiles::splitTokens(text, delimiters, keep, out);
}

void mfSegmentTypeParser_c::removeWhiteSpace(std::string& text)
{
    mf::profiles::removeWhiteSpace(text);
}

char mfSegmentTypeParser_c::lowerOutsideQuotes(char character)
{
    return mf::profiles::lowerOutsideQuotes(character, betweenQuotes);
}
