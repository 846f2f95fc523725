#include "mfcurves/engine/textCache.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace mf::engine {
namespace {

constexpr std::size_t kKeptTexts = 32;
constexpr std::size_t kLongestKeptText = 8192;
constexpr std::size_t kKeptBytes = std::size_t{8} << 20;  // of all kept texts together

struct Entry {
    std::uint64_t hash = 0;
    std::wstring text;
    std::optional<std::wstring> variableName;
    std::shared_ptr<CompiledText> compiled;
};

std::uint64_t hashOf(std::wstring_view text)
{
    const auto* bytes = reinterpret_cast<const char*>(text.data());
    std::size_t left = text.size() * sizeof(wchar_t);
    std::uint64_t hash = left;
    for (; left >= sizeof(std::uint64_t); left -= sizeof(std::uint64_t), bytes += sizeof(std::uint64_t)) {
        std::uint64_t word;
        std::memcpy(&word, bytes, sizeof word);
        hash = (hash ^ word) * 0x9e3779b97f4a7c15ULL;
        hash ^= hash >> 32;
    }
    std::uint64_t rest = 0;
    std::memcpy(&rest, bytes, left);
    hash = (hash ^ rest) * 0x9e3779b97f4a7c15ULL;
    return hash ^ (hash >> 32);
}

// The texts compiled last, the latest used first. Each thread has its own, so that
// no compile waits for another.
class TextCache {
public:
    CompiledText::Answer compiled(std::wstring_view text,
                                  const std::optional<std::wstring_view>& variableName)
    {
        const std::uint64_t hash = hashOf(text);
        const auto found = std::ranges::find_if(entries_, [&](const Entry& entry) {
            return entry.hash == hash && entry.text == text && entry.variableName == variableName;
        });
        if (found != entries_.end()) {
            std::rotate(entries_.begin(), found, found + 1);
            return entries_.front().compiled;
        }
        CompiledText::Answer answer = CompiledText::compile(text, variableName);
        if (const auto* compiled = std::get_if<std::shared_ptr<CompiledText>>(&answer);
            compiled != nullptr && text.size() <= kLongestKeptText)
            keep({hash, std::wstring(text), std::optional<std::wstring>(variableName), *compiled});
        return answer;
    }

private:
    // Derivatives grow after their text was kept, so all sizes are asked anew.
    void keep(Entry entry)
    {
        if (entries_.size() == kKeptTexts)
            entries_.pop_back();
        entries_.insert(entries_.begin(), std::move(entry));
        std::size_t total = 0;
        const auto tooMuch = std::ranges::find_if(entries_, [&](const Entry& kept) {
            total += kept.compiled->bytes();
            return total > kKeptBytes;
        });
        entries_.erase(tooMuch, entries_.end());
    }

    std::vector<Entry> entries_;
};

}  // namespace

CompiledText::Answer compiledThroughCache(std::wstring_view text,
                                          const std::optional<std::wstring_view>& variableName)
{
    thread_local TextCache cache;
    return cache.compiled(text, variableName);
}

}  // namespace mf::engine
