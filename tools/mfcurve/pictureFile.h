// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace mfcurve {

/// Throws UsageError unless the name of a picture is "-" or ends in .svg, .png or .pdf, and this program can
/// write that format.
void checkPictureName(const std::string& path);

/// Writes an SVG document in the format of the name's ending; "-" is SVG on standard output. Throws Failure
/// with the reason when it cannot be written.
void writePicture(const std::string& path, const std::string& svg);

}  // namespace mfcurve
