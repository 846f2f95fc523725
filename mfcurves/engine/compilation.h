// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>

#include "mfcurves/engine/graph.h"
#include "mfcurves/engine/parser.h"
#include "mfcurves/engine/program.h"
#include "mfcurves/engine/translator.h"

namespace mf::engine {

/// An expression on its way from the graph of its text to programs, order by order.
class Compilation {
public:
    /// Begins with order 0.
    explicit Compilation(ParsedText text);

    /// Adds the derivative of the highest order so far; false when it outgrows the limits.
    /// When memory runs out, the compilation is of no more use.
    bool addOrder();

    int highestOrder() const { return translator_.highestOrder(); }

    /// The program of the orders so far.
    std::shared_ptr<const Program> program() const;

    /// Bytes that the compilation holds.
    std::size_t bytes() const { return sizeof *this + graph_.bytes() + translator_.bytes(); }

private:
    Graph graph_;
    NodeId root_;  // of the highest order
    Translator translator_;
};

}  // namespace mf::engine
