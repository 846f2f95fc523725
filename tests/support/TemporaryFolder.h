// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <initializer_list>
#include <iterator>
#include <sstream>
#include <string>

#include "mfcurves/platform/encoding.h"

namespace mf::test {

inline std::string contentOf(const std::filesystem::path& path)
{
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

/// A folder for the running test, removed with its content at the end.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string("mfcurves_") + test->test_suite_name() + "_" + test->name();
        std::replace(name.begin(), name.end(), '/', '_');
        // mkdtemp needs six of these at the end, and replaces them by letters that make the name unused.
        const std::string replaced(6, 'X');
        std::string path = (std::filesystem::temp_directory_path() / (name + "_" + replaced)).string();
        EXPECT_NE(::mkdtemp(path.data()), nullptr) << path;
        path_ = path;
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

    /// Writes a file in the folder and returns its path.
    std::wstring write(const std::string& name, const std::string& content) const
    {
        std::ofstream(path_ / name, std::ios::binary) << content;
        return wide(name);
    }

    std::string read(const std::string& name) const { return contentOf(path_ / name); }

    /// Path of a file in the folder, in the form that the library takes.
    std::wstring wide(const std::string& name) const { return mf::platform::widen((path_ / name).string()); }

    /// Its subfolders of these names as a list of design libraries.
    std::string list(std::initializer_list<const char*> names) const
    {
        std::string text;
        for (const char* name : names)
            text += (text.empty() ? "" : ";") + (path_ / name).string();
        return text;
    }

    /// The number of entries in the folder.
    int count() const
    {
        return static_cast<int>(std::distance(std::filesystem::directory_iterator(path_), {}));
    }

private:
    std::filesystem::path path_;
};

}  // namespace mf::test
