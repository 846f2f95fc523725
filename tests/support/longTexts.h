// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

// Texts of any length, for readers that have limits.
namespace mf::test {

inline std::string repeated(const std::string& text, int count)
{
    std::string result;
    result.reserve(text.size() * static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

// The text as often as it fits into `size` bytes.
inline std::string filled(const std::string& text, std::size_t size)
{
    std::string result;
    while (result.size() + text.size() <= size)
        result += text;
    return result;
}

inline std::string nested(const std::string& open, const std::string& inside, const std::string& close,
                          int depth)
{
    return repeated(open, depth) + inside + repeated(close, depth);
}

}  // namespace mf::test
