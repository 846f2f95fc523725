// SPDX-License-Identifier: MIT

#include "mfcurves/curve/LawFinder.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <system_error>
#include <utility>

#include "mfcurves/curve/problems.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/files.h"
#include "mfcurves/platform/locale.h"
#include "mfcurves/platform/nearestNames.h"
#include "mfcurves/profiles/builtInProfiles.h"
#include "mfcurves/profiles/definitionProblems.h"
#include "mfcurves/profiles/definitionReading.h"
#include "mfcurves/profiles/mfSegmentTypeParser.h"
#include "mfcurves/profiles/shippedProfiles.h"

namespace mf::curve {
namespace {

constexpr const char* kDefinitionFile = "SegmentTypes.txt";
constexpr const char* kDefaultSource = "(Default)";
constexpr const char* kUserSource = "(User)";

// "(Default)" of "Cubic (Default)"; empty for a name without a source.
std::string sourceOf(const std::string& name)
{
    const std::size_t open = name.find('(');
    return open == std::string::npos ? "" : name.substr(open);
}

std::wstring folded(const std::string& name)
{
    std::wstring wide = platform::widen(name);
    std::transform(wide.begin(), wide.end(), wide.begin(), platform::foldCase);
    return wide;
}

// Laws from a text that is known to parse.
Laws lawsOf(const std::string& text, bool areBuiltIn)
{
    Laws laws;
    profiles::WorkBudget budget;
    for (const std::string& definition : profiles::cutDefinitions(profiles::normalText(text))) {
        budget.allowFor(definition.size());
        auto law = std::make_shared<Law>();
        profiles::parseDefinition(definition, law->record, budget);
        law->text = {law->record.name, definition};
        law->isBuiltIn = areBuiltIn;
        laws.push_back(std::move(law));
    }
    return laws;
}

std::shared_ptr<const Law> lawNamed(const std::string& base, const Laws& laws)
{
    const std::wstring wanted = folded(base);
    const auto found = std::find_if(laws.begin(), laws.end(),
                                    [&](const auto& law) { return folded(law->record.name) == wanted; });
    return found == laws.end() ? nullptr : *found;
}

// Why the text of one law does not parse; empty if it does.
std::string parse(const std::string& text, mfProfile_c& record)
{
    const std::vector<std::string> definitions = profiles::cutDefinitions(profiles::normalText(text));
    if (definitions.size() > 1)
        return "its text holds " + std::to_string(definitions.size()) + " definitions, and one is expected";
    profiles::WorkBudget budget;
    budget.allowFor(text.size());
    if (!definitions.empty() && profiles::parseDefinition(definitions.front(), record, budget))
        return "";
    for (const profiles::DefinitionProblem& problem : profiles::definitionProblems(text)) {
        if (problem.refused)
            return "line " + std::to_string(problem.line) + ": " + problem.reason;
    }
    return "it is too long";
}

std::string listed(const std::vector<std::string>& names)
{
    std::string list;
    for (std::size_t i = 0; i < names.size(); ++i)
        list.append(i == 0 ? "" : i + 1 == names.size() ? " and " : ", ").append(quoted(names[i]));
    return list;
}

Problem problemOf(const std::string& path, const profiles::DefinitionProblem& problem)
{
    const std::string law = problem.profile.empty() ? "" : "law \"" + problem.profile + "\": ";
    return {problem.refused ? Problem::Level::Error : Problem::Level::Warning,
            path + ':' + std::to_string(problem.line), law + problem.reason};
}

}  // namespace

const Laws& builtInLaws()
{
    static const Laws laws = [] {
        Laws made;
        for (const char* definition : profiles::kBuiltInDefinitions)
            made.push_back(lawsOf(definition, true).front());
        return made;
    }();
    return laws;
}

const Laws& shippedLaws()
{
    static const Laws laws = [] {
        Laws made = lawsOf(profiles::kShippedDefinitions, false);
        std::erase_if(made, [](const auto& law) { return lawNamed(law->record.name, builtInLaws()); });
        return made;
    }();
    return laws;
}

std::string definitionFileIn(const std::string& folder)
{
    return folder + platform::kDirectorySeparator + kDefinitionFile;
}

Laws lawsOfFolder(const std::string& folder, std::vector<Problem>& problems)
{
    const std::string path = definitionFileIn(folder);
    errno = 0;
    const std::optional<std::string> text = platform::readFile(platform::widen(path).c_str());
    if (!text) {
        const int reason = errno;
        problems.push_back({Problem::Level::Error, path,
                            "the file cannot be read: " + std::generic_category().message(reason)});
        return {};
    }
    bool isRefused = false;
    for (const profiles::DefinitionProblem& problem : profiles::definitionProblems(*text)) {
        problems.push_back(problemOf(path, problem));
        isRefused = isRefused || problem.refused;
    }
    return isRefused ? Laws() : lawsOf(*text, false);
}

std::string withoutSource(const std::string& name)
{
    return mfSegmentTypeParser_c().baseProfileName(name);
}

bool isBuiltIn(const std::string& name, std::string_view definitionText)
{
    const std::string source = sourceOf(name);
    if (!source.empty() && source != kDefaultSource)
        return false;
    const std::string base = withoutSource(name);
    return std::any_of(builtInLaws().begin(), builtInLaws().end(), [&](const auto& law) {
        return law->text.name == base && law->text.text == definitionText;
    });
}

LawFinder::LawFinder(const std::vector<LawText>& own, Laws library) : own_(own), library_(std::move(library))
{
    for (const LawText& law : own_) {
        // A name that is given twice refers to neither law.
        if (const auto [place, isNew] = byName_.emplace(law.name, &law); !isNew)
            place->second = nullptr;
        byLooseName_.emplace(folded(law.name), &law);
        if (sourceOf(law.name) != kDefaultSource)
            byLooseName_.emplace(folded(withoutSource(law.name)), &law);
    }
}

const LawFinder::Found& LawFinder::named(const std::string& name)
{
    auto place = found_.find(name);
    if (place == found_.end())
        place = found_.emplace(name, iFind(name)).first;
    return place->second;
}

LawFinder::Found LawFinder::iFind(const std::string& name) const
{
    if (const auto exact = byName_.find(name); exact != byName_.end() && exact->second == nullptr)
        return {nullptr, "the law " + quoted(name) + " is given twice", true};
    if (const LawText* own = iOwn(name)) {
        auto law = std::make_shared<Law>();
        law->text = *own;
        const std::string reason = parse(own->text, law->record);
        if (!reason.empty())
            return {nullptr, "the law " + quoted(own->name) + " cannot be read: " + reason, true};
        return {std::move(law), "", true};
    }
    if (std::shared_ptr<const Law> other = iOther(name))
        return {std::move(other), "", false};
    return {nullptr, iNothingNamed(name), false};
}

const LawText* LawFinder::iOwn(const std::string& name) const
{
    if (const auto exact = byName_.find(name); exact != byName_.end())
        return exact->second;
    const bool isDefault = sourceOf(name) == kDefaultSource;
    for (const std::string& loose : {name, isDefault ? name : withoutSource(name)}) {
        if (const auto found = byLooseName_.find(folded(loose)); found != byLooseName_.end())
            return found->second;
    }
    return nullptr;
}

std::shared_ptr<const Law> LawFinder::iOther(const std::string& name) const
{
    const std::string base = withoutSource(name);
    const std::string source = sourceOf(name);
    if (source == kDefaultSource)
        return lawNamed(base, builtInLaws());
    if (!source.empty() && source != kUserSource)
        return nullptr;
    for (const Laws* laws : {&library_, &builtInLaws(), &shippedLaws()}) {
        if (std::shared_ptr<const Law> law = lawNamed(base, *laws))
            return law;
    }
    return nullptr;
}

std::string LawFinder::iNothingNamed(const std::string& name) const
{
    constexpr std::size_t kMostOwnNames = 100;  // a message is for a person, and comparing takes time
    std::vector<std::string> known;
    for (std::size_t i = 0; i < std::min(own_.size(), kMostOwnNames); ++i)
        known.push_back(own_[i].name);
    for (const Laws* laws : {&library_, &builtInLaws(), &shippedLaws()})
        for (const auto& law : *laws)
            known.push_back(law->record.name);
    const std::string message = name.empty() ? "no law is named" : "there is no law " + quoted(name);
    const std::vector<std::string> near = platform::nearestNames(withoutSource(name), known);
    if (near.empty())
        return message + "; known are " + listed(known);
    return message + (near.size() == 1 ? "; the nearest name is " : "; the nearest names are ") +
           listed(near);
}

std::vector<LawText> LawFinder::borrowedTexts() const
{
    std::vector<LawText> texts;
    for (const auto& entry : found_) {
        const Found& found = entry.second;
        const auto isThere = [&](const LawText& text) { return text.name == found.law->text.name; };
        if (found.law && !found.isOwn && !found.law->isBuiltIn &&
            std::none_of(texts.begin(), texts.end(), isThere))
            texts.push_back(found.law->text);
    }
    return texts;
}

}  // namespace mf::curve
