// SPDX-License-Identifier: MIT

#include <chrono>
#include <ctime>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <sys/resource.h>
#include <vector>

#include "curveFixture.h"
#include "mfcurves/documents/readCurve.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/longTexts.h"

// Hostile documents give false or a defined curve, in limited time and memory.

namespace mf::test {
namespace {

class HostileDocument : public CurveTest {
protected:
    HostileDocument() : started_(std::chrono::steady_clock::now()) {}
    // Far more than any of these needs, even with sanitizers and other work on the
    // machine, and far less than a quadratic one takes.
    ~HostileDocument() override
    {
        EXPECT_LT(std::chrono::steady_clock::now() - started_, std::chrono::seconds(60));
    }

    static long largestMemoryInKilobytes()
    {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss;
    }

private:
    std::chrono::steady_clock::time_point started_;
};

TEST_F(HostileDocument, MillionNestedElementsInEachPlace)
{
    const std::string nested = repeated("<q>", 1'000'000) + repeated("</q>", 1'000'000);
    EXPECT_FALSE(readBuffer(nested));
    EXPECT_FALSE(readBuffer(dataPointDocument().set("Points", nested)));
    EXPECT_FALSE(readBuffer(segmentDocument().set("Cursor", nested)));
    EXPECT_TRUE(segments().isEmpty());
}

TEST_F(HostileDocument, NestedSegmentsAndPoints)
{
    const std::string opened = repeated("<Segment><a>", 100);
    const std::string closed = repeated("</a><b>1</b></Segment>", 100);
    EXPECT_TRUE(readBuffer(segmentDocument().set("Segments", opened + "1" + closed)));
    EXPECT_EQ(segments().getSegmentCount(), 100);
    EXPECT_TRUE(readBuffer(dataPointDocument().set(
        "Points", repeated("<Point><x>", 100) + "1" + repeated("</x><y>2</y></Point>", 100))));
    EXPECT_EQ(points().getDataPointsCount(), 100);
}

// Each segment would read all the text below it again.
TEST_F(HostileDocument, NestedSegmentsAroundAHugeText)
{
    const std::string opened = repeated("<Segment>", 250);
    const std::string closed = repeated("</Segment>", 250);
    const auto around = [&](int length) {
        const std::string text(static_cast<std::size_t>(length), '1');
        return segmentDocument().set("Segments", opened + text + closed).xml();
    };
    EXPECT_TRUE(readBuffer(around(200'000)));
    EXPECT_EQ(segments().getSegmentCount(), 250);
    const documents::ReadOutcome outcome = documents::readCurve(function, L"", true, around(5'000'000));
    EXPECT_FALSE(outcome.taken);
    EXPECT_THAT(outcome.reason, testing::StartsWith("Too much text in nested elements (line 1, column "));
    EXPECT_EQ(segments().getSegmentCount(), 250);
}

TEST_F(HostileDocument, NamesFarDownAmongMillionsOfOthers)
{
    // Every query walks past all of them.
    const std::string others = repeated("<RangeX><q/></RangeX><Points><q/></Points>", 200'000);
    EXPECT_TRUE(readBuffer("<Curve>" + others + dataPointDocument().xml() + "</Curve>"));
    EXPECT_EQ(showPoints(points()), "0.5:2 1:3");
}

TEST_F(HostileDocument, FileThatIsOneAttributeTakesLittleMemory)
{
    const TemporaryFolder folder;
    const CString path = folder.write("a.xml", "<Curve a='" + std::string(300'000'000, 'x')).c_str();
    const long before = largestMemoryInKilobytes();
    EXPECT_FALSE(function.readXMLData(path, false, ""));
    EXPECT_LT(largestMemoryInKilobytes() - before, 200'000);
}

TEST_F(HostileDocument, MillionsOfAttributes)
{
    std::string xml = "<Curve";
    for (int i = 0; i < 1'000'000; ++i)
        xml += " a" + std::to_string(i) + "=''";
    EXPECT_FALSE(readBuffer(xml));
    EXPECT_FALSE(readBuffer(xml + ">"));
}

TEST_F(HostileDocument, EntitiesOfAnyKind)
{
    for (const char* subset :
         {"<!ENTITY a 'aaaaaaaaaa'><!ENTITY b '&a;&a;&a;&a;&a;&a;&a;'>",
          "<!ENTITY b SYSTEM 'file:///dev/zero'>", "<!ENTITY % b SYSTEM 'file:///dev/zero'> %b;",
          "<!ENTITY b SYSTEM 'http://localhost:1/b'>"})
        EXPECT_FALSE(readBuffer(std::string("<!DOCTYPE Curve [") + subset + "]>" +
                                dataPointDocument().set("FunctionName", "&b;").xml()));
    EXPECT_FALSE(readBuffer("<!DOCTYPE Curve SYSTEM 'file:///dev/zero'>" + dataPointDocument().xml()));
    EXPECT_TRUE(function.getName().IsEmpty());
}

TEST_F(HostileDocument, ZeroBytesInAFile)
{
    const TemporaryFolder folder;
    function.setMotionObjectType(MotionObjectType_Motor);
    const std::string xml = dataPointDocument().xml();
    for (std::size_t at = 0; at <= xml.size(); at += 7) {
        std::string bytes = xml;
        bytes.insert(at, 1, '\0');
        EXPECT_FALSE(function.readXMLData(folder.write("a.xml", bytes).c_str(), false, "")) << at;
    }
    EXPECT_TRUE(points().isEmpty());
}

TEST_F(HostileDocument, CutShortAtEveryByte)
{
    const std::string xml =
        segmentDocument().set("ProfileDefinitions", definition("Mine", lineTimes("2", "Mine"))).xml();
    for (std::size_t size = 0; size < xml.size(); ++size)
        EXPECT_FALSE(readBuffer(xml.substr(0, size))) << size;
    EXPECT_TRUE(segments().isEmpty());
}

TEST_F(HostileDocument, EveryByteReplaced)
{
    const std::string xml =
        "<?xml version='1.0' encoding='UTF-8'?>\n" +
        segmentDocument().set("ProfileDefinitions", definition("Mine", lineTimes("2", "Mine"))).xml();
    for (std::size_t at = 0; at < xml.size(); ++at) {
        for (const char c : {'\0', '<', '>', '&', '"', '9', '\xFF'}) {
            std::string bytes = xml;
            bytes[at] = c;
            readBuffer(bytes);
        }
    }
    ASSERT_TRUE(readBuffer(xml));
    EXPECT_EQ(segments().getSegmentCount(), 3);
}

TEST_F(HostileDocument, NumbersOfEveryKind)
{
    const std::string numbers[] = {"nan",
                                   "inf",
                                   "-inf",
                                   "1e999",
                                   "-1e999",
                                   "1e-999",
                                   "0x10",
                                   "1e",
                                   "e1",
                                   "+-1",
                                   "--1",
                                   ".",
                                   "1..2",
                                   "1e+",
                                   "1,5",
                                   "1 2",
                                   "\u0661",
                                   "1e2147483648",
                                   "1e99999999999999999999",
                                   std::string(1000, '9'),
                                   "0." + std::string(1000, '0') + "1",
                                   std::string(100'000, '9') + "e-99999",
                                   "1e" + std::string(1000, '9')};
    for (const std::string& number : numbers) {
        ASSERT_TRUE(
            readBuffer(dataPointDocument().set("Points", point(number, number) + point("1", number))));
        ASSERT_TRUE(readBuffer(segmentDocument().set("Segments", segment(number, number, number) +
                                                                     segment(number, number, number) +
                                                                     segment("0", number, number))));
        ASSERT_TRUE(readBuffer(expressionDocument()
                                   .set("RangeX", "<MinX>" + number + "</MinX><MaxX>" + number + "</MaxX>")
                                   .set("Expression", number)));
        ASSERT_TRUE(readBuffer(dataPointDocument().set("PointCount", number).set("Cursor", number)));
        for (const FunctionType_e type :
             {FunctionType_Segments, FunctionType_DataPoints, FunctionType_Expression}) {
            function.setFunctionType(type);
            for (int order = 0; order < 4; ++order)
                function.evaluate(0.5, order);
            EXPECT_FALSE(write().empty());
        }
    }
    ASSERT_TRUE(
        readBuffer(expressionDocument().set("RangeX", "<MinX>" + numbers[19] + "</MinX><MaxX>nan</MaxX>")));
    EXPECT_EQ(expression().getMinX(), std::numeric_limits<double>::infinity());
    EXPECT_EQ(expression().getMaxX(), 0.0);
}

// Each statement doubles the text of the previous one.
TEST_F(HostileDocument, DefinitionThatGrowsWithoutBounds)
{
    std::string body = "a=x*x;";
    for (char name = 'b'; name < 'x'; ++name)
        for (int i = 0; i < 3; ++i)
            body += std::string(1, name) + "=" + std::string(1, static_cast<char>(name - 1)) + "*" +
                    std::string(1, static_cast<char>(name - 1)) + ";";
    const std::string text = "segmenttype(\"Mine\",x,x1,y1,x2,y2)" + body + "returnw;endsegmenttype";
    EXPECT_TRUE(readBuffer(segmentDocument()
                               .set("Segments", segment("", "", "0", "Mine") + segment("0", "1", "1", "Mine"))
                               .set("ProfileDefinitions", definition("Mine", text))));
    EXPECT_EQ(showSegments(segments()), "0-0=0 Cubic (Default); 0-1=1 Cubic (Default)");
}

// One definition may grow to a megabyte, a hundred may not.
TEST_F(HostileDocument, DefinitionsThatGrowTogether)
{
    std::string body = "v00=x;";
    for (int i = 1; i <= 17; ++i) {
        const std::string former = "v" + std::to_string(100 + i - 1).substr(1);
        body += "v" + std::to_string(100 + i).substr(1) + "=" + former + "+" + former + ";";
    }
    std::string definitions;
    for (int i = 0; i < 100; ++i)
        definitions += definition("Mine" + std::to_string(i), "segmenttype(\"Mine" + std::to_string(i) +
                                                                  "\",x,x1,y1,x2,y2)" + body +
                                                                  "returnv17;endsegmenttype");
    EXPECT_TRUE(readBuffer(segmentDocument().set("ProfileDefinitions", definitions)));
    std::vector<CString> names;
    manager.getAllProfileNames(names);
    EXPECT_GT(names.size(), 10U);
    EXPECT_LT(names.size(), 30U);
    EXPECT_EQ(utf8(names[10]), "Mine0 (Assembly)");
}

TEST_F(HostileDocument, DefinitionsThatReferToThemselves)
{
    for (const char* body : {"v=v;returnv;", "v=v+v;v=v+v;returnv;", "a=b;b=a;returna;", "x=x;returnx;",
                             "x1=x2;x2=x1;returnx1;", "return=return;returnreturn;"}) {
        const std::string text = std::string("segmenttype(\"Mine\",x,x1,y1,x2,y2)") + body + "endsegmenttype";
        EXPECT_TRUE(
            readBuffer(segmentDocument()
                           .set("Segments", segment("", "", "0", "Mine") + segment("0", "1", "1", "Mine"))
                           .set("ProfileDefinitions", definition("Mine", text))));
        EXPECT_EQ(segments().getSegmentCount(), 2);
        function.evaluate(0.5, 3);
    }
}

// The text of each contains that of all those inside it, so that the length read is
// sixty times that of the document.
TEST_F(HostileDocument, DefinitionsInDefinitions)
{
    std::string statements;
    for (int i = 0; i < 60'000; ++i)
        statements += "v" + std::to_string(i) + "=1;";
    const std::string open = "<ProfileDefinition><UniqueName/><ProfileFunction>";
    const std::string close = "</ProfileFunction></ProfileDefinition>";
    const std::clock_t start = std::clock();
    EXPECT_TRUE(readBuffer(segmentDocument().set(
        "ProfileDefinitions", repeated(open, 60) + "segmenttype(\"Mine\",x,x1,y1,x2,y2)" + statements +
                                  "returnv0;endsegmenttype" + repeated(close, 60))));
    EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 10.0);
    EXPECT_EQ(segments().getSegmentCount(), 3);
}

// The formulas of a thousand rows would have 400 million characters. The first rows
// get their formula, the others only their numbers.
TEST_F(HostileDocument, RowsOfOneLongFormula)
{
    const std::string formula = "v=y1+" + repeated("0*x+", 100'000) + "x;returnv;endsegmenttype";
    std::string rows = segment("", "", "0", "Mine");
    for (int i = 0; i < 1000; ++i)
        rows += segment(std::to_string(i), std::to_string(i + 1), "3", "Mine");
    EXPECT_TRUE(readBuffer(
        segmentDocument()
            .set("Segments", rows)
            .set("ProfileDefinitions", definition("Mine", "segmenttype(\"Mine\",x,x1,y1,x2,y2)" + formula))));
    ASSERT_EQ(segments().getSegmentCount(), 1001);
    mfSegment_c* first = nullptr;
    mfSegment_c* last = nullptr;
    segments().selectSegment(1, first);
    segments().selectSegment(1000, last);
    EXPECT_EQ(function.evaluate(0.5, 0), 0.5);
    EXPECT_FALSE(first->getProfileExpr().IsEmpty());
    EXPECT_TRUE(last->getProfileExpr().IsEmpty());
    EXPECT_EQ(last->getEndX(), 1000.0);
    EXPECT_EQ(last->getValue(), 3.0);

    segments().parseExpression(1000);  // a host can still get the formula of a row
    EXPECT_EQ(function.evaluate(999.5, 0), 1002.5);
}

// All with one name, but different texts.
TEST_F(HostileDocument, ThousandsOfDefinitions)
{
    std::string definitions;
    for (int i = 0; i < 3000; ++i)
        definitions += definition("Mine" + std::to_string(i), lineTimes(std::to_string(i), "Mine"));
    EXPECT_TRUE(
        readBuffer(segmentDocument()
                       .set("Segments", segment("", "", "0", "Mine2999") + segment("0", "1", "1", "Mine2999"))
                       .set("ProfileDefinitions", definitions)));
    EXPECT_EQ(function.evaluate(0.5, 0), 1499.5);
}

// Every row clashes with the previous one.
TEST_F(HostileDocument, ThousandsOfPointsAtOneX)
{
    EXPECT_TRUE(readBuffer(dataPointDocument().set("Points", repeated(point("1", "2"), 50'000))));
    EXPECT_EQ(points().getDataPointsCount(), 50'000);
    double start = 0.0;
    double end = 0.0;
    points().getDomian(start, end);
    EXPECT_EQ(end, 50'000.0);
}

TEST_F(HostileDocument, RowOfThousandsOfPoints)
{
    EXPECT_TRUE(readBuffer(
        dataPointDocument().set("Points", "<Point>" + repeated("<a>1</a>", 100'001) + "</Point>")));
    EXPECT_EQ(points().getTotalPoints(), 50'000);
}

}  // namespace
}  // namespace mf::test
