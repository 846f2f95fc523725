// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "mfcurves/segments/mfSegment.h"

// Segments with an engine that records its calls. A program that adds recordedEngine.cpp
// makes the library call the parser defined there.
namespace mf::test {

// The calls of the engine, such as "parse 2*x of x", "differentiate 0" (of the value) and
// "release 1" (the first derivative).
extern std::vector<std::string> theCalls;
extern int theLiving;        // calculators that wait for Release
extern int theHighestOrder;  // differentiating a calculator of this order gives null

class SegmentCalculator : public testing::Test {
protected:
    SegmentCalculator()
    {
        theCalls.clear();
        theLiving = 0;
        theHighestOrder = 3;
        segment.setProfileExpr(L"2*x");
        segment.setProfileIndepVar(L"x");
    }

    // The calls of the engine since the last time.
    static std::vector<std::string> calls() { return std::exchange(theCalls, {}); }

    mfSegment_c segment;
};

}  // namespace mf::test
