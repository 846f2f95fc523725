// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/engine/graph.h"

namespace mf::engine {

/// The derivative of `root` with respect to parameter 0, the only one of its
/// graph. It is remembered in the nodes, so a further order costs only what is
/// new in it. kNoNode when the graph outgrew its limit.
NodeId differentiate(Graph& graph, NodeId root);

}  // namespace mf::engine
