// SPDX-License-Identifier: MIT

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "tests/documents/xmlDocumentTest.h"
#include "tests/support/longTexts.h"

// Documents that are refused, and that it never takes long to refuse one.

namespace mf::documents {
namespace {

using mf::test::repeated;
using testing::ElementsAre;
using testing::HasSubstr;

struct RefusedCase {
    const char* name;
    const char* xml;
    const char* problem;  // its beginning
};

void PrintTo(const RefusedCase& c, std::ostream* os)
{
    *os << c.xml;
}

const RefusedCase kRefusedCases[] = {
    {"Empty", "", "1:1 Document is empty"},
    {"NoMarkup", "Curve", "1:1 Start tag expected"},
    {"WrongEndTag", "<a>\n  <b>\n  </a>\n</a>", "3:7 Opening and ending tag mismatch: b line 2 and a"},
    {"CutShort", "<a><b>", "1:7 Premature end of data in tag b line 1"},
    {"TwoRoots", "<a/><b/>", "1:5 Extra content at the end of the document"},
    {"TextAfterTheRoot", "<a/>x", "1:5 Extra content at the end of the document"},
    {"AttributeTwice", "<a b='1' b='2'/>", "1:15 Attribute b redefined"},
    {"UnknownEntity", "<a>&copy;</a>", "1:10 Entity 'copy' not defined"},
    {"ForbiddenCharacter", "<a>\x01</a>", "1:4 PCDATA invalid Char value 1"},
    {"ForbiddenReference", "<a>&#0;</a>", "1:8 xmlParseCharRef: invalid xmlChar value 0"},
    {"UndeclaredPrefix", "<a><m:b/></a>", "1:8 Namespace prefix m on b is not defined"},
    {"TypeDeclaration", "<!DOCTYPE a><a/>", "1:12 A document type declaration is not allowed"},
    {"TypeDeclarationWithoutSubset", "<!DOCTYPE a SYSTEM 'http://example.invalid/a.dtd'><a/>",
     "1:50 A document type declaration is not allowed"},
    {"ExternalEntity", "<!DOCTYPE a [<!ENTITY x SYSTEM 'file:///etc/passwd'>]><a>&x;</a>",
     "1:13 A document type declaration is not allowed"},
    {"DeclarationNotFirst", " <?xml version='1.0'?><a/>",
     "1:7 XML declaration allowed only at the start of the document"},
};

class Refused : public testing::TestWithParam<RefusedCase> {};

TEST_P(Refused, ReportsWhereAndWhy)
{
    EXPECT_THAT(problemOf(GetParam().xml), testing::StartsWith(GetParam().problem));
}

INSTANTIATE_TEST_SUITE_P(Documents, Refused, testing::ValuesIn(kRefusedCases),
                         [](const auto& tested) { return tested.param.name; });

// Runs `work` and fails when it takes too long.
template <class Work>
void soon(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(Hostile, NestingUpToTheLimitIsTaken)
{
    EXPECT_THAT(textsOn(repeated("<a>", 255) + "<b>1</b>" + repeated("</a>", 255), "//a//b"),
                ElementsAre("1"));
}

TEST(Hostile, MillionNestedElementsAreRefused)
{
    soon([] {
        EXPECT_THAT(problemOf(repeated("<a>", 1000000) + repeated("</a>", 1000000)),
                    testing::EndsWith("Excessive depth in document: 256"));
    });
}

// Entities that refer to each other would grow to gigabytes.
TEST(Hostile, EntitiesOfEntitiesAreNeverExpanded)
{
    std::string xml = "<!DOCTYPE a [<!ENTITY e0 'xxxxxxxxxx'>";
    for (int i = 1; i < 30; ++i)
        xml +=
            "<!ENTITY e" + std::to_string(i) + " '" + repeated("&e" + std::to_string(i - 1) + ";", 10) + "'>";
    soon([&] {
        EXPECT_THAT(problemOf(xml + "]><a b='&e29;'>&e29;</a>"),
                    HasSubstr("A document type declaration is not allowed"));
    });
}

TEST(Hostile, AttributeThatNeverEndsIsRefused)
{
    soon([] {
        EXPECT_THAT(problemOf("<a b='" + std::string(100'000'000, 'x')),
                    HasSubstr("AttValue length too long"));
    });
}

TEST(Hostile, TextBeyondTheLimitIsRefused)
{
    soon([] {
        EXPECT_THAT(problemOf("<a>" + std::string(100'000'000, 'x') + "</a>"), HasSubstr("huge text node"));
    });
}

// Each name is looked up among the previous ones.
TEST(Hostile, MillionsOfDistinctNamesAreRefused)
{
    std::string elements;
    for (int i = 0; i < 2'000'000; ++i)
        elements += "<a" + std::to_string(i) + "/>";
    soon([&] { EXPECT_THAT(problemOf("<a>" + elements + "</a>"), HasSubstr("Too many distinct names")); });
}

// Attributes of one element are compared with each other.
TEST(Hostile, MillionsOfAttributesAreRefused)
{
    std::string attributes;
    for (int i = 0; i < 2'000'000; ++i)
        attributes += " a" + std::to_string(i) + "='1'";
    soon([&] { EXPECT_THAT(problemOf("<a" + attributes), HasSubstr("Too many attributes")); });
    soon([&] { EXPECT_THAT(problemOf("<a" + attributes + "/>"), HasSubstr("Too many attributes")); });
}

TEST(Hostile, MillionsOfPrefixesAreRefused)
{
    std::string attributes;
    for (int i = 0; i < 2'000'000; ++i)
        attributes += " xmlns:a" + std::to_string(i) + "='u'";
    soon([&] { EXPECT_THAT(problemOf("<a" + attributes + "/>"), HasSubstr("Too many attributes")); });
}

TEST(Hostile, SomeAttributesAreTaken)
{
    std::string attributes;
    for (int i = 0; i < 500; ++i)
        attributes += " a" + std::to_string(i) + "='1'";
    EXPECT_THAT(textsOn("<a" + attributes + ">t</a>", "//a"), ElementsAre("t"));
}

struct NestedTextCase {
    const char* name;
    int depth;  // elements around each piece of text
    int pieces;
    int length;  // of a piece
    const char* separator;
    bool taken;
};

void PrintTo(const NestedTextCase& c, std::ostream* os)
{
    *os << c.pieces << " texts of " << c.length << " within " << c.depth << " elements";
}

constexpr int kFree = static_cast<int>(kFreeTextReadings);

const NestedTextCase kNestedTextCases[] = {
    {"AsFarDownAsEachTextMayBeReadAgain", kMostTextReadings, 1, 9'000'000, "", true},
    {"OneElementFurther", kMostTextReadings + 1, 1, 9'000'000, "", false},
    {"LittleTextFarDown", 250, 1, kFree / 250, "", true},
    {"OneMoreCharacterFarDown", 250, 1, kFree / 250 + 1, "", false},
    {"PiecesCountTogether", 250, 2, kFree / 500 + 1, "<!--c-->", false},
    {"BlanksCount", 250, 1, -(kFree / 250 + 1), "", false},
    {"SectionsCount", 250, 2, kFree / 500 + 1, "]]><![CDATA[", false},
};

class NestedText : public testing::TestWithParam<NestedTextCase> {};

// In whatever way the texts of such a document are read, the number of bytes read
// is at most a multiple of its length.
TEST_P(NestedText, IsBoundByTheTextOfTheDocument)
{
    const NestedTextCase& c = GetParam();
    const std::string piece(static_cast<std::size_t>(std::abs(c.length)), c.length < 0 ? ' ' : 'x');
    std::string text = piece;
    for (int i = 1; i < c.pieces; ++i)
        text += c.separator + piece;
    if (c.separator[0] == ']')
        text = "<![CDATA[" + text + "]]>";
    const std::string xml = repeated("<a>", c.depth) + text + repeated("</a>", c.depth);
    if (!c.taken) {
        EXPECT_THAT(problemOf(xml), testing::EndsWith("Too much text in nested elements"));
        return;
    }
    XmlDocument document;
    ASSERT_TRUE(document.readUtf8(xml));
    std::int64_t readings = 0;
    for (const XmlNode& node : document.selectNodes("//a"))
        readings += static_cast<std::int64_t>(node.text().size());
    EXPECT_EQ(readings, std::int64_t{c.depth} * c.length);
    EXPECT_LE(readings, std::max(kFreeTextReadings, kMostTextReadings * std::int64_t{c.length}));
}

INSTANTIATE_TEST_SUITE_P(Hostile, NestedText, testing::ValuesIn(kNestedTextCases),
                         [](const auto& tested) { return tested.param.name; });

// Text in outer elements allows more text in inner ones.
TEST(Hostile, TextInTheFirstElementsPaysForTextFarDown)
{
    const std::string text(9'000'000, 'x');
    const std::string deep = repeated("<a>", 40) + text + repeated("</a>", 40);
    EXPECT_THAT(problemOf("<r>" + deep + "</r>"), HasSubstr("Too much text in nested elements"));
    XmlDocument document;
    EXPECT_TRUE(document.readUtf8("<r><b>" + text + "</b>" + deep + "</r>"));
}

TEST(Hostile, ProblemEndsTheReadOfAnEndlessFile)
{
    soon([] {
        XmlDocument document;
        EXPECT_FALSE(document.readFile(L"/dev/zero"));
    });
}

}  // namespace
}  // namespace mf::documents
