// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/host/Context.h"

class mfProfileManager_c;

namespace mfcurve {

/// The host of this process: its context and the profiles of the design library.
/// It has to outlive every curve.
class Host {
public:
    /// `library` names folders, separated by ";"; `results` the motion results
    /// that exist. Fails with the reason when a definition file does not parse or
    /// a named library has none.
    Host(const std::string& library, const std::vector<std::string>& results);

    /// The file that the profiles come from; empty for the built-in table.
    const std::string& definitionFile() const { return definitionFile_; }
    /// What is odd in that file and no reason to refuse it.
    const std::vector<std::string>& definitionRemarks() const { return definitionRemarks_; }

private:
    mf::host::Context context_;
    std::string definitionFile_;
    std::vector<std::string> definitionRemarks_;
};

/// The profiles of the host of this process.
mfProfileManager_c& profileManager();

}  // namespace mfcurve
