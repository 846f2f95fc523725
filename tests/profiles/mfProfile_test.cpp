// SPDX-License-Identifier: MIT

#include "mfcurves/profiles/mfProfile.h"

#include <gtest/gtest.h>
#include <type_traits>

namespace {

// Records are deleted through their one virtual operation.
static_assert(std::has_virtual_destructor_v<mfProfile_c>);

TEST(NewProfile, IsEmpty)
{
    const mfProfile_c profile;
    for (const std::string* text :
         {&profile.name, &profile.definitionText, &profile.independentVariable, &profile.x1, &profile.x2,
          &profile.y1, &profile.y2, &profile.resultExpression})
        EXPECT_EQ(*text, "");
    EXPECT_TRUE(profile.resultTokens.empty());
}

// x2 comes before y1: the fields are not in the order of a definition's header.
TEST(NewProfile, FieldsAreInTheirOrder)
{
    const mfProfile_c profile;
    const std::string* const fields[] = {&profile.name,
                                         &profile.definitionText,
                                         &profile.independentVariable,
                                         &profile.x1,
                                         &profile.x2,
                                         &profile.y1,
                                         &profile.y2,
                                         &profile.resultExpression};
    for (std::size_t i = 1; i < std::size(fields); ++i)
        EXPECT_LT(fields[i - 1], fields[i]) << i;
    EXPECT_LT(static_cast<const void*>(&profile.resultExpression),
              static_cast<const void*>(&profile.resultTokens));
}

}  // namespace
