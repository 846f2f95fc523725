#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mfcurves/motion/mfFunctionData.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using mf::test::FakeHost;
using mf::test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using Names = std::vector<CString>;

std::string law(const std::string& name)
{
    return "Profile(\"" + name +
           "\", t, ta, ya, tb, yb)\n  v = t*ta;\n  w = (v+yb);\n  return w;\nendProfile\n";
}

// The eight lists of start-up profiles of a function.
struct Lists {
    Names names, expressions, variables, startX, startY, endX, endY;
    std::vector<Names> tokens;

    explicit Lists(const mfFunctionData_c& function)
    {
        function.getProfileName(names);
        function.getProfileExpr(expressions);
        function.getProfileIndependentVar(variables);
        function.getStartX(startX);
        function.getStartY(startY);
        function.getEndX(endX);
        function.getEndY(endY);
        function.getProfileEleExpr(tokens);
    }
    bool parallel(std::size_t count) const
    {
        for (const Names* list : {&names, &expressions, &variables, &startX, &startY, &endX, &endY})
            if (list->size() != count)
                return false;
        return tokens.size() == count;
    }
};

class Startup : public testing::Test {
protected:
    void setFolders(std::initializer_list<const char*> names)
    {
        std::string text;
        for (const char* name : names)
            text += (text.empty() ? "" : ";") + (folder_ / name).string();
        host_.services.designLibraryPaths = text.c_str();
    }
    void writeLibrary(const std::string& directory, const std::string& text)
    {
        std::filesystem::create_directory(folder_ / directory);
        folder_.write(directory + "/profile.txt", text);
    }

    TemporaryFolder folder_;
    FakeHost host_;
    mfFunctionData_c function_;
};

TEST_F(Startup, DefaultProfileIsLinear)
{
    EXPECT_TRUE(function_.setDefaultProfile());
    const Lists lists(function_);
    EXPECT_TRUE(lists.parallel(1));
    EXPECT_THAT(lists.names, ElementsAre(CString(L"Linear")));
    EXPECT_THAT(lists.expressions, ElementsAre(CString(L"y1+(((y2-y1)/(x2-x1))*(x-x1))")));
    EXPECT_THAT(lists.variables, ElementsAre(CString(L"x")));
    EXPECT_THAT(lists.startX, ElementsAre(CString(L"x1")));
    EXPECT_THAT(lists.startY, ElementsAre(CString(L"y1")));
    EXPECT_THAT(lists.endX, ElementsAre(CString(L"x2")));
    EXPECT_THAT(lists.endY, ElementsAre(CString(L"y2")));
    EXPECT_EQ(lists.tokens[0].size(), 23u);
    EXPECT_THAT(host_.calls, IsEmpty());
}

TEST_F(Startup, DefaultProfileTwiceStandsTwiceInEachList)
{
    EXPECT_TRUE(function_.setDefaultProfile());
    EXPECT_TRUE(function_.setDefaultProfile());
    const Lists lists(function_);
    EXPECT_TRUE(lists.parallel(2));
    EXPECT_THAT(lists.names, ElementsAre(CString(L"Linear"), CString(L"Linear")));
}

TEST_F(Startup, HostWithoutServicesOrPathsHasNoDesignLibrary)
{
    EXPECT_FALSE(function_.getDesignLibraryPath());
    host_.servicesAnswer = nullptr;
    EXPECT_FALSE(function_.getDesignLibraryPath());
    QelSession_c::setMotionFunctionContext(nullptr);
    EXPECT_FALSE(function_.getDesignLibraryPath());
    EXPECT_FALSE(function_.setProfile());
    EXPECT_TRUE(Lists(function_).parallel(0));
}

TEST_F(Startup, OneFolderWithoutSeparator)
{
    writeLibrary("a", law("A"));
    setFolders({"a"});
    EXPECT_TRUE(function_.getDesignLibraryPath());
    EXPECT_TRUE(function_.setProfile());
    const Lists lists(function_);
    EXPECT_TRUE(lists.parallel(1));
    EXPECT_THAT(lists.names, ElementsAre(CString(L"A")));
    EXPECT_THAT(lists.expressions, ElementsAre(CString(L"((t*ta)+yb)")));
    EXPECT_THAT(lists.variables, ElementsAre(CString(L"t")));
    EXPECT_THAT(lists.startX, ElementsAre(CString(L"ta")));
    EXPECT_THAT(lists.startY, ElementsAre(CString(L"ya")));
    EXPECT_THAT(lists.endX, ElementsAre(CString(L"tb")));
    EXPECT_THAT(lists.endY, ElementsAre(CString(L"yb")));
    EXPECT_THAT(lists.tokens[0],
                ElementsAre(CString(L"("), CString(L"("), CString(L"t"), CString(L"*"), CString(L"ta"),
                            CString(L")"), CString(L"+"), CString(L"yb"), CString(L")")));
}

TEST_F(Startup, OnlyTheFirstReadableFileIsRead)
{
    writeLibrary("b", law("B1") + law("B2"));
    writeLibrary("c", law("C"));
    setFolders({"a", "b", "c"});
    EXPECT_TRUE(function_.getDesignLibraryPath());
    EXPECT_TRUE(function_.setProfile());
    EXPECT_THAT(Lists(function_).names, ElementsAre(CString(L"B1"), CString(L"B2")));
}

TEST_F(Startup, FileThatDoesNotParseLeavesNothingAndTheNextIsTried)
{
    writeLibrary("a", law("A") + "' no comments here");
    writeLibrary("b", "");
    writeLibrary("c", law("C"));
    setFolders({"a", "b", "c"});
    EXPECT_TRUE(function_.getDesignLibraryPath());
    EXPECT_TRUE(function_.setProfile());
    EXPECT_THAT(Lists(function_).names, ElementsAre(CString(L"C")));
    EXPECT_TRUE(Lists(function_).parallel(1));
}

TEST_F(Startup, FolderInThePlaceOfTheFileIsPassedOver)
{
    std::filesystem::create_directories(folder_ / "a/profile.txt");
    writeLibrary("b", law("B"));
    setFolders({"a", "b"});
    EXPECT_TRUE(function_.getDesignLibraryPath());
    EXPECT_TRUE(function_.setProfile());
    EXPECT_THAT(Lists(function_).names, ElementsAre(CString(L"B")));
}

// An empty entry means the file beside the root, which is not there.
TEST_F(Startup, EmptyPiecesAreEntriesLikeAnyOther)
{
    writeLibrary("a", law("A"));
    setFolders({"a"});
    const CString folder = host_.services.designLibraryPaths;
    for (const CString& text : {L";;" + folder, folder + L";;", CString(L"none;;") + folder}) {
        mfFunctionData_c function;
        host_.services.designLibraryPaths = text;
        EXPECT_TRUE(function.getDesignLibraryPath());
        EXPECT_TRUE(function.setProfile());
        EXPECT_THAT(Lists(function).names, ElementsAre(CString(L"A")));
    }
    for (const wchar_t* text : {L";", L";;", L"none;"}) {
        mfFunctionData_c function;
        host_.services.designLibraryPaths = text;
        EXPECT_TRUE(function.getDesignLibraryPath());
        EXPECT_FALSE(function.setProfile());
    }
}

TEST_F(Startup, EntryThatEndsInASeparatorIsPassedOn)
{
    writeLibrary("a", law("A"));
    host_.services.designLibraryPaths = ((folder_ / "a").string() + "/").c_str();
    EXPECT_TRUE(function_.getDesignLibraryPath());
    EXPECT_TRUE(function_.setProfile());
    EXPECT_THAT(Lists(function_).names, ElementsAre(CString(L"A")));
}

TEST_F(Startup, WithoutEntriesNothingIsRead)
{
    writeLibrary("a", law("A"));
    setFolders({"a"});
    EXPECT_FALSE(function_.setProfile());
    EXPECT_TRUE(Lists(function_).parallel(0));
}

TEST_F(Startup, EveryCallAppends)
{
    writeLibrary("a", law("A"));
    setFolders({"a"});
    EXPECT_TRUE(function_.setDefaultProfile());
    EXPECT_TRUE(function_.getDesignLibraryPath());
    EXPECT_TRUE(function_.setProfile());
    EXPECT_TRUE(function_.setProfile());
    EXPECT_TRUE(function_.setDefaultProfile());
    const Lists lists(function_);
    EXPECT_THAT(lists.names,
                ElementsAre(CString(L"Linear"), CString(L"A"), CString(L"A"), CString(L"Linear")));
    EXPECT_TRUE(lists.parallel(4));

    // Entries of an earlier call come first.
    writeLibrary("b", law("B"));
    setFolders({"b"});
    EXPECT_TRUE(function_.getDesignLibraryPath());
    EXPECT_TRUE(function_.setProfile());
    EXPECT_EQ(Lists(function_).names.back(), L"A");
    std::filesystem::remove_all(folder_ / "a");
    EXPECT_TRUE(function_.setProfile());
    EXPECT_EQ(Lists(function_).names.back(), L"B");
}

TEST_F(Startup, FileOfTheNamedLinearStandsBeforeTheDefault)
{
    writeLibrary("a", law("Linear"));
    setFolders({"a"});
    EXPECT_TRUE(function_.getDesignLibraryPath());
    EXPECT_TRUE(function_.setProfile());
    EXPECT_TRUE(function_.setDefaultProfile());
    EXPECT_THAT(Lists(function_).expressions,
                ElementsAre(CString(L"((t*ta)+yb)"), CString(L"y1+(((y2-y1)/(x2-x1))*(x-x1))")));
}

}  // namespace
