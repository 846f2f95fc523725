#include "mfcurves/engine/compiledText.h"

#include <utility>

#include "mfcurves/engine/differentiation.h"
#include "mfcurves/engine/parser.h"

namespace mf::engine {

CompiledText::Answer CompiledText::compile(std::wstring_view text,
                                           const std::optional<std::wstring_view>& variableName)
{
    auto result = parseText(text, variableName);
    if (auto* error = std::get_if<ParseError>(&result))
        return std::move(*error);
    auto& parsed = std::get<ParsedText>(result);
    auto compiled = std::make_shared<CompiledText>();
    compiled->graph_ = std::move(parsed.graph);
    compiled->root_ = parsed.root;
    compiled->parameters_ = std::move(parsed.parameters);
    compiled->translator_.clear(static_cast<std::uint32_t>(compiled->parameterCount()));
    compiled->sections_.push_back(std::make_unique<const Section>(
        compiled->translator_.translate(compiled->graph_, compiled->root_, nullptr)));
    return compiled;
}

// When memory runs out, the orders so far stay, and the next can be asked for again.
const Section* CompiledText::section(std::size_t order)
{
    const std::lock_guard lock(mutex_);
    while (sections_.size() <= order) {
        const NodeId derivative = differentiate(graph_, root_);
        if (derivative == kNoNode)
            return nullptr;
        Translator translator = translator_;
        sections_.push_back(std::make_unique<const Section>(
            translator.translate(graph_, derivative, sections_.back().get())));
        translator_ = std::move(translator);
        root_ = derivative;
    }
    return sections_[order].get();
}

std::size_t CompiledText::bytes()
{
    const std::lock_guard lock(mutex_);
    std::size_t total = sizeof *this + graph_.bytes() + translator_.bytes();
    for (const auto& section : sections_) {
        total += (section->code.capacity() + section->whole.capacity()) * sizeof(Instruction) +
                 section->numbers.capacity() * sizeof(double) +
                 section->lists.capacity() * sizeof(std::uint32_t) +
                 section->constants.capacity() * sizeof(Section::Constant);
    }
    return total;
}

}  // namespace mf::engine
