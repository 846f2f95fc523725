#include "mfcurves/curve/laws.h"

#include <algorithm>
#include <sstream>

#include "mfcurves/profiles/builtInProfiles.h"
#include "mfcurves/profiles/definitionReading.h"
#include "mfcurves/profiles/mfSegmentTypeParser.h"

namespace mf::curve {
namespace {

std::string normalForm(const std::string& text)
{
    std::istringstream stream(text);
    bool betweenQuotes = false;
    std::string normal;
    for (std::string line; std::getline(stream, line);)
        profiles::appendNormalLine(line, betweenQuotes, normal);
    for (const auto& [older, current] : profiles::kKeywordUpgrades)
        profiles::replaceAll(normal, older, current);
    return normal;
}

std::string parse(const std::string& text, mfProfile_c& record)
{
    const std::string definition = normalForm(text);
    profiles::ReadingBudget budget;
    budget.allowFor(definition.size());
    const profiles::Failure failure = profiles::parseDefinition(definition, record, budget);
    return failure ? failure->reason : "";
}

}  // namespace

std::string lawNamed(const std::string& name, const std::vector<LawText>& laws, Law& law)
{
    const std::string base = mfSegmentTypeParser_c().baseProfileName(name);
    const auto own = std::find_if(laws.begin(), laws.end(), [&](const LawText& candidate) {
        return candidate.name == name || candidate.name == base;
    });
    if (own != laws.end()) {
        law.text = *own;
        const std::string reason = parse(own->text, law.record);
        return reason.empty() ? "" : "the law \"" + own->name + "\" cannot be read: " + reason;
    }
    for (const char* text : profiles::kBuiltInDefinitions) {
        mfProfile_c record;
        parse(text, record);
        if (record.name == base) {
            law = {record, {base, text}, true};
            return "";
        }
    }
    return "there is no law \"" + name + '"';
}

}  // namespace mf::curve
