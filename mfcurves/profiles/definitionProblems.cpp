// SPDX-License-Identifier: MIT

#include "mfcurves/profiles/definitionProblems.h"

#include <algorithm>
#include <string_view>

#include "mfcurves/profiles/definitionReading.h"
#include "mfcurves/profiles/mfProfile.h"

namespace mf::profiles {
namespace {

// The normal form of a file, with the line of each position.
class NormalText {
public:
    explicit NormalText(const std::string& fileText)
    {
        bool betweenQuotes = false;
        for (const std::string_view line : linesOf(fileText)) {
            lineStarts_.push_back(text_.size());
            appendNormalLine(std::string(line), betweenQuotes, text_);
        }
        quotesAreOpen_ = betweenQuotes;
        oddLine_ = firstLineOfOddQuotes();
        for (std::size_t i = 0; i < std::size(kKeywordUpgrades); ++i)
            upgraded_[i] = replaceAll(text_, kKeywordUpgrades[i].older, kKeywordUpgrades[i].current);
    }

    const std::string& text() const { return text_; }
    bool quotesAreOpen() const { return quotesAreOpen_; }
    int oddLine() const { return oddLine_; }

    // The line of the file, counted from 1, of a position in the text.
    int lineAt(std::size_t position) const
    {
        for (std::size_t i = std::size(kKeywordUpgrades); i-- > 0;) {
            const std::size_t growth = std::string_view(kKeywordUpgrades[i].current).size() -
                                       std::string_view(kKeywordUpgrades[i].older).size();
            const auto& places = upgraded_[i];
            const auto before = std::lower_bound(places.begin(), places.end(), position) - places.begin();
            position -= std::min(position, static_cast<std::size_t>(before) * growth);
        }
        // If several lines begin at one position, all but the last are empty.
        const auto next = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), position);
        return static_cast<int>(next - lineStarts_.begin());
    }

private:
    int firstLineOfOddQuotes() const
    {
        for (std::size_t i = 0; i < lineStarts_.size(); ++i) {
            const auto start = text_.begin() + static_cast<std::ptrdiff_t>(lineStarts_[i]);
            const std::size_t length =
                (i + 1 < lineStarts_.size() ? lineStarts_[i + 1] : text_.size()) - lineStarts_[i];
            if (std::count(start, start + static_cast<std::ptrdiff_t>(length), '"') % 2 != 0)
                return static_cast<int>(i) + 1;
        }
        return 0;
    }

    std::string text_;
    std::vector<std::size_t> lineStarts_;                             // before the keywords were upgraded
    std::vector<std::size_t> upgraded_[std::size(kKeywordUpgrades)];  // places in the text of that step
    bool quotesAreOpen_ = false;
    int oddLine_ = 0;
};

}  // namespace

std::vector<DefinitionProblem> definitionProblems(const std::string& fileText)
{
    const NormalText normal(fileText);
    const std::vector<std::string> definitions = cutDefinitions(normal.text());
    std::vector<DefinitionProblem> problems;
    if (normal.quotesAreOpen())
        problems.push_back({normal.oddLine(), "", "a double quote is not closed", false});
    if (definitions.empty())
        problems.push_back({1, "", "there is no endSegmentType, so the file holds no definition", true});

    WorkBudget budget;
    std::size_t position = 0;
    for (const std::string& definition : definitions) {
        budget.allowFor(definition.size());
        mfProfile_c record;
        if (const Outcome outcome = parseDefinition(definition, record, budget); !outcome)
            problems.push_back({normal.lineAt(position + outcome.problem().position), record.name,
                                outcome.problem().reason, true});
        position += definition.size();
    }
    if (!definitions.empty() && position < normal.text().size())
        problems.push_back(
            {normal.lineAt(position), "", "what follows the last endSegmentType is not read", false});
    return problems;
}

}  // namespace mf::profiles
