// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace mf::drawing {

/// Text for XML: markup is escaped, and control characters, which XML cannot contain, are left out.
std::string escaped(std::string_view text);

/// How many characters a text has.
std::size_t characterCount(std::string_view text);

/// The text, cut to `longest` characters if it is longer; the last one is then an ellipsis.
std::string shortened(const std::string& text, std::size_t longest);

/// The approximate width of a text, in pixels, with letters of that size.
double textWidth(std::string_view text, double size);

/// A text element at that place. `attributes` are written as they are.
std::string textAt(double x, double y, std::string_view attributes, std::string_view text);

/// A straight line; `style` is the name of its class.
std::string lineBetween(double x1, double y1, double x2, double y2, std::string_view style);

}  // namespace mf::drawing
