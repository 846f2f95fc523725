#pragma once

#include "mfcurves/engine/program.h"

namespace mf::engine {

/// What a stage with these constants makes of v.
template <Stage stage>
inline double throughStage(double v, const double* c)
{
    switch (stage) {
        case Stage::None:
            return v;
        case Stage::Scale:
            return v * c[2] + c[3];
        case Stage::Times:
            return (v + c[0]) * c[2];
        case Stage::Shift:
            return (v + c[0]) * c[2] + c[3];
        case Stage::Divide:
            return (v + c[0]) / c[1];
        case Stage::General:
            return (v + c[0]) / c[1] * c[2] + c[3];
    }
}

}  // namespace mf::engine
