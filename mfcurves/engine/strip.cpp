// SPDX-License-Identifier: MIT

#include "mfcurves/engine/strip.h"

namespace mf::engine {

Strip compensatedPower(Strip u, unsigned exponent)
{
    return compensatedPower<Strip>(u, exponent);
}

}  // namespace mf::engine
