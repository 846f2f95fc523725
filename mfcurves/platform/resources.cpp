// SPDX-License-Identifier: MIT

#include "mfcurves/platform/resources.h"

#include <atomic>
#include <charconv>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/files.h"

namespace mf::platform {
namespace {

const ResourceModule* builtInModule()
{
    static const ResourceModule module({{kTimeName, L"Time"}, {kCycleAngleName, L"CycleAngle"}});
    return &module;
}

std::atomic<const ResourceModule*>& currentModule()
{
    static std::atomic<const ResourceModule*> module = builtInModule();
    return module;
}

void readLine(std::string_view line, std::map<unsigned, std::wstring>& strings)
{
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos)
        return;
    unsigned number = 0;
    const char* const end = line.data() + equals;
    const auto [stop, error] = std::from_chars(line.data(), end, number);
    if (error == std::errc() && stop == end)
        strings[number] = widen(line.substr(equals + 1));
}

std::map<unsigned, std::wstring> readStrings(std::string_view text)
{
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark))
        text.remove_prefix(kByteOrderMark.size());

    std::map<unsigned, std::wstring> strings;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        readLine(text.substr(0, end), strings);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return strings;
}

const std::wstring& noString()
{
    static const std::wstring none;
    return none;
}

}  // namespace

const std::wstring& ResourceModule::string(unsigned number) const
{
    const auto found = strings_.find(number);
    return found == strings_.end() ? noString() : found->second;
}

const ResourceModule* loadResourceModule(const wchar_t* path)
{
    static std::mutex mutex;
    static std::vector<std::unique_ptr<const ResourceModule>> loaded;

    const std::optional<std::string> text = readFile(path);
    if (!text)
        return nullptr;
    auto module = std::make_unique<const ResourceModule>(readStrings(*text));

    const std::lock_guard lock(mutex);
    for (const auto& known : loaded) {
        if (*known == *module)
            return known.get();
    }
    loaded.push_back(std::move(module));
    return loaded.back().get();
}

const ResourceModule* currentResourceModule()
{
    return currentModule();
}

void setCurrentResourceModule(const ResourceModule* module)
{
    currentModule() = module;
}

const std::wstring& resourceString(unsigned number)
{
    const ResourceModule* const module = currentResourceModule();
    return module == nullptr ? noString() : module->string(number);
}

}  // namespace mf::platform
