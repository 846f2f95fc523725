// SPDX-License-Identifier: MIT

#include "mfcurves/engine/compiledText.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "mfcurves/engine/parser.h"

namespace mf::engine {
namespace {

// A text in little memory: each character as groups of seven bits, one byte per group,
// the lowest first, with the top bit set in all bytes but the last.
std::string packed(std::wstring_view text)
{
    const auto isAscii = [](wchar_t character) { return character >= 0 && character < 0x80; };
    if (std::ranges::all_of(text, isAscii))
        return {text.begin(), text.end()};
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t character : text) {
        auto rest = std::bit_cast<std::uint32_t>(character);
        for (; rest >= 0x80; rest >>= 7)
            bytes.push_back(static_cast<char>(0x80 | (rest & 0x7f)));
        bytes.push_back(static_cast<char>(rest));
    }
    return bytes;
}

std::wstring unpacked(std::string_view bytes)
{
    std::wstring text;
    std::uint32_t character = 0;
    unsigned shift = 0;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        character |= static_cast<std::uint32_t>(byte & 0x7f) << shift;
        shift += 7;
        if (byte < 0x80) {
            text.push_back(static_cast<wchar_t>(character));
            character = 0;
            shift = 0;
        }
    }
    return text;
}

}  // namespace

CompiledText::Result CompiledText::compile(std::wstring_view text,
                                           const std::optional<std::wstring_view>& variableName)
{
    auto result = parseText(text, variableName);
    if (auto* error = std::get_if<ParseError>(&result))
        return std::move(*error);

    auto& parsed = std::get<ParsedText>(result);
    auto compiled = std::make_shared<CompiledText>();
    compiled->parameterNames_ = parsed.parameters.list();
    compiled->packedText_ = packed(text);
    compiled->hasVariable_ = variableName.has_value();
    compiled->compilation_ = std::make_unique<Compilation>(std::move(parsed));
    compiled->programs_.value = compiled->compilation_->program();
    compiled->programs_.all = compiled->programs_.value;
    if (compiled->parameterCount() > 1) {
        compiled->hasAllOrders_ = true;
        compiled->compilation_.reset();
    }
    return compiled;
}

std::optional<Programs> CompiledText::programs(int order)
{
    const std::lock_guard lock(mutex_);
    if (programs_.all->highestOrder() < order && !hasAllOrders_)
        iAddOrders(std::max(order, kUsualOrder));
    if (programs_.all->highestOrder() < order)
        return std::nullopt;
    return programs_;
}

// When memory runs out, the orders so far stay, and the others can be requested again.
void CompiledText::iAddOrders(int highest)
{
    auto compilation = compilation_ != nullptr ? std::move(compilation_) : iCompileAgain();
    bool isWithinLimits = true;
    while (compilation->highestOrder() < highest && isWithinLimits)
        isWithinLimits = compilation->addOrder();
    const bool mayBeContinued = highest > kUsualOrder && isWithinLimits;
    if (compilation->highestOrder() > programs_.all->highestOrder())
        programs_.all = mayBeContinued ? compilation->program() : std::move(*compilation).program();
    hasAllOrders_ = !isWithinLimits;
    if (mayBeContinued)
        compilation_ = std::move(compilation);
}

// The same text under the same rules gives the same graph and the same registers.
std::unique_ptr<Compilation> CompiledText::iCompileAgain() const
{
    std::optional<std::wstring_view> variableName;
    if (hasVariable_)
        variableName = parameterNames_.empty() ? std::wstring_view() : parameterNames_.front();
    auto result = parseText(unpacked(packedText_), variableName);
    return std::make_unique<Compilation>(std::move(std::get<ParsedText>(result)));
}

std::size_t CompiledText::bytes()
{
    const std::lock_guard lock(mutex_);
    std::size_t total = sizeof *this + packedText_.capacity() + programs_.bytes();
    for (const std::wstring& name : parameterNames_)
        total += sizeof(std::wstring) + name.capacity() * sizeof(wchar_t);
    if (compilation_ != nullptr)
        total += compilation_->bytes();
    return total;
}

}  // namespace mf::engine
