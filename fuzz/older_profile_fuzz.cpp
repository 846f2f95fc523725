// SPDX-License-Identifier: MIT

// The reader of the older dialect may refuse any text; none may crash it, run without
// end or leave lists of different lengths. An accepted text consists of definitions
// that end in the closing keyword, and the tokens of each make up its result.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "mfcurves/engine/limits.h"
#include "mfcurves/profiles/mfProfileFileParser.h"

namespace {

using Strings = std::vector<std::string>;

void require(bool holds)
{
    if (!holds)
        std::abort();
}

std::size_t occurrences(const std::string& text, const std::string& pattern)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(pattern); at != std::string::npos;
         at = text.find(pattern, at + pattern.size()))
        ++count;
    return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t kLongestInput = 4096;  // longer texts find nothing new, slowly
    if (size > kLongestInput)
        return 0;
    const std::string text(reinterpret_cast<const char*>(data), size);

    mfProfileFileParser_c parser;
    const bool accepted = parser.parseProfiles("", true, text);
    Strings names, results, indepVars, x1, y1, x2, y2;
    parser.getNames(names);
    parser.getResults(results);
    parser.getIndepVars(indepVars);
    parser.getX1(x1);
    parser.getY1(y1);
    parser.getX2(x2);
    parser.getY2(y2);
    std::vector<Strings> tokens;
    parser.getResultTokens(tokens);
    const std::size_t count = names.size();
    for (const Strings* list : {&results, &indepVars, &x1, &y1, &x2, &y2})
        require(list->size() == count);
    require(tokens.size() == count);

    const std::size_t keywords = occurrences(text, "endProfile");
    require(accepted ? count == keywords && text.ends_with("endProfile") : count <= keywords);
    for (std::size_t i = 0; i < count; ++i) {
        require(results[i].size() <= mf::engine::kLongestText);
        std::string joined;
        for (const std::string& token : tokens[i])
            joined += token;
        require(joined == results[i]);
    }

    // The definitions read before a failure are those of the text before it.
    if (accepted || count == 0)
        return 0;
    std::size_t end = 0;
    for (std::size_t i = 0; i < count; ++i)
        end = text.find("endProfile", end) + std::string("endProfile").size();
    mfProfileFileParser_c shorter;
    require(shorter.parseProfiles("", true, text.substr(0, end)));
    Strings shorterResults;
    shorter.getResults(shorterResults);
    require(shorterResults == results);
    return 0;
}
