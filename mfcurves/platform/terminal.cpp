// SPDX-License-Identifier: MIT

#include "mfcurves/platform/terminal.h"

#include <unistd.h>

namespace mf::platform {

bool isErrorOutputTerminal()
{
    return ::isatty(STDERR_FILENO) == 1;
}

}  // namespace mf::platform
