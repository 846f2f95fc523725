// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <thread>
#include <type_traits>

#include "mfcurves/interfaces/CGeneralException.h"
#include "mfcurves/interfaces/CMemoryException.h"
#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/MMEP_Data.h"
#include "mfcurves/interfaces/MMEP_WString.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/interfaces/QelSession.h"
#include "mfcurves/interfaces/hostAnswers.h"
#include "tests/support/FakeHost.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Session, HasNoContextUntilOneIsSet)
{
    EXPECT_EQ(QelSession_c::QelMotionFunctionContext(), nullptr);
    {
        mf::test::FakeHost host;
        EXPECT_EQ(QelSession_c::QelMotionFunctionContext(), &host);
        EXPECT_THAT(host.calls, IsEmpty()) << "handing it in asks nothing of it";
    }
    EXPECT_EQ(QelSession_c::QelMotionFunctionContext(), nullptr);
}

TEST(HostAnswers, AreNullWithoutAContext)
{
    EXPECT_EQ(mf::interfaces::motionServices(), nullptr);
    EXPECT_EQ(mf::interfaces::motionStudy(), nullptr);
    EXPECT_EQ(mf::interfaces::profileManager(), nullptr);
}

TEST(HostAnswers, AreRequestedAtEachUse)
{
    mf::test::FakeHost host;
    EXPECT_EQ(mf::interfaces::motionServices(), &host.services);
    host.servicesAnswer = nullptr;
    EXPECT_EQ(mf::interfaces::motionServices(), nullptr);
    EXPECT_EQ(mf::interfaces::motionStudy(), &host.study);
    host.studyAnswer = nullptr;
    EXPECT_EQ(mf::interfaces::motionStudy(), nullptr);
    EXPECT_EQ(mf::interfaces::profileManager(), nullptr);
    EXPECT_THAT(host.calls, ElementsAre("getMotionServices", "getMotionServices", "getMotionStudy",
                                        "getMotionStudy", "getProfileManager"));
}

TEST(HostAnswers, OfOneThreadMayComeFromAnotherContext)
{
    mf::test::FakeHost host;
    mf::test::FakeHost own;
    QelSession_c::setMotionFunctionContext(&host);
    {
        const mf::interfaces::HostOfThread guard(own);
        EXPECT_EQ(mf::interfaces::motionServices(), &own.services);
        EXPECT_EQ(mf::interfaces::motionStudy(), &own.study);
        EXPECT_EQ(QelSession_c::QelMotionFunctionContext(), &host);
        std::thread([&] { EXPECT_EQ(mf::interfaces::motionServices(), &host.services); }).join();
        {
            const mf::interfaces::HostOfThread inner(host);
            EXPECT_EQ(mf::interfaces::motionServices(), &host.services);
        }
        EXPECT_EQ(mf::interfaces::motionServices(), &own.services);
    }
    EXPECT_EQ(mf::interfaces::motionServices(), &host.services);
}

TEST(EngineData, AlwaysHoldsANumber)
{
    EXPECT_EQ(*MMEP_Data().getValue(), 0.0);
    const MMEP_Data data(2.5);
    EXPECT_EQ(*data.getValue(), 2.5);
    *data.getValue() = 3.5;
    EXPECT_EQ(*data.getValue(), 3.5);
    const MMEP_Data copy = data;
    *data.getValue() = 4.5;
    EXPECT_EQ(*copy.getValue(), 3.5);
    const MMEP_Data arguments[] = {1.5, 2.5};
    EXPECT_EQ(*arguments[1].getValue(), 2.5);
}

TEST(EngineName, BeginsWithItsTextAndMeansOneThing)
{
    using Meaning = MMEP_WString::Meaning;
    const wchar_t* const text = L"{Angle1}";
    const MMEP_WString result(text, Meaning::ResultObject);
    EXPECT_EQ(*reinterpret_cast<const wchar_t* const*>(&result), text);

    for (const Meaning meaning :
         {Meaning::Other, Meaning::Time, Meaning::CycleAngle, Meaning::ResultObject}) {
        const MMEP_WString name(text, meaning);
        EXPECT_EQ(name.isTime(), meaning == Meaning::Time);
        EXPECT_EQ(name.isCycleAngle(), meaning == Meaning::CycleAngle);
        EXPECT_EQ(name.isResultObject(), meaning == Meaning::ResultObject);
    }
}

TEST(EngineClasses, AreDestroyedAsDocumented)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<MotionMEParser>);
    EXPECT_FALSE(std::is_destructible_v<ICalculator>) << "a calculator ends by Release alone";
    EXPECT_FALSE(std::is_polymorphic_v<MMEP_Data>);
    EXPECT_FALSE(std::is_polymorphic_v<MMEP_WString>);
}

TEST(TextExceptions, SayWhatHappened)
{
    const CGeneralException general(0x80070057);
    EXPECT_EQ(general.resultCode(), 0x80070057u);
    EXPECT_STREQ(general.what(), "text conversion failed with code 0x80070057");
    EXPECT_STREQ(CMemoryException().what(), "no memory for a text");
}

TEST(TextExceptions, AreCaughtAsTheStandardOnes)
{
    EXPECT_THROW(throw CGeneralException(1), std::runtime_error);
    EXPECT_THROW(throw CMemoryException(), std::bad_alloc);
}

}  // namespace
