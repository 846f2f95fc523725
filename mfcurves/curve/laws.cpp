// SPDX-License-Identifier: MIT

#include "mfcurves/curve/laws.h"

#include <algorithm>
#include <utility>

#include "mfcurves/curve/LawFinder.h"
#include "mfcurves/curve/problems.h"

namespace mf {
namespace {

void append(std::vector<Law>& all, const curve::Laws& laws, const std::string& source)
{
    for (const auto& law : laws)
        all.push_back({law->text.name, source, law->text.text});
}

}  // namespace

std::vector<Law> laws(const std::vector<std::string>& folders)
{
    std::vector<Law> all;
    std::vector<Problem> problems;
    for (const std::string& folder : folders)
        append(all, curve::lawsOfFolder(folder, problems), curve::definitionFileIn(folder));
    if (curve::hasError(problems))
        throw curve::errorOf(std::move(problems));
    append(all, curve::builtInLaws(), "built-in");
    append(all, curve::shippedLaws(), "shipped");
    return all;
}

}  // namespace mf
