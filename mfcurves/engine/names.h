#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace mf::engine {

/// Whether two names are the same: any case for plain names, to the letter for
/// motion results, which begin with a brace.
bool sameName(std::wstring_view a, std::wstring_view b);

/// The parameters of one text in order of first appearance, spelt as there.
class ParameterNames {
public:
    void clear();

    /// Number of the parameter of that name, which is added if it is new.
    std::uint32_t numberOf(std::wstring_view name);

    const std::vector<std::wstring>& list() const { return names_; }

private:
    void iGrowTable();
    std::uint32_t& iSlot(std::wstring_view name);

    std::vector<std::wstring> names_;
    std::vector<std::uint32_t> table_;  // open addressing, once there are more than a few
};

}  // namespace mf::engine
