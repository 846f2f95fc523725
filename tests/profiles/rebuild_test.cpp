// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>
#include <string>

#include "mfcurves/host/Context.h"
#include "mfcurves/interfaces/QelSession.h"
#include "mfcurves/motion/mfFunctionData.h"
#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tests/support/TemporaryFolder.h"

// What a host may still do with its curves after it has rebuilt the profiles. A read of
// freed memory is found by the address sanitizer, and gives a wrong value without it.

namespace {

constexpr double kTolerance = 1e-12;
constexpr int kValueColumn = 2;

double cubic(double u)
{
    return 3.0 * u * u - 2.0 * u * u * u;
}

// One row of the profile "Cubic" from 0 at x = 0 to 10 at x = 1, compiled and
// sampled before the profiles are rebuilt.
class AfterRebuild : public testing::Test {
protected:
    AfterRebuild()
    {
        QelSession_c::setMotionFunctionContext(&host_);
        curve_.initialize();
        rows_ = static_cast<mfFunctionSegments_c*>(curve_.getFunctionSegments());
        for (const double x : {0.0, 1.0}) {
            auto* row = new mfSegment_c(0.0, x, 10.0 * x, L"Cubic");
            row->setProfileKey(manager().getProfileKeyFromDisplayName(L"Cubic"));
            rows_->addSegment(row);
        }
        compile();
        found_ = rowOne().getProfile();
        EXPECT_TRUE(manager().rebuildUserProfileMap());
    }

    mfProfileManager_c& manager() { return host_.profileManager(); }
    mfSegment_c& rowOne()
    {
        mfSegment_c* row = nullptr;
        rows_->selectSegment(1, row);
        return *row;
    }
    void compile()
    {
        rows_->parseExpression(1);
        rows_->calculateValue(1);
    }

    mf::host::Context host_;
    mfFunctionData_c curve_;
    mfFunctionSegments_c* rows_ = nullptr;
    const mfProfile_c* found_ = nullptr;  // the record that the row looked up before
};

TEST_F(AfterRebuild, AnEditedRowComputesItsNewValues)
{
    EXPECT_TRUE(rows_->modifySegment(1, kValueColumn, 0.0, 0.0, 20.0, L""));
    compile();
    EXPECT_NEAR(curve_.evaluate(0.25, 0), 20.0 * cubic(0.25), kTolerance);
    EXPECT_NEAR(curve_.evaluate(0.25, 1), 20.0 * 6.0 * 0.25 * 0.75, kTolerance);
}

TEST_F(AfterRebuild, TheDocumentHasTheDefinitionOfTheRow)
{
    curve_.createXMLData(L"cam", false, L"");
    EXPECT_NE(std::string(curve_.getXMLData()).find("<UniqueName>Cubic (Default)</UniqueName>"),
              std::string::npos);
    EXPECT_NE(std::string(curve_.getXMLData()).find("ybar=3*xbar^2-2*xbar^3"), std::string::npos);
}

TEST_F(AfterRebuild, ACopyOfTheRowsComputesTheSameValues)
{
    mfFunctionSegments_c copy;
    EXPECT_TRUE(copy.Copy(rows_));
    copy.parseExpression(1);
    copy.calculateValue(1);
    EXPECT_NEAR(copy.evaluate(0.25, 0), 10.0 * cubic(0.25), kTolerance);
}

TEST_F(AfterRebuild, TheRowKeepsItsRecordUntilItsKeyIsSet)
{
    mfSegment_c& row = rowOne();
    EXPECT_EQ(row.getProfile(), found_);
    EXPECT_EQ(row.getProfile()->name, "Cubic");
    EXPECT_NE(manager().findProfile(*row.getProfileKey()), found_);
    row.setProfileKey(mfProfileKey_c(*row.getProfileKey()));
    EXPECT_EQ(row.getProfile(), manager().findProfile(*row.getProfileKey()));
}

TEST_F(AfterRebuild, ALibraryWithoutTheProfileLeavesTheRowItsFormula)
{
    mf::test::TemporaryFolder folder;
    folder.write("SegmentTypes.txt",
                 "SegmentType(\"Other\",x,x1,y1,x2,y2)y=y1+(y2-y1)*x;return y;endSegmentType");
    host_.services().setDesignLibraryPaths(folder.path().c_str());
    EXPECT_TRUE(manager().rebuildUserProfileMap());
    EXPECT_EQ(manager().findProfile(*rowOne().getProfileKey()), nullptr);
    EXPECT_TRUE(rows_->modifySegment(1, kValueColumn, 0.0, 0.0, 20.0, L""));
    compile();
    EXPECT_NEAR(curve_.evaluate(0.25, 0), 20.0 * cubic(0.25), kTolerance);
}

}  // namespace
