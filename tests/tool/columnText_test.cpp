// SPDX-License-Identifier: MIT
#include "tools/mfcurve/columnText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "tests/locale/comma_locale.h"
#include "tools/mfcurve/pointsFile.h"
#include "tools/mfcurve/rowsFile.h"

namespace {

using mfcurve::ColumnSettings;
using mfcurve::FilePoint;
using mfcurve::FileRow;
using mfcurve::parsePoints;
using mfcurve::parseRows;
using mfcurve::TextError;
using testing::HasSubstr;
using testing::StartsWith;

// "line:x,y" of each point, "unsorted:line" after them, or "line! message".
std::string show(const std::string& text, const ColumnSettings& settings = {})
{
    std::ostringstream shown;
    try {
        const mfcurve::PointList list = parsePoints(text, settings);
        for (const FilePoint& point : list.points)
            shown << (shown.str().empty() ? "" : " ") << point.line << ':' << point.x << ',' << point.y;
        if (list.unsortedLine != 0)
            shown << " unsorted:" << list.unsortedLine;
    } catch (const TextError& error) {
        shown << error.line() << "! " << error.what();
    }
    return shown.str();
}

bool isCubic(std::string_view name)
{
    return name == "Cubic";
}

// "start x,value" if the text states it, "line:end,value,profile" of each row, or "line! message".
std::string showRows(const std::string& text, const ColumnSettings& settings = {})
{
    std::ostringstream shown;
    try {
        const mfcurve::RowList list = parseRows(text, isCubic, settings);
        if (list.start)
            shown << "start " << list.start->x << ',' << list.start->value;
        for (const FileRow& row : list.rows)
            shown << (shown.str().empty() ? "" : " ") << row.line << ':' << row.end << ',' << row.value << ','
                  << row.profile;
    } catch (const TextError& error) {
        shown << error.line() << "! " << error.what();
    }
    return shown.str();
}

std::string utf16(const std::string& ascii, bool isBig, bool hasMark)
{
    std::string text = !hasMark ? "" : isBig ? "\xFE\xFF" : "\xFF\xFE";
    for (char c : ascii) {
        text += isBig ? std::string(1, '\0') + c : c + std::string(1, '\0');
    }
    return text;
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
    {"HeaderAfterComments", "# measured\n\nx y\n1 2\n", "4:1,2"},
    {"ByteOrderMark",
     "\xEF\xBB\xBF"
     "1,2\n",
     "1:1,2"},
    {"CommentsAndBlankLines", "\n# a\n1,2 # b\n  \n#\n3,4\n", "3:1,2 6:3,4"},
    {"OnePoint", "5 6", "1:5,6"},
    {"Signs", "+1,-2\n-3,+4\n", "2:-3,4 1:1,-2 unsorted:2"},
    {"Exponents", "1e3,2.5E-3\n.5,5.\n", "2:0.5,5 1:1000,0.0025 unsorted:2"},
    {"TooSmallIsZero", "1e-400,-1e-999\n", "1:0,-0"},
    {"Unsorted", "3,1\n1,2\n2,3\n", "2:1,2 3:2,3 1:3,1 unsorted:2"},
    {"SeveralHeaderLines", "x,y\nmm,mm\n1,2\n", "3:1,2"},
    {"DecimalCommaBetweenSemicolons", "1,5;-2,5\n3;4,25e1\n", "1:1.5,-2.5 2:3,42.5"},
    {"DecimalCommaBetweenTabs", "1,5\t2,5\n", "1:1.5,2.5"},
    {"DecimalCommaBetweenBlanks", "1,5 2,5\n2 3\n", "1:1.5,2.5 2:2,3"},
    {"DecimalCommaInQuotes", "\"1,5\",\"2,5\"\n", "1:1.5,2.5"},
    {"TabsThatOnlyLineUp", "1,\t2\n3,\t4\n", "1:1,2 2:3,4"},
    {"StatedSeparator", "sep=|\nx|y\n1,5|2\n", "3:1.5,2"},
    {"CarriageReturnsAlone", "x,y\r1,2\r3,4", "2:1,2 3:3,4"},
    {"EmptyFieldsAtTheEnd", "1;2;\n3;4;;\n;;\n", "1:1,2 2:3,4"},
    {"QuotesInQuotes", "\"a \"\"x\"\"\",y\n1,2\n", "2:1,2"},
    {"HashInQuotes", "\"# of turns\",y\n1,2\n", "2:1,2"},
    {"TheOutputOfTable", "x,value,d1,d2\n0,1,2,3\n1,4,5,6\n", "2:0,1 3:1,4"},
    {"TheOutputOfTableInAnotherOrder", "value;d1;x\n1,5;2;0\n", "2:0,1.5"},
    {"NoLetterIsAUnit", "x,y\n-,-\n1,2\n", "3:1,2"},
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
    {"NoText", "", "0! there are no points; a point is \"x, y\""},
    {"HeaderAlone", "x,y\n", "0! there are no points"},
    {"CommentAlone", "# 1,2\n", "0! there are no points"},
    {"WordInX", "1,2\nabc,4\n", "2! the x \"abc\" is not a finite number; a point is \"x, y\""},
    {"HeaderAfterData", "1,2\nx,y\n", "2! the x \"x\" is not a finite number"},
    {"WordInY", "1,2\n3,abc\n", "2! the y \"abc\" is not a finite number"},
    {"LetterForADigit", "l,10\n2,3\n", "1! the x \"l\" is not a finite number"},
    {"LettersForDigits", "1O,O\n2,3\n", "1! the x \"1O\" is not a finite number"},
    {"WordAfterX", "1,2\n3abc,4\n", "2! the x \"3abc\" is not a finite number"},
    {"SlipInTheFirstLine", "1.2.3,4\n", "1! the x \"1.2.3\" is not a finite number"},
    {"MissingX", ",4\n", "1! the x is missing"},
    {"MissingXBetweenTabs", "1\t2\n\t4\n", "2! the x is missing"},
    {"MissingY", "1,2\n3\n", "2! the y is missing: 1 of 2 fields; a point"},
    {"MissingYAfterTheSeparator", "1,2\n3,\n", "2! the y is missing"},
    {"TwoSeparators", "1,,2\n", "1! 3 of 2 fields"},
    {"ThreeNumbers", "1,2\n3,4,5\n", "2! 3 of 2 fields; a point is \"x, y\""},
    {"DecimalCommasBetweenCommas", "1,5,2,5\n", "1! 4 of 2 fields"},
    {"ThousandsAndDecimals", "1.000,5;2\n", "1! the x \"1.000,5\" is not a finite number"},
    {"TwoDecimalMarks", "1.5;2\n2;2,5\n",
     "2! the y \"2,5\" has a decimal comma, but line 1 has a decimal point"},
    {"NaNInX", "nan,2\n", "1! the x \"nan\" is not a finite number"},
    {"InfinityInX", "1,2\n-inf,2\n", "2! the x \"-inf\" is not"},
    {"TooLargeX", "1e400,2\n", "1! the x \"1e400\" is not"},
    {"NaNInY", "1,nan\n", "1! the y \"nan\" is not"},
    {"TooLargeY", "1,-1e400\n", "1! the y \"-1e400\" is not"},
    {"TwoSigns", "+-1,2\n", "1! the x \"+-1\" is not"},
    {"HexadecimalX", "1,2\n0x10,2\n", "2! the x \"0x10\" is not"},
    {"SameX", "1,2\n3,4\n# c\n1.0,5\n", "4! the x 1 is in line 1 already; a curve has one y at each x"},
    {"BothZeros", "0,2\n-0,4\n", "2! the x 0 is in line 1 already"},
    {"ControlCharacters", "1,2\n\x01\x02,4\n", "2! the x \"??\" is not"},
    {"OpenQuote", "1,2\n\"3,4\n", "2! the quote at \"\"3,4\" is not closed"},
    {"TextAfterAQuote", "1,2\n\"3\"4,5\n", "2! \"4\" follows a closing quote"},
    {"BytesOfAnotherEncoding", "x\ny,\xE4\n1,2\n", "2! the byte 0xe4 is not UTF-8"},
    {"LongFormOfACharacter", "\xC0\xAF,\n", "1! the byte 0xc0 is not UTF-8"},
    {"OtherSeparatorThanStated", "sep=;\n1,2\n", "2! the y is missing"},
};

void PrintTo(const RefusedCase& c, std::ostream* os)
{
    *os << c.text;
}

class Refused : public testing::TestWithParam<RefusedCase> {};

TEST_P(Refused, NamesTheLineAndWhatWasExpected)
{
    EXPECT_THAT(show(GetParam().text), StartsWith(GetParam().problem));
}

INSTANTIATE_TEST_SUITE_P(PointsFile, Refused, testing::ValuesIn(kRefusedCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(PointsFile, AZeroByteIsNotANumber)
{
    EXPECT_THAT(show(std::string("1,2\n\0,4\n", 8)), StartsWith("2! the x \"?\" is not"));
}

TEST(PointsFile, ALongLineIsQuotedUpToAWholeCharacter)
{
    const std::string line = "1,2" + std::string(58, 'a') + "\xC3\xA4\xC3\xA4";
    EXPECT_THAT(show(line), HasSubstr("\"2" + std::string(58, 'a') + "...\" is not"));
}

TEST(PointsFile, NumbersAreReadToTheLastBit)
{
    const auto points =
        parsePoints("0.1 0.30000000000000004\n4.9406564584124654e-324 1.7976931348623157e308").points;
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
    const auto points = parsePoints("1e-400,0.25\n0.5,1.5\n").points;
    ASSERT_EQ(points.size(), 2u);
    EXPECT_EQ(points[0].y, 0.25);
    EXPECT_EQ(points[1].x, 0.5);
    EXPECT_EQ(points[1].y, 1.5);
}

TEST(PointsFile, AHundredThousandLinesAreRead)
{
    std::string text = "x,y\n";
    for (int i = 0; i < 100000; ++i)
        text += std::to_string(i) + ".25," + std::to_string(-i) + "\n";
    const auto points = parsePoints(text).points;
    ASSERT_EQ(points.size(), 100000u);
    EXPECT_EQ(points.back().x, 99999.25);
    EXPECT_EQ(points.back().y, -99999.0);
    EXPECT_EQ(points.back().line, 100001);
}

TEST(PointsFile, Utf16IsReadInBothOrdersWithAndWithoutItsMark)
{
    for (bool isBig : {false, true}) {
        for (bool hasMark : {false, true})
            EXPECT_EQ(show(utf16("x;y\r\n1,5;2\r\n", isBig, hasMark)), "2:1.5,2") << isBig << hasMark;
    }
    EXPECT_THAT(show(utf16("1,2", false, true) + "3"), StartsWith("0! UTF-16 text ends in the middle"));
    EXPECT_THAT(show("\xFF\xFE" + std::string("\0\xD8", 2) + utf16("1,2", false, false)),
                StartsWith("1! half a UTF-16 character, 0xd800"));
}

TEST(PointsFile, ColumnsAreChosenByNumberAndByName)
{
    const std::string text = "t;angle;lift\ns;deg;mm\n0;1;2,5\n1;2;3,5\n";
    EXPECT_EQ(show(text, {{"2", "3"}, 0}), "3:1,2.5 4:2,3.5");
    EXPECT_EQ(show(text, {{"Angle", "mm"}, 0}), "3:1,2.5 4:2,3.5");
    EXPECT_EQ(show(text, {{"3", "1"}, 0}), "3:2.5,0 4:3.5,1");
    EXPECT_THAT(show(text, {{"t", "lfit"}, 0}),
                StartsWith("0! there is no column \"lfit\"; did you mean lift?"));
    EXPECT_THAT(show(text, {{"0", "1"}, 0}), StartsWith("0! there is no column \"0\""));
    EXPECT_THAT(show(text, {{"1", "4"}, 0}), StartsWith("3! the y is missing"));
}

TEST(PointsFile, LinesAtTheStartAreSkipped)
{
    EXPECT_EQ(show("1;2;3;4\n7 8 9\n1,2\n3,4\n", {{}, 2}), "3:1,2 4:3,4");
    EXPECT_THAT(show("1,2\n", {{}, 5}), StartsWith("0! there are no points"));
}

struct RowsCase {
    const char* name;
    const char* text;
    const char* rows;
};

const RowsCase kRowsCases[] = {
    {"Commas", "90, 10, Cubic\n", "1:90,10,Cubic"},
    {"SemicolonsAndDecimalCommas", "Ende;Wert;Gesetz\n90,5;10;Cubic\n", "2:90.5,10,Cubic"},
    {"Blanks", "90 10 Cubic\n", "1:90,10,Cubic"},
    {"DecimalCommasBetweenBlanks", "90,5 10,5 Cubic\n", "1:90.5,10.5,Cubic"},
    {"Start", "x;y\n10;4\n12;10;Cubic\n", "start 10,4 3:12,10,Cubic"},
    {"ProfileInQuotes", "1,2,\"A, b\"\n", "1:1,2,A, b"},
    {"ProfileMissing", "1,2,Cubic\n3,4\n", "2! the profile is missing: 2 of 3 fields; a row is"},
    {"StartAlone", "1,2\n", "0! there are no rows"},
    {"AProfileIsNoHeader", "end,value,Cubic\n1,2,Cubic\n", "1! the end x \"end\" is not a finite number"},
    {"LetterForADigit", "l,10,Cubic\n", "1! the end x \"l\" is not a finite number"},
    {"FourFields", "1,2,Cubic,3\n", "1! 4 of 3 fields; a row is"},
};

TEST(RowsFile, EachForm)
{
    for (const RowsCase& c : kRowsCases)
        EXPECT_THAT(showRows(c.text), StartsWith(c.rows)) << c.name;
    EXPECT_EQ(showRows("Cubic;7;8\n", {{"2", "3", "1"}, 0}), "1:7,8,Cubic");
}

}  // namespace
