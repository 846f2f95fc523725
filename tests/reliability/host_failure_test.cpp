// SPDX-License-Identifier: MIT

// The host refuses the n-th request, or all requests from the n-th on, for every n of a
// whole session: the library returns its neutral values and nothing crashes.

#include <cmath>
#include <gtest/gtest.h>
#include <string>

#include "mfcurves/mfcurves.h"
#include "tests/reliability/sessions.h"

namespace {

enum class Refusal { OneCall, FromThenOn };

// Counts the requests and decides which are refused.
class Patience {
public:
    Patience(long call, Refusal refusal) : call_(call), refusal_(refusal) {}

    bool endsNow()
    {
        ++asked_;
        return refusal_ == Refusal::OneCall ? asked_ == call_ : asked_ >= call_;
    }
    bool wasReached() const { return asked_ >= call_; }

private:
    long asked_ = 0;
    long call_;
    Refusal refusal_;
};

class RefusingServices : public mf::host::Services {
public:
    explicit RefusingServices(Patience& patience) : patience_(patience) {}

    CString getDesignLibraryPaths() override
    {
        return patience_.endsNow() ? CString() : Services::getDesignLibraryPaths();
    }
    CString getResourceLibraryPath(const CString& baseName) override
    {
        return patience_.endsNow() ? CString() : Services::getResourceLibraryPath(baseName);
    }
    ISimSplineData_c* createSplineData() override
    {
        return patience_.endsNow() ? nullptr : Services::createSplineData();
    }
    void getMotionResultNames(std::vector<CString>& names) override
    {
        if (!patience_.endsNow())
            Services::getMotionResultNames(names);
    }
    int getMotionResultCount() override { return patience_.endsNow() ? 0 : Services::getMotionResultCount(); }

private:
    Patience& patience_;
};

class RefusingContext : public QelMotionFunctionContext_c {
public:
    explicit RefusingContext(Patience& patience) : patience_(patience), services_(patience)
    {
        QelSession_c::setMotionFunctionContext(this);
    }
    ~RefusingContext() override { QelSession_c::setMotionFunctionContext(nullptr); }
    RefusingContext(const RefusingContext&) = delete;
    RefusingContext& operator=(const RefusingContext&) = delete;

    IMotionServices_c* getMotionServices() override { return patience_.endsNow() ? nullptr : &services_; }
    IMotionStudy_c* getMotionStudy() override { return patience_.endsNow() ? nullptr : &study_; }
    mfProfileManager_c* getProfileManager() override { return patience_.endsNow() ? nullptr : &manager; }

    mfProfileManager_c manager;

private:
    Patience& patience_;
    RefusingServices services_;
    mf::host::Study study_;
};

struct HostFailureCase {
    mf::test::Work work;
    Refusal refusal;
};

std::vector<HostFailureCase> everyCase()
{
    std::vector<HostFailureCase> cases;
    for (const mf::test::Work& work : mf::test::kWork) {
        cases.push_back({work, Refusal::OneCall});
        cases.push_back({work, Refusal::FromThenOn});
    }
    return cases;
}

class HostFailure : public testing::TestWithParam<HostFailureCase> {
protected:
    void SetUp() override
    {
        mf::platform::setMessageHandler([](const wchar_t*, const wchar_t*, unsigned) {});
    }
    void TearDown() override { mf::platform::setMessageHandler({}); }

    // True when the host was asked often enough to refuse.
    static bool runSession(const HostFailureCase& tested, long call)
    {
        Patience patience(call, tested.refusal);
        RefusingContext host(patience);
        host.manager.rebuildUserProfileMap();
        mfFunctionData_c function;
        if (function.initialize())
            tested.work.run(function);
        for (const double x : {-1.0, 0.0, 0.5, 1.0, 99.0}) {
            for (int order = -1; order <= 4; ++order)
                EXPECT_TRUE(std::isfinite(function.evaluate(x, order))) << "call " << call << ", x " << x;
        }
        return patience.wasReached();
    }
};

TEST_P(HostFailure, LeavesNeutralValues)
{
    long call = 1;
    while (runSession(GetParam(), call))
        ++call;
    EXPECT_GT(call, 5);
}

INSTANTIATE_TEST_SUITE_P(Sessions, HostFailure, testing::ValuesIn(everyCase()), [](const auto& tested) {
    return std::string(tested.param.work.name) +
           (tested.param.refusal == Refusal::OneCall ? "OneCall" : "FromThenOn");
});

// Without a context the library has no host at all.
TEST(HostFailure, NoContextIsLikeOneThatReturnsNull)
{
    QelSession_c::setMotionFunctionContext(nullptr);
    mf::platform::setMessageHandler([](const wchar_t*, const wchar_t*, unsigned) {});
    mfFunctionData_c function;
    EXPECT_FALSE(function.initialize());
    EXPECT_EQ(function.evaluate(1.0, 0), 0.0);

    mfFunctionSegments_c segments;
    segments.addSegment(new mfSegment_c(0, 0, 1, L"Cubic"));
    segments.addSegment(new mfSegment_c(0, 1, 2, L"Cubic"));
    segments.parseExpression(1);
    segments.calculateValue();
    EXPECT_EQ(segments.evaluate(0.5, 0), 0.0);

    mfFunctionDataPoints_c points;
    auto* row = new mfDataPoints_c();
    row->addPoint(1.0, 2.0);
    EXPECT_TRUE(points.insertDataPoint(0, row));
    points.calculateValue();
    EXPECT_EQ(points.evaluate(1.0, 0), 0.0);

    mfFunctionExpression_c expression;
    expression.setMathExpression(L"time^2");
    EXPECT_EQ(expression.evaluate(3.0, 0), 9.0);
    mf::platform::setMessageHandler({});
}

}  // namespace
