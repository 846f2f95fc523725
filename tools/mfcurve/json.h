// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "mfcurves/curve/Curve.h"

namespace mfcurve {

/// A text in quotes; control characters are escaped.
std::string jsonText(std::string_view text);

/// A number; null when it is not finite.
std::string jsonNumber(double number);

/// "true" or "false".
std::string jsonTruth(bool truth);

/// Value and derivatives, [4].
std::string jsonValues(const mf::CurveValues& values);

/// An array of elements that are already JSON, on one line.
std::string jsonArray(const std::vector<std::string>& elements);

/// An array with one element per line, as a complete output; an empty text if there are no elements.
std::string jsonDocument(const std::vector<std::string>& elements);

/// An object of keys and values; the values are already JSON.
std::string jsonObject(std::initializer_list<std::pair<std::string_view, std::string>> members);

}  // namespace mfcurve
