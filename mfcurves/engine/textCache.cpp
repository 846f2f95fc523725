// SPDX-License-Identifier: MIT

#include "mfcurves/engine/textCache.h"

#include <cstddef>
#include <functional>
#include <list>
#include <string>
#include <unordered_map>

namespace mf::engine {
namespace {

constexpr std::size_t kKeptBytes = std::size_t{8} << 20;  // of all kept texts together

// All that a compiled text depends on, with the hash of the text, which is computed once.
struct Key {
    std::size_t hash;
    std::wstring_view text;
    std::optional<std::wstring_view> variableName;

    bool operator==(const Key&) const = default;
};

struct KeyHash {
    std::size_t operator()(const Key& key) const { return key.hash; }
};

// The texts compiled last, as many as fit into kKeptBytes. Each thread has its own, so
// that no compile waits for another.
class TextCache {
public:
    CompiledText::Result compiled(const Key& key)
    {
        const auto found = places_.find(key);
        if (found != places_.end()) {
            entries_.splice(entries_.begin(), entries_, found->second);
            measureFirst();
            return entries_.front().compiled;
        }
        CompiledText::Result result = CompiledText::compile(key.text, key.variableName);
        if (const auto* compiled = std::get_if<std::shared_ptr<CompiledText>>(&result))
            keep(key, *compiled);
        return result;
    }

private:
    struct Entry {
        std::wstring text;
        std::optional<std::wstring> variableName;
        std::shared_ptr<CompiledText> compiled;
        std::size_t hash;
        std::size_t bytes = 0;

        Key key() const { return {hash, text, variableName}; }
    };

    void keep(const Key& key, const std::shared_ptr<CompiledText>& compiled)
    {
        // It may have grown by its derivatives since it was measured.
        if (!entries_.empty())
            measureFirst();
        entries_.push_front(
            {std::wstring(key.text), std::optional<std::wstring>(key.variableName), compiled, key.hash});
        try {
            places_.emplace(entries_.front().key(), entries_.begin());
        } catch (...) {
            entries_.pop_front();
            throw;
        }
        measureFirst();
        while (bytes_ > kKeptBytes)
            forgetLast();
    }

    void measureFirst()
    {
        Entry& entry = entries_.front();
        const std::size_t bytes =
            sizeof entry + entry.text.capacity() * sizeof(wchar_t) + entry.compiled->bytes();
        bytes_ += bytes - entry.bytes;
        entry.bytes = bytes;
    }

    void forgetLast()
    {
        bytes_ -= entries_.back().bytes;
        places_.erase(entries_.back().key());
        entries_.pop_back();
    }

    std::list<Entry> entries_;  // the most recently used first
    std::unordered_map<Key, std::list<Entry>::iterator, KeyHash> places_;
    std::size_t bytes_ = 0;
};

}  // namespace

CompiledText::Result compiledThroughCache(std::wstring_view text,
                                          const std::optional<std::wstring_view>& variableName)
{
    thread_local TextCache cache;
    return cache.compiled({std::hash<std::wstring_view>()(text), text, variableName});
}

}  // namespace mf::engine
