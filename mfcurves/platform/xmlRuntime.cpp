// SPDX-License-Identifier: MIT

#include "mfcurves/platform/xmlRuntime.h"

#include <libxml/parser.h>

namespace mf::platform {
namespace {

thread_local int startCount = 0;

}  // namespace

// The engine checks without a lock whether it has been started. The static variable gives the
// first start of the process a lock, so that every thread sees its effects.
void startXml()
{
    [[maybe_unused]] static const bool hasBegun = (xmlInitParser(), true);
    xmlInitParser();  // a host may have shut it down
    ++startCount;
}

// Does not shut the engine down: that would affect the whole process, and other threads or
// the host may be using it.
void stopXml()
{
    --startCount;
}

int xmlStartCount()
{
    return startCount;
}

}  // namespace mf::platform
