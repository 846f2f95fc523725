// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "mfcurves/engine/graph.h"
#include "mfcurves/engine/openStage.h"
#include "mfcurves/engine/program.h"

namespace mf::engine {

/// Where the translation is with a node.
struct NodePlace {
    static constexpr std::uint32_t kNone = 0xffffffff;

    std::uint32_t number = kNoRegister;  // of the node's register
    std::uint32_t waiting = kNone;       // position of the pending step that waits for the node

    bool hasRegister() const { return number != kNoRegister; }
    bool hasWaiting() const { return waiting != kNone; }
};

/// Translates the roots of a graph, one order after the other, into the steps of a
/// program.
class Translator {
public:
    explicit Translator(std::uint32_t parameterCount);

    /// Writes the steps of the next order: those that `root` needs in addition to what the
    /// lower orders compute. After std::bad_alloc the translator must not be used again.
    void add(const Graph& graph, NodeId root);

    /// The highest order added so far; -1 before the first.
    int highestOrder() const { return static_cast<int>(draft_.results.size()) - 1; }

    /// The steps of all orders so far.
    Draft draft() const&;
    /// The same without a copy; no operation may follow.
    Draft draft() &&;

    /// Bytes that the translator holds.
    std::size_t bytes() const;

private:
    PerNode<NodePlace> places_;
    std::vector<PendingStep> pending_;  // while an order is written
    Draft draft_;
};

}  // namespace mf::engine
