// SPDX-License-Identifier: MIT

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "mfcurves/engine/limits.h"
#include "mfcurves/interfaces/hostAnswers.h"
#include "mfcurves/motion/mfTextConverter.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/numbers.h"
#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/segments/lawText.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"

namespace {

std::wstring sixDecimals(double number)
{
    return mf::platform::widen(mf::platform::sixDecimals(number));
}

// The record of the row's profile, null if not found. A row without a profile gets the
// key of the default one and keeps it.
mfProfile_c* profileOf(mfSegment_c& segment, mfProfileManager_c& manager)
{
    const mfProfileKey_c* key = segment.getProfileKey();
    if (key == nullptr || key->name.IsEmpty()) {
        CString displayName;
        manager.defaultDisplayName(displayName);
        segment.setProfileKey(manager.getProfileKeyFromDisplayName(displayName));
    }
    if (segment.getProfile() == nullptr)
        segment.setProfile(manager.findProfile(*segment.getProfileKey()));
    return segment.getProfile();
}

// Appends the tokens to `text`. False when it becomes longer than the engine allows.
bool join(const std::vector<CString>& tokens, std::wstring& text)
{
    for (const CString& token : tokens) {
        text += token.View();
        if (text.size() > mf::engine::kLongestText)
            return false;
    }
    return true;
}

}  // namespace

void mfFunctionSegments_c::parseExpression(int row)
{
    if (!iHolds(row))
        return;
    mfSegment_c& segment = iAt(row);
    const double startValue = row > 0 ? iAt(row - 1).getValue() : 0.0;
    const mf::segments::EndPoints numbers = {sixDecimals(segment.getStartX()), sixDecimals(startValue),
                                             sixDecimals(segment.getEndX()), sixDecimals(segment.getValue())};
    mfProfileManager_c* manager = mf::interfaces::profileManager();

    std::wstring expression;
    CString independentVariable;
    if (mfProfileManager_c::s_UseNewProfileManager()) {
        const mfProfile_c* profile = manager == nullptr ? nullptr : profileOf(segment, *manager);
        if (profile == nullptr || !mf::segments::enterNumbers(*profile, numbers, expression))
            return;
        independentVariable = mfTextConverter_c().toCString(profile->independentVariable);
        // Most rows have the variable of the previous row; they then share its text.
        if (row > 0 && iAt(row - 1).getProflieIndepVar() == independentVariable)
            independentVariable = iAt(row - 1).getProflieIndepVar();
    } else {
        const OlderProfile& profile = olderProfiles_[segment.getProfileName()];
        std::vector<CString> tokens = profile.tokens;
        replace(tokens, profile.x1, numbers[0].c_str());
        replace(tokens, profile.y1, numbers[1].c_str());
        replace(tokens, profile.x2, numbers[2].c_str());
        replace(tokens, profile.y2, numbers[3].c_str());
        if (!join(tokens, expression))
            return;
        independentVariable = profile.independentVariable;
    }
    expression.shrink_to_fit();
    const CString text(std::move(expression));
    segment.setProfileIndepVar(independentVariable);
    segment.setProfileExpr(text);
}

void mfFunctionSegments_c::initializeSegment(const std::vector<CString>& names,
                                             const std::vector<std::vector<CString>>& tokenLists,
                                             const std::vector<CString>& independentVariables,
                                             const std::vector<CString>& x1s, const std::vector<CString>& y1s,
                                             const std::vector<CString>& x2s, const std::vector<CString>& y2s)
{
    const std::size_t count = std::min({names.size(), tokenLists.size(), independentVariables.size(),
                                        x1s.size(), y1s.size(), x2s.size(), y2s.size()});
    for (std::size_t i = 0; i < count; ++i)
        olderProfiles_[names[i]] = {tokenLists[i], independentVariables[i], x1s[i], y1s[i], x2s[i], y2s[i]};
}

// The brackets keep the sign of a negative number apart and the precedence of a longer
// replacement.
// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is exported
void mfFunctionSegments_c::replace(std::vector<CString>& tokens, CString from, CString to)
{
    if (!from.IsEmpty())
        std::replace(tokens.begin(), tokens.end(), from, L"(" + to + L")");
}

std::vector<CString>& mfFunctionSegments_c::getProfileExpr(const CString& name)
{
    return olderProfiles_[name].tokens;
}
