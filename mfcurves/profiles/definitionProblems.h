// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/platform/mfExport.h"

namespace mf::profiles {

/// A problem at one place in a file of profile definitions.
struct DefinitionProblem {
    int line = 0;         ///< in the file, counted from 1
    std::string profile;  ///< name of the profile, empty when its header could not be read
    std::string reason;   ///< lower case, no full stop
    /// True when the reader refuses the file because of it; false when the reader
    /// only ignores something that the author may have meant.
    bool refused = true;
};

/// Reports why the text of a file "SegmentTypes.txt" is not read completely, using
/// the same steps as the reader. One problem for each definition that does not
/// parse. If no problem is `refused`, the reader accepts the file.
///
/// It changes nothing, not even the reader's state of quotes, and starts outside
/// quotes.
MFCURVES_API std::vector<DefinitionProblem> definitionProblems(const std::string& fileText);

}  // namespace mf::profiles
