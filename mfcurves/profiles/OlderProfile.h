// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace mf::profiles {

/// One definition in the older dialect. All texts are narrow.
struct OlderProfile {
    std::string definition;  ///< including its closing keyword
    std::string name;
    std::string independentVariable;
    std::string x1;
    std::string y1;
    std::string x2;
    std::string y2;
    std::string result;                     ///< the expression of its last assignment
    std::vector<std::string> resultTokens;  ///< its operators and the texts between them
};

}  // namespace mf::profiles
