// SPDX-License-Identifier: MIT

#include "mfcurves/platform/xmlRuntime.h"

#include <gtest/gtest.h>
#include <thread>

namespace {

TEST(XmlStartCount, RisesWithStartsAndFallsWithStops)
{
    EXPECT_EQ(mf::platform::xmlStartCount(), 0);
    mf::platform::startXml();
    mf::platform::startXml();
    EXPECT_EQ(mf::platform::xmlStartCount(), 2);
    mf::platform::stopXml();
    EXPECT_EQ(mf::platform::xmlStartCount(), 1);
    mf::platform::stopXml();
    EXPECT_EQ(mf::platform::xmlStartCount(), 0);
}

TEST(XmlStartCount, IsTheCallingThreadsOwn)
{
    mf::platform::startXml();
    int seen = -1;
    std::thread([&] { seen = mf::platform::xmlStartCount(); }).join();
    EXPECT_EQ(seen, 0);
    mf::platform::stopXml();
}

}  // namespace
