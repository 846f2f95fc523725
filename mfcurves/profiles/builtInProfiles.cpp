// SPDX-License-Identifier: MIT

#include "mfcurves/profiles/builtInProfiles.h"

#include <algorithm>

namespace mf::profiles {

// Fixed byte for byte, including the white space: a tab and blanks pad each statement
// to one column.
// clang-format off
const std::array<const char*, kBuiltInProfileCount> kBuiltInDefinitions = {
    "SegmentType(\"Cubic\", x, x1, y1, x2, y2)  \t    "
    "xbar = (x-x1)/(x2-x1);                  \t    "
    "ybar = 3*xbar^2-2*xbar^3;               \t    "
    "y = y1+(y2-y1)*ybar;                    \t    "
    "return y;                                   "
    "endSegmentType",
    "SegmentType(\"Quarter-Sine\", x, x1, y1, x2, y2)       \t"
    "xbar = (x-x1)/(x2-x1);                          \t    "
    "ybar = sin(PI*xbar/2);                          \t    "
    "y = y1+(y2-y1)*ybar;                            \t    "
    "return y;                                           "
    "endSegmentType",
    "SegmentType(\"Quarter-Cosine\", x, x1, y1, x2, y2)     \t"
    "xbar = (x-x1)/(x2-x1);                          \t    "
    "ybar = 1-cos(PI*xbar/2);                        \t    "
    "y = y1+(y2-y1)*ybar;                                \t"
    "return y;                                           "
    "endSegmentType",
    "SegmentType(\"Half-Cosine\", x, x1, y1, x2, y2)\t    "
    "xbar = (x-x1)/(x2-x1);                      \t    "
    "ybar = cos(PI*xbar);                        \t    "
    "y = (y2+y1)/2-((y2-y1)/2)*ybar;             \t    "
    "return y;                                       "
    "endSegmentType",
    "SegmentType(\"3-4-5-Polynomial\", x, x1, y1, x2, y2)   \t    "
    "xbar = (x-x1)/(x2-x1);                              \t    "
    "ybar = 10*xbar^3-15*xbar^4+6*xbar^5;                \t    "
    "y = y1+(y2-y1)*ybar;                                \t    "
    "return y;                                               "
    "endSegmentType",
    "SegmentType(\"4-5-6-7-Polynomial\", x, x1, y1, x2, y2) \t    "
    "xbar = (x-x1)/(x2-x1);                              \t    "
    "ybar = 35*xbar^4-84*xbar^5+70*xbar^6-20*xbar^7;     \t    "
    "y = y1+(y2-y1)*ybar;                                \t    "
    "return y;                                               "
    "endSegmentType",
    "SegmentType(\"5-6-7-8-9-Polynomial\", x, x1, y1, x2, y2)           \t    "
    "xbar = (x-x1)/(x2-x1);                                          \t    "
    "ybar = 126*xbar^5-420*xbar^6+540*xbar^7-315*xbar^8+70*xbar^9;   \t    "
    "y = y1+(y2-y1)*ybar;                                            \t    "
    "return y;                                                           "
    "endSegmentType",
    "SegmentType(\"Cycloidal\", x, x1, y1, x2, y2)  \t    "
    "xbar = (x-x1)/(x2-x1);                      \t    "
    "ybar = 1-cos(PI*xbar/2);                    \t    "
    "y = y1+(y2-y1)*ybar;                            \t"
    "return y;                                       "
    "endSegmentType",
    "SegmentType(\"Quadratic\", x, x1, y1, x2, y2)          "
    "xbar = (x-x1)/(x2-x1);                              "
    "ybar = xbar^2;                              \t    "
    "y = y1+(y2-y1)*ybar;                                "
    "return y;                                       "
    "endSegmentType",
    "SegmentType(\"Linear\", x, x1, y1, x2, y2)             "
    "slope = (y2-y1)/(x2-x1);                            "
    "dy    = slope*(x-x1);                               "
    "y     = y1+dy;                                      "
    "return y;                                       "
    "endSegmentType",
};
// clang-format on

std::array<std::string, kBuiltInProfileCount>& builtInProfiles()
{
    static std::array<std::string, kBuiltInProfileCount> table = [] {
        std::array<std::string, kBuiltInProfileCount> made;
        std::copy(kBuiltInDefinitions.begin(), kBuiltInDefinitions.end(), made.begin());
        return made;
    }();
    return table;
}

}  // namespace mf::profiles
