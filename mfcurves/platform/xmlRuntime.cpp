// SPDX-License-Identifier: MIT

#include "mfcurves/platform/xmlRuntime.h"

#include <libxml/parser.h>

namespace mf::platform {
namespace {

thread_local int startCount = 0;

}  // namespace

void startXml()
{
    xmlInitParser();
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
