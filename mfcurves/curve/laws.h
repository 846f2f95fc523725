#pragma once

#include <string>
#include <vector>

#include "mfcurves/curve/CurveDefinition.h"
#include "mfcurves/profiles/mfProfile.h"

/// Motion laws by their names.
namespace mf::curve {

struct Law {
    mfProfile_c record;
    LawText text;            // as a definition stores it
    bool isBuiltIn = false;  // needs no text in a definition
};

/// Sets `law` to the law of that name, with or without its source in brackets: one of
/// `laws`, or a built-in one. The reason when there is none or its text does not parse,
/// otherwise "".
std::string lawNamed(const std::string& name, const std::vector<LawText>& laws, Law& law);

}  // namespace mf::curve
