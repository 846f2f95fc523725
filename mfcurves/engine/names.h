// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace mf::engine {

/// Whether two names are equal: ignoring case for plain names, exactly for motion
/// results, which begin with a brace.
bool sameName(std::wstring_view a, std::wstring_view b);

/// The parameters of one text in order of first appearance, spelt as there.
class ParameterNames {
public:
    /// Number of the parameter of that name, which is added if it is new.
    std::uint32_t numberOf(std::wstring_view name);

    const std::vector<std::wstring>& list() const { return names_; }

private:
    std::vector<std::wstring> names_;
    std::map<std::wstring, std::uint32_t> numbers_;  // by folded name; never slow, unlike a hash table
};

}  // namespace mf::engine
