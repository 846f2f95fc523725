// SPDX-License-Identifier: MIT

#include "mfcurves/interfaces/IFunctionDataPoints.h"
#include "mfcurves/interfaces/IFunctionExpression.h"
#include "mfcurves/interfaces/IFunctionSegments.h"
#include "mfcurves/interfaces/IMotionFunctionData.h"
#include "mfcurves/interfaces/IMotionServices.h"
#include "mfcurves/interfaces/IMotionStudy.h"
#include "mfcurves/interfaces/ISimSplineData.h"
#include "mfcurves/interfaces/QelMotionFunctionContext.h"

// Defining the destructors here gives the virtual tables one home.
QelMotionFunctionContext_c::~QelMotionFunctionContext_c() = default;
IMotionServices_c::~IMotionServices_c() = default;
IMotionStudy_c::~IMotionStudy_c() = default;
ISimSplineData_c::~ISimSplineData_c() = default;
IFunctionSegments_c::~IFunctionSegments_c() = default;
IFunctionDataPoints_c::~IFunctionDataPoints_c() = default;
IFunctionExpression_c::~IFunctionExpression_c() = default;
IMotionFunctionData_c::~IMotionFunctionData_c() = default;

void IMotionFunctionData_c::updateForLegacyData(bool /*pointPerRow*/) {}
