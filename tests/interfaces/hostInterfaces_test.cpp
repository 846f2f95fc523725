// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <type_traits>

#include "mfcurves/functions/mfFunctionBase.h"
#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/IFunctionDataPoints.h"
#include "mfcurves/interfaces/IFunctionExpression.h"
#include "mfcurves/interfaces/IFunctionSegments.h"
#include "mfcurves/interfaces/IMotionFunctionData.h"
#include "mfcurves/interfaces/IMotionServices.h"
#include "mfcurves/interfaces/IMotionStudy.h"
#include "mfcurves/interfaces/ISimSplineData.h"
#include "mfcurves/interfaces/QelMotionFunctionContext.h"
#include "tests/support/virtualSlot.h"

// Hosts are compiled against these tables, so the order of the operations is part of
// the interface.

namespace {

using mf::test::kBehindTheDestructor;
using mf::test::slotOf;
using mf::test::slotsFrom;
using mf::test::slotsOf;

// How many slots a class's table has: the index of the first slot of a derived class.
template <typename Interface>
class OneMore : public Interface {
public:
    virtual void oneMore() = 0;
};

template <typename Interface>
int slotCount()
{
    return slotOf(&OneMore<Interface>::oneMore);
}

TEST(VirtualOrder, OfMotionFunctionsHas26Operations)
{
    using I = IMotionFunctionData_c;
    EXPECT_EQ(slotsOf(&I::initialize, &I::getName, &I::setName, &I::setFunctionType, &I::getFunctionType,
                      &I::setMotorDriveType, &I::getMotorDriveType, &I::setXYDataType, &I::getXYDataType,
                      &I::isXValueTimeOrCycleAngle, &I::isXValueCycleAngle, &I::getCanUseElseWhere,
                      &I::setCanUseElseWhere, &I::setMotionObjectType, &I::getMotionObjectType,
                      &I::isMotorData, &I::isForceData, &I::isTorqueData, &I::getFunctionSegments,
                      &I::getFunctionDataPoints, &I::getFunctionExpression, &I::getXMLData, &I::setXMLData,
                      &I::evaluate, &I::updateForLegacyData),
              slotsFrom(kBehindTheDestructor, 25));
    EXPECT_EQ(slotCount<I>(), kBehindTheDestructor + 25);
}

TEST(VirtualOrder, OfSegmentFunctions)
{
    using I = IFunctionSegments_c;
    EXPECT_EQ(slotsOf(&I::clearSegments, &I::evaluate, &I::setMotorDependentVar, &I::getMotorDependentVar,
                      &I::setForceTorqueDependentVar, &I::getForceTorqueDependentVar, &I::setIndependentVar,
                      &I::getIndependentVar, &I::setMotionResult, &I::getMotionResult, &I::getSegmentsData,
                      &I::setSegmentsData),
              slotsFrom(kBehindTheDestructor, 12));
    EXPECT_EQ(slotCount<I>(), kBehindTheDestructor + 12);
}

TEST(VirtualOrder, OfDataPointFunctions)
{
    using I = IFunctionDataPoints_c;
    EXPECT_EQ(
        slotsOf(&I::getSplineData, &I::setSplineData, &I::clearDataPoints, &I::setMotorDependentVar,
                &I::getMotorDependentVar, &I::setForceTorqueDependentVar, &I::getForceTorqueDependentVar,
                &I::getIndependentVar, &I::setIndependentVar, &I::setInterpolationType,
                &I::getInterpolationType, &I::setMotionResult, &I::getMotionResult),
        slotsFrom(kBehindTheDestructor, 13));
    EXPECT_EQ(slotCount<I>(), kBehindTheDestructor + 13);
}

TEST(VirtualOrder, OfExpressionFunctions)
{
    using I = IFunctionExpression_c;
    EXPECT_EQ(slotsOf(&I::clearExpression, &I::setMathExpression, &I::getMathExpression, &I::getIndepVar,
                      &I::setIndepVar, &I::getMotorDependentVar, &I::setMotorDependentVar,
                      &I::getForceTorqueDependentVar, &I::setForceTorqueDependentVar, &I::setDomain,
                      &I::getMinX, &I::getMaxX),
              slotsFrom(kBehindTheDestructor, 12));
    EXPECT_EQ(slotCount<I>(), kBehindTheDestructor + 12);
}

TEST(VirtualOrder, OfTheCommonBaseWhoseDestructorIsNotVirtual)
{
    using I = mfFunctionBase_c;
    EXPECT_EQ(slotsOf(&I::HasEnumForIndependentVariable, &I::GetIndependentVarName, &I::IsSegements,
                      &I::IsDataPoints, &I::IsExpression, &I::IsValid, &I::ClearFunction),
              slotsFrom(0, 7));
    EXPECT_FALSE(std::has_virtual_destructor_v<I>);
}

TEST(VirtualOrder, OfTheContext)
{
    using I = QelMotionFunctionContext_c;
    EXPECT_EQ(slotsOf(&I::getMotionServices, &I::getMotionStudy, &I::getProfileManager),
              slotsFrom(kBehindTheDestructor, 3));
    EXPECT_EQ(slotCount<I>(), kBehindTheDestructor + 3);
}

TEST(VirtualOrder, OfTheServices)
{
    using I = IMotionServices_c;
    EXPECT_EQ(slotsOf(&I::getDesignLibraryPaths, &I::getResourceLibraryPath, &I::createSplineData,
                      &I::releaseSplineData, &I::getMotionResultNames, &I::getMotionResultCount,
                      &I::getUnitFactor, &I::getMotorUnitKind, &I::getForceTorqueUnitKind),
              slotsFrom(kBehindTheDestructor, 9));
    EXPECT_EQ(slotCount<I>(), kBehindTheDestructor + 9);
}

TEST(VirtualOrder, OfTheStudy)
{
    EXPECT_EQ(slotOf(&IMotionStudy_c::isCycleAngleAvailable), kBehindTheDestructor);
    EXPECT_EQ(slotCount<IMotionStudy_c>(), kBehindTheDestructor + 1);
}

TEST(VirtualOrder, OfSplines)
{
    using I = ISimSplineData_c;
    EXPECT_EQ(slotsOf(&I::setKind, &I::getKind, &I::copyFrom, &I::getPointMap, &I::clearPoints, &I::addPoint,
                      &I::getValue, &I::getFirstDerivative, &I::getSecondDerivative, &I::getThirdDerivative),
              slotsFrom(kBehindTheDestructor, 10));
    EXPECT_EQ(slotCount<I>(), kBehindTheDestructor + 10);
}

TEST(VirtualOrder, OfCalculatorsBeginsWithDifferentiate)
{
    using I = ICalculator;
    EXPECT_EQ(slotsOf(&I::differentiate, &I::Evaluate, &I::Release), slotsFrom(0, 3));
}

TEST(HostInterfaces, HaveVirtualDestructors)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<IMotionFunctionData_c>);
    EXPECT_TRUE(std::has_virtual_destructor_v<IFunctionSegments_c>);
    EXPECT_TRUE(std::has_virtual_destructor_v<IFunctionDataPoints_c>);
    EXPECT_TRUE(std::has_virtual_destructor_v<IFunctionExpression_c>);
    EXPECT_TRUE(std::has_virtual_destructor_v<QelMotionFunctionContext_c>);
    EXPECT_TRUE(std::has_virtual_destructor_v<IMotionServices_c>);
    EXPECT_TRUE(std::has_virtual_destructor_v<IMotionStudy_c>);
    EXPECT_TRUE(std::has_virtual_destructor_v<ISimSplineData_c>);
}

TEST(HostInterfaces, AreForOthersToImplement)
{
    EXPECT_TRUE(std::is_abstract_v<IMotionFunctionData_c>);
    EXPECT_TRUE(std::is_abstract_v<IFunctionSegments_c>);
    EXPECT_TRUE(std::is_abstract_v<IFunctionDataPoints_c>);
    EXPECT_TRUE(std::is_abstract_v<IFunctionExpression_c>);
    EXPECT_TRUE(std::is_abstract_v<QelMotionFunctionContext_c>);
    EXPECT_TRUE(std::is_abstract_v<IMotionServices_c>);
    EXPECT_TRUE(std::is_abstract_v<IMotionStudy_c>);
    EXPECT_TRUE(std::is_abstract_v<ISimSplineData_c>);
    EXPECT_TRUE(std::is_abstract_v<ICalculator>);
}

}  // namespace
