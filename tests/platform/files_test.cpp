// SPDX-License-Identifier: MIT

#include "mfcurves/platform/files.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

#include "tests/support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;
using mf::platform::fileStem;
using mf::platform::isReadable;
using mf::platform::readFile;
using mf::platform::replaceFile;
using mf::test::TemporaryFolder;

mode_t rightsOf(const fs::path& path)
{
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
}

// The superuser may write anywhere, so a write cannot be refused.
bool rightsBind()
{
    return ::geteuid() != 0;
}

TEST(IsReadable, CountsFilesAndFolders)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(isReadable(folder.write("profile.txt", "").c_str()));
    EXPECT_TRUE(isReadable(folder.wide("").c_str()));
    EXPECT_FALSE(isReadable(folder.wide("missing").c_str()));
    EXPECT_FALSE(isReadable(L""));
}

TEST(ReadFile, ReturnsEveryByte)
{
    const TemporaryFolder folder;
    std::string content;
    for (int i = 0; i < 200000; ++i)
        content += static_cast<char>(i % 256);
    EXPECT_EQ(readFile(folder.write("bytes", content).c_str()), content);
    EXPECT_EQ(readFile(folder.write("none", "").c_str()), "");
    const std::string block(65536, 'x');
    EXPECT_EQ(readFile(folder.write("block", block).c_str()), block);
}

TEST(ReadFile, TakesNamesBeyondAscii)
{
    const TemporaryFolder folder;
    EXPECT_EQ(readFile(folder.write("\xC3\xA9\xE2\x82\xAC", "inside").c_str()), "inside");
}

TEST(ReadFile, ReturnsNothingForAFolderOrAMissingFile)
{
    const TemporaryFolder folder;
    EXPECT_EQ(readFile(folder.wide("").c_str()), std::nullopt);
    EXPECT_EQ(readFile(folder.wide("missing").c_str()), std::nullopt);
}

TEST(ReplaceFile, MakesANewFileWithTheRightsOfAnyNewFile)
{
    const TemporaryFolder folder;
    const mode_t mask = ::umask(027);
    EXPECT_TRUE(replaceFile(folder.wide("new").c_str(), "content"));
    ::umask(mask);
    EXPECT_EQ(folder.read("new"), "content");
    EXPECT_EQ(rightsOf(folder / "new"), 0640u);
    EXPECT_EQ(folder.count(), 1);
}

TEST(ReplaceFile, PutsNewContentInPlaceOfTheOld)
{
    const TemporaryFolder folder;
    const std::wstring path = folder.write("curve.xml", "a long old content");
    EXPECT_TRUE(replaceFile(path.c_str(), "new"));
    EXPECT_EQ(folder.read("curve.xml"), "new");
    EXPECT_TRUE(replaceFile(path.c_str(), ""));
    EXPECT_EQ(folder.read("curve.xml"), "");
    EXPECT_EQ(folder.count(), 1);
}

TEST(ReplaceFile, KeepsTheRightsOfTheOldFile)
{
    const TemporaryFolder folder;
    const std::wstring path = folder.write("curve.xml", "old");
    for (const mode_t rights : {0600u, 0664u, 0777u}) {
        ASSERT_EQ(::chmod((folder / "curve.xml").c_str(), rights), 0);
        EXPECT_TRUE(replaceFile(path.c_str(), "new"));
        EXPECT_EQ(rightsOf(folder / "curve.xml"), rights);
    }
}

TEST(ReplaceFile, FollowsALink)
{
    const TemporaryFolder folder;
    folder.write("real", "old");
    fs::create_symlink(folder / "real", folder / "link");
    EXPECT_TRUE(replaceFile(folder.wide("link").c_str(), "new"));
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(folder.read("real"), "new");
}

TEST(ReplaceFile, LeavesAFolderInPlace)
{
    const TemporaryFolder folder;
    fs::create_directory(folder / "curve.xml");
    EXPECT_FALSE(replaceFile(folder.wide("curve.xml").c_str(), "new"));
    EXPECT_TRUE(fs::is_directory(folder / "curve.xml"));
    EXPECT_EQ(folder.count(), 1);
}

TEST(ReplaceFile, WritesIntoAPipeInPlace)
{
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    std::string read;
    std::thread reader([&] { read = folder.read("pipe"); });
    EXPECT_TRUE(replaceFile(folder.wide("pipe").c_str(), "new"));
    reader.join();
    EXPECT_EQ(read, "new");
    EXPECT_TRUE(fs::is_fifo(folder / "pipe"));
    EXPECT_EQ(folder.count(), 1);
}

// More than the buffer of a pipe, and a signal whenever the rest has to wait.
TEST(ReplaceFile, GoesOnWritingAfterASignal)
{
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    const int pipe = ::open((folder / "pipe").c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(pipe, 0);
    struct sigaction ignoring {};
    struct sigaction before {};
    ignoring.sa_handler = [](int) {};  // without SA_RESTART: a waiting call ends
    ASSERT_EQ(::sigaction(SIGUSR1, &ignoring, &before), 0);

    const std::string content(500'000, 'x');
    std::string read;
    const pthread_t writer = ::pthread_self();
    std::thread reader([&] {
        for (int i = 0; i < 20; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
            ::pthread_kill(writer, SIGUSR1);
        }
        char block[65536];
        while (read.size() < content.size()) {
            const ssize_t got = ::read(pipe, block, sizeof block);
            if (got == 0)
                break;  // the writer has finished
            read.append(block, got > 0 ? static_cast<std::size_t>(got) : 0);
        }
    });
    EXPECT_TRUE(replaceFile(folder.wide("pipe").c_str(), content));
    reader.join();
    ::sigaction(SIGUSR1, &before, nullptr);
    ::close(pipe);
    EXPECT_EQ(read, content);
}

TEST(ReplaceFile, LeavesADeviceInPlace)
{
    EXPECT_TRUE(replaceFile(L"/dev/null", "new"));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_FALSE(replaceFile(L"/dev/full", "new"));
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

TEST(ReplaceFile, LeavesASocketInPlace)
{
    const TemporaryFolder folder;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = (folder / "socket").string();
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(address.sun_path, path.size());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_FALSE(replaceFile(folder.wide("socket").c_str(), "new"));
    EXPECT_TRUE(fs::is_socket(folder / "socket"));
    EXPECT_EQ(folder.count(), 1);
    ::close(socket);
}

TEST(ReplaceFile, LeavesTheOldFileWhereTheNewOneDoesNotFit)
{
    const TemporaryFolder folder;
    const std::wstring path = folder.write("curve.xml", "old");
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{4096, before.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool replaced = replaceFile(path.c_str(), std::string(5000, 'x'));
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_FALSE(replaced);
    EXPECT_EQ(folder.read("curve.xml"), "old");
    EXPECT_EQ(folder.count(), 1);
}

TEST(ReplaceFile, WritesUnderAnUnusedName)
{
    const TemporaryFolder folder;
    const std::string start = ".mfcurves-" + std::to_string(::getpid()) + "-";
    for (int i = 0; i < 500; ++i)
        folder.write(start + std::to_string(i), "mine");
    EXPECT_TRUE(replaceFile(folder.wide("curve.xml").c_str(), "new"));
    EXPECT_EQ(folder.read("curve.xml"), "new");
    for (int i = 0; i < 500; ++i)
        EXPECT_EQ(folder.read(start + std::to_string(i)), "mine");
    EXPECT_EQ(folder.count(), 501);
}

TEST(ReplaceFile, FailsWhereThereIsNoFolder)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(replaceFile(folder.wide("missing/curve.xml").c_str(), "new"));
    EXPECT_FALSE(replaceFile(L"", "new"));
    EXPECT_EQ(folder.count(), 0);
}

TEST(ReplaceFile, LeavesTheOldFileInAFolderThatCannotBeWritten)
{
    const TemporaryFolder folder;
    const std::wstring path = folder.write("curve.xml", "old");
    if (!rightsBind()) {
        // Rights do not stop the superuser, so /proc is used, in which no user can create
        // a file.
        EXPECT_FALSE(replaceFile(L"/proc/mfcurves_curve.xml", "new"));
        return;
    }
    fs::permissions(folder.path(), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_FALSE(replaceFile(path.c_str(), "new"));
    fs::permissions(folder.path(), fs::perms::owner_all);
    EXPECT_EQ(folder.read("curve.xml"), "old");
    EXPECT_EQ(folder.count(), 1);
}

// The superuser becomes another user for a while.
class AsNobody {
public:
    AsNobody()
    {
        if (!rightsBind()) {
            EXPECT_EQ(::setresuid(kNobody, kNobody, 0), 0);
        }
    }
    ~AsNobody()
    {
        if (::geteuid() == kNobody) {
            EXPECT_EQ(::setresuid(0, 0, 0), 0);
        }
    }
    AsNobody(const AsNobody&) = delete;
    AsNobody& operator=(const AsNobody&) = delete;

private:
    static constexpr uid_t kNobody = 65534;
};

TEST(ReplaceFile, LeavesAFileThatMayNotBeWritten)
{
    const TemporaryFolder folder;
    const std::wstring path = folder.write("curve.xml", "old");
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(folder / "curve.xml", fs::perms::owner_read | fs::perms::others_read);
    {
        const AsNobody nobody;
        EXPECT_FALSE(replaceFile(path.c_str(), "new"));
    }
    EXPECT_EQ(folder.read("curve.xml"), "old");
    EXPECT_EQ(folder.count(), 1);
}

// A reader during the replacement finds the old or the new content, complete.
TEST(ReplaceFile, ShowsNoMixtureToAReader)
{
    const TemporaryFolder folder;
    const std::string contents[] = {std::string(100000, 'a'), std::string(70000, 'b')};
    const std::wstring path = folder.write("curve.xml", contents[0]);
    std::atomic<bool> done = false;
    int mixtures = 0;
    int looks = 0;
    std::thread reader([&] {
        while (!done || looks == 0) {
            const auto seen = readFile(path.c_str());
            ++looks;
            mixtures += seen != contents[0] && seen != contents[1];
        }
    });
    for (int i = 0; i < 50; ++i)
        EXPECT_TRUE(replaceFile(path.c_str(), contents[i % 2]));
    done = true;
    reader.join();
    EXPECT_EQ(mixtures, 0) << "of " << looks;
}

struct StemCase {
    const char* name;
    const wchar_t* path;
    const wchar_t* stem;
};

const StemCase kStemCases[] = {
    {"Plain", L"cam.xml", L"cam"},
    {"InAFolder", L"/curves/cam.xml", L"cam"},
    {"NoExtension", L"curves/cam", L"cam"},
    {"TwoDots", L"curves/cam.v2.xml", L"cam.v2"},
    {"DotInTheFolderOnly", L"curves.d/cam", L"cam"},
    {"EndsInASeparator", L"curves/", L""},
    {"OnlyAnExtension", L"curves/.xml", L""},
    {"EndsInADot", L"cam.", L"cam"},
    {"Empty", L"", L""},
    {"BeyondAscii", L"/caf\u00e9/n\u00f6cke.xml", L"n\u00f6cke"},
};

class FileStem : public testing::TestWithParam<StemCase> {};

TEST_P(FileStem, IsBetweenTheLastSeparatorAndTheLastDot)
{
    EXPECT_EQ(fileStem(GetParam().path), GetParam().stem);
}

INSTANTIATE_TEST_SUITE_P(Files, FileStem, testing::ValuesIn(kStemCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
