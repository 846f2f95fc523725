// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "mfcurves/curve/laws.h"

namespace mfcurve {

/// The laws that rows can name: those of the folders, the built-in and the shipped ones. A folder without
/// laws is passed over with a warning; throws Failure when no folder has any, or a file of laws does not
/// parse.
std::vector<mf::Law> knownLaws(const std::vector<std::string>& folders);

/// Those of the folders that hold laws, with the same warning and failure.
std::vector<std::string> usableFolders(const std::vector<std::string>& folders);

/// The law of that name, in any case, with or without its source in brackets; null when there is none.
const mf::Law* findLaw(const std::vector<mf::Law>& laws, std::string_view name);

/// The message for a name that is not a law: what it may be meant to be, and what there is.
std::string unknownLaw(const std::vector<mf::Law>& laws, const std::string& name);

}  // namespace mfcurve
