// SPDX-License-Identifier: MIT

// The list of functions in docs/expressions.md is that of the engine's table. After a
// change of the table
//
//     MFCURVES_WRITE_REFERENCE=1 build/dev/tests/engine/reference_page_test
//
// writes the list into the page, and without the variable the test compares.

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <string_view>

#include "mfcurves/engine/functionTable.h"

namespace {

constexpr const char* kPage = REFERENCE_PAGE;
constexpr std::string_view kListStart =
    "<!-- The list below is written by tests/engine/reference_page_test.cpp. -->\n";
constexpr std::string_view kListEnd = "<!-- End of the list. -->\n";

std::string cell(std::string_view text)
{
    std::string escaped;
    for (const char c : text) {
        if (c == '|' || c == '*' || c == '_')
            escaped += '\\';
        escaped += c;
    }
    return escaped;
}

std::string functionList()
{
    std::string list = "| function | value | remarks |\n|---|---|---|\n";
    for (const mf::engine::Function& row : mf::engine::functions()) {
        if (row.name.empty())
            continue;
        list.append("| `").append(row.name).append("(").append(row.arguments).append(")` | ");
        list += cell(row.formula) + " | " + cell(row.remarks) + " |\n";
    }
    return list;
}

std::string readPage()
{
    std::ifstream file(kPage, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(ReferencePage, ListsEachFunctionAsTheTableHasIt)
{
    std::string page = readPage();
    const std::size_t start = page.find(kListStart) + kListStart.size();
    const std::size_t end = page.find(kListEnd);
    ASSERT_NE(page.find(kListStart), std::string::npos);
    ASSERT_NE(end, std::string::npos);
    if (std::getenv("MFCURVES_WRITE_REFERENCE") != nullptr) {
        page.replace(start, end - start, functionList());
        std::ofstream(kPage, std::ios::binary) << page;
        page = readPage();
    }
    EXPECT_EQ(page.substr(page.find(kListStart) + kListStart.size(),
                          page.find(kListEnd) - page.find(kListStart) - kListStart.size()),
              functionList());
}

}  // namespace
