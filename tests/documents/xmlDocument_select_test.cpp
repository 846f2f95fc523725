// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "tests/documents/xmlDocumentTest.h"

// Finding elements, their texts and their children.

namespace mf::documents {
namespace {

using testing::ElementsAre;

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

}  // namespace
}  // namespace mf::documents
