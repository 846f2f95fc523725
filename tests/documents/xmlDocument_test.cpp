// SPDX-License-Identifier: MIT

#include "mfcurves/documents/xmlDocument.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/TemporaryFolder.h"

namespace mf::documents {
namespace {

using mf::test::TemporaryFolder;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// The texts of all elements on a path.
std::vector<std::string> textsOn(const std::string& xml, const char* path)
{
    XmlDocument document;
    EXPECT_TRUE(document.readUtf8(xml)) << document.problem().message;
    std::vector<std::string> texts;
    for (const XmlNode& node : document.selectNodes(path))
        texts.push_back(node.text());

    const XmlNode first = document.selectSingleNode(path);
    EXPECT_EQ(first ? first.text() : "", texts.empty() ? "" : texts.front());
    return texts;
}

std::string problemOf(const std::string& xml)
{
    XmlDocument document;
    EXPECT_FALSE(document.readUtf8(xml));
    EXPECT_FALSE(document.selectSingleNode("//Curve"));
    const XmlProblem& problem = document.problem();
    return std::to_string(problem.line) + ":" + std::to_string(problem.column) + " " + problem.message;
}

// Runs `work` and fails when it takes too long.
template <class Work>
void soon(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

struct SelectCase {
    const char* name;
    const char* xml;
    const char* path;
    std::vector<std::string> texts;
};

void PrintTo(const SelectCase& c, std::ostream* os)
{
    *os << c.path << " in " << c.xml;
}

const SelectCase kSelectCases[] = {
    {"Root", "<Curve>a</Curve>", "//Curve", {"a"}},
    {"ChildOfTheRoot", "<Curve><A>1</A><B>2</B></Curve>", "//Curve//B", {"2"}},
    {"CurveBelowAnotherRoot", "<R><Curve><A>1</A></Curve></R>", "//Curve//A", {"1"}},
    {"AnyDepthBetweenTheNames", "<Curve><Q><A><Q><B>1</B></Q></A></Q></Curve>", "//Curve//A//B", {"1"}},
    {"NameIsNotItsOwnAncestor", "<Curve><A>1</A></Curve>", "//Curve//A//A", {}},
    {"NameBelowItself", "<Curve><A>x<A>1</A></A></Curve>", "//Curve//A//A", {"1"}},
    {"AllInDocumentOrder",
     "<Curve><P><A>1</A></P><A>no</A><P><Q><A>2</A></Q><A>3</A></P></Curve>",
     "//Curve//P//A",
     {"1", "2", "3"}},
    {"NestedOnesCountEach", "<Curve><P>1<P>2</P></P></Curve>", "//Curve//P", {"12", "2"}},
    {"NamesInTheWrongOrder", "<A><Curve><B>1</B></Curve></A>", "//Curve//A//B", {}},
    {"OrderFoundLowerDown", "<A><Curve><A><B>1</B></A></Curve></A>", "//Curve//A//B", {"1"}},
    // The first ancestor A matches; a second one below it does not matter.
    {"NameRepeatedOnTheWay", "<Curve><A><A><B>1</B></A><B>2</B></A></Curve>", "//Curve//A//B", {"1", "2"}},
    {"SiblingOfAMatchedName", "<Curve><A><C/></A><B>1</B></Curve>", "//Curve//A//B", {}},
    {"AfterAMatchedName",
     "<R><Curve><A/></Curve><A>no</A><Curve><A>1</A></Curve></R>",
     "//Curve//A",
     {"", "1"}},
    {"CaseCounts", "<Curve><a>1</a></Curve>", "//Curve//A", {}},
    {"LongerNameIsAnother", "<Curve><AB>1</AB></Curve>", "//Curve//A", {}},
    {"PrefixedNameIsAnother", "<Curve xmlns:m='urn:m'><m:A>1</m:A></Curve>", "//Curve//A", {}},
    {"DefaultNamespaceMatchesNothing", "<Curve xmlns='urn:m'><A>1</A></Curve>", "//Curve//A", {}},
    {"NamespaceTakenBack", "<R xmlns='urn:m'><Curve xmlns=''><A>1</A></Curve></R>", "//Curve//A", {"1"}},
    {"AttributesAreNoElements", "<Curve A='1'/>", "//Curve//A", {}},
    {"CommentsHoldNoElements", "<Curve><!-- <A>1</A> --></Curve>", "//Curve//A", {}},
    {"SectionsHoldNoElements", "<Curve><![CDATA[<A>1</A>]]></Curve>", "//Curve//A", {}},
    {"NothingIsFoundAfterTheRoot", "<Curve/><!-- end -->", "//Curve//A", {}},
    {"InstructionsAreNoElements", "<Curve><?A 1?></Curve>", "//Curve//A", {}},
};

class Select : public testing::TestWithParam<SelectCase> {};

TEST_P(Select, FindsTheElementsOnThePath)
{
    EXPECT_EQ(textsOn(GetParam().xml, GetParam().path), GetParam().texts);
}

INSTANTIATE_TEST_SUITE_P(Paths, Select, testing::ValuesIn(kSelectCases),
                         [](const auto& tested) { return tested.param.name; });

// The slow and obvious search: for every element, all ways to choose ancestors.
bool isOnPath(const std::vector<std::string>& ancestors, const std::vector<std::string>& names,
              std::size_t from, std::size_t name)
{
    if (name == names.size())
        return true;
    for (std::size_t i = from; i < ancestors.size(); ++i)
        if (ancestors[i] == names[name] && isOnPath(ancestors, names, i + 1, name + 1))
            return true;
    return false;
}

// All trees of four elements named A or B, by the depth of each element.
TEST(SelectExhaustively, AgreesWithTheObviousSearch)
{
    const std::vector<std::vector<std::string>> paths = {
        {"A"}, {"B"}, {"A", "A"}, {"A", "B"}, {"B", "A"}, {"A", "B", "A"}, {"A", "A", "B"}, {"B", "B", "B"}};
    int trees = 0;
    for (int depths = 0; depths < 64; ++depths) {
        const int depth[] = {0, 1, 1 + depths % 4, 1 + depths / 4 % 4, 1 + depths / 16};
        bool isTree = true;
        for (int i = 1; i < 5; ++i)
            isTree = isTree && depth[i] <= depth[i - 1] + 1;
        if (!isTree)
            continue;
        for (int names = 0; names < 32; ++names) {
            ++trees;
            std::string xml;
            std::vector<std::string> open;
            std::vector<std::pair<std::vector<std::string>, int>> elements;  // ancestors and itself; number
            for (int i = 0; i < 5; ++i) {
                while (open.size() > static_cast<std::size_t>(depth[i])) {
                    xml += "</" + open.back() + ">";
                    open.pop_back();
                }
                open.push_back((names >> i & 1) != 0 ? "A" : "B");
                xml += "<" + open.back() + "><n" + std::to_string(i) + "/>";
                elements.emplace_back(open, i);
            }
            for (; !open.empty(); open.pop_back())
                xml += "</" + open.back() + ">";

            XmlDocument document;
            ASSERT_TRUE(document.readUtf8(xml)) << xml;
            for (const auto& path : paths) {
                std::string joined;
                for (const std::string& name : path)
                    joined += "//" + name;
                int expected = 0;
                for (const auto& [line, number] : elements) {
                    const std::vector<std::string> above(line.begin(), line.end() - 1);
                    const std::vector<std::string> wanted(path.begin(), path.end() - 1);
                    expected += line.back() == path.back() && isOnPath(above, wanted, 0, 0);
                }
                EXPECT_EQ(document.selectNodes(joined).size(), expected) << joined << " in " << xml;
            }
        }
    }
    EXPECT_GT(trees, 200);
}

struct TextCase {
    const char* name;
    const char* inside;
    const char* text;
};

void PrintTo(const TextCase& c, std::ostream* os)
{
    *os << c.inside;
}

const TextCase kTextCases[] = {
    {"Plain", "abc", "abc"},
    {"Empty", "", ""},
    {"OneBlank", " ", ""},
    {"TrimmedAtBothEnds", " \t\r\n a  b \n ", "a  b"},
    {"OtherSpacesStay", "\u00A0a\u00A0", "\u00A0a\u00A0"},
    {"References", "&lt;&amp;&gt;&quot;&apos;&#65;&#x42;", "<&>\"'AB"},
    {"WrittenSpacesAreTrimmedToo", "&#32;a&#32;", "a"},
    {"Section", "<![CDATA[<a> & b]]>", "<a> & b"},
    {"SectionAmongText", "a<![CDATA[b]]>c", "abc"},
    {"CommentsAreLeftOut", "a<!-- no -->b", "ab"},
    {"InstructionsAreLeftOut", "a<?no no?>b", "ab"},
    {"ElementsBelowCount", "a<q>b<r>c</r></q>d", "abcd"},
    {"BlanksInTheMiddleStay", "<q>a</q> <q>b</q>", "a b"},
    {"BeyondAscii", "\u00E4\u4E2D\U0001F600", "\u00E4\u4E2D\U0001F600"},
};

class Text : public testing::TestWithParam<TextCase> {};

TEST_P(Text, JoinsAndTrimsTheTextsBelow)
{
    EXPECT_THAT(textsOn(std::string("<T>") + GetParam().inside + "</T>", "//T"),
                ElementsAre(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(Elements, Text, testing::ValuesIn(kTextCases),
                         [](const auto& tested) { return tested.param.name; });

struct ChildrenCase {
    const char* name;
    const char* inside;
    const char* kinds;  // one letter per child: e an element, - something else
};

void PrintTo(const ChildrenCase& c, std::ostream* os)
{
    *os << c.inside;
}

const ChildrenCase kChildrenCases[] = {
    {"None", "", ""},
    {"Elements", "<a/><b/>", "ee"},
    {"Indentation", "\n  <a/>\n  <b/>\n", "ee"},
    {"OnlyBlanks", " \n ", ""},
    {"Text", "t<a/>", "-e"},
    {"TextAmongBlanks", " t <a/>", "-e"},
    {"Comment", "<!-- c --><a/>", "-e"},
    {"CommentAmongBlanks", " <!-- c --> <a/> <!-- d --> ", "-e-"},
    {"Instruction", "<?p?><a/>", "-e"},
    {"Section", "<![CDATA[t]]><a/>", "-e"},
    {"BlankSection", "<![CDATA[ ]]><a/>", "-e"},
    {"WrittenBlank", "&#32;<a/>", "e"},
};

class Children : public testing::TestWithParam<ChildrenCase> {};

TEST_P(Children, TakePositionsInDocumentOrder)
{
    XmlDocument document;
    ASSERT_TRUE(document.readUtf8(std::string("<T>") + GetParam().inside + "</T>"));
    std::string kinds;
    for (XmlNode child = document.selectSingleNode("//T").firstChild(); child; child = child.nextSibling()) {
        kinds += child.isElement() ? 'e' : '-';
        EXPECT_FALSE(child.firstChild());
    }
    EXPECT_EQ(kinds, GetParam().kinds);
}

INSTANTIATE_TEST_SUITE_P(Nodes, Children, testing::ValuesIn(kChildrenCases),
                         [](const auto& tested) { return tested.param.name; });

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

std::string repeated(const std::string& text, int count)
{
    std::string all;
    all.reserve(text.size() * static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
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

TEST(ReadUtf8, IgnoresTheDeclaredEncoding)
{
    EXPECT_THAT(textsOn("<?xml version='1.0' encoding='UTF-16'?><a>\u00E4</a>", "//a"),
                ElementsAre("\u00E4"));
    EXPECT_THAT(textsOn("<?xml version='1.0' encoding='no-such'?><a>\u00E4</a>", "//a"),
                ElementsAre("\u00E4"));
}

TEST(ReadUtf8, ReplacesWhatIsNotUtf8)
{
    EXPECT_THAT(textsOn("<a>\xFF\xC3(\xE2\x82</a>", "//a"), ElementsAre("\uFFFD\uFFFD(\uFFFD\uFFFD"));
    // A byte order mark of another encoding is text before the root.
    EXPECT_THAT(problemOf("\xFF\xFE<a/>"), HasSubstr("Start tag expected"));
}

TEST(ReadUtf8, TakesCharactersAcrossBlocks)
{
    for (int shift = 0; shift < 8; ++shift) {
        const std::string text =
            std::string(static_cast<std::size_t>(shift), 'x') + repeated("\u00E4\u4E2D\U0001F600", 3000);
        EXPECT_THAT(textsOn("<a>" + text + "</a>", "//a"), ElementsAre(text));
    }
}

TEST(ReadFile, FollowsTheDeclaredEncoding)
{
    const TemporaryFolder folder;
    const auto read = [&](const std::string& bytes) {
        XmlDocument document;
        EXPECT_TRUE(document.readFile(folder.write("a.xml", bytes).c_str())) << document.problem().message;
        const XmlNode node = document.selectSingleNode("//a");
        return node ? node.text() : "";
    };
    EXPECT_EQ(read("<a>\u00E4</a>"), "\u00E4");
    EXPECT_EQ(read("\xEF\xBB\xBF<a>\u00E4</a>"), "\u00E4");
    EXPECT_EQ(read("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE4</a>"), "\u00E4");

    std::string wide;
    for (const char16_t c : std::u16string(u"<?xml version='1.0' encoding='UTF-16'?><a>\u00E4\u4E2D</a>")) {
        wide += static_cast<char>(c & 0xFF);
        wide += static_cast<char>(c >> 8);
    }
    EXPECT_EQ(read("\xFF\xFE" + wide), "\u00E4\u4E2D");
    for (std::size_t i = 0; i < wide.size(); i += 2)
        std::swap(wide[i], wide[i + 1]);
    EXPECT_EQ(read("\xFE\xFF" + wide), "\u00E4\u4E2D");
}

TEST(ReadFile, IsStrictAboutItsEncoding)
{
    const TemporaryFolder folder;
    const auto problem = [&](const std::string& bytes) {
        XmlDocument document;
        EXPECT_FALSE(document.readFile(folder.write("a.xml", bytes).c_str()));
        EXPECT_FALSE(document.selectSingleNode("//a"));
        return document.problem().message;
    };
    EXPECT_THAT(problem("<a>\xE4</a>"), HasSubstr("not proper UTF-8"));
    EXPECT_THAT(problem("<a>" + std::string(10000, 'x') + "\xE4</a>"), HasSubstr("not proper UTF-8"));
    EXPECT_THAT(problem("<?xml version='1.0' encoding='no-such'?><a/>"), HasSubstr("Unsupported encoding"));
    EXPECT_THAT(problem("\xFF\xFE<\0a\0/\0>"), testing::Not(IsEmpty()));
    EXPECT_THAT(problem("<?xml version='1.0' encoding='UTF-16'?><a/>"), testing::Not(IsEmpty()));
    // Bad bytes after the root count as well.
    EXPECT_THAT(problem("<a/>\xE4"), testing::Not(IsEmpty()));
    EXPECT_THAT(problem("<a/>" + std::string(10000, ' ') + "\xE4"), testing::Not(IsEmpty()));
}

TEST(ReadFile, ZeroBytesAreRefused)
{
    const TemporaryFolder folder;
    const std::string zero(1, '\0');
    for (const std::string& bytes :
         {zero, "<a>" + zero + "</a>", "<a b='" + zero + "'/>", "<a/>" + zero, "<a/>" + zero + "<b",
          "<a/>" + std::string(10000, ' ') + zero, zero + "<a/>"}) {
        XmlDocument document;
        EXPECT_FALSE(document.readFile(folder.write("a.xml", bytes).c_str())) << bytes;
        EXPECT_FALSE(document.problem().message.empty());
    }
}

TEST(ReadFile, PathsArePlainNames)
{
    const TemporaryFolder folder;
    for (const char* name : {"a%20b.xml", "file:a.xml", "a#b?c.xml", "\u00E4.xml", "a b.xml"}) {
        XmlDocument document;
        EXPECT_TRUE(document.readFile(folder.write(name, "<a/>").c_str())) << name;
    }
    XmlDocument document;
    EXPECT_FALSE(document.readFile(CString((folder / "a").c_str())));
    EXPECT_EQ(document.problem().message, "The file cannot be opened: No such file or directory");
    EXPECT_FALSE(document.readFile(CString(folder.path().c_str())));
    EXPECT_EQ(document.problem().message, "The file cannot be read to its end: Is a directory");
    EXPECT_FALSE(document.readFile(L""));
    EXPECT_FALSE(document.readFile(L"-"));
}

TEST(Read, ReplacesTheContentOfTheDocument)
{
    XmlDocument document;
    ASSERT_TRUE(document.readUtf8("<a/>"));
    ASSERT_TRUE(document.readUtf8("<b/>"));
    EXPECT_FALSE(document.selectSingleNode("//a"));
    EXPECT_TRUE(document.selectSingleNode("//b"));
    EXPECT_FALSE(document.readUtf8("<c"));
    EXPECT_FALSE(document.selectSingleNode("//b"));
    ASSERT_TRUE(document.readUtf8("<c/>"));
    EXPECT_THAT(document.problem().message, IsEmpty());
}

// The host's handler for errors of the XML engine does not change. These documents
// have no document type, so nothing is reported about validity.
TEST(Read, AcceptsIdentifiersAndNamespaces)
{
    for (const char* xml : {"<a><b xml:id='1 2'/></a>", "<a><b xml:id='q'/><b xml:id='q'/></a>",
                            "<a xmlns:m='relative'><b/></a>"}) {
        XmlDocument document;
        EXPECT_TRUE(document.readUtf8(xml)) << xml;
        EXPECT_TRUE(document.selectSingleNode("//b")) << xml;
    }
}

TEST(Read, DoesNotChangeTheErrorHandlerOfTheThread)
{
    int context = 0;
    const auto handler = [](void* counter, auto*) { ++*static_cast<int*>(counter); };
    xmlSetStructuredErrorFunc(&context, handler);
    XmlDocument document;
    EXPECT_FALSE(document.readUtf8("<c"));
    EXPECT_EQ(xmlStructuredErrorContext, &context);
    EXPECT_EQ(context, 0);
    {
        const SilentEngine silent;
        EXPECT_NE(xmlStructuredErrorContext, &context);
        XmlDocument other;
        EXPECT_FALSE(other.readUtf8("<c"));
        EXPECT_NE(xmlStructuredErrorContext, &context);
    }
    EXPECT_EQ(xmlStructuredErrorContext, &context);
    EXPECT_EQ(context, 0);
    xmlSetStructuredErrorFunc(nullptr, nullptr);
}

TEST(Serialise, DocumentWithoutNodesIsTheEmptyText)
{
    EXPECT_EQ(XmlDocument().serialise(), "");
}

TEST(Serialise, WritesNodesUnchanged)
{
    XmlDocument document;
    document.append(XmlNode(), document.createProcessingInstruction("xml", "version='1.0' encoding='UTF-8'"));
    const XmlNode root = document.append(XmlNode(), document.createElement("a"));
    document.append(root, document.createElement("b"));
    document.setText(document.append(root, document.createElement("c")), L" ");
    document.setText(document.append(root, document.createElement("d")), L"");
    const XmlNode e = document.append(root, document.createElement("e"));
    document.setAttribute(e, "ID", L"1<\"&");
    EXPECT_EQ(document.serialise(),
              "<?xml version='1.0' encoding='UTF-8'?>\n"
              "<a><b/><c> </c><d/><e ID=\"1&lt;&quot;&amp;\"/></a>\n");
}

struct WrittenTextCase {
    const char* name;
    std::wstring text;
    const char* written;
    const char* read;
};

void PrintTo(const WrittenTextCase& c, std::ostream* os)
{
    *os << c.written;
}

const WrittenTextCase kWrittenTextCases[] = {
    {"Markup", L"a<b>&c;\"'", "a&lt;b&gt;&amp;c;\"'", "a<b>&c;\"'"},
    {"EndOfASection", L"]]>", "]]&gt;", "]]>"},
    {"LooksLikeAReference", L"&#65;&amp;", "&amp;#65;&amp;amp;", "&#65;&amp;"},
    {"LineEnds", L"a\r\nb\tc", "a&#13;\nb\tc", "a\r\nb\tc"},
    {"BeyondAscii", L"\u00E4\u4E2D\U0001F600", "\u00E4\u4E2D\U0001F600", "\u00E4\u4E2D\U0001F600"},
    {"ForbiddenCharacters",
     L"a\x01\x1F\xFFFE\xFFFF"
     L"b",
     "a\uFFFD\uFFFD\uFFFD\uFFFDb", "a\uFFFD\uFFFD\uFFFD\uFFFDb"},
    {"HalfOfAPair",
     L"a\xD800"
     L"b",
     "a\uFFFDb", "a\uFFFDb"},
    {"ZeroInTheMiddle", std::wstring(L"a\0b", 3), "a\uFFFDb", "a\uFFFDb"},
};

class WrittenText : public testing::TestWithParam<WrittenTextCase> {};

TEST_P(WrittenText, ReadsBack)
{
    XmlDocument document;
    const XmlNode root = document.append(XmlNode(), document.createElement("a"));
    document.setText(root, CString(GetParam().text));
    const std::string text = document.serialise();
    EXPECT_EQ(text, std::string("<a>") + GetParam().written + "</a>\n");
    EXPECT_THAT(textsOn(text, "//a"), ElementsAre(GetParam().read));
}

INSTANTIATE_TEST_SUITE_P(Texts, WrittenText, testing::ValuesIn(kWrittenTextCases),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace mf::documents
