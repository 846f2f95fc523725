// SPDX-License-Identifier: MIT

#include "mfcurves/profiles/builtInProfiles.h"

#include <cstdint>
#include <gtest/gtest.h>

#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfSegmentTypeParser.h"

namespace {

struct BuiltInCase {
    const char* name;
    std::size_t length;  // as stored, white space included
    std::uint64_t hash;  // FNV-1a of the text as stored
    const char* normalForm;
};

// clang-format off
const BuiltInCase kBuiltInCases[] = {
    {"Cubic", 239, 0x55e432189875ccd9u,
     R"(segmenttype("Cubic",x,x1,y1,x2,y2)xbar=(x-x1)/(x2-x1);ybar=3*xbar^2-2*xbar^3;y=y1+(y2-y1)*ybar;returny;endsegmenttype)"},
    {"Quarter-Sine", 279, 0x3432f94cbb00fa64u,
     R"(segmenttype("Quarter-Sine",x,x1,y1,x2,y2)xbar=(x-x1)/(x2-x1);ybar=sin(pi*xbar/2);y=y1+(y2-y1)*ybar;returny;endsegmenttype)"},
    {"Quarter-Cosine", 279, 0x3ee962f88ada55fdu,
     R"(segmenttype("Quarter-Cosine",x,x1,y1,x2,y2)xbar=(x-x1)/(x2-x1);ybar=1-cos(pi*xbar/2);y=y1+(y2-y1)*ybar;returny;endsegmenttype)"},
    {"Half-Cosine", 259, 0xa71069570f210d65u,
     R"(segmenttype("Half-Cosine",x,x1,y1,x2,y2)xbar=(x-x1)/(x2-x1);ybar=cos(pi*xbar);y=(y2+y1)/2-((y2-y1)/2)*ybar;returny;endsegmenttype)"},
    {"3-4-5-Polynomial", 299, 0xfdc81f71b62bcfbfu,
     R"(segmenttype("3-4-5-Polynomial",x,x1,y1,x2,y2)xbar=(x-x1)/(x2-x1);ybar=10*xbar^3-15*xbar^4+6*xbar^5;y=y1+(y2-y1)*ybar;returny;endsegmenttype)"},
    {"4-5-6-7-Polynomial", 299, 0xddda10114410ad16u,
     R"(segmenttype("4-5-6-7-Polynomial",x,x1,y1,x2,y2)xbar=(x-x1)/(x2-x1);ybar=35*xbar^4-84*xbar^5+70*xbar^6-20*xbar^7;y=y1+(y2-y1)*ybar;returny;endsegmenttype)"},
    {"5-6-7-8-9-Polynomial", 359, 0x829ca5b3b6c971a4u,
     R"(segmenttype("5-6-7-8-9-Polynomial",x,x1,y1,x2,y2)xbar=(x-x1)/(x2-x1);ybar=126*xbar^5-420*xbar^6+540*xbar^7-315*xbar^8+70*xbar^9;y=y1+(y2-y1)*ybar;returny;endsegmenttype)"},
    {"Cycloidal", 259, 0x25edbf6fd0c997bbu,
     R"(segmenttype("Cycloidal",x,x1,y1,x2,y2)xbar=(x-x1)/(x2-x1);ybar=1-cos(pi*xbar/2);y=y1+(y2-y1)*ybar;returny;endsegmenttype)"},
    {"Quadratic", 268, 0x153f4b14504855a8u,
     R"(segmenttype("Quadratic",x,x1,y1,x2,y2)xbar=(x-x1)/(x2-x1);ybar=xbar^2;y=y1+(y2-y1)*ybar;returny;endsegmenttype)"},
    {"Linear", 271, 0x2336255c1bd91bb8u,
     R"(segmenttype("Linear",x,x1,y1,x2,y2)slope=(y2-y1)/(x2-x1);dy=slope*(x-x1);y=y1+dy;returny;endsegmenttype)"},
};
// clang-format on

std::uint64_t fnv1a(const std::string& text)
{
    std::uint64_t hash = 0xcbf29ce484222325u;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3u;
    return hash;
}

// The table changes at its first use, so this one case sees it before and after.
TEST(BuiltInProfiles, AreStoredToTheByteAndNormalisedInPlaceAtFirstUse)
{
    const auto& table = mf::profiles::builtInProfiles();
    ASSERT_EQ(table.size(), std::size(kBuiltInCases));
    for (std::size_t i = 0; i < table.size(); ++i) {
        EXPECT_EQ(table[i].size(), kBuiltInCases[i].length) << kBuiltInCases[i].name;
        EXPECT_EQ(fnv1a(table[i]), kBuiltInCases[i].hash) << kBuiltInCases[i].name;
    }

    for (int use = 1; use <= 2; ++use) {
        std::vector<mfProfile_c*> records;
        ASSERT_TRUE(mfSegmentTypeParser_c().readProfiles("", records));
        ASSERT_EQ(records.size(), table.size());
        for (std::size_t i = 0; i < table.size(); ++i) {
            EXPECT_EQ(table[i], kBuiltInCases[i].normalForm);
            EXPECT_EQ(records[i]->name, kBuiltInCases[i].name);
            EXPECT_EQ(records[i]->definitionText, kBuiltInCases[i].normalForm);
            delete records[i];
        }
    }
}

}  // namespace
