#include "tools/mfcurve/pointsFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "tests/locale/comma_locale.h"

namespace {

using mfcurve::FilePoint;
using mfcurve::parsePoints;
using mfcurve::PointsProblem;
using testing::HasSubstr;

// "line:x,y" of each point, or "line! message".
std::string show(const std::string& text)
{
    const auto result = parsePoints(text);
    std::ostringstream shown;
    if (const auto* problem = std::get_if<PointsProblem>(&result)) {
        shown << problem->line << "! " << problem->message;
        return shown.str();
    }
    for (const FilePoint& point : std::get<std::vector<FilePoint>>(result))
        shown << (shown.str().empty() ? "" : " ") << point.line << ':' << point.x << ',' << point.y;
    return shown.str();
}

struct AcceptedCase {
    const char* name;
    const char* text;
    const char* points;
};

const AcceptedCase kAcceptedCases[] = {
    {"Commas", "1,2\n3,4\n", "1:1,2 2:3,4"},
    {"Semicolons", "1;2\n3 ; 4\n", "1:1,2 2:3,4"},
    {"TabsAndBlanks", "1\t2\n 3   4 \n", "1:1,2 2:3,4"},
    {"NoNewlineAtTheEnd", "1,2\n3,4", "1:1,2 2:3,4"},
    {"CarriageReturns", "1,2\r\n3,4\r\n", "1:1,2 2:3,4"},
    {"Header", "time [s], lift [mm]\n1,2\n", "2:1,2"},
    {"HeaderInQuotes", "\"x\";\"y\"\n1;2\n", "2:1,2"},
    {"HeaderBehindComments", "# measured\n\nx y\n1 2\n", "4:1,2"},
    {"ByteOrderMark",
     "\xEF\xBB\xBF"
     "1,2\n",
     "1:1,2"},
    {"CommentsAndBlankLines", "\n# a\n1,2 # b\n  \n#\n3,4\n", "3:1,2 6:3,4"},
    {"OnePoint", "5 6", "1:5,6"},
    {"Signs", "+1,-2\n-3,+4\n", "2:-3,4 1:1,-2"},
    {"Exponents", "1e3,2.5E-3\n.5,5.\n", "2:0.5,5 1:1000,0.0025"},
    {"TooSmallIsZero", "1e-400,-1e-999\n", "1:0,-0"},
    {"Unsorted", "3,1\n1,2\n2,3\n", "2:1,2 3:2,3 1:3,1"},
};

void PrintTo(const AcceptedCase& c, std::ostream* os)
{
    *os << c.text;
}

class Accepted : public testing::TestWithParam<AcceptedCase> {};

TEST_P(Accepted, PointsComeInAscendingX)
{
    EXPECT_EQ(show(GetParam().text), GetParam().points);
}

INSTANTIATE_TEST_SUITE_P(PointsFile, Accepted, testing::ValuesIn(kAcceptedCases),
                         [](const auto& tested) { return tested.param.name; });

struct RefusedCase {
    const char* name;
    const char* text;
    const char* problem;
};

const RefusedCase kRefusedCases[] = {
    {"NoText", "", "0! there are no points; a line is \"x, y\""},
    {"HeaderAlone", "x,y\n", "0! there are no points"},
    {"CommentAlone", "# 1,2\n", "0! there are no points"},
    {"WordInX", "1,2\nabc,4\n", "2! \"abc,4\" does not begin with a number; a line is \"x, y\""},
    {"SecondHeader", "x,y\nmm,mm\n1,2\n", "2! \"mm,mm\" does not begin with a number"},
    {"WordInY", "1,2\n3,abc\n", "2! \"3,abc\" has no number behind x"},
    {"WordBehindX", "1,2\n3abc,4\n", "2! \"3abc,4\" goes on behind x without a separator"},
    {"SlipInTheFirstLine", "1.2.3,4\n", "1! \"1.2.3,4\" goes on behind x without a separator"},
    {"MissingX", ",4\n", "1! \",4\" does not begin with a number"},
    {"MissingY", "1,2\n3\n", "2! \"3\" has no y"},
    {"MissingYBehindTheSeparator", "1,2\n3,\n", "2! \"3,\" has no y"},
    {"TwoSeparators", "1,,2\n", "1! \"1,,2\" has no number behind x"},
    {"ThreeNumbers", "1,2\n3,4,5\n", "2! \"3,4,5\" goes on behind y"},
    {"DecimalComma", "1,5;2,5\n", "1! \"1,5;2,5\" goes on behind y"},
    {"NaNInX", "nan,2\n", "1! \"nan,2\" has an x that is not finite"},
    {"InfinityInX", "1,2\n-inf,2\n", "2! \"-inf,2\" has an x that is not finite"},
    {"TooLargeX", "1e400,2\n", "1! \"1e400,2\" has an x that is not finite"},
    {"NaNInY", "1,nan\n", "1! \"1,nan\" has a y that is not finite"},
    {"TooLargeY", "1,-1e400\n", "1! \"1,-1e400\" has a y that is not finite"},
    {"TwoSigns", "+-1,2\n", "1! \"+-1,2\" does not begin with a number"},
    {"HexadecimalX", "1,2\n0x10,2\n", "2! \"0x10,2\" goes on behind x without a separator"},
    {"SameX", "1,2\n3,4\n# c\n1.0,5\n", "4! x 1 stands in line 1 already; a curve has one y at each x"},
    {"BothZeros", "0,2\n-0,4\n", "2! x 0 stands in line 1 already"},
    {"ControlCharacters", "1,2\n\x01\x02,4\n", "2! \"??,4\" does not begin with a number"},
};

void PrintTo(const RefusedCase& c, std::ostream* os)
{
    *os << c.text;
}

class Refused : public testing::TestWithParam<RefusedCase> {};

TEST_P(Refused, NamesTheLineAndWhatWasExpected)
{
    EXPECT_THAT(show(GetParam().text), testing::StartsWith(GetParam().problem));
}

INSTANTIATE_TEST_SUITE_P(PointsFile, Refused, testing::ValuesIn(kRefusedCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(PointsFile, AZeroByteIsNoNumber)
{
    EXPECT_THAT(show(std::string("1,2\n\0,4\n", 8)), testing::StartsWith("2! \"?,4\" does not begin"));
}

TEST(PointsFile, ALongLineIsQuotedUpToAWholeCharacter)
{
    const std::string line = "1,2" + std::string(56, 'a') + "\xC3\xA4\xC3\xA4";
    const std::string shown = show(line);
    EXPECT_THAT(shown, HasSubstr("\"1,2" + std::string(56, 'a') + "...\" goes on behind y"));
}

TEST(PointsFile, NumbersAreReadToTheLastBit)
{
    const auto result =
        parsePoints("0.1 0.30000000000000004\n4.9406564584124654e-324 1.7976931348623157e308");
    const auto& points = std::get<std::vector<FilePoint>>(result);
    ASSERT_EQ(points.size(), 2u);
    EXPECT_EQ(points[0].x, 5e-324);
    EXPECT_EQ(points[0].y, 1.7976931348623157e308);
    EXPECT_EQ(points[1].x, 0.1);
    EXPECT_EQ(points[1].y, 0.30000000000000004);
}

TEST(PointsFile, ACommaLocaleChangesNothing)
{
    const locale_test::CommaLocale comma;
    ASSERT_TRUE(comma.holds());
    const auto result = parsePoints("0.5,1.5\n1e-400,0.25\n");
    const auto& points = std::get<std::vector<FilePoint>>(result);
    ASSERT_EQ(points.size(), 2u);
    EXPECT_EQ(points[1].x, 0.5);
    EXPECT_EQ(points[1].y, 1.5);
}

TEST(PointsFile, AHundredThousandLinesAreRead)
{
    std::string text = "x,y\n";
    for (int i = 0; i < 100000; ++i)
        text += std::to_string(i) + ".25," + std::to_string(-i) + "\n";
    const auto result = parsePoints(text);
    const auto& points = std::get<std::vector<FilePoint>>(result);
    ASSERT_EQ(points.size(), 100000u);
    EXPECT_EQ(points.back().x, 99999.25);
    EXPECT_EQ(points.back().y, -99999.0);
    EXPECT_EQ(points.back().line, 100001);
}

}  // namespace
