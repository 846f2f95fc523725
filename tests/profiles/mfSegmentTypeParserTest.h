// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace profile_test {

using Strings = std::vector<std::string>;

// The definition of a profile as it is stored.
inline const char* const kLinear =
    "segmenttype(\"Linear\",x,x1,y1,x2,y2)slope=(y2-y1)/"
    "(x2-x1);dy=slope*(x-x1);y=y1+dy;returny;endsegmenttype";

}  // namespace profile_test
