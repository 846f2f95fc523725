// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mfcurves/profiles/workBudget.h"

class mfProfile_c;

/// The steps of reading a definition in the current dialect. Each returns the reason
/// of a failure, which the reader of profiles reduces to false.
namespace mf::profiles {

constexpr const char* kClosingKeyword = "endsegmenttype";

/// The keywords of the older dialect in lower case and their replacements, in the
/// order of replacing.
struct KeywordUpgrade {
    const char* older;
    const char* current;
};
constexpr KeywordUpgrade kKeywordUpgrades[] = {{"endprofile", kClosingKeyword}, {"profile(", "segmenttype("}};

/// Why a definition does not parse.
struct Problem {
    std::size_t position;  ///< in the input text of the step
    const char* reason;
};

/// The result of a step: true for success, otherwise false with the problem.
class Outcome {
public:
    Outcome() = default;  ///< success
    Outcome(const Problem& problem) : problem_(problem) {}

    explicit operator bool() const { return !problem_; }
    const Problem& problem() const { return *problem_; }

private:
    std::optional<Problem> problem_;
};

bool isWhiteSpace(char c);
void removeWhiteSpace(std::string& text);

/// The character in lower case, or unchanged between double quotes; a quote
/// flips `betweenQuotes`.
char lowerOutsideQuotes(char character, bool& betweenQuotes);

/// Appends a line in normal form to `out`; appends nothing for a comment line.
void appendNormalLine(std::string line, bool& betweenQuotes, std::string& out);

/// The lines of a text, without their line feeds.
std::vector<std::string_view> linesOf(std::string_view text);

/// Converts a text of definitions to normal form with the current keywords, starting
/// outside quotes.
std::string normalText(const std::string& text);

/// Replaces every `pattern` from left to right, without searching the replacements.
/// Returns the positions of the replacements in the new text.
std::vector<std::size_t> replaceAll(std::string& text, const std::string& pattern,
                                    const std::string& replacement);

void splitTokens(const std::string& text, const std::string& delimiters, bool keep,
                 std::vector<std::string>& out);

/// The definitions of a text in normal form, each including its closing keyword.
/// Text after the last one is dropped.
std::vector<std::string> cutDefinitions(const std::string& text);

Outcome splitDefinition(const std::string& definition, std::string& header, std::string& body);
Outcome parseHeader(const std::string& header, mfProfile_c& record);
Outcome splitStatements(const std::string& body, std::vector<std::string>& variables,
                        std::vector<std::string>& values);
Outcome expandStatements(const std::vector<std::string>& variables, std::vector<std::string> values,
                         std::string& result, WorkBudget& budget);
Outcome parseBody(const std::string& body, mfProfile_c& record, WorkBudget& budget);

/// Fills `record` from a definition in normal form with the current keywords.
/// Several definitions may share one budget, to which the caller has added the length
/// of their text.
Outcome parseDefinition(const std::string& definition, mfProfile_c& record, WorkBudget& budget);

}  // namespace mf::profiles
