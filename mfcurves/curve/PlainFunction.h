// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/host/Services.h"
#include "mfcurves/interfaces/QelMotionFunctionContext.h"
#include "mfcurves/interfaces/hostAnswers.h"
#include "mfcurves/motion/mfFunctionData.h"
#include "mfcurves/segments/mfFunctionSegments.h"

namespace mf::curve {

/// What a function needs of a host while a document is read or written: the names of motion
/// results. Points do without a spline and rows without a profile manager.
class DocumentHost : public QelMotionFunctionContext_c {
public:
    explicit DocumentHost(const std::vector<std::string>& motionResults);

    IMotionServices_c* getMotionServices() override { return &services_; }
    IMotionStudy_c* getMotionStudy() override { return nullptr; }
    mfProfileManager_c* getProfileManager() override { return nullptr; }

private:
    host::Services services_;
};

/// Takes back, at its end, the starts of the XML engine that the calling thread has made
/// since.
class XmlStarts {
public:
    XmlStarts();
    ~XmlStarts();
    XmlStarts(const XmlStarts&) = delete;
    XmlStarts& operator=(const XmlStarts&) = delete;

private:
    const int before_;
};

/// A motion function to read a document into or to write one from, whatever the process
/// and its host are doing: it asks a host of its own and leaves nothing behind.
///
/// Its kinds are members, because mfFunctionData_c::initialize exchanges the resource library
/// of the process for a moment.
/// Threads: any number may have one each; it ends in the thread that made it.
class PlainFunction : public mfFunctionData_c {
public:
    explicit PlainFunction(const std::vector<std::string>& motionResults = {});

    IFunctionSegments_c* getFunctionSegments() override { return &segments; }
    IFunctionDataPoints_c* getFunctionDataPoints() override { return &points; }
    IFunctionExpression_c* getFunctionExpression() override { return &expression; }

private:
    DocumentHost host_;
    const interfaces::HostOfThread hostOfThread_;
    const XmlStarts xmlStarts_;

public:
    mfFunctionSegments_c segments;
    mfFunctionDataPoints_c points;
    mfFunctionExpression_c expression;
};

}  // namespace mf::curve
