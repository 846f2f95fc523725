// SPDX-License-Identifier: MIT

#include "mfcurves/engine/compilation.h"

#include <utility>

#include "mfcurves/engine/differentiation.h"
#include "mfcurves/engine/evaluation.h"

namespace mf::engine {

Compilation::Compilation(ParsedText text)
    : graph_(std::move(text.graph)),
      root_(text.root),
      translator_(static_cast<std::uint32_t>(text.parameters.list().size()))
{
    translator_.add(graph_, root_);
}

bool Compilation::addOrder()
{
    const NodeId derivative = differentiate(graph_, root_);
    if (derivative == kNoNode)
        return false;
    translator_.add(graph_, derivative);
    root_ = derivative;
    return true;
}

std::shared_ptr<const Program> Compilation::program() const&
{
    return programOf(translator_.draft());
}

std::shared_ptr<const Program> Compilation::program() &&
{
    return programOf(std::move(translator_).draft());
}

}  // namespace mf::engine
