// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>

#include "mfcurves/engine/graph.h"
#include "mfcurves/engine/parser.h"
#include "mfcurves/engine/program.h"
#include "mfcurves/engine/translator.h"

namespace mf::engine {

/// Compiles the graph of a text to programs, order by order.
class Compilation {
public:
    /// Compiles order 0.
    explicit Compilation(ParsedText text);

    /// Adds the derivative of the highest order so far; false when it outgrows the limits.
    /// After std::bad_alloc the object must not be used again.
    bool addOrder();

    int highestOrder() const { return translator_.highestOrder(); }

    /// The program of the orders so far.
    std::shared_ptr<const Program> program() const&;
    /// The same without a copy; no operation may follow.
    std::shared_ptr<const Program> program() &&;

    /// Bytes that the compilation holds.
    std::size_t bytes() const { return sizeof *this + graph_.bytes() + translator_.bytes(); }

private:
    Graph graph_;
    NodeId root_;  // of the highest order
    Translator translator_;
};

}  // namespace mf::engine
