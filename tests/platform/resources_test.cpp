// SPDX-License-Identifier: MIT

#include "mfcurves/platform/resources.h"

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace {

using mf::platform::currentResourceModule;
using mf::platform::loadResourceModule;
using mf::platform::ResourceModule;
using mf::platform::resourceString;
using mf::platform::setCurrentResourceModule;
using mf::test::TemporaryFolder;

class Resources : public testing::Test {
protected:
    ~Resources() override { setCurrentResourceModule(atStart_); }

    const ResourceModule* load(const std::string& content)
    {
        return loadResourceModule(folder_.write("mfres", content).c_str());
    }

    const TemporaryFolder folder_;
    const ResourceModule* const atStart_ = currentResourceModule();
};

TEST_F(Resources, StartWithTheBuiltInNames)
{
    ASSERT_NE(currentResourceModule(), nullptr);
    EXPECT_EQ(resourceString(1033), L"Time");
    EXPECT_EQ(resourceString(1034), L"CycleAngle");
    EXPECT_EQ(resourceString(1035), L"");
}

TEST_F(Resources, ComeFromTheModuleThatIsCurrent)
{
    const ResourceModule* const module = load("1033=Zeit\n1034=Zykluswinkel\n");
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(resourceString(1033), L"Time") << "loading makes nothing current";
    setCurrentResourceModule(module);
    EXPECT_EQ(resourceString(1033), L"Zeit");
    EXPECT_EQ(resourceString(1034), L"Zykluswinkel");
}

TEST_F(Resources, AreEmptyInANullModule)
{
    setCurrentResourceModule(nullptr);
    EXPECT_EQ(currentResourceModule(), nullptr);
    EXPECT_EQ(resourceString(1033), L"");
}

struct FileCase {
    const char* name;
    const char* content;
    const wchar_t* text;  // of number 1033
};

const FileCase kFileCases[] = {
    {"Plain", "1033=Zeit\n", L"Zeit"},
    {"WithoutLineEnd", "1033=Zeit", L"Zeit"},
    {"CarriageReturns", "1033=Zeit\r\n1034=Winkel\r\n", L"Zeit"},
    {"ByteOrderMark",
     "\xEF\xBB\xBF"
     "1033=Zeit\n",
     L"Zeit"},
    {"BeyondAscii", "1033=\xD0\x92\xD1\x80\xD0\xB5\xD0\xBC\xD1\x8F\n", L"\u0412\u0440\u0435\u043c\u044f"},
    {"EqualsInTheText", "1033=a=b\n", L"a=b"},
    {"SpacesStay", "1033= Zeit \n", L" Zeit "},
    {"EmptyText", "1033=\n", L""},
    {"LaterLineWins", "1033=first\n1033=second\n", L"second"},
    {"BadLinesAreSkipped", "; comment\n\nname=x\n=y\n12x=z\n-1033=m\n 1033=m\n1033=Zeit\n", L"Zeit"},
    {"NumberTooLarge", "99999999999999=x\n1033=Zeit\n", L"Zeit"},
    {"NothingInside", "", L""},
};

class ResourceFile : public Resources, public testing::WithParamInterface<FileCase> {};

TEST_P(ResourceFile, IsReadLineByLine)
{
    const ResourceModule* const module = load(GetParam().content);
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(module->string(1033), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Resources, ResourceFile, testing::ValuesIn(kFileCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(Resources, OfAFileThatCannotBeReadAreNull)
{
    EXPECT_EQ(loadResourceModule(folder_.wide("missing").c_str()), nullptr);
    EXPECT_EQ(loadResourceModule(folder_.wide("").c_str()), nullptr);
    EXPECT_EQ(loadResourceModule(L""), nullptr);
}

TEST_F(Resources, OfAnUnchangedFileAreTheSameModule)
{
    const ResourceModule* const first = load("1033=Zeit\n");
    EXPECT_EQ(load("1033=Zeit\n"), first);
    const ResourceModule* const changed = load("1033=Temps\n");
    EXPECT_NE(changed, first);
    EXPECT_EQ(first->string(1033), L"Zeit") << "a module stays as it was loaded";
    EXPECT_EQ(changed->string(1033), L"Temps");
}

}  // namespace
