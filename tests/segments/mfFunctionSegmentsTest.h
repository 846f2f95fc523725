// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>

#include "mfcurves/segments/mfFunctionSegments.h"
#include "tests/segments/segmentTables.h"

namespace mf::test {

// An edit that reports row 2, so that a test sees whether the next edit clears it.
inline void reportSomething(mfFunctionSegments_c& table)
{
    fill(table, "0:0 0:1 1:2");
    table.modifySegment(1, kValueColumn, 0.0, 0.0, 1.0, L"");
    ASSERT_THAT(reported(table), testing::ElementsAre(2));
}

}  // namespace mf::test
