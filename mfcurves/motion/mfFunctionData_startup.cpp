// SPDX-License-Identifier: MIT

#include "mfcurves/interfaces/IMotionServices.h"
#include "mfcurves/interfaces/hostAnswers.h"
#include "mfcurves/motion/mfFunctionData.h"
#include "mfcurves/motion/mfTextConverter.h"
#include "mfcurves/profiles/OlderProfile.h"
#include "mfcurves/profiles/designLibrary.h"
#include "mfcurves/profiles/mfProfileFileParser.h"

// The start-up profiles, which a function holds itself for hosts that do not use a
// profile manager.

namespace {

using mf::profiles::OlderProfile;

constexpr const wchar_t* kProfileFileName = L"profile.txt";

constexpr const char* kDefaultProfile =
    "Profile(\"Linear\",x,x1,y1,x2,y2)slope=(y2-y1)/(x2-x1);dy=slope*(x-x1);val=y1+dy;returnval;endProfile";

void append(std::vector<OlderProfile>& profiles, const mfProfileFileParser_c& parser)
{
    profiles.insert(profiles.end(), parser.profiles().begin(), parser.profiles().end());
}

// Appends one text of each profile to the caller's list.
void append(std::vector<CString>& list, const std::vector<OlderProfile>& profiles,
            std::string OlderProfile::*text)
{
    for (const OlderProfile& profile : profiles)
        list.push_back(mfTextConverter_c().toCString(profile.*text));
}

}  // namespace

bool mfFunctionData_c::getDesignLibraryPath()
{
    IMotionServices_c* services = mf::interfaces::motionServices();
    if (!services)
        return false;
    const CString paths = services->getDesignLibraryPaths();
    if (paths.IsEmpty())
        return false;
    const std::vector<CString> folders = mf::profiles::designLibraryFolders(paths);
    designLibraryPaths_.insert(designLibraryPaths_.end(), folders.begin(), folders.end());
    return true;
}

bool mfFunctionData_c::setProfile()
{
    for (const CString& folder : designLibraryPaths_) {
        const CString path = mf::profiles::fileInFolder(folder, kProfileFileName);
        mfProfileFileParser_c parser;
        if (parser.parseProfiles(mfTextConverter_c().toNarrow(path), false, "")) {
            append(startUpProfiles_, parser);
            return true;
        }
    }
    return false;
}

bool mfFunctionData_c::setDefaultProfile()
{
    mfProfileFileParser_c parser;
    parser.parseProfiles("", true, kDefaultProfile);
    append(startUpProfiles_, parser);
    return true;
}

void mfFunctionData_c::getProfileName(std::vector<CString>& names) const
{
    append(names, startUpProfiles_, &OlderProfile::name);
}

void mfFunctionData_c::getProfileExpr(std::vector<CString>& expressions) const
{
    append(expressions, startUpProfiles_, &OlderProfile::result);
}

void mfFunctionData_c::getProfileIndependentVar(std::vector<CString>& names) const
{
    append(names, startUpProfiles_, &OlderProfile::independentVariable);
}

void mfFunctionData_c::getStartX(std::vector<CString>& names) const
{
    append(names, startUpProfiles_, &OlderProfile::x1);
}

void mfFunctionData_c::getStartY(std::vector<CString>& names) const
{
    append(names, startUpProfiles_, &OlderProfile::y1);
}

void mfFunctionData_c::getEndX(std::vector<CString>& names) const
{
    append(names, startUpProfiles_, &OlderProfile::x2);
}

void mfFunctionData_c::getEndY(std::vector<CString>& names) const
{
    append(names, startUpProfiles_, &OlderProfile::y2);
}

void mfFunctionData_c::getProfileEleExpr(std::vector<std::vector<CString>>& tokens) const
{
    for (const OlderProfile& profile : startUpProfiles_)
        mfTextConverter_c().appendToCStringList(profile.resultTokens, tokens.emplace_back());
}
