// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/engine/graph.h"

namespace mf::engine {

/// Returns the derivative of `root` with respect to parameter 0, the only one of its
/// graph. Derivatives are stored in the nodes, so a further order costs only what is
/// new in it. Returns kNoNode if the graph exceeds its limits.
NodeId differentiate(Graph& graph, NodeId root);

}  // namespace mf::engine
