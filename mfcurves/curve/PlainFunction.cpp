// SPDX-License-Identifier: MIT

#include "mfcurves/curve/PlainFunction.h"

#include <utility>

#include "mfcurves/interfaces/ISimSplineData.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/xmlRuntime.h"

namespace mf::curve {

DocumentHost::DocumentHost(const std::vector<std::string>& motionResults)
{
    std::vector<CString> names;
    names.reserve(motionResults.size());
    for (const std::string& name : motionResults)
        names.emplace_back(platform::widen(name));
    services_.setMotionResultNames(std::move(names));
    services_.setSplineFactory([] { return nullptr; });
}

XmlStarts::XmlStarts() : before_(platform::xmlStartCount()) {}

XmlStarts::~XmlStarts()
{
    while (platform::xmlStartCount() > before_)
        platform::stopXml();
}

PlainFunction::PlainFunction(const std::vector<std::string>& motionResults)
    : host_(motionResults), hostOfThread_(host_)
{
}

}  // namespace mf::curve
