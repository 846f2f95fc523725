// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "mfcurves/drawing/layout.h"

namespace mf::drawing {

/// One panel: its header, grid, seams, lines and what is marked on them.
std::string drawPanel(const Diagram& diagram, std::size_t panel, const Layout& layout, const Theme& theme);

}  // namespace mf::drawing
