#include "mfcurves/interfaces/IMotionServices.h"
#include "mfcurves/interfaces/hostAnswers.h"
#include "mfcurves/motion/mfFunctionData.h"
#include "mfcurves/motion/mfTextConverter.h"
#include "mfcurves/platform/files.h"
#include "mfcurves/profiles/mfProfileFileParser.h"

// The start-up profiles of a function that carries lists of its own, for hosts
// without a profile manager.

namespace {

constexpr wchar_t kPathListSeparator = L';';
constexpr const wchar_t* kProfileFileName = L"profile.txt";

constexpr const char* kDefaultProfile =
    "Profile(\"Linear\",x,x1,y1,x2,y2)slope=(y2-y1)/(x2-x1);dy=slope*(x-x1);val=y1+dy;returnval;endProfile";

using List = void (mfProfileFileParser_c::*)(std::vector<std::string>&);

void append(mfProfileFileParser_c& parser, List list, std::vector<CString>& destination)
{
    std::vector<std::string> texts;
    (parser.*list)(texts);
    mfTextConverter_c().appendToCStringList(texts, destination);
}

}  // namespace

bool mfFunctionData_c::getDesignLibraryPath()
{
    IMotionServices_c* services = mf::interfaces::motionServices();
    if (!services)
        return false;
    CString text = services->getDesignLibraryPaths();
    if (text.IsEmpty())
        return false;
    for (int end = text.Find(kPathListSeparator); end >= 0; end = text.Find(kPathListSeparator)) {
        designLibraryPaths_.push_back(text.Left(end));
        text = text.Mid(end + 1);
    }
    designLibraryPaths_.push_back(text);
    return true;
}

bool mfFunctionData_c::setProfile()
{
    for (const CString& directory : designLibraryPaths_) {
        CString path = directory;
        path += static_cast<wchar_t>(mf::platform::kDirectorySeparator);
        path += kProfileFileName;
        mfProfileFileParser_c parser;
        if (parser.parseProfiles(mfTextConverter_c().toNarrow(path), false, "")) {
            iTakeProfiles(parser);
            return true;
        }
    }
    return false;
}

bool mfFunctionData_c::setDefaultProfile()
{
    mfProfileFileParser_c parser;
    parser.parseProfiles("", true, kDefaultProfile);
    iTakeProfiles(parser);
    return true;
}

void mfFunctionData_c::iTakeProfiles(mfProfileFileParser_c& parser)
{
    append(parser, &mfProfileFileParser_c::getNames, profileNames_);
    append(parser, &mfProfileFileParser_c::getResults, profileExprs_);
    append(parser, &mfProfileFileParser_c::getIndepVars, profileIndependentVars_);
    append(parser, &mfProfileFileParser_c::getX1, profileStartX_);
    append(parser, &mfProfileFileParser_c::getY1, profileStartY_);
    append(parser, &mfProfileFileParser_c::getX2, profileEndX_);
    append(parser, &mfProfileFileParser_c::getY2, profileEndY_);
    std::vector<std::vector<std::string>> tokenLists;
    parser.getResultTokens(tokenLists);
    for (const std::vector<std::string>& tokens : tokenLists)
        mfTextConverter_c().appendToCStringList(tokens, profileEleExprs_.emplace_back());
}
