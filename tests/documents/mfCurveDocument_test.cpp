// SPDX-License-Identifier: MIT

#include "mfcurves/documents/mfCurveDocument.h"

#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "mfcurves/interfaces/CGeneralException.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/xmlRuntime.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using mf::platform::xmlStartCount;
using mf::test::TemporaryFolder;

// A plain class, whose loads return 16 bits.
static_assert(!std::is_polymorphic_v<mfCurveDocument_c>);
static_assert(std::is_same_v<decltype(std::declval<mfCurveDocument_c>().load()), std::int16_t>);
static_assert(std::is_same_v<decltype(std::declval<mfCurveDocument_c>().loadBuffer()), std::int16_t>);

// A document of one element "a" with that text.
void fill(mfCurveDocument_c& document, const wchar_t* text)
{
    const mf::documents::XmlNode root =
        document.appendNode(mf::documents::XmlNode(), document.document()->createElement("a"));
    document.document()->setText(root, text);
}

TEST(NewDocument, HoldsNothing)
{
    const int before = xmlStartCount();
    {
        mfCurveDocument_c document;
        EXPECT_TRUE(document.getPath().IsEmpty());
        EXPECT_FALSE(document.getFromBuffer());
        EXPECT_EQ(document.getXmlText(), "");
        EXPECT_EQ(document.document(), nullptr);
        EXPECT_FALSE(document.load());
        EXPECT_FALSE(document.loadBuffer());
    }
    EXPECT_EQ(xmlStartCount(), before);
}

TEST(NewDocument, SavesNothingAndKeepsItsText)
{
    const TemporaryFolder folder;
    mfCurveDocument_c document;
    document.setPath(folder.write("a.xml", "old").c_str());
    document.setXmlText("before");
    document.save();
    document.extractXmlText();
    EXPECT_EQ(folder.read("a.xml"), "old");
    EXPECT_EQ(document.getXmlText(), "before");
}

TEST(InitializeDocument, RaisesTheCountOfStartsEachTime)
{
    const int before = xmlStartCount();
    mfCurveDocument_c document;
    EXPECT_TRUE(document.initialize());
    EXPECT_EQ(xmlStartCount(), before + 1);
    const auto* first = document.document();
    EXPECT_NE(first, nullptr);
    EXPECT_TRUE(document.initialize());
    EXPECT_EQ(document.document(), first);
    EXPECT_EQ(xmlStartCount(), before + 2);
    EXPECT_TRUE(document.shutdown());
    EXPECT_EQ(document.document(), nullptr);
    EXPECT_TRUE(document.shutdown());
    EXPECT_EQ(xmlStartCount(), before);
}

TEST(InitializeDocument, EndOfTheObjectLeavesTheCount)
{
    const int before = xmlStartCount();
    {
        mfCurveDocument_c document;
        document.initialize();
    }
    EXPECT_EQ(xmlStartCount(), before + 1);
    mfCurveDocument_c().shutdown();
    EXPECT_EQ(xmlStartCount(), before);
}

struct BufferCase {
    const char* name;
    std::string text;
    bool taken;
    const char* read;  // text of "a"
};

void PrintTo(const BufferCase& c, std::ostream* os)
{
    *os << c.name;
}

const BufferCase kBufferCases[] = {
    {"Plain", "<a>1</a>", true, "1"},
    {"ByteOrderMark", "\xEF\xBB\xBF<a>1</a>", true, "1"},
    {"TwoByteOrderMarks", "\xEF\xBB\xBF\xEF\xBB\xBF<a>1</a>", false, ""},
    {"EndsAtAZeroByte", std::string("<a>1</a>\0<b", 11), true, "1"},
    {"ZeroByteInside", std::string("<a>1\0</a>", 9), false, ""},
    {"OtherEncodingDeclared", "<?xml version='1.0' encoding='ISO-8859-1'?><a>\u00E4</a>", true, "\u00E4"},
    {"BytesThatAreNotUtf8", "<a>\xE4</a>", true, "\uFFFD"},
    {"NotWellFormed", "<a>1</b>", false, ""},
    {"Empty", "", false, ""},
};

class LoadBuffer : public testing::TestWithParam<BufferCase> {};

TEST_P(LoadBuffer, ReadsTextAsUtf8)
{
    mfCurveDocument_c document;
    document.initialize();
    document.setXmlText(GetParam().text);
    EXPECT_EQ(document.loadBuffer(), GetParam().taken ? -1 : 0);
    const auto node = document.document()->selectSingleNode("//a");
    EXPECT_EQ(static_cast<bool>(node), GetParam().taken);
    EXPECT_EQ(node ? node.text() : "", GetParam().read);
    EXPECT_EQ(document.getXmlText(), GetParam().text);
    document.shutdown();
}

INSTANTIATE_TEST_SUITE_P(Buffers, LoadBuffer, testing::ValuesIn(kBufferCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(LoadDocument, FileThatIsNotWellFormedIsRefused)
{
    const TemporaryFolder folder;
    mfCurveDocument_c document;
    document.setPath(folder.write("a.xml", "<a>").c_str());
    document.initialize();
    EXPECT_EQ(document.load(), 0);
    document.setPath(folder.write("b.xml", "<a>1</a>").c_str());
    EXPECT_EQ(document.load(), -1);
    document.setPath(CString((folder / "none.xml").c_str()));
    EXPECT_FALSE(document.load());
    EXPECT_FALSE(document.document()->selectSingleNode("//a"));
    document.shutdown();
}

TEST(SaveDocument, WhatWasSavedLoads)
{
    const TemporaryFolder folder;
    mfCurveDocument_c document;
    document.setPath(CString((folder / "a.xml").c_str()));
    document.initialize();
    fill(document, L"\u00E4");
    document.save();
    EXPECT_EQ(folder.read("a.xml"), "<a>\u00E4</a>\n");
    EXPECT_TRUE(document.load());
    EXPECT_EQ(document.document()->selectSingleNode("//a").text(), "\u00E4");
    document.shutdown();
}

TEST(SaveDocument, WithoutNodesTheFileIsEmpty)
{
    const TemporaryFolder folder;
    mfCurveDocument_c document;
    document.setPath(folder.write("a.xml", "old").c_str());
    document.initialize();
    document.save();
    EXPECT_EQ(folder.read("a.xml"), "");
    document.extractXmlText();
    EXPECT_EQ(document.getXmlText(), "");
    document.shutdown();
}

TEST(SaveDocument, FailureOfWritingIsNotReported)
{
    const TemporaryFolder folder;
    folder.write("old.xml", "old");
    mfCurveDocument_c document;
    document.initialize();
    fill(document, L"1");
    for (const auto& path : {folder / "no-folder/a.xml", folder.path(), std::filesystem::path()}) {
        document.setPath(CString(path.c_str()));
        document.save();
    }
    document.shutdown();
    std::vector<std::string> left;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        left.push_back(entry.path().filename().string());
    EXPECT_THAT(left, testing::ElementsAre("old.xml"));
    EXPECT_EQ(folder.read("old.xml"), "old");
}

TEST(ExtractText, PassesThroughTheNarrowEncoding)
{
    mfCurveDocument_c document;
    document.initialize();
    fill(document, L"\u00E4");
    document.extractXmlText();
    EXPECT_EQ(document.getXmlText(), "<a>\u00E4</a>\n");

    // With a narrow encoding of one byte per character the text is not UTF-8, whatever
    // it declares.
    mf::platform::setNarrowEncoder([](const wchar_t* text, int length, char* buffer, int, std::uint32_t&) {
        for (int i = 0; i < length; ++i)
            buffer[i] = static_cast<char>(text[i]);
        return length;
    });
    document.extractXmlText();
    mf::platform::setNarrowEncoder({});
    EXPECT_EQ(document.getXmlText(), "<a>\xE4</a>\n");
    EXPECT_TRUE(document.loadBuffer());
    EXPECT_EQ(document.document()->selectSingleNode("//a").text(), "\uFFFD");
    document.shutdown();
}

TEST(ExtractText, FailureOfTheEncodingTravels)
{
    mfCurveDocument_c document;
    document.initialize();
    fill(document, L"1");
    document.setXmlText("before");
    mf::platform::setNarrowEncoder([](const wchar_t*, int, char*, int, std::uint32_t& error) {
        error = 5;
        return 0;
    });
    EXPECT_THROW(document.extractXmlText(), CGeneralException);
    mf::platform::setNarrowEncoder({});
    EXPECT_EQ(document.getXmlText(), "before");
    document.shutdown();
}

}  // namespace
