// SPDX-License-Identifier: MIT

// Threads make, read, write, evaluate and destroy curves at once, their own ones and a common one.
// Under the thread sanitizer this shows that what they share is safe to share.

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/curve/laws.h"
#include "mfcurves/host/Context.h"
#include "mfcurves/interfaces/QelSession.h"
#include "mfcurves/motion/mfFunctionData.h"
#include "tests/documents/curveFixture.h"

namespace mf::test {
namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 40;

void onEachThread(const std::function<void(int)>& run)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i)
        threads.emplace_back(run, i);
    for (std::thread& thread : threads)
        thread.join();
}

// The document of one row with a law of that factor; the value at its middle is 1 + factor.
std::string documentOf(int factor)
{
    return segmentDocument()
        .set("Segments", segment(" ", " ", "1") + segment("0", "2", "3", "Mine"))
        .set("ProfileDefinitions", definition("Mine", lineTimes(std::to_string(factor), "Mine")))
        .xml();
}

// Every thread has its own law under the same name; some of its documents are wrong.
void readAndWrite(int thread)
{
    ReadSettings settings;
    settings.motionResults = {"Slip"};
    for (int round = 0; round < kRounds; ++round) {
        const Curve curve = Curve::parse(documentOf(thread), settings);
        ASSERT_EQ(curve(1.0), 1.0 + thread);
        std::vector<Problem> losses;
        ASSERT_EQ(Curve::parse(curve.toXml(&losses)), curve);
        ASSERT_TRUE(losses.empty());
        ASSERT_EQ(Curve::parse(dataPointDocument().xml())(0.5), 2.0);
        ASSERT_EQ(Curve::parse(expressionDocument().set("IndepVar", "Slip").xml())(1.5), 3.0);
        ASSERT_THROW(Curve::parse("<Curve><a>"), CurveError);
        ASSERT_THROW(Curve::parse(expressionDocument().set("Version", "2").xml()), CurveError);
        ASSERT_THROW(Curve::parse(segmentDocument().set("IndepVar", "Other").xml(), settings), CurveError);
        ASSERT_EQ(laws().size(), 26u);
    }
}

TEST(CurveThreads, ReadAndWriteWithoutAHost)
{
    QelSession_c::setMotionFunctionContext(nullptr);
    onEachThread(readAndWrite);
}

TEST(CurveThreads, ReadAndWriteUnderAHostThatWorks)
{
    host::Context context;
    QelSession_c::setMotionFunctionContext(&context);
    context.profileManager();
    std::atomic<bool> isDone = false;
    // The host's own thread continues to work on its own objects.
    std::thread host([&] {
        while (!isDone) {
            context.profileManager().rebuildUserProfileMap();
            mfFunctionData_c function;
            function.initialize();
            function.readXMLData(L"", true, documentOf(50));
            EXPECT_EQ(function.evaluate(1.0, 0), 51.0);
            EXPECT_EQ(Curve::of(function)(1.0), 51.0);
        }
    });
    onEachThread(readAndWrite);
    isDone = true;
    host.join();
}

TEST(CurveThreads, ShareOneCurve)
{
    const Curve shared = Curve::parse(documentOf(2));
    onEachThread([&](int) {
        for (int round = 0; round < kRounds; ++round) {
            const Curve copy = shared;
            ASSERT_EQ(copy(1.0), 3.0);
            ASSERT_EQ(copy.at(1.0).d1, 2.0);
            ASSERT_EQ(Curve::parse(copy.toXml()), shared);
            ASSERT_EQ(Curve(copy.definition()), shared);
        }
    });
}

}  // namespace
}  // namespace mf::test
