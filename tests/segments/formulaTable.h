// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tests/segments/segmentTables.h"

namespace mf::test {

// A table whose rows have formulas of x.
class FormulaTable : public testing::Test {
protected:
    void giveFormula(int row, const wchar_t* formula)
    {
        rowOf(table, row).setProfileExpr(formula);
        rowOf(table, row).setProfileIndepVar(L"x");
    }

    mfFunctionSegments_c table;
};

}  // namespace mf::test
