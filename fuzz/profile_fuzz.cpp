// SPDX-License-Identifier: MIT

// Any text may be refused as a file of profile definitions; none may crash, grow
// without bound or leave the reader between quotes unnoticed. The result of an
// accepted definition equals that of a slow and literal reduction, and its own
// definition text reads as the same. A text is refused exactly when
// definitionProblems has a reason.

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

#include "mfcurves/engine/limits.h"
#include "mfcurves/profiles/definitionProblems.h"
#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfSegmentTypeParser.h"

namespace {

// Longer results are only measured: a short text can grow to a megabyte, and the
// fuzzer would spend its time on that alone.
constexpr std::size_t kLongestCompared = 50'000;
constexpr std::size_t kLongestSlowResult = 100'000;  // the slow reduction stops above this

void require(bool holds)
{
    if (!holds)
        std::abort();
}

// The file that the reader opens, one for each process.
class InputFile {
public:
    InputFile()
        : path_(std::filesystem::temp_directory_path() / ("profile_fuzz." + std::to_string(::getpid())))
    {
    }
    ~InputFile()
    {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    const std::string& holding(const std::string& text)
    {
        std::ofstream(path_, std::ios::binary) << text;
        return path_;
    }

private:
    std::string path_;
};

void closeQuotes()
{
    mfSegmentTypeParser_c parser;
    if (parser.lowerOutsideQuotes('A') == 'A')
        parser.lowerOutsideQuotes('"');
}

void replaceSlowly(std::string& text, const std::string& pattern, const std::string& replacement)
{
    for (std::size_t at = text.find(pattern); at != std::string::npos && text.size() < kLongestSlowResult;
         at = text.find(pattern, at + replacement.size()))
        text.replace(at, pattern.size(), replacement);
}

// The result of an accepted definition, or a text of more than kLongestSlowResult.
std::string reduceSlowly(const std::string& definition)
{
    std::string body = definition.substr(definition.find(')') + 1);
    body.resize(body.find("endsegmenttype"));
    std::vector<std::string> pieces(1);
    for (const char c : body) {
        if (c != '=' && c != ';')
            pieces.back() += c;
        else if (!pieces.back().empty())
            pieces.emplace_back();
    }
    // The text after the last delimiter loses its last character.
    if (pieces.back().empty())
        pieces.pop_back();
    else
        pieces.back().pop_back();

    std::string result = pieces.back();
    for (std::size_t i = 0; i + 1 < pieces.size(); i += 2) {
        const std::string value = "(" + pieces[i + 1] + ")";
        for (std::size_t k = i + 3; k < pieces.size(); k += 2)
            replaceSlowly(pieces[k], pieces[i], value);
        replaceSlowly(result, pieces[i], value);
    }
    replaceSlowly(result, "return", "");
    return result;
}

void check(const mfProfile_c& record)
{
    require(!record.resultExpression.empty());
    require(record.resultExpression.size() <= mf::engine::kLongestText);
    std::string joined;
    for (const std::string& token : record.resultTokens)
        joined += token;
    require(joined + record.resultExpression.back() == record.resultExpression);

    if (record.resultExpression.size() >= kLongestCompared)
        return;
    const std::string slow = reduceSlowly(record.definitionText);
    if (slow.size() < kLongestSlowResult)
        require(slow == record.resultExpression);

    mfProfile_c again;
    std::string text = record.definitionText;
    require(mfSegmentTypeParser_c().parseDefinition(text, &again, false));
    require(again.name == record.name && again.y2 == record.y2);
    require(again.resultExpression == record.resultExpression);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t kLongestInput = 4096;  // longer texts find nothing new, slowly
    if (size > kLongestInput)
        return 0;
    const std::string text(reinterpret_cast<const char*>(data), size);

    static InputFile file;
    std::vector<mfProfile_c*> records;
    const bool accepted = mfSegmentTypeParser_c().readProfiles(file.holding(text), records);
    closeQuotes();
    for (mfProfile_c* record : records) {
        check(*record);
        delete record;
    }

    bool refused = false;
    for (const mf::profiles::DefinitionProblem& problem : mf::profiles::definitionProblems(text)) {
        require(problem.line >= 1);
        refused |= problem.refused;
    }
    require(accepted == !refused);
    return 0;
}
