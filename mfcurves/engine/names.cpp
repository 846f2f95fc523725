#include "mfcurves/engine/names.h"

#include <algorithm>

#include "mfcurves/platform/locale.h"

namespace mf::engine {
namespace {

constexpr std::uint32_t kFree = 0xffffffff;
constexpr std::size_t kFew = 8;

wchar_t fold(wchar_t c)
{
    if (c >= 0 && c <= 0x7f)
        return c >= L'A' && c <= L'Z' ? c + (L'a' - L'A') : c;
    return platform::foldCase(c);
}

bool isResult(std::wstring_view name)
{
    return name.starts_with(L'{');
}

// FNV-1a over the folded name.
std::size_t hashOf(std::wstring_view name)
{
    std::uint64_t hash = 0xcbf29ce484222325ULL;
    for (const wchar_t c : name)
        hash = (hash ^ static_cast<std::uint64_t>(isResult(name) ? c : fold(c))) * 0x100000001b3ULL;
    return static_cast<std::size_t>(hash ^ (hash >> 32));
}

}  // namespace

bool sameName(std::wstring_view a, std::wstring_view b)
{
    if (a == b)
        return true;
    return a.size() == b.size() && !isResult(a) &&
           std::ranges::equal(a, b, [](wchar_t x, wchar_t y) { return fold(x) == fold(y); });
}

void ParameterNames::clear()
{
    names_.clear();
    table_.clear();
}

std::uint32_t& ParameterNames::iSlot(std::wstring_view name)
{
    const std::size_t mask = table_.size() - 1;
    std::size_t i = hashOf(name) & mask;
    while (table_[i] != kFree && !sameName(names_[table_[i]], name))
        i = (i + 1) & mask;
    return table_[i];
}

void ParameterNames::iGrowTable()
{
    table_.assign(std::max<std::size_t>(table_.size() * 4, kFew * 8), kFree);
    for (std::uint32_t i = 0; i < names_.size(); ++i)
        iSlot(names_[i]) = i;
}

std::uint32_t ParameterNames::numberOf(std::wstring_view name)
{
    const auto next = static_cast<std::uint32_t>(names_.size());
    if (table_.empty()) {
        const auto found =
            std::ranges::find_if(names_, [&](const auto& known) { return sameName(known, name); });
        if (found != names_.end())
            return static_cast<std::uint32_t>(found - names_.begin());
        names_.emplace_back(name);
        if (names_.size() > kFew)
            iGrowTable();
        return next;
    }
    std::uint32_t& slot = iSlot(name);
    if (slot != kFree)
        return slot;
    slot = next;
    names_.emplace_back(name);
    if (names_.size() * 2 > table_.size())
        iGrowTable();
    return next;
}

}  // namespace mf::engine
