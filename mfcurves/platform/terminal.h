// SPDX-License-Identifier: MIT
#pragma once

namespace mf::platform {

/// True when standard error is a terminal that somebody may look at.
bool isErrorOutputTerminal();

}  // namespace mf::platform
