// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "mfcurves/profiles/mfProfile.h"
#include "readCurveFixture.h"

// Tables of segments, and the profiles that a document defines.

namespace mf::test {
namespace {

using testing::IsEmpty;

// Segments

struct SegmentsCase {
    const char* name;
    std::string segments;
    const char* table;  // without the profiles
};

void PrintTo(const SegmentsCase& c, std::ostream* os)
{
    *os << c.segments;
}

const SegmentsCase kSegmentsCases[] = {
    {"None", "", ""},
    {"FirstRowStatesWhereTheCurveBegins", segment("3", "4", "5"), "0-0=5"},
    {"FirstRowOfBlanks", segment(" ", " ", "5"), "0-0=5"},
    {"SecondRowKeepsItsNumbers", segment("", "", "1") + segment("1", "4", "2"), "0-0=1; 1-4=2"},
    {"ThirdRowThatDoesNotMeetTheSecond",
     segment("", "", "1") + segment("0", "4", "2") + segment("5", "6", "3"), "0-0=1; 0-4=2; 4-5=0"},
    {"NamesDoNotCount", "<Segment/><Segment><Value>1</Value><x>2</x><x>3</x></Segment>", "0-0=0; 1-2=3"},
    // Only elements are counted here, unlike the children of a point.
    {"CommentsDoNotCount", "<Segment/><Segment><!--c--><a>1</a><!--c--><a>2</a>t<a>3</a></Segment>",
     "0-0=0; 1-2=3"},
    {"MissingElementsLeaveTheDefaults", "<Segment/><Segment><a>0.5</a></Segment>", "0-0=0; 0.5-1=0"},
    {"FifthElementIsIgnored", "<Segment/><Segment><a>1</a><a>2</a><a>3</a><a/><a>9</a></Segment>",
     "0-0=0; 1-2=3"},
    {"SegmentInASegment", "<Segment><Segment><a>1</a><a>2</a><a>3</a></Segment></Segment>", "0-0=0; 1-2=3"},
    {"Indentation", "\n<Segment>\n</Segment>\n<Segment>\n <a> 1 </a>\n <b> 2 </b>\n <c> 3 </c>\n</Segment>\n",
     "0-0=0; 1-2=3"},
    {"NumbersOutOfRange", segment("", "", "") + segment("-1e999", "1e999", "1e-999"), "0-0=0; -inf-inf=0"},
};

class Segments : public ReadCurve, public testing::WithParamInterface<SegmentsCase> {};

TEST_P(Segments, AreIdentifiedByTheNumberOfTheElement)
{
    host.managerAnswer = nullptr;  // and so without profiles
    if (GetParam().name != std::string("None"))
        host.managerAnswer = &manager;
    EXPECT_TRUE(readBuffer(segmentDocument().set("Segments", GetParam().segments)));
    std::string table = showSegments(segments());
    for (std::size_t at = 0; (at = table.find(" Cubic (Default)")) != std::string::npos;)
        table.erase(at, std::string(" Cubic (Default)").size());
    EXPECT_EQ(table, GetParam().table);
}

INSTANTIATE_TEST_SUITE_P(Rows, Segments, testing::ValuesIn(kSegmentsCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(ReadCurve, FirstSegmentIsNotParsedAndTheOthersAre)
{
    ASSERT_TRUE(readBuffer(segmentDocument()));
    mfSegment_c* row = nullptr;
    segments().selectSegment(0, row);
    EXPECT_TRUE(row->getProfileExpr().IsEmpty());
    EXPECT_EQ(row->getPlottingData0(), nullptr);
    EXPECT_TRUE(row->isInvalid());  // checked, and passed
    for (int i = 1; i < 3; ++i) {
        segments().selectSegment(i, row);
        EXPECT_FALSE(row->getProfileExpr().IsEmpty());
        ASSERT_NE(row->getPlottingData0(), nullptr);
        EXPECT_EQ(row->getPlottingData(0)[99].x(), row->getEndX());
        EXPECT_DOUBLE_EQ(row->getPlottingData(0)[99].y(), row->getValue());
    }
}

// Profiles

struct ProfileCase {
    const char* name;
    std::string definitions;
    const char* profile;  // the name in the row
    const char* shown;    // the profile that it gets
};

void PrintTo(const ProfileCase& c, std::ostream* os)
{
    *os << c.profile << " of " << c.definitions;
}

const std::string kCubic =
    "segmenttype(\"Cubic\",x,x1,y1,x2,y2)xbar=(x-x1)/(x2-x1);ybar=3*xbar^2-2*xbar^3;y=y1+(y2-y1)*ybar;"
    "returny;endsegmenttype";

const ProfileCase kProfileCases[] = {
    {"NoDefinitions", "", "Linear (Default)", "Cubic (Default)"},
    {"NoDefinitionsAndAPlainName", "", "Linear", "Cubic (Default)"},
    {"Defined", definition("Mine (Assembly)", lineTimes("2", "Mine")), "Mine (Assembly)", "Mine (Assembly)"},
    {"DefinedUnderAPlainName", definition("Mine", lineTimes("2", "Mine")), "Mine", "Mine (Assembly)"},
    // If the document has any definition, plain names of known profiles are found too.
    {"PlainNameOfABuiltInOne", definition("Mine", lineTimes("2", "Mine")), "Linear", "Linear (Default)"},
    {"PlainNameInOtherCase", definition("Mine", lineTimes("2", "Mine")), "linear", "linear (Default)"},
    {"DisplayNameOfABuiltInOne", definition("Mine", lineTimes("2", "Mine")), "Linear (Default)",
     "Cubic (Default)"},
    {"UnknownName", definition("Mine", lineTimes("2", "Mine")), "Yours", "Cubic (Default)"},
    {"EmptyName", definition("Mine", lineTimes("2", "Mine")), "", "Cubic (Default)"},
    {"SameAsABuiltInOne", definition("Cubic (Default)", kCubic), "Cubic (Default)", "Cubic (Default)"},
    {"NameComparesWithCase", definition("Mine", lineTimes("2", "Mine")), "MINE", "Cubic (Default)"},
    {"DoesNotParse", definition("Mine", "segmenttype(") + definition("Yours", lineTimes("3", "Yours")),
     "Mine", "Cubic (Default)"},
    {"OnlyOneThatDoesNotParse", definition("Linear", "nonsense"), "Linear", "Cubic (Default)"},
    {"SecondOfOneName",
     definition("Mine", lineTimes("2", "Mine")) + definition("Mine two", lineTimes("3", "Mine")), "Mine two",
     "Mine two (Assembly)"},
    {"SecondUnderTheSameUniqueName",
     definition("Mine", lineTimes("2", "Mine")) + definition("Mine", lineTimes("3", "Mine")), "Mine",
     "Mine (Assembly)<1>"},
    {"OlderKeywords",
     definition("Mine",
                "profile(\"Mine\",x,x1,y1,x2,y2)s=(y2-y1)/(x2-x1);v=y1+2*s*(x-x1);returnv;endprofile"),
     "Mine", "Mine (Assembly)"},
    {"NamesDoNotCount",
     "<ProfileDefinition><a>Mine</a><b>" + lineTimes("2", "Mine") + "</b></ProfileDefinition>", "Mine",
     "Mine (Assembly)"},
    // Children are identified by position, and a comment takes one.
    {"CommentInFront",
     "<ProfileDefinition><!--c--><a>Mine</a><b>" + lineTimes("2", "Mine") + "</b></ProfileDefinition>",
     "Mine", "Cubic (Default)"},
    {"CommentAfter",
     "<ProfileDefinition><a>Mine</a><b>" + lineTimes("2", "Mine") + "</b><!--c--><c/></ProfileDefinition>",
     "Mine", "Mine (Assembly)"},
    // A key without a name finds nothing, although the registry has its record.
    {"NothingBeforeTheBracket", definition("(old)", lineTimes("2", "Mine")), "(old)", "Cubic (Default)"},
    {"CommentInPlaceOfTheName",
     "<ProfileDefinition><!--c--><b>" + lineTimes("2", "Mine") + "</b></ProfileDefinition>", "",
     "Cubic (Default)"},
    {"FunctionInPlaceOfTheName",
     "<ProfileDefinition><b>" + lineTimes("2", "Mine") + "</b></ProfileDefinition>", "Mine",
     "Cubic (Default)"},
    {"WithoutAFunction", "<ProfileDefinition><a>Linear</a></ProfileDefinition>", "Linear", "Cubic (Default)"},
    {"RefersToItself",
     definition("Mine", "segmenttype(\"Mine\",x,x1,y1,x2,y2)v=v+1;v=v*v;returnv;endsegmenttype"), "Mine",
     "Mine (Assembly)"},
};

class Profile : public ReadCurve, public testing::WithParamInterface<ProfileCase> {};

TEST_P(Profile, IsFoundByTheNameInTheDocument)
{
    EXPECT_TRUE(readBuffer(segmentDocument()
                               .set("Segments", segment("", "", "1", GetParam().profile) +
                                                    segment("0", "2", "5", GetParam().profile))
                               .set("ProfileDefinitions", GetParam().definitions)));
    const std::string shown = GetParam().shown;
    EXPECT_EQ(showSegments(segments()), "0-0=1 " + shown + "; 0-2=5 " + shown);
}

INSTANTIATE_TEST_SUITE_P(Names, Profile, testing::ValuesIn(kProfileCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(ReadCurve, DefinitionsMayPrecedeTheSegments)
{
    const Document document =
        segmentDocument()
            .set("Segments", segment("", "", "0", "Mine") + segment("0", "2", "1", "Mine"))
            .drop("ProfileDefinitions")
            .first("ProfileDefinitions", definition("Mine", lineTimes("3", "Mine")));
    ASSERT_TRUE(readBuffer(document));
    EXPECT_DOUBLE_EQ(function.evaluate(1.0, 0), 1.5);
    EXPECT_DOUBLE_EQ(function.evaluate(1.0, 1), 1.5);
}

TEST_F(ReadCurve, ProfilesOfAFileAreNamedAfterItsStem)
{
    function.setMotionObjectType(MotionObjectType_Motor);
    ASSERT_TRUE(readFile("clutch.v2.xml",
                         segmentDocument()
                             .set("Segments", segment("", "", "0", "Mine"))
                             .set("ProfileDefinitions", definition("Mine (old)", lineTimes("3", "Mine")) +
                                                            definition("Mine", lineTimes("4", "Mine")))
                             .xml()));
    EXPECT_EQ(showSegments(segments()), "0-0=0 Mine (clutch.v2)<1>");
    std::vector<CString> names;
    manager.getAllProfileNames(names);
    EXPECT_EQ(utf8(names[names.size() - 2]), "Mine (clutch.v2)");
    EXPECT_EQ(utf8(names.back()), "Mine (clutch.v2)<1>");
}

TEST_F(ReadCurve, DefinitionWithoutANameIsRegisteredToo)
{
    ASSERT_TRUE(readBuffer(segmentDocument().set(
        "ProfileDefinitions",
        "<ProfileDefinition><!--c--><b>" + lineTimes("2", "Mine") + "</b></ProfileDefinition>")));
    std::vector<CString> names;
    manager.getAllProfileNames(names);
    EXPECT_EQ(utf8(names.back()), " (Assembly)");
    mfProfileKey_c key;
    manager.lookupDocumentName("", key);
    EXPECT_EQ(utf8(key.source), " (Assembly)");
    ASSERT_NE(manager.findProfile(key), nullptr);
    EXPECT_EQ(manager.findProfile(key)->name, "Mine");  // the record has its own name
}

TEST_F(ReadCurve, FifthElementIsNotAProfile)
{
    ASSERT_TRUE(readBuffer(
        segmentDocument()
            .set("Segments", "<Segment><a/><b/><c/><d>Mine</d><e>Linear</e><f>Linear</f></Segment>")
            .set("ProfileDefinitions", definition("Mine", lineTimes("2", "Mine")))));
    EXPECT_EQ(showSegments(segments()), "0-0=0 Mine (Assembly)");
}

TEST_F(ReadCurve, SecondReadFindsTheProfilesOfTheFirst)
{
    const Document document = segmentDocument()
                                  .set("Segments", segment("", "", "0", "Mine"))
                                  .set("ProfileDefinitions", definition("Mine", lineTimes("3", "Mine")));
    std::vector<CString> once;
    std::vector<CString> twice;
    ASSERT_TRUE(readBuffer(document));
    manager.getAllProfileNames(once);
    ASSERT_TRUE(readBuffer(document));
    manager.getAllProfileNames(twice);
    EXPECT_EQ(once.size(), 11U);
    EXPECT_EQ(once, twice);
    EXPECT_EQ(showSegments(segments()), "0-0=0 Mine (Assembly)");
}

// The manager still knows the names of documents read before.
TEST_F(ReadCurve, NamesOfAnEarlierDocumentAreFound)
{
    ASSERT_TRUE(
        readBuffer(segmentDocument().set("ProfileDefinitions", definition("Mine", lineTimes("3", "Mine")))));
    ASSERT_TRUE(readBuffer(segmentDocument().set("Segments", segment("", "", "0", "Mine"))));
    EXPECT_EQ(showSegments(segments()), "0-0=0 Mine (Assembly)");
}

TEST_F(ReadCurve, WithoutAManagerRowsHaveNoProfile)
{
    host.managerAnswer = nullptr;
    EXPECT_TRUE(
        readBuffer(segmentDocument().set("ProfileDefinitions", definition("Mine", lineTimes("3", "Mine")))));
    EXPECT_EQ(showSegments(segments()), "0-0=1; 0-2=5; 2-3=4");
}

// Returns what the other host returns, except for one request for the manager, which gets null.
class HostWithoutAManagerOnce : public QelMotionFunctionContext_c {
public:
    HostWithoutAManagerOnce(QelMotionFunctionContext_c& other, int request) : other_(other), left_(request)
    {
        QelSession_c::setMotionFunctionContext(this);
    }
    ~HostWithoutAManagerOnce() override { QelSession_c::setMotionFunctionContext(&other_); }
    HostWithoutAManagerOnce(const HostWithoutAManagerOnce&) = delete;
    HostWithoutAManagerOnce& operator=(const HostWithoutAManagerOnce&) = delete;

    bool wasReached() const { return left_ <= 0; }

    IMotionServices_c* getMotionServices() override { return other_.getMotionServices(); }
    IMotionStudy_c* getMotionStudy() override { return other_.getMotionStudy(); }
    mfProfileManager_c* getProfileManager() override
    {
        return --left_ == 0 ? nullptr : other_.getProfileManager();
    }

private:
    QelMotionFunctionContext_c& other_;
    int left_;
};

// Without a manager no key can be made; the name is stored with the empty key, and the row
// gets the default profile.
TEST_F(ReadCurve, NameIsStoredEvenIfNoKeyCouldBeMade)
{
    const Document document =
        segmentDocument()
            .set("Segments", segment("", "", "1", "Mine") + segment("0", "2", "5", "Mine"))
            .set("ProfileDefinitions", definition("Mine", lineTimes("3", "Mine")));
    int stored = 0;
    for (int request = 1;; ++request) {
        mfProfileManager_c fresh;
        host.managerAnswer = &fresh;
        ASSERT_TRUE(fresh.rebuildUserProfileMap());
        {
            const HostWithoutAManagerOnce forgetful(host, request);
            ASSERT_TRUE(readBuffer(document)) << request;
            if (!forgetful.wasReached())
                break;
        }
        mfProfileKey_c key;
        fresh.lookupDocumentName("Mine", key);
        if (!fresh.hasDocumentNames() || !key.isEmpty())
            continue;
        ++stored;
        EXPECT_EQ(showSegments(segments()), "0-0=1 Cubic (Default); 0-2=5 Cubic (Default)") << request;
    }
    host.managerAnswer = &manager;
    EXPECT_EQ(stored, 1);
}

TEST_F(ReadCurve, WithoutAContextRowsHaveNoProfile)
{
    QelSession_c::setMotionFunctionContext(nullptr);
    EXPECT_TRUE(
        readBuffer(segmentDocument().set("ProfileDefinitions", definition("Mine", lineTimes("3", "Mine")))));
    EXPECT_FALSE(readBuffer(dataPointDocument().set("IndepVar", "Slip")));
    QelSession_c::setMotionFunctionContext(&host);
    EXPECT_EQ(showSegments(segments()), "0-0=1; 0-2=5; 2-3=4");
}

}  // namespace
}  // namespace mf::test
