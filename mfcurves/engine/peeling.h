// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/engine/graph.h"
#include "mfcurves/engine/openStage.h"
#include "mfcurves/engine/translator.h"

namespace mf::engine {

/// Moves the constants around a node to `stage` and returns the node inside them; the node
/// itself if there are none. A part that already has a register is kept whole.
NodeId peel(const Graph& graph, const PerNode<NodePlace>& places, NodeId id, OpenStage& stage);

}  // namespace mf::engine
