// SPDX-License-Identifier: MIT

// Failures of the disk during a save or a load: the file has the old or the new document,
// never a mixture, and a file that cannot be read gives false.

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <sched.h>
#include <signal.h>
#include <string>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "mfcurves/mfcurves.h"
#include "tests/support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

using mf::test::contentOf;

constexpr int kPoints = 500;  // a document of about 20 kB

class Disk : public testing::Test {
protected:
    Disk()
    {
        QelSession_c::setMotionFunctionContext(&host_);
        EXPECT_TRUE(function_.initialize());
        function_.setFunctionType(mf::FunctionType_DataPoints);
        function_.setMotionObjectType(mf::MotionObjectType_Motor);
        auto& table = static_cast<mfFunctionDataPoints_c&>(*function_.getFunctionDataPoints());
        table.setIndependentVar(mf::IndependentVariableType_Time);
        table.setMotorDependentVar(mf::MotorDriveType_Displacment);
        for (int i = 0; i < kPoints; ++i) {
            auto* const row = new mfDataPoints_c();
            row->addPoint(i, i % 7);
            table.appendDataPoint(row);
        }
        table.RegenSplineData();
    }
    ~Disk() override { QelSession_c::setMotionFunctionContext(nullptr); }

    fs::path path(const char* name) const { return folder_ / name; }

    void save(const CString& name, const fs::path& target)
    {
        function_.createXMLData(name, true, target.c_str());
    }

    // Runs `work` in another process and returns how that ended.
    static int inChild(const std::function<int()>& work)
    {
        const pid_t child = ::fork();
        if (child == 0)
            ::_exit(work());
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    mf::host::Context host_;
    mfFunctionData_c function_;
    mf::test::TemporaryFolder folder_;
};

TEST_F(Disk, SaveKilledHalfWayLeavesTheOldDocumentOrTheNewOne)
{
    const fs::path file = path("curve.xml");
    save(L"old", file);
    const std::string old = contentOf(file);
    save(L"new", path("other.xml"));
    const std::string next = contentOf(path("other.xml"));
    ASSERT_NE(old, next);

    constexpr int kKills = 1000;
    constexpr int kLongestWait = 2000;  // microseconds: a save takes about half of that
    std::mt19937 random(1);
    int foundOld = 0;
    int foundNew = 0;
    for (int kill = 0; kill < kKills; ++kill) {
        std::ofstream(file, std::ios::binary) << old;
        const pid_t child = ::fork();
        if (child == 0) {
            save(L"new", file);
            ::_exit(0);
        }
        ::usleep(static_cast<useconds_t>(random() % kLongestWait));
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);

        const std::string found = contentOf(file);
        foundOld += found == old;
        foundNew += found == next;
        ASSERT_TRUE(found == old || found == next) << "a mixture after kill " << kill;
    }
    EXPECT_EQ(foundOld + foundNew, kKills);
    EXPECT_GT(foundOld, 0);
}

TEST_F(Disk, FileThatMayNotGrowKeepsTheOldDocument)
{
    const fs::path file = path("curve.xml");
    std::ofstream(file) << "the old document";
    EXPECT_EQ(inChild([&] {
                  ::signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit{4096, 4096};
                  ::setrlimit(RLIMIT_FSIZE, &limit);
                  save(L"new", file);
                  return 0;
              }),
              0);
    EXPECT_EQ(contentOf(file), "the old document");
    EXPECT_EQ(folder_.count(), 1);
}

// If the process may mount one, a small file system really runs full.
TEST_F(Disk, FullFileSystemKeepsTheOldDocument)
{
    constexpr int kMayNotMount = 9;
    const fs::path mount = path("small");
    fs::create_directory(mount);
    const int outcome = inChild([&] {
        if (::unshare(CLONE_NEWNS) != 0 ||
            ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("tmpfs", mount.c_str(), "tmpfs", 0, "size=16k") != 0)
            return kMayNotMount;
        std::ofstream(mount / "curve.xml") << "the old document";
        save(L"new", mount / "curve.xml");
        if (contentOf(mount / "curve.xml") != "the old document")
            return 1;
        return std::distance(fs::directory_iterator(mount), {}) == 1 ? 0 : 2;
    });
    if (outcome == kMayNotMount)
        std::printf("this process may not mount a file system: a limit of the file size is used instead\n");
    else
        EXPECT_EQ(outcome, 0);
}

TEST_F(Disk, FolderInPlaceOfTheFileIsNotADocument)
{
    const fs::path folder = path("curve.xml");
    fs::create_directory(folder);
    EXPECT_FALSE(function_.readXMLData(folder.c_str(), false, ""));
    save(L"new", folder);
    EXPECT_TRUE(fs::is_directory(folder));
    EXPECT_EQ(folder_.count(), 1);
}

TEST_F(Disk, MissingFolderSavesNothing)
{
    save(L"new", path("nowhere") / "curve.xml");
    EXPECT_EQ(folder_.count(), 0);
}

TEST_F(Disk, MissingFileIsNotADocument)
{
    EXPECT_FALSE(function_.readXMLData(path("curve.xml").c_str(), false, ""));
}

TEST_F(Disk, PathOfFourThousandCharactersThatLeadsNowhere)
{
    const std::string longPath(4000, 'a');
    EXPECT_FALSE(function_.readXMLData(longPath.c_str(), false, ""));
    function_.createXMLData(L"new", true, longPath.c_str());
    EXPECT_FALSE(fs::exists(fs::path(longPath.substr(0, 200))));
}

TEST_F(Disk, PathOfFourThousandCharactersThatLeadsToTheFile)
{
    std::string longPath = folder_.path().string();
    while (longPath.size() < 4000)
        longPath += "/.";
    const fs::path file = longPath + "/curve.xml";
    save(L"far", file);
    EXPECT_TRUE(function_.readXMLData(file.c_str(), false, ""));
    EXPECT_EQ(function_.getName(), L"far");
}

// A device or a pipe is written to and not replaced.
TEST_F(Disk, DeviceStaysADevice)
{
    save(L"new", "/dev/null");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(Disk, LinkStillPointsToTheFile)
{
    save(L"old", path("curve.xml"));
    fs::create_symlink("curve.xml", path("link.xml"));
    save(L"new", path("link.xml"));
    EXPECT_TRUE(fs::is_symlink(path("link.xml")));
    EXPECT_NE(contentOf(path("curve.xml")).find("<FunctionName>new<"), std::string::npos);
}

}  // namespace
