// SPDX-License-Identifier: MIT

#include "mfcurves/engine/compiledText.h"

#include <algorithm>
#include <utility>

#include "mfcurves/engine/packedText.h"
#include "mfcurves/engine/parser.h"

namespace mf::engine {

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
