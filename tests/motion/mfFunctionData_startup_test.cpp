// SPDX-License-Identifier: MIT

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mfcurves/interfaces/CGeneralException.h"
#include "mfcurves/motion/mfFunctionData.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
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
        host_.services.designLibraryPaths = folder_.list(names).c_str();
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

TEST_F(Startup, DefaultProfileTwiceIsTwiceInEachList)
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

// An empty entry means a file in the root folder, which does not exist.
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

// The name of the file is appended to each entry unchanged, even to an empty one.
TEST_F(Startup, EveryEntryIsTriedInOrder)
{
    host_.services.designLibraryPaths = L"none;;no where/;";
    EXPECT_TRUE(function_.getDesignLibraryPath());
    std::vector<std::wstring> tried;
    mf::platform::setNarrowEncoder([&](const wchar_t* text, int, char* buffer, int, std::uint32_t&) {
        tried.emplace_back(text);
        buffer[0] = '\0';
        return 1;
    });
    EXPECT_FALSE(function_.setProfile());
    mf::platform::setNarrowEncoder({});
    EXPECT_THAT(tried,
                ElementsAre(L"none/profile.txt", L"/profile.txt", L"no where//profile.txt", L"/profile.txt"));
}

TEST_F(Startup, EntryThatEndsInASeparatorIsPassedOn)
{
    writeLibrary("a", law("A"));
    host_.services.designLibraryPaths = ((folder_ / "a").string() + "/").c_str();
    EXPECT_TRUE(function_.getDesignLibraryPath());
    EXPECT_TRUE(function_.setProfile());
    EXPECT_THAT(Lists(function_).names, ElementsAre(CString(L"A")));
}

TEST_F(Startup, FailureOfTheNarrowEncodingIsPassedOn)
{
    setFolders({"a"});
    EXPECT_TRUE(function_.getDesignLibraryPath());
    mf::platform::setNarrowEncoder([](const wchar_t*, int, char*, int, std::uint32_t& error) {
        error = 5;
        return 0;
    });
    EXPECT_THROW(function_.setProfile(), CGeneralException);
    EXPECT_TRUE(function_.setDefaultProfile());  // needs no path
    mf::platform::setNarrowEncoder({});
    EXPECT_TRUE(Lists(function_).parallel(1));
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

TEST_F(Startup, FileOfTheNamedLinearComesBeforeTheDefault)
{
    writeLibrary("a", law("Linear"));
    setFolders({"a"});
    EXPECT_TRUE(function_.getDesignLibraryPath());
    EXPECT_TRUE(function_.setProfile());
    EXPECT_TRUE(function_.setDefaultProfile());
    EXPECT_THAT(Lists(function_).expressions,
                ElementsAre(CString(L"((t*ta)+yb)"), CString(L"y1+(((y2-y1)/(x2-x1))*(x-x1))")));
}

TEST_F(Startup, EveryPrefixOfAFileIsReadOrPassedOver)
{
    const std::string text =
        "Profile(\"A\",x,x1,y1,x2,y2)y=x;return y;endProfile\n"
        "Profile(\"B\",x,x1,y1,x2,y2)y=x;return y;endProfile";
    setFolders({"a"});
    for (std::size_t length = 0; length <= text.size(); ++length) {
        writeLibrary("a", text.substr(0, length));
        mfFunctionData_c function;
        EXPECT_TRUE(function.getDesignLibraryPath());
        const bool whole = function.setProfile();
        const Lists lists(function);
        EXPECT_EQ(whole, lists.names.size() > 0) << length;
        EXPECT_TRUE(lists.parallel(lists.names.size())) << length;
    }
    mfFunctionData_c function;
    EXPECT_TRUE(function.getDesignLibraryPath());
    EXPECT_TRUE(function.setProfile());
    EXPECT_THAT(Lists(function).names, ElementsAre(CString(L"A"), CString(L"B")));
}

#ifdef MFCURVES_TEST_OLDER

// A table from (0, 0) over (2, 10) to (6, 10) and back to (8, -4), all rows of one
// profile.
mfFunctionSegments_c& threeRows(mfFunctionData_c& function, const wchar_t* profile)
{
    function.setFunctionType(mf::FunctionType_Segments);
    function.setMotorDriveType(mf::MotorDriveType_Displacment);
    auto& table = dynamic_cast<mfFunctionSegments_c&>(*function.getFunctionSegments());
    table.addSegment(new mfSegment_c(0.0, 0.0, 0.0, profile));
    table.addSegment(new mfSegment_c(0.0, 2.0, 10.0, profile));
    table.addSegment(new mfSegment_c(2.0, 6.0, 10.0, profile));
    table.addSegment(new mfSegment_c(6.0, 8.0, -4.0, profile));
    for (int row = 1; row < table.getSegmentCount(); ++row) {
        table.parseExpression(row);
        table.calculateValue(row);  // only sampled rows have derivatives
    }
    return table;
}

TEST_F(Startup, InitializeFillsTheListsInOrder)
{
    writeLibrary("a", law("A"));
    setFolders({"none", "a"});
    EXPECT_TRUE(function_.initialize());
    EXPECT_THAT(Lists(function_).names, ElementsAre(CString(L"A"), CString(L"Linear")));
    EXPECT_TRUE(Lists(function_).parallel(2));
}

TEST_F(Startup, InitializeWithoutADesignLibraryKnowsLinear)
{
    EXPECT_TRUE(function_.initialize());
    EXPECT_THAT(Lists(function_).names, ElementsAre(CString(L"Linear")));
}

TEST_F(Startup, CurveOfTheDefaultProfileEvaluates)
{
    EXPECT_TRUE(function_.initialize());
    threeRows(function_, L"Linear");
    const double points[][3] = {{0.5, 2.5, 5.0},  {1.75, 8.75, 5.0}, {3.0, 10.0, 0.0},
                                {6.5, 6.5, -7.0}, {7.5, -0.5, -7.0}, {8.0, -4.0, -7.0}};
    for (const auto& [x, value, slope] : points) {
        EXPECT_NEAR(function_.evaluate(x, 0), value, 1e-12) << x;
        EXPECT_NEAR(function_.evaluate(x, 1), slope, 1e-12) << x;
        EXPECT_EQ(function_.evaluate(x, 2), 0.0) << x;
        EXPECT_EQ(function_.evaluate(x, 3), 0.0) << x;
    }
}

TEST_F(Startup, CurveOfALibraryProfileEvaluates)
{
    writeLibrary(
        "a", "Profile(\"Rise\",x,x1,y1,x2,y2) u=(x-x1)/(x2-x1); val=y1+(y2-y1)*u^2; return val; endProfile");
    setFolders({"a"});
    EXPECT_TRUE(function_.initialize());
    threeRows(function_, L"Rise");
    EXPECT_NEAR(function_.evaluate(1.0, 0), 2.5, 1e-12);
    EXPECT_NEAR(function_.evaluate(1.0, 1), 5.0, 1e-12);
    EXPECT_NEAR(function_.evaluate(7.0, 0), 6.5, 1e-12);
    EXPECT_NEAR(function_.evaluate(7.0, 2), -7.0, 1e-12);
}

// A negative number is inserted in brackets.
TEST_F(Startup, TokensTakeNumbersInBrackets)
{
    EXPECT_TRUE(function_.initialize());
    mfFunctionSegments_c& table = threeRows(function_, L"Linear");
    mfSegment_c* row = nullptr;
    table.selectSegment(3, row);
    EXPECT_EQ(row->getProfileExpr(),
              CString(L"(10.000000)+((((-4.000000)-(10.000000))/((8.000000)-(6.000000)))*(x-(6.000000)))"));
}

// The segments got the lists once; profiles that are loaded later are not passed to them.
TEST_F(Startup, ProfilesLoadedAfterInitializeDoNotReachTheSegments)
{
    EXPECT_TRUE(function_.initialize());
    writeLibrary("a", "Profile(\"Rise\",x,x1,y1,x2,y2) val=y2; return val; endProfile");
    setFolders({"a"});
    EXPECT_TRUE(function_.getDesignLibraryPath());
    EXPECT_TRUE(function_.setProfile());
    threeRows(function_, L"Rise");
    EXPECT_EQ(function_.evaluate(1.0, 0), 0.0);
}

#else

TEST_F(Startup, InitializeLeavesTheListsEmpty)
{
    writeLibrary("a", law("A"));
    setFolders({"a"});
    EXPECT_TRUE(function_.initialize());
    EXPECT_TRUE(Lists(function_).parallel(0));
    EXPECT_FALSE(function_.setProfile());  // no folder was stored either
}

#endif

}  // namespace
