// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace mfcurve {

/// Throws UsageError unless the name of a picture ends in .svg, .png or .pdf, or is "-", and this program can
/// write that kind.
void checkPictureName(const std::string& path);

/// Writes an SVG document as the kind of picture that the name says; "-" is SVG on standard output. Throws
/// Failure with the reason when it cannot be written.
void writePicture(const std::string& path, const std::string& svg);

}  // namespace mfcurve
