// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/platform/mfExport.h"

namespace mf::profiles {

/// What is wrong at one place of a file of profile definitions.
struct DefinitionProblem {
    int line = 0;         ///< in the file, counted from 1
    std::string profile;  ///< name of the profile, empty when its header could not be read
    std::string reason;   ///< lower case, no full stop
    /// True when the reader of profiles refuses the file for it; false when it
    /// only passes over something that the author may miss.
    bool refused = true;
};

/// Tells why the text of a file "SegmentTypes.txt" is not read as a whole, with
/// the very steps by which it is read. One problem for each definition that does
/// not parse; none of them `refused` means that the reader takes the file.
///
/// It changes nothing, the reader's state of quotes included, and starts outside
/// quotes.
MFCURVES_API std::vector<DefinitionProblem> definitionProblems(const std::string& fileText);

}  // namespace mf::profiles
