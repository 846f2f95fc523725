// SPDX-License-Identifier: MIT
#pragma once

// The tables of expected values in this folder: a line "= text", then lines of
// numbers that belong to it.

#include <array>
#include <charconv>
#include <fstream>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace engine_test {

template <int Columns>
struct TabledText {
    std::string text;
    std::vector<std::array<double, Columns>> rows;
};

template <int Columns>
void PrintTo(const TabledText<Columns>& tabled, std::ostream* os)
{
    *os << tabled.text;
}

template <int Columns>
std::array<double, Columns> readRow(const std::string& line)
{
    std::array<double, Columns> row{};
    const char* at = line.data();
    const char* const end = at + line.size();
    for (double& number : row) {
        while (at != end && *at == ' ')
            ++at;
        const std::from_chars_result read = std::from_chars(at, end, number);
        if (read.ec != std::errc())
            throw std::runtime_error("too few numbers: " + line);
        at = read.ptr;
    }
    if (at != end)
        throw std::runtime_error("too many numbers: " + line);
    return row;
}

/// The table `name` of this folder. Throws if it is missing, empty or damaged.
template <int Columns>
std::vector<TabledText<Columns>> readTable(const std::string& name)
{
    std::ifstream file(ENGINE_TEST_DATA "/" + name);
    std::vector<TabledText<Columns>> table;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("= "))
            table.push_back({line.substr(2), {}});
        else if (!line.starts_with('#'))
            table.back().rows.push_back(readRow<Columns>(line));
    }
    if (table.empty())
        throw std::runtime_error(name + " is missing or empty");
    return table;
}

}  // namespace engine_test
