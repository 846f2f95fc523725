// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>

#include "readCurveFixture.h"

// Expressions, and other forms of the same document.

namespace mf::test {
namespace {

// Expressions

TEST_F(ReadCurve, ExpressionTakesAnyIndependentVariable)
{
    const std::pair<const char*, const char*> cases[] = {
        {"", "over 1 ()"}, {"Time", "over 1 ()"}, {"cycleangle", "over 2 ()"}, {"Slip", "over 3 (Slip)"}};
    for (const auto& [text, expected] : cases) {
        ASSERT_TRUE(readBuffer(expressionDocument().set("IndepVar", text)));
        EXPECT_THAT(showVariables(expression()), testing::StartsWith(expected)) << text;
        EXPECT_EQ(utf8(expression().getIndepVar()), text);
    }
}

TEST_F(ReadCurve, ExpressionThatDoesNotCompileIsTaken)
{
    EXPECT_TRUE(readBuffer(expressionDocument().set("Expression", "((")));
    EXPECT_EQ(utf8(expression().getMathExpression()), "((");
    EXPECT_EQ(function.evaluate(1.0, 0), 0.0);
}

TEST_F(ReadCurve, ExpressionKeepsItsMarkup)
{
    ASSERT_TRUE(readBuffer(
        expressionDocument().set("Expression", " \n{a&amp;b} &lt; <![CDATA[<c>]]><!-- no -->*2 \n")));
    EXPECT_EQ(utf8(expression().getMathExpression()), "{a&b} < <c>*2");
}

// Forms of one document

TEST_F(ReadCurve, IndentedDocumentReadsLikeAFlatOne)
{
    for (const Document& document : {segmentDocument(), dataPointDocument(), expressionDocument()}) {
        ASSERT_TRUE(readBuffer(document));
        const std::string flat = write();
        std::string indented;
        for (const char c : document.xml())
            indented += c == '<' ? "\r\n\t <" : std::string(1, c);
        ASSERT_TRUE(readBuffer("<?xml version='1.0'?>" + indented.substr(4)));
        EXPECT_EQ(write(), flat);
    }
}

TEST_F(ReadCurve, OrderOfThePartsDoesNotCount)
{
    for (const Document& document : {segmentDocument(), dataPointDocument(), expressionDocument()}) {
        ASSERT_TRUE(readBuffer(document));
        const std::string inOrder = write();
        std::string reversed;
        for (const auto& [name, content] : document.parts())
            reversed = "<" + name + ">" + content + "</" + name + ">" + reversed;
        ASSERT_TRUE(readBuffer("<Curve>" + reversed + "</Curve>"));
        EXPECT_EQ(write(), inOrder);
    }
}

// A comment or an instruction counts only inside "Point" and "ProfileDefinition".
TEST_F(ReadCurve, CommentsBetweenThePartsChangeNothing)
{
    for (Document document : {segmentDocument(), dataPointDocument(), expressionDocument()}) {
        if (document.parts().back().first == "ProfileDefinitions")
            document.set("ProfileDefinitions", definition("Mine", lineTimes("2", "Mine")));
        ASSERT_TRUE(readBuffer(document));
        const std::string plain = write();
        std::string commented = "<!--a--><Curve><?b?>";
        for (const auto& [name, content] : document.parts()) {
            commented += "<!--c--><" + name + "><!--d-->" + content + "<!--e--></" + name + "><?f g?>";
            for (const std::string row : {"Segment", "Point", "ProfileDefinition"})
                for (std::size_t at = 0;
                     (at = commented.find("</" + row + "><" + row, at)) != std::string::npos;)
                    commented.insert(at += row.size() + 3, "<!--h-->");
        }
        ASSERT_TRUE(readBuffer(commented + "</Curve><!--i-->"));
        EXPECT_EQ(write(), plain);
    }
}

TEST_F(ReadCurve, CurveMayBeBelowAnotherRoot)
{
    EXPECT_TRUE(readBuffer("<Project><Part/>" + dataPointDocument().xml() + "</Project>"));
    EXPECT_EQ(showPoints(points()), "0.5:2 1:3");
}

TEST_F(ReadCurve, FirstNodeOfANameCounts)
{
    EXPECT_TRUE(readBuffer(
        "<All>" + dataPointDocument().xml() +
        dataPointDocument().set("FunctionName", "second").set("Points", point("5", "5")).xml() + "</All>"));
    EXPECT_EQ(showHead(function), "points type 2 object 1 data 1");
    EXPECT_EQ(showPoints(points()), "0.5:2 1:3 5:5");
}

TEST_F(ReadCurve, EncodingsOfFiles)
{
    function.setMotionObjectType(MotionObjectType_Motor);
    const std::string body = dataPointDocument().set("FunctionName", "M\xE4ndel").xml();
    ASSERT_TRUE(readFile("<?xml version='1.0' encoding='ISO-8859-1'?>" + body));
    EXPECT_EQ(utf8(function.getName()), "M\u00E4ndel");
    EXPECT_FALSE(readFile("<?xml version='1.0' encoding='UTF-8'?>" + body));
    EXPECT_FALSE(readFile(body));

    for (const bool isBig : {false, true}) {
        std::string wide = isBig ? "\xFE\xFF" : "\xFF\xFE";
        for (const char c : "<?xml version='1.0' encoding='UTF-16'?>" + body) {
            const char bytes[] = {c, '\0'};
            wide += std::string(isBig ? std::string{bytes[1], bytes[0]} : std::string{bytes[0], bytes[1]});
        }
        CString name = L"";
        function.setName(name);
        ASSERT_TRUE(readFile(wide));
        EXPECT_EQ(utf8(function.getName()), "M\u00E4ndel");
        EXPECT_EQ(showPoints(points()), "0.5:2 1:3");
    }
}

TEST_F(ReadCurve, BufferIsUtf8WhateverItDeclares)
{
    const std::string body = dataPointDocument().set("FunctionName", "M\u00E4ndel").xml();
    for (const char* encoding : {"ISO-8859-1", "UTF-16", "UTF-8", "no-such"}) {
        ASSERT_TRUE(readBuffer("<?xml version='1.0' encoding='" + std::string(encoding) + "'?>" + body));
        EXPECT_EQ(utf8(function.getName()), "M\u00E4ndel");
    }
    ASSERT_TRUE(readBuffer("\xEF\xBB\xBF" + body));
    ASSERT_TRUE(readBuffer(body + std::string("\0<trash", 7)));
    ASSERT_TRUE(readBuffer(dataPointDocument().set("FunctionName", "M\xE4ndel").xml()));
    EXPECT_EQ(utf8(function.getName()), "M\uFFFDndel");
}

}  // namespace
}  // namespace mf::test
