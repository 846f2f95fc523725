// SPDX-License-Identifier: MIT

#include "mfcurves/documents/xmlDocument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>
#include <string>
#include <utility>

#include "tests/documents/xmlDocumentTest.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/longTexts.h"

// Reading texts and files, and writing.

namespace mf::documents {
namespace {

using mf::test::repeated;
using mf::test::TemporaryFolder;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

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
