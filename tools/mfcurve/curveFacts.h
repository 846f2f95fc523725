// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "tools/mfcurve/sources.h"

/// The output of `info` for a curve.
namespace mfcurve {

std::string factsAsText(const mf::Curve& curve, const std::vector<mf::Problem>& problems);
std::string factsAsJson(const Input& input, const std::vector<mf::Problem>& problems);

/// The same for a document from which no curve can be made.
std::string unsoundAsText();
std::string unsoundAsJson(const std::string& file, const std::vector<mf::Problem>& problems);

}  // namespace mfcurve
