// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/platform/mfExport.h"

namespace mf {

/// A motion law that rows may name.
struct Law {
    std::string name;    ///< "3-4-5-Polynomial"
    std::string source;  ///< "built-in", "shipped", or the path of the file that defines it
    std::string text;    ///< its definition, in normal form (docs/profile-language.md)
};

/// All laws that rows may name without defining them: those of the file SegmentTypes.txt
/// in each folder, in that order, the built-in ones and the shipped ones
/// (share/mfcurves/SegmentTypes.txt, which is data of the library). If several have the same
/// name, a row takes the first.
///
/// Throws CurveError with place and reason if a file cannot be read or does not parse.
/// Any thread may call it.
MFCURVES_API std::vector<Law> laws(const std::vector<std::string>& folders = {});

}  // namespace mf
