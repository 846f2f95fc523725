// SPDX-License-Identifier: MIT

#include "mfcurves/platform/nearestNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace mf::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct DistanceCase {
    const char* name;
    const char* a;
    const char* b;
    std::size_t distance;
};

const DistanceCase kDistanceCases[] = {
    {"Equal", "Cubic", "Cubic", 0},
    {"CaseDoesNotCount", "cUBIC", "Cubic", 0},
    {"BothEmpty", "", "", 0},
    {"OneEmpty", "", "abc", 3},
    {"OneMore", "Cubicc", "Cubic", 1},
    {"OneLess", "Cubi", "Cubic", 1},
    {"OneOther", "Cubit", "Cubic", 1},
    {"TwoExchanged", "Cubci", "Cubic", 2},
    {"Textbook", "kitten", "sitting", 3},
    {"CharactersAndNotBytes", "\xC3\xBC", "u", 1},
};

class EditDistance : public testing::TestWithParam<DistanceCase> {};

TEST_P(EditDistance, CountsEditsInBothDirections)
{
    EXPECT_EQ(editDistance(GetParam().a, GetParam().b), GetParam().distance);
    EXPECT_EQ(editDistance(GetParam().b, GetParam().a), GetParam().distance);
}

INSTANTIATE_TEST_SUITE_P(Names, EditDistance, testing::ValuesIn(kDistanceCases),
                         [](const auto& tested) { return tested.param.name; });

const std::vector<std::string> kNames = {"Cubic", "Cycloidal", "True-Cycloidal", "Linear",
                                         "3-4-5-Polynomial"};

TEST(NearestNames, AreMisspelt)
{
    EXPECT_THAT(nearestNames("Cubicc", kNames), ElementsAre("Cubic"));
    EXPECT_THAT(nearestNames("linaer", kNames), ElementsAre("Linear"));
    EXPECT_THAT(nearestNames("345-Polynomial", kNames), ElementsAre("3-4-5-Polynomial"));
}

TEST(NearestNames, AreNearestFirst)
{
    EXPECT_THAT(nearestNames("Cycloid", kNames), ElementsAre("Cycloidal", "True-Cycloidal"));
    EXPECT_THAT(nearestNames("ab", {"abc", "ab", "abd", "ab", "abe"}), ElementsAre("ab", "abc", "abd"));
}

TEST(NearestNames, AreEmptyWhenNothingIsNear)
{
    EXPECT_THAT(nearestNames("Wobbly", kNames), IsEmpty());
    EXPECT_THAT(nearestNames("", kNames), IsEmpty());
    EXPECT_THAT(nearestNames("Cubic", {}), IsEmpty());
    EXPECT_THAT(nearestNames(std::string(101, 'a'), {std::string(101, 'a')}), IsEmpty());
    EXPECT_THAT(nearestNames("a", {std::string(101, 'a')}), IsEmpty());
}

}  // namespace
}  // namespace mf::platform
