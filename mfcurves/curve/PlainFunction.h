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

/// The host of a function while a document is read or written. It only has the names of motion
/// results: points need no spline then, and rows no profile manager.
class DocumentHost : public QelMotionFunctionContext_c {
public:
    explicit DocumentHost(const std::vector<std::string>& motionResults);

    IMotionServices_c* getMotionServices() override { return &services_; }
    IMotionStudy_c* getMotionStudy() override { return nullptr; }
    mfProfileManager_c* getProfileManager() override { return nullptr; }

private:
    host::Services services_;
};

/// Undoes, when it is destroyed, the starts of the XML engine that the calling thread has
/// made since it was constructed.
class XmlStarts {
public:
    XmlStarts();
    ~XmlStarts();
    XmlStarts(const XmlStarts&) = delete;
    XmlStarts& operator=(const XmlStarts&) = delete;

private:
    const int before_;
};

/// A motion function to read a document into or to write one from, independently of the
/// process and its host: it uses its own host and leaves no trace.
///
/// Its kinds are members, because mfFunctionData_c::initialize would briefly replace the
/// resource library of the process.
/// Threads: each thread may have its own; the thread that made it must destroy it.
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
