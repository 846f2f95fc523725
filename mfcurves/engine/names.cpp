// SPDX-License-Identifier: MIT

#include "mfcurves/engine/names.h"

#include <algorithm>

#include "mfcurves/platform/locale.h"

namespace mf::engine {
namespace {

bool isResult(std::wstring_view name)
{
    return name.starts_with(L'{');
}

// Equal names have the same folded form.
std::wstring folded(std::wstring_view name)
{
    std::wstring result(name);
    if (!isResult(name))
        std::ranges::transform(result, result.begin(), platform::foldCase);
    return result;
}

}  // namespace

bool sameName(std::wstring_view a, std::wstring_view b)
{
    if (a == b)
        return true;
    return a.size() == b.size() && !isResult(a) &&
           std::ranges::equal(a, b, {}, platform::foldCase, platform::foldCase);
}

std::uint32_t ParameterNames::numberOf(std::wstring_view name)
{
    const auto next = static_cast<std::uint32_t>(names_.size());
    const auto [place, isNew] = numbers_.try_emplace(folded(name), next);
    if (isNew)
        names_.emplace_back(name);
    return place->second;
}

}  // namespace mf::engine
