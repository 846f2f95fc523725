// SPDX-License-Identifier: MIT

#include "mfcurves/platform/xmlRuntime.h"

#include <libxml/parser.h>

namespace mf::platform {
namespace {

thread_local int startCount = 0;

}  // namespace

// The engine looks without a lock whether it has begun: the first start of the process has one
// here, so that every thread sees what the first one made.
void startXml()
{
    [[maybe_unused]] static const bool hasBegun = (xmlInitParser(), true);
    xmlInitParser();  // a host may have shut it down
    ++startCount;
}

// The engine itself stays up: its shutdown is for the whole process, and other
// threads or the host may be using it.
void stopXml()
{
    --startCount;
}

int xmlStartCount()
{
    return startCount;
}

}  // namespace mf::platform
