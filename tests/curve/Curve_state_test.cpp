// SPDX-License-Identifier: MIT

// Making, reading and writing a curve does not depend on the state of the process, and does not
// change it.

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libxml/xmlerror.h>
#include <sstream>
#include <string>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/curve/laws.h"
#include "mfcurves/interfaces/hostAnswers.h"
#include "tests/documents/curveFixture.h"
#include "tests/locale/comma_locale.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/processState.h"

namespace mf::test {
namespace {

using testing::HasSubstr;

Document withRow(const std::string& law, const std::string& definitions)
{
    return segmentDocument()
        .set("Segments", segment(" ", " ", "1") + segment("0", "2", "5", law))
        .set("ProfileDefinitions", definitions);
}

const Document kSegments = withRow("Mine", definition("Mine", lineTimes("2", "Mine")));

struct StateCase {
    const char* name;
    std::function<void()> run;
    bool fails;
};

void PrintTo(const StateCase& c, std::ostream* os)
{
    *os << c.name;
}

const StateCase kStateCases[] = {
    {"Segments", [] { Curve::parse(kSegments.xml()); }, false},
    {"Points", [] { Curve::parse(dataPointDocument().xml()); }, false},
    {"Expression", [] { Curve::parse(expressionDocument().xml()); }, false},
    {"File", [] { Curve::read(SAMPLE_CURVES "/valve-lift.xml"); }, false},
    {"Writing", [] { Curve::parse(kSegments.xml()).toXml(); }, false},
    {"Losses",
     [] {
         std::vector<Problem> losses;
         Curve::parse(kSegments.xml()).toXml(&losses);
     },
     false},
    {"Laws", [] { laws(); }, false},
    {"NonAsciiNames",
     [] { Curve::parse(withRow("\xC3\xBC", definition("\xC3\xBC", lineTimes("2", "\xC3\xBC"))).xml()); },
     false},
    {"AnotherVersion", [] { Curve::parse(expressionDocument().set("Version", "2").xml()); }, true},
    {"BrokenXml", [] { Curve::parse("<Curve><a>"); }, true},
    {"NoFile", [] { Curve::read("none.xml"); }, true},
    {"NoElement", [] { Curve::parse(kSegments.xml().substr(0, 200)); }, true},
    {"NoCursor", [] { Curve::parse(expressionDocument().drop("Cursor").xml()); }, true},
    {"NoResult", [] { Curve::parse(segmentDocument().set("IndepVar", "Slip").xml()); }, true},
    {"NoCurve", [] { Curve::parse(dataPointDocument().set("Points", "").xml()); }, true},
    {"NoLaws", [] { laws({"none"}); }, true},
    {"NowhereToWriteTo", [] { Curve::parse(kSegments.xml()).write("none/out.xml"); }, true},
};

class State : public testing::TestWithParam<StateCase> {
protected:
    static void runAndCompare()
    {
        const ProcessState before;
        bool failed = false;
        try {
            GetParam().run();
        } catch (const CurveError&) {
            failed = true;
        }
        EXPECT_EQ(ProcessState(), before);
        EXPECT_EQ(failed, GetParam().fails);
    }
};

TEST_P(State, StaysWithoutAHost)
{
    runAndCompare();
}

TEST_P(State, StaysUnderAHostThatIsNotAsked)
{
    FakeHost host;
    mfProfileManager_c manager;
    host.managerAnswer = &manager;
    const ProcessState before;
    host.calls.clear();
    try {
        GetParam().run();
    } catch (const CurveError&) {
    }
    EXPECT_THAT(host.calls, testing::IsEmpty());
    EXPECT_EQ(interfaces::motionServices(), &host.services) << "the thread asks the host again";
    EXPECT_FALSE(manager.hasDocumentNames());
    EXPECT_EQ(ProcessState(), before);
}

TEST_P(State, StaysUnderAnotherLocaleAndVersion)
{
    const locale_test::CommaLocale locale;
    ASSERT_TRUE(locale.holds());
    documents::setWrittenVersion(7.0);
    runAndCompare();
    EXPECT_TRUE(locale.holds());
    documents::setWrittenVersion(documents::kReadableVersion);
}

INSTANTIATE_TEST_SUITE_P(Curves, State, testing::ValuesIn(kStateCases),
                         [](const auto& tested) { return tested.param.name; });

// The thread's handler of the XML engine's errors.
TEST(State, HandlerOfXmlErrorsStays)
{
    int token = 0;
    const auto ignore = [](void*, auto*) {};
    xmlSetStructuredErrorFunc(&token, ignore);
    EXPECT_THROW(Curve::parse("<Curve><a>"), CurveError);
    EXPECT_EQ(xmlStructuredErrorContext, &token);
    xmlSetStructuredErrorFunc(nullptr, nullptr);
}

// What came before has no influence

TEST(Reading, DoesNotSeeWhatWasReadBefore)
{
    FakeHost host;
    mfProfileManager_c manager;
    host.managerAnswer = &manager;
    manager.rebuildUserProfileMap();
    mfFunctionData_c function;
    function.initialize();
    ASSERT_TRUE(function.readXMLData(L"", true, kSegments.xml()));
    Curve::parse(kSegments.xml());
    const Curve curve = Curve::parse(withRow("Mine", "").xml());
    EXPECT_EQ(std::get<SegmentShape>(curve.definition().shape).rows[0].profile, "Cubic");
    ASSERT_EQ(curve.warnings().size(), 1u);
    EXPECT_THAT(curve.warnings()[0].message, HasSubstr("the document does not define its law \"Mine\""));
}

TEST(Reading, DoesNotSeeTheStateOfQuotes)
{
    mfSegmentTypeParser_c parser;
    std::istringstream unbalanced("\"");
    std::string normal;
    parser.readNormalText(unbalanced, normal);
    const Curve curve = Curve::parse(kSegments.xml());
    EXPECT_EQ(curve(1.0), 1.0 + 2.0 * 2.0);
    EXPECT_EQ(laws().size(), 26u);
    std::istringstream closing("\"");
    parser.readNormalText(closing, normal);
}

TEST(Reading, DoesNotSeeTheNamesOfAHost)
{
    const platform::ResourceModule german(
        {{platform::kTimeName, L"Zeit"}, {platform::kCycleAngleName, L"Winkel"}});
    const platform::ResourceModule* const before = platform::currentResourceModule();
    platform::setCurrentResourceModule(&german);
    const Curve overTime = Curve::parse(expressionDocument().set("IndepVar", "Time").xml());
    const Curve overAngle = Curve::parse(expressionDocument().set("IndepVar", "CycleAngle").xml());
    const std::string xml = overAngle.toXml();
    platform::setCurrentResourceModule(before);
    EXPECT_EQ(overTime.definition().over, Over::Time);
    EXPECT_EQ(overAngle.definition().over, Over::CycleAngle);
    EXPECT_EQ(Curve::parse(xml), overAngle);
}

TEST(Writing, IsOfTheReadableVersion)
{
    documents::setWrittenVersion(7.0);
    const std::string xml = Curve::parse(kSegments.xml()).toXml();
    documents::setWrittenVersion(documents::kReadableVersion);
    EXPECT_THAT(xml, HasSubstr("<Version>1</Version>"));
}

}  // namespace
}  // namespace mf::test
