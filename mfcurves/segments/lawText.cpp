// SPDX-License-Identifier: MIT

#include "mfcurves/segments/lawText.h"

#include <cstddef>
#include <string_view>

#include "mfcurves/engine/limits.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/profiles/mfProfile.h"

namespace mf::segments {
namespace {

// Replaces every `name` in `text` by `number`. False when the text would become longer
// than the engine allows. `result` is a scratch buffer.
bool substitute(std::wstring& text, std::wstring_view name, std::wstring_view number, std::wstring& result)
{
    if (name.empty())
        return true;
    result.clear();
    result.reserve(2 * text.size());
    std::size_t rest = 0;
    for (std::size_t at; (at = text.find(name, rest)) != std::wstring::npos; rest = at + name.size()) {
        result.append(text, rest, at - rest).append(number);
        if (result.size() > engine::kLongestText)
            return false;
    }
    result.append(text, rest);
    text.swap(result);
    return text.size() <= engine::kLongestText;
}

}  // namespace

// Each name is replaced in the result of the previous one, so a later name is also
// replaced inside earlier replacements.
bool enterNumbers(const mfProfile_c& profile, const EndPoints& numbers, std::wstring& text)
{
    text = platform::widen(profile.resultExpression.c_str());
    std::wstring room;
    const std::string* const names[] = {&profile.x1, &profile.y1, &profile.x2, &profile.y2};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (!substitute(text, platform::widen(names[i]->c_str()), numbers[i], room))
            return false;
    }
    return true;
}

}  // namespace mf::segments
