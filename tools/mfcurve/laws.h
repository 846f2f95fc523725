// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "mfcurves/curve/laws.h"

namespace mfcurve {

/// The laws that rows can name: those of the folders, the built-in ones and the shipped ones. Warns about a
/// folder without laws. Throws Failure when none of the folders has laws, or when a file of laws does not
/// parse.
std::vector<mf::Law> knownLaws(const std::vector<std::string>& folders);

/// The folders that have laws, with the same warning and failure.
std::vector<std::string> usableFolders(const std::vector<std::string>& folders);

/// The law of that name, ignoring case, with or without its source in brackets; null if not found.
const mf::Law* findLaw(const std::vector<mf::Law>& laws, std::string_view name);

/// The message for a name that is not a law: the nearest names or all names.
std::string unknownLaw(const std::vector<mf::Law>& laws, const std::string& name);

}  // namespace mfcurve
